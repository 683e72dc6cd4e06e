#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "controls/basic.hpp"
#include "session/run_view.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/multi_user.hpp"

/// The window that works on many users at once: what its runs share. Each tab has its own file.
namespace twk::windows {

/// The window as a run goes on. The start button ends it: it says "&Cancel" only as long as the run may go
/// on.
class MultiUserView final : public session::RunView {
 public:
  MultiUserView(Desktop& session, const controls::Button& start) : session_(session), start_(start) {}

  void status(std::string_view text) override;
  void step(std::string_view caption) override;
  void progress(int percent) override;
  void files(std::string_view text, int percent) override;
  bool going_on() override;

 private:
  Desktop& session_;
  const controls::Button& start_;
};

/// Marks the window as working for a scope, with disabled controls and a start button that says "&Cancel".
/// What was disabled before stays so.
class RunningWindow {
 public:
  RunningWindow(Desktop& session, controls::Button& start,
                std::initializer_list<controls::Observable<bool>*> off);
  RunningWindow(const RunningWindow&) = delete;
  RunningWindow& operator=(const RunningWindow&) = delete;
  ~RunningWindow();

 private:
  MultiUser& window_;
  controls::Button& start_;
  std::string caption_;
  std::vector<controls::Observable<bool>*> off_;
};

/// True when a run would reach no row: nothing is selected, or the filter hides all of it, which `Label3`
/// then says.
bool lacks_selection(Desktop& session);
/// A run of the window over its selection. It returns False when it was stopped, otherwise `completed` is
/// shown. A failure is reported.
void run_over_selection(Desktop& session, const controls::Button& start, std::string_view completed,
                        const std::function<bool(session::RunView& view)>& run);
/// Stops such a run: shows `text` and gives the start button its caption back.
void stop_over_selection(Desktop& session, controls::Button& start, std::string_view caption,
                         std::string_view text);

}  // namespace twk::windows
