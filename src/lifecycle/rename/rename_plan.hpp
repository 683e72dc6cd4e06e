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

/// What the renaming of a user's folders comes to. All of it is found out, and whatever can be in its way is
/// tested, before anything is changed.
namespace twk::lifecycle {

/// Whose folders get another name.
struct RenamedUser {
  platform::ObjectPtr object;
  std::string account;                 ///< the account name that the domain has now
  std::vector<std::string> old_names;  ///< what the folders may be named after, the likeliest first
  std::string new_name;
};

/// A share of the renamed folder or of one in it. No folder gets another name while a share holds it, so the
/// share is made again with the list, remark, limit and type that it had.
struct ShareChange {
  platform::ShareInfo502 before;
  platform::ShareInfo502 after;
};

/// An account's word for a folder that gets another name.
struct PathChange {
  bool is_home = false;  ///< else it is the profile's
  std::string before;
  std::string after;
};

/// One folder that gets another name, with all that follows from it.
struct FolderRenaming {
  TreePath before;  ///< by the share of its drive, "\\FS1\D$\Users\jo"
  TreePath after;
  std::vector<ShareChange> shares;
  std::vector<PathChange> paths;

  /// True when the two names differ in case alone.
  [[nodiscard]] bool is_change_of_case() const;
  /// The name that the folder has for a moment during a change of case, which servers that fold case would
  /// take for none.
  [[nodiscard]] TreePath halfway() const;
};

/// What becomes of a folder of the account.
enum class FolderFate {
  kNone,       ///< the account has no such path
  kMissing,    ///< the path leads to no folder
  kRefused,    ///< it is on a share of all, or the path is none
  kOtherName,  ///< no folder of the path is named after the user
  kFollows,    ///< it goes along with the other one, or has the new name already
  kRenamed
};

struct PlannedFolder {
  FolderFate fate = FolderFate::kNone;
  std::string path;  ///< as the account has it
  std::string why;   ///< for the log, of one that is missing, refused or named otherwise
  std::optional<FolderRenaming> renaming;
};

/// Home first, then the profile, as they are renamed.
struct FoldersPlan {
  PlannedFolder home{};
  PlannedFolder profile{};
};

/// Finds out what is to be renamed: of each path the last folder that is the name, as a word ("jo", "jo.v2",
/// "jo$", not "john"). Raises when the new name cannot be a folder's or a share's, when a folder or a share
/// is not the user's own, when a folder or share of the new name is there or another account's paths lead to
/// it, when a link is on the way, and when a share's access list cannot be read. Changes nothing.
FoldersPlan plan_folders(session::Session& session, const RenamedUser& user);
/// The same for the home or the profile alone.
PlannedFolder plan_folder(session::Session& session, const RenamedUser& user, bool is_home);

/// The home or the profile that the account has, without blanks around it.
std::string path_of(const platform::ObjectPtr& user, bool is_home);

}  // namespace twk::lifecycle
