#include "batch/import_columns.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "batch/import.hpp"
#include "batch/import_file.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

constexpr std::size_t kShownLines = 2;

int field_count(std::string_view line) {
  return line.empty() ? 0 : static_cast<int>(std::count(line.begin(), line.end(), ',')) + 1;
}

}  // namespace

FileColumns survey_columns(std::string_view bytes) {
  FileColumns file;
  ImportLines lines(bytes);
  while (lines.next()) {
    const int fields = field_count(lines.line());
    file.widest = std::max(file.widest, fields);
    if (file.shown.size() < kShownLines)
      file.shown.emplace_back(lines.line());
    // A line of one field makes no user, so it says nothing about the columns.
    if (file.offered == 0 && fields >= 2)
      file.offered = std::min(fields, static_cast<int>(session::kMostImportFields));
  }
  return file;
}

ImportColumns standard_columns(const FileColumns& file) {
  const auto column = [&](int wanted) { return wanted <= file.offered ? wanted : 0; };
  return {column(1), column(2), column(3), 0, 0};
}

std::string column_tag(int column) {
  return "%IMPORT" + base::to_text(column) + "%";
}

void use_columns(session::ImportState& state, ImportOrder& order, const ImportColumns& columns,
                 bool standard) {
  state.ImportDefaultLayout = standard;
  state.ImportFirstField = static_cast<std::int16_t>(columns.first);
  state.ImportMiddleField = static_cast<std::int16_t>(columns.middle);
  state.ImportLastField = static_cast<std::int16_t>(columns.last);
  if (columns.password != 0) {
    order.user.password.formatted = true;
    order.user.password.format = column_tag(columns.password);
  }
  if (columns.id != 0)
    order.user.formats.account = column_tag(columns.id);
}

}  // namespace twk::batch
