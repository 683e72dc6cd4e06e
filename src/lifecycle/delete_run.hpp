#pragma once

#include <cstddef>
#include <string>

#include "platform/directory.hpp"
#include "session/session.hpp"

/// The deletion of one user, a file a stretch of its steps.
namespace twk::lifecycle {

/// A home or profile of the user, as the account has it and as it is reached.
struct UserFolder {
  std::string path;  ///< as the account has it
  std::string server;
  std::string share;
  std::string unc;                ///< folder of the share, by a path that stays when the share has gone
  std::size_t tail_position = 0;  ///< 0 for a path that is a bare share
};

struct DeleteRun {
  session::Session& session;
  std::string key;
  platform::ObjectPtr user;
  std::string logon_name;
  std::string display_name;  ///< what messages call the user
  UserFolder home;
  UserFolder profile;
  bool DeleteProfile = true;
  bool Success = true;
  bool deleted = false;
  std::string DeletedName;  ///< the key, once the account has gone
};

/// Works out where home and profile are, and removes their shares. Its failures are passed over.
void delete_shares(DeleteRun& run);
/// Removes the folders that `delete_shares` found.
void delete_folders(DeleteRun& run);

}  // namespace twk::lifecycle
