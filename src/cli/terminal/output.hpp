#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "cli/terminal/json.hpp"

namespace twk::cli {

/// A key of a result and its heading for people.
struct Column {
  std::string key;
  std::string title;
};

/// Standard output. With `json` each result is one object on a line with the given keys; with `csv` tables
/// are records of RFC 4180 below a line with the keys; otherwise results are tables and lists for people,
/// aligned by display width, lights in colour on a terminal.
///
/// A reader that goes away (`| head`) does not stop the work: what cannot be written is dropped, and
/// `finish` reports any other reason.
class Output {
 public:
  Output();

  void set_json(bool json) { json_ = json; }
  [[nodiscard]] bool json() const { return json_; }
  /// For a command that prints tables alone.
  void set_csv(bool csv) { csv_ = csv; }
  [[nodiscard]] bool csv() const { return csv_; }

  /// One row for each result, under headings; without a result nothing, in CSV the headings.
  void table(const std::vector<Column>& columns, const std::vector<Json>& rows);
  /// One result, a line for each key.
  void details(const std::vector<Column>& fields, const Json& result);
  /// One result as it comes, written at once, so that it is not lost when the program is killed. `text` is
  /// its form for people, control characters made visible.
  void result(const Json& object, std::string_view text);
  /// The bytes unchanged, whatever the form of results.
  void raw(std::string_view bytes);
  /// The word of a light, coloured if requested.
  [[nodiscard]] std::string light(std::string_view word) const;

  /// The texts under "message" and "record" of the last result; empty for none.
  [[nodiscard]] const std::string& last_message() const { return last_message_; }
  [[nodiscard]] const std::string& last_record() const { return last_record_; }
  void forget_last();

  /// Writes what is buffered. Raises a runtime error when something could not be written, except for a reader
  /// that went away.
  void finish();

 private:
  friend class RowPrinter;

  void write(std::string_view bytes);
  /// With their headings; returns the widths of the columns.
  std::vector<std::size_t> print_rows(const std::vector<Column>& columns, const std::vector<Json>& rows);

  bool json_ = false;
  std::string last_message_;
  std::string last_record_;
  bool csv_ = false;
  const bool coloured_;  ///< for a terminal
  int failure_ = 0;      ///< errno of the first failed write
};

/// A table whose rows come one by one, any number of them. Its columns are as wide as the first rows need.
class RowPrinter {
 public:
  RowPrinter(Output& output, const std::vector<Column>& columns) : output_(output), columns_(columns) {}
  void add(const Json& row);
  /// From the first thousand rows on, and not for JSON, a row may come as the texts of its cells, which takes
  /// a tenth of the time.
  [[nodiscard]] bool takes_texts() const { return !output_.json() && !widths_.empty(); }
  void add_texts(std::initializer_list<std::string_view> texts);
  /// Prints what was held back to find the widths.
  void finish();

 private:
  Output& output_;
  const std::vector<Column>& columns_;
  std::vector<Json> first_;
  std::vector<std::size_t> widths_;
  std::string line_;
};

/// The separate reasons of a light that is not GREEN, as every result about a user has them under "warnings";
/// only the message when no reason was given.
Json warnings_of(std::string_view light, const std::string& message, const std::vector<std::string>& reasons);

/// A value for people: a list separated by commas, by semicolons when one of its texts has a comma, True and
/// False as "yes" and "no", nothing as "".
std::string text_of(const Json& value);

}  // namespace twk::cli
