#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "directory/hours_zone.hpp"
#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/hours_grid.hpp"
#include "windows/editors/logon_hours.hpp"
#include "windows/state/editor_windows.hpp"

namespace twk::screens {
namespace {

/// How the grid shows an hour, as a legend next to the choice.
QIcon swatch(bool permitted, const QPalette& palette) {
  QPixmap picture(16, 16);
  QPainter painter(&picture);
  paint_hour(painter, picture.rect(), permitted, palette);
  painter.setPen(palette.color(QPalette::Text));
  painter.drawRect(picture.rect().adjusted(0, 0, -1, -1));
  painter.end();
  return picture;
}

QGroupBox* make_choice(windows::Desktop& session, QWidget* parent) {
  auto* const group = new QGroupBox("Painted hours become", parent);
  auto* const box = new QVBoxLayout(group);
  auto* const permitted = new QRadioButton("Logon &permitted", group);
  permitted->setObjectName("Option1");
  permitted->setIcon(swatch(true, group->palette()));
  auto* const denied = new QRadioButton("Logon &denied", group);
  denied->setObjectName("Option2");
  denied->setIcon(swatch(false, group->palette()));
  box->addWidget(permitted);
  box->addWidget(denied);
  bind_to({permitted, denied}, session.logon_hours.Option1);
  return group;
}

QGroupBox* make_zone(windows::Desktop& session, QWidget* parent) {
  auto* const group = new QGroupBox("The hours shown are those of", parent);
  auto* const box = new QVBoxLayout(group);
  std::vector<QRadioButton*> buttons;
  for (const directory::HoursZone zone : {directory::HoursZone::kFixed, directory::HoursZone::kWorkstation}) {
    auto* const button =
        new QRadioButton(QString::fromStdString(directory::zone_name(session.platform, zone)), group);
    button->setObjectName("Zone_" + QString::number(buttons.size()));
    box->addWidget(button);
    buttons.push_back(button);
  }
  buttons.front()->setToolTip("12 hours ahead of UTC, wherever this workstation is");
  bind_options(buttons, session.logon_hours.Zone, [&session] { windows::Zone_Click(session); });
  add_hint(*group, *box, "zone_note", session.logon_hours.zone_note);
  return group;
}

}  // namespace

std::unique_ptr<QDialog> make_logon_hours(windows::Desktop& session, QWidget* parent) {
  windows::Logon_Hours& window = session.logon_hours;
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("Logon_Hours");
  dialog->setWindowTitle("Logon Hours");
  auto* const box = new QVBoxLayout(dialog.get());
  auto* const grid = new HoursGrid(session, dialog.get());
  grid->setObjectName("MSFlexGrid1");
  grid->setAccessibleName("Logon hours");
  box->addWidget(grid, 1);
  auto* const selected = new QLabel(dialog.get());
  selected->setObjectName("Label2");
  box->addWidget(selected);
  bind_to(*selected, window.Label2);
  auto* const line = new QHBoxLayout;
  box->addLayout(line);
  line->addWidget(make_choice(session, dialog.get()));
  line->addWidget(make_zone(session, dialog.get()));
  auto* const how = new QLabel(
      "Drag over hours to paint them, or select them with Shift and the arrow keys and press Space. A click "
      "on "
      "a day or an hour paints all of it.",
      dialog.get());
  how->setWordWrap(true);
  line->addWidget(how, 1);
  add_hint(*dialog, *box, "hint", window.hint);
  QDialogButtonBox* const buttons = add_ok_cancel(
      *dialog, *box, "Command2", [&session] { return windows::Logon_Hours_Command2_Click(session); },
      [&session] { windows::Logon_Hours_Command1_Click(session); });
  bind_to(*buttons->button(QDialogButtonBox::Ok), window.Command2, {});
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("Command1");
  // Shows the whole week, even where a dialog would open at two thirds of a small screen.
  dialog->resize(dialog->sizeHint());
  return dialog;
}

}  // namespace twk::screens
