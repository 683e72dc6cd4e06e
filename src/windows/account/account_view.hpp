#pragma once

#include "session/run_view.hpp"

/// What stands behind the windows and popup entries that change one account at a time.
namespace twk::windows {

struct Desktop;

/// The main window during such an operation. Work on files has a window of its own, `FileProgress`, with a
/// Cancel button.
class AccountView final : public session::RunView {
 public:
  explicit AccountView(Desktop& session) : session_(session) {}

  void status(std::string_view text) override;
  void step(std::string_view caption) override;
  void progress(int percent) override;
  void begin_files() override;
  void end_files() override;
  void files(std::string_view text, int percent) override;
  bool going_on() override;

 private:
  Desktop& session_;
  bool was_enabled_ = true;
};

void FileProgress_CancelButton_Click(Desktop& session);

}  // namespace twk::windows
