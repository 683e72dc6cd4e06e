#include "batch/run_controls.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/account/account_log.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "session/form1.hpp"
#include "session/loaded_domain.hpp"
#include "session/multi_user.hpp"

namespace twk::batch {

using session::Session;

namespace {

std::string_view light_of(const controls::ListRow& row) {
  for (const std::string_view light : {session::kGreen, session::kYellow}) {
    if (row.icon == light)
      return light;
  }
  return session::kRed;
}

}  // namespace

UserOutcome outcome_since(const Session& session, std::size_t rows, const SelectedUser& user) {
  const controls::ListView& log = session.form1.ListView1;
  UserOutcome outcome{user.name, user.path, {}, "nothing was done", false};
  if (log.size() == rows)
    return outcome;
  const controls::ListRow& last = log.at(log.size() - 1);
  outcome.light = light_of(last);
  outcome.message = base::trim(last.text);
  for (std::size_t i = rows; i + 1 < log.size(); ++i) {
    if (light_of(log.at(i)) != session::kGreen)
      outcome.message += "; " + std::string(base::trim(log.at(i).text));
  }
  return outcome;
}

WalkRules rules_of(Session& session, const RunHooks& hooks, bool binds, std::function<bool()> goes_on) {
  WalkRules rules;
  rules.binds = binds;
  rules.goes_on = std::move(goes_on);
  if (hooks.goes_on_after_failure) {
    rules.failed = [&session, &hooks](const std::string& what, const base::RuntimeError& failure) {
      const std::string reason = base::in_words(failure);
      session.log.line("Error with " + what + ": " + reason);
      if (hooks.done)
        hooks.done({what, what, session::kRed, reason, false});
      return true;
    };
  }
  return rules;
}

bool take_selection(Session& session, const RunHooks& hooks, bool finished_is_done,
                    const std::function<bool(const SelectedUser& user, const std::string& key)>& operation) {
  const lifecycle::KnownFolders known(session);
  const auto goes_on = [&session] {
    session.platform.dialogs.DoEvents();
    return !session.import.ImportStopped;
  };
  return walk_selection(session, rules_of(session, hooks, false, goes_on), [&](SelectedUser& user) {
    const std::size_t rows = session.form1.ListView1.size();
    session.log.take_told();
    const bool done = operation(user, session::is_active_directory(session) ? user.path : user.name);
    if (done && user.row != nullptr)
      session.domain.selection.set_ghosted(*user.row, true);
    if (!hooks.done)
      return;
    UserOutcome outcome = outcome_since(session, rows, user);
    const bool finished = outcome.light == session::kGreen || outcome.light == session::kYellow;
    outcome.warnings = session.log.take_told();
    outcome.done = done || (finished_is_done && finished);
    hooks.done(outcome);
  });
}

void tell_run_failure(Session& session, std::string_view text, const base::RuntimeError& failure) {
  if (!session.log.is_open())
    session.log.begin_block();
  lifecycle::prepare_failure(session, text, text);
  lifecycle::report_stopped(session, failure);
}

RunningWindow::RunningWindow(Session& session, controls::Button& start,
                             std::initializer_list<controls::Observable<bool>*> off)
    : window_(session.multi_user), start_(start), caption_(start.caption) {
  std::vector<controls::Observable<bool>*> wanted(off);
  for (controls::Button* const other : {&window_.Del_User, &window_.btn_MoveUser, &window_.btnGo}) {
    if (other != &start)
      wanted.push_back(&other->enabled);
  }
  for (controls::Observable<bool>* const enabled : wanted) {
    if (!enabled->get())
      continue;
    *enabled = false;
    off_.push_back(enabled);
  }
  window_.working = true;
  start_.caption = std::string(session::kCancelCaption);
}

RunningWindow::~RunningWindow() {
  window_.working = false;
  start_.caption = caption_;
  for (controls::Observable<bool>* const enabled : off_)
    *enabled = true;
}

void run_over_selection(Session& session, bool& running, std::string_view completed,
                        const std::function<bool(Session& session)>& run) {
  running = true;
  session.import.ImportStopped = false;
  try {
    if (run(session))
      session.multi_user.Label3.caption = std::string(completed);
  } catch (const base::RuntimeError& failure) {
    tell_run_failure(session, "Error Retrieving Domain Info.", failure);
  }
  running = false;
  // Work on files without a Cancel button checks the flag, too.
  session.import.ImportStopped = false;
}

void stop_over_selection(Session& session, controls::Button& start, std::string_view caption,
                         std::string_view text) {
  session.import.ImportStopped = true;
  session.multi_user.Label3.caption = std::string(text);
  start.caption = std::string(caption);
}

}  // namespace twk::batch
