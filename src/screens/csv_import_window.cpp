#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>

#include "batch/csv_layout.hpp"
#include "screens/dialog_buttons.hpp"
#include "screens/form.hpp"
#include "screens/list_pane.hpp"
#include "screens/text.hpp"
#include "screens/windows.hpp"

namespace twk::screens {
namespace {

/// The first two lines of the file under the numbers of their columns.
QWidget* make_preview(session::CSV_Import& window, QWidget* parent) {
  auto* const group = new QGroupBox("CSV File Format", parent);
  auto* const column = new QVBoxLayout(group);
  QStringList headings;
  for (int i = 1; i <= std::max(1, window.columns.get()); ++i)
    headings << QString::number(i);
  auto* const lines =
      new ListPane(window.ListView1, {.headings = headings, .empty_text = "The file is empty."}, group);
  lines->setObjectName("ListView1");
  lines->setAccessibleName("First lines of the file");
  lines->setHeaderHidden(false);
  lines->header()->setStretchLastSection(false);
  for (int i = 0; i < headings.size(); ++i)
    lines->resizeColumnToContents(i);
  lines->setFixedHeight(lines->header()->sizeHint().height() + 4 * lines->fontMetrics().height());
  column->addWidget(lines);
  return group;
}

struct Choice {
  const char* caption;
  const char* name;
  controls::ComboBox& control;
};

QLayout* make_choices(session::CSV_Import& window, QWidget* parent) {
  auto* const grid = new QGridLayout();
  int place = 0;
  for (const Choice& choice : {Choice{"First Name", "ImportFirst", window.ImportFirst},
                               Choice{"Middle Name", "ImportMiddle", window.ImportMiddle},
                               Choice{"Last Name", "ImportLast", window.ImportLast},
                               Choice{"UserID", "ImportUserID", window.ImportUserID},
                               Choice{"Password", "ImportPassword", window.ImportPassword}}) {
    auto* const group = new QGroupBox(choice.caption, parent);
    auto* const column = new QVBoxLayout(group);
    auto* const box = new QComboBox(group);
    box->setObjectName(choice.name);
    box->setAccessibleName(choice.caption);
    column->addWidget(box);
    bind_to(*box, choice.control);
    grid->addWidget(group, place / 3, place % 3);
    ++place;
  }
  return grid;
}

}  // namespace

std::unique_ptr<QDialog> make_csv_import(session::Session& session, QWidget* parent) {
  session::CSV_Import& window = session.csv_import;
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("CSV_Import");
  dialog->setWindowTitle("CSV File Import");
  auto* const box = new QVBoxLayout(dialog.get());
  auto* const file = new QLabel(dialog.get());
  file->setObjectName("File_Name");
  box->addWidget(file);
  bind_to(*file, window.File_Name);
  box->addWidget(make_preview(window, dialog.get()));
  add_check(*box, "Use &Default settings, First 3 fields: First,Middle,Last", "chkImport", window.chkImport,
            [&session] { batch::chkImport_Click(session); });
  box->addLayout(make_choices(window, dialog.get()));
  auto* const hint = new QLabel(
      "Make sure you have selected the correct Template && Site. Press \"OK\" to start the Import.",
      dialog.get());
  hint->setObjectName("Label2");
  hint->setWordWrap(true);
  hint->setText(hint->text().replace("&&", "&"));
  hint->setTextFormat(Qt::PlainText);
  box->addWidget(hint);
  box->addStretch();
  QDialogButtonBox* const buttons = add_ok_cancel(
      *dialog, *box, "Command1",
      [&session] {
        batch::csv_layout_ok(session);
        return true;
      },
      [&session] { batch::csv_layout_cancel(session); });
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("Command2");
  dialog->resize(560, dialog->sizeHint().height());
  return dialog;
}

}  // namespace twk::screens
