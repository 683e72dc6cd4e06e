#include "local/shared_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "base/errors.hpp"
#include "local/file_errors.hpp"

namespace twk::local {
namespace {

constexpr int kMostLinks = 40;

/// The owner of the folder that holds a path's last part; nobody when it cannot be read.
uid_t owner_of_folder(const std::filesystem::path& path) {
  struct stat status {};
  const std::filesystem::path folder = path.parent_path();
  const std::string name = folder.empty() ? "." : folder.string();
  return stat(name.c_str(), &status) == 0 ? status.st_uid : static_cast<uid_t>(-1);
}

bool is_trusted(const struct stat& link, const std::filesystem::path& path) {
  return link.st_uid == geteuid() || link.st_uid == 0 || link.st_uid == owner_of_folder(path);
}

}  // namespace

std::string follow_trusted_links(const std::string& path) {
  std::filesystem::path target = path;
  for (int i = 0; i < kMostLinks; ++i) {
    struct stat status {};
    if (lstat(target.c_str(), &status) != 0 || !S_ISLNK(status.st_mode))
      return target.string();
    if (!is_trusted(status, target)) {
      base::raise(base::error::kPermissionDenied,
                  target.string() + " is a link that someone else has put there; it is not followed");
    }
    std::error_code failed;
    const std::filesystem::path next = std::filesystem::read_symlink(target, failed);
    if (failed)
      raise_file_error(failed.value(), "follow", target.string());
    target = target.parent_path() / next;
  }
  raise_file_error(ELOOP, "open", path);
}

Descriptor open_shared_file(const std::string& path, int flags, mode_t mode) {
  Descriptor file = try_open_shared_file(path, flags, mode);
  if (file.get() < 0)
    raise_file_error(ENOENT, "open", path);
  return file;
}

Descriptor try_open_shared_file(const std::string& path, int flags, mode_t mode) {
  const int opening = (flags & ~O_TRUNC) | O_NOFOLLOW;
  std::string target = path;
  // Most are no links, and need no look before they are opened.
  Descriptor file = try_open_descriptor(target, opening, mode);
  if (file.get() < 0 && errno == ELOOP) {
    target = follow_trusted_links(path);
    file = try_open_descriptor(target, opening, mode);
  }
  if (file.get() < 0 && errno == ENOENT)
    return file;
  if (file.get() < 0)
    raise_file_error(errno, "open", target);
  const struct stat status = status_of(file, target);
  if (!S_ISREG(status.st_mode))
    raise_file_error(S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP, "open", target);
  if (status.st_nlink > 1) {
    base::raise(
        base::error::kPermissionDenied,
        target + " also has another name (a hard link) and may be someone else's file; it is not opened");
  }
  if ((flags & O_TRUNC) != 0 && ftruncate(file.get(), 0) != 0)
    raise_file_error(errno, "empty", target);
  return file;
}

}  // namespace twk::local
