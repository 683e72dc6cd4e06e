#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

/// The few file operations that the journal needs. Each raises the runtime's disk numbers with the file's
/// name: disk full, permission denied, path not found or path/file access.
namespace twk::lab {

/// An open file, closed with the object. Remembers its path for messages.
class PosixFile {
 public:
  PosixFile() = default;
  /// Creates with mode 0600 when `flags` has O_CREAT.
  PosixFile(std::filesystem::path path, int flags);
  PosixFile(PosixFile&& from) noexcept : path_(std::move(from.path_)), fd_(std::exchange(from.fd_, -1)) {}
  PosixFile& operator=(PosixFile&& from) noexcept;
  ~PosixFile() { close(); }

  /// Empty when the file does not exist or `flags` ask for more than its mode allows; the reason is `errno`.
  static std::optional<PosixFile> try_open(const std::filesystem::path& path, int flags);

  [[nodiscard]] bool is_open() const { return fd_ >= 0; }
  [[nodiscard]] int descriptor() const { return fd_; }
  void close();
  [[nodiscard]] struct stat status() const;
  /// Waits for the lock, shared or exclusive. A file has one lock, whoever opened it.
  void lock(bool exclusive) const;
  void unlock() const;
  /// The bytes from `offset` to the end.
  [[nodiscard]] std::string read_from(std::uint64_t offset) const;
  /// Fills `bytes` from `offset`; returns how many, fewer only at the end.
  std::size_t read(std::uint64_t offset, std::span<char> bytes) const;
  /// All the bytes or, after an error, perhaps some of them.
  void write_at(std::uint64_t offset, std::string_view bytes) const;
  void truncate(std::uint64_t size) const;
  void sync() const;

 private:
  std::filesystem::path path_;
  int fd_ = -1;
};

/// The status of what has that name, if anything.
std::optional<struct stat> status_of(const std::filesystem::path& path);
/// Replaces `to` by `from`, so that it survives a power cut.
void replace_file(const std::filesystem::path& from, const std::filesystem::path& to);
[[noreturn]] void raise_file_error(int error, const std::filesystem::path& path);

}  // namespace twk::lab
