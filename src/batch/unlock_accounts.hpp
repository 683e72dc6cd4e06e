#pragma once

#include <functional>

#include "batch/run_controls.hpp"

namespace twk::batch {

/// Unlocks the users of the selection, and with `Unlock_Reset` ticked sets the default password, to be
/// changed at the next logon. False when `goes_on`, called before each user, ended it. Raises the first
/// failure, unless the hooks let it go on.
bool unlock_accounts(session::Session& session, const std::function<bool()>& goes_on,
                     const RunHooks& hooks = {});

}  // namespace twk::batch
