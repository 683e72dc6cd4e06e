#include "screens/widgets/tree_pane.hpp"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

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
  watch_ = tree.watch([this](const TreeChange& change) { take(change); });
  connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) { node_opened(index); });
  connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
    if (TreeNode* const node = model_->node(index); node != nullptr && !showing_)
      tree_->set_expanded(*node, false);
  });
  show_open_nodes(tree.roots());
  show_selected();
}

void TreePane::prepare(const TreeChange& change) {
  if (change.kind == TreeChange::Kind::kResetting)
    scrolled_to_ = verticalScrollBar()->value();
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
      show_selected();
      verticalScrollBar()->setValue(scrolled_to_);
      break;
    case TreeChange::Kind::kSelected:
      show_selected();
      break;
    case TreeChange::Kind::kExpanded:
      showing_ = true;
      setExpanded(model_->index_of(change.node), change.node->expanded);
      showing_ = false;
      break;
    case TreeChange::Kind::kVisible:
      scrollTo(model_->index_of(change.node));
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
    setExpanded(model_->index_of(node), true);
    showing_ = false;
    show_open_nodes(node->children);
  }
}

void TreePane::show_selected() {
  if (model_->is_resetting())
    return;
  showing_ = true;
  setCurrentIndex(model_->index_of(tree_->selected()));
  showing_ = false;
}

void TreePane::node_opened(const QModelIndex& index) {
  TreeNode* const node = model_->node(index);
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
    TreeNode* const still_there = model_->node(opened);
    if (still_there != nullptr && on_expand)
      run_guarded([&] { on_expand(*still_there); });
  });
}

void TreePane::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  if (showing_ || model_->is_resetting())
    return;
  TreeNode* const node = model_->node(current);
  showing_ = true;
  tree_->select(node);
  showing_ = false;
  if (node != nullptr && on_select)
    run_guarded([&] { on_select(*node); });
}

void TreePane::set_drop_highlight(const TreeNode* node) {
  drop_highlight_ = node == nullptr ? QModelIndex() : model_->index_of(node);
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
  TreeNode* const node = model_->node(currentIndex());
  if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && node != nullptr && on_activate) {
    run_guarded([&] { on_activate(*node); });
    return;
  }
  QTreeView::keyPressEvent(event);
}

void TreePane::mouseDoubleClickEvent(QMouseEvent* event) {
  QTreeView::mouseDoubleClickEvent(event);
  TreeNode* const node = model_->node(indexAt(event->pos()));
  if (event->button() == Qt::LeftButton && node != nullptr && on_activate)
    run_guarded([&] { on_activate(*node); });
}

}  // namespace twk::screens
