#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <string>

#include "controls/list_view.hpp"
#include "screens/widgets/account_look.hpp"

namespace twk::screens {

/// The text of a row in a column of the table: its own in the first, then its sub-items.
const std::string& column_text(const controls::ListRow& row, int column);

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

}  // namespace twk::screens
