#include "local/copy_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <vector>

#include "base/errors.hpp"
#include "local/descriptor.hpp"
#include "local/file_errors.hpp"

namespace twk::local {
namespace {

/// What the system copies in one call: a file of 2 GiB reports progress every few milliseconds.
constexpr std::size_t kPiece = std::size_t{8} << 20U;
/// Below this a read and a write cost less than asking the file systems to share blocks.
constexpr std::uint64_t kSmall = 65536;

/// A new file that is removed again unless it is kept.
class NewFile {
 public:
  NewFile(std::string path, mode_t mode)
      : path_(std::move(path)),
        file_(open_descriptor(path_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode & 0777U)) {}
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    if (!kept_)
      unlink(path_.c_str());
  }

  [[nodiscard]] const Descriptor& file() const { return file_; }
  [[nodiscard]] const std::string& path() const { return path_; }
  void keep() { kept_ = true; }

 private:
  std::string path_;
  Descriptor file_;
  bool kept_ = false;
};

bool is_link(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

Descriptor open_source(const std::string& path) {
  try {
    return open_descriptor(path, O_RDONLY | O_NOFOLLOW);
  } catch (const base::RuntimeError&) {
    if (!is_link(path))
      throw;
    throw base::RuntimeError(base::error::kPathFileAccess,
                             "cannot copy " + path + ": it is a link, which is not followed");
  }
}

struct stat status_of_source(const Descriptor& source, const std::string& path) {
  const struct stat status = status_of(source, path);
  if (!S_ISREG(status.st_mode))
    raise_file_error(S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP, "copy", path);
  return status;
}

std::size_t read_piece(const Descriptor& source, std::vector<char>& buffer, const std::string& path) {
  for (;;) {
    const ssize_t got = ::read(source.get(), buffer.data(), buffer.size());
    if (got >= 0)
      return static_cast<std::size_t>(got);
    if (errno != EINTR)
      raise_file_error(errno, "read", path);
  }
}

/// Bytes that the system itself copied from one file to the other; none when it cannot for these two.
std::size_t share_piece(const Descriptor& source, const NewFile& target) {
  for (;;) {
    const ssize_t done = copy_file_range(source.get(), nullptr, target.file().get(), nullptr, kPiece, 0);
    if (done >= 0)
      return static_cast<std::size_t>(done);
    if (errno == ENOSPC || errno == EDQUOT || errno == EIO || errno == EFBIG)
      raise_file_error(errno, "write to", target.path());
    if (errno != EINTR)
      return 0;
  }
}

/// What was copied, up to the end but not far past `size`; none when `progress` stopped it.
std::optional<std::uint64_t> copy_bytes(const Descriptor& source, const std::string& from, std::uint64_t size,
                                        const NewFile& target, const platform::CopyProgress& progress) {
  std::uint64_t done = 0;
  std::vector<char> buffer;
  bool shared = size > kSmall;
  for (;;) {
    std::size_t piece = shared ? share_piece(source, target) : 0;
    if (piece == 0) {
      shared = false;
      if (buffer.empty())
        buffer.resize(size <= kSmall ? static_cast<std::size_t>(size) + 1 : std::size_t{1} << 20U);
      piece = read_piece(source, buffer, from);
      if (piece == 0)
        return done;
      write_all(target.file(), std::string_view(buffer.data(), piece), target.path());
    }
    done += piece;
    if (progress && !progress(done))
      return std::nullopt;
    // The caller sees whether the file grew meanwhile; a small one needs no further read for that.
    if (done > size || (done == size && size <= kSmall))
      return done;
  }
}

void keep_time(const NewFile& target, const struct stat& status) {
  const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
  if (futimens(target.file().get(), times.data()) != 0)
    raise_file_error(errno, "set the time of", target.path());
}

bool is_unchanged(const struct stat& before, const struct stat& after) {
  return before.st_size == after.st_size && before.st_mtim.tv_sec == after.st_mtim.tv_sec &&
         before.st_mtim.tv_nsec == after.st_mtim.tv_nsec;
}

}  // namespace

bool copy_file(const std::string& from, const std::string& to, bool replace,
               const platform::CopyProgress& progress) {
  const Descriptor source = open_source(from);
  const struct stat status = status_of_source(source, from);
  const auto size = static_cast<std::uint64_t>(status.st_size);
  struct stat there {};
  const bool replaces = replace && lstat(to.c_str(), &there) == 0;
  const std::string beside = to + ".twk-copy";
  if (replaces)
    unlink(beside.c_str());
  NewFile target(replaces ? beside : to, status.st_mode);
  const auto copied = copy_bytes(source, from, size, target, progress);
  if (!copied)
    return false;
  if (*copied != size || !is_unchanged(status, status_of(source, from))) {
    throw base::RuntimeError(base::error::kPathFileAccess,
                             "cannot copy " + from + ": it changed while it was copied");
  }
  keep_time(target, status);
  if (replaces && std::rename(target.path().c_str(), to.c_str()) != 0)
    raise_file_error(errno, "replace", to);
  target.keep();
  return true;
}

}  // namespace twk::local
