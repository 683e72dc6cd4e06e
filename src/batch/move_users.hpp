#pragma once

#include "batch/run_controls.hpp"

namespace twk::batch {

/// The button of the "Move Users" tab: starts the run over the selection, and stops it while it is under way,
/// behind the user in hand.
void btn_MoveUser_Click(session::Session& session);

/// Moves the users of the selection to the site and template that are chosen. The row of a user who was moved
/// becomes a ghost, so that a second run takes only those who were not. False when it was stopped.
/// Raises what reading a group or a unit raises, unless the hooks let it go on.
bool move_selection(session::Session& session, const RunHooks& hooks = {});

}  // namespace twk::batch
