#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/dialogs.hpp"

namespace twk::test {

/// Answers questions in the order in which the test expects them. A question that was not expected fails the
/// test, and so does an expected one that never came.
class ScriptedDialogs final : public platform::Dialogs {
 public:
  ~ScriptedDialogs() override {
    for (const Script& script : scripts_)
      ADD_FAILURE() << "never asked: " << script.text;
  }

  /// The next question contains `text`.
  void expect(std::string text, platform::Answer answer = platform::Answer::kOk) {
    scripts_.push_back({std::move(text), answer, {}});
  }
  void expect_input(std::string prompt, std::string typed) {
    scripts_.push_back({std::move(prompt), platform::Answer::kOk, std::move(typed)});
  }

  platform::Answer MsgBox(std::string_view text, platform::Buttons /*buttons*/, platform::Icon icon,
                          std::string_view title) override {
    last_text = text;
    last_title = title;
    last_icon = icon;
    return next(text).answer;
  }
  std::string InputBox(std::string_view prompt, std::string_view title, bool secret) override {
    last_title = title;
    last_secret = secret;
    return next(prompt).typed;
  }
  std::optional<std::string> open_file(std::string_view title, std::string_view /*filter*/) override {
    return next(title).typed;
  }
  void show_modal(std::string_view window) override {
    if (on_modal) {
      on_modal(window);
    } else {
      ADD_FAILURE() << "shown without need: " << window;
    }
  }
  void beep() override { ++beeps; }
  void DoEvents() override {
    if (on_events)
      on_events();
  }

  std::string last_text;
  std::string last_title;
  platform::Icon last_icon = platform::Icon::kNone;
  bool last_secret = false;
  int beeps = 0;
  std::function<void(std::string_view window)> on_modal;  ///< acts as the person at a window
  std::function<void()> on_events;                        ///< what the person does during a run

 private:
  struct Script {
    std::string text;
    platform::Answer answer;
    std::string typed;
  };

  Script next(std::string_view text) {
    if (scripts_.empty()) {
      ADD_FAILURE() << "asked without need: " << text;
      return {{}, platform::Answer::kCancel, {}};
    }
    Script script = scripts_.front();
    scripts_.pop_front();
    EXPECT_NE(text.find(script.text), std::string_view::npos)
        << "asked: " << text << "\nnot: " << script.text;
    return script;
  }

  std::deque<Script> scripts_;
};

}  // namespace twk::test
