#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files.hpp"

namespace twk::records {

/// Where a search through the records stopped.
struct RecordSearch {
  bool found = false;
  std::int32_t number = 0;  ///< the record that was found, otherwise the last one; 0 in an empty file
  std::string bytes;        ///< of that record
};

/// A file of records of one length, without a header: record n, counted from 1, starts at (n - 1) times the
/// length. A part of a record at the end of the file does not count, and the next new record takes its place.
///
/// Several sessions may share the file. A record is written whole, under a lock of its bytes. The numbers of
/// the records have a separate lock, far beyond the records: it is held to append records, to change the
/// record that a search found, and to compact the file. Every call raises the runtime error of the platform's
/// files.
class RecordFile {
 public:
  /// Every record keeps its number until the end of this scope.
  class NumbersHold {
   public:
    NumbersHold(const NumbersHold&) = delete;
    NumbersHold& operator=(const NumbersHold&) = delete;
    ~NumbersHold();

   private:
    friend class RecordFile;
    explicit NumbersHold(platform::RandomFile& file) : file_(file) {}
    platform::RandomFile& file_;
  };

  /// For reading and writing; creates the file when there is none.
  static RecordFile open(platform::Files& files, std::string_view path, std::size_t record_size);
  /// For reading; a missing file has no records.
  static RecordFile open_read(platform::Files& files, std::string_view path, std::size_t record_size);

  [[nodiscard]] std::int32_t count();
  /// Raises when the file has no such record.
  [[nodiscard]] std::string read(std::int32_t number);
  /// Walks from record 1 to the first that `matches`.
  RecordSearch search(const std::function<bool(std::string_view bytes)>& matches);
  /// Waits up to five seconds for other holders, and reopens the file when it was replaced meanwhile.
  /// Requires a file that is open for writing.
  [[nodiscard]] NumbersHold hold_numbers();
  void write(std::int32_t number, std::string_view bytes);
  /// Writes after the last record and returns its number; holds the numbers meanwhile.
  std::int32_t append(std::string_view bytes);

 private:
  RecordFile(platform::Files& files, std::string_view path, std::unique_ptr<platform::RandomFile> file,
             std::size_t record_size)
      : files_(&files), path_(path), file_(std::move(file)), record_size_(record_size) {}

  platform::Files* files_;
  std::string path_;
  std::unique_ptr<platform::RandomFile> file_;
  std::size_t record_size_;
};

}  // namespace twk::records
