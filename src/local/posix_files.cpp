#include "local/posix_files.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "local/copy_file.hpp"
#include "local/descriptor.hpp"
#include "local/file_errors.hpp"
#include "local/replace_file.hpp"
#include "local/shared_file.hpp"

namespace twk::local {
namespace {

constexpr mode_t kNewFileMode = 0660;
constexpr mode_t kNewFolderMode = 0770;

/// The folder and the last part of a path without a slash at its end.
struct SplitPath {
  std::string folder;  ///< "." for a path of one part
  std::string name;
};

SplitPath split_path(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == base::npos)
    return {".", path};
  return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

std::string fold_last_part(const std::string& path, FoldedNames& names) {
  const SplitPath split = split_path(path);
  const auto found = names.find(split.folder, split.name);
  return found ? path.substr(0, path.size() - split.name.size()) + *found : path;
}

class PosixAppendFile final : public platform::AppendFile {
 public:
  explicit PosixAppendFile(std::string path, bool truncate)
      : path_(std::move(path)),
        file_(open_shared_file(path_, O_WRONLY | O_CREAT | O_APPEND | (truncate ? O_TRUNC : 0),
                               kNewFileMode)) {}

  void write(std::string_view bytes) override { write_all(file_, bytes, path_); }

 private:
  std::string path_;
  Descriptor file_;
};

class PosixRandomFile final : public platform::RandomFile {
 public:
  PosixRandomFile(std::string path, Descriptor file, Lock lock)
      : path_(std::move(path)), file_(std::move(file)), lock_(lock) {}

  std::uint64_t size() override { return static_cast<std::uint64_t>(status_of(file_, path_).st_size); }

  std::string read(std::uint64_t offset, std::size_t count) override {
    // Far more may be asked for than there is.
    constexpr std::size_t kSmallPart = 65536;
    const std::uint64_t all = count > kSmallPart ? size() : offset + count;
    if (offset >= all)
      return {};
    std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(count, all - offset)), '\0');
    std::size_t used = 0;
    while (used < bytes.size()) {
      const ssize_t got =
          pread(file_.get(), bytes.data() + used, bytes.size() - used, to_file_offset(offset + used, path_));
      if (got == 0)
        break;
      if (got > 0) {
        used += static_cast<std::size_t>(got);
      } else if (errno != EINTR) {
        raise_file_error(errno, "read", path_);
      }
    }
    bytes.resize(used);
    return bytes;
  }

  void write(std::uint64_t offset, std::string_view bytes) override {
    put(offset, bytes);
    while (fdatasync(file_.get()) != 0) {
      if (errno != EINTR)
        raise_file_error(errno, "write to disk", path_);
    }
  }

  void put(std::uint64_t offset, std::string_view bytes) override {
    const std::uint64_t old_size = size();
    std::uint64_t at = offset;
    for (std::string_view rest = bytes; !rest.empty();) {
      const ssize_t done = pwrite(file_.get(), rest.data(), rest.size(), to_file_offset(at, path_));
      if (done >= 0) {
        rest.remove_prefix(static_cast<std::size_t>(done));
        at += static_cast<std::size_t>(done);
      } else if (errno != EINTR) {
        const int error = errno;
        drop_partial_tail(old_size, at);
        raise_file_error(error, "write to", path_);
      }
    }
  }

  void lock(std::uint64_t offset, std::uint64_t count) override {
    lock_range(file_, lock_, offset, count, path_);
  }
  void unlock(std::uint64_t offset, std::uint64_t count) override {
    unlock_range(file_, offset, count, path_);
  }
  bool is_current() override {
    const struct stat own = status_of(file_, path_);
    struct stat named {};
    return stat(path_.c_str(), &named) == 0 && named.st_dev == own.st_dev && named.st_ino == own.st_ino;
  }

 private:
  /// Undoes what a failed write appended, unless someone has written after it since.
  void drop_partial_tail(std::uint64_t old_size, std::uint64_t end) {
    if (end <= old_size || size() != end)
      return;
    if (ftruncate(file_.get(), to_file_offset(old_size, path_)) != 0)
      raise_file_error(errno, "shorten", path_);
  }

  std::string path_;
  Descriptor file_;
  Lock lock_;
};

