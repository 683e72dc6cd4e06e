#pragma once

#include <string>

#include "batch/run_controls.hpp"

namespace twk::batch {

/// Moves the users of the selection into the unit or container of that distinguished name, as the directory
/// spells it. Who is there already is done. A moved user's row becomes a ghost. False when the run was
/// stopped. Raises when the unit cannot be bound, and the first failure, unless the hooks let the run go on.
bool move_to_unit(session::Session& session, const std::string& unit, session::RunView& view,
                  const RunHooks& hooks);

}  // namespace twk::batch
