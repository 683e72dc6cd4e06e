#include "lab/domain/logon.hpp"

#include <algorithm>
#include <cmath>

#include "base/text.hpp"
#include "lab/domain/account_rules.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/domain/passwords.hpp"
#include "lab/store/errors.hpp"
#include "platform/adsi.hpp"
#include "platform/logon_hours.hpp"

namespace twk::lab {
namespace {

constexpr std::int64_t kFiletimeDay = 864'000'000'000;
/// How old "lastLogonTimestamp" grows before a domain writes it again.
constexpr std::int64_t kTimestampDays = 14;

constexpr LogonRefusal kWrongPassword = {
    0xC000006D, "STATUS_LOGON_FAILURE",
    "The attempted logon is invalid. This is either due to a bad username or authentication information."};
constexpr LogonRefusal kLockedOut = {0xC0000234, "STATUS_ACCOUNT_LOCKED_OUT",
                                     "The user account has been automatically locked because too many "
                                     "invalid logon attempts or password change "
                                     "attempts have been requested."};
constexpr LogonRefusal kDisabled = {
    0xC0000072, "STATUS_ACCOUNT_DISABLED",
    "The referenced account is currently disabled and cannot be logged on to."};
constexpr LogonRefusal kExpired = {0xC0000193, "STATUS_ACCOUNT_EXPIRED", "The user account has expired."};
constexpr LogonRefusal kHours = {
    0xC000006F, "STATUS_INVALID_LOGON_HOURS",
    "The user account has time restrictions and cannot be logged onto at this time."};
constexpr LogonRefusal kPasswordExpired = {0xC0000071, "STATUS_PASSWORD_EXPIRED",
                                           "The user account password has expired."};
constexpr LogonRefusal kMustChange = {0xC0000224, "STATUS_PASSWORD_MUST_CHANGE",
                                      "The user password must be changed before logging on the first time."};

const Entry* find_logon(const LabDomain& domain, std::string_view user) {
  const std::size_t backslash = user.find('\\');
  if (backslash != base::npos && user.find('=') == base::npos) {
    if (!is_domain_name(domain, user.substr(0, backslash)))
      return nullptr;
    return domain.store.find_account(user.substr(backslash + 1));
  }
  if (const Entry* const entry = domain.store.find_account(user))
    return entry;
  if (const Entry* const entry = domain.store.find_principal(user))
    return entry;
  const Entry* entry = nullptr;
  base::Trap no_name;
  no_name([&] { entry = domain.store.find(user); });
  return entry;
}

const Entry& require_user(const LabDomain& domain, std::string_view user) {
  const Entry* const entry = find_logon(domain, user);
  if (entry == nullptr || !is_user(*entry))
    raise(ads_error::kUserNotFound, "There is no user " + base::to_valid_utf8(user));
  return *entry;
}

[[noreturn]] void refuse_logon(std::string_view user) {
  raise(ads_error::kLogonFailure, "Unknown user name or bad password: " + base::to_valid_utf8(user));
}

bool has_flag(const Entry& entry, std::int32_t flag) {
  return (read_number(entry, "userAccountControl") & flag) != 0;
}

bool has_expired(const Entry& entry, std::int64_t now) {
  const std::int64_t expires = read_number(entry, "accountExpires");
  return expires != 0 && expires <= now;
}

bool is_usable(const LabDomain& domain, const Entry& entry, std::int64_t now) {
  return !has_flag(entry, platform::kFlagAccountDisabled) && !is_locked(domain, entry, now) &&
         !has_expired(entry, now);
}

bool is_permitted_hour(const Entry& entry, base::Date at) {
  const std::string hours(entry.value("logonHours").value_or(""));
  if (hours.size() != platform::kLogonHoursSize)
    return true;
  constexpr int kHoursOfDay = 24;
  // Day 1 of the count is a Sunday.
  const auto minutes = std::llround(at.serial * kHoursOfDay * 60);
  const auto hour = static_cast<std::size_t>(minutes / 60 - kHoursOfDay) % (7 * kHoursOfDay);
  return (static_cast<unsigned char>(hours[hour / 8]) >> (hour % 8) & 1U) != 0;
}

/// The password's age does not count for an account whose password never expires.
std::optional<LogonRefusal> refusal_by_age(const LabDomain& domain, const Entry& entry, std::int64_t now) {
  if (has_flag(entry, platform::kFlagPasswordNeverExpires))
    return std::nullopt;
  const std::int64_t set = read_number(entry, "pwdLastSet");
  if (set == 0)
    return kMustChange;
  const std::int64_t age = domain.config.passwords.maximum_age * kFiletimeDay;
  return age != 0 && set + age <= now ? std::optional(kPasswordExpired) : std::nullopt;
}

/// Counts one more, and locks the account at the threshold: true when this did. A count begins anew when the
/// last wrong password is longer ago than the policy looks back, and after a lock that is over.
bool count_wrong_password(LabDomain& domain, const Entry& entry, std::int64_t now) {
  const PasswordPolicy& policy = domain.config.passwords;
  const std::int64_t window = policy.lockout_window * kFiletimeMinute;
  const bool forgotten = window != 0 && read_number(entry, "badPasswordTime") + window <= now;
  const bool was_locked = read_number(entry, "lockoutTime") != 0;
  const std::int64_t count = forgotten || was_locked ? 1 : read_number(entry, "badPwdCount") + 1;
  std::vector<Modification> changes = {{ModifyKind::kReplace, "badPwdCount", {base::to_text(count)}},
                                       {ModifyKind::kReplace, "badPasswordTime", {base::to_text(now)}}};
  const bool locks = policy.lockout_threshold > 0 && count >= policy.lockout_threshold;
  if (locks || was_locked)
    changes.push_back({ModifyKind::kReplace, "lockoutTime", {locks ? base::to_text(now) : "0"}});
  domain.store.modify(std::string(entry.dn()), changes, [] {});
  return locks;
}

void enter_logon(LabDomain& domain, const Entry& entry, std::int64_t now) {
  const std::string moment = base::to_text(now);
  std::vector<Modification> changes = {
      {ModifyKind::kReplace, "badPwdCount", {"0"}},
      {ModifyKind::kReplace, "lastLogon", {moment}},
      {ModifyKind::kReplace, "logonCount", {base::to_text(read_number(entry, "logonCount") + 1)}}};
  if (read_number(entry, "lastLogonTimestamp") + kTimestampDays * kFiletimeDay <= now)
    changes.push_back({ModifyKind::kReplace, "lastLogonTimestamp", {moment}});
  if (read_number(entry, "lockoutTime") != 0)
    changes.push_back({ModifyKind::kReplace, "lockoutTime", {"0"}});
  domain.store.modify(std::string(entry.dn()), changes, [] {});
}

}  // namespace

void check_logon(LabDomain& domain, std::string_view user, std::string_view password) {
  domain.store.refresh();
  const std::int64_t now = base::to_filetime(domain.clock.utc_now());
  const Entry* const entry = find_logon(domain, user);
  if (entry == nullptr || !is_user(*entry) || !is_usable(domain, *entry, now))
    refuse_logon(user);
  if (!is_password(*entry, password)) {
    count_wrong_password(domain, *entry, now);
    refuse_logon(user);
  }
  if (read_number(*entry, "badPwdCount") != 0) {
    domain.store.modify(std::string(entry->dn()), {{ModifyKind::kReplace, "badPwdCount", {"0"}}}, [] {});
  }
}

LogonVerdict try_logon(LabDomain& domain, std::string_view user, std::optional<std::string_view> password,
                       std::optional<base::Date> at) {
  domain.store.refresh();
  const base::Date moment = at.value_or(domain.clock.utc_now());
  const std::int64_t now = base::to_filetime(moment);
  const std::string dn = require_user(domain, user).dn();
  const Entry& entry = require_entry(domain, dn);
  LogonVerdict verdict;
  const bool locked = is_locked(domain, entry, now);
  const bool wrong = password && !is_password(entry, *password);
  const auto refuse_if = [&](bool refuses, const LogonRefusal& refusal) {
    if (refuses)
      verdict.refusals.push_back(refusal);
  };
  refuse_if(locked, kLockedOut);
  refuse_if(wrong, kWrongPassword);
  refuse_if(has_flag(entry, platform::kFlagAccountDisabled), kDisabled);
  refuse_if(has_expired(entry, now), kExpired);
  refuse_if(!is_permitted_hour(entry, moment), kHours);
  if (const auto refusal = refusal_by_age(domain, entry, now))
    verdict.refusals.push_back(*refusal);
  if (!at && wrong && !locked)
    verdict.locked_by_this = count_wrong_password(domain, entry, now);
  if (!at && password && verdict.refusals.empty())
    enter_logon(domain, entry, now);
  verdict.wrong_passwords = read_number(require_entry(domain, dn), "badPwdCount");
  return verdict;
}

void lock_account(LabDomain& domain, std::string_view user) {
  domain.store.refresh();
  const Entry& entry = require_user(domain, user);
  const std::string now = filetime_now(domain);
  const std::int64_t count =
      std::max<std::int64_t>(domain.config.passwords.lockout_threshold, read_number(entry, "badPwdCount"));
  domain.store.modify(
      std::string(entry.dn()),
      {{ModifyKind::kReplace, "lockoutTime", {now}},
       {ModifyKind::kReplace, "badPasswordTime", {now}},
       {ModifyKind::kReplace, "badPwdCount", {base::to_text(std::max<std::int64_t>(count, 1))}}},
      [] {});
}

}  // namespace twk::lab
