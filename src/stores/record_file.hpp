#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/errors.hpp"
#include "platform/files.hpp"

namespace twk::session {
struct Session;
}

namespace twk::stores {

/// Where a search through the records stopped.
struct RecordSearch {
  bool found = false;
  std::int32_t number = 0;  ///< the record that was found, else the last one; 0 in an empty file
  std::string bytes;        ///< of that record
};

/// A file of records of one length, without a header: record n, counted from 1, starts at (n - 1) times the
/// length. A part of a record at the end of the file does not count, and the next new record takes its place.
///
/// Several sessions may share the file. A record is written whole, under a lock of its bytes. New records are
/// numbered under a lock far behind the records, so that two sessions never take the same number. Every call
/// raises the runtime error of the platform's files.
class RecordFile {
 public:
  /// For reading and writing; creates the file when there is none.
  static RecordFile open(platform::Files& files, std::string_view path, std::size_t record_size);
  /// For reading; a file that is not there holds no records.
  static RecordFile open_read(platform::Files& files, std::string_view path, std::size_t record_size);

  [[nodiscard]] std::int32_t count();
  /// Raises when the file has no such record.
  [[nodiscard]] std::string read(std::int32_t number);
  /// Walks from record 1 to the first that `matches`.
  RecordSearch search(const std::function<bool(std::string_view bytes)>& matches);
  void write(std::int32_t number, std::string_view bytes);
  /// Writes behind the last record and gives the number.
  std::int32_t append(std::string_view bytes);

 private:
  RecordFile(std::unique_ptr<platform::RandomFile> file, std::size_t record_size)
      : file_(std::move(file)), record_size_(record_size) {}

  std::unique_ptr<platform::RandomFile> file_;
  std::size_t record_size_;
};

/// Full path of a file in the database directory.
std::string database_path(const session::Session& session, std::string_view file);

/// The message of a store whose file could not be opened, read or written: "Error Opening " and the file, and
/// the runtime's description on a line of its own.
void report_file_error(session::Session& session, std::string_view file, const base::RuntimeError& failure);

}  // namespace twk::stores
