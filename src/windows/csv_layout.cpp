#include "windows/csv_layout.hpp"

#include <algorithm>
#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/csv_detection.hpp"
#include "batch/csv_lines.hpp"
#include "batch/first_account_name.hpp"
#include "batch/heading_use.hpp"
#include "batch/import_columns.hpp"
#include "creation/known_person.hpp"
#include "format/import_headings.hpp"
#include "windows/create_user.hpp"
#include "windows/password_fields.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {
namespace {

constexpr std::size_t kLongestShownPath = 40;

/// Records of a spreadsheet's file that are shown.
constexpr std::size_t kShownRecords = 10;

constexpr std::array<const char*, 5> kUses = {"First Name", "Middle Name", "Last Name", "UserID", "Password"};

std::array<controls::ComboBox*, kUses.size()> choices(CSV_Import& window) {
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

int chosen(const controls::ComboBox& box) {
  return std::max(0, box.list_index());
}

batch::ImportColumns chosen_columns(const CSV_Import& window) {
  return {chosen(window.ImportFirst), chosen(window.ImportMiddle), chosen(window.ImportLast),
          chosen(window.ImportUserID), chosen(window.ImportPassword)};
}

void offer(CSV_Import& window, const std::vector<std::string>& columns) {
  const auto fill = [&columns](controls::ComboBox& box) {
    box.clear();
    box.add_item("");
    for (const std::string& column : columns)
      box.add_item(column);
  };
  for (controls::ComboBox* box : choices(window))
    fill(*box);
  fill(window.KeyColumn);
}

void show_lines(Desktop& session, std::string_view bytes) {
  CSV_Import& window = session.csv_import;
  const batch::FileColumns file = batch::survey_columns(bytes);
  window.ListView1.clear();
  window.columns = 0;
  for (const std::string& line : file.shown)
    add_preview(window, line);
  std::vector<std::string> tags;
  for (int column = 1; column <= file.offered; ++column)
    tags.push_back(batch::column_tag(column));
  offer(window, tags);
  window.chkImport.value = 1;
  chkImport_Click(session);
}

/// A name for each column that no other has: its heading, with its number where that is needed.
std::vector<std::string> column_names(const batch::CsvHeadings& headings) {
  const auto single = headings.columns_by_key();
  std::vector<std::string> names;
  for (const std::string& heading : headings.texts()) {
    const std::string number = base::to_text(static_cast<std::int64_t>(names.size() + 1));
    std::string name = heading.empty() ? "Column " + number : heading;
    if (!heading.empty() && !single.contains(format::heading_key(heading)))
      name.append(" (").append(number).append(")");
    names.push_back(std::move(name));
  }
  return names;
}

void show_records(Desktop& session, std::string_view bytes) {
  CSV_Import& window = session.csv_import;
  batch::CsvLines lines(bytes);
  window.headings = lines.headings();
  window.records.clear();
  window.ListView1.clear();
  while (window.records.size() < kShownRecords && lines.next()) {
    window.records.push_back(lines.record().fields);
    std::vector<std::string> cells;
    std::ranges::transform(window.records.back(), std::back_inserter(cells), format::heading_text);
    window.ListView1.add({}, {}, {}, std::move(cells));
  }
  window.columns = static_cast<int>(window.headings.size());
  std::vector<std::string> names = column_names(window.headings);
  names.resize(std::min(names.size(), session::kMostImportFields));
  offer(window, names);
  const batch::ImportColumns usual = batch::usual_columns(window.headings);
  window.ImportFirst.select(usual.first);
  window.ImportMiddle.select(usual.middle);
  window.ImportLast.select(usual.last);
  window.chkImport.value = 0;
  chkImport_Click(session);
}

std::string hint_at_csv(std::string_view bytes) {
  const std::string_view sign = batch::sign_of_spreadsheet(bytes);
  if (sign.empty())
    return {};
  return "This file has " + std::string(sign) +
         ", as spreadsheet programs save them. If its first line holds headings, tick the box above.";
}

void read_layout(Desktop& session) {
  CSV_Import& window = session.csv_import;
  const std::string bytes = session.platform.files.read(window.path);
  if (window.chkCsv.on()) {
    show_records(session, bytes);
    window.Hint.caption =
        std::string("Account names are those that the format makes; Rehearse checks whether each is free.");
  } else {
    show_lines(session, bytes);
    window.Hint.caption = hint_at_csv(bytes);
  }
}

std::vector<PreviewColumn> preview_columns(const CSV_Import& window) {
  std::vector<PreviewColumn> columns;
  if (window.chkCsv.on()) {
    columns.push_back({"Account Name", {}});
    for (std::string& name : column_names(window.headings))
      columns.push_back({std::move(name), {}});
    columns.resize(std::min(columns.size(), session::kMostImportFields + 1));
    return columns;
  }
  // A list has a column even when the file has no line.
  const int shown = std::clamp(window.columns.get(), 1, static_cast<int>(session::kMostImportFields));
  for (int column = 1; column <= shown; ++column)
    columns.push_back({base::to_text(column), {}});
  return columns;
}

batch::ImportOrder csv_order(Desktop& session) {
  CSV_Import& window = session.csv_import;
  batch::ImportOrder order;
  order.user = imported_request(session);
  order.csv = true;
  batch::use_columns(session.import, order, chosen_columns(window), window.chkImport.on());
  return order;
}

/// Why nobody could be recognised by what was entered; empty when it will do.
std::string refused_key(const CSV_Import& window) {
  const std::string attribute(base::trim(window.KeyAttribute.text.get()));
  const bool has_column = chosen(window.KeyColumn) != 0;
  if (attribute.empty())
    return has_column
               ? "Type the attribute that is compared with the column, such as employeeNumber, or choose no "
                 "column to recognise nobody."
               : "";
  if (!creation::is_attribute_name(attribute))
    return "\"" + attribute +
           "\" is no attribute: its name has letters, digits and hyphens, such as employeeNumber.";
  return has_column
             ? ""
             : "Choose the column that holds " + attribute + ", or empty the field to recognise nobody.";
}

void show_account_names(Desktop& session) {
  CSV_Import& window = session.csv_import;
  const batch::ImportOrder order = csv_order(session);
  for (std::size_t i = 0; i < window.records.size(); ++i) {
    const std::vector<std::string>& fields = window.records.at(i);
    // A single field is no user.
    const bool user = fields.size() > 1;
    window.ListView1.set_text(
        window.ListView1.at(i),
        user ? batch::first_account_name(session, order, window.headings, fields) : std::string());
  }
}

}  // namespace

creation::NewUserRequest imported_request(const Desktop& session) {
  const CSV_Import& window = session.csv_import;
  creation::NewUserRequest request = new_user_request(session);
  request.keeps_names = window.chkKeepNames.on();
  request.plain_letters = window.chkPlainLetters.on();
  const std::string attribute(base::trim(window.KeyAttribute.text.get()));
  if (!attribute.empty())
    request.key = {attribute, batch::column_tag(chosen(window.KeyColumn))};
  return request;
}

void load_csv_layout(Desktop& session, std::string_view path) {
  CSV_Import& window = session.csv_import;
  window.path = path;
  window.File_Name.caption = shown_path(path);
  window.chkCsv.value = 0;
  read_layout(session);
}

void chkCsv_Click(Desktop& session) {
  CSV_Import& window = session.csv_import;
  base::Trap trap;
  if (trap([&] { read_layout(session); }))
    return;
  session.platform.dialogs.MsgBox(trap.description(), platform::Buttons::kOk, platform::Icon::kCritical,
                                  "CSV File Import");
  window.chkCsv.value = 0;
  trap([&] { read_layout(session); });
}

void show_chosen_columns(Desktop& session) {
  CSV_Import& window = session.csv_import;
  std::vector<PreviewColumn> columns = preview_columns(window);
  if (window.chkCsv.on()) {
    const auto boxes = choices(window);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      std::string& use = columns.at(static_cast<std::size_t>(chosen(*boxes.at(i)))).use;
      if (chosen(*boxes.at(i)) != 0)
        use += (use.empty() ? "" : ", ") + std::string(kUses.at(i));
    }
    show_account_names(session);
  }
  window.preview = std::move(columns);
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
  show_chosen_columns(session);
}

