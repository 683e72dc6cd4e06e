#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "windows/import_options.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::screens {
namespace {

QGroupBox* make_range(windows::Desktop& session, QWidget* parent) {
  windows::ImportGrps& window = session.import_grps;
  auto* const group = new QGroupBox("Fields to search for groups", parent);
  auto* const rows = new QVBoxLayout(group);
  const auto add_option = [&](const char* caption, const char* name, const char* tool_tip) {
    auto* const button = new QRadioButton(caption, group);
    button->setObjectName(name);
    button->setToolTip(tool_tip);
    rows->addWidget(button);
    return button;
  };
  bind_to({add_option("&None", "Grp_Range_0", "Will Not Import Any Groups"),
           add_option("&All", "Grp_Range_1", "Will Scan all Import Fields for Groups names"),
           add_option("Enter &Range", "Grp_Range_2", "User to specify Import Fields to check for Groups")},
          window.Grp_Range, [&session] { windows::Grp_Range_Click(session); });
  auto* const bounds = new QFormLayout;
  bounds->setContentsMargins(24, 0, 0, 0);
  rows->addLayout(bounds);
  add_text(*bounds, "&Start:", "LowerRange", window.LowerRange,
           [&session] { windows::LowerRange_Change(session); });
  add_text(*bounds, "&Finish:", "UpperRange", window.UpperRange,
           [&session] { windows::UpperRange_Change(session); });
  return group;
}

QGroupBox* make_account(windows::Desktop& session, QWidget* parent) {
  auto* const group = new QGroupBox("Account Properties", parent);
  auto* const form = new QFormLayout(group);
  QLineEdit* const field = add_text(*form, "Account &Expires:", "Expiredate", session.import_grps.Expiredate);
  field->setToolTip("Used to set Expireation date on imported accounts");
  field->setPlaceholderText("day/month/year, or %IMPORTn%");
  auto* const note = new QLabel(
      "The accounts end when that day begins. Write \"end of\" before it for their last day.", group);
  note->setWordWrap(true);
  form->addRow(note);
  // What is to be typed must be read to its end.
  field->setMinimumWidth(field->fontMetrics().horizontalAdvance(field->placeholderText()) +
                         field->fontMetrics().averageCharWidth() * 3);
  return group;
}

}  // namespace

std::unique_ptr<QDialog> make_import_groups(windows::Desktop& session, QWidget* parent) {
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("ImportGrps");
  dialog->setWindowTitle("Import Options");
  auto* const column = new QVBoxLayout(dialog.get());
  column->addWidget(make_range(session, dialog.get()));
  column->addWidget(make_account(session, dialog.get()));
  column->addStretch(1);
  add_ok_cancel(
      *dialog, *column, "OK", [&session] { return windows::ImportGrps_OK(session); },
      [&session] { windows::ImportGrps_Cancel(session); });
  return dialog;
}

}  // namespace twk::screens
