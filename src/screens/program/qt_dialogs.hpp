#pragma once

#include "platform/dialogs.hpp"
#include "screens/widgets/pace.hpp"

namespace twk::windows {
struct Desktop;
}

namespace twk::screens {

/// The boxes and windows of the desktop program.
class QtDialogs final : public platform::Dialogs {
 public:
  /// The session whose windows are shown by name. Set before the first routine runs.
  void set_session(windows::Desktop& session) { session_ = &session; }

  platform::Answer MsgBox(std::string_view text, platform::Buttons buttons, platform::Icon icon,
                          std::string_view title) override;
  std::string InputBox(std::string_view prompt, std::string_view title, bool secret) override;
  std::optional<std::string> open_file(std::string_view title, std::string_view filter) override;
  void show_modal(std::string_view window) override;
  void beep() override;
  /// A person's input is let in only while there is something to stop, an import or a function of the
  /// multi-user window; otherwise only repaints are.
  void DoEvents() override;

 private:
  windows::Desktop* session_ = nullptr;
  Pace events_{5};
};

}  // namespace twk::screens
