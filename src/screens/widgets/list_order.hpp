#pragma once

#include <QSortFilterProxyModel>
#include <cstdint>
#include <string>
#include <vector>

#include "screens/widgets/list_model.hpp"

namespace twk::screens {

/// Rows in alphabetical order of a column, and only those that contain a text. Order and filter use the rows
/// themselves, so that 100,000 of them cost no wait.
class ListOrder final : public QSortFilterProxyModel {
 public:
  ListOrder(ListModel& model, QObject* parent);
  ~ListOrder() override;

  /// Case is ignored; the empty text shows every row. The list knows which rows are hidden. Signalled as a
  /// change of layout: a view must have cleared its selection.
  void set_filter(const QString& text);
  [[nodiscard]] ListModel& model() const { return *model_; }
  void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

 protected:
  bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  [[nodiscard]] bool accepts(const controls::ListRow& row, int columns) const;
  /// The place of each row in the order of a column, the same for equal texts. To sort them is a matter of
  /// numbers then.
  void rank(int column) const;
  void forget_ranks();

  ListModel* model_;
  controls::ListView* list_;
  std::string filter_;     ///< in upper case
  bool sorts_all_ = true;  ///< not a few rows that came later, for which ranks are not worth it
  mutable int ranked_column_ = -1;
  mutable std::vector<std::uint32_t> ranks_;
};

}  // namespace twk::screens
