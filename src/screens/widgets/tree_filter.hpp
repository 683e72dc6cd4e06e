#pragma once

#include <QSortFilterProxyModel>
#include <string>

#include "screens/widgets/tree_model.hpp"

namespace twk::screens {

/// The nodes of a tree whose text contains what was typed, in any case, with all above them. What is below a
/// unit that is found is shown, too. Only nodes that were read are looked at.
class TreeFilter final : public QSortFilterProxyModel {
 public:
  TreeFilter(TreeModel& model, QObject* parent);

  /// The empty text shows all.
  void set_text(const QString& text);
  [[nodiscard]] bool is_on() const { return !wanted_.empty(); }

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  [[nodiscard]] bool has_text(const controls::TreeNode& node) const;

  TreeModel* model_;
  std::string wanted_;  ///< in upper case
};

}  // namespace twk::screens
