#pragma once

#include <QTimer>
#include <QTreeView>
#include <functional>
#include <string>
#include <vector>

#include "controls/tree_view.hpp"
#include "screens/widgets/tree_filter.hpp"
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
  /// Called with the keys of all selected nodes; the one that the tree calls selected is the last that was
  /// chosen.
  std::function<void(std::vector<std::string> keys)> on_choice;

  [[nodiscard]] controls::TreeNode* node(const QModelIndex& index) const;
  /// Invalid for a node that the filter hides.
  [[nodiscard]] QModelIndex index_of(const controls::TreeNode& node) const { return index_of(&node); }
  /// Shows only what contains the text, opened; the empty text shows the tree as it was.
  void set_filter(const QString& text);
  /// The node under the drag, which gets the mark; none clears it.
  void set_drop_highlight(const controls::TreeNode* node);

 protected:
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

 private:
  [[nodiscard]] QModelIndex index_of(const controls::TreeNode* node) const;
  void prepare(const controls::TreeChange& change);
  void take(const controls::TreeChange& change);
  void show_open_nodes(const std::vector<controls::TreeNode*>& nodes);
  [[nodiscard]] std::vector<std::string> chosen_keys() const;
  void choose_again();
  void show_found();
  void show_selected();
  void node_opened(const QModelIndex& index);

  controls::TreeView* tree_;
  bool showing_ = false;             ///< the view follows the state, not the other way round
  int scrolled_to_ = 0;              ///< the view's position before a reset
  std::vector<std::string> chosen_;  ///< selected nodes before it
  controls::Watch early_;            ///< called before the model
  TreeModel* model_;
  TreeFilter* filter_ = nullptr;  ///< between model and view while there is a text
  QPersistentModelIndex drop_highlight_;
  QPersistentModelIndex scrolling_to_;
  QTimer scrolling_;
  controls::Watch watch_;
};

}  // namespace twk::screens
