#pragma once

#include <QAbstractItemModel>

#include "controls/tree_view.hpp"
#include "screens/widgets/account_look.hpp"

namespace twk::screens {

/// The nodes of a tree, without a copy. Indexes point to nodes.
class TreeModel final : public QAbstractItemModel {
 public:
  TreeModel(controls::TreeView& tree, QObject* parent);

  [[nodiscard]] bool is_resetting() const { return resetting_; }
  /// None for an invalid index.
  [[nodiscard]] controls::TreeNode* node(const QModelIndex& index) const;
  [[nodiscard]] QModelIndex index_of(const controls::TreeNode* node) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  void take(const controls::TreeChange& change);
  [[nodiscard]] const std::vector<controls::TreeNode*>& children(const QModelIndex& parent) const;

  controls::TreeView* tree_;
  bool resetting_ = false;
  MarkedPictures pictures_;
  controls::Watch watch_;
};

}  // namespace twk::screens
