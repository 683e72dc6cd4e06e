#include "batch/open_import.hpp"

#include "batch/csv_lines.hpp"
#include "batch/import_file.hpp"
#include "session/session.hpp"

namespace twk::batch {

std::unique_ptr<ImportSource> open_import(session::ImportState& state, std::string_view bytes, bool csv) {
  state.columns_by_heading.clear();
  state.fields_of_record.clear();
  if (!csv)
    return std::make_unique<ImportLines>(bytes);
  auto lines = std::make_unique<CsvLines>(bytes);
  state.columns_by_heading = lines->headings().columns_by_key();
  return lines;
}

}  // namespace twk::batch
