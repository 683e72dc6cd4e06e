#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/domain/lab_domain.hpp"

/// Who may log on to the domain, and why not.
namespace twk::lab {

/// Checks a logon by "DOMAIN\name", a bare account name, a principal name or a distinguished name. Raises
/// kLogonFailure for an unknown user, a wrong password, a disabled, expired or locked account. A wrong
/// password is counted, and the account locked when the policy's threshold is reached; a correct one resets
/// the count to 0.
void check_logon(LabDomain& domain, std::string_view user, std::string_view password);

/// The answer of a domain to a logon that it refuses, with the text of [MS-ERREF] 2.3.1.
struct LogonRefusal {
  std::uint32_t status = 0;
  std::string_view name;  ///< "STATUS_ACCOUNT_LOCKED_OUT"
  std::string_view text;
};

struct LogonVerdict {
  /// All that stands against it, in the order in which a domain looks: it answers with the first.
  std::vector<LogonRefusal> refusals;
  std::int64_t wrong_passwords = 0;  ///< counted by now
  bool locked_by_this = false;       ///< the threshold is reached
};

/// A person's logon at a workstation, by any of the names above; without a password only everything else is
/// looked at. At a moment `at` other than now nothing is written. Otherwise a wrong password is counted as in
/// `check_logon`, and a logon that succeeds with its password is entered as a domain does. Raises
/// kUserNotFound.
LogonVerdict try_logon(LabDomain& domain, std::string_view user, std::optional<std::string_view> password,
                       std::optional<base::Date> at);

/// Locks the account from now on, as too many wrong passwords do. Raises kUserNotFound.
void lock_account(LabDomain& domain, std::string_view user);

}  // namespace twk::lab
