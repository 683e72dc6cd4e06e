#pragma once

#include <string>

#include "session/current_run.hpp"

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// Whose profile is deleted.
struct ProfileOrder {
  std::string name;  ///< as the tree shows it
  std::string key;   ///< the LDAP path; in a WinNT domain the name counts
  session::RunTerms terms;
};

/// A workstation that keeps a copy of the profile.
struct ProfileWorkstation {
  std::string name;      ///< "PC7"; backslashes before it do not count
  bool is_nt40 = false;  ///< otherwise Windows 2000
};

/// Deletes the folder of the account's profile path. True when it is gone; the status line says how it ended.
bool delete_server_profile(session::Session& session, const ProfileOrder& order, session::RunView& view);
/// Deletes the copy on a workstation.
bool delete_workstation_profile(session::Session& session, const ProfileOrder& order,
                                const ProfileWorkstation& workstation, session::RunView& view);

}  // namespace twk::lifecycle
