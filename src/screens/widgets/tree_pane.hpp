#pragma once

#include <QTreeView>
#include <functional>

#include "controls/tree_view.hpp"
#include "screens/widgets/tree_model.hpp"

namespace twk::screens {

/// A tree on the screen. Selected and open nodes are those of the tree's state, both ways.
class TreePane final : public QTreeView {
 public:
  TreePane(controls::TreeView& tree, QWidget* parent);

  using NodeAction = std::function<void(controls::TreeNode& node)>;
  NodeAction on_select;    ///< a person selected the node
  NodeAction on_expand;    ///< a person opened the node
  NodeAction on_activate;  ///< double click, or Enter

  [[nodiscard]] controls::TreeNode* node(const QModelIndex& index) const { return model_->node(index); }
  [[nodiscard]] QModelIndex index_of(const controls::TreeNode& node) const { return model_->index_of(&node); }
  /// The node under the drag, which gets the mark; none clears it.
  void set_drop_highlight(const controls::TreeNode* node);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

 private:
  void prepare(const controls::TreeChange& change);
  void take(const controls::TreeChange& change);
  void show_open_nodes(const std::vector<controls::TreeNode*>& nodes);
  void show_selected();
  void node_opened(const QModelIndex& index);

  controls::TreeView* tree_;
  bool showing_ = false;   ///< the view follows the state, not the other way round
  int scrolled_to_ = 0;    ///< the view's position before a reset
  controls::Watch early_;  ///< called before the model
  TreeModel* model_;
  QPersistentModelIndex drop_highlight_;
  controls::Watch watch_;
};

}  // namespace twk::screens
