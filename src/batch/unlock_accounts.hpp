#pragma once

#include "batch/run_controls.hpp"

namespace twk::batch {

struct UnlockOrder {
  bool reset = false;                 ///< each gets the default password, to be changed at the next logon
  std::string default_password = {};  ///< see `format::reset_user_password_text`
};

/// Unlocks the users of the selection. False when the run was stopped. Raises the first failure, unless the
/// hooks let it go on.
bool unlock_accounts(session::Session& session, const UnlockOrder& order, session::RunView& view,
                     const RunHooks& hooks = {});

}  // namespace twk::batch
