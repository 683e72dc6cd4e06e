#include "screens/widgets/list_tools.hpp"

#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QSettings>
#include <QTimer>

#include "screens/widgets/list_pane.hpp"

namespace twk::screens {
namespace {

QString columns_key(const ListPane& pane) {
  return pane.window()->objectName() + "/" + pane.objectName() + "/hidden";
}

void keep_columns(const ListPane& pane) {
  QVariantList hidden;
  for (int column = 1; column < pane.header()->count(); ++column) {
    if (pane.isColumnHidden(column))
      hidden << column;
  }
  QSettings().setValue(columns_key(pane), hidden);
}

void show_columns_menu(ListPane& pane, const QPoint& at) {
  QMenu menu(&pane);
  menu.setObjectName("columns");
  for (int column = 1; column < pane.header()->count(); ++column) {
    QAction* const entry = menu.addAction(pane.model()->headerData(column, Qt::Horizontal).toString());
    entry->setCheckable(true);
    entry->setChecked(!pane.isColumnHidden(column));
    QObject::connect(entry, &QAction::toggled, &pane, [&pane, column](bool shown) {
      pane.setColumnHidden(column, !shown);
      keep_columns(pane);
    });
  }
  menu.exec(pane.header()->mapToGlobal(at));
}

}  // namespace

void offer_columns(ListPane& pane, const QList<int>& hidden_at_first) {
  QVariantList first;
  for (const int column : hidden_at_first)
    first << column;
  for (const QVariant& column : QSettings().value(columns_key(pane), first).toList())
    pane.setColumnHidden(column.toInt(), column.toInt() > 0);
  pane.header()->setContextMenuPolicy(Qt::CustomContextMenu);
  pane.header()->setToolTip("Click to sort; the menu of the heading shows and hides columns");
  QObject::connect(pane.header(), &QWidget::customContextMenuRequested, &pane,
                   [&pane](const QPoint& at) { show_columns_menu(pane, at); });
}

QLabel* add_row_count(ListPane& pane, QWidget* parent) {
  auto* const count = new QLabel(parent);
  count->setTextFormat(Qt::PlainText);
  auto* const rest = new QTimer(count);
  rest->setSingleShot(true);
  const auto show = [&pane, count] {
    const auto all = static_cast<qsizetype>(pane.list().size());
    const qsizetype shown = pane.model()->rowCount();
    count->setText(shown == all ? QString("%L1").arg(all) : QString("%L1 of %L2").arg(shown).arg(all));
  };
  QObject::connect(rest, &QTimer::timeout, count, show);
  keep(*count, pane.list().watch([rest](const controls::ListChange& change) {
    if (change.kind != controls::ListChange::Kind::kSelected)
      rest->start(0);
  }));
  show();
  return count;
}

}  // namespace twk::screens
