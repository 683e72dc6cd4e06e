#pragma once

#include <algorithm>
#include <functional>
#include <map>

#include "support/fakes.hpp"
#include "support/memory_security.hpp"
#include "windows/state/desktop.hpp"

namespace twk::test {

/// Nobody answers.
class NoDialogs final : public platform::Dialogs {
 public:
  platform::Answer MsgBox(std::string_view /*text*/, platform::Buttons /*buttons*/, platform::Icon /*icon*/,
                          std::string_view /*title*/) override {
    return platform::Answer::kCancel;
  }
  std::string InputBox(std::string_view /*prompt*/, std::string_view /*title*/, bool /*secret*/) override {
    return {};
  }
  std::optional<std::string> open_file(std::string_view /*title*/, std::string_view /*filter*/) override {
    return std::nullopt;
  }
  void beep() override {}
  void DoEvents() override {}
};

/// One file that can be read, record files with these bytes, and appended files that go nowhere; nothing else
/// exists.
class OneFile final : public platform::Files {
 public:
  std::string contents;
  std::map<std::string, std::string, std::less<>> records;  ///< by path
  bool present = false;                                     ///< what is requested exists

  bool exists(std::string_view /*path*/) override { return present; }
  bool is_directory(std::string_view /*path*/) override { return false; }
  void make_directory(std::string_view path) override { missing(path); }
  std::vector<platform::FileEntry> list(std::string_view path) override {
    missing(path);
    return {};
  }
  platform::FileEntry status(std::string_view path) override {
    missing(path);
    return {};
  }
  void remove_directory(std::string_view path) override { missing(path); }
  std::string read(std::string_view /*path*/) override { return contents; }
  void write(std::string_view path, std::string_view /*bytes*/) override { missing(path); }
  void remove(std::string_view path) override { missing(path); }
  bool copy_file(std::string_view from, std::string_view /*to*/, bool /*replace*/,
                 const platform::CopyProgress& /*progress*/) override {
    missing(from);
    return false;
  }
  void rename(std::string_view from, std::string_view /*to*/, bool /*replace*/) override { missing(from); }
  std::unique_ptr<platform::AppendFile> open_append(std::string_view /*path*/, bool /*truncate*/) override {
    return std::make_unique<Nowhere>();
  }
  std::unique_ptr<platform::RandomFile> open_random(std::string_view path) override {
    const auto found = records.find(path);
    if (found == records.end())
      missing(path);
    return std::make_unique<Records>(found->second);
  }
  std::unique_ptr<platform::RandomFile> open_random_read(std::string_view path) override {
    return open_random(path);
  }

 private:
  struct Nowhere final : platform::AppendFile {
    void write(std::string_view /*bytes*/) override {}
  };
  class Records final : public platform::RandomFile {
   public:
    explicit Records(std::string_view bytes) : bytes_(bytes) {}
    std::uint64_t size() override { return bytes_.size(); }
    std::string read(std::uint64_t offset, std::size_t count) override {
      return std::string(bytes_.substr(std::min<std::uint64_t>(offset, bytes_.size()), count));
    }
    void write(std::uint64_t /*offset*/, std::string_view /*bytes*/) override { missing("to write"); }
    void lock(std::uint64_t /*offset*/, std::uint64_t /*count*/) override {}
    void unlock(std::uint64_t /*offset*/, std::uint64_t /*count*/) override {}
    bool is_current() override { return true; }

   private:
    std::string_view bytes_;
  };
  static void missing(std::string_view path) {
    throw base::RuntimeError(base::error::kFileNotFound, "no file " + std::string(path));
  }
};

/// A session without a directory, for one input of a fuzzer.
struct FuzzWorld {
  FakeRegistry registry;
  UnreachableDirectory directory;
  OneFile files;
  FakeNetwork network;
  MemorySecurity security;
  FakeMailboxes mailboxes;
  FakeProcess process;
  FakeEnvironment environment;
  FixedClock clock;
  NoDialogs dialogs;
  windows::Desktop session{{registry, directory, directory, files, network, security, mailboxes, process,
                            environment, clock, dialogs},
                           "",
                           "/"};
};

}  // namespace twk::test
