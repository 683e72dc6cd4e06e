#include "screens/widgets/tree_pane.hpp"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>
#include <utility>

#include "screens/widgets/application.hpp"

namespace twk::screens {

using controls::TreeChange;
using controls::TreeNode;

TreePane::TreePane(controls::TreeView& tree, QWidget* parent)
    : QTreeView(parent),
      tree_(&tree),
      early_(tree.watch([this](const TreeChange& change) { prepare(change); })),
      model_(new TreeModel(tree, this)) {
  // A view with a new model has no current item: that is not a person's choice either.
  showing_ = true;
  setModel(model_);
  showing_ = false;
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setExpandsOnDoubleClick(false);
  setVerticalScrollMode(ScrollPerItem);
  setSelectionMode(ExtendedSelection);
  // Scrolling lays out the whole tree: once for all nodes that a run adds before events get their turn.
  scrolling_.setSingleShot(true);
  connect(&scrolling_, &QTimer::timeout, this, [this] { scrollTo(scrolling_to_); });
  watch_ = tree.watch([this](const TreeChange& change) { take(change); });
  connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) { node_opened(index); });
  connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
    if (TreeNode* const node = this->node(index); node != nullptr && !showing_)
      tree_->set_expanded(*node, false);
  });
  show_open_nodes(tree.roots());
  show_selected();
}

TreeNode* TreePane::node(const QModelIndex& index) const {
  return model_->node(filter_ == nullptr ? index : filter_->mapToSource(index));
}

QModelIndex TreePane::index_of(const TreeNode* node) const {
  const QModelIndex index = model_->index_of(node);
  return filter_ == nullptr ? index : filter_->mapFromSource(index);
}

void TreePane::set_filter(const QString& text) {
  showing_ = true;
  if (text.trimmed().isEmpty()) {
    setModel(model_);
    delete std::exchange(filter_, nullptr);
  } else {
    if (filter_ == nullptr)
      filter_ = new TreeFilter(*model_, this);
    filter_->set_text(text);
    if (model() != filter_)
      setModel(filter_);
  }
  showing_ = false;
  show_open_nodes(tree_->roots());
  show_found();
  // Nothing may be done to a node that nobody sees.
  if (tree_->selected() != nullptr && !index_of(tree_->selected()).isValid())
    tree_->select(nullptr);
  show_selected();
  if (currentIndex().isValid())
    scrollTo(currentIndex());
}

void TreePane::show_found() {
  if (filter_ == nullptr)
    return;
  showing_ = true;
  expandAll();
  showing_ = false;
}

void TreePane::prepare(const TreeChange& change) {
  if (change.kind == TreeChange::Kind::kResetting) {
    scrolled_to_ = verticalScrollBar()->value();
    chosen_ = chosen_keys();
  }
  // The view moves on to a neighbour when the current node is removed: that is not a person's choice.
  if (change.kind == TreeChange::Kind::kRemoving)
    showing_ = true;
}

void TreePane::take(const TreeChange& change) {
  switch (change.kind) {
    case TreeChange::Kind::kRemoved:
      showing_ = false;
      show_selected();
      break;
    case TreeChange::Kind::kReset:
      show_open_nodes(tree_->roots());
      show_found();
      show_selected();
      choose_again();
      verticalScrollBar()->setValue(scrolled_to_);
      break;
    case TreeChange::Kind::kSelected:
      // What the view itself chose may be one of several.
      if (!showing_)
        show_selected();
      break;
    case TreeChange::Kind::kExpanded:
      showing_ = true;
      setExpanded(index_of(change.node), change.node->expanded);
      showing_ = false;
      break;
    case TreeChange::Kind::kVisible:
      scrolling_to_ = index_of(change.node);
      scrolling_.start();
      break;
    case TreeChange::Kind::kChanged:
    case TreeChange::Kind::kInserting:
    case TreeChange::Kind::kInserted:
    case TreeChange::Kind::kRemoving:
    case TreeChange::Kind::kResetting:
      break;
  }
}

void TreePane::show_open_nodes(const std::vector<TreeNode*>& nodes) {
  for (const TreeNode* const node : nodes) {
    if (!node->expanded)
      continue;
    showing_ = true;
    setExpanded(index_of(node), true);
    showing_ = false;
    show_open_nodes(node->children);
  }
}

void TreePane::show_selected() {
  if (model_->is_resetting())
    return;
  showing_ = true;
  const QModelIndex index = index_of(tree_->selected());
  if (index != currentIndex() || !selectionModel()->isSelected(index))
    setCurrentIndex(index);
  showing_ = false;
}

void TreePane::node_opened(const QModelIndex& index) {
  TreeNode* const node = this->node(index);
  if (node == nullptr || showing_)
    return;
  const bool first_time = !node->expanded;
  showing_ = true;
  tree_->set_expanded(*node, true);
  showing_ = false;
  if (!first_time)
    return;
  // Reading a node replaces what is below it, which must not happen while the view opens it.
  const QPersistentModelIndex opened(index);
  QTimer::singleShot(0, this, [this, opened] {
    TreeNode* const still_there = this->node(opened);
    if (still_there != nullptr && on_expand)
      run_guarded([&] { on_expand(*still_there); });
  });
}

std::vector<std::string> TreePane::chosen_keys() const {
  std::vector<std::string> keys;
  for (const QModelIndex& index : selectionModel()->selectedRows()) {
    if (const TreeNode* const chosen = node(index))
      keys.push_back(chosen->key);
  }
  return keys;
}

void TreePane::choose_again() {
  if (chosen_.size() < 2)
    return;
  QItemSelection selection;
  for (const std::string& key : std::exchange(chosen_, {})) {
    const QModelIndex index = index_of(tree_->find(key));
    if (index.isValid())
      selection.select(index, index);
  }
  selectionModel()->select(selection, QItemSelectionModel::Select);
}

void TreePane::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  if (!on_choice || model_->is_resetting())
    return;
  on_choice(chosen_keys());
}

void TreePane::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  if (showing_ || model_->is_resetting())
    return;
  TreeNode* const node = this->node(current);
  showing_ = true;
  tree_->select(node);
  showing_ = false;
  if (node != nullptr && on_select)
    run_guarded([&] { on_select(*node); });
}

void TreePane::set_drop_highlight(const TreeNode* node) {
  drop_highlight_ = node == nullptr ? QModelIndex() : index_of(node);
  viewport()->update();
}

void TreePane::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
  QTreeView::drawRow(painter, option, index);
  if (!drop_highlight_.isValid() || index != drop_highlight_)
    return;
  const QColor ink = palette().color(QPalette::Highlight);
  QColor veil = ink;
  veil.setAlpha(60);
  painter->save();
  painter->setPen(QPen(ink, 2));
  painter->setBrush(veil);
  painter->drawRoundedRect(visualRect(index).adjusted(1, 1, -2, -2), 3, 3);
  painter->restore();
}

void TreePane::keyPressEvent(QKeyEvent* event) {
  TreeNode* const node = this->node(currentIndex());
  if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && node != nullptr && on_activate) {
    run_guarded([&] { on_activate(*node); });
    return;
  }
  QTreeView::keyPressEvent(event);
}

void TreePane::mouseDoubleClickEvent(QMouseEvent* event) {
  QTreeView::mouseDoubleClickEvent(event);
  TreeNode* const node = this->node(indexAt(event->pos()));
  if (event->button() == Qt::LeftButton && node != nullptr && on_activate)
    run_guarded([&] { on_activate(*node); });
}

}  // namespace twk::screens
