#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/platform.hpp"

/// Platform services for tests: they record their calls and answer as the test has prescribed.
namespace twk::test {

class FakeRegistry final : public platform::RegistryAccess {
 public:
  bool Reg_Read(std::uint32_t hive, std::string_view key, std::string_view name,
                std::string& value) override {
    ++reads;
    asked.emplace_back(key, name);
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
  std::vector<std::string> written;                        ///< names, in order
  std::vector<std::pair<std::string, std::string>> asked;  ///< key and name, in order

 private:
  static std::string place(std::uint32_t hive, std::string_view key, std::string_view name) {
    return base::to_hex(hive) + base::upper(key) + "\\" + base::upper(name);
  }

  std::map<std::string, std::string> values_;
};

/// Stands still, in a zone without summer time.
class FixedClock final : public platform::Clock {
 public:
  base::Date utc_now() override { return to_utc(time); }
  base::Date to_local(base::Date utc) override { return base::plus_seconds(utc, seconds_ahead); }
  base::Date to_utc(base::Date local) override { return base::plus_seconds(local, -seconds_ahead); }
  int seconds_ahead = 0;  ///< of UTC
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
  using Words = std::vector<std::string>;
  std::string cannot_start(const Words& /*words*/) override {
    return result.number == 0 ? result.failure : std::string();
  }
  platform::ProgramResult run(const Words& words, bool /*wait*/, std::int16_t window_style) override {
    commands.push_back(words);
    window_styles.push_back(window_style);
    return result;
  }
  std::vector<Words> commands;
  std::vector<std::int16_t> window_styles;
  platform::ProgramResult result{.number = 1};
};

/// Knows a controller, accepts any share, and knows nothing about terminal servers.
class FakeNetwork : public platform::Network {
 public:
  std::string NetGetDCName(std::string_view /*server*/, std::string_view domain) override {
    if (controller.empty())
      throw base::RuntimeError(platform::network_error::kControllerNotFound,
                               "no controller for " + std::string(domain));
    return controller;
  }
  void NetShareAdd(std::string_view server, const platform::ShareInfo502& share) override {
    if (share_error != 0)
      throw base::RuntimeError(share_error, "no share on " + std::string(server));
    shares.emplace_back(server, share);
  }
  platform::ShareInfo502 NetShareGetInfo(std::string_view server, std::string_view /*name*/) override {
    unreachable(server);
  }
  std::vector<platform::ShareInfo502> NetShareEnum(std::string_view server) override { unreachable(server); }
  void NetShareDel(std::string_view server, std::string_view /*name*/) override { unreachable(server); }
  void WTSSetUserConfig(std::string_view server, std::string_view /*user*/,
                        platform::WtsConfigClass /*setting*/,
                        const platform::WtsConfigValue& /*value*/) override {
    unreachable(server);
  }
  platform::WtsConfigValue WTSQueryUserConfig(std::string_view server, std::string_view /*user*/,
                                              platform::WtsConfigClass /*setting*/) override {
    unreachable(server);
  }

  std::string controller = "\\\\DC1";
  std::uint32_t share_error = 0;                                       ///< what NetShareAdd raises
  std::vector<std::pair<std::string, platform::ShareInfo502>> shares;  ///< with their servers

 private:
  [[noreturn]] static void unreachable(std::string_view server) {
    throw base::RuntimeError(platform::network_error::kBadNetPath, "no server " + std::string(server));
  }
};

class FakeMailboxes final : public platform::MailboxService {
 public:
  std::unique_ptr<platform::IMailboxStore> mailbox_store(const platform::ObjectPtr& /*user*/) override {
    throw base::RuntimeError(platform::ads_error::kNotImplementedByProvider, "no mail system");
  }
};

/// A directory without a server that answers.
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
/// raises `number`, and so does each call after it. 0 lets all succeed.
class FailingFiles final : public platform::Files {
 public:
  explicit FailingFiles(platform::Files& files) : files_(files) {}

  void fail_from(int call, std::uint32_t number) {
    fail_at_ = call;
    number_ = number;
    calls_ = 0;
  }
  [[nodiscard]] int calls() const { return calls_; }

  /// Called with the path of each counted call; what it raises is the call's failure.
  std::function<void(std::string_view path)> before;

  void count(std::string_view path) {
    if (before)
      before(path);
    ++calls_;
    if (fail_at_ > 0 && calls_ >= fail_at_)
      throw base::RuntimeError(number_, "the disk refuses " + std::string(path));
  }

  bool exists(std::string_view path) override { return files_.exists(path); }
  bool is_directory(std::string_view path) override { return files_.is_directory(path); }
  void make_directory(std::string_view path) override { at(path).make_directory(path); }
  std::vector<platform::FileEntry> list(std::string_view path) override { return at(path).list(path); }
  platform::FileEntry status(std::string_view path) override { return at(path).status(path); }
  void remove_directory(std::string_view path) override { at(path).remove_directory(path); }
  std::string read(std::string_view path) override { return at(path).read(path); }
  void write(std::string_view path, std::string_view bytes) override { at(path).write(path, bytes); }
  void remove(std::string_view path) override { at(path).remove(path); }
  bool copy_file(std::string_view from, std::string_view to, bool replace,
                 const platform::CopyProgress& progress) override {
    return at(from).copy_file(from, to, replace, progress);
  }
  void rename(std::string_view from, std::string_view to, bool replace) override {
    at(from).rename(from, to, replace);
  }
  std::unique_ptr<platform::AppendFile> open_append(std::string_view path, bool truncate) override {
    return at(path).open_append(path, truncate);
  }
  std::unique_ptr<platform::RandomFile> open_random(std::string_view path) override {
    return std::make_unique<FailingRandomFile>(*this, at(path).open_random(path), path);
  }
  std::unique_ptr<platform::RandomFile> open_random_read(std::string_view path) override {
    return std::make_unique<FailingRandomFile>(*this, at(path).open_random_read(path), path);
  }

 private:
  class FailingRandomFile final : public platform::RandomFile {
   public:
    FailingRandomFile(FailingFiles& owner, std::unique_ptr<platform::RandomFile> file, std::string_view path)
        : owner_(owner), file_(std::move(file)), path_(path) {}
    std::uint64_t size() override { return counted().size(); }
    std::string read(std::uint64_t offset, std::size_t count) override {
      return counted().read(offset, count);
    }
    void write(std::uint64_t offset, std::string_view bytes) override { counted().write(offset, bytes); }
    void lock(std::uint64_t offset, std::uint64_t count) override { counted().lock(offset, count); }
    void unlock(std::uint64_t offset, std::uint64_t count) override { file_->unlock(offset, count); }
    bool is_current() override { return file_->is_current(); }

   private:
    platform::RandomFile& counted() {
      owner_.count(path_);
      return *file_;
    }

    FailingFiles& owner_;
    std::unique_ptr<platform::RandomFile> file_;
    std::string path_;
  };

  platform::Files& at(std::string_view path) {
    count(path);
    return files_;
  }

  platform::Files& files_;
  int fail_at_ = 0;
  int calls_ = 0;
  std::uint32_t number_ = 0;
};

}  // namespace twk::test
