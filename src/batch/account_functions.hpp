#pragma once

#include "batch/run_controls.hpp"

/// The "Accounts" tab: what one press of Go does to each account of the selection.
namespace twk::batch {

/// The option buttons of `LockAcc`.
enum class AccountFunction {
  kEnable = 0,
  kDisable = 1,
  kPasswordExpires = 2,
  kPasswordNeverExpires = 3,
  kResetPassword = 4,
  kFindExpired = 5,
  kFindLocked = 6,
};

/// The button `btnGo`: starts the chosen function, after one confirmation if it changes accounts at once,
/// and while it is running stops it after the current account.
void btnGo_Click(session::Session& session);

/// Applies one of the first five functions to the users of the selection, each reported in "Log.txt" and on
/// `Label3`. False when `goes_on`, called before each user, ended it. Raises the first failure, unless the
/// hooks let it go on; the log is then still open.
bool change_accounts(session::Session& session, AccountFunction function,
                     const std::function<bool()>& goes_on, const RunHooks& hooks = {});

}  // namespace twk::batch