/// False, with `errno`, when it failed; EEXIST when what is there may not be replaced.
bool move_file(const std::string& from, const std::string& to, bool replace) {
  const unsigned flags = replace ? 0U : RENAME_NOREPLACE;
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags) == 0)
    return true;
  if (replace || errno != EINVAL)
    return false;
  // A network file system that cannot do both in one step.
  struct stat status {};
  if (lstat(to.c_str(), &status) == 0) {
    errno = EEXIST;
    return false;
  }
  return errno == ENOENT && ::rename(from.c_str(), to.c_str()) == 0;
}

/// A slash after the name of a link would lead to its target.
std::string without_slash(std::string path) {
  path.resize(std::max<std::size_t>(path.find_last_not_of('/') + 1, 1));
  return path;
}

platform::FileEntry to_entry(std::string name, const struct stat& status) {
  return {std::move(name), S_ISDIR(status.st_mode), S_ISLNK(status.st_mode),
          S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0,
          status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec};
}

/// The path in the system's form, as it is spelled. Raises 52 and 76 as `to_local_path` does.
std::string to_spelled_path(std::string_view path) {
  std::string local(path);
  if (path.empty() || path.find('\0') != base::npos) {
    throw base::RuntimeError(base::error::kBadFileName, "bad file name \"" + local + "\"");
  }
  if (path.starts_with("\\\\")) {
    throw base::RuntimeError(base::error::kPathNotFound,
                             "the network path " + local + " is not on this machine");
  }
  std::replace(local.begin(), local.end(), '\\', '/');
  return local;
}

/// A path whose last part does not exist as it is spelled, with the name that it folds to.
std::optional<std::string> find_other_case(const std::string& path, FoldedNames& names) {
  const SplitPath split = split_path(without_slash(path));
  const auto name = names.find_other_case(split.folder, split.name).name;
  return name ? std::optional(split.folder + "/" + *name) : std::nullopt;
}

/// The status of what the path leads to; false when it cannot be read.
bool look_at(std::string_view path, FoldedNames& names, struct stat& status) {
  base::Trap trap;
  bool found = false;
  trap([&] {
    const std::string spelled = to_spelled_path(path);
    found = stat(spelled.c_str(), &status) == 0;
    if (found || errno != ENOENT)
      return;
    const auto other = find_other_case(spelled, names);
    found = other && stat((spelled.ends_with('/') ? *other + "/" : *other).c_str(), &status) == 0;
  });
  return found;
}

}  // namespace

std::string to_local_path(std::string_view path) {
  FoldedNames names;
  return to_local_path(path, names);
}

std::string to_local_path(std::string_view path, FoldedNames& names) {
  std::string local = to_spelled_path(path);
  const std::size_t last = local.find_last_not_of('/');
  if (last == base::npos)
    return "/";
  const bool names_folder = last + 1 < local.size();
  local.resize(last + 1);
  return fold_last_part(local, names) + (names_folder ? "/" : "");
}

std::string PosixFiles::local(std::string_view path) const {
  return to_local_path(path, *names_);
}

bool PosixFiles::exists(std::string_view path) {
  struct stat status {};
  return look_at(path, *names_, status);
}

bool PosixFiles::is_directory(std::string_view path) {
  struct stat status {};
  return look_at(path, *names_, status) && S_ISDIR(status.st_mode);
}

void PosixFiles::make_directory(std::string_view path) {
  const std::string spelled = without_slash(to_spelled_path(path));
  const std::string local_path = find_other_case(spelled, *names_).value_or(spelled);
  const SplitPath split = split_path(local_path);
  names_->before_adding(split.folder);
  if (mkdir(local_path.c_str(), kNewFolderMode) == 0)
    return names_->added(split.folder, split.name);
  if (errno == EEXIST) {
    throw base::RuntimeError(base::error::kPathFileAccess,
                             "cannot create " + local_path + ": it exists already");
  }
  raise_file_error(errno, "create", local_path);
}

