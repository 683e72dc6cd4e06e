#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "batch/account_change.hpp"
#include "batch/selection_walk.hpp"
#include "session/run_outcome.hpp"
#include "session/session.hpp"

/// What the runs over a selection share.
namespace twk::batch {

/// The outcome for one user of a run.
struct UserOutcome : session::RunOutcome {
  std::string user;  ///< "Jo Smith" of a directory, the account name in a WinNT domain
  std::string path;  ///< see `SelectedUser`
};

/// Callbacks for the caller of a run. The window has none: its runs end at the first failure, which its
/// handler reports.
struct RunHooks {
  std::function<void(const UserOutcome& outcome)> done;
  bool goes_on_after_failure = false;
  /// Called with what can be taken back again, after it was done.
  std::function<void(const AccountChange& change)> changed = {};
};

/// The walk's rules for a run, which ends when the session's run is stopped; failures are reported as
/// outcomes and in the log if it should continue.
WalkRules rules_of(session::Session& session, const RunHooks& hooks, bool binds);

/// What an operation did with a user of the selection.
struct Taken {
  session::RunOutcome outcome;
  bool leaves = false;  ///< the user's row becomes a ghost
};

/// Calls `operation` for each user of the selection, with the ADsPath or in a WinNT domain the name, until
/// the session's run is stopped.
bool take_selection(session::Session& session, const RunHooks& hooks,
                    const std::function<Taken(const SelectedUser& user, const std::string& key)>& operation);

/// The handler of a window's runs: shows the text, logs it with the failure, and adds a "RED" row.
void tell_run_failure(session::Session& session, std::string_view text, const base::RuntimeError& failure);

}  // namespace twk::batch
