#include "local/descriptor.hpp"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <limits>
#include <thread>

#include "local/file_errors.hpp"

namespace twk::local {
namespace {

constexpr auto kLockPatience = std::chrono::seconds(5);
constexpr auto kLongestPause = std::chrono::milliseconds(50);
constexpr std::size_t kReadSize = 65536;

/// 0, or the error number.
int set_lock(const Descriptor& file, int type, std::uint64_t offset, std::uint64_t count,
             const std::string& path) {
  struct flock range {};
  range.l_type = static_cast<short>(type);
  range.l_whence = SEEK_SET;
  range.l_start = to_file_offset(offset, path);
  range.l_len = to_file_offset(count, path);
  while (fcntl(file.get(), F_OFD_SETLK, &range) != 0) {
    if (errno != EINTR)
      return errno;
  }
  return 0;
}

void wait_for_bytes(const Descriptor& file) {
  pollfd wanted{file.get(), POLLIN, 0};
  poll(&wanted, 1, -1);
}

}  // namespace

Descriptor::~Descriptor() {
  if (number_ >= 0)
    close(number_);
}

Descriptor try_open_descriptor(const std::string& path, int flags, mode_t mode) {
  for (;;) {
    Descriptor file(open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode));
    if (file.get() >= 0 || errno != EINTR)
      return file;
  }
}

Descriptor open_descriptor(const std::string& path, int flags, mode_t mode) {
  Descriptor file = try_open_descriptor(path, flags, mode);
  if (file.get() < 0)
    raise_file_error(errno, "open", path);
  return file;
}

struct stat status_of(const Descriptor& file, const std::string& path) {
  struct stat status {};
  if (fstat(file.get(), &status) != 0)
    raise_file_error(errno, "look at", path);
  return status;
}

std::string read_all(const Descriptor& file, const std::string& path) {
  std::string bytes;
  std::size_t used = 0;
  const auto known_size = static_cast<std::size_t>(std::max<off_t>(status_of(file, path).st_size, 0));
  bytes.resize(std::min<std::size_t>(known_size, bytes.max_size() / 2) + 1);
  for (;;) {
    if (used == bytes.size())
      bytes.resize(bytes.size() + std::max(kReadSize, bytes.size() / 2));
    const ssize_t got = ::read(file.get(), bytes.data() + used, bytes.size() - used);
    if (got > 0) {
      used += static_cast<std::size_t>(got);
    } else if (got == 0) {
      break;
    } else if (errno == EAGAIN) {
      wait_for_bytes(file);
    } else if (errno != EINTR) {
      raise_file_error(errno, "read", path);
    }
  }
  bytes.resize(used);
  return bytes;
}

void write_all(const Descriptor& file, std::string_view bytes, const std::string& path) {
  while (!bytes.empty()) {
    const ssize_t done = ::write(file.get(), bytes.data(), bytes.size());
    if (done >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(done));
    } else if (errno != EINTR) {
      raise_file_error(errno, "write to", path);
    }
  }
}

void sync(const Descriptor& file, const std::string& path) {
  while (fsync(file.get()) != 0) {
    if (errno != EINTR)
      raise_file_error(errno, "write to disk", path);
  }
}

void lock_range(const Descriptor& file, Lock kind, std::uint64_t offset, std::uint64_t count,
                const std::string& path) {
  if (count == 0)
    return;
  const auto deadline = std::chrono::steady_clock::now() + kLockPatience;
  auto pause = std::chrono::milliseconds(1);
  for (;;) {
    const int error = set_lock(file, kind == Lock::kShared ? F_RDLCK : F_WRLCK, offset, count, path);
    if (error == 0)
      return;
    const bool taken = error == EAGAIN || error == EACCES;
    if (!taken || std::chrono::steady_clock::now() >= deadline)
      raise_file_error(error, "lock", path);
    std::this_thread::sleep_for(pause);
    pause = std::min(pause * 2, kLongestPause);
  }
}

void unlock_range(const Descriptor& file, std::uint64_t offset, std::uint64_t count,
                  const std::string& path) {
  if (count == 0)
    return;
  const int error = set_lock(file, F_UNLCK, offset, count, path);
  if (error != 0)
    raise_file_error(error, "unlock", path);
}

off_t to_file_offset(std::uint64_t offset, const std::string& path) {
  if (offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) {
    raise_file_error(EOVERFLOW, "reach the requested position in", path);
  }
  return static_cast<off_t>(offset);
}

}  // namespace twk::local