std::vector<platform::FileEntry> PosixFiles::list(std::string_view path) {
  const std::string local_path = local(path);
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(local_path.c_str()), closedir);
  // A missing folder is a missing path, never a missing file.
  if (folder == nullptr)
    raise_file_error(errno == ENOENT ? ENOTDIR : errno, "list", local_path);
  std::vector<platform::FileEntry> entries;
  for (;;) {
    errno = 0;
    const dirent* const entry = readdir(folder.get());
    if (entry == nullptr)
      break;
    const std::string_view name = entry->d_name;
    struct stat status {};
    // What was removed meanwhile does not exist.
    if (name != "." && name != ".." &&
        fstatat(dirfd(folder.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0)
      entries.push_back(to_entry(std::string(name), status));
  }
  if (errno != 0)
    raise_file_error(errno, "list", local_path);
  std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
  return entries;
}

platform::FileEntry PosixFiles::status(std::string_view path) {
  const std::string local_path = without_slash(local(path));
  struct stat status {};
  if (lstat(local_path.c_str(), &status) != 0)
    raise_file_error(errno, "look at", local_path);
  return to_entry(split_path(local_path).name, status);
}

void PosixFiles::remove_directory(std::string_view path) {
  const std::string local_path = without_slash(local(path));
  if (rmdir(local_path.c_str()) == 0)
    return;
  if (errno == ENOTEMPTY || errno == EEXIST || errno == ENOTDIR) {
    throw base::RuntimeError(
        base::error::kPathFileAccess,
        "cannot remove " + local_path + ": " + (errno == ENOTDIR ? "it is not a folder" : "it is not empty"));
  }
  raise_file_error(errno, "remove", local_path);
}

std::string PosixFiles::read(std::string_view path) {
  const std::string local_path = local(path);
  // By its own name: the entry for an open file below /proc cannot be followed by hand.
  static_cast<void>(follow_trusted_links(local_path));
  const Descriptor file = open_descriptor(local_path, O_RDONLY);
  const mode_t mode = status_of(file, local_path).st_mode;
  if (!S_ISREG(mode) && !S_ISFIFO(mode))
    raise_file_error(S_ISDIR(mode) ? EISDIR : ENOTSUP, "read", local_path);
  return read_all(file, local_path);
}

void PosixFiles::write(std::string_view path, std::string_view bytes) {
  replace_file(local(path), bytes, Access::kShared);
}

void PosixFiles::remove(std::string_view path) {
  const std::string local_path = local(path);
  if (unlink(local_path.c_str()) != 0)
    raise_file_error(errno, "remove", local_path);
}

bool PosixFiles::copy_file(std::string_view from, std::string_view to, bool replace,
                           const platform::CopyProgress& progress) {
  const std::string target = local(to);
  const SplitPath split = split_path(target);
  names_->before_adding(split.folder);
  const bool whole = local::copy_file(local(from), target, replace, progress);
  if (whole)
    names_->added(split.folder, split.name);
  return whole;
}

bool PosixFiles::copy_to_new(const std::string& from, const std::string& to,
                             const platform::CopyProgress& progress) {
  const bool whole = local::copy_file(from, to, false, progress);
  if (whole) {
    const SplitPath split = split_path(to);
    names_->added(split.folder, split.name);
  }
  return whole;
}

void PosixFiles::rename(std::string_view from, std::string_view to, bool replace) {
  const std::string old_path = local(from);
  const std::string new_path = local(to);
  if (!move_file(old_path, new_path, replace)) {
    if (errno == EEXIST || errno == ENOTEMPTY) {
      throw base::RuntimeError(base::error::kFileExists,
                               "cannot rename " + old_path + ": " + new_path + " exists already");
    }
    raise_file_error(errno, "rename", old_path);
  }
  sync_folder(split_path(new_path).folder);
}

std::unique_ptr<platform::AppendFile> PosixFiles::open_append(std::string_view path, bool truncate) {
  return std::make_unique<PosixAppendFile>(local(path), truncate);
}

std::unique_ptr<platform::RandomFile> PosixFiles::open_random(std::string_view path) {
  const std::string name = local(path);
  return std::make_unique<PosixRandomFile>(name, open_shared_file(name, O_RDWR | O_CREAT, kNewFileMode),
                                           Lock::kExclusive);
}

std::unique_ptr<platform::RandomFile> PosixFiles::open_random_read(std::string_view path) {
  std::string name = to_spelled_path(path);
  Descriptor file = try_open_shared_file(name, O_RDONLY);
  if (file.get() < 0) {
    name = local(path);
    file = open_shared_file(name, O_RDONLY);
  }
  return std::make_unique<PosixRandomFile>(name, std::move(file), Lock::kShared);
}

}  // namespace twk::local
