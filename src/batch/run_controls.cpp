#include "batch/run_controls.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/account_log.hpp"
#include "lifecycle/folder_use.hpp"

namespace twk::batch {

using session::Session;

UserOutcome outcome_since(const Session& session, std::size_t rows, const SelectedUser& user) {
  const controls::ListView& log = session.form1.ListView1;
  UserOutcome outcome{user.name, user.path, {}, "nothing was done"};
  if (log.size() > rows) {
    const controls::ListRow& last = log.at(log.size() - 1);
    for (const std::string_view light : {session::kGreen, session::kYellow, session::kRed}) {
      if (last.icon == light)
        outcome.light = light;
    }
    outcome.message = base::trim(last.text);
  }
  return outcome;
}

WalkRules rules_of(Session& session, const RunHooks& hooks, bool binds, std::function<bool()> goes_on) {
  WalkRules rules;
  rules.binds = binds;
  rules.goes_on = std::move(goes_on);
  if (hooks.goes_on_after_failure) {
    rules.failed = [&session, &hooks](const std::string& what, const base::RuntimeError& failure) {
      session.log.line("Error with " + what + ": " + failure.description());
      if (hooks.done)
        hooks.done({what, what, session::kRed, failure.description()});
      return true;
    };
  }
  return rules;
}

bool take_selection(Session& session, const RunHooks& hooks,
                    const std::function<bool(const SelectedUser& user, const std::string& key)>& operation) {
  const lifecycle::KnownFolders known(session);
  const auto goes_on = [&session] {
    session.platform.dialogs.DoEvents();
    return !session.import.ImportStopped;
  };
  return walk_selection(session, rules_of(session, hooks, false, goes_on), [&](SelectedUser& user) {
    const std::size_t rows = session.form1.ListView1.size();
    const bool gone = operation(user, session::is_active_directory(session) ? user.path : user.name);
    if (gone && user.row != nullptr)
      session.multi_user.ListView1.set_ghosted(*user.row, true);
    if (hooks.done)
      hooks.done(outcome_since(session, rows, user));
  });
}

void tell_run_failure(Session& session, std::string_view text, const base::RuntimeError& failure) {
  if (!session.log.is_open())
    session.log.begin_block(session);
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

}  // namespace twk::batch
