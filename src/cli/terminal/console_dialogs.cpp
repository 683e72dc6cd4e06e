#include "cli/terminal/console_dialogs.hpp"

#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <utility>

#include "base/text.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/interrupt.hpp"

namespace twk::cli {
namespace {

using platform::Answer;
using platform::Buttons;
using platform::Icon;

/// Switches the terminal's echo off for a scope.
class Silence {
 public:
  Silence() {
    if (tcgetattr(STDIN_FILENO, &before_) != 0)
      return;
    termios silent = before_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    silent.c_lflag |= ECHONL;
    changed_ = tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent) == 0;
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  ~Silence() {
    if (changed_)
      tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
  }

 private:
  termios before_ = {};
  bool changed_ = false;
};

/// Holds Ctrl-C back for a scope, except while `before` is restored: so it can only arrive during a wait, and
/// ends it.
class HeldInterrupts {
 public:
  HeldInterrupts() {
    sigset_t held = {};
    sigemptyset(&held);
    sigaddset(&held, SIGINT);
    sigaddset(&held, SIGTERM);
    sigprocmask(SIG_BLOCK, &held, &before_);
  }
  HeldInterrupts(const HeldInterrupts&) = delete;
  HeldInterrupts& operator=(const HeldInterrupts&) = delete;
  ~HeldInterrupts() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  [[nodiscard]] const sigset_t& before() const { return before_; }

 private:
  sigset_t before_ = {};
};

Answer agreed(Buttons buttons) {
  return buttons == Buttons::kOkCancel ? Answer::kOk : Answer::kYes;
}

Answer declined(Buttons buttons) {
  return buttons == Buttons::kYesNo ? Answer::kNo : Answer::kCancel;
}

std::string_view word_of(Answer answer) {
  switch (answer) {
    case Answer::kYes:
      return "Yes";
    case Answer::kNo:
      return "No";
    case Answer::kCancel:
      return "Cancel";
    case Answer::kOk:
      break;
  }
  return "OK";
}

std::string_view choices(Buttons buttons) {
  if (buttons == Buttons::kOkCancel)
    return "[o]k/[c]ancel";
  return buttons == Buttons::kYesNo ? "[y]es/[n]o" : "[y]es/[n]o/[c]ancel";
}

std::optional<Answer> answer_of(std::string_view typed, Buttons buttons) {
  const std::string word = base::lower(base::trim(typed));
  if (buttons == Buttons::kOkCancel) {
    if (word == "o" || word == "ok")
      return Answer::kOk;
  } else {
    if (word == "y" || word == "yes")
      return Answer::kYes;
    if (word == "n" || word == "no")
      return Answer::kNo;
  }
  if (buttons != Buttons::kYesNo && (word == "c" || word == "cancel"))
    return Answer::kCancel;
  return std::nullopt;
}

}  // namespace

std::optional<std::string> read_typed_line(std::string_view prompt, bool secret) {
  std::optional<Silence> silence;
  if (secret)
    silence.emplace();
  std::fprintf(stderr, "%s ", printable(prompt).c_str());
  const HeldInterrupts held;
  std::string line;
  char byte = 0;
  while (!interrupted()) {
    pollfd input = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
    if (ppoll(&input, 1, nullptr, &held.before()) < 0 && errno != EINTR)
      return std::nullopt;
    if (input.revents == 0)
      continue;
    const ssize_t count = read(STDIN_FILENO, &byte, 1);
    if (count < 0)
      return std::nullopt;
    if (count == 0)
      return line.empty() ? std::nullopt : std::optional(line);
    if (byte == '\n')
      return line;
    line += byte;
  }
  return std::nullopt;
}

void ConsoleDialogs::begin_command() {
  wipe_password();
  password_.reset();
  file_.reset();
  on_events_ = {};
  before_text_ = {};
  on_modal_ = {};
  last_trouble_.clear();
}

Asking ConsoleDialogs::asking() const {
  if (asking_ == Asking::kPerson && !(is_terminal(STDIN_FILENO) && is_terminal(STDERR_FILENO)))
    return Asking::kNoInput;
  return asking_;
}

void ConsoleDialogs::say(std::string_view text) const {
  if (before_text_)
    before_text_();
  std::fprintf(stderr, "%s\n", printable(text, true).c_str());
}

Answer ConsoleDialogs::ask(Buttons buttons) const {
  while (!interrupted()) {
    const auto typed = read_typed_line(choices(buttons), false);
    if (!typed)
      break;
    if (const auto answer = answer_of(*typed, buttons))
      return *answer;
  }
  std::fputc('\n', stderr);
  return declined(buttons);
}

Answer ConsoleDialogs::MsgBox(std::string_view text, Buttons buttons, Icon icon, std::string_view title) {
  say(title.empty() ? std::string(text) : std::string(title) + ": " + std::string(text));
  if (icon == Icon::kCritical || icon == Icon::kExclamation)
    last_trouble_ = text;
  if (buttons == Buttons::kOk)
    return Answer::kOk;
  switch (asking()) {
    case Asking::kPerson:
      return ask(buttons);
    case Asking::kYes:
      // Harmful steps need a separate option.
      if (icon != Icon::kExclamation || buttons != Buttons::kYesNo)
        return agreed(buttons);
      break;
    case Asking::kNoInput:
      break;
  }
  const Answer answer = declined(buttons);
  if (!std::exchange(said_nobody_, true)) {
    say("Nobody can be asked: the answer is " + std::string(word_of(answer)) +
        ", also to further questions. Give --yes to answer every question with Yes.");
  }
  return answer;
}

std::string ConsoleDialogs::InputBox(std::string_view prompt, std::string_view title, bool secret) {
  if (secret && password_)
    return *password_;
  if (asking_ != Asking::kNoInput && is_terminal(STDIN_FILENO) && is_terminal(STDERR_FILENO)) {
    if (before_text_)
      before_text_();
    return read_typed_line(prompt, secret).value_or(std::string());
  }
  say(std::string(title) + ": " + std::string(prompt) + " Nobody can be asked: the answer is empty.");
  return {};
}

std::optional<std::string> ConsoleDialogs::open_file(std::string_view, std::string_view) {
  return file_;
}

void ConsoleDialogs::DoEvents() {
  if (on_events_)
    on_events_();
}

void ConsoleDialogs::show_modal(std::string_view window) {
  if (on_modal_)
    on_modal_(window);
}

}  // namespace twk::cli
