#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Files and folders, named by paths with backslashes: network paths ("\\FS1\D$\Users\jo"), and paths of the
/// workstation itself ("/srv/db\Site.dat"; forward slashes count as well). The last part of a path folds
/// case: an existing file of another case is the file meant. Contents are bytes; text is encoded by the
/// caller.
///
/// A link (a symbolic link, a junction) counts as what it leads to, except in `list`, `status`, `copy_file`
/// and the calls that take something away: those see the link itself, so that who walks down a tree stays
/// within it.
///
/// Every call raises `base::RuntimeError` when it fails, with the runtime's file numbers: 52 bad name, 53
/// file not found, 58 exists already, 61 disk full, 70 permission denied, 74 other drive, 75 path/file
/// access, 76 path not found.
namespace twk::platform {

/// A file open for appending. Each `write` reaches the file as one piece behind whatever stands there, also
/// when another process appends to it.
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
  /// All bytes, and on the disk when the call returns.
  virtual void write(std::uint64_t offset, std::string_view bytes) = 0;
  /// Keeps other sessions, in this process and in others, from writing these bytes under a lock of their own.
  /// Waits for up to five seconds, then raises 70. The lock ends with `unlock` or with the object.
  virtual void lock(std::uint64_t offset, std::uint64_t count) = 0;
  virtual void unlock(std::uint64_t offset, std::uint64_t count) = 0;
  /// False once another file took this one's place under its path: what is written here is lost.
  [[nodiscard]] virtual bool is_current() = 0;
};

/// What stands under a name.
struct FileEntry {
  std::string name;           ///< as it is spelled there
  bool directory = false;     ///< not of a link
  bool link = false;          ///< it leads elsewhere
  std::uint64_t size = 0;     ///< bytes of a file, 0 of anything else
  std::int64_t modified = 0;  ///< the time of its last change, in nanoseconds since 1970 UTC
};

/// Called while a file is copied, with the bytes done so far; the copy is given up when it gives False.
using CopyProgress = std::function<bool(std::uint64_t done)>;

class Files {
 public:
  virtual ~Files() = default;

  /// True for a file or a directory; also False for a path that cannot be looked at.
  virtual bool exists(std::string_view path) = 0;
  virtual bool is_directory(std::string_view path) = 0;
  /// One level: the parent must exist. Raises 75 when something of that name is there.
  virtual void make_directory(std::string_view path) = 0;
  /// What a directory holds, sorted by name.
  virtual std::vector<FileEntry> list(std::string_view path) = 0;
  /// What stands under a path. Raises 53 or 76 when nothing does.
  virtual FileEntry status(std::string_view path) = 0;
  /// Takes an empty directory away. Raises 75 when it holds something, when a share holds it, and for
  /// anything that is no directory.
  virtual void remove_directory(std::string_view path) = 0;

  virtual std::string read(std::string_view path) = 0;
  /// Replaces the whole file: a reader, or a crash, sees the old contents or the new, never a part. It keeps
  /// its owner, group and mode; what a link leads to is replaced, not the link. Raises 70 for a file that
  /// nobody may write.
  virtual void write(std::string_view path, std::string_view bytes) = 0;
  /// Takes a file away, or a link; a directory raises 75.
  virtual void remove(std::string_view path) = 0;
  /// Copies the bytes and the time of the last change of a file to a new one, on the same server or another,
  /// in pieces, with `progress` after each. Raises 58 when something of the new name is there, unless
  /// `replace` lets the copy take that file's place when it is whole; 75 for a `from` that is no ordinary
  /// file and for one that changed meanwhile. False when `progress` gave it up. No part of a copy stays that
  /// failed or was given up.
  virtual bool copy_file(std::string_view from, std::string_view to, bool replace,
                         const CopyProgress& progress) = 0;
  /// Gives a file or a directory another name, in the same folder or in another of the same drive, at once
  /// and lasting: a reader, or a crash, sees it under one of the two. Raises 58 when something of the new
  /// name is there, unless `replace` lets it take that file's place; 74 for a place on another drive or
  /// server; 75 when a share holds the directory.
  virtual void rename(std::string_view from, std::string_view to, bool replace = false) = 0;

  /// Creates the file when there is none. `truncate` empties it first.
  virtual std::unique_ptr<AppendFile> open_append(std::string_view path, bool truncate = false) = 0;
  /// Creates the file when there is none.
  virtual std::unique_ptr<RandomFile> open_random(std::string_view path) = 0;
  /// For reading alone; raises 53 when there is none.
  virtual std::unique_ptr<RandomFile> open_random_read(std::string_view path) = 0;
};

}  // namespace twk::platform
