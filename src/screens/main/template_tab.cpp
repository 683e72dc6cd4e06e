#include <QGroupBox>
#include <QLabel>
#include <QShortcut>
#include <QStackedWidget>

#include "screens/groups/group_lists.hpp"
#include "screens/main/tabs.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/icons.hpp"
#include "windows/editors/logon_hours.hpp"
#include "windows/share_points_form.hpp"
#include "windows/state/form1.hpp"
#include "windows/template_tab.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::Form1;

constexpr int kPathLength = 75;
constexpr int kShareLength = 20;
constexpr int kNameLength = 25;

/// The list of templates; a new template's name is typed in the same place.
QLayout* make_name(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const place = new QStackedWidget(parent);
  auto* const list = new QComboBox(place);
  list->setObjectName("templatelst");
  list->setAccessibleName("Template");
  auto* const name = new QLineEdit(place);
  name->setObjectName("New_Template_Name");
  name->setPlaceholderText("Name of the new template");
  name->setMaxLength(kNameLength);
  place->addWidget(list);
  place->addWidget(name);
  bind_to(*list, form.templatelst, [&session] { windows::templatelst_Click(session); });
  follow(*list, form.templatelst.locked, [list](bool locked) { list->setEnabled(!locked); });
  bind_to(*name, form.New_Template_Name);
  follow(*place, form.New_Template_Name.visible, [place, list, name](bool making) {
    place->setCurrentWidget(making ? static_cast<QWidget*>(name) : list);
    if (making)
      name->setFocus();
  });
  place->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  auto* const row = new QHBoxLayout();
  auto* const label = new QLabel("Te&mplate:", parent);
  label->setBuddy(list);
  row->addWidget(label);
  row->addWidget(place, 1);
  return row;
}

QWidget* make_account(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("Account", parent);
  auto* const rows = new QFormLayout(group);
  add_text(*rows, "Profile path:", "propath", form.propath)->setMaxLength(kPathLength);
  add_text(*rows, "Home directory:", "homedir", form.homedir)->setMaxLength(kPathLength);
  QComboBox* const drive =
      add_combo(*rows, "Home drive:", "Home_Drive_letter", form.Home_Drive_letter, {}, true);
  drive->lineEdit()->setMaxLength(2);
  follow(*drive, form.Home_Drive_letter.locked, [drive](bool locked) { drive->setEnabled(!locked); });
  add_text(*rows, "Logon script:", "logon", form.logon)->setMaxLength(kShareLength);
  auto* const primary = new QLabel(group);
  primary->setObjectName("PrimaryGrp");
  bind_to(*primary, form.PrimaryGrp);
  rows->addRow("Primary group:", primary);
  return group;
}

QWidget* make_directories(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("Directories and shares to create", parent);
  auto* const rows = new QFormLayout(group);
  add_text(*rows, "Profile directory:", "Profilepath", form.Profilepath)->setMaxLength(kPathLength);
  add_text(*rows, "Profile share:", "sharenameprofile", form.sharenameprofile)->setMaxLength(kShareLength);
  add_text(*rows, "Home directory:", "Homedirpath", form.Homedirpath)->setMaxLength(kPathLength);
  add_text(*rows, "Home share:", "Sharenamehomedir", form.Sharenamehomedir)->setMaxLength(kShareLength);
  auto* const more = new QHBoxLayout();
  more->setContentsMargins(0, 0, 0, 0);
  rows->addRow(more);
  more->addStretch();
  add_button(*more, "S&hare Points…", "btnSharePoints", form.btnSharePoints,
             [&session] { windows::btnSharePoints_Click(session); });
  return group;
}

