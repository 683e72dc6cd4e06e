#pragma once

#include <string>

#include "session/run_outcome.hpp"

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// Whose password is reset.
struct PasswordReset {
  std::string name;                   ///< as the tree shows it
  std::string key;                    ///< the LDAP path; in a WinNT domain the name counts
  bool confirm = false;               ///< the person is asked first
  std::string default_password = {};  ///< see `format::reset_user_password_text`
};

/// Sets the default password, to be changed at the next logon. Log, log tab and the status line report it. No
/// light when the person said No.
session::RunOutcome reset_password(session::Session& session, const PasswordReset& order);

}  // namespace twk::lifecycle
