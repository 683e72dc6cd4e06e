#pragma once

#include <string_view>

#include "batch/csv_headings.hpp"
#include "batch/csv_reader.hpp"
#include "batch/import_source.hpp"

namespace twk::batch {

/// Puts a record into the state like a line. It has at least so many fields as there are headings; those that
/// it lacks are empty.
void take_up_fields(session::ImportState& state, const std::vector<std::string>& fields,
                    std::size_t headings);

/// The users of a spreadsheet's file: its first line holds the headings, each further record is a user. A
/// record without text, as a spreadsheet keeps empty rows, is passed over; fields that a record does not have
/// are empty. "Import.err" of such an import can be read again.
class CsvLines final : public ImportSource {
 public:
  /// Reads the whole file once, so that nothing begins with a file that cannot be read to its end. `bytes`
  /// must outlive the object. Raises `CsvError`, and 13 for a file without headings, with a single column, or
  /// with a record that has more fields than there are headings; a file without a line has no headings.
  explicit CsvLines(std::string_view bytes);

  [[nodiscard]] const CsvHeadings& headings() const { return headings_; }
  [[nodiscard]] const CsvDialect& dialect() const { return dialect_; }
  /// Of the current user.
  [[nodiscard]] const CsvRecord& record() const { return reader_.record(); }

  bool next() override;
  [[nodiscard]] std::int32_t number() const override { return record().line; }
  [[nodiscard]] std::int32_t last_number() const override { return last_number_; }
  void put_back() override { reader_.put_back(); }
  [[nodiscard]] std::string text() const override { return text_of(record()); }
  [[nodiscard]] std::string_view raw() const override { return record().raw; }
  [[nodiscard]] std::string heading() const override { return heading_; }
  void take_up(session::ImportState& state) const override;

 private:
  [[nodiscard]] std::string text_of(const CsvRecord& record) const;
  bool next_filled();
  void read_headings();
  void check_records();

  std::string_view bytes_;  ///< without the heading of an "Import.err"
  std::int32_t first_line_;
  std::int32_t last_number_ = 0;
  CsvDialect dialect_;
  CsvReader reader_;
  std::string heading_;
  CsvHeadings headings_;
};

}  // namespace twk::batch
