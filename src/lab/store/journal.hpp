#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "lab/store/early_sync.hpp"
#include "lab/store/posix_file.hpp"

namespace twk::lab {

/// "# generation <number>" and an empty line: the first of "domain.ldif" and of its journal.
std::string generation_line(std::uint64_t generation);
/// The number in the first line of a text; 0 for a text that others wrote.
std::uint64_t generation_of(std::string_view text);

/// The journal of a lab, a text of LDIF change records:
///
///     journal   "# generation " number LF LF  record*
///     record    LDIF lines  "# end " 8 hexadecimal digits LF  LF
///
/// The digits are the CRC-32 of the record's bytes in front of "# end"; a record without the digits was
/// written by a person and is not checked. The generation is that of the "domain.ldif" which the changes
/// belong to; folding them in raises it by one there, then starts a journal of the new generation. A crash
/// between the two leaves a journal of the previous generation, which shows that it is folded in. A journal
/// without the first line has generation 0.
///
/// A record is appended with one write, under an exclusive lock, and is whole when its end is there; what
/// follows the last whole record is torn, and the next holder of the lock cuts it off. A new journal is a new
/// file in place of the old one, so the size and the file's identity show whether there is anything new.
class Journal {
 public:
  /// Opens nothing yet. `warn` gets a message about what was cut off.
  Journal(std::filesystem::path path, std::function<void(const std::string&)> warn);

  /// Checks the file: true when it has not changed since it was last read.
  [[nodiscard]] bool is_unchanged() const;

  enum class Access { kRead, kWrite };
  /// Opens the journal that now has the name and waits for its lock; `kWrite` creates it when it does not
  /// exist. False for `kRead` when there is none. Raises permission denied when `kWrite` is not allowed.
  bool lock(Access access);
  void unlock();

  // With the lock held:

  /// True when the file that is open has not been read before.
  [[nodiscard]] bool is_new() const { return is_new_; }
  /// Starts reading at the beginning; returns the generation of the journal. An empty one gets `generation`
  /// when it may be written.
  std::uint64_t rewind(std::uint64_t generation);
  /// The whole records not read yet. Counts them as read; raises an invalid LDIF error for damage in the
  /// middle.
  struct Part {
    std::string text;
    std::size_t first_line = 1;
  };
  Part read();
  /// Skips the existing records.
  void skip();
  /// Appends a record, passed without its closing empty line. On failure the file is as it was.
  void append(std::string_view record, bool sync);
  /// Starts the sync of what was appended, where the kernel can do it meanwhile; `sync` waits for it.
  void begin_sync();
  /// Returns when all that was appended is on the disk; raises, once, what a sync that was started met.
  void sync();
  /// Puts an empty journal of that generation in the place of this one; `lock` then opens it.
  void replace(std::uint64_t generation);
  [[nodiscard]] std::uint64_t size() const { return end_; }
  [[nodiscard]] bool is_writable() const { return writable_; }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  bool open(Access access);
  void cut(std::uint64_t size);

  std::filesystem::path path_;
  std::function<void(const std::string&)> warn_;
  PosixFile file_;
  struct stat identity_ {};
  std::uint64_t locked_size_ = 0;  ///< of the file when it was locked
  bool writable_ = false;
  bool is_new_ = false;
  bool unsynced_ = false;
  EarlySync early_sync_;
  std::uint64_t end_ = 0;  ///< after the last whole record that was read
  std::size_t next_line_ = 1;
};

}  // namespace twk::lab
