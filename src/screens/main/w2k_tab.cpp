#include <QLabel>
#include <QVBoxLayout>

#include "screens/main/tabs.hpp"
#include "screens/widgets/edited_list.hpp"
#include "windows/editors/edit_properties.hpp"
#include "windows/state/form1.hpp"

namespace twk::screens {

QWidget* make_w2k_tab(windows::Desktop& session, QWidget* parent) {
  auto* const tab = new QWidget(parent);
  auto* const box = new QVBoxLayout(tab);
  auto* const what = new QLabel(
      "Attributes that a new account gets. Those of the mail kind are set only with a mailbox.", tab);
  what->setWordWrap(true);
  box->addWidget(what);
  ListLook look;
  look.headings = {"Property", "Value"};
  look.empty_text = "No properties. New adds one.";
  ListPane* const list = add_edited_list(*box, session, session.form1.ListView7, "ListView7",
                                         windows::mode::kW2k, look, {true, "Delete"});
  list->setAccessibleName("Properties of new accounts");
  return tab;
}

}  // namespace twk::screens
