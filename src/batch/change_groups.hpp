#pragma once

#include <string>
#include <vector>

#include "batch/run_controls.hpp"
#include "groups/group_object.hpp"

namespace twk::batch {

/// The groups that the users of a selection join and leave; keys are paths, in a WinNT domain names.
struct GroupsOrder {
  std::vector<groups::GroupRow> add;
  std::vector<groups::GroupRow> remove;
};

/// Adds the users of the selection to groups and removes them from others. Who is in a group already, or not
/// in one that is to be left, is done. GREEN when nothing was refused, YELLOW when something was, RED when
/// nothing else was done; a primary group cannot be left. False when the run was stopped. Raises when a group
/// cannot be bound, and the first user who cannot be read, unless the hooks let the run go on.
bool change_groups(session::Session& session, const GroupsOrder& order, session::RunView& view,
                   const RunHooks& hooks);

}  // namespace twk::batch
