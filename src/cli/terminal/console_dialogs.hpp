#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/secret.hpp"
#include "platform/dialogs.hpp"

namespace twk::cli {

/// Who answers a routine's questions.
enum class Asking {
  kPerson,   ///< the person at the terminal
  kYes,      ///< every question gets Yes or OK
  kNoInput,  ///< every question gets No or Cancel, every input box nothing, and a message says so
};

/// The boxes of the windows on a terminal. Texts and questions go to standard error, answers come from the
/// terminal. When standard input or standard error is not a terminal, a person cannot be asked, and
/// `kPerson` becomes `kNoInput`.
class ConsoleDialogs final : public platform::Dialogs {
 public:
  ConsoleDialogs() = default;
  ConsoleDialogs(const ConsoleDialogs&) = delete;
  ConsoleDialogs& operator=(const ConsoleDialogs&) = delete;
  ~ConsoleDialogs() override { wipe_password(); }

  /// Forgets what the command before has set, but for `set_asking`.
  void begin_command();
  void set_asking(Asking asking) { asking_ = asking; }
  [[nodiscard]] bool asks_person() const { return asking() == Asking::kPerson; }

  /// Answers the next secret input boxes, always the same.
  void set_password(std::string password) { password_ = std::move(password); }
  /// The path that the next open-file boxes return.
  void set_file(std::string path) { file_ = std::move(path); }
  /// Called at each turn of the message loop.
  void on_events(std::function<void()> callback) { on_events_ = std::move(callback); }
  /// What a person does in a window shown by a routine, before it closes.
  void on_modal(std::function<void(std::string_view window)> callback) { on_modal_ = std::move(callback); }
  /// Called before something is written, to remove a progress line.
  void before_text(std::function<void()> callback) { before_text_ = std::move(callback); }

  /// The text of the last box that reported trouble (a critical or exclamation icon); empty for none.
  [[nodiscard]] const std::string& last_trouble() const { return last_trouble_; }
  void forget_trouble() { last_trouble_.clear(); }

  platform::Answer MsgBox(std::string_view text, platform::Buttons buttons, platform::Icon icon,
                          std::string_view title) override;
  std::string InputBox(std::string_view prompt, std::string_view title, bool secret) override;
  std::optional<std::string> open_file(std::string_view title, std::string_view filter) override;
  void beep() override {}
  void DoEvents() override;
  void show_modal(std::string_view window) override;

 private:
  void wipe_password() {
    if (password_)
      base::wipe(*password_);
  }
  [[nodiscard]] Asking asking() const;
  void say(std::string_view text) const;
  [[nodiscard]] platform::Answer ask(platform::Buttons buttons) const;

  Asking asking_ = Asking::kPerson;
  bool said_nobody_ = false;  ///< that nobody can be asked
  std::optional<std::string> password_;
  std::optional<std::string> file_;
  std::function<void()> on_events_;
  std::function<void()> before_text_;
  std::function<void(std::string_view)> on_modal_;
  std::string last_trouble_;
};

/// Shows the prompt and returns the line typed at the terminal, without its end and not echoed when `secret`;
/// nothing at the end of input or after Ctrl-C.
std::optional<std::string> read_typed_line(std::string_view prompt, bool secret);

}  // namespace twk::cli
