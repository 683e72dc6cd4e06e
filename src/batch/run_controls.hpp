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

/// What the runs of the multi-user window have in common.
namespace twk::batch {

/// What became of one user of a run.
struct UserOutcome {
  std::string user;  ///< "Jo Smith" of a directory, the account name in a WinNT domain
  std::string path;  ///< see `SelectedUser`
  std::string_view light = session::kGreen;  ///< empty when nothing was done
  std::string message;
  bool done = true;                        ///< what was asked for came about, with warnings perhaps
  std::vector<std::string> warnings = {};  ///< reasons that rows of the log tab bear
};

/// What whoever starts a run wants to know of it. The window wants nothing: its runs end at the first
/// failure, which its handler tells.
struct RunHooks {
  std::function<void(const UserOutcome& outcome)> done;
  bool goes_on_after_failure = false;
};

/// What the rows that the log tab got since it had `rows` of them tell of a user: the last one is the
/// outcome, those before it that are no GREEN ones are told behind it; none stands for a user about whom
/// nothing was done.
UserOutcome outcome_since(const session::Session& session, std::size_t rows, const SelectedUser& user);

/// The walk's rules for a run: `goes_on` as given, and failures told as outcomes, and in the log, where the
/// run is to go on.
WalkRules rules_of(session::Session& session, const RunHooks& hooks, bool binds,
                   std::function<bool()> goes_on);

/// Does something with each user of the selection, by the ADsPath or in a WinNT domain by the name, until a
/// Cancel. `operation` gives True when it is done: the user's row is ghosted then. Where it may do what was
/// asked for and give False all the same, `finished_is_done` lets a row of the log tab that is not RED count.
bool take_selection(session::Session& session, const RunHooks& hooks, bool finished_is_done,
                    const std::function<bool(const SelectedUser& user, const std::string& key)>& operation);

/// The handler of the window's runs: shows the text, logs it with the failure, and adds a "RED" row.
void tell_run_failure(session::Session& session, std::string_view text, const base::RuntimeError& failure);

/// Marks the window as working, with controls that are off and a start button that says "&Cancel", until it
/// goes. What was off before stays off.
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

}  // namespace twk::batch
