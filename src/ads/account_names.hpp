#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/security.hpp"

/// Names of accounts and servers as people write them, and the accounts that every server knows.
namespace twk::ads {

/// A name with the domain or server in front of it, if any.
struct AccountName {
  std::string_view domain;
  std::string_view name;
};

/// Takes "TWK\jo" apart at the first backslash.
AccountName split_account_name(std::string_view account);

/// A server's name without the two backslashes that may precede it.
std::string_view without_backslashes(std::string_view server);

/// "Everyone", "System", "BUILTIN\Users", in any case; [MS-DTYP] 2.4.2.4. None for any other name.
std::optional<platform::AccountSid> well_known_account(const AccountName& wanted);

/// "NT AUTHORITY\SYSTEM", "Everyone"; none for an identifier that is not the same everywhere.
std::optional<std::string> well_known_text(const platform::Sid& sid);

}  // namespace twk::ads
