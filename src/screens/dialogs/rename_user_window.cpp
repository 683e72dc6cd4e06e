#include <QHBoxLayout>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "windows/account/rename_user.hpp"
#include "windows/state/account_windows.hpp"

namespace twk::screens {
namespace {

QLabel* make_grey(const char* name, controls::Label& control, QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setEnabled(false);
  bind_to(*label, control);
  return label;
}

/// A field with what belongs before or after it.
void add_with(QFormLayout& form, const QString& caption, const char* name, controls::TextBox& control,
              QWidget* other, bool in_front, const Action& edited) {
  QWidget* const parent = form.parentWidget();
  auto* const row = new QHBoxLayout;
  auto* const field = new QLineEdit(parent);
  field->setObjectName(name);
  bind_to(*field, control, edited);
  if (in_front)
    row->addWidget(other);
  row->addWidget(field, 1);
  if (!in_front)
    row->addWidget(other);
  auto* const label = new QLabel(caption, parent);
  label->setBuddy(field);
  form.addRow(label, row);
}

QComboBox* make_suffixes(controls::ComboBox& control, QWidget* parent) {
  auto* const box = new QComboBox(parent);
  box->setObjectName("AD_Domain");
  box->setAccessibleName("Suffix of the user logon name");
  bind_to(*box, control);
  return box;
}

}  // namespace

std::unique_ptr<QDialog> make_rename_user(windows::Desktop& session, QWidget* parent) {
  windows::RenameUser& window = session.rename_user;
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("RenameUser");
  dialog->setWindowTitle("Rename User");
  auto* const box = new QVBoxLayout(dialog.get());
  auto* const form = new QFormLayout;
  box->addLayout(form);
  QLineEdit* const full = add_text(*form, "F&ull name:", "Full_Name", window.Full_Name,
                                   [&session] { windows::RenameUser_Full_Name_Change(session); });
  full->setMinimumWidth(full->fontMetrics().averageCharWidth() * 40);
  add_text(*form, "&First name:", "First_Name", window.First_Name);
  add_text(*form, "&Last name:", "Last_Name", window.Last_Name);
  add_text(*form, "&Display name:", "Display_Name", window.Display_Name);
  add_with(*form, "User logon &name:", "User_logon_name", window.User_logon_name,
           make_suffixes(window.AD_Domain, dialog.get()), false, {});
  add_with(*form, "Logon name (&pre-Windows 2000):", "Logon_Name_pre2000", window.Logon_Name_pre2000,
           make_grey("WINNT_Domain", window.WINNT_Domain, dialog.get()), true,
           [&session] { windows::RenameUser_Logon_Name_pre2000_Change(session); });
  add_check(*box, "Rename &shares and directories", "ReNameSD", window.ReNameSD);
  box->addStretch(1);
  QDialogButtonBox* const buttons = add_ok_cancel(
      *dialog, *box, "Command2", [&session] { return windows::RenameUser_Command2_Click(session); });
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("Command1");
  return dialog;
}

}  // namespace twk::screens
