#pragma once

#include "batch/run_controls.hpp"

namespace twk::batch {

/// The button of the "Move Users" tab: starts the run over the selection, and while it is running stops it
/// after the current user.
void btn_MoveUser_Click(session::Session& session);

/// Moves the users of the selection to the chosen site and template. The row of a moved user becomes a ghost,
/// so that a second run takes only the others. False when it was stopped. Raises a failure to read a group or
/// a unit, unless the hooks let it go on.
bool move_selection(session::Session& session, const RunHooks& hooks = {});

}  // namespace twk::batch
