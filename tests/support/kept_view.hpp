#pragma once

#include <string>
#include <vector>

#include "session/run_view.hpp"
#include "windows/state/desktop.hpp"

namespace twk::test {

/// Keeps what a run reports about files, and lets events in.
class KeptView final : public session::RunView {
 public:
  explicit KeptView(windows::Desktop& session) : session_(session) {}

  void status(std::string_view text) override { session_.status.panel1 = std::string(text); }
  void step(std::string_view caption) override { last_step = caption; }
  void progress(int /*percent*/) override {}
  void files(std::string_view text, int /*percent*/) override { told.emplace_back(text); }
  bool going_on() override {
    session_.platform.dialogs.DoEvents();
    return true;
  }

  std::string last_step;
  std::vector<std::string> told;

 private:
  windows::Desktop& session_;
};

}  // namespace twk::test
