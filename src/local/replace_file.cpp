#include "local/replace_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>

#include "local/descriptor.hpp"
#include "local/file_errors.hpp"
#include "local/shared_file.hpp"

namespace twk::local {
namespace {

constexpr int kMostTemporaryNames = 1000;

/// The file that is about to be replaced, if any.
std::optional<struct stat> replaced_file(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT)
      return std::nullopt;
    raise_file_error(errno, "write", path);
  }
  if (S_ISDIR(status.st_mode))
    raise_file_error(EISDIR, "write", path);
  if (!S_ISREG(status.st_mode))
    raise_file_error(ENOTSUP, "write", path);
  // A file without any write permission is meant to stay as it is, even for the superuser.
  if ((status.st_mode & 0222U) == 0)
    raise_file_error(EACCES, "write", path);
  if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
    raise_file_error(errno, "write", path);
  return status;
}

/// A new file in the folder, removed again unless it was renamed.
class TemporaryFile {
 public:
  TemporaryFile(const std::filesystem::path& folder, mode_t mode) {
    const std::string stem = (folder / (".twk-" + std::to_string(getpid()) + "-")).string();
    for (int i = 0; i < kMostTemporaryNames; ++i) {
      path_ = stem + std::to_string(i) + ".tmp";
      file_ = Descriptor(open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
      if (file_.get() >= 0)
        return;
      if (errno != EEXIST && errno != EINTR)
        raise_file_error(errno, "create", path_);
    }
    raise_file_error(EEXIST, "create", path_);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!renamed_)
      unlink(path_.c_str());
  }

  [[nodiscard]] const Descriptor& file() const { return file_; }
  [[nodiscard]] const std::string& path() const { return path_; }

  void rename_to(const std::string& target) {
    if (std::rename(path_.c_str(), target.c_str()) != 0)
      raise_file_error(errno, "replace", target);
    renamed_ = true;
  }

 private:
  std::string path_;
  Descriptor file_;
  bool renamed_ = false;
};

/// Gives a new file the owner, group and mode of the old one. Where the group cannot be given, its rights
/// shrink to those of everyone.
void take_over_access(const Descriptor& file, const struct stat& old, const std::string& path) {
  mode_t mode = old.st_mode & 07777U;
  const struct stat made = status_of(file, path);
  const bool same = made.st_uid == old.st_uid && made.st_gid == old.st_gid;
  if (!same && fchown(file.get(), old.st_uid, old.st_gid) != 0 &&
      fchown(file.get(), static_cast<uid_t>(-1), old.st_gid) != 0) {
    mode = (mode & ~070U) | (mode & 070U & ((mode & 07U) << 3U));
  }
  if (fchmod(file.get(), mode) != 0)
    raise_file_error(errno, "set the mode of", path);
}

}  // namespace

void replace_file(const std::string& path, std::string_view bytes, Access access) {
  if (path.ends_with('/'))
    raise_file_error(EISDIR, "write", path);
  const std::string target = follow_trusted_links(path);
  const std::optional<struct stat> old = replaced_file(target);
  std::filesystem::path folder = std::filesystem::path(target).parent_path();
  if (folder.empty())
    folder = ".";
  const Descriptor open_folder(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (open_folder.get() < 0)
    raise_file_error(errno, "write", target);

  TemporaryFile temporary(folder, access == Access::kPrivate ? 0600 : 0660);
  if (old && access == Access::kShared)
    take_over_access(temporary.file(), *old, temporary.path());
  write_all(temporary.file(), bytes, target);
  sync(temporary.file(), target);
  temporary.rename_to(target);
  sync(open_folder, folder.string());
}

void sync_folder(const std::string& folder) {
  const Descriptor open_folder(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (open_folder.get() < 0)
    raise_file_error(errno, "open", folder);
  sync(open_folder, folder);
}

}  // namespace twk::local
