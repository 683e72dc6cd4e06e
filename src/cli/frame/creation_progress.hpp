#pragma once

#include "batch/import.hpp"
#include "cli/terminal/progress.hpp"

namespace twk::session {
struct Session;
}

namespace twk::cli {

/// Shows on the terminal what a creation or an import is at.
class CreationProgress final : public batch::ImportView {
 public:
  explicit CreationProgress(session::Session& session) : session_(session) {}

  void status(std::string_view text) override;
  void step(std::string_view caption) override;
  void progress(int /*percent*/) override {}
  void begin() override {}
  void start_work() override {}
  void names(const creation::NewUserRequest& /*request*/) override {}
  void lock() override {}
  void unlock() override {}
  void stage(creation::Stage /*stage*/, creation::StageState /*state*/) override {}
  void counted(std::string_view text) override;

  /// Removes the line, so that other text can be written.
  void clear() { progress_.clear(); }

 private:
  session::Session& session_;
  Progress progress_;
};

}  // namespace twk::cli
