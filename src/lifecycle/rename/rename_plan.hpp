#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/trees/tree_path.hpp"
#include "platform/directory.hpp"
#include "platform/network.hpp"

namespace twk::session {
struct Session;
}

/// The plan for renaming a user's folders. It is complete, with every possible obstacle tested, before
/// anything is changed.
namespace twk::lifecycle {

/// The person whose folders are renamed.
struct RenamedUser {
  platform::ObjectPtr object;
  std::string account;                 ///< the account name that the domain has now
  std::vector<std::string> old_names;  ///< what the folders may be named after, the likeliest first
  std::string new_name;
};

/// A share of the renamed folder or of one in it. A folder cannot be renamed while it is shared, so the share
/// is made again with its old list, remark, limit and type.
struct ShareChange {
  platform::ShareInfo502 before;
  platform::ShareInfo502 after;
};

/// An account's path to a folder that is renamed.
struct PathChange {
  bool is_home = false;  ///< otherwise the profile's
  std::string before;
  std::string after;
};

/// One folder that is renamed, with everything that follows from it.
struct FolderRenaming {
  TreePath before;  ///< through the share of its drive, "\\FS1\D$\Users\jo"
  TreePath after;
  std::vector<ShareChange> shares;
  std::vector<PathChange> paths;

  /// True when the two names differ only in case.
  [[nodiscard]] bool is_change_of_case() const;
  /// The temporary name of the folder during a change of case, which servers that fold case would otherwise
  /// ignore.
  [[nodiscard]] TreePath halfway() const;
};

/// What happens to a folder of the account.
enum class FolderFate {
  kNone,       ///< the account has no such path
  kMissing,    ///< the path leads to no folder
  kRefused,    ///< it is on a common share, or the path is invalid
  kOtherName,  ///< no folder of the path is named after the user
  kFollows,    ///< it follows the other one, or already has the new name
  kRenamed
};

struct PlannedFolder {
  FolderFate fate = FolderFate::kNone;
  std::string path;  ///< as the account has it
  std::string why;   ///< for the log, if missing, refused or named otherwise
  std::optional<FolderRenaming> renaming;
};

/// Home first, then the profile, in the order of renaming.
struct FoldersPlan {
  PlannedFolder home{};
  PlannedFolder profile{};
};

/// Finds out what to rename: the last folder of each path that has the name as a word ("jo", "jo.v2", "jo$",
/// not "john"). Raises when the new name cannot be a folder's or a share's, when a folder or a share is not
/// the user's own, when a folder or share of the new name exists or another account's paths lead to it, when
/// a link is on the way, and when a share's access list cannot be read. Changes nothing.
FoldersPlan plan_folders(session::Session& session, const RenamedUser& user);
/// The same for only the home or the profile.
PlannedFolder plan_folder(session::Session& session, const RenamedUser& user, bool is_home);

/// The account's home or profile, without blanks around it.
std::string path_of(const platform::ObjectPtr& user, bool is_home);

}  // namespace twk::lifecycle
