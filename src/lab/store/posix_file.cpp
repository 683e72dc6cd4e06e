#include "lab/store/posix_file.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "local/file_errors.hpp"

namespace twk::lab {
namespace {

/// Calls again what a signal interrupted.
template <typename Call>
auto retry(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR)
    result = call();
  return result;
}

bool is_refusal(int error) {
  return error == EACCES || error == EPERM || error == EROFS;
}

}  // namespace

void raise_file_error(int error, const std::filesystem::path& path) {
  local::raise_file_error(error, "work on", path.string());
}

PosixFile::PosixFile(std::filesystem::path path, int flags) : path_(std::move(path)) {
  fd_ = retry([&] { return ::open(path_.c_str(), flags | O_CLOEXEC, 0600); });
  if (fd_ < 0)
    raise_file_error(errno, path_);
}

PosixFile& PosixFile::operator=(PosixFile&& from) noexcept {
  close();
  path_ = std::move(from.path_);
  fd_ = std::exchange(from.fd_, -1);
  return *this;
}

std::optional<PosixFile> PosixFile::try_open(const std::filesystem::path& path, int flags) {
  PosixFile file;
  file.path_ = path;
  file.fd_ = retry([&] { return ::open(path.c_str(), flags | O_CLOEXEC, 0600); });
  if (file.fd_ >= 0)
    return file;
  if (is_refusal(errno) || errno == ENOENT)
    return std::nullopt;
  raise_file_error(errno, path);
}

void PosixFile::close() {
  if (fd_ >= 0)
    ::close(std::exchange(fd_, -1));
}

struct stat PosixFile::status() const {
  struct stat status {};
  if (::fstat(fd_, &status) != 0)
    raise_file_error(errno, path_);
  return status;
}

void PosixFile::lock(bool exclusive) const {
  if (retry([&] { return ::flock(fd_, exclusive ? LOCK_EX : LOCK_SH); }) != 0)
    raise_file_error(errno, path_);
}

void PosixFile::unlock() const {
  ::flock(fd_, LOCK_UN);
}

std::string PosixFile::read_from(std::uint64_t offset) const {
  const auto size = static_cast<std::uint64_t>(status().st_size);
  std::string bytes(size > offset ? size - offset : 0, '\0');
  bytes.resize(read(offset, bytes));
  return bytes;
}

std::size_t PosixFile::read(std::uint64_t offset, std::span<char> bytes) const {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = retry([&] {
      return ::pread(fd_, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
    });
    if (count < 0)
      raise_file_error(errno, path_);
    if (count == 0)
      break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

void PosixFile::write_at(std::uint64_t offset, std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t count =
        retry([&] { return ::pwrite(fd_, bytes.data(), bytes.size(), static_cast<off_t>(offset)); });
    if (count < 0)
      raise_file_error(errno, path_);
    bytes.remove_prefix(static_cast<std::size_t>(count));
    offset += static_cast<std::uint64_t>(count);
  }
}

void PosixFile::truncate(std::uint64_t size) const {
  if (retry([&] { return ::ftruncate(fd_, static_cast<off_t>(size)); }) != 0)
    raise_file_error(errno, path_);
}

void PosixFile::sync() const {
  if (retry([&] { return ::fdatasync(fd_); }) != 0)
    raise_file_error(errno, path_);
}

std::optional<struct stat> status_of(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0)
    return status;
  if (errno == ENOENT)
    return std::nullopt;
  raise_file_error(errno, path);
}

void replace_file(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (::rename(from.c_str(), to.c_str()) != 0)
    raise_file_error(errno, to);
  PosixFile(to.parent_path(), O_RDONLY | O_DIRECTORY).sync();
}

}  // namespace twk::lab
