#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>

#include "screens/main/tabs.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/text.hpp"
#include "windows/editors/permissions_window.hpp"
#include "windows/formats_tab.hpp"
#include "windows/setup_tab.hpp"
#include "windows/state/form1.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::Form1;

/// What to do in a new installation; visible only while no domain is configured.
QWidget* make_first_run_hint(Desktop& session, QWidget* parent) {
  auto* const hint =
      new QLabel("Must Enter Setup Details...\nType or choose the domain, save, and press Refresh.", parent);
  hint->setObjectName("first_run");
  hint->setFrameStyle(QFrame::StyledPanel);
  hint->setMargin(8);
  follow(*hint, session.form1.StatusBar1.panel1, [hint, &session](const std::string&) {
    hint->setVisible(session.DomainName == session::kNoDomain);
  });
  return hint;
}

/// A password must not be readable over a shoulder; "PROMPT" and variables may be shown.
void add_secret(QFormLayout& rows, const QString& caption, const char* name, controls::TextBox& control) {
  QLineEdit* const field = add_text(rows, caption, name, control);
  field->setEchoMode(QLineEdit::Password);
  QAction* const show = field->addAction(icon("find"), QLineEdit::TrailingPosition);
  show->setCheckable(true);
  show->setToolTip("Show");
  QObject::connect(show, &QAction::toggled, field, [field](bool shown) {
    field->setEchoMode(shown ? QLineEdit::Normal : QLineEdit::Password);
  });
}

QWidget* make_domain(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("Domain and files", parent);
  auto* const rows = new QFormLayout(group);
  add_combo(*rows, "Do&main:", "DomName", form.DomName, {}, true);
  auto* const path = new QLineEdit(group);
  path->setObjectName("dbpath");
  auto* const browse = new QPushButton("B&rowse…", group);
  auto* const line = new QHBoxLayout();
  line->addWidget(path, 1);
  line->addWidget(browse);
  auto* const label = new QLabel("Path to Data&base:", group);
  label->setBuddy(path);
  rows->addRow(label, line);
  bind_to(*path, form.dbpath);
  on_click(*browse, [&form, group] {
    const QString folder =
        QFileDialog::getExistingDirectory(group, "Path to Database", to_qt(form.dbpath.text.get()));
    if (!folder.isEmpty())
      form.dbpath.text = from_qt(folder) + "\\";
  });
  // Over both columns, or the two buttons would be wider than the room beside the tree.
  auto* const tables = new QHBoxLayout();
  rows->addRow(tables);
  tables->addWidget(new QLabel("Tables:", group));
  add_button(*tables, "Set Securit&y…", "Set_Security", [&session] { windows::Set_Security_Click(session); });
  add_button(*tables, "Share &Permissions…", "Sharepermissions",
             [&session] { windows::Sharepermissions_Click(session); });
  tables->addStretch();
  return group;
}

QWidget* make_passwords(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("Default Password", parent);
  group->setObjectName("Frame4");
  auto* const rows = new QFormLayout(group);
  // Choices that store no password in the settings come first.
  add_secret(*rows, "&Formatted:", "Formatted_Password", form.Formatted_Password);
  add_secret(*rows, "Pass&word:", "defaultpassword", form.defaultpassword);
  auto* const note = new QLabel(
      "A format gives each user another password; the word PROMPT asks for one. Any other password is kept "
      "in "
      "the settings as readable text.",
      group);
  note->setObjectName("password_note");
  note->setWordWrap(true);
  rows->addRow(note);
  bind_to(*group, form.Frame4);
  return group;
}

QWidget* make_account_names(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("User ID", parent);
  group->setObjectName("Frame3");
  auto* const column = new QVBoxLayout(group);
  constexpr std::array kPresets = {"Last name, first initial", "First name, last initial",
                                   "First initial, last name", "First name, last name", "Custom"};
  column->addLayout(make_options(*group, kPresets, "Option1", form.Option1,
                                 [&session] { windows::Option1_Click(session); }));
  auto* const rows = new QFormLayout();
  column->addLayout(rows);
  const Action check = [&session] { windows::Check_Name_Format_Click(session); };
  add_text(*rows, "For&mat:", "setupid", form.setupid, check);
  add_result(*rows, "Gives:", "testuserid", form.testuserid);
  add_text(*rows, "&If taken:", "ALTID", form.ALTID, check);
  add_result(*rows, "Gives:", "TESTUSERALTID", form.TESTUSERALTID);
  bind_to(*group, form.Frame3);
  return group;
}

QWidget* make_commands(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("Commands", parent);
  auto* const grid = new QGridLayout(group);
  const std::array captions = {"After c&reation:", "After mo&ve:", "After &deletion:"};
  const std::array names = {"Create_Script", "Move_Script", "Delete_Script"};
  const std::array<controls::TextBox*, 3> fields = {&form.Create_Script, &form.Move_Script,
                                                    &form.Delete_Script};
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const int row = static_cast<int>(i);
    auto* const label = new QLabel(captions.at(i), group);
    auto* const field = new QLineEdit(group);
    field->setObjectName(names.at(i));
    label->setBuddy(field);
    auto* const hidden = new QCheckBox("Hidden", group);
    hidden->setObjectName("Run_Hidden_" + QString::number(i));
    auto* const wait = new QCheckBox("Wait", group);
    wait->setObjectName("Wait_NEW_" + QString::number(i));
    grid->addWidget(label, row, 0);
    grid->addWidget(field, row, 1);
    grid->addWidget(hidden, row, 2);
    grid->addWidget(wait, row, 3);
    bind_to(*field, *fields.at(i));
    bind_to(*hidden, form.Run_Hidden.at(i),
            i == 0 ? Action([&session] { windows::Run_Hidden_Click(session); }) : Action());
    bind_to(*wait, form.Wait_NEW.at(i));
  }
  return group;
}

}  // namespace

QWidget* make_setup_tab(Desktop& session, QWidget* parent) {
  auto* const tab = new QWidget(parent);
  auto* const outer = new QVBoxLayout(tab);
  outer->setContentsMargins(0, 0, 0, 0);
  auto* const page = new QWidget(tab);
  auto* const column = new QVBoxLayout(page);
  column->addWidget(make_first_run_hint(session, page));
  auto* const halves = new QHBoxLayout();
  column->addLayout(halves);
  auto* const left = new QVBoxLayout();
  halves->addLayout(left, 1);
  left->addWidget(make_domain(session, page));
  left->addWidget(make_passwords(session, page));
  left->addStretch();
  halves->addWidget(make_account_names(session, page), 1);
  column->addWidget(make_commands(session, page));
  column->addStretch();
  outer->addWidget(make_scrolled(*page, tab), 1);
  auto* const buttons = new QHBoxLayout();
  buttons->setContentsMargins(9, 0, 9, 9);
  outer->addLayout(buttons);
  buttons->addStretch();
  add_button(*buttons, "&Save", "Command3", [&session] { windows::Command3_Click(session); });
  return tab;
}

}  // namespace twk::screens
