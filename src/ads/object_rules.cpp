#include "ads/object_rules.hpp"

#include "ads/dn.hpp"
#include "ads/schema.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"
#include "platform/logon_hours.hpp"
#include "platform/utf16.hpp"

namespace twk::ads {
namespace {

constexpr std::size_t kLongestName = 64;
constexpr std::size_t kUserNameLength = 20;
constexpr std::size_t kGroupNameLength = 256;

[[noreturn]] void constraint(std::string_view attribute, const std::string& what) {
  base::raise(platform::ads_error::kConstraint, "The value of " + std::string(attribute) + " " + what);
}

}  // namespace

void check_account_name(std::string_view name, bool user) {
  static constexpr std::string_view kForbidden = "\"/\\[]:;|=,+*?<>";
  const auto refuse = [&](const std::string& why) {
    base::raise(platform::ads_error::kInvalidAccountName,
                "The account name \"" + base::to_valid_utf8(name) + "\" " + why);
  };
  if (!base::is_valid_utf8(name))
    refuse("is not UTF-8");
  if (const auto control = base::find_control_character(name))
    refuse("holds the control character " + *control);
  const std::size_t at = name.find_first_of(kForbidden);
  if (at != base::npos)
    refuse(std::string("holds the character ") + name[at]);
  if (name.find_first_not_of(" .") == base::npos)
    refuse("is empty or only blanks and dots");
  if (name.back() == '.')
    refuse("ends in a dot");
  const std::size_t longest = user ? kUserNameLength : kGroupNameLength;
  if (platform::utf16_length(name) > longest)
    refuse("is longer than " + base::to_text(static_cast<std::int64_t>(longest)) + " characters");
}

std::string child_dn(std::string_view object_class, std::string_view relative_name,
                     std::string_view parent_dn) {
  const auto refuse = [&](const std::string& why) {
    base::raise(platform::ads_error::kInvalidDn,
                "The name \"" + base::to_valid_utf8(relative_name) + "\" " + why);
  };
  if (split_dn(relative_name).size() != 1)
    refuse("is not one part of a distinguished name");
  const Rdn rdn = parse_rdn(relative_name);
  const ClassSchema* const schema = find_class(object_class);
  if (schema != nullptr && !base::equals_fold(rdn.type, schema->rdn_type)) {
    refuse("must begin with " + std::string(schema->rdn_type) + "=");
  }
  if (const auto control = base::find_control_character(rdn.value))
    refuse("holds the control character " + *control);
  if (!base::is_valid_utf8(rdn.value))
    refuse("is not UTF-8");
  if (base::trim(rdn.value).empty())
    refuse("is empty");
  if (platform::utf16_length(rdn.value) > kLongestName)
    refuse("is longer than 64 characters");
  return make_rdn(base::upper(rdn.type), rdn.value) + "," + std::string(parent_dn);
}

void check_value(std::string_view attribute, std::string_view raw, bool user) {
  if (base::equals_fold(attribute, "sAMAccountName")) {
    check_account_name(raw, user);
  } else if (base::equals_fold(attribute, "logonHours")) {
    if (raw.size() != platform::kLogonHoursSize)
      constraint(attribute, "is not 21 bytes long");
  } else if (base::equals_fold(attribute, "pwdLastSet")) {
    if (raw != "0" && raw != "-1")
      constraint(attribute, "is neither 0 nor -1");
  } else if (base::equals_fold(attribute, "lockoutTime")) {
    if (raw != "0")
      base::raise(platform::ads_error::kUnwilling, "An account cannot be locked by setting lockoutTime");
  }
}

}  // namespace twk::ads
