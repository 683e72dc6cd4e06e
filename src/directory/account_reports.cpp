#include "directory/account_reports.hpp"

#include <algorithm>
#include <array>
#include <limits>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/account_expiry.hpp"
#include "directory/domain_search.hpp"
#include "directory/lockout.hpp"
#include "platform/adsi.hpp"

namespace twk::directory {
namespace {

using platform::ObjectPtr;
using platform::Value;

constexpr std::int64_t kFiletimeDay = 864'000'000'000;
constexpr std::string_view kDisabledBit = "userAccountControl:1.2.840.113556.1.4.803:=2";
constexpr std::string_view kPasswordNeverExpiresBit = "userAccountControl:1.2.840.113556.1.4.803:=65536";

bool is_disabled(const Value& flags) {
  return (number_of(flags) & platform::kFlagAccountDisabled) != 0;
}

std::optional<base::Date> moment_of(std::int64_t filetime) {
  return filetime <= 0 ? std::nullopt : std::optional(base::from_filetime(filetime));
}

/// Generalized time of RFC 4517.
std::string time_text(base::Date moment) {
  const base::CivilTime t = base::civil_time(moment);
  return base::to_text(t.year, 4) + base::to_text(t.month, 2) + base::to_text(t.day, 2) +
         base::to_text(t.hour, 2) + base::to_text(t.minute, 2) + base::to_text(t.second, 2) + ".0Z";
}

/// "(name>=from)(name<=until)", where the last step before `until` is still inside.
std::string inside(std::string_view attribute, const Span& span) {
  const std::string name(attribute);
  const std::int64_t first = span.from ? base::to_filetime(*span.from) : 1;
  return "(" + name + ">=" + base::to_text(std::max<std::int64_t>(first, 1)) + ")(" + name +
         "<=" + base::to_text(base::to_filetime(span.until) - 1) + ")";
}

/// "(|(!(name=*))(name=0))": a server may not answer a negation about an attribute without a value.
std::string unset(std::string_view attribute) {
  const std::string name(attribute);
  return "(|(!(" + name + "=*))(" + name + "=0))";
}

void sort(std::vector<ReportedAccount>& accounts) {
  std::vector<std::pair<std::pair<double, std::string>, ReportedAccount>> keyed;
  keyed.reserve(accounts.size());
  for (ReportedAccount& account : accounts) {
    std::pair key(account.moment ? account.moment->serial : 0, base::upper(account.name));
    keyed.emplace_back(std::move(key), std::move(account));
  }
  std::stable_sort(keyed.begin(), keyed.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::transform(keyed.begin(), keyed.end(), accounts.begin(),
                 [](auto& pair) { return std::move(pair.second); });
}

/// One search for users. `read` completes an account from its row, whose first four values are name,
/// distinguished name, flags and day of its making, or says that it is none of those wanted.
AccountReport report(const AccountDomain& domain, const std::string& conditions,
                     std::vector<std::string> attributes, const GoesOn& goes_on,
                     const std::function<bool(const FoundRow&, ReportedAccount&)>& read) {
  if (!domain.active_directory)
    base::raise(platform::ads_error::kNotImplementedByProvider, std::string(kNeedsActiveDirectory));
  AccountReport out;
  attributes.insert(attributes.begin(), {"Name", "distinguishedName", "userAccountControl", "whenCreated"});
  search_domain(domain, {}, users_with(conditions), std::move(attributes), [&](FoundRow& row) {
    ReportedAccount account{row[0].text(), row[1].text(), std::nullopt};
    account.disabled = is_disabled(row[2]);
    if (const auto* const created = std::get_if<base::Date>(&row[3].data))
      account.created = *created;
    if (read(row, account))
      out.accounts.push_back(std::move(account));
    return out.whole = goes_on();
  });
  sort(out.accounts);
  return out;
}

/// The same in a WinNT domain, account by account.
AccountReport report_of_nt(const AccountDomain& domain, const GoesOn& goes_on,
                           const std::function<bool(const platform::User&, ReportedAccount&)>& read) {
  AccountReport out;
  const std::array<std::string, 1> classes = {"User"};
  domain.services.directory.GetObject(platform::winnt_path(domain.nt_name))
      ->enumerate(classes, [&](const ObjectPtr& object) {
        const platform::User user(object);
        ReportedAccount account{user.Name(), {}, std::nullopt};
        account.disabled = user.AccountDisabled();
        if (read(user, account))
          out.accounts.push_back(std::move(account));
        return out.whole = goes_on();
      });
  sort(out.accounts);
  return out;
}

}  // namespace

AccountReport accounts_ending(const AccountDomain& domain, const Span& span, const GoesOn& goes_on) {
  if (!domain.active_directory) {
    return report_of_nt(domain, goes_on, [&](const platform::User& user, ReportedAccount& account) {
      account.moment = expiry_of(user);
      return account.moment && *account.moment < span.until && (!span.from || *account.moment >= *span.from);
    });
  }
  return report(domain, inside("accountExpires", span), {"accountExpires"}, goes_on,
                [](const FoundRow& row, ReportedAccount& account) {
                  account.moment = moment_of(number_of(row[4]));
                  return account.moment.has_value();
                });
}

AccountReport locked_accounts(const AccountDomain& domain, const GoesOn& goes_on) {
  if (!domain.active_directory) {
    return report_of_nt(domain, goes_on,
                        [](const platform::User& user, ReportedAccount&) { return user.IsAccountLocked(); });
  }
  const std::int64_t duration = lockout_duration(domain);
  const std::int64_t now = base::to_filetime(domain.services.clock.utc_now());
  return report(domain, "(lockoutTime>=1)", {"lockoutTime", "msDS-User-Account-Control-Computed"}, goes_on,
                [&](const FoundRow& row, ReportedAccount& account) {
                  const std::int64_t locked = number_of(row[4]);
                  account.moment = moment_of(locked);
                  return row[5].is_empty() ? !is_lock_over(locked, duration, now)
                                           : !platform::is_lapsed_lock(row[5]);
                });
}

AccountReport inactive_accounts(const AccountDomain& domain, base::Date since, const GoesOn& goes_on) {
  const std::int64_t limit = base::to_filetime(since);
  const std::string unused = "(&" + unset("lastLogonTimestamp") + "(whenCreated<=" + time_text(since) + "))";
  return report(domain, "(|(&" + inside("lastLogonTimestamp", {std::nullopt, since}) + ")" + unused + ")",
                {"lastLogonTimestamp", "lastLogon"}, goes_on,
                [limit](const FoundRow& row, ReportedAccount& account) {
                  const std::int64_t last = std::max(number_of(row[4]), number_of(row[5]));
                  account.moment = moment_of(last);
                  return last < limit;
                });
}

AccountReport accounts_never_used(const AccountDomain& domain, const GoesOn& goes_on) {
  return report(domain, unset("lastLogonTimestamp") + unset("lastLogon"), {}, goes_on,
                [](const FoundRow&, ReportedAccount&) { return true; });
}

std::optional<double> greatest_password_age(const AccountDomain& domain) {
  if (!domain.active_directory)
    base::raise(platform::ads_error::kNotImplementedByProvider, std::string(kNeedsActiveDirectory));
  const std::int64_t age = steps_of_domain(domain, "maxPwdAge");
  if (age >= 0 || age == kForever)
    return std::nullopt;
  return static_cast<double>(-age) / static_cast<double>(kFiletimeDay);
}

AccountReport passwords_expiring(const AccountDomain& domain, double greatest_age, const Span& span,
                                 const GoesOn& goes_on) {
  Span set{std::nullopt, {span.until.serial - greatest_age}};
  if (span.from)
    set.from = base::Date{span.from->serial - greatest_age};
  const std::string enabled = "(!(" + std::string(kDisabledBit) + "))";
  const std::string ageing = "(!(" + std::string(kPasswordNeverExpiresBit) + "))";
  return report(domain, inside("pwdLastSet", set) + enabled + ageing, {"pwdLastSet"}, goes_on,
                [greatest_age](const FoundRow& row, ReportedAccount& account) {
                  account.moment = base::Date{base::from_filetime(number_of(row[4])).serial + greatest_age};
                  return true;
                });
}

}  // namespace twk::directory
