#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

/// Open files of the workstation. Calls that an arriving signal breaks off are repeated. Every function
/// raises what `raise_file_error` makes of the failure; `path` is for the message.
namespace twk::local {

/// Owns a file descriptor and closes it.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor();

  [[nodiscard]] int get() const { return number_; }

 private:
  int number_;
};

/// Opens with `flags` of open(2); started programs do not inherit the descriptor. Never waits for
/// the other end of a pipe. `mode` is for a file that O_CREAT makes, less the umask.
Descriptor open_descriptor(const std::string& path, int flags, mode_t mode = 0);
/// The same; a file that cannot be opened is a descriptor below 0, with `errno`.
Descriptor try_open_descriptor(const std::string& path, int flags, mode_t mode = 0);

struct stat status_of(const Descriptor& file, const std::string& path);

/// From the current position to the end; waits for the writer of a pipe.
std::string read_all(const Descriptor& file, const std::string& path);
/// All bytes at the current position, with one call where the system takes them so.
void write_all(const Descriptor& file, std::string_view bytes, const std::string& path);
/// Until the contents are on the disk.
void sync(const Descriptor& file, const std::string& path);

enum class Lock { kShared, kExclusive };

/// Locks bytes against every other opening of the file, in this process and in others. Waits for up to five
/// seconds, then raises 70. Zero bytes take no lock. Ends with `unlock_range` or with the last copy of the
/// descriptor.
void lock_range(const Descriptor& file, Lock kind, std::uint64_t offset, std::uint64_t count,
                const std::string& path);
void unlock_range(const Descriptor& file, std::uint64_t offset, std::uint64_t count, const std::string& path);

/// In the form the system calls take; raises when it is out of their range.
off_t to_file_offset(std::uint64_t offset, const std::string& path);

}  // namespace twk::local
