#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

#include "screens/multi_user/multi_user_tabs.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/list_tools.hpp"
#include "windows/multi_user/multi_user_window.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::MultiUser;

struct Side {
  controls::ListView& list;
  const char* name;
  QString caption;
  QString filter;
  QString empty_text;
  Action activate;
  QStringList headings{"Name"};
  QList<int> hidden{};  ///< columns that a person asks for
};

ListPane* add_side(QBoxLayout& columns, const Side& side, int stretch, QWidget* parent) {
  auto* const column = new QVBoxLayout;
  columns.addLayout(column, stretch);
  auto* const pane = new ListPane(
      side.list,
      {.headings = side.headings, .many_selected = true, .sorted = true, .empty_text = side.empty_text},
      parent);
  pane->setObjectName(side.name);
  pane->setAccessibleName(QString(side.caption).remove('&'));
  pane->setHeaderHidden(false);
  pane->on_activate = side.activate;
  if (!side.caption.isEmpty()) {
    auto* const label = new QLabel(side.caption, parent);
    label->setBuddy(pane);
    column->addWidget(label);
  }
  QLineEdit* const filter = add_filter(*pane, side.filter, parent);
  filter->setObjectName(QString(side.name) + "_filter");
  column->addWidget(filter);
  column->addWidget(pane, 1);
  if (side.headings.size() > 1) {
    // The name, the logon name and the state fit beside each other.
    pane->header()->resizeSection(0, 125);
    pane->header()->resizeSection(1, 105);
    for (int other = 2; other < pane->header()->count(); ++other)
      pane->header()->resizeSection(other, 70);
    offer_columns(*pane, side.hidden);
  }
  if (!side.caption.isEmpty()) {
    QLabel* const count = add_row_count(*pane, parent);
    count->setObjectName(QString(side.name) + "_count");
    column->addWidget(count);
  }
  return pane;
}

/// How many are selected, and how many of them a run leaves out. Counted when the list has come to rest.
void add_count(QBoxLayout& column, const ListPane& pane) {
  auto* const count = new QLabel(column.parentWidget());
  count->setObjectName("selected_count");
  count->setTextFormat(Qt::PlainText);
  count->setWordWrap(true);
  column.addWidget(count);
  auto* const rest = new QTimer(count);
  rest->setSingleShot(true);
  const auto show = [&pane, count] {
    const auto all = static_cast<qsizetype>(pane.list().size());
    const auto hidden = all - pane.model()->rowCount();
    count->setText(
        hidden == 0
            ? QString("%L1 selected").arg(all)
            : QString("%L1 selected, %L2 hidden by the filter and left out of a run").arg(all).arg(hidden));
  };
  QObject::connect(rest, &QTimer::timeout, count, show);
  keep(*count, pane.list().watch([rest](const controls::ListChange& change) {
    if (change.kind != controls::ListChange::Kind::kSelected)
      rest->start(0);
  }));
  show();
}

QPushButton* add_mover(QBoxLayout& column, const char* name, const char* picture, const QString& tip,
                       controls::Button& control, const Action& clicked) {
  QPushButton* const button = add_button(column, {}, name, control, clicked);
  button->setIcon(icon(picture));
  button->setToolTip(tip);
  button->setAccessibleName(tip);
  return button;
}

QWidget* make_sources(Desktop& session, QWidget* parent) {
  MultiUser& window = session.multi_user;
  auto* const frame = new QGroupBox("Select Users/Groups/OU's", parent);
  auto* const rows = new QVBoxLayout(frame);
  auto* const columns = new QHBoxLayout;
  rows->addLayout(columns, 1);
  const auto from = [&session](controls::ListView& list) {
    return [&session, &list] { windows::select_from(session, list); };
  };
  const bool active_directory = session::is_active_directory(session);
  add_side(*columns,
           {window.ListView2, "ListView2", "&Users", "Filter users",
            "No user is listed. \"Show users\" reads them all.", from(window.ListView2),
            active_directory ? QStringList{"Name", "Logon name", "Full name", "OU", "State", "Expires"}
                             : QStringList{"Name", "Full name", "Description", "State"},
            active_directory ? QList{2, 3, 5} : QList{2}},
           active_directory ? 4 : 3, frame);
  add_side(*columns,
           {window.ListView3, "ListView3", "Grou&ps", "Filter groups", "No group is listed.",
            from(window.ListView3)},
           2, frame);
  add_side(
      *columns,
      {window.ListView4, "ListView4", "&OU's", "Filter OU's", "No OU is listed.", from(window.ListView4)}, 2,
      frame);
  auto* const foot = new QHBoxLayout;
  rows->addLayout(foot);
  add_button(*foot, "&Show users", "btn_Showusers", window.btn_Showusers,
             [&session] { windows::btn_Showusers_Click(session); });
  foot->addStretch(1);
  return frame;
}

QWidget* make_selection(Desktop& session, QWidget* parent) {
  auto* const frame = new QGroupBox("Selec&ted Users/Groups/OU's", parent);
  auto* const rows = new QVBoxLayout(frame);
  auto* const columns = new QHBoxLayout;
  rows->addLayout(columns, 1);
  ListPane* const pane = add_side(*columns,
                                  {session.multi_user.ListView1,
                                   "ListView1",
                                   {},
                                   "Filter the selection",
                                   "Nothing is selected. Choose users, groups or OU's and press the arrow.",
                                   [&session] { windows::Command2_Click(session); }},
                                  1, frame);
  pane->setAccessibleName(frame->title().remove('&'));
  add_count(*rows, *pane);
  // The title's mnemonic leads here.
  frame->setFocusProxy(pane);
  pane->on_delete = [&session] { windows::Command2_Click(session); };
  return frame;
}

}  // namespace

QWidget* make_multi_lists(Desktop& session, QWidget* parent) {
  auto* const lists = new QWidget(parent);
  auto* const row = new QHBoxLayout(lists);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(make_sources(session, lists), 8);
  auto* const movers = new QVBoxLayout;
  row->addLayout(movers);
  movers->addStretch();
  add_mover(*movers, "Command1", "add", "Add to the selection", session.multi_user.Command1,
            [&session] { windows::Command1_Click(session); });
  add_mover(*movers, "Command2", "remove", "Remove from the selection", session.multi_user.Command2,
            [&session] { windows::Command2_Click(session); });
  movers->addStretch();
  row->addWidget(make_selection(session, lists), 3);
  return lists;
}

}  // namespace twk::screens
