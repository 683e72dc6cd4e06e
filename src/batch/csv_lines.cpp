#include "batch/csv_lines.hpp"

#include <algorithm>
#include <limits>

#include "base/text.hpp"
#include "batch/csv_detection.hpp"
#include "batch/import_file.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

bool is_blank(std::string_view field) {
  return field.find_first_not_of(" \t\r\n") == base::npos;
}

}  // namespace

CsvLines::CsvLines(std::string_view bytes)
    : bytes_(without_error_heading(bytes)),
      first_line_(bytes_.size() == bytes.size() ? 1 : kErrorHeadingLines + 1),
      dialect_(find_dialect(bytes_)),
      reader_(bytes_, dialect_, first_line_) {
  read_headings();
  check_records();
  reader_ = CsvReader(bytes_, dialect_, first_line_);
  next_filled();
}

void CsvLines::read_headings() {
  if (!next_filled())
    return;
  heading_ = text_of(record());
  headings_ = CsvHeadings(record().fields);
  if (headings_.size() < 2) {
    base::raise(base::error::kTypeMismatch,
                "line " + base::to_text(record().line) +
                    ", the heading line, has one column: no comma, semicolon or tab separates it");
  }
}

void CsvLines::check_records() {
  while (next()) {
    last_number_ = number();
    if (record().fields.size() > headings_.size()) {
      base::raise(base::error::kTypeMismatch,
                  "line " + base::to_text(record().line) + " has " +
                      base::to_text(static_cast<std::int64_t>(record().fields.size())) +
                      " fields, but there are " + base::to_text(static_cast<std::int64_t>(headings_.size())) +
                      " headings: put a field that contains a separator into quotes");
    }
  }
}

bool CsvLines::next_filled() {
  while (reader_.next()) {
    if (!std::ranges::all_of(record().fields, is_blank))
      return true;
  }
  return false;
}

bool CsvLines::next() {
  if (!next_filled())
    return false;
  const bool is_last = record().raw.data() + record().raw.size() == bytes_.data() + bytes_.size();
  const std::vector<std::string>& fields = record().fields;
  const bool is_halt = fields.size() == 1 && (fields.front() == kErrorHalt || fields.front() == kWarningHalt);
  return !(is_halt && is_last && first_line_ != 1);
}

std::string CsvLines::text_of(const CsvRecord& record) const {
  std::string text = csv_text(dialect_.encoding, record.raw);
  text.erase(text.find_last_not_of("\r\n") + 1);
  return text;
}

void CsvLines::take_up(session::ImportState& state) const {
  state.ImportLine = text();
  take_up_fields(state, record().fields, headings_.size());
}

void take_up_fields(session::ImportState& state, const std::vector<std::string>& fields,
                    std::size_t headings) {
  state.fields_of_record = fields;
  state.fields_of_record.resize(std::max(fields.size(), headings));
  const std::size_t kept = std::min(fields.size(), session::kMostImportFields);
  const auto rest = std::copy_n(fields.begin(), kept, state.ImportFields.begin() + 1);
  std::fill(rest, state.ImportFields.end(), std::string());
  // A single field is no user, however many headings there are.
  const std::size_t count = fields.size() < 2 ? fields.size() : state.fields_of_record.size();
  constexpr std::size_t kMostCounted = std::numeric_limits<std::int16_t>::max();
  state.ImportFieldCount = static_cast<std::int16_t>(std::min(count, kMostCounted));
}

}  // namespace twk::batch
