#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace twk::batch {

/// The heading line of a spreadsheet's file. Headings are the same without regard to case, to blanks at their
/// ends, and to line breaks within them. Columns are counted from 1.
class CsvHeadings {
 public:
  CsvHeadings() = default;
  explicit CsvHeadings(const std::vector<std::string>& fields);

  /// In the order of the columns, each on one line.
  [[nodiscard]] const std::vector<std::string>& texts() const { return texts_; }
  [[nodiscard]] std::size_t size() const { return texts_.size(); }
  /// For a message: each in quotation marks, the first twenty.
  [[nodiscard]] std::string listed() const;
  /// The column under a heading. Raises 13, with the headings that there are, when no column has it or
  /// several have.
  [[nodiscard]] int column(std::string_view heading) const;
  /// The column under the first of these headings that exactly one column has; 0 for none.
  [[nodiscard]] int usual_column(const std::vector<std::string_view>& headings) const;
  /// Those that exactly one column has, by `format::heading_key`.
  [[nodiscard]] std::map<std::string, std::size_t> columns_by_key() const;

 private:
  std::vector<std::string> texts_;
  std::map<std::string, std::vector<int>> columns_;  ///< by `format::heading_key`
};

}  // namespace twk::batch
