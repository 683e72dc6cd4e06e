#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>

#include "screens/main/tabs.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/form.hpp"
#include "windows/formats_tab.hpp"
#include "windows/import_options.hpp"
#include "windows/password_fields.hpp"
#include "windows/preferences_tab.hpp"
#include "windows/setting_controls.hpp"
#include "windows/state/form1.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::Form1;

struct Tick {
  const char* caption;
  const char* name;
  controls::CheckBox& control;
  void (*clicked)(Desktop&) = nullptr;  ///< instead of storing it
};

QWidget* make_ticks(Desktop& session, QWidget* parent, const QString& title,
                    std::initializer_list<Tick> ticks) {
  auto* const group = new QGroupBox(title, parent);
  auto* const column = new QVBoxLayout(group);
  for (const Tick& tick : ticks)
    add_check(*column, tick.caption, tick.name, tick.control,
              [&session, &control = tick.control, clicked = tick.clicked] {
                clicked != nullptr ? clicked(session) : windows::store_box(session, control);
              });
  column->addStretch();
  return group;
}

struct Choice {
  const char* caption;
  const char* name;
  controls::OptionButton& control;
};

void add_pair(QFormLayout& rows, const QString& caption, Desktop& session, const Choice& first,
              const Choice& second) {
  auto* const line = new QHBoxLayout();
  rows.addRow(caption, line);
  std::array<QRadioButton*, 2> buttons{};
  for (std::size_t i = 0; i < 2; ++i) {
    const Choice& choice = i == 0 ? first : second;
    buttons.at(i) = new QRadioButton(choice.caption, rows.parentWidget());
    buttons.at(i)->setObjectName(choice.name);
    buttons.at(i)->setAccessibleName(caption + " " + choice.caption);
    line->addWidget(buttons.at(i));
  }
  line->addStretch();
  const auto chosen = [&session](const Choice& choice) {
    return [&session, &control = choice.control] { windows::choose_option(session, control); };
  };
  bind_pair(*buttons[0], first.control, chosen(first), *buttons[1], second.control, chosen(second));
}

QWidget* make_full_names(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("Display Name", parent);
  group->setObjectName("Frame13");
  auto* const column = new QVBoxLayout(group);
  constexpr std::array kPresets = {"First Middle Last", "First Last", "Last First", "Custom"};
  column->addLayout(make_options(*group, kPresets, "FullName_Format", form.FullName_Format,
                                 [&session] { windows::FullName_Format_Click(session); }));
  auto* const rows = new QFormLayout();
  column->addLayout(rows);
  add_text(*rows, "For&mat:", "FN_Format", form.FN_Format,
           [&session] { windows::Check_FN_Format_Click(session); });
  add_result(*rows, "Gives:", "FN_Format_Check", form.FN_Format_Check);
  bind_to(*group, form.Frame13);
  return group;
}

QWidget* make_names(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("Names in the directory and in the tree", parent);
  auto* const rows = new QFormLayout(group);
  add_pair(*rows, "Account name:", session, {"Full name", "CNName", form.CNName},
           {"Logon name", "SamAccountName", form.SamAccountName});
  add_pair(*rows, "Tree shows:", session, {"Name", "DNName", form.DNName},
           {"Display name", "DisplayName", form.DisplayName});
  add_pair(*rows, "Sort the tree:", session, {"Yes", "Sorted_Yes", form.Sorted_Yes},
           {"No", "Sorted_No", form.Sorted_No});
  return group;
}

QWidget* make_import(Desktop& session, QWidget* parent) {
  auto& [on_errors, on_warnings, skip_prompt] = session.form1.STOP_ON_RED;
  auto* const group =
      make_ticks(session, parent, "File Import",
                 {{"Halt on &errors", "STOP_ON_RED_0", on_errors, windows::STOP_ON_RED_Click},
                  {"Halt on &warnings", "STOP_ON_RED_1", on_warnings, windows::STOP_ON_RED_Click},
                  {"Skip &Prompt Fields", "STOP_ON_RED_2", skip_prompt, windows::STOP_ON_RED_Click}});
  auto* const options = new QHBoxLayout();
  static_cast<QVBoxLayout*>(group->layout())->addLayout(options);
  add_button(*options, "I&mport Options…", "IMPORT_GRP", [&session] {
    windows::ImportGrps_Load(session);
    session.platform.dialogs.show_modal("ImportGrps");
  });
  options->addStretch();
  return group;
}

}  // namespace

QWidget* make_preferences_tab(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const page = new QWidget(parent);
  auto* const grid = new QGridLayout(page);
  grid->addWidget(
      make_ticks(session, page, "New accounts",
                 {{"&User must change password at next logon", "Password_Change", form.Password_Change},
                  {"User &cannot change password", "USR_Cant_Change", form.USR_Cant_Change,
                   windows::USR_Cant_Change_Click},
                  {"Password &never expires", "PWD_NVR_EXPIRE", form.PWD_NVR_EXPIRE},
                  {"Account disa&bled", "New_Disabled", form.New_Disabled},
                  {"Use &formatted password", "FmtPass", form.FmtPass, windows::FmtPass_Click}}),
      0, 0);
  grid->addWidget(
      make_ticks(session, page, "Safety",
                 {{"Confirm &deletes", "Confirm_Deletes", form.Confirm_Deletes},
                  {"Confirm &resets", "Confirm_Resets", form.Confirm_Resets},
                  {"Check for &administrator rights at start", "Domain_Admin", form.Domain_Admin},
                  {"Use Admin &Shares", "chkAdmin_Shares", form.chkAdmin_Shares},
                  {"Delete Profi&le From %Username%", "Profile_Delete_Name", form.Profile_Delete_Name}}),
      0, 1);
  grid->addWidget(make_full_names(session, page), 1, 0);
  grid->addWidget(make_import(session, page), 1, 1);
  grid->addWidget(make_names(session, page), 2, 0, 1, 2);
  grid->setRowStretch(3, 1);
  return make_scrolled(*page, parent);
}

}  // namespace twk::screens
