#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "batch/csv_dialect.hpp"

/// Records of fields that may be quoted, as RFC 4180 describes and spreadsheet programs save them.
namespace twk::batch {

/// Why a file cannot be read, and where: "line 3, column 7: the quote that begins here is never closed".
class CsvError : public base::RuntimeError {
 public:
  CsvError(std::int32_t line, std::int32_t column, const std::string& fault);

  [[nodiscard]] std::int32_t line() const { return line_; }      ///< of the file, counted from 1
  [[nodiscard]] std::int32_t column() const { return column_; }  ///< in characters, counted from 1

 private:
  std::int32_t line_;
  std::int32_t column_;
};

struct CsvRecord {
  std::int32_t line = 0;            ///< of the file, at which it begins, counted from 1
  std::vector<std::string> fields;  ///< in UTF-8, without their quotes
  std::string_view raw;             ///< its bytes in the file, its line end included
};

/// Reads one record after the other and keeps no other in memory. A field is quoted when it begins with a
/// quote; it may then contain separators, line breaks, and a quote written twice. Within an unquoted field a
/// quote is a character like any other. Lines end with CR LF, LF or CR; an empty line is no record.
class CsvReader {
 public:
  /// `bytes` must outlive the reader. They are the whole file, or its rest from the line `first_line` on.
  CsvReader(std::string_view bytes, const CsvDialect& dialect, std::int32_t first_line = 1);

  /// Goes to the next record; False at the end. Raises `CsvError` for a quote that is never closed, text
  /// after a closing quote, a quote after blanks at the beginning of a field, NUL, and what is not text in
  /// the encoding of the file.
  bool next();
  [[nodiscard]] const CsvRecord& record() const { return record_; }
  /// The current record becomes the next one again.
  void put_back();

 private:
  [[nodiscard]] bool is_over() const { return position_ + unit_ > bytes_.size(); }
  [[nodiscard]] char32_t peek() const;
  [[nodiscard]] bool is_at(char character) const;
  [[nodiscard]] bool is_at_line_end() const { return is_at('\r') || is_at('\n'); }
  void pass_character();
  bool pass_line_end();
  bool pass(char character);
  std::string read_field();
  std::string read_quoted();
  std::string read_plain();
  [[nodiscard]] std::string text(std::size_t from, std::size_t to) const;
  void require_utf8() const;
  [[noreturn]] void fail(std::size_t position, const std::string& fault) const;

  std::string_view bytes_;
  CsvDialect dialect_;
  std::size_t unit_;
  bool big_;
  std::size_t position_;
  std::size_t start_;  ///< of the current record
  std::int32_t line_;
  CsvRecord record_;
};

}  // namespace twk::batch
