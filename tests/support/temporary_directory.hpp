#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace twk::test {

/// An empty folder that is deleted, with its contents, at the end of its scope.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "twk-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("cannot make " + pattern);
    path_ = pattern;
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory() {
    std::error_code left_behind;
    std::filesystem::remove_all(path_, left_behind);
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// The full name of a file in it.
  [[nodiscard]] std::string operator/(std::string_view name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

/// The program works in another folder until the end of the scope.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::filesystem::path& path) : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;
  ~WorkingDirectory() {
    std::error_code gone;
    std::filesystem::current_path(before_, gone);
  }

 private:
  std::filesystem::path before_;
};

inline void put_file(const std::string& path, std::string_view bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush())
    throw std::runtime_error("cannot write " + path);
}

inline std::string get_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in)
    throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace twk::test
