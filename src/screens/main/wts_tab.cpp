#include <QLabel>
#include <QVBoxLayout>

#include "screens/main/tabs.hpp"
#include "screens/widgets/edited_list.hpp"
#include "windows/editors/edit_properties.hpp"
#include "windows/state/form1.hpp"

namespace twk::screens {

QWidget* make_wts_tab(windows::Desktop& session, QWidget* parent) {
  auto* const tab = new QWidget(parent);
  auto* const box = new QVBoxLayout(tab);
  auto* const what = new QLabel(
      "Terminal-server settings that a new account gets when its template has the variable "
      "WTS with the value Enabled.",
      tab);
  what->setWordWrap(true);
  box->addWidget(what);
  ListLook look;
  look.headings = {"Setting", "Value"};
  look.empty_text = "No settings.";
  ListPane* const list =
      add_edited_list(*box, session, session.form1.ListView9, "ListView9", windows::mode::kWts, look, {});
  list->setAccessibleName("Terminal-server settings");
  list->header()->resizeSection(0, 280);
  return tab;
}

}  // namespace twk::screens
