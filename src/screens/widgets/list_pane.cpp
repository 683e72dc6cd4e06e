#include "screens/widgets/list_pane.hpp"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <vector>

#include "screens/widgets/application.hpp"
#include "screens/widgets/filter_field.hpp"
#include "screens/widgets/list_csv.hpp"
#include "screens/widgets/text.hpp"

namespace twk::screens {
using controls::ListChange;
using controls::ListRow;

ListPane::ListPane(controls::ListView& list, const ListLook& look, QWidget* parent)
    : QTreeView(parent),
      list_(&list),
      // The view selects a neighbour when the selected row is removed: that is not a person's choice.
      early_(list.watch([this](const ListChange& change) {
        showing_ = showing_ || change.kind == ListChange::Kind::kRemoving;
      })),
      model_(new ListModel(list, look.headings, this)),
      order_(new ListOrder(*model_, this)),
      empty_text_(look.empty_text) {
  model_->set_checkable(look.checkable);
  model_->set_pictured(look.pictured);
  setModel(order_);
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setHeaderHidden(look.headings.size() < 2);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(look.many_selected ? ExtendedSelection : SingleSelection);
  header()->setStretchLastSection(true);
  if (look.headings.size() > 1)
    header()->resizeSection(0, 220);
  if (look.sorted) {
    // The order first: to allow sorting sorts.
    header()->setSortIndicator(0, Qt::AscendingOrder);
    setSortingEnabled(true);
  }
  watch_ = list.watch([this](const ListChange& change) {
    if (change.kind == ListChange::Kind::kRemoved || change.kind == ListChange::Kind::kReset ||
        (change.kind == ListChange::Kind::kSelected && !showing_))
      show_selection();
  });
  show_selection();
}

void ListPane::set_edited(std::function<void(ListRow&, const std::string&)> edited) {
  setEditTriggers(EditKeyPressed);
  model_->set_edited([this, edited = std::move(edited)](ListRow& row, const std::string& text) {
    // A row removed because of its edit ends that edit a second time.
    if (ending_edit_)
      return;
    ending_edit_ = true;
    run_guarded([&] { edited(row, text); });
    ending_edit_ = false;
  });
}

void ListPane::edit_selected() {
  const ListRow* const row = list_->selected();
  if (row == nullptr)
    return;
  const QModelIndex index = index_of(*row);
  setFocus();
  setCurrentIndex(index);
  scrollTo(index);
  edit(index);
}

ListRow* ListPane::row(const QModelIndex& index) const {
  return model_->row(order_->mapToSource(index));
}

QModelIndex ListPane::index_of(const ListRow& row) const {
  return order_->mapFromSource(model_->index(static_cast<int>(list_->place_of(row)), 0));
}

void ListPane::set_filter(const QString& text) {
  if (model_->is_resetting())
    return order_->set_filter(text);
  showing_ = true;
  selectionModel()->clear();
  order_->set_filter(text);
  for (std::size_t place = 0; place < list_->size(); ++place) {
    ListRow& row = list_->at(place);
    if (row.selected && !index_of(row).isValid())
      list_->set_selected(row, false);
  }
  showing_ = false;
  show_selection();
}

void ListPane::show_selection() {
  if (model_->is_resetting())
    return;
  std::vector<int> rows;
  for (std::size_t place = 0; place < list_->size(); ++place) {
    if (!list_->at(place).selected)
      continue;
    const QModelIndex index = index_of(list_->at(place));
    if (index.isValid())
      rows.push_back(index.row());
  }
  const QModelIndex first = rows.empty() ? QModelIndex() : order_->index(rows.front(), 0);
  // The toolkit compares ranges with each other: neighbours are merged.
  std::sort(rows.begin(), rows.end());
  QItemSelection wanted;
  for (std::size_t start = 0, end = 0; start < rows.size(); start = end) {
    for (end = start + 1; end < rows.size() && rows[end] == rows[end - 1] + 1;)
      ++end;
    wanted.select(order_->index(rows[start], 0), order_->index(rows[end - 1], model_->columnCount() - 1));
  }
  showing_ = true;
  selectionModel()->select(wanted, QItemSelectionModel::ClearAndSelect);
  if (first.isValid()) {
    selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    scrollTo(first);
  }
  showing_ = false;
}

void ListPane::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  if (showing_ || model_->is_resetting())
    return;
  showing_ = true;
  const auto write = [this](const QItemSelection& indexes, bool on) {
    for (const QModelIndex& index : indexes.indexes()) {
      ListRow* const row = index.column() == 0 ? this->row(index) : nullptr;
      if (row != nullptr)
        list_->set_selected(*row, on);
    }
  };
  write(deselected, false);
  write(selected, true);
  showing_ = false;
  if (!selected.isEmpty())
    run_guarded(on_click);
}

void ListPane::keyPressEvent(QKeyEvent* event) {
  const bool editing = state() == EditingState;
  if (!editing && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && on_activate) {
    if (list_->selected() != nullptr)
      run_guarded(on_activate);
    return;
  }
  if (!editing && event->matches(QKeySequence::Copy)) {
    if (const QString rows = selection_as_csv(*this); !rows.isEmpty())
      QGuiApplication::clipboard()->setText(rows);
    return;
  }
  if (!editing && event->key() == Qt::Key_Delete && on_delete) {
    run_guarded(on_delete);
    return;
  }
  QTreeView::keyPressEvent(event);
}

void ListPane::mouseDoubleClickEvent(QMouseEvent* event) {
  QTreeView::mouseDoubleClickEvent(event);
  if (event->button() == Qt::LeftButton && indexAt(event->pos()).isValid() && on_activate)
    run_guarded(on_activate);
}

void ListPane::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  const QModelIndex index = currentIndex();
  QTreeView::closeEditor(editor, hint);
  // Cancelling also ends the edit: a blank row must not stay.
  if (hint == QAbstractItemDelegate::RevertModelCache && index.isValid())
    order_->setData(index, index.data(Qt::EditRole), Qt::EditRole);
}

void ListPane::set_headings(const QStringList& headings) {
  model_->set_headings(headings);
  show_selection();
}

void ListPane::set_empty_text(const QString& text) {
  empty_text_ = text;
  viewport()->update();
}

QString ListPane::shown_instead() const {
  if (order_->rowCount() > 0)
    return {};
  return list_->empty() ? empty_text_ : QString("The filter hides all %L1 rows.").arg(list_->size());
}

void ListPane::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (shown_instead().isEmpty())
    return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(viewport()->rect().adjusted(12, 12, -12, -12),
                   Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, shown_instead());
}

QLineEdit* add_filter(ListPane& pane, const QString& placeholder, QWidget* parent) {
  return make_filter(
      pane, placeholder, [&pane](const QString& text) { pane.set_filter(text); },
      [&pane] { return pane.list().size(); }, parent);
}

}  // namespace twk::screens
