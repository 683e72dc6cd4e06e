#include <QLabel>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/edited_list.hpp"
#include "windows/editors/custom_properties.hpp"
#include "windows/editors/edit_properties.hpp"
#include "windows/state/editor_windows.hpp"

namespace twk::screens {

std::unique_ptr<QDialog> make_custom(windows::Desktop& session, QWidget* parent) {
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("Custom");
  dialog->setWindowTitle("Custom Properties");
  dialog->resize(460, 280);
  auto* const box = new QVBoxLayout(dialog.get());
  auto* const what = new QLabel(
      "Up to four custom attributes that the User Details tab shows. A cleared row is hidden.", dialog.get());
  what->setWordWrap(true);
  box->addWidget(what);
  ListLook look;
  look.headings = {"Display name", "Attribute"};
  ListPane* const list = add_edited_list(*box, session, session.custom.ListView1, "ListView1",
                                         windows::mode::kCustom, look, {false, "&Clear"});
  list->setAlternatingRowColors(true);
  list->setAccessibleName("Custom properties");
  add_ok_cancel(
      *dialog, *box, "OK", [&session] { return windows::Custom_OK(session); },
      [&session] { windows::Custom_Cancel(session); });
  return dialog;
}

}  // namespace twk::screens
