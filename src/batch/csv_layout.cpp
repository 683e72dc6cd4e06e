#include "batch/csv_layout.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

using session::CSV_Import;
using session::Session;

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

std::string import_text(std::string_view bytes) {
  if (bytes.starts_with(base::kByteOrderMark))
    bytes.remove_prefix(base::kByteOrderMark.size());
  return base::is_valid_utf8(bytes) ? std::string(bytes) : base::from_ansi(bytes);
}

bool next_line(std::string_view text, std::size_t& position, std::string_view& line) {
  if (position >= text.size())
    return false;
  const std::size_t end = text.find_first_of("\r\n", position);
  line = text.substr(position, end == base::npos ? base::npos : end - position);
  position = end == base::npos ? text.size() : end + 1;
  if (end != base::npos && text[end] == '\r' && position < text.size() && text[position] == '\n')
    ++position;
  return true;
}

void split_import_line(session::ImportState& state, std::string_view line) {
  constexpr std::size_t kMostCounted = 32767;
  state.ImportLine = line;
  const std::vector<std::string> fields = base::split(line, ',');
  const std::size_t kept = std::min(fields.size(), session::kMostImportFields);
  std::copy_n(fields.begin(), kept, state.ImportFields.begin() + 1);
  state.ImportFieldCount = static_cast<std::int16_t>(std::min(fields.size(), kMostCounted));
}

void load_csv_layout(Session& session, std::string_view path) {
  CSV_Import& window = session.csv_import;
  window.File_Name.caption = shown_path(path);
  const std::string text = import_text(session.platform.files.read(path));
  window.ListView1.clear();
  window.columns = 0;
  window.chkImport.value = 1;
  for (controls::ComboBox* box : choices(window)) {
    box->clear();
    box->add_item("");
  }
  std::size_t position = 0;
  std::string_view line;
  if (next_line(text, position, line)) {
    add_preview(window, line);
    // A field beyond the last element of the line's fields cannot be asked for.
    const int offered = std::min(window.columns.get(), static_cast<int>(session::kMostImportFields));
    for (int column = 1; column <= offered; ++column) {
      const std::string tag = "%IMPORT" + base::to_text(column) + "%";
      for (controls::ComboBox* box : choices(window))
        box->add_item(tag);
    }
    if (next_line(text, position, line))
      add_preview(window, line);
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
      box->select(index <= 3 ? std::min(index, last) : 0);
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

}  // namespace twk::batch
