#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/edited_list.hpp"
#include "windows/editors/edit_properties.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::screens {

std::unique_ptr<QDialog> make_variables(windows::Desktop& session, QWidget* parent) {
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("Varibles_Form");
  dialog->setWindowTitle("Template Variables");
  dialog->resize(460, 360);
  auto* const box = new QVBoxLayout(dialog.get());
  ListLook look;
  look.headings = {"Name", "Value"};
  look.empty_text = "No variables. The value of a variable \"Dept\" replaces every %Dept%.";
  ListPane* const list = add_edited_list(*box, session, session.variables.ListView1, "ListView1",
                                         windows::mode::kVariables, look, {true, "&Delete"});
  list->setAccessibleName("Template variables");
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog.get());
  buttons->button(QDialogButtonBox::Close)->setObjectName("Close");
  buttons->button(QDialogButtonBox::Close)->setDefault(true);
  // The style's picture is black on dark.
  buttons->button(QDialogButtonBox::Close)->setIcon({});
  box->addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog.get(), &QDialog::reject);
  return dialog;
}

}  // namespace twk::screens
