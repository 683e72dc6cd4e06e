#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "windows/account/popup_commands.hpp"
#include "windows/state/account_windows.hpp"

namespace twk::screens {
namespace {

QGroupBox* make_name(windows::WKS_PROFILE& window, QWidget* parent) {
  auto* const box = new QGroupBox("Workstation Name", parent);
  auto* const rows = new QVBoxLayout(box);
  auto* const name = new QLineEdit(box);
  name->setObjectName("WKS_NAME1");
  name->setAccessibleName("Workstation Name");
  name->setMinimumWidth(name->fontMetrics().averageCharWidth() * 30);
  rows->addWidget(name);
  bind_to(*name, window.WKS_NAME1);
  return box;
}

QGroupBox* make_type(windows::WKS_PROFILE& window, QWidget* parent) {
  auto* const box = new QGroupBox("Workstation Type", parent);
  auto* const rows = new QVBoxLayout(box);
  auto* const w2k = new QRadioButton("&Windows 2000", box);
  auto* const nt40 = new QRadioButton("&NT 4.0", box);
  w2k->setObjectName("W2K");
  nt40->setObjectName("NT40");
  rows->addWidget(w2k);
  rows->addWidget(nt40);
  bind_pair(*w2k, window.W2K, {}, *nt40, window.NT40, {});
  return box;
}

}  // namespace

std::unique_ptr<QDialog> make_wks_profile(windows::Desktop& session, QWidget* parent) {
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("WKS_PROFILE");
  dialog->setWindowTitle("Delete WKS Profile");
  auto* const box = new QVBoxLayout(dialog.get());
  box->addWidget(make_name(session.wks_profile, dialog.get()));
  box->addWidget(make_type(session.wks_profile, dialog.get()));
  box->addStretch(1);
  QDialogButtonBox* const buttons = add_ok_cancel(
      *dialog, *box, "OKButton",
      [&session] {
        windows::WKS_PROFILE_OKButton_Click(session);
        return true;
      },
      [&session] { windows::WKS_PROFILE_CancelButton_Click(session); });
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("CancelButton");
  return dialog;
}

}  // namespace twk::screens
