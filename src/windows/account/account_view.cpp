#include "windows/account/account_view.hpp"

#include "windows/state/account_windows.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {

void AccountView::status(std::string_view text) {
  session_.status.panel1 = std::string(text);
}

void AccountView::step(std::string_view caption) {
  status(caption);
}

void AccountView::progress(int percent) {
  session_.file_progress.done.value = percent;
}

void AccountView::begin_files() {
  session_.file_progress.text.caption = std::string("Starting...");
  session_.file_progress.done.value = 0;
  was_enabled_ = session_.form1.enabled;
  session_.form1.enabled = false;
  session_.file_progress.visible = true;
}

void AccountView::end_files() {
  session_.file_progress.visible = false;
  session_.form1.enabled = was_enabled_;
}

void AccountView::files(std::string_view text, int percent) {
  session_.file_progress.text.caption = std::string(text);
  session_.file_progress.done.value = percent;
  session_.status.panel1 = std::string(text);
}

bool AccountView::going_on() {
  session_.platform.dialogs.DoEvents();
  return true;
}

void FileProgress_CancelButton_Click(Desktop& session) {
  session.run.stopped = true;
  session.file_progress.text.caption = std::string("Stopping...");
}

}  // namespace twk::windows
