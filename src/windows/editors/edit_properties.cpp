#include "windows/editors/edit_properties.hpp"

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "records/terminal_server_rows.hpp"
#include "stores/side_tables.hpp"
#include "stores/store_outcome.hpp"
#include "stores/typed_text.hpp"
#include "windows/editors/drive_letters.hpp"
#include "windows/editors/editor_messages.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {
namespace {

using controls::ListRow;
using controls::ListView;

/// How the window looks, and where the row is stored, in one mode.
struct ModeLook {
  std::string_view title;
  std::string_view first_caption;
  std::string_view second_caption;
  int first_length;  ///< of the field in its file, if limited there
  int second_length;
  std::string_view file;  ///< rewritten with each change; none for a list that its window stores
  std::size_t most_rows;
};

constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);
constexpr std::size_t kMostMailRows = 49;

constexpr std::array<ModeLook, 5> kLooks = {{
    {"Edit W2K Properties", "Property", "Value", 100, 255, stores::kW2kFile, kNoLimit},
    {"Edit Mail Properties", "Attribute", "Value", 100, 255, stores::kMailFile, kMostMailRows},
    {"Edit Template Variables", "Name", "Value", 15, 30, {}, records::kVariableSlots - 1},
    {"Edit Custom Properties", "Display name", "Attribute", 40, 100, {}, 0},
    {"Edit WTS Properties", "Display Name", "Property", 100, 255, stores::kWtsFile, 0},
}};

constexpr std::string_view kUserIcon = "USER";
constexpr std::string_view kMailIcon = "MAIL";

const ModeLook& look_of(std::int32_t list_mode) {
  return kLooks.at(static_cast<std::size_t>(list_mode));
}

ListView& list_of(Desktop& session, std::int32_t list_mode) {
  switch (list_mode) {
    case mode::kW2k:
      return session.form1.ListView7;
    case mode::kMail:
      return session.form1.ListView8;
    case mode::kVariables:
      return session.variables.ListView1;
    case mode::kCustom:
      return session.custom.ListView1;
    default:
      return session.form1.ListView9;
  }
}

std::string value_of(const ListRow& row) {
  return row.sub_items.empty() ? std::string() : row.sub_items.front();
}

/// A list as it was, to restore when its file cannot be written.
class ListCopy {
 public:
  explicit ListCopy(ListView& list) : list_(list) {
    for (std::size_t i = 0; i < list.size(); ++i)
      rows_.push_back(list.at(i));
  }
  void restore() const {
    const controls::DrawingOff off(list_);
    list_.clear();
    for (const ListRow& row : rows_)
      list_.set_selected(list_.add(row.key, row.text, row.icon, row.sub_items), row.selected);
  }

 private:
  ListView& list_;
  std::vector<ListRow> rows_;
};

void save_list(Desktop& session, std::int32_t list_mode) {
  if (list_mode == mode::kW2k)
    stores::save_w2k_table(session);
  else if (list_mode == mode::kMail)
    stores::save_mail_table(session);
  else if (list_mode == mode::kWts)
    stores::save_wts_table(session);
}

/// Changes the list and rewrites its file. False when that failed, which was reported; nothing is changed.
bool change_list(Desktop& session, std::int32_t list_mode, const std::function<void(ListView&)>& change) {
  ListView& list = list_of(session, list_mode);
  const ListCopy before(list);
  change(list);
  try {
    save_list(session, list_mode);
    return true;
  } catch (const base::RuntimeError& failure) {
    before.restore();
    stores::tell(session, stores::file_failure(look_of(list_mode).file, failure));
    return false;
  }
}

void open_window(Desktop& session, std::int32_t list_mode, bool is_new) {
  session.edit_properties.EditPropertiesMode = list_mode;
  session.edit_properties.EditPropertiesIsNew = is_new;
  Edit_Properties_Load(session);
  session.platform.dialogs.show_modal("Edit_Properties");
  session.edit_properties.EditPropertiesIsNew = false;
}

void fill_choices(controls::ComboBox& box, std::initializer_list<std::string_view> choices) {
  box.clear();
  for (const std::string_view choice : choices)
    box.add_item(std::string(choice));
}

/// The control that holds the second field: by the last letter of the row's key in mode 4.
controls::Observable<std::string>& second_field(Edit_Properties& window, const ListRow* row) {
  const char kind =
      window.EditPropertiesMode == mode::kWts && row != nullptr && !row->key.empty() ? row->key.back() : ' ';
  if (kind == 'y')
    return window.WTS_YN.text;
  if (kind == 'd')
    return window.WTS_DRIVE_LETTER.text;
  return kind == 't' ? window.WTS_TIME.text : window.W2K_Propertry.text;
}

void show_controls(Edit_Properties& window, const ListRow* row) {
  const auto* const second = &second_field(window, row);
  window.W2K_Propertry.visible = second == &window.W2K_Propertry.text;
  window.WTS_YN.visible = second == &window.WTS_YN.text;
  window.WTS_DRIVE_LETTER.visible = second == &window.WTS_DRIVE_LETTER.text;
  window.WTS_TIME.visible = second == &window.WTS_TIME.text;
  window.kind.visible = window.EditPropertiesMode == mode::kW2k;
  window.W2K_Attribute.locked = window.EditPropertiesMode == mode::kWts;
}

/// A row that was longer already stays whole.
int limit(int length, std::string_view text) {
  return std::max(length, static_cast<int>(base::length(text)));
}

bool refuses_long_text(Desktop& session, std::string_view text, int most, std::string_view caption,
                       std::string_view title) {
  if (base::length(text) <= static_cast<std::size_t>(most))
    return false;
  warn(session, std::string(caption) + " has at most " + base::to_text(most) + " characters.", title);
  return true;
}

