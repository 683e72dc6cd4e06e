#include <QGroupBox>
#include <QRadioButton>

#include "batch/import_options.hpp"
#include "screens/dialog_buttons.hpp"
#include "screens/form.hpp"
#include "screens/windows.hpp"

namespace twk::screens {
namespace {

QWidget* make_range(session::Session& session, QWidget* parent) {
  session::ImportGrps& window = session.import_grps;
  auto* const group = new QGroupBox("Fields to search for groups", parent);
  auto* const column = new QVBoxLayout(group);
  const auto add = [&](const char* caption, const char* name, const char* tool_tip) {
    auto* const button = new QRadioButton(caption, group);
    button->setObjectName(name);
    button->setToolTip(tool_tip);
    column->addWidget(button);
    return button;
  };
  QRadioButton* const none = add("&None", "Grp_Range_0", "Will Not Import Any Groups");
  QRadioButton* const all = add("&All", "Grp_Range_1", "Will Scan all Import Fields for Groups names");
  QRadioButton* const range =
      add("Enter &Range", "Grp_Range_2", "User to specify Import Fields to check for Groups");
  bind_to({none, all, range}, window.Grp_Range, [&session] { batch::Grp_Range_Click(session); });
  auto* const rows = new QFormLayout();
  column->addLayout(rows);
  add_text(*rows, "&Start", "LowerRange", window.LowerRange,
           [&session] { batch::LowerRange_Change(session); });
  add_text(*rows, "&Finish", "UpperRange", window.UpperRange,
           [&session] { batch::UpperRange_Change(session); });
  return group;
}

QWidget* make_account(session::ImportGrps& window, QWidget* parent) {
  auto* const group = new QGroupBox("Account Properties", parent);
  auto* const rows = new QFormLayout(group);
  QLineEdit* const expires = add_text(*rows, "Account &Expires", "Expiredate", window.Expiredate);
  expires->setToolTip("Used to set Expireation date on imported accounts");
  expires->setPlaceholderText("a date, or %IMPORTn%");
  return group;
}

}  // namespace

std::unique_ptr<QDialog> make_import_groups(session::Session& session, QWidget* parent) {
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("ImportGrps");
  dialog->setWindowTitle("Import Options");
  auto* const box = new QVBoxLayout(dialog.get());
  box->addWidget(make_range(session, dialog.get()));
  box->addWidget(make_account(session.import_grps, dialog.get()));
  box->addStretch();
  add_ok_cancel(
      *dialog, *box, "OK", [&session] { return batch::ImportGrps_OK(session); },
      [&session] { batch::ImportGrps_Cancel(session); });
  return dialog;
}

}  // namespace twk::screens
