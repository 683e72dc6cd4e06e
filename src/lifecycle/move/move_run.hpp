#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/trees/file_operation.hpp"
#include "platform/directory.hpp"
#include "session/session.hpp"

/// The move of one user, a file a stretch of its steps.
namespace twk::lifecycle {

/// What a step came to.
enum class MoveStep {
  kGoOn,
  kDeclined,  ///< a person said No
  kFailed     ///< the log was given the reason
};

/// Result of a share that was not asked for; the others are those of `resources::ShareResult`.
inline constexpr std::int16_t kNoShare = 0;

/// What is known of the old folder before the first change.
enum class OldFolder {
  kNone,     ///< the account has none, or it is none of the user's own, or it stays where it is
  kThere,    ///< its contents are to go to the new place
  kMissing,  ///< the server answers, and does not have it
  kAlready,  ///< it is the new place
  kUnknown   ///< it cannot be reached from here, so it cannot be copied
};

/// A home or profile of the user: where it is and where it goes.
struct MovedFolder {
  std::string_view what;       ///< "home" or "profile", as in `FolderClaim`
  std::string old_path = {};   ///< as the account has it
  std::string new_local = {};  ///< as the new server sees it
  std::string new_admin = {};  ///< the way to reach that from here
  std::string new_unc = {};    ///< what the account gets
  std::string new_share = {};
  std::int16_t share_result = kNoShare;
  bool wanted = false;         ///< the template gives a new path
  std::string full_path = {};  ///< `new_unc` as it was before it was cut at the user's name
  OldFolder old = OldFolder::kNone;
  std::string except = {};  ///< the other one's old folder, when that lies in this one's and goes its own way
  bool was_there = false;   ///< the new folder, so that a move that broke off may have filled it
  bool used_by_others = false;  ///< the new folder; the person wants it all the same
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
  bool warned = false;                        ///< not all went well, and the log was given the reason
  std::optional<bool> new_paths_anyway = {};  ///< what the person said, once it was asked
};

/// A line that makes the user's light YELLOW.
void warn(MoveRun& run, std::string_view text);
/// The reason why the user is not moved.
MoveStep refuse(MoveRun& run, const std::string& why);
/// True when the account is to get its new paths though its data stays where it is, which is asked once, with
/// what failed. The user is warned of then.
bool wants_new_paths(MoveRun& run, const std::string& why);
/// `refuse`, unless that is wanted.
MoveStep refuse_unless_wanted(MoveRun& run, const std::string& why);

/// Why a profile is none that moves, in the order in which it is told; none for one that does.
std::vector<std::string_view> reasons_to_leave_profile(const std::string& path);

/// Asks about homes and profiles that are not there.
MoveStep check_old_folders(MoveRun& run);
/// Takes the new paths from the template.
void resolve_new_folders(MoveRun& run);
/// The new folder on its server, in the spellings that the server may have for it; first that of a new share.
std::vector<std::string> made_places(MoveRun& run, const MovedFolder& folder);
/// The folder of `folder.new_unc` on its server, as it will be when the new shares are made; none when that
/// server does not have the share and does not get it.
std::optional<std::string> new_place(MoveRun& run, const MovedFolder& folder);
/// How many folders deeper that is than the new one.
std::size_t levels_below_new(MoveRun& run, const MovedFolder& folder);
/// Finds out before the first change what would make the move fail: a new place that cannot be reached or is
/// another's, a share that is somebody else's, a path that leads nowhere, an old folder that is not the
/// user's alone or cannot be reached, an account that may not be written.
MoveStep check_move(MoveRun& run);
/// Lets new shares that a move which broke off has made count as the account's own, until that is taken back.
void claim_new_places(MoveRun& run, bool claims);
/// Raises what making a folder raises.
MoveStep make_new_folders(MoveRun& run);
MoveStep make_new_shares(MoveRun& run);
void set_new_permissions(MoveRun& run);
/// Copies profile and home, and then, when both are whole, takes away what is left behind.
MoveStep move_data(MoveRun& run);

}  // namespace twk::lifecycle
