#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "batch/selection_walk.hpp"
#include "controls/basic.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"

/// What the runs of the multi-user window share.
namespace twk::batch {

/// The outcome for one user of a run.
struct UserOutcome {
  std::string user;  ///< "Jo Smith" of a directory, the account name in a WinNT domain
  std::string path;  ///< see `SelectedUser`
  std::string_view light = session::kGreen;  ///< empty when nothing was done
  std::string message;
  bool done = true;                        ///< the request was carried out, possibly with warnings
  std::vector<std::string> warnings = {};  ///< the reasons in rows of the log tab
};

/// Callbacks for the caller of a run. The window has none: its runs end at the first failure, which its
/// handler reports.
struct RunHooks {
  std::function<void(const UserOutcome& outcome)> done;
  bool goes_on_after_failure = false;
};

/// What the rows added to the log tab since it had `rows` of them say about a user: the last one is the
/// outcome, followed by the earlier ones that are not GREEN; no row means that nothing was done about the
/// user.
UserOutcome outcome_since(const session::Session& session, std::size_t rows, const SelectedUser& user);

/// The walk's rules for a run: with the given `goes_on`, and with failures reported as outcomes and in the
/// log if the run should continue.
WalkRules rules_of(session::Session& session, const RunHooks& hooks, bool binds,
                   std::function<bool()> goes_on);

/// Calls `operation` for each user of the selection, with the ADsPath or in a WinNT domain the name, until
/// Cancel. It returns True when it succeeded: the user's row then becomes a ghost. If it may return False
/// although it did what was requested, `finished_is_done` lets a row of the log tab that is not RED count.
bool take_selection(session::Session& session, const RunHooks& hooks, bool finished_is_done,
                    const std::function<bool(const SelectedUser& user, const std::string& key)>& operation);

/// The handler of the window's runs: shows the text, logs it with the failure, and adds a "RED" row.
void tell_run_failure(session::Session& session, std::string_view text, const base::RuntimeError& failure);

/// Marks the window as working for a scope, with disabled controls and a start button that says "&Cancel".
/// What was disabled before stays so.
class RunningWindow {
 public:
  RunningWindow(session::Session& session, controls::Button& start,
                std::initializer_list<controls::Observable<bool>*> off);
  RunningWindow(const RunningWindow&) = delete;
  RunningWindow& operator=(const RunningWindow&) = delete;
  ~RunningWindow();

 private:
  session::MultiUser& window_;
  controls::Button& start_;
  std::string caption_;
  std::vector<controls::Observable<bool>*> off_;
};

/// A run of the window over its selection; `running` is set meanwhile. `run` returns False when it was
/// stopped, otherwise `completed` is shown. A failure is reported. The flag that stops an import stops this
/// run, too: the two never run at the same time.
void run_over_selection(session::Session& session, bool& running, std::string_view completed,
                        const std::function<bool(session::Session& session)>& run);
/// Stops such a run: shows `text` and gives the start button its caption back.
void stop_over_selection(session::Session& session, controls::Button& start, std::string_view caption,
                         std::string_view text);

}  // namespace twk::batch
