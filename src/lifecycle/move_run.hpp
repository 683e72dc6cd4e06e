#pragma once

#include <string>
#include <string_view>

#include "lifecycle/file_operation.hpp"
#include "platform/directory.hpp"
#include "session/session.hpp"

/// The move of one user, a file a stretch of its steps.
namespace twk::lifecycle {

/// What a step came to.
enum class MoveStep { kGoOn, kEnd };

/// Result of a share that was not asked for; the others are those of `resources::ShareResult`.
inline constexpr std::int16_t kNoShare = 0;

/// A home or profile of the user: where it is and where it goes.
struct MovedFolder {
  std::string old_path;   ///< as the account has it
  std::string new_local;  ///< as the new server sees it
  std::string new_admin;  ///< the way to reach that from here
  std::string new_unc;    ///< what the account gets
  std::string new_share;
  std::int16_t share_result = kNoShare;
  bool wanted = false;    ///< the template gives a new path
  std::string full_path;  ///< `new_unc` as it was before it was cut at the user's name
};

struct MoveRun {
  session::Session& session;
  std::string key;  ///< the account name, once it is known
  platform::ObjectPtr user;
  std::string path;    ///< of the user in the directory
  std::string server;  ///< the new one
  int DataMode = 0;    ///< 0 nothing, 1 move, 2 copy; the number of the file operation
  MovedFolder home;
  MovedFolder profile;
};

/// Asks about homes and profiles that are not there.
MoveStep check_old_folders(MoveRun& run);
/// Takes the new paths from the template.
void resolve_new_folders(MoveRun& run);
/// Raises what making a folder raises.
MoveStep make_new_folders(MoveRun& run);
void make_new_shares(MoveRun& run);
void set_new_permissions(MoveRun& run);
/// Moves or copies profile, then home, and takes away what is left behind.
void move_data(MoveRun& run);

}  // namespace twk::lifecycle
