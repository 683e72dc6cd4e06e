#include "windows/csv_layout.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "batch/import_columns.hpp"
#include "windows/password_fields.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {
namespace {

constexpr std::size_t kLongestShownPath = 40;

std::vector<controls::ComboBox*> choices(CSV_Import& window) {
  return {&window.ImportFirst, &window.ImportMiddle, &window.ImportLast, &window.ImportUserID,
          &window.ImportPassword};
}

std::string shown_path(std::string_view path) {
  if (base::length(path) <= kLongestShownPath)
    return std::string(path);
  return "..." + std::string(base::right(path, kLongestShownPath - 3));
}

void add_preview(CSV_Import& window, std::string_view line) {
  std::vector<std::string> fields = base::split(line, ',');
  window.columns = std::max(window.columns.get(), static_cast<int>(fields.size()));
  const std::string first = fields.empty() ? std::string() : fields.front();
  if (!fields.empty())
    fields.erase(fields.begin());
  window.ListView1.add({}, first, {}, std::move(fields));
}

std::int16_t chosen(const controls::ComboBox& box) {
  return static_cast<std::int16_t>(std::max(0, box.list_index()));
}

}  // namespace

void load_csv_layout(Desktop& session, std::string_view path) {
  CSV_Import& window = session.csv_import;
  window.File_Name.caption = shown_path(path);
  const batch::FileColumns file = batch::survey_columns(session.platform.files.read(path));
  window.ListView1.clear();
  window.columns = 0;
  window.chkImport.value = 1;
  for (const std::string& line : file.shown)
    add_preview(window, line);
  for (controls::ComboBox* box : choices(window)) {
    box->clear();
    box->add_item("");
    for (int column = 1; column <= file.offered; ++column)
      box->add_item(batch::column_tag(column));
  }
  chkImport_Click(session);
}

void chkImport_Click(Desktop& session) {
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

void csv_layout_ok(Desktop& session) {
  CSV_Import& window = session.csv_import;
  Form1& form = session.form1;
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
  window.rehearses = false;
}

void csv_layout_rehearse(Desktop& session) {
  csv_layout_ok(session);
  session.csv_import.rehearses = true;
}

void csv_layout_cancel(Desktop& session) {
  session.import.ImportAccepted = false;
}

}  // namespace twk::windows
