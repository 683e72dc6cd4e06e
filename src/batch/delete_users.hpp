#pragma once

#include "batch/run_controls.hpp"

namespace twk::batch {

/// The button of the "Delete Users" tab: starts the run over the selection, and stops it while it is under
/// way, behind the user in hand.
void Del_User_Click(session::Session& session);

/// Deletes the users of the selection as boxes and flags say. A row whose user is gone becomes a ghost.
/// False when it was stopped. Raises what reading a group or a unit raises, unless the hooks let it go on.
bool delete_selection(session::Session& session, const RunHooks& hooks = {});

}  // namespace twk::batch
