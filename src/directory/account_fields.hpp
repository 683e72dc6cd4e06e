#pragma once

#include <array>
#include <optional>
#include <string>

#include "base/dates.hpp"
#include "base/errors.hpp"
#include "directory/custom_attributes.hpp"
#include "platform/directory.hpp"
#include "platform/platform.hpp"

/// The fields of one account, in both kinds of domain.
namespace twk::directory {

/// The domain of an account that is read.
struct AccountDomain {
  const platform::Platform& services;
  std::string name;     ///< DNS name, in a WinNT domain the NetBIOS name
  std::string nt_name;  ///< the name in WinNT paths
  bool active_directory = true;
};

/// Fields of an account as a person reads and types them. A WinNT domain has none of `FirstName`, `LastName`,
/// `Initials`, `Office`, `Mail`, `LogonName`, `LogonSuffix`, `PreW2K` and `Custom`.
struct UserDetails {
  std::string key;   ///< what it is reached by: the ADsPath, in a WinNT domain the name
  std::string name;  ///< common name, in a WinNT domain the account's name
  std::string FullName;
  std::string Description;
  std::string FirstName;
  std::string LastName;
  std::string Initials;
  std::string Office;
  std::string Mail;
  std::string LogonName;    ///< the principal name before its "@"
  std::string LogonSuffix;  ///< the rest, with the "@"; without a principal name that of the domain
  std::string PreW2K;       ///< samAccountName
  std::string Profile;
  std::string HomeDirectory;
  std::string HomeDrive;
  std::string LoginScript;
  std::string Expires;             ///< "31/12/2026", "Never" …, see `expiry_text`
  std::optional<base::Date> ends;  ///< the same as a moment in UTC; none for never
  std::array<std::string, 4>
      Custom{};  ///< the administrator's own attributes; several values have commas between
  bool must_change = false;
  bool cannot_change = false;
  bool locked_out = false;
  bool never_expires = false;  ///< the password
  bool disabled = false;
};

/// The fields but `key` and `Custom`. An attribute without a value leaves its field empty. What else cannot
/// be read goes to `fault`, which keeps the first failure, and leaves its field empty as well; in a WinNT
/// domain it is raised, since the account is one object there.
UserDetails read_account(const AccountDomain& domain, const platform::ObjectPtr& account,
                         std::optional<base::RuntimeError>& fault);

/// Which groups of fields are written. In a WinNT domain all are.
struct ChangedParts {
  bool Account = false;  ///< names of the logon, mail address, expiry
  bool Profile = false;  ///< profile, home directory and its drive, logon script
  bool General = false;
  bool Flags = false;
  std::array<bool, kCustomFields>
      Custom{};  ///< by itself each; saving one with several values would leave a single one
};
/// What differs between two states of an account.
ChangedParts parts_that_differ(const UserDetails& before, const UserDetails& after);

/// An account as it shall be.
struct UserChange {
  UserDetails details;
  ChangedParts changed;
  bool must_change_before = false;  ///< as it was read: written again, it would restart the password's age
  bool was_locked_out = false;      ///< only a lock-out that was there can be lifted
};

}  // namespace twk::directory