std::string kept(std::int32_t list_mode, const std::string& text) {
  return list_mode == mode::kCustom ? std::string(base::trim(text)) : text;
}

void put_row(const Edit_Properties& window, ListView& list, ListRow& row, const std::string& value) {
  const std::int32_t list_mode = window.EditPropertiesMode;
  if (list_mode != mode::kWts)
    list.set_text(row, kept(list_mode, window.W2K_Attribute.text));
  list.set_sub_item(row, 1, kept(list_mode, value));
  if (list_mode == mode::kW2k)
    list.set_icon(row, std::string(window.W2K_Person.value ? kUserIcon : kMailIcon));
  else if (list_mode == mode::kMail)
    list.set_icon(row, std::string(kMailIcon));
}

}  // namespace

void Listviewmnu_Edit(Desktop& session, std::int32_t list_mode) {
  if (list_of(session, list_mode).selected() != nullptr)
    open_window(session, list_mode, false);
}

void Listviewmnu_New(Desktop& session, std::int32_t list_mode) {
  const ModeLook& look = look_of(list_mode);
  if (look.most_rows == 0)
    return;
  if (list_of(session, list_mode).size() >= look.most_rows) {
    warn(session,
         "The list holds at most " + base::to_text(static_cast<std::int64_t>(look.most_rows)) + " rows.",
         look.title);
    return;
  }
  open_window(session, list_mode, true);
}

void Listviewmnu_Delete(Desktop& session, std::int32_t list_mode) {
  ListRow* const row = list_of(session, list_mode).selected();
  if (row == nullptr || list_mode == mode::kWts)
    return;
  if (list_mode == mode::kCustom) {
    session.custom.ListView1.set_text(*row, {});
    session.custom.ListView1.set_sub_item(*row, 1, {});
    return;
  }
  if (session.form1.Confirm_Deletes.on() &&
      session.platform.dialogs.MsgBox("Sure to Delete " + row->text, platform::Buttons::kYesNo,
                                      platform::Icon::kQuestion, "Delete Row") != platform::Answer::kYes)
    return;
  change_list(session, list_mode, [row](ListView& list) {
    const std::size_t place = list.place_of(*row);
    list.remove(*row);
    list.select(list.empty() ? nullptr : &list.at(std::min(place, list.size() - 1)));
  });
}

void Edit_Properties_Load(Desktop& session) {
  Edit_Properties& window = session.edit_properties;
  const ModeLook& look = look_of(window.EditPropertiesMode);
  const ListRow* const row =
      window.EditPropertiesIsNew ? nullptr : list_of(session, window.EditPropertiesMode).selected();
  window.title.caption = std::string(look.title);
  window.Property.caption = std::string(look.first_caption);
  window.Label2.caption = std::string(look.second_caption);
  windows::fill_drive_letters(window.WTS_DRIVE_LETTER);
  fill_choices(window.WTS_YN, {"Yes", "No"});
  window.WTS_TIME.clear();
  for (const records::TimeWord& time : records::kTimeWords)
    window.WTS_TIME.add_item(std::string(time.word));
  show_controls(window, row);

  window.W2K_Attribute.text = row == nullptr ? std::string() : row->text;
  window.W2K_Propertry.text = std::string();
  second_field(window, row) = row == nullptr ? std::string() : value_of(*row);
  window.W2K_Attribute_MaxLength = limit(look.first_length, window.W2K_Attribute.text.get());
  window.W2K_Propertry_MaxLength = limit(look.second_length, window.W2K_Propertry.text.get());
  window.W2K_2000.value = row != nullptr && row->icon != kUserIcon;
  window.W2K_Person.value = !window.W2K_2000.value;
  W2K_Attribute_Change(session);
}

bool Edit_Properties_OK(Desktop& session) {
  Edit_Properties& window = session.edit_properties;
  const std::int32_t list_mode = window.EditPropertiesMode;
  const ModeLook& look = look_of(list_mode);
  ListRow* const selected = window.EditPropertiesIsNew ? nullptr : list_of(session, list_mode).selected();
  const std::string value = second_field(window, selected);
  const auto refusal_of = list_mode == mode::kVariables ? stores::record_refusal : stores::control_refusal;
  if (refuses_typed(session, {window.W2K_Attribute.text.get(), value}, look.title, refusal_of) ||
      refuses_long_text(session, window.W2K_Attribute.text.get(), window.W2K_Attribute_MaxLength,
                        look.first_caption, look.title) ||
      refuses_long_text(session, value, window.W2K_Propertry_MaxLength, look.second_caption, look.title))
    return false;
  if (!window.EditPropertiesIsNew && selected == nullptr)
    return true;
  const bool changed = change_list(session, list_mode, [&](ListView& list) {
    ListRow& row = selected != nullptr ? *selected : list.add({}, {}, {}, {std::string()});
    put_row(window, list, row, value);
    list.select(&row);
  });
  if (changed)
    window.EditPropertiesIsNew = false;
  return changed;
}

void Edit_Properties_Cancel(Desktop& session) {
  session.edit_properties.EditPropertiesIsNew = false;
}

void W2K_Attribute_Change(Desktop& session) {
  Edit_Properties& window = session.edit_properties;
  const bool in_columns = window.EditPropertiesMode == mode::kW2k || window.EditPropertiesMode == mode::kMail;
  const bool breaks = in_columns && window.W2K_Attribute.text.get().find(',') != base::npos;
  window.hint.caption = breaks
                            ? "The name ends at the comma: what follows it is read back as part of the value."
                            : std::string();
}

}  // namespace twk::windows
