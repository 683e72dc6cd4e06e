#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/dates.hpp"
#include "directory/account_fields.hpp"

/// Which accounts of a domain need attention. In Active Directory each report is one search whose filter the
/// server judges; nobody is bound. A WinNT domain has no such search: its users are read one by one, and only
/// for the end of an account and for locks.
namespace twk::directory {

struct ReportedAccount {
  std::string name;  ///< common name, in a WinNT domain the account's
  std::string dn;    ///< empty in a WinNT domain
  /// In UTC: the end of the account or its password, the beginning of the lock, the last logon. None for a
  /// WinNT account's lock, and for someone who never logged on.
  std::optional<base::Date> moment;
  std::optional<base::Date> created = {};  ///< in UTC, where the report asks for it
  bool disabled = false;
};

struct AccountReport {
  std::vector<ReportedAccount> accounts;  ///< the earliest moment first, then by name
  bool whole = true;                      ///< false when it was stopped before the last account
};

/// Asked after each account; False ends the report.
using GoesOn = std::function<bool()>;

/// Moments in UTC: at `from` or later, when given, and before `until`.
struct Span {
  std::optional<base::Date> from;
  base::Date until;
};

AccountReport accounts_ending(const AccountDomain& domain, const Span& span, const GoesOn& goes_on);

/// A lock that is over, by the server's own word or by the lockout duration of the domain, is none.
AccountReport locked_accounts(const AccountDomain& domain, const GoesOn& goes_on);

/// Those whose last logon, as the domain's controllers tell each other it, was before `since`, and those who
/// never logged on and were made before. Controllers do so every 14 days at most, so a later logon that the
/// asked server knows of counts, too.
AccountReport inactive_accounts(const AccountDomain& domain, base::Date since, const GoesOn& goes_on);
AccountReport accounts_never_used(const AccountDomain& domain, const GoesOn& goes_on);

/// The age at which the domain's passwords expire, in days; none for never.
std::optional<double> greatest_password_age(const AccountDomain& domain);
/// Enabled accounts whose password expires in that span, by `greatest_password_age`; without those whose
/// password never expires and those who must change it anyway.
AccountReport passwords_expiring(const AccountDomain& domain, double greatest_age, const Span& span,
                                 const GoesOn& goes_on);

/// The reports that need a search raise this in a WinNT domain.
inline constexpr std::string_view kNeedsActiveDirectory =
    "A WinNT domain does not tell this: the report needs Active Directory.";

}  // namespace twk::directory
