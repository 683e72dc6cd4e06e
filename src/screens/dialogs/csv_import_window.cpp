#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/text.hpp"
#include "windows/csv_layout.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::screens {
namespace {

using windows::CSV_Import;

/// The cells of a column that is used look selected, but paler.
class UsedColumn final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    constexpr int kPale = 45;
    QColor colour = option->palette.color(QPalette::Highlight);
    colour.setAlpha(kPale);
    option->backgroundBrush = colour;
  }
};

/// The use stands under the heading, so that it does not depend on a colour.
QStringList labels(const std::vector<windows::PreviewColumn>& columns) {
  QStringList labels;
  for (const windows::PreviewColumn& column : columns)
    labels << to_qt(column.heading + (column.use.empty() ? "" : "\n→ " + column.use));
  return labels;
}

/// The columns as the file is read now, those that are used marked.
void show_columns(ListPane& list, QStyledItemDelegate& used,
                  const std::vector<windows::PreviewColumn>& columns) {
  const int at = list.horizontalScrollBar()->value();
  list.set_headings(labels(columns));
  for (int column = 0; column < list.model()->columnCount(); ++column) {
    const bool is_used = !columns.at(static_cast<std::size_t>(column)).use.empty();
    list.setItemDelegateForColumn(column, is_used ? &used : nullptr);
    list.resizeColumnToContents(column);
  }
  list.horizontalScrollBar()->setValue(at);
}

QGroupBox* make_preview(CSV_Import& window, QWidget* parent) {
  auto* const group = new QGroupBox("CSV File Format", parent);
  auto* const box = new QVBoxLayout(group);
  auto* const list = new ListPane(
      window.ListView1, {.headings = labels(window.preview), .empty_text = "There is no line in this file."},
      group);
  list->setObjectName("ListView1");
  list->setAccessibleName("First lines of the file");
  list->setHeaderHidden(false);
  list->header()->setStretchLastSection(false);
  list->header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  list->header()->setMinimumSectionSize(list->fontMetrics().averageCharWidth() * 12);
  list->header()->setMaximumSectionSize(list->fontMetrics().averageCharWidth() * 40);
  list->setMinimumHeight(list->fontMetrics().lineSpacing() * 10);
  auto* const used = new UsedColumn(list);
  follow(*list, window.preview, [list, used](const auto& columns) { show_columns(*list, *used, columns); });
  box->addWidget(list);
  return group;
}

void add_choice(QBoxLayout& row, const QString& title, const char* name, controls::ComboBox& control,
                const Action& chosen) {
  auto* const group = new QGroupBox(title, row.parentWidget());
  auto* const box = new QVBoxLayout(group);
  auto* const choice = new QComboBox(group);
  choice->setObjectName(name);
  choice->setAccessibleName(QString(title).remove('&'));
  choice->setMinimumContentsLength(11);
  choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->addWidget(choice);
  row.addWidget(group);
  bind_to(*choice, control, chosen);
}

void add_choices(QVBoxLayout& column, windows::Desktop& session) {
  CSV_Import& window = session.csv_import;
  const Action chosen = [&session] { windows::show_chosen_columns(session); };
  auto* const row = new QHBoxLayout;
  column.addLayout(row);
  add_choice(*row, "&First Name", "ImportFirst", window.ImportFirst, chosen);
  add_choice(*row, "&Middle Name", "ImportMiddle", window.ImportMiddle, chosen);
  add_choice(*row, "&Last Name", "ImportLast", window.ImportLast, chosen);
  add_choice(*row, "&UserID", "ImportUserID", window.ImportUserID, chosen);
  add_choice(*row, "&Password", "ImportPassword", window.ImportPassword, chosen);
}

/// How names are written, and whom the import passes over.
void add_people(QVBoxLayout& column, windows::Desktop& session) {
  CSV_Import& window = session.csv_import;
  const Action changed = [&session] { windows::show_chosen_columns(session); };
  auto* const group = new QGroupBox("People", column.parentWidget());
  column.addWidget(group);
  auto* const rows = new QVBoxLayout(group);
  auto* const boxes = new QHBoxLayout;
  rows->addLayout(boxes);
  add_check(*boxes, "&Keep names as they are written", "chkKeepNames", window.chkKeepNames, changed);
  add_check(*boxes, "Account names in plai&n letters", "chkPlainLetters", window.chkPlainLetters, changed);
  boxes->addStretch(1);
  auto* const key = new QHBoxLayout;
  rows->addLayout(key);
  auto* const attribute = new QLineEdit(group);
  attribute->setObjectName("KeyAttribute");
  attribute->setPlaceholderText("employeeNumber");
  auto* const label = new QLabel("Recog&nise who has an account by", group);
  label->setBuddy(attribute);
  bind_to(*attribute, window.KeyAttribute);
  auto* const holder = new QComboBox(group);
  holder->setObjectName("KeyColumn");
  holder->setAccessibleName("Column that holds it");
  bind_to(*holder, window.KeyColumn);
  key->addWidget(label);
  key->addWidget(attribute);
  key->addWidget(new QLabel("in the column", group));
  key->addWidget(holder, 1);
  const QString tip =
      "Lines of people whose account holds the same value are passed over; new accounts get it";
  attribute->setToolTip(tip);
  holder->setToolTip(tip);
  // Nobody is recognised in a WinNT domain.
  for (QWidget* const part :
       {static_cast<QWidget*>(label), static_cast<QWidget*>(attribute), static_cast<QWidget*>(holder)})
    part->setEnabled(session::is_active_directory(session));
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
  add_check(*column, "Fields may be &quoted, first line holds headings", "chkCsv", window.chkCsv,
            [&session] { windows::chkCsv_Click(session); });
  add_hint(*dialog, *column, "Hint", window.Hint);
  add_check(*column, "Use &Default settings, First 3 fields: First,Middle,Last", "chkImport",
            window.chkImport, [&session] { windows::chkImport_Click(session); });
  add_choices(*column, session);
  add_people(*column, session);
  auto* const advice =
      new QLabel("Make sure you have selected the correct Template & Site. Press \"OK\" to start the Import.",
                 dialog.get());
  advice->setObjectName("Label2");
  advice->setWordWrap(true);
  column->addWidget(advice);
  QDialogButtonBox* const buttons = add_ok_cancel(
      *dialog, *column, "Command1", [&session] { return windows::csv_layout_ok(session); },
      [&session] { windows::csv_layout_cancel(session); });
  QPushButton* const cancel = buttons->button(QDialogButtonBox::Cancel);
  cancel->setObjectName("Command2");
  cancel->setText("&Cancel");
  QPushButton* const rehearse = buttons->addButton("&Rehearse", QDialogButtonBox::ActionRole);
  rehearse->setObjectName("Rehearse");
  rehearse->setToolTip("Go through the file as the import would, without writing anything");
  on_click(*rehearse, [&session, window_of_buttons = dialog.get()] {
    if (windows::csv_layout_rehearse(session))
      window_of_buttons->accept();
  });
  return dialog;
}

}  // namespace twk::screens
