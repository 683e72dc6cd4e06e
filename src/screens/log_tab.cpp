#include <QHeaderView>
#include <QVBoxLayout>

#include "screens/form.hpp"
#include "screens/list_pane.hpp"
#include "screens/tabs.hpp"
#include "session/activity_log.hpp"

namespace twk::screens {

QWidget* make_log_tab(session::Session& session, QWidget* parent) {
  session::Form1& form = session.form1;
  auto* const tab = new QWidget(parent);
  auto* const column = new QVBoxLayout(tab);
  auto* const list = new ListPane(
      form.ListView1, {.headings = {"Message", "Date and time"}, .empty_text = "Nothing done yet."}, tab);
  list->setObjectName("ListView1");
  list->setAccessibleName("Log");
  list->header()->setStretchLastSection(false);
  list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  QObject::connect(list->model(), &QAbstractItemModel::rowsInserted, list, &QTreeView::scrollToBottom,
                   Qt::QueuedConnection);
  column->addWidget(list, 1);
  auto* const buttons = new QHBoxLayout();
  column->addLayout(buttons);
  add_button(*buttons, "&Clear", "Clear_log", [&session] { session::Clear_log(session); });
  buttons->addStretch();
  add_button(*buttons, "&View Log File", "Log_Detail", [&session] { session::Log_Detail(session); });
  add_button(*buttons, "D&elete Log File", "Delete_Log_File",
             [&session] { session::Delete_Log_File(session); });
  return tab;
}

}  // namespace twk::screens
