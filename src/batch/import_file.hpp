#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "batch/import_source.hpp"

/// The lines of an import file, and the file of those that were refused, which can be imported again.
namespace twk::batch {

/// The heading of "Import.err", after the asterisks and the time.
inline constexpr std::string_view kNotCreated = "The following users were not created.";
/// Its last line after a halt.
inline constexpr std::string_view kErrorHalt = "Import Halted because error were detected";
inline constexpr std::string_view kWarningHalt = "Import Halted because warnings were detected";

inline constexpr std::int32_t kErrorHeadingLines = 4;

/// The bytes below the heading of an "Import.err"; all bytes of any other file.
std::string_view without_error_heading(std::string_view bytes);

/// The line at `position`, without its end (CR LF, LF or CR); `position` moves past it. False at the end.
bool next_line(std::string_view text, std::size_t& position, std::string_view& line);

/// Puts a line into `ImportLine`, `ImportFields` and `ImportFieldCount`: every comma separates. A field that
/// the line does not have is empty.
void split_import_line(session::ImportState& state, std::string_view line);

/// The lines that describe users, with their numbers in the file. The heading of an "Import.err" and its
/// closing line about a halt do not count.
class ImportLines final : public ImportSource {
 public:
  /// `bytes` must outlive the object.
  explicit ImportLines(std::string_view bytes);

  bool next() override;
  /// In UTF-8.
  [[nodiscard]] std::string_view line() const { return line_; }
  [[nodiscard]] std::int32_t number() const override { return number_; }
  [[nodiscard]] std::int32_t last_number() const override;
  void put_back() override;
  [[nodiscard]] std::string text() const override { return std::string(line_); }
  [[nodiscard]] std::string_view raw() const override { return bytes_.substr(start_, position_ - start_); }
  void take_up(session::ImportState& state) const override { split_import_line(state, line_); }

 private:
  std::string_view bytes_;
  bool utf8_;
  std::string converted_;  ///< the current line, of a file in code page 1252
  std::size_t position_ = 0;
  std::size_t start_ = 0;  ///< of the current line
  std::string_view line_;
  std::int32_t number_ = 0;
  bool of_errors_ = false;  ///< the text is an "Import.err"
};

}  // namespace twk::batch
