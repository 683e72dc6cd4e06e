#include "live/domain/nt_entry.hpp"

#include <array>
#include <charconv>

#include "ads/object_rules.hpp"
#include "base/text.hpp"
#include "live/rpc/account_flags.hpp"
#include "platform/adsi.hpp"
#include "platform/group_type.hpp"
#include "platform/user_parameters.hpp"

namespace twk::live {
namespace {

using platform::Value;
using platform::ValueList;
namespace ads_error = platform::ads_error;

constexpr std::uint32_t kDisabled = 0x1;      // USER_ACCOUNT_DISABLED, [MS-SAMR] 2.2.1.12
constexpr std::uint32_t kNormal = 0x10;       // USER_NORMAL_ACCOUNT
constexpr std::uint32_t kAutoLocked = 0x400;  // USER_ACCOUNT_AUTO_LOCKED
constexpr std::uint64_t kNever = 0x7FFFFFFFFFFFFFFF;
/// What Samba reports for an account without expiry: 6 February 2036.
constexpr std::uint64_t kSambaNever = 137303967990000000;

/// Texts of a user, by their names in a directory.
struct TextField {
  std::string_view attribute;
  std::string SamUser::*stored;
  std::optional<std::string> SamUserChange::*changed;
};

constexpr std::array<TextField, 8> kTexts = {{
    {"sAMAccountName", &SamUser::name, &SamUserChange::name},
    {"displayName", &SamUser::full_name, &SamUserChange::full_name},
    {"description", &SamUser::description, &SamUserChange::description},
    {"homeDirectory", &SamUser::home_directory, &SamUserChange::home_directory},
    {"homeDrive", &SamUser::home_drive, &SamUserChange::home_drive},
    {"scriptPath", &SamUser::logon_script, &SamUserChange::logon_script},
    {"profilePath", &SamUser::profile_path, &SamUserChange::profile_path},
    {"userWorkstations", &SamUser::workstations, &SamUserChange::workstations},
}};

ValueList one(Value value) {
  return {std::move(value)};
}

ValueList text_or_none(const std::string& text) {
  return text.empty() ? ValueList{} : one(text);
}

ValueList time_or_none(std::uint64_t filetime) {
  return filetime == 0 ? ValueList{} : one(std::to_string(filetime));
}

[[noreturn]] void constraint(std::string_view attribute, const std::string& what) {
  base::raise(ads_error::kConstraint, "The value of " + std::string(attribute) + " " + what);
}

std::string text_of(const ads::StagedChange& change) {
  if (change.kind != ads::ChangeKind::kReplace || change.values.size() > 1)
    constraint(change.attribute, "is not a single one");
  return change.values.empty() ? std::string() : change.values.front().text();
}

void check_text(std::string_view attribute, const std::string& text) {
  if (const auto control = base::find_control_character(text))
    constraint(attribute, "holds the control character " + *control);
  if (!base::is_valid_utf8(text))
    constraint(attribute, "is not UTF-8");
}

/// No restriction means every hour of the week.
base::Bytes hours_of(const ads::StagedChange& change) {
  constexpr std::size_t kSize = 21;
  if (change.kind != ads::ChangeKind::kReplace || change.values.size() > 1)
    constraint(change.attribute, "is not a single one");
  base::Bytes hours = change.values.empty() ? base::Bytes(kSize, 0xFF) : change.values.front().bytes();
  if (hours.size() != kSize)
    constraint(change.attribute, "is not 21 bytes long");
  return hours;
}

std::uint64_t expiry_of(const std::string& text) {
  std::uint64_t filetime = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), filetime);
  if (!text.empty() && (result.ec != std::errc{} || result.ptr != text.data() + text.size()))
    constraint("accountExpires", "is not a number");
  return filetime == kNever ? 0 : filetime;
}

}  // namespace

AccountService& NtEntry::service() const {
  return domain_->rpc().accounts(domain_->controller());
}

const SamUser& NtEntry::user() {
  if (!fetched_)
    fetched_ = as_directory_call([&] { return service().read_user(account_.rid); });
  return *fetched_;
}

ValueList NtEntry::stored_of_user(std::string_view attribute) {
  const SamUser& now = user();
  for (const TextField& field : kTexts) {
    if (base::equals_fold(field.attribute, attribute))
      return text_or_none(now.*field.stored);
  }
  const auto is = [&](std::string_view name) { return base::equals_fold(attribute, name); };
  if (is("logonHours"))
    return now.logon_hours.empty() ? ValueList{} : one(now.logon_hours);
  if (is("userParameters"))
    return text_or_none(platform::user_parameters_text(now.parameters));
  if (is("primaryGroupID"))
    return one(static_cast<std::int32_t>(now.primary_group));
  if (is("badPwdCount"))
    return one(std::int32_t{now.bad_passwords});
  if (is("lastLogon"))
    return time_or_none(now.last_logon);
  if (is("lastLogoff"))
    return time_or_none(now.last_logoff == kNever ? 0 : now.last_logoff);
  if (is("userAccountControl"))
    return one(flags_of_codes(now.flags & ~kAutoLocked));
  if (is("lockoutTime"))
    return one((now.flags & kAutoLocked) != 0 ? "1" : "0");
  if (is("pwdLastSet"))
    return one(now.password_expired ? "0" : "1");
  if (is("accountExpires"))
    return time_or_none(now.expires == kSambaNever ? kNever : now.expires);
  return {};
}

