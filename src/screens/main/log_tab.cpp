#include <QHeaderView>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>

#include "screens/main/tabs.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "session/log_tab.hpp"
#include "windows/account/run_history.hpp"
#include "windows/log_window.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/undo_import.hpp"

namespace twk::screens {
namespace {

ListPane* make_list(windows::Desktop& session, QWidget* parent) {
  auto* const list = new ListPane(
      session.form1.ListView1,
      {.headings = {"Message", "Date and time"}, .many_selected = true, .empty_text = "Nothing done yet."},
      parent);
  list->setObjectName("ListView1");
  list->setAccessibleName("Log");
  list->setToolTip("A double click shows what Log.txt says of it");
  list->on_activate = [&session] {
    if (const controls::ListRow* const row = session.log_rows.selected())
      windows::show_block_of(session, *row);
  };
  QHeaderView& header = *list->header();
  header.setStretchLastSection(false);
  header.setSectionResizeMode(0, QHeaderView::Stretch);
  header.resizeSection(1, list->fontMetrics().horizontalAdvance("00/00/0000 00:00:00") + 40);
  // The newest row must be visible. Scrolling for each row would lay out the whole list each time.
  QScrollBar* const bar = list->verticalScrollBar();
  QObject::connect(bar, &QScrollBar::rangeChanged, bar, [bar](int, int end) { bar->setValue(end); });
  return list;
}

}  // namespace

QWidget* make_log_tab(windows::Desktop& session, QWidget* parent) {
  auto* const tab = new QWidget(parent);
  auto* const column = new QVBoxLayout(tab);
  column->addWidget(make_list(session, tab), 1);
  auto* const buttons = new QHBoxLayout;
  column->addLayout(buttons);
  add_button(*buttons, "&Clear", "Clear_log", [&session] { session::Clear_log(session); });
  QPushButton* const undo =
      add_button(*buttons, "Undo &Import…", "Undo_Import", [&session] { windows::undo_import(session); });
  undo->setToolTip("Take back what the import of the selected row made");
  QPushButton* const back =
      add_button(*buttons, "U&ndo…", "Undo_Run", [&session] { windows::take_run_back(session); });
  back->setToolTip("Take back what the run of the selected row changed");
  const auto show = [&session, undo, back] {
    undo->setEnabled(windows::is_of_import(session.log_rows.selected()));
    back->setEnabled(windows::can_be_taken_back(session, session.log_rows.selected()));
  };
  show();
  // Looking for the selected row is a walk over all: once for many rows that are added.
  auto* const rest = new QTimer(undo);
  rest->setSingleShot(true);
  QObject::connect(rest, &QTimer::timeout, undo, show);
  keep(*undo, session.log_rows.watch([show, rest](const controls::ListChange& change) {
    if (change.kind == controls::ListChange::Kind::kSelected)
      show();
    else
      rest->start(0);
  }));
  buttons->addStretch();
  add_button(*buttons, "&View Log File", "Log_Detail", [&session] { windows::View_Log_Click(session); });
  add_button(*buttons, "Delete Lo&g File", "Delete_Log_File",
             [&session] { session::Delete_Log_File(session); });
  return tab;
}

}  // namespace twk::screens
