#pragma once

#include "batch/run_controls.hpp"
#include "lifecycle/deletion/delete_order.hpp"

namespace twk::batch {

/// Deletes the users of the selection. The row of a deleted user becomes a ghost. False when it was stopped.
/// Raises a failure to read a group or a unit, unless the hooks let it go on.
bool delete_selection(session::Session& session, const lifecycle::DeleteOrder& order, session::RunView& view,
                      const RunHooks& hooks = {});

}  // namespace twk::batch