ValueList NtEntry::stored(std::string_view attribute) {
  if (new_)
    return {};
  if (base::equals_fold(attribute, "objectSid"))
    return one(as_directory_call([&] { return service().sid_of(account_); }).bytes());
  if (is_user())
    return stored_of_user(attribute);
  if (base::equals_fold(attribute, "sAMAccountName"))
    return one(account_.name);
  if (base::equals_fold(attribute, "groupType"))
    return one(account_.kind == SamAccount::Kind::kLocalGroup ? platform::group_type::kLocal
                                                              : platform::group_type::kGlobal);
  if (base::equals_fold(attribute, "description"))
    return text_or_none(as_directory_call([&] { return service().group_description(account_); }));
  return {};
}

Value NtEntry::get(std::string_view attribute) {
  return staged_.over(attribute, staged_.hides_stored(attribute) ? ValueList{} : stored(attribute));
}

void NtEntry::stage(int control, std::string_view attribute, const Value& value) {
  staged_.stage(control, attribute, value);
}

SamUserChange NtEntry::user_change() {
  SamUserChange change;
  for (const ads::StagedChange& staged : staged_.changes()) {
    const auto is = [&](std::string_view name) { return base::equals_fold(staged.attribute, name); };
    if (is("logonHours")) {
      change.logon_hours = hours_of(staged);
      continue;
    }
    const std::string text = text_of(staged);
    const auto field = std::find_if(kTexts.begin(), kTexts.end(),
                                    [&](const TextField& candidate) { return is(candidate.attribute); });
    if (!text.empty())
      ads::check_value(staged.attribute, text, true);
    if (field != kTexts.end()) {
      check_text(staged.attribute, text);
      change.*(field->changed) = text;
    } else if (is("userParameters")) {
      change.parameters = platform::user_parameters_bytes(text);
    } else if (is("primaryGroupID")) {
      change.primary_group = static_cast<std::uint32_t>(staged.values.front().integer());
    } else if (is("userAccountControl")) {
      const std::uint32_t codes = new_ ? kNormal : user().flags;
      const std::uint32_t locked = change.flags ? *change.flags & kAutoLocked : codes & kAutoLocked;
      change.flags = (with_flags(codes, staged.values.front().integer()) & ~kAutoLocked) | locked | kNormal;
    } else if (is("lockoutTime")) {
      change.flags = change.flags.value_or(new_ ? kNormal : user().flags) & ~kAutoLocked;
    } else if (is("pwdLastSet")) {
      change.password_expired = text == "0";
    } else if (is("accountExpires")) {
      change.expires = expiry_of(text);
    } else {
      base::raise(ads_error::kNoSuchAttribute, "An account here has no attribute " + staged.attribute);
    }
  }
  return change;
}

void NtEntry::create() {
  SamAccount::Kind kind = account_.kind;
  if (!is_user())
    kind = (get("groupType").is_empty() ? platform::group_type::kGlobal : get("groupType").integer()) &
                   platform::group_type::kLocal
               ? SamAccount::Kind::kLocalGroup
               : SamAccount::Kind::kGlobalGroup;
  ads::check_account_name(account_.name, is_user());
  account_ = service().create(account_.name, kind);
}

/// If the policy requires a password, the account waits for it.
void NtEntry::enable() {
  const std::uint32_t codes = service().read_user(account_.rid).flags;
  SamUserChange change;
  change.flags = codes & ~kDisabled;
  base::Trap trap;
  trap([&] { service().write_user(account_.rid, change); });
  awaits_password_ = trap.number() != 0;
}

void NtEntry::write_user() {
  SamUserChange change = user_change();
  if (new_)
    change.name.reset();
  service().write_user(account_.rid, change);
  if (new_ && !change.flags)
    enable();
}

void NtEntry::write_group() {
  std::optional<std::string> name;
  std::optional<std::string> description;
  for (const ads::StagedChange& staged : staged_.changes()) {
    if (base::equals_fold(staged.attribute, "description")) {
      description = text_of(staged);
      check_text(staged.attribute, *description);
    } else if (base::equals_fold(staged.attribute, "sAMAccountName")) {
      name = new_ ? std::nullopt : std::optional(text_of(staged));
    } else if (!new_ || !base::equals_fold(staged.attribute, "groupType")) {
      base::raise(ads_error::kUnwilling, "A group here does not change its " + staged.attribute);
    }
  }
  service().write_group(account_, name, description);
}

void NtEntry::commit() {
  as_directory_call([&] {
    const bool made = new_;
    if (made) {
      // Values that no account accepts are found before the account is made.
      if (is_user())
        user_change();
      create();
    }
    try {
      is_user() ? write_user() : write_group();
    } catch (const base::RuntimeError&) {
      if (made) {
        base::Trap trap;
        trap([&] { service().remove(account_); });
      }
      throw;
    }
    new_ = false;
    fetched_.reset();
    staged_.clear();
  });
}

void NtEntry::set_password(std::string_view password) {
  as_directory_call([&] {
    service().set_password(account_.rid, password);
    if (awaits_password_)
      enable();
    fetched_.reset();
  });
}

}  // namespace twk::live
