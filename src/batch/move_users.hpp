#pragma once

#include "batch/run_controls.hpp"
#include "lifecycle/move/move_order.hpp"

namespace twk::batch {

/// Moves the users of the selection to a site and a template. The row of a moved user becomes a ghost. False
/// when it was stopped. Raises a failure to read a group or a unit, unless the hooks let it go on.
bool move_selection(session::Session& session, const lifecycle::MoveOrder& order, session::RunView& view,
                    const RunHooks& hooks = {});

}  // namespace twk::batch
