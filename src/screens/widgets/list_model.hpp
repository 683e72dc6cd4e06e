#pragma once

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>
#include <functional>
#include <string>

#include "controls/list_view.hpp"
#include "screens/widgets/account_look.hpp"

namespace twk::screens {

/// The rows of a list as a table: the row's text with its picture, then its sub-items. No copy is made.
class ListModel final : public QAbstractTableModel {
 public:
  ListModel(controls::ListView& list, QStringList headings, QObject* parent);

  /// Lets the first column be edited; `edited` gets what was typed.
  void set_edited(std::function<void(controls::ListRow& row, const std::string& text)> edited);
  /// Other columns from now on.
  void set_headings(QStringList headings);
  /// Shows a tick box before each row.
  void set_checkable(bool checkable) { checkable_ = checkable; }
  /// A row without a picture keeps its place.
  void set_pictured(bool pictured) { pictured_ = pictured; }
  /// Called before and after a reset, during which the rows may change in any way.
  [[nodiscard]] bool is_resetting() const { return resetting_; }

  [[nodiscard]] controls::ListView& list() const { return *list_; }
  /// None for an index of another model or an invalid one.
  [[nodiscard]] controls::ListRow* row(const QModelIndex& index) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  void take(const controls::ListChange& change);

  controls::ListView* list_;
  QStringList headings_;
  std::function<void(controls::ListRow&, const std::string&)> edited_;
  bool checkable_ = false;
  bool pictured_ = false;
  bool resetting_ = false;
  MarkedPictures pictures_;
  controls::Watch watch_;
};

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

 protected:
  bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  [[nodiscard]] bool accepts(const controls::ListRow& row, int columns) const;

  ListModel* model_;
  controls::ListView* list_;
  std::string filter_;  ///< in upper case
};

}  // namespace twk::screens
