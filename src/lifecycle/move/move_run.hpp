#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "creation/creation_run.hpp"
#include "lifecycle/move/move_order.hpp"
#include "lifecycle/trees/file_operation.hpp"
#include "platform/directory.hpp"
#include "session/session.hpp"

/// The move of one user, with a file for each part.
namespace twk::lifecycle {

/// The result of a step.
enum class MoveStep {
  kGoOn,
  kDeclined,  ///< a person said No
  kFailed     ///< the reason is in the log
};

/// The result for a share that was not requested; the others are those of `resources::ShareResult`.
inline constexpr std::int16_t kNoShare = 0;

/// What is known about the old folder before the first change.
enum class OldFolder {
  kNone,     ///< the account has none, or it is not the user's own, or it stays where it is
  kThere,    ///< its contents will be moved to the new place
  kMissing,  ///< the server answers, but does not have it
  kAlready,  ///< it is the new place
  kUnknown   ///< it cannot be reached from here, so it cannot be copied
};

/// A home or profile of the user: where it is and where it goes.
struct MovedFolder {
  std::string_view what;       ///< "home" or "profile", as in `FolderClaim`
  std::string old_path = {};   ///< as the account has it
  std::string new_local = {};  ///< as the new server sees it
  std::string new_admin = {};  ///< the path to reach that from here
  std::string new_unc = {};    ///< the account's new path
  std::string new_share = {};
  std::int16_t share_result = kNoShare;
  bool wanted = false;         ///< the template has a new path
  std::string full_path = {};  ///< `new_unc` as it was before it was cut at the user's name
  OldFolder old = OldFolder::kNone;
  std::string except = {};  ///< the other one's old folder, when that is inside this one and moves separately
  bool was_there = false;   ///< the new folder existed, so an interrupted move may have filled it
  bool used_by_others = false;  ///< the new folder; the person accepted that
};

struct MoveRun {
  session::Session& session;
  const MoveOrder& order;
  std::string key;  ///< the account name, once it is known
  platform::ObjectPtr user;
  std::string path;                      ///< of the user in the directory
  std::string server;                    ///< the new one
  creation::TemplateValues target = {};  ///< the template's
  creation::SiteValues site = {};
  int DataMode = 0;  ///< the `MovedData` of the order, until a share could not be made
  MovedFolder home;
  MovedFolder profile;
  bool warned = false;                        ///< something went wrong, and the reason is in the log
  std::optional<bool> new_paths_anyway = {};  ///< the person's answer, once asked
};

/// A line that makes the user's light YELLOW.
void warn(MoveRun& run, std::string_view text);
/// The reason why the user is not moved.
MoveStep refuse(MoveRun& run, const std::string& why);
/// True when the account should get its new paths although its data stays where it is; this is asked once,
/// with what failed. It counts as a warning for the user.
bool wants_new_paths(MoveRun& run, const std::string& why);
/// `refuse`, unless the person accepts that.
MoveStep refuse_unless_wanted(MoveRun& run, const std::string& why);

/// Why a profile is not moved, in the order in which the reasons are reported; none for one that is.
std::vector<std::string_view> reasons_to_leave_profile(const std::string& path);

/// Asks about missing homes and profiles.
MoveStep check_old_folders(MoveRun& run);
/// Takes the new paths from the template.
void resolve_new_folders(MoveRun& run);
/// The new folder on its server, in the spellings that the server may have for it; the one through a new
/// share first.
std::vector<std::string> made_places(MoveRun& run, const MovedFolder& folder);
/// The folder of `folder.new_unc` on its server, as it will be when the new shares are made; none when that
/// server does not have the share and will not get it.
std::optional<std::string> new_place(MoveRun& run, const MovedFolder& folder);
/// How many folders deeper that is than the new one.
std::size_t levels_below_new(MoveRun& run, const MovedFolder& folder);
/// Finds out before the first change what would make the move fail: a new place that cannot be reached or
/// belongs to another user, a share that belongs to someone else, a path that leads nowhere, an old folder
/// that is not the user's alone or cannot be reached, an account that cannot be written.
MoveStep check_move(MoveRun& run);
/// Lets new shares made by an interrupted move count as the account's own, until that is undone.
void claim_new_places(MoveRun& run, bool claims);
/// Raises a failure to make a folder.
MoveStep make_new_folders(MoveRun& run);
MoveStep make_new_shares(MoveRun& run);
void set_new_permissions(MoveRun& run);
/// Copies profile and home, and then, when both are complete, removes the old ones.
MoveStep move_data(MoveRun& run);

}  // namespace twk::lifecycle
