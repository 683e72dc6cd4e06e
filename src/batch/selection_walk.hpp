#pragma once

#include <functional>
#include <string>

#include "controls/list_view.hpp"
#include "platform/directory.hpp"

namespace twk::base {
class RuntimeError;
}
namespace twk::session {
struct Session;
}

namespace twk::batch {

/// A user that a walk over the selection came to.
struct SelectedUser {
  std::string path;  ///< ADsPath: "LDAP://twk.test/CN=Jo Smith,…" or "WinNT://TWK/jo"
  std::string name;  ///< "Jo Smith" of a directory, the account name in a WinNT domain
  /// The user's own row of the selection; none for one that only a group or a unit of it stands for.
  controls::ListRow* row = nullptr;
  platform::ObjectPtr object;  ///< bound by `path` when the walk binds, else none
  bool as_member = false;      ///< a group of the selection stands for it
};

/// What the functions of the multi-user window want of the walk.
struct WalkRules {
  /// Each user is bound for the visit and let go behind it.
  bool binds = true;
  /// Asked before each row and each user; False ends the walk. The place to let events in.
  std::function<bool()> goes_on;
  /// Told of a row or user that could not be read, or whose visit raised, by its path or name. True goes on
  /// with the next; without it, or on False, the failure is raised.
  std::function<bool(const std::string& what, const base::RuntimeError& failure)> failed;
};

/// Visits the users of the selection (`MultiUser::ListView1`), in its order: a user's row stands for itself
/// and is passed over once it is ghosted, a group's for its members of class "user", a unit's for the users
/// right in it. Groups and units are read when the walk comes to them, whole, so that what the visits change,
/// or a connection that is opened anew, cannot tear the reading. A user that several rows stand for is
/// visited for each. A member that is no user is named in the log, if it is open.
///
/// False when `goes_on` ended it. The list's rows must stay in place until then.
bool walk_selection(session::Session& session, const WalkRules& rules,
                    const std::function<void(SelectedUser& user)>& visit);

}  // namespace twk::batch
