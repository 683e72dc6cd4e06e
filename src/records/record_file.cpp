#include "records/record_file.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::records {
namespace {

/// The byte whose lock protects the numbers of the records. No record file grows as large.
constexpr std::uint64_t kNumbersLock = 0x7FFFFFFE;

/// Bytes that a search reads at once.
constexpr std::size_t kBlockSize = 256UL * 1024;

/// A lock that cannot be released ends with the file, which its user closes at once.
void release(platform::RandomFile& file, std::uint64_t offset, std::uint64_t count) {
  base::Trap trap;
  trap([&] { file.unlock(offset, count); });
}

class RecordLock {
 public:
  RecordLock(platform::RandomFile& file, std::uint64_t offset, std::uint64_t count)
      : file_(file), offset_(offset), count_(count) {
    file_.lock(offset_, count_);
  }
  RecordLock(const RecordLock&) = delete;
  RecordLock& operator=(const RecordLock&) = delete;
  ~RecordLock() { release(file_, offset_, count_); }

 private:
  platform::RandomFile& file_;
  std::uint64_t offset_;
  std::uint64_t count_;
};

}  // namespace

RecordFile::NumbersHold::~NumbersHold() {
  release(file_, kNumbersLock, 1);
}

RecordFile::NumbersHold RecordFile::hold_numbers() {
  for (;;) {
    file_->lock(kNumbersLock, 1);
    if (file_->is_current())
      return NumbersHold(*file_);
    file_ = files_->open_random(path_);
  }
}

RecordFile RecordFile::open(platform::Files& files, std::string_view path, std::size_t record_size) {
  return {files, path, files.open_random(path), record_size};
}

RecordFile RecordFile::open_read(platform::Files& files, std::string_view path, std::size_t record_size) {
  try {
    return {files, path, files.open_random_read(path), record_size};
  } catch (const base::RuntimeError& failure) {
    if (failure.number() != base::error::kFileNotFound)
      throw;
    return {files, path, nullptr, record_size};
  }
}

std::int32_t RecordFile::count() {
  // Some 40,000 templates; anything larger is not a database, and reading it would fill the memory.
  constexpr std::uint64_t kLargest = 64ULL << 20U;
  const std::uint64_t size = file_ ? file_->size() : 0;
  if (size > kLargest)
    base::raise(base::error::kBadFileName, path_ + " is larger than any database file of this program");
  return static_cast<std::int32_t>(size / record_size_);
}

std::string RecordFile::read(std::int32_t number) {
  if (number < 1 || number > count())
    throw base::RuntimeError(base::error::kOutOfBounds, "The file has no record " + base::to_text(number));
  return file_->read(static_cast<std::uint64_t>(number - 1) * record_size_, record_size_);
}

RecordSearch RecordFile::search(const std::function<bool(std::string_view bytes)>& matches) {
  RecordSearch result;
  const std::size_t records = static_cast<std::size_t>(count());
  const std::size_t per_block = std::max<std::size_t>(1, kBlockSize / record_size_);
  for (std::size_t first = 0; first < records; first += per_block) {
    const std::string block =
        file_->read(first * record_size_, std::min(per_block, records - first) * record_size_);
    for (std::size_t at = 0; at + record_size_ <= block.size(); at += record_size_) {
      const std::string_view record = std::string_view(block).substr(at, record_size_);
      ++result.number;
      result.found = matches(record);
      if (result.found || static_cast<std::size_t>(result.number) == records)
        result.bytes = record;
      if (result.found)
        return result;
    }
  }
  return result;
}

void RecordFile::write(std::int32_t number, std::string_view bytes) {
  const std::uint64_t offset = static_cast<std::uint64_t>(number - 1) * record_size_;
  const RecordLock lock(*file_, offset, record_size_);
  file_->write(offset, bytes);
}

std::int32_t RecordFile::append(std::string_view bytes) {
  const NumbersHold held = hold_numbers();
  const std::int32_t number = count() + 1;
  write(number, bytes);
  return number;
}

}  // namespace twk::records
