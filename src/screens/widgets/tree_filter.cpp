#include "screens/widgets/tree_filter.hpp"

#include "base/text.hpp"
#include "directory/names.hpp"
#include "screens/widgets/text.hpp"

namespace twk::screens {

using controls::TreeNode;

TreeFilter::TreeFilter(TreeModel& model, QObject* parent) : QSortFilterProxyModel(parent), model_(&model) {
  setRecursiveFilteringEnabled(true);
  setSourceModel(&model);
}

void TreeFilter::set_text(const QString& text) {
  wanted_ = base::upper(from_qt(text.trimmed()));
  invalidateFilter();
}

bool TreeFilter::has_text(const TreeNode& node) const {
  return node.text != directory::kDummyNode && base::upper(node.text).find(wanted_) != std::string::npos;
}

bool TreeFilter::filterAcceptsRow(int row, const QModelIndex& parent) const {
  if (wanted_.empty())
    return true;
  const TreeNode* node = model_->node(model_->index(row, 0, parent));
  if (node == nullptr)
    return false;
  if (has_text(*node))
    return true;
  // The domain contains everything: its own name finds nothing but itself.
  for (node = node->parent; node != nullptr && node->parent != nullptr; node = node->parent) {
    if (has_text(*node))
      return true;
  }
  return false;
}

}  // namespace twk::screens
