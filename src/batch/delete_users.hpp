#pragma once

#include "batch/run_controls.hpp"

namespace twk::batch {

/// The button of the "Delete Users" tab: starts the run over the selection, and while it is running stops it
/// after the current user.
void Del_User_Click(session::Session& session);

/// Deletes the users of the selection according to boxes and flags. The row of a deleted user becomes a
/// ghost. False when it was stopped. Raises a failure to read a group or a unit, unless the hooks let it go
/// on.
bool delete_selection(session::Session& session, const RunHooks& hooks = {});

}  // namespace twk::batch
