#include "windows/csv_layout.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "batch/import_file.hpp"
#include "session/form1.hpp"
#include "session/session.hpp"
#include "session/windows.hpp"
#include "windows/password_fields.hpp"

namespace twk::windows {
namespace {

using session::CSV_Import;
using session::Session;

constexpr std::size_t kLongestShownPath = 40;
constexpr int kShownLines = 2;

std::vector<controls::ComboBox*> choices(CSV_Import& window) {
  return {&window.ImportFirst, &window.ImportMiddle, &window.ImportLast, &window.ImportUserID,
          &window.ImportPassword};
}

std::string shown_path(std::string_view path) {
  if (base::length(path) <= kLongestShownPath)
    return std::string(path);
  return "..." + std::string(base::right(path, kLongestShownPath - 3));
}

int field_count(std::string_view line) {
  return line.empty() ? 0 : static_cast<int>(std::count(line.begin(), line.end(), ',')) + 1;
}

void add_preview(CSV_Import& window, std::string_view line) {
  std::vector<std::string> fields = base::split(line, ',');
  window.columns = std::max(window.columns.get(), static_cast<int>(fields.size()));
  const std::string first = fields.empty() ? std::string() : fields.front();
  if (!fields.empty())
    fields.erase(fields.begin());
  window.ListView1.add({}, first, {}, std::move(fields));
}

/// A field beyond the last element of a line's fields cannot be chosen.
void offer_columns(CSV_Import& window, int fields) {
  for (controls::ComboBox* box : choices(window))
    offer_column(*box, std::min(fields, static_cast<int>(session::kMostImportFields)));
}

std::int16_t chosen(const controls::ComboBox& box) {
  return static_cast<std::int16_t>(std::max(0, box.list_index()));
}

}  // namespace

void offer_column(controls::ComboBox& box, int column) {
  for (int next = static_cast<int>(box.items().size()); next <= column; ++next)
    box.add_item("%IMPORT" + base::to_text(next) + "%");
}

void load_csv_layout(Session& session, std::string_view path) {
  CSV_Import& window = session.csv_import;
  window.File_Name.caption = shown_path(path);
  batch::ImportLines lines(session.platform.files.read(path));
  window.ListView1.clear();
  window.columns = 0;
  window.chkImport.value = 1;
  for (controls::ComboBox* box : choices(window)) {
    box->clear();
    box->add_item("");
  }
  window.widest = 0;
  for (int shown = 0; lines.next(); ++shown) {
    const int fields = field_count(lines.line());
    window.widest = std::max(window.widest, fields);
    if (shown < kShownLines)
      add_preview(window, lines.line());
    // A line of one field makes no user, so it says nothing about the columns.
    if (window.ImportFirst.items().size() == 1 && fields >= 2)
      offer_columns(window, fields);
  }
  chkImport_Click(session);
}

void chkImport_Click(Session& session) {
  CSV_Import& window = session.csv_import;
  const bool standard = window.chkImport.on();
  session.import.ImportDefaultLayout = standard;
  int index = 1;
  for (controls::ComboBox* box : choices(window)) {
    const int last = static_cast<int>(box->items().size()) - 1;
    if (standard)
      box->select(index <= std::min(3, last) ? index : 0);
    box->enabled = !standard;
    ++index;
  }
}

void csv_layout_ok(Session& session) {
  CSV_Import& window = session.csv_import;
  session::Form1& form = session.form1;
  session.import.ImportFirstField = chosen(window.ImportFirst);
  session.import.ImportMiddleField = chosen(window.ImportMiddle);
  session.import.ImportLastField = chosen(window.ImportLast);
  if (!window.ImportPassword.text.get().empty()) {
    form.FmtPass.value = 1;
    form.Formatted_Password.text = window.ImportPassword.text.get();
    show_password_frame(session);
  }
  if (!window.ImportUserID.text.get().empty()) {
    form.Option1.index = 4;
    form.setupid.text = window.ImportUserID.text.get();
  }
  session.import.ImportAccepted = true;
}

void csv_layout_cancel(Session& session) {
  session.import.ImportAccepted = false;
}

}  // namespace twk::windows
