#include "windows/multi_user/run_window.hpp"

#include "base/errors.hpp"
#include "batch/run_controls.hpp"
#include "session/run_scope.hpp"

namespace twk::windows {

void MultiUserView::status(std::string_view text) {
  session_.status.panel1 = std::string(text);
}

void MultiUserView::step(std::string_view caption) {
  session_.multi_user.Label3.caption = std::string(caption);
}

void MultiUserView::progress(int percent) {
  session_.multi_user.ProgressBar1.value = percent;
}

void MultiUserView::files(std::string_view text, int /*percent*/) {
  session_.multi_user.progress.caption = std::string(text);
}

bool MultiUserView::going_on() {
  session_.platform.dialogs.DoEvents();
  return start_.caption == std::string(kCancelCaption);
}

RunningWindow::RunningWindow(Desktop& session, controls::Button& start,
                             std::initializer_list<controls::Observable<bool>*> off)
    : window_(session.multi_user), start_(start), caption_(start.caption) {
  std::vector<controls::Observable<bool>*> wanted(off);
  for (controls::Button* const other : {&window_.Del_User, &window_.btn_MoveUser, &window_.btnGo,
                                        &window_.change_groups, &window_.move_to_unit}) {
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
  start_.caption = std::string(kCancelCaption);
}

RunningWindow::~RunningWindow() {
  window_.working = false;
  start_.caption = caption_;
  for (controls::Observable<bool>* const enabled : off_)
    *enabled = true;
}

bool lacks_selection(Desktop& session) {
  const controls::ListView& selection = session.multi_user.ListView1;
  const std::size_t hidden = selection.hidden();
  if (hidden > 0 && hidden == selection.size())
    session.multi_user.Label3.caption =
        std::string("Nothing was done: the filter hides the whole selection. Empty the filter first.");
  return hidden == selection.size();
}

void run_over_selection(Desktop& session, const controls::Button& start, std::string_view completed,
                        const std::function<bool(session::RunView& view)>& run) {
  MultiUserView view(session, start);
  const session::RunScope scope(session, {}, view);
  try {
    if (run(view))
      view.step(completed);
  } catch (const base::RuntimeError& failure) {
    batch::tell_run_failure(session, "Error Retrieving Domain Info.", failure);
  }
}

void stop_over_selection(Desktop& session, controls::Button& start, std::string_view caption,
                         std::string_view text) {
  session.run.stopped = true;
  session.multi_user.Label3.caption = std::string(text);
  start.caption = std::string(caption);
}

}  // namespace twk::windows
