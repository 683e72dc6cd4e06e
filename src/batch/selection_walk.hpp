#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/list_view.hpp"
#include "platform/directory.hpp"

namespace twk::base {
class RuntimeError;
}
namespace twk::session {
struct Session;
}

namespace twk::batch {

/// A user visited by a walk over the selection.
struct SelectedUser {
  std::string path;  ///< ADsPath: "LDAP://twk.test/CN=Jo Smith,…" or "WinNT://TWK/jo"
  std::string name;  ///< "Jo Smith" of a directory, the account name in a WinNT domain
  /// The user's own row of the selection; none for one that only a group or a unit of it includes.
  controls::ListRow* row = nullptr;
  platform::ObjectPtr object;                  ///< bound by `path` when the walk binds, otherwise none
  bool as_member = false;                      ///< a group of the selection includes it
  const controls::ListRow* through = nullptr;  ///< that group, or the unit; none for the user's own row
  std::vector<platform::Value> values = {};    ///< of `WalkRules::attributes`, where a unit was searched
};

/// What the functions of the multi-user window require of the walk.
struct WalkRules {
  /// Each user is bound for the visit and released after it.
  bool binds = true;
  /// Attributes of users that the search of a unit is to return as well.
  std::vector<std::string> attributes = {};
  /// Called before each row and each user; False ends the walk. The place to let events in.
  std::function<bool()> goes_on;
  /// Called with the path or name of a row or user that could not be read, or whose visit raised. True
  /// continues with the next; without it, or on False, the failure is raised.
  std::function<bool(const std::string& what, const base::RuntimeError& failure)> failed;
};

/// Leaves the user of that ADsPath out of the walks over the selection, whichever rows include it.
void leave_out(session::Session& session, std::string_view path);

/// Visits the users of the selection (`LoadedDomain::selection`), in its order: a user's row means that user
/// and is skipped once it is a ghost, a group's its members of class "user", a unit's the users directly in
/// it, by the terms of the selection also those below it or only those that a filter finds. Groups and units
/// are read completely when the walk reaches them, so that changes made by the visits, or a reopened
/// connection, cannot disturb the reading. A user included by several rows is visited for each. A member that
/// is not a user is named in the log, if it is open. Rows that a filter hides are left out.
///
/// False when `goes_on` ended it. The list's rows must stay in place until then.
bool walk_selection(session::Session& session, const WalkRules& rules,
                    const std::function<void(SelectedUser& user)>& visit);

}  // namespace twk::batch
