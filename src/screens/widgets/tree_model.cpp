#include "screens/widgets/tree_model.hpp"

#include "directory/loading/ad_load.hpp"
#include "directory/names.hpp"
#include "screens/widgets/account_look.hpp"
#include "screens/widgets/text.hpp"
#include "screens/widgets/tool_tip.hpp"

namespace twk::screens {

using controls::TreeChange;
using controls::TreeNode;

TreeModel::TreeModel(controls::TreeView& tree, QObject* parent)
    : QAbstractItemModel(parent),
      tree_(&tree),
      watch_(tree.watch([this](const TreeChange& change) { take(change); })) {}

TreeNode* TreeModel::node(const QModelIndex& index) const {
  return index.isValid() && !resetting_ ? static_cast<TreeNode*>(index.internalPointer()) : nullptr;
}

QModelIndex TreeModel::index_of(const TreeNode* node) const {
  return node == nullptr || resetting_ ? QModelIndex() : createIndex(static_cast<int>(node->place), 0, node);
}

const std::vector<TreeNode*>& TreeModel::children(const QModelIndex& parent) const {
  const TreeNode* const above = node(parent);
  return above == nullptr ? tree_->roots() : above->children;
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (resetting_ || column != 0 || row < 0)
    return {};
  const auto& nodes = children(parent);
  const auto place = static_cast<std::size_t>(row);
  return place < nodes.size() ? createIndex(row, column, nodes[place]) : QModelIndex();
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  const TreeNode* const below = node(child);
  return below == nullptr ? QModelIndex() : index_of(below->parent);
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  return resetting_ ? 0 : static_cast<int>(children(parent).size());
}

int TreeModel::columnCount(const QModelIndex& /*parent*/) const {
  return 1;
}

bool TreeModel::hasChildren(const QModelIndex& parent) const {
  return rowCount(parent) > 0;
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  const TreeNode* const shown = node(index);
  if (shown == nullptr)
    return {};
  if (role == Qt::DisplayRole)
    return shown->text == directory::kDummyNode ? QString("…") : to_qt(shown->text);
  if (role == Qt::ToolTipRole)
    return as_tool_tip(with_marks(to_qt(shown->key), shown->marks));
  if (role == Qt::AccessibleTextRole)
    return with_marks(to_qt(shown->image + " " + shown->text), shown->marks);
  if (shown->marks != 0 && (role == Qt::ForegroundRole || role == Qt::FontRole))
    return look_of_marks(shown->marks, role);
  if (role != Qt::DecorationRole || shown->image.empty())
    return {};
  return pictures_.of(shown->image, shown->marks);
}

void TreeModel::take(const TreeChange& change) {
  const int place = static_cast<int>(change.place);
  switch (change.kind) {
    case TreeChange::Kind::kInserting:
      beginInsertRows(index_of(change.node), place, place);
      break;
    case TreeChange::Kind::kInserted:
      endInsertRows();
      break;
    case TreeChange::Kind::kRemoving:
      beginRemoveRows(index_of(change.node), place, place);
      break;
    case TreeChange::Kind::kRemoved:
      endRemoveRows();
      break;
    case TreeChange::Kind::kResetting:
      beginResetModel();
      resetting_ = true;
      break;
    case TreeChange::Kind::kReset:
      resetting_ = false;
      endResetModel();
      break;
    case TreeChange::Kind::kChanged:
      Q_EMIT dataChanged(index_of(change.node), index_of(change.node));
      break;
    case TreeChange::Kind::kSelected:
    case TreeChange::Kind::kExpanded:
    case TreeChange::Kind::kVisible:
      break;
  }
}

}  // namespace twk::screens
