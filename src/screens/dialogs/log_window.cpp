#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/list_tools.hpp"
#include "screens/widgets/text.hpp"
#include "windows/log_window.hpp"
#include "windows/state/log_window.hpp"

namespace twk::screens {
namespace {

QWidget* make_blocks(windows::Desktop& session, QWidget* parent) {
  auto* const side = new QWidget(parent);
  auto* const column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  auto* const list = new ListPane(session.log_window.blocks,
                                  {.headings = {"Operation", "Day and time", "Administrator"},
                                   .empty_text = "The log is empty.",
                                   .pictured = true},
                                  side);
  list->setObjectName("blocks");
  list->setAccessibleName("Operations");
  QHeaderView& header = *list->header();
  header.setStretchLastSection(false);
  header.setSectionResizeMode(0, QHeaderView::Stretch);
  header.resizeSection(1, list->fontMetrics().horizontalAdvance("00/00/0000 00:00:00") + 20);
  header.resizeSection(2, list->fontMetrics().horizontalAdvance("Administrator") + 30);
  list->on_click = [&session] { windows::LogWindow_Selected(session); };
  QLineEdit* const filter = add_filter(*list, "Filter by operation, user, day or administrator", side);
  filter->setObjectName("blocks_filter");
  column->addWidget(filter);
  auto* const rows = new QFormLayout;
  column->addLayout(rows);
  add_combo(*rows, "&Show:", "blocks_shown", session.log_window.shown,
            [&session] { windows::LogWindow_Filter(session); });
  column->addWidget(list, 1);
  column->addWidget(add_row_count(*list, side));
  return side;
}

QWidget* make_text(windows::Desktop& session, QWidget* parent) {
  auto* const side = new QWidget(parent);
  auto* const column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  auto* const light = new QLabel(side);
  light->setObjectName("block_light");
  light->setWordWrap(true);
  bind_to(*light, session.log_window.light);
  column->addWidget(light);
  auto* const text = new QPlainTextEdit(side);
  column->addWidget(text, 1);
  text->setObjectName("block_text");
  text->setAccessibleName("Text of the operation");
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  follow(*text, session.log_window.text.caption,
         [text](const std::string& shown) { text->setPlainText(to_qt(shown)); });
  return side;
}

}  // namespace

std::unique_ptr<QDialog> make_log_window(windows::Desktop& session, QWidget* parent) {
  auto window = std::make_unique<QDialog>(parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("LogWindow");
  dialog->setWindowTitle("Log");
  auto* const rows = new QVBoxLayout(dialog);
  auto* const told = new QLabel(dialog);
  told->setTextFormat(Qt::PlainText);
  told->setTextInteractionFlags(Qt::TextSelectableByMouse);
  bind_to(*told, session.log_window.told);
  rows->addWidget(told);
  auto* const panes = new QSplitter(dialog);
  panes->setObjectName("log_panes");
  panes->addWidget(make_blocks(session, panes));
  panes->addWidget(make_text(session, panes));
  panes->setChildrenCollapsible(false);
  panes->setSizes({500, 400});
  rows->addWidget(panes, 1);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
  // The style's picture is black on dark.
  buttons->button(QDialogButtonBox::Close)->setIcon({});
  rows->addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  dialog->resize(940, 560);
  return window;
}

}  // namespace twk::screens
