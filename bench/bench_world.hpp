#pragma once

#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "lab/making/lab_create.hpp"
#include "lab/services/lab.hpp"
#include "session/settings.hpp"
#include "windows/state/desktop.hpp"

namespace twk::bench {

/// Seconds that `work` takes.
template <typename Work>
double seconds(Work&& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Resident memory of the process in bytes, from /proc.
inline double resident_bytes() {
  std::ifstream statm("/proc/self/statm");
  double all = 0;
  double resident = 0;
  statm >> all >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

/// Bytes that the program has from the heap.
inline double heap_bytes() {
  return static_cast<double>(mallinfo2().uordblks) + static_cast<double>(mallinfo2().hblkhd);
}

/// A folder that is deleted at the end.
class Folder {
 public:
  Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "twk-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
      std::abort();
    path_ = pattern;
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// Nobody to ask: every question is answered with Yes, every input box with nothing.
class NobodyThere final : public platform::Dialogs {
 public:
  platform::Answer MsgBox(std::string_view, platform::Buttons, platform::Icon, std::string_view) override {
    return platform::Answer::kYes;
  }
  std::string InputBox(std::string_view, std::string_view, bool) override { return {}; }
  std::optional<std::string> open_file(std::string_view, std::string_view) override { return std::nullopt; }
  void beep() override {}
  void DoEvents() override {}
};

inline void set(const platform::Platform& services, const std::string& key, const std::string& name,
                const std::string& value) {
  services.registry.Reg_Write(platform::kHiveLocalMachine, std::string(session::kTree) + "\\" + key, name,
                              value);
}

}  // namespace twk::bench
