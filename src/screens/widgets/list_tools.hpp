#pragma once

#include <QList>

class QLabel;
class QWidget;

/// What lists offer besides their rows: a choice of columns, a count.
namespace twk::screens {

class ListPane;

/// The menu of the heading shows and hides columns. The choice is kept under the names of window and list;
/// those are hidden at first. The first column stays.
void offer_columns(ListPane& pane, const QList<int>& hidden_at_first);

/// "12 of 100,003" rows, as far as a filter hides some; otherwise their number. Counted when the list has
/// come to rest.
QLabel* add_row_count(ListPane& pane, QWidget* parent);

}  // namespace twk::screens
