#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "windows/account/rename_nt.hpp"
#include "windows/state/account_windows.hpp"

namespace twk::screens {

std::unique_ptr<QDialog> make_rename_nt(windows::Desktop& session, QWidget* parent) {
  windows::Rename_NT& window = session.rename_nt;
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("Rename_NT");
  dialog->setWindowTitle("Rename User");
  auto* const box = new QVBoxLayout(dialog.get());
  auto* const form = new QFormLayout;
  box->addLayout(form);
  QLineEdit* const logon = add_text(*form, "&User name:", "User_Logon", window.User_Logon,
                                    [&session] { windows::Rename_NT_User_Logon_Change(session); });
  logon->setMinimumWidth(logon->fontMetrics().averageCharWidth() * 36);
  add_text(*form, "&Full name:", "Full_Name", window.Full_Name,
           [&session] { windows::Rename_NT_Full_Name_Change(session); });
  add_check(*box, "Rename &shares and directories", "RenameDir", window.RenameDir);
  box->addStretch(1);
  QDialogButtonBox* const buttons = add_ok_cancel(
      *dialog, *box, "OKButton", [&session] { return windows::Rename_NT_OKButton_Click(session); });
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("CancelButton");
  return dialog;
}

}  // namespace twk::screens
