#include <QDialogButtonBox>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/form.hpp"
#include "windows/manage_ou.hpp"
#include "windows/state/directory_windows.hpp"

namespace twk::screens {
namespace {

QGroupBox* make_storage(windows::Desktop& session, QWidget* parent) {
  auto* const box = new QGroupBox("Keep this choice for", parent);
  box->setObjectName("REG_KEY");
  auto* const rows = new QVBoxLayout(box);
  auto* const person = new QRadioButton("&My account", box);
  auto* const machine = new QRadioButton("&Everyone on this computer", box);
  person->setObjectName("REG_KEY0");
  machine->setObjectName("REG_KEY1");
  rows->addWidget(person);
  rows->addWidget(machine);
  bind_to({person, machine}, session.select_ou.REG_KEY);
  return box;
}

}  // namespace

std::unique_ptr<QDialog> make_select_ou(windows::Desktop& session, QWidget* parent) {
  auto window = std::make_unique<QDialog>(parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("Select_OU");
  dialog->setWindowTitle("Manage OU");
  auto* const rows = new QVBoxLayout(dialog);
  auto* const ou = new QLabel(dialog);
  ou->setObjectName("OU");
  ou->setTextFormat(Qt::PlainText);
  ou->setWordWrap(true);
  rows->addWidget(ou);
  bind_to(*ou, session.select_ou.OU);
  add_check(*rows, "Include &sub OU's", "SUBOU", session.select_ou.SUBOU);
  rows->addWidget(make_storage(session, dialog));
  rows->addStretch();
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
  rows->addWidget(buttons);
  on_click(*buttons->button(QDialogButtonBox::Ok), [&session, dialog] {
    windows::Select_OU_OK_Click(session);
    dialog->accept();
  });
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  dialog->resize(380, dialog->sizeHint().height());
  return window;
}

}  // namespace twk::screens
