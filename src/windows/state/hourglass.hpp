#pragma once

#include "windows/state/form1.hpp"

namespace twk::windows {

/// Shows the hourglass over a window for a scope; inside another such scope, the outer one continues.
class Hourglass {
 public:
  explicit Hourglass(controls::Observable<int>& pointer) : pointer_(pointer), before_(pointer.get()) {
    pointer_ = kWaiting;
  }
  explicit Hourglass(Form1& form) : Hourglass(form.mouse_pointer) {}
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;
  ~Hourglass() { pointer_ = before_; }

 private:
  static constexpr int kWaiting = 11;

  controls::Observable<int>& pointer_;
  int before_;
};

/// The status bar's text while something is running. At the end of the scope it becomes "Ready.", unless
/// another text was shown meanwhile.
class WorkingStatus {
 public:
  WorkingStatus(Form1& form, std::string text) : panel_(form.StatusBar1.panel1), text_(std::move(text)) {
    panel_ = text_;
  }
  WorkingStatus(const WorkingStatus&) = delete;
  WorkingStatus& operator=(const WorkingStatus&) = delete;
  ~WorkingStatus() {
    if (panel_.get() == text_)
      panel_ = std::string("Ready.");
  }

 private:
  controls::Observable<std::string>& panel_;
  std::string text_;
};

}  // namespace twk::windows
