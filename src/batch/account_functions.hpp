#pragma once

#include "batch/run_controls.hpp"

/// What is done to each account of a selection at once.
namespace twk::batch {

enum class AccountFunction {
  kEnable = 0,
  kDisable = 1,
  kPasswordExpires = 2,
  kPasswordNeverExpires = 3,
  kResetPassword = 4,
};

struct AccountOrder {
  AccountFunction function = AccountFunction::kEnable;
  bool change_at_logon = false;       ///< of a password that never expires: a new one at the next logon
  std::string default_password = {};  ///< that is reset to, see `format::reset_user_password_text`
};

/// Applies the function to the users of the selection, each reported in "Log.txt" and to the view. False when
/// the run was stopped. Raises the first failure, unless the hooks let it go on; the log is then still open.
bool change_accounts(session::Session& session, const AccountOrder& order, session::RunView& view,
                     const RunHooks& hooks = {});

}  // namespace twk::batch
