#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "batch/import_order.hpp"
#include "batch/import_record.hpp"
#include "batch/remaining_lines.hpp"
#include "session/creation_outcome.hpp"

namespace twk::batch {

/// The view of a run that keeps its record and its remaining lines, and tells everything on to the one that
/// watches. Remaining lines that cannot be written are told once, in the log tab; without its record a run
/// stops after the line in hand.
class RecordedImport final : public ImportView {
 public:
  RecordedImport(session::Session& session, ImportView& watcher) : session_(session), watcher_(watcher) {}

  /// Opens the files that the state of the import names. Without this call nothing is kept.
  void open(const records::JsonLine& order, std::string_view bytes);
  void begin_line(std::int32_t number, std::string_view raw);
  /// A line of which a run before this one made an account.
  void pass_line(std::int32_t number, std::string_view raw);
  void end_line(const session::CreationOutcome& outcome);
  void finish(std::string_view end);

  void status(std::string_view text) override { watcher_.status(text); }
  void step(std::string_view caption) override { watcher_.step(caption); }
  void progress(int percent) override { watcher_.progress(percent); }
  void begin_files() override { watcher_.begin_files(); }
  void end_files() override { watcher_.end_files(); }
  void files(std::string_view text, int percent) override { watcher_.files(text, percent); }
  bool going_on() override { return watcher_.going_on(); }
  void begin() override { watcher_.begin(); }
  void start_work() override { watcher_.start_work(); }
  void names(const creation::NewUserRequest& request) override;
  void lock() override { watcher_.lock(); }
  void unlock() override { watcher_.unlock(); }
  void stage(creation::Stage stage, creation::StageState state) override;
  void makes_account(std::string_view account, std::string_view path) override;
  void makes(const creation::MadeThing& thing) override;
  void made(const creation::MadeThing& thing) override;
  void password_set(std::string_view account, std::string_view password) override {
    watcher_.password_set(account, password);
  }
  void counted(std::string_view text) override { watcher_.counted(text); }
  void pace(std::string_view text) override { watcher_.pace(text); }

 private:
  void write(const records::JsonLine& entry);
  void stop(const std::string& reason);
  /// Does something with the remaining lines; a failure ends them.
  template <typename Step>
  void keep(Step step);

  session::Session& session_;
  ImportView& watcher_;
  std::unique_ptr<platform::AppendFile> record_;
  std::unique_ptr<RemainingLines> remaining_;
  std::int64_t number_ = 0;
  bool made_account_ = false;  ///< of this line
  bool lacks_files_ = false;   ///< a folder, a share or a permission of it was not made as asked for
  std::string_view raw_;
};

}  // namespace twk::batch