bool csv_layout_ok(Desktop& session) {
  CSV_Import& window = session.csv_import;
  Form1& form = session.form1;
  const batch::ImportColumns columns = chosen_columns(window);
  if (const std::string fault = refused_key(window); !fault.empty()) {
    session.platform.dialogs.MsgBox(fault, platform::Buttons::kOk, platform::Icon::kCritical,
                                    "Can't Import Users");
    return false;
  }
  if (window.chkCsv.on()) {
    const std::string fault = batch::refused_headings(session, csv_order(session), window.headings);
    if (!fault.empty()) {
      session.platform.dialogs.MsgBox(fault + ".", platform::Buttons::kOk, platform::Icon::kCritical,
                                      "Can't Import Users");
      return false;
    }
  }
  session.import.ImportFirstField = static_cast<std::int16_t>(columns.first);
  session.import.ImportMiddleField = static_cast<std::int16_t>(columns.middle);
  session.import.ImportLastField = static_cast<std::int16_t>(columns.last);
  if (columns.password != 0) {
    form.FmtPass.value = 1;
    form.Formatted_Password.text = batch::column_tag(columns.password);
    show_password_frame(session);
  }
  if (columns.id != 0) {
    form.Option1.index = 4;
    form.setupid.text = batch::column_tag(columns.id);
  }
  session.import.ImportAccepted = true;
  window.rehearses = false;
  return true;
}

bool csv_layout_rehearse(Desktop& session) {
  if (!csv_layout_ok(session))
    return false;
  session.csv_import.rehearses = true;
  return true;
}

void csv_layout_cancel(Desktop& session) {
  session.import.ImportAccepted = false;
}

}  // namespace twk::windows
