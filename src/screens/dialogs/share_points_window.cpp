#include <QLabel>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "windows/share_points_form.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::screens {

std::unique_ptr<QDialog> make_share_points(windows::Desktop& session, QWidget* parent) {
  windows::frmSharePoints& window = session.share_points;
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("frmSharePoints");
  dialog->setWindowTitle("Share Points");
  auto* const box = new QVBoxLayout(dialog.get());
  auto* const what = new QLabel(
      "Shares through which the directories are reached. Without one, the administrative share is used.",
      dialog.get());
  what->setWordWrap(true);
  box->addWidget(what);
  auto* const form = new QFormLayout;
  box->addLayout(form);
  QLineEdit* const home = add_text(*form, "&Home directory:", "HomeShareName", window.HomeShareName);
  QLineEdit* const profile =
      add_text(*form, "&Profile directory:", "ProfileShareName", window.ProfileShareName);
  for (QLineEdit* const field : {home, profile}) {
    field->setMinimumWidth(field->fontMetrics().averageCharWidth() * 40);
    field->setMaxLength(99);
  }
  box->addStretch(1);
  QDialogButtonBox* const buttons = add_ok_cancel(
      *dialog, *box, "btnOK", [&session] { return windows::frmSharePoints_btnOK_Click(session); },
      [&session] { windows::frmSharePoints_btnCancel_Click(session); });
  bind_to(*buttons->button(QDialogButtonBox::Ok), window.btnOK, {});
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("btnCancel");
  return dialog;
}

}  // namespace twk::screens
