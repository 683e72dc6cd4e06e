#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Files and folders, named by paths with backslashes: network paths ("\\FS1\D$\Users\jo"), and paths of the
/// workstation itself ("/srv/db\Site.dat"; forward slashes count as well). The last part of a path folds
/// case: an existing file spelled in another case is meant. Contents are bytes; text is encoded by the
/// caller.
///
/// A link (a symbolic link, a junction) counts as what it leads to, except in `list`, `status`, `copy_file`
/// and the calls that remove something: those see the link itself, so that a walk down a tree stays within
/// it.
///
/// Every call raises `base::RuntimeError` when it fails, with the runtime's file numbers: 52 bad name, 53
/// file not found, 58 exists already, 61 disk full, 70 permission denied, 74 other drive, 75 path/file
/// access, 76 path not found.
namespace twk::platform {

/// A file open for appending. Each `write` is appended to the file in one piece, even when another
/// process appends to it, too.
class AppendFile {
 public:
  virtual ~AppendFile() = default;
  virtual void write(std::string_view bytes) = 0;
};

/// A file of fixed-length records, open for reading and writing.
class RandomFile {
 public:
  virtual ~RandomFile() = default;
  [[nodiscard]] virtual std::uint64_t size() = 0;
  /// The bytes at `offset`; fewer than `count` at the end of the file.
  virtual std::string read(std::uint64_t offset, std::size_t count) = 0;
  /// Writes all bytes; they are on the disk when the call returns.
  virtual void write(std::uint64_t offset, std::string_view bytes) = 0;
  /// The same without waiting for the disk: others see it at once, a power cut may undo it.
  virtual void put(std::uint64_t offset, std::string_view bytes) { write(offset, bytes); }
  /// Keeps other sessions, in this process and in others, from writing these bytes under a lock of their own.
  /// Waits for up to five seconds, then raises 70. The lock ends with `unlock` or with the object.
  virtual void lock(std::uint64_t offset, std::uint64_t count) = 0;
  virtual void unlock(std::uint64_t offset, std::uint64_t count) = 0;
  /// False once another file has replaced this one under its path: what is written here is lost.
  [[nodiscard]] virtual bool is_current() = 0;
};

/// What a name in a folder refers to.
struct FileEntry {
  std::string name;           ///< as spelled there
  bool directory = false;     ///< false for a link
  bool link = false;          ///< it leads elsewhere
  std::uint64_t size = 0;     ///< bytes of a file, 0 for anything else
  std::int64_t modified = 0;  ///< the time of its last change, in nanoseconds since 1970 UTC
};

/// Called while a file is copied, with the bytes done so far; the copy stops when it returns False.
using CopyProgress = std::function<bool(std::uint64_t done)>;

class Files {
 public:
  virtual ~Files() = default;

  /// True for a file or a directory; False also for a path that cannot be examined.
  virtual bool exists(std::string_view path) = 0;
  virtual bool is_directory(std::string_view path) = 0;
  /// One level: the parent must exist. Raises 75 when something of that name exists.
  virtual void make_directory(std::string_view path) = 0;
  /// What a directory holds, sorted by name.
  virtual std::vector<FileEntry> list(std::string_view path) = 0;
  /// What a path refers to. Raises 53 or 76 when it does not exist.
  virtual FileEntry status(std::string_view path) = 0;
  /// Removes an empty directory. Raises 75 when it is not empty, when it is shared, and for anything
  /// that is not a directory.
  virtual void remove_directory(std::string_view path) = 0;

  virtual std::string read(std::string_view path) = 0;
  /// Replaces the whole file: a reader, or a crash, sees the old contents or the new, never a part. It keeps
  /// its owner, group and mode; what a link leads to is replaced, not the link. Raises 70 for a read-only
  /// file.
  virtual void write(std::string_view path, std::string_view bytes) = 0;
  /// Removes a file or a link; a directory raises 75.
  virtual void remove(std::string_view path) = 0;
  /// Copies the bytes and the time of the last change of a file to a new one, on the same server or another,
  /// in pieces, with `progress` after each. Raises 58 when something of the new name exists, unless `replace`
  /// lets the complete copy replace that file; 75 for a `from` that is not an ordinary file or that changed
  /// meanwhile. False when `progress` stopped it. A copy that failed or was stopped leaves nothing behind.
  virtual bool copy_file(std::string_view from, std::string_view to, bool replace,
                         const CopyProgress& progress) = 0;
  /// Renames a file or a directory, within its folder or into another on the same drive, atomically and
  /// durably: a reader, or a crash, sees it under one of the two names. Raises 58 when something of the new
  /// name exists, unless `replace` lets it replace that file; 74 for a place on another drive or server; 75
  /// when the directory is shared.
  virtual void rename(std::string_view from, std::string_view to, bool replace = false) = 0;

  /// Creates the file when there is none. `truncate` empties it first.
  virtual std::unique_ptr<AppendFile> open_append(std::string_view path, bool truncate = false) = 0;
  /// Creates the file when there is none.
  virtual std::unique_ptr<RandomFile> open_random(std::string_view path) = 0;
  /// For reading only; raises 53 when there is none.
  virtual std::unique_ptr<RandomFile> open_random_read(std::string_view path) = 0;
};

}  // namespace twk::platform
