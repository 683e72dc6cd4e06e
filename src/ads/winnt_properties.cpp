#include "ads/winnt_properties.hpp"

#include <array>
#include <charconv>
#include <string>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"
#include "platform/group_type.hpp"

namespace twk::ads {
namespace {

using platform::Value;
namespace group_type = platform::group_type;

/// "accountExpires" of an account that never expires; 0 means the same.
constexpr std::string_view kNeverExpires = "9223372036854775807";

struct Property {
  std::string_view name;
  std::string_view attribute;
};

constexpr std::array<Property, 20> kProperties = {{
    {"Name", "sAMAccountName"},
    {"FullName", "displayName"},
    {"Description", "description"},
    {"HomeDirectory", "homeDirectory"},
    {"HomeDirDrive", "homeDrive"},
    {"Profile", "profilePath"},
    {"LoginScript", "scriptPath"},
    {"LoginHours", "logonHours"},
    {"LoginWorkstations", "userWorkstations"},
    {"Parameters", "userParameters"},
    {"PrimaryGroupID", "primaryGroupID"},
    {"BadPasswordAttempts", "badPwdCount"},
    {"LastLogin", "lastLogon"},
    {"LastLogoff", "lastLogoff"},
    {"MaxStorage", "maxStorage"},
    {"objectSID", "objectSid"},
    {"UserFlags", "userAccountControl"},
    {"PasswordExpired", "pwdLastSet"},
    {"AccountExpirationDate", "accountExpires"},
    {"groupType", "groupType"},
}};

const Property& find_property(std::string_view name) {
  for (const Property& property : kProperties) {
    if (base::equals_fold(property.name, name))
      return property;
  }
  base::raise(platform::ads_error::kNoSuchAttribute,
              "The WinNT provider has no property " + std::string(name));
}

bool is_locked(AttributeAccess& entry) {
  const std::string since = entry.get("lockoutTime").text();
  return !since.empty() && since != "0" &&
         !platform::is_lapsed_lock(entry.get("msDS-User-Account-Control-Computed"));
}

bool must_change_password(AttributeAccess& entry) {
  return entry.get("pwdLastSet").text() == "0";
}

Value expiration(const Value& stored) {
  const std::string text = stored.text();
  std::int64_t filetime = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), filetime);
  if (result.ec != std::errc{} || filetime == 0 || text == kNeverExpires)
    return {};
  return base::from_filetime(filetime);
}

void put_flags(AttributeAccess& entry, std::int32_t flags) {
  if ((flags & platform::kFlagLockedOut) == 0 && is_locked(entry))
    entry.stage(2, "lockoutTime", "0");
  // Who may unlock an account may not change its other flags, too.
  const std::int32_t wanted = flags & ~platform::kFlagLockedOut;
  const Value known = entry.get("userAccountControl");
  if (known.is_empty() || known.integer() != wanted)
    entry.stage(2, "userAccountControl", wanted);
}

/// Writing the current value again does not count as a change of the password.
void put_password_expired(AttributeAccess& entry, bool expired) {
  if (expired != must_change_password(entry))
    entry.stage(2, "pwdLastSet", expired ? 0 : -1);
}

void put_expiration(AttributeAccess& entry, base::Date date) {
  const bool never = date.serial == -1.0;
  entry.stage(2, "accountExpires",
              never ? Value(kNeverExpires) : Value(base::to_text(base::to_filetime(date))));
}

}  // namespace

Value get_winnt(AttributeAccess& entry, std::string_view property) {
  const std::string_view attribute = find_property(property).attribute;
  Value value = entry.get(attribute);
  if (attribute == "userAccountControl" && !value.is_empty()) {
    return value.integer() | (is_locked(entry) ? platform::kFlagLockedOut : 0);
  }
  if (attribute == "pwdLastSet")
    return value.is_empty() ? Value{} : Value(must_change_password(entry) ? 1 : 0);
  if (attribute == "accountExpires")
    return expiration(value);
  if (attribute == "groupType" && !value.is_empty())
    return (value.integer() & group_type::kLocal) != 0 ? group_type::kLocal : group_type::kGlobal;
  return attribute == "description" ? (value.is_empty() ? value : Value(value.text())) : value;
}

void put_winnt(AttributeAccess& entry, std::string_view property, const Value& value) {
  const std::string_view attribute = find_property(property).attribute;
  const auto* text = std::get_if<std::string>(&value.data);
  if (attribute == "userAccountControl") {
    put_flags(entry, value.integer());
  } else if (attribute == "pwdLastSet") {
    put_password_expired(entry, value.integer() != 0);
  } else if (attribute == "accountExpires") {
    put_expiration(entry, value.date());
  } else if (attribute == "groupType") {
    entry.stage(2, attribute,
                group_type::kSecurity |
                    (value.integer() == group_type::kLocal ? group_type::kLocal : group_type::kGlobal));
  } else {
    entry.stage(text != nullptr && text->empty() ? 1 : 2, attribute, value);
  }
}

void put_ex_winnt(AttributeAccess& entry, int control, std::string_view property, const Value& value) {
  if (control == 2) {
    put_winnt(entry, property, value);
  } else {
    entry.stage(control, find_property(property).attribute, value);
  }
}

}  // namespace twk::ads
