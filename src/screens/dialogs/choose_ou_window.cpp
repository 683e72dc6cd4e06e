#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/text.hpp"
#include "windows/state/tree_commands.hpp"
#include "windows/tree/unit_chooser.hpp"

namespace twk::screens {

std::unique_ptr<QDialog> make_choose_ou(windows::Desktop& session, QWidget* parent) {
  windows::UnitChooser& chooser = session.unit_chooser;
  auto window = std::make_unique<QDialog>(parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("Choose_OU");
  dialog->setWindowTitle(to_qt(chooser.title));
  auto* const rows = new QVBoxLayout(dialog);
  auto* const question = new QLabel(dialog);
  question->setTextFormat(Qt::PlainText);
  question->setWordWrap(true);
  bind_to(*question, chooser.question);
  rows->addWidget(question);
  auto* const list = new ListPane(
      chooser.units,
      {.headings = {"OU", "Users"}, .sorted = true, .empty_text = "There is no other OU to move to."},
      dialog);
  list->setObjectName("units");
  list->setAccessibleName("OU's");
  list->header()->resizeSection(0, 330);
  QLineEdit* const filter = add_filter(*list, "Filter OU's", dialog);
  filter->setObjectName("units_filter");
  rows->addWidget(filter);
  rows->addWidget(list, 1);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, dialog);
  QPushButton* const move = buttons->addButton("&Move", QDialogButtonBox::AcceptRole);
  move->setObjectName("Move");
  rows->addWidget(buttons);
  const auto accept = [&session, dialog] {
    if (windows::Choose_OU_Move_Click(session))
      dialog->accept();
  };
  list->on_activate = accept;
  on_click(*move, accept);
  const auto show = [&chooser, move] { move->setEnabled(chooser.units.selected() != nullptr); };
  show();
  keep(*move, chooser.units.watch([show](const controls::ListChange& change) {
    if (change.kind == controls::ListChange::Kind::kSelected)
      show();
  }));
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  dialog->resize(460, 420);
  filter->setFocus();
  return window;
}

}  // namespace twk::screens
