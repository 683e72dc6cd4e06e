#pragma once

#include "batch/run_controls.hpp"

namespace twk::batch {

/// Unlocks the users of the selection, and with `reset` sets the default password, to be changed at the next
/// logon. False when the run was stopped. Raises the first failure, unless the hooks let it go on.
bool unlock_accounts(session::Session& session, bool reset, session::RunView& view,
                     const RunHooks& hooks = {});

}  // namespace twk::batch
