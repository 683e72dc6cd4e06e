#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace twk::platform {

enum class Buttons { kOk, kOkCancel, kYesNo, kYesNoCancel };
enum class Icon { kNone, kCritical, kQuestion, kExclamation, kInformation };
enum class Answer { kOk = 1, kCancel = 2, kYes = 6, kNo = 7 };

/// What a routine asks the person at the screen.
class Dialogs {
 public:
  virtual ~Dialogs() = default;

  /// A question with Yes and No and the icon kExclamation is about harm: Return means No, and no option that
  /// answers questions in advance answers it with Yes.
  virtual Answer MsgBox(std::string_view text, Buttons buttons, Icon icon, std::string_view title) = 0;
  /// The typed text; the empty text when the box was cancelled. `secret` hides what is typed.
  virtual std::string InputBox(std::string_view prompt, std::string_view title, bool secret = false) = 0;
  /// The path of an existing file; empty when cancelled. Filter as "CSV Files (*.csv)|*.csv|".
  virtual std::optional<std::string> open_file(std::string_view title, std::string_view filter) = 0;
  /// Shows a window of the program by its name and returns when the person has closed it. A front without
  /// windows returns at once; it may have filled the window's state and closed it as the person would.
  virtual void show_modal(std::string_view window) { static_cast<void>(window); }
  virtual void beep() = 0;
  /// Lets waiting events in: repaints, a press of Stop.
  virtual void DoEvents() = 0;
};

}  // namespace twk::platform
