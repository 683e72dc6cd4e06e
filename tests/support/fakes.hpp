#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/platform.hpp"

/// Platform services for tests: they record what they are asked and answer what the test has laid down.
namespace twk::test {

class FakeRegistry final : public platform::RegistryAccess {
 public:
  bool Reg_Read(std::uint32_t hive, std::string_view key, std::string_view name,
                std::string& value) override {
    ++reads;
    const auto found = values_.find(place(hive, key, name));
    if (found == values_.end())
      return false;
    value = found->second;
    return true;
  }

  bool Reg_Write(std::uint32_t hive, std::string_view key, std::string_view name,
                 std::string_view value) override {
    if (read_only)
      return false;
    written.emplace_back(name);
    values_[place(hive, key, name)] = value;
    return true;
  }

  int reads = 0;
  bool read_only = false;
  std::vector<std::string> written;  ///< names, in order

 private:
  static std::string place(std::uint32_t hive, std::string_view key, std::string_view name) {
    return base::to_hex(hive) + base::upper(key) + "\\" + base::upper(name);
  }

  std::map<std::string, std::string> values_;
};

/// Answers questions in the order in which the test expects them. A question that was not expected fails the
/// test, and so does an expected one that never came.
class ScriptedDialogs final : public platform::Dialogs {
 public:
  ~ScriptedDialogs() override {
    for (const Script& script : scripts_)
      ADD_FAILURE() << "never asked: " << script.text;
  }

  /// The next question holds `text`.
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
    if (on_modal)
      on_modal(window);
    else
      ADD_FAILURE() << "shown without need: " << window;
  }
  void beep() override { ++beeps; }
  void DoEvents() override {}

  std::string last_text;
  std::string last_title;
  platform::Icon last_icon = platform::Icon::kNone;
  bool last_secret = false;
  int beeps = 0;
  std::function<void(std::string_view window)> on_modal;  ///< stands for the person in front of a window

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

class FixedClock final : public platform::Clock {
 public:
  base::Date now() override { return time; }
  base::Date time = base::make_date({2026, 12, 31, 9, 5, 0});
};

class FakeEnvironment final : public platform::Environment {
 public:
  std::string variable(std::string_view name) override {
    const auto found = variables.find(std::string(name));
    return found == variables.end() ? std::string() : found->second;
  }
  std::map<std::string, std::string> variables{{"USERNAME", "admin"}};
};

class FakeProcess final : public platform::Process {
 public:
  std::int32_t run(std::string_view command_line, bool /*wait*/, std::int16_t /*window_style*/) override {
    command_lines.emplace_back(command_line);
    return result;
  }
  std::vector<std::string> command_lines;
  std::int32_t result = 1;
};

class FakeNetwork final : public platform::Network {
 public:
  std::string NetGetDCName(std::string_view /*server*/, std::string_view /*domain*/) override {
    return "\\\\DC1";
  }
};

/// A directory that no server answers for.
class UnreachableDirectory final : public platform::DirectoryService, public platform::QueryService {
 public:
  platform::ObjectPtr GetObject(std::string_view path) override { return down(path); }
  platform::ObjectPtr OpenDSObject(std::string_view path, std::string_view /*user*/,
                                   std::string_view /*password*/) override {
    return down(path);
  }
  std::unique_ptr<platform::Recordset> execute(const platform::QueryText& query,
                                               const platform::QueryOptions& /*options*/) override {
    down(query.base);
    return nullptr;
  }

 private:
  static platform::ObjectPtr down(std::string_view path) {
    throw base::RuntimeError(platform::ads_error::kServerDown, "no server answers for " + std::string(path));
  }
};

/// Files that fail: the call number `fail_at`, counted from 1 over this service and the files it opened,
/// raises `number`, and so does each call after it. 0 lets all pass.
class FailingFiles final : public platform::Files {
 public:
  explicit FailingFiles(platform::Files& files) : files_(files) {}

  void fail_from(int call, std::uint32_t number) {
    fail_at_ = call;
    number_ = number;
    calls_ = 0;
  }
  [[nodiscard]] int calls() const { return calls_; }

  void count(std::string_view path) {
    ++calls_;
    if (fail_at_ > 0 && calls_ >= fail_at_)
      throw base::RuntimeError(number_, "the disk refuses " + std::string(path));
  }

  bool exists(std::string_view path) override { return files_.exists(path); }
  bool is_directory(std::string_view path) override { return files_.is_directory(path); }
  void make_directory(std::string_view path) override {
    count(path);
    files_.make_directory(path);
  }
  std::vector<platform::FileEntry> list(std::string_view path) override {
    count(path);
    return files_.list(path);
  }
  std::string read(std::string_view path) override {
    count(path);
    return files_.read(path);
  }
  void write(std::string_view path, std::string_view bytes) override {
    count(path);
    files_.write(path, bytes);
  }
  void remove(std::string_view path) override {
    count(path);
    files_.remove(path);
  }
  std::unique_ptr<platform::AppendFile> open_append(std::string_view path, bool truncate) override {
    count(path);
    return files_.open_append(path, truncate);
  }
  std::unique_ptr<platform::RandomFile> open_random(std::string_view path) override {
    count(path);
    return std::make_unique<FailingRandomFile>(*this, files_.open_random(path), path);
  }
  std::unique_ptr<platform::RandomFile> open_random_read(std::string_view path) override {
    count(path);
    return std::make_unique<FailingRandomFile>(*this, files_.open_random_read(path), path);
  }

 private:
  class FailingRandomFile final : public platform::RandomFile {
   public:
    FailingRandomFile(FailingFiles& owner, std::unique_ptr<platform::RandomFile> file, std::string_view path)
        : owner_(owner), file_(std::move(file)), path_(path) {}
    std::uint64_t size() override {
      owner_.count(path_);
      return file_->size();
    }
    std::string read(std::uint64_t offset, std::size_t count) override {
      owner_.count(path_);
      return file_->read(offset, count);
    }
    void write(std::uint64_t offset, std::string_view bytes) override {
      owner_.count(path_);
      file_->write(offset, bytes);
    }
    void lock(std::uint64_t offset, std::uint64_t count) override {
      owner_.count(path_);
      file_->lock(offset, count);
    }
    void unlock(std::uint64_t offset, std::uint64_t count) override { file_->unlock(offset, count); }

   private:
    FailingFiles& owner_;
    std::unique_ptr<platform::RandomFile> file_;
    std::string path_;
  };

  platform::Files& files_;
  int fail_at_ = 0;
  int calls_ = 0;
  std::uint32_t number_ = 0;
};

}  // namespace twk::test
