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
  void counted(std::string_view /*text*/) override {}
  void pace(std::string_view text) override;
  void password_set(std::string_view account, std::string_view password) override;

  void on_password(std::function<void(std::string_view account, std::string_view password)> take) {
    take_password_ = std::move(take);
  }

  /// Removes the line, so that other text can be written.
  void clear() { progress_.clear(); }

 private:
  session::Session& session_;
  Progress progress_;
  std::function<void(std::string_view, std::string_view)> take_password_;
};

}  // namespace twk::cli