QWidget* make_group_lists(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("Groups", parent);
  auto* const column = new QVBoxLayout(group);
  column->addWidget(make_two_lists({.list = form.ListView5,
                                    .name = "ListView5",
                                    .caption = "Groups of the domain",
                                    .columns = {"Group"},
                                    .empty_text = "The domain shows no groups.",
                                    .button = form.add,
                                    .button_name = "add",
                                    .button_caption = "&Add",
                                    .move = [&session] { windows::add_Click(session); },
                                    .click = {},
                                    .double_click = [&session] { windows::ListView5_DblClick(session); }},
                                   {.list = form.ListView6,
                                    .name = "ListView6",
                                    .caption = "Groups of the template",
                                    .columns = {"Group"},
                                    .empty_text = "No groups.",
                                    .button = form.remove,
                                    .button_name = "remove",
                                    .button_caption = "&Remove",
                                    .move = [&session] { windows::remove_Click(session); },
                                    .click = {},
                                    .double_click = [&session] { windows::ListView6_DblClick(session); }},
                                   group));
  auto* const primary = new QHBoxLayout();
  column->addLayout(primary);
  primary->addStretch();
  add_button(*primary, "Set &Primary Group", "SetPriGroup", form.SetPriGroup,
             [&session] { windows::SetPriGroup(session); });
  return group;
}

void add_buttons(Desktop& session, QBoxLayout& column) {
  Form1& form = session.form1;
  auto* const buttons = new QHBoxLayout();
  // The layout gets its widget only once it is part of the tab's.
  column.addLayout(buttons);
  buttons->setContentsMargins(9, 0, 9, 9);
  add_button(*buttons, "&New", "NewTemplate", form.NewTemplate,
             [&session] { windows::NewTemplate(session); });
  add_button(*buttons, "&Edit", "EditTemplate", form.EditTemplate,
             [&session] { windows::EditTemplate(session); });
  add_button(*buttons, "&Save", "savetemplate", form.savetemplate,
             [&session] { windows::savetemplate(session); });
  add_button(*buttons, "&Delete", "DeleteTemplate", form.DeleteTemplate,
             [&session] { windows::DeleteTemplate(session); });
  add_button(*buttons, "Pas&te", "paste", form.paste, [&session] {
    windows::paste(session);
  })->setToolTip("Fill the new template from the one that was loaded last");
  buttons->addStretch();
  add_button(*buttons, "&Variables…", "Variables", form.Variables,
             [&session] { windows::Variables(session); });
  add_button(*buttons, "L&ogon Hours…", "LogonHours", form.LogonHours,
             [&session] { windows::LogonHours_Click(session); });
  buttons->addStretch();
  add_button(*buttons, "Cance&l", "Template_Cancel", [&session] { windows::Template_Cancel(session); });
  // Narrower than the style would have them, when there is no room.
  constexpr int kFrame = 20;
  for (int i = 0; i < buttons->count(); ++i) {
    if (auto* const button = qobject_cast<QPushButton*>(buttons->itemAt(i)->widget()))
      button->setMinimumWidth(button->fontMetrics().horizontalAdvance(button->text().remove('&')) + kFrame);
  }
}

}  // namespace

QWidget* make_template_tab(Desktop& session, QWidget* parent) {
  auto* const tab = new QWidget(parent);
  auto* const outer = new QVBoxLayout(tab);
  outer->setContentsMargins(0, 0, 0, 0);
  auto* const page = new QWidget(tab);
  auto* const column = new QVBoxLayout(page);
  column->addLayout(make_name(session, page));
  auto* const halves = new QHBoxLayout();
  column->addLayout(halves);
  halves->addWidget(make_account(session, page), 1);
  halves->addWidget(make_directories(session, page), 1);
  column->addWidget(make_group_lists(session, page), 1);
  outer->addWidget(make_scrolled(*page, tab), 1);
  // In sight however small the window is.
  add_buttons(session, *outer);
  auto* const escape = new QShortcut(Qt::Key_Escape, tab, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  QObject::connect(escape, &QShortcut::activated, tab,
                   [&session] { run_guarded([&] { windows::Template_Escape(session); }); });
  return tab;
}

}  // namespace twk::screens
