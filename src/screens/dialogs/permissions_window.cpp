#include "windows/editors/permissions_window.hpp"

#include <QLabel>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/text.hpp"
#include "windows/state/editor_windows.hpp"

namespace twk::screens {
namespace {

ListPane* add_rows(QDialog& dialog, QBoxLayout& box, windows::Desktop& session) {
  ListLook look;
  look.headings = {"Account", "Access"};
  look.empty_text = "No accounts. Press Add for one.";
  auto* const rows = new ListPane(session.permissions.ListView1, look, &dialog);
  rows->setObjectName("ListView1");
  rows->setAccessibleName("Accounts and their access");
  rows->on_click = [&session] { windows::Permissions_ListView1_Click(session); };
  rows->on_activate = [rows] { rows->edit_selected(); };
  rows->on_delete = [&session] { windows::Permissions_Command3_Click(session); };
  rows->set_edited([&session](controls::ListRow& row, const std::string& typed) {
    windows::Permissions_AfterLabelEdit(session, row, typed);
  });
  box.addWidget(rows, 1);
  return rows;
}

void add_row_controls(QDialog& dialog, QBoxLayout& box, windows::Desktop& session, ListPane& rows) {
  auto* const line = new QHBoxLayout;
  box.addLayout(line);
  add_button(*line, "&Add", "Command4", [&session, &rows] {
    windows::Permissions_Command4_Click(session);
    rows.edit_selected();
  });
  add_button(*line, "&Remove", "Command3", [&session] { windows::Permissions_Command3_Click(session); });
  line->addStretch(1);
  auto* const caption = new QLabel("A&ccess", &dialog);
  auto* const access = new QComboBox(&dialog);
  access->setObjectName("Access");
  caption->setBuddy(access);
  line->addWidget(caption);
  line->addWidget(access);
  bind_to(*access, session.permissions.Access, [&session] { windows::Permissions_Access_Click(session); });
}

void add_table_controls(QDialog& dialog, QBoxLayout& box, windows::Permissions& window) {
  add_check(box, "Re&place the permissions that a new directory has", "NEW_Security", window.NEW_Security);
  auto* const form = new QFormLayout;
  box.addLayout(form);
  auto* const caption = new QLabel("&Owner", &dialog);
  auto* const owner = new QLineEdit(&dialog);
  owner->setObjectName("ctrOwner");
  owner->setMaxLength(50);
  form->addRow(caption, owner);
  caption->setBuddy(owner);
  bind_to(*owner, window.ctrOwner);
}

}  // namespace

std::unique_ptr<QDialog> make_permissions(windows::Desktop& session, QWidget* parent) {
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("Permissions");
  dialog->resize(480, 380);
  follow_title(*dialog, session.permissions.title);
  auto* const box = new QVBoxLayout(dialog.get());
  ListPane* const rows = add_rows(*dialog, *box, session);
  add_row_controls(*dialog, *box, session, *rows);
  add_hint(*dialog, *box, "hint", session.permissions.hint);
  add_table_controls(*dialog, *box, session.permissions);
  add_ok_cancel(*dialog, *box, "OK_Button",
                [&session] { return windows::Permissions_OK_Button_Click(session); });
  return dialog;
}

}  // namespace twk::screens
