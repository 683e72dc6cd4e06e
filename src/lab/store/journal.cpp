#include "lab/store/journal.hpp"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <optional>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "lab/store/ldif.hpp"

namespace twk::lab {
namespace {

constexpr std::string_view kHeader = "# generation ";
constexpr std::string_view kEnd = "# end";

/// For the byte in front of so many others, what it does to the remainder.
constexpr auto kCrcTables = [] {
  std::array<std::array<std::uint32_t, 256>, 4> tables{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit)
      value = (value & 1U) != 0 ? value >> 1U ^ 0xEDB88320U : value >> 1U;
    tables[0].at(i) = value;
  }
  for (std::size_t after = 1; after < tables.size(); ++after) {
    for (std::size_t i = 0; i < 256; ++i) {
      const std::uint32_t value = tables.at(after - 1).at(i);
      tables.at(after).at(i) = value >> 8U ^ tables[0].at(value & 255U);
    }
  }
  return tables;
}();

/// Four bytes at a time.
std::uint32_t crc32(std::string_view bytes) {
  std::uint32_t crc = 0xFFFFFFFFU;
  for (; bytes.size() >= 4; bytes.remove_prefix(4)) {
    for (std::size_t i = 0; i < 4; ++i)
      crc ^= std::uint32_t{static_cast<unsigned char>(bytes[i])} << 8U * i;
    crc = kCrcTables[3][crc & 255U] ^ kCrcTables[2][crc >> 8U & 255U] ^ kCrcTables[1][crc >> 16U & 255U] ^
          kCrcTables[0][crc >> 24U];
  }
  for (const char c : bytes)
    crc = kCrcTables[0][(crc ^ static_cast<unsigned char>(c)) & 255U] ^ crc >> 8U;
  return ~crc;
}

std::string end_line(std::string_view record) {
  return std::string(kEnd) + " " + base::to_hex(crc32(record)).substr(2) + "\n\n";
}

bool same_file(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// The position after the record that starts at `from`, and whether its end mark is right; nothing when no
/// end mark follows.
struct RecordEnd {
  std::size_t position = 0;
  bool is_right = false;
};
std::optional<RecordEnd> find_end(std::string_view text, std::size_t from) {
  std::size_t mark = from;
  if (text.substr(from, kEnd.size()) != kEnd) {
    const std::size_t found = text.find("\n# end", from);
    if (found == base::npos)
      return std::nullopt;
    mark = found + 1;
  }
  const std::size_t line_end = text.find('\n', mark);
  if (line_end == base::npos || line_end + 1 >= text.size())
    return std::nullopt;
  const std::string_view record = text.substr(from, mark - from);
  const std::string_view line = text.substr(mark, line_end + 2 - mark);
  const bool has_blank = text[line_end + 1] == '\n';
  return RecordEnd{line_end + (has_blank ? 2 : 1), line == end_line(record) || line == "# end\n\n"};
}

/// The end of the last record in a row of whole ones.
struct Whole {
  std::size_t end = 0;
  bool goes_on = false;  ///< whole records follow a damaged one
};
Whole find_whole(std::string_view text) {
  Whole whole;
  std::optional<RecordEnd> end = find_end(text, 0);
  for (; end && end->is_right; end = find_end(text, end->position))
    whole.end = end->position;
  while (end && !whole.goes_on) {
    end = find_end(text, end->position);
    whole.goes_on = end && end->is_right;
  }
  if (!whole.goes_on && text.find_first_not_of("\r\n", whole.end) == base::npos)
    whole.end = text.size();
  return whole;
}

std::size_t count_lines(std::string_view text) {
  std::size_t lines = 0;
  for (std::size_t end = text.find('\n'); end != base::npos; end = text.find('\n', end + 1))
    ++lines;
  return lines;
}

}  // namespace

std::string generation_line(std::uint64_t generation) {
  return std::string(kHeader) + std::to_string(generation) + "\n\n";
}

std::uint64_t generation_of(std::string_view text) {
  std::uint64_t generation = 0;
  if (text.starts_with(kHeader)) {
    std::from_chars(text.data() + kHeader.size(), text.data() + text.size(), generation);
  }
  return generation;
}

Journal::Journal(std::filesystem::path path, std::function<void(const std::string&)> warn)
    : path_(std::move(path)), warn_(std::move(warn)) {}

bool Journal::is_unchanged() const {
  const std::optional<struct stat> now = status_of(path_);
  if (!now || !file_.is_open())
    return !now && !file_.is_open();
  return same_file(*now, identity_) && static_cast<std::uint64_t>(now->st_size) == end_ && !is_new_;
}

bool Journal::open(Access access) {
  if (file_.is_open() && (writable_ || access == Access::kRead))
    return true;
  const int create = access == Access::kWrite ? O_CREAT : 0;
  std::optional<PosixFile> file = PosixFile::try_open(path_, O_RDWR | create);
  writable_ = file.has_value();
  if (!file && access == Access::kWrite)
    raise_file_error(errno == ENOENT ? ENOENT : EACCES, path_);
  if (!file)
    file = PosixFile::try_open(path_, O_RDONLY);
  if (!file) {
    if (errno != ENOENT)
      raise_file_error(errno, path_);
    file_.close();
    return false;
  }
  const struct stat status = file->status();
  if (!file_.is_open() || !same_file(status, identity_))
    is_new_ = true;
  file_ = *std::move(file);
  identity_ = status;
  return true;
}

bool Journal::lock(Access access) {
  while (open(access)) {
    file_.lock(writable_);
    const std::optional<struct stat> now = status_of(path_);
    if (now && same_file(*now, identity_)) {
      locked_size_ = static_cast<std::uint64_t>(now->st_size);
      return true;
    }
    file_.close();
    unsynced_ = false;
  }
  return false;
}

void Journal::unlock() {
  if (file_.is_open())
    file_.unlock();
}

std::uint64_t Journal::rewind(std::uint64_t generation) {
  is_new_ = false;
  end_ = 0;
  next_line_ = 1;
  const std::string text = file_.read_from(0);
  if (writable_ && text.find('\n') == base::npos) {
    const std::string header = generation_line(generation);
    file_.truncate(0);
    file_.write_at(0, header);
    end_ = header.size();
    next_line_ = 3;
    return generation;
  }
  if (text.empty())
    return generation;
  if (text.starts_with(kHeader)) {
    end_ = std::min(text.find_first_not_of("\r\n", text.find('\n')), text.size());
    next_line_ = 1 + count_lines(std::string_view(text).substr(0, end_));
  }
  return generation_of(text);
}

Journal::Part Journal::read() {
  if (locked_size_ == end_)
    return {{}, next_line_};
  Part part{file_.read_from(end_), next_line_};
  const Whole whole = find_whole(part.text);
  if (whole.goes_on) {
    const std::size_t line = next_line_ + count_lines(std::string_view(part.text).substr(0, whole.end));
    throw base::RuntimeError(kInvalidLdif,
                             path_.string() + ": Line " + std::to_string(line) +
                                 ": The record differs from what was written, and others follow it.");
  }
  const std::size_t torn = part.text.size() - whole.end;
  part.text.resize(whole.end);
  end_ += whole.end;
  next_line_ += count_lines(part.text);
  if (torn != 0 && writable_)
    cut(torn);
  return part;
}

void Journal::cut(std::uint64_t torn) {
  file_.truncate(end_);
  file_.sync();
  warn_(path_.string() + ": the last change was not written to its end; " + std::to_string(torn) +
        " bytes were dropped.");
}

void Journal::skip() {
  end_ = static_cast<std::uint64_t>(file_.status().st_size);
}

void Journal::append(std::string_view record, bool sync_now) {
  std::string text(record);
  text += end_line(record);
  try {
    file_.write_at(end_, text);
    if (sync_now)
      file_.sync();
  } catch (const base::RuntimeError&) {
    // What cannot be cut off lacks a valid end, or everyone reads it at the next check.
    base::Trap trap;
    trap([&] { file_.truncate(end_); });
    throw;
  }
  unsynced_ = !sync_now;
  end_ += text.size();
  next_line_ += count_lines(text);
}

void Journal::begin_sync() {
  if (unsynced_ && !early_sync_.is_begun() && file_.is_open())
    unsynced_ = !early_sync_.begin(file_.descriptor());
}

void Journal::sync() {
  const int error = early_sync_.is_begun() ? early_sync_.wait() : 0;
  if (error != 0)
    raise_file_error(error, path_);
  if (!std::exchange(unsynced_, false) || !file_.is_open())
    return;
  file_.sync();
}

void Journal::replace(std::uint64_t generation) {
  std::filesystem::path temporary = path_;
  temporary += ".new";
  const PosixFile file(temporary, O_RDWR | O_CREAT | O_TRUNC);
  file.write_at(0, generation_line(generation));
  file.sync();
  replace_file(temporary, path_);
}

}  // namespace twk::lab
