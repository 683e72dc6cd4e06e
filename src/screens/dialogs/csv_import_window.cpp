#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "windows/csv_layout.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::screens {
namespace {

using windows::CSV_Import;

/// Columns that are not used are not shown.
QStringList numbered_columns(int columns) {
  QStringList headings;
  for (int column = 1; column <= std::clamp(columns, 1, static_cast<int>(session::kMostImportFields));
       ++column)
    headings << QString::number(column);
  return headings;
}

QGroupBox* make_preview(CSV_Import& window, QWidget* parent) {
  auto* const group = new QGroupBox("CSV File Format", parent);
  auto* const box = new QVBoxLayout(group);
  auto* const list = new ListPane(
      window.ListView1,
      {.headings = numbered_columns(window.columns), .empty_text = "There is no line in this file."}, group);
  list->setObjectName("ListView1");
  list->setAccessibleName("First lines of the file");
  list->setHeaderHidden(false);
  list->header()->setStretchLastSection(false);
  list->header()->setMinimumSectionSize(list->fontMetrics().averageCharWidth() * 12);
  list->header()->setMaximumSectionSize(list->fontMetrics().averageCharWidth() * 40);
  for (int column = 0; column < list->model()->columnCount(); ++column)
    list->resizeColumnToContents(column);
  list->setFixedHeight(list->fontMetrics().lineSpacing() * 7);
  box->addWidget(list);
  return group;
}

void add_choice(QBoxLayout& row, const QString& title, const char* name, controls::ComboBox& control) {
  auto* const group = new QGroupBox(title, row.parentWidget());
  auto* const box = new QVBoxLayout(group);
  auto* const choice = new QComboBox(group);
  choice->setObjectName(name);
  choice->setAccessibleName(QString(title).remove('&'));
  choice->setMinimumContentsLength(11);
  choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->addWidget(choice);
  row.addWidget(group);
  bind_to(*choice, control);
}

void add_choices(QVBoxLayout& column, CSV_Import& window) {
  auto* const row = new QHBoxLayout;
  column.addLayout(row);
  add_choice(*row, "&First Name", "ImportFirst", window.ImportFirst);
  add_choice(*row, "&Middle Name", "ImportMiddle", window.ImportMiddle);
  add_choice(*row, "&Last Name", "ImportLast", window.ImportLast);
  add_choice(*row, "&UserID", "ImportUserID", window.ImportUserID);
  add_choice(*row, "&Password", "ImportPassword", window.ImportPassword);
}

}  // namespace

std::unique_ptr<QDialog> make_csv_import(windows::Desktop& session, QWidget* parent) {
  CSV_Import& window = session.csv_import;
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("CSV_Import");
  dialog->setWindowTitle("CSV File Import");
  auto* const column = new QVBoxLayout(dialog.get());
  auto* const file = new QLabel(dialog.get());
  file->setObjectName("File_Name");
  file->setTextFormat(Qt::PlainText);
  column->addWidget(file);
  bind_to(*file, window.File_Name);
  column->addWidget(make_preview(window, dialog.get()), 1);
  add_check(*column, "Use &Default settings, First 3 fields: First,Middle,Last", "chkImport",
            window.chkImport, [&session] { windows::chkImport_Click(session); });
  add_choices(*column, window);
  auto* const advice =
      new QLabel("Make sure you have selected the correct Template & Site. Press \"OK\" to start the Import.",
                 dialog.get());
  advice->setObjectName("Label2");
  advice->setWordWrap(true);
  column->addWidget(advice);
  QDialogButtonBox* const buttons = add_ok_cancel(
      *dialog, *column, "Command1",
      [&session] {
        windows::csv_layout_ok(session);
        return true;
      },
      [&session] { windows::csv_layout_cancel(session); });
  QPushButton* const cancel = buttons->button(QDialogButtonBox::Cancel);
  cancel->setObjectName("Command2");
  cancel->setText("&Cancel");
  QPushButton* const rehearse = buttons->addButton("&Rehearse", QDialogButtonBox::ActionRole);
  rehearse->setObjectName("Rehearse");
  rehearse->setToolTip("Go through the file as the import would, without writing anything");
  on_click(*rehearse, [&session, window_of_buttons = dialog.get()] {
    windows::csv_layout_rehearse(session);
    window_of_buttons->accept();
  });
  return dialog;
}

}  // namespace twk::screens
