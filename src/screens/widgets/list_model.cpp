#include "screens/widgets/list_model.hpp"

#include <QGuiApplication>
#include <QPalette>

#include "screens/widgets/account_look.hpp"
#include "screens/widgets/text.hpp"
#include "screens/widgets/tool_tip.hpp"

namespace twk::screens {
using controls::ListChange;
using controls::ListRow;

const std::string& column_text(const ListRow& row, int column) {
  static const std::string nothing;
  if (column == 0)
    return row.text;
  const auto place = static_cast<std::size_t>(column - 1);
  return place < row.sub_items.size() ? row.sub_items[place] : nothing;
}

ListModel::ListModel(controls::ListView& list, QStringList headings, QObject* parent)
    : QAbstractTableModel(parent),
      list_(&list),
      headings_(std::move(headings)),
      watch_(list.watch([this](const ListChange& change) { take(change); })) {}

void ListModel::set_edited(std::function<void(ListRow&, const std::string&)> edited) {
  edited_ = std::move(edited);
}

void ListModel::set_headings(QStringList headings) {
  beginResetModel();
  headings_ = std::move(headings);
  endResetModel();
}

ListRow* ListModel::row(const QModelIndex& index) const {
  const auto place = static_cast<std::size_t>(index.row());
  if (resetting_ || index.model() != this || !index.isValid() || place >= list_->size())
    return nullptr;
  return &list_->at(place);
}

int ListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || resetting_ ? 0 : static_cast<int>(list_->size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(headings_.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  const ListRow* const row = this->row(index);
  if (row == nullptr)
    return {};
  if (role == Qt::DisplayRole || role == Qt::EditRole)
    return to_qt(column_text(*row, index.column()));
  if (role == Qt::ForegroundRole && row->ghosted)
    return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
  if (role == Qt::ToolTipRole)
    return as_tool_tip(with_marks(to_qt(column_text(*row, index.column())), row->marks));
  if (row->marks != 0 && (role == Qt::ForegroundRole || role == Qt::FontRole))
    return look_of_marks(row->marks, role);
  if (index.column() != 0)
    return {};
  if (role == Qt::DecorationRole && !row->icon.empty())
    return pictures_.of(row->icon, row->marks);
  if (role == Qt::DecorationRole && pictured_)
    return QColor(Qt::transparent);
  if (role == Qt::CheckStateRole && checkable_)
    return row->checked ? Qt::Checked : Qt::Unchecked;
  // The light of a row is a colour: a screen reader says it before the text.
  if (role == Qt::AccessibleTextRole && !row->icon.empty())
    return with_marks(to_qt(row->icon + " " + row->text), row->marks);
  return {};
}

bool ListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  ListRow* const row = this->row(index);
  if (row == nullptr)
    return false;
  if (role == Qt::CheckStateRole && checkable_) {
    list_->set_checked(*row, value.toInt() == Qt::Checked);
    return true;
  }
  if (role != Qt::EditRole || !edited_)
    return false;
  edited_(*row, from_qt(value.toString()));
  return true;
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
    return {};
  return headings_.value(section);
}

Qt::ItemFlags ListModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  if (index.column() == 0 && edited_)
    flags |= Qt::ItemIsEditable;
  if (index.column() == 0 && checkable_)
    flags |= Qt::ItemIsUserCheckable;
  return flags;
}

void ListModel::take(const ListChange& change) {
  const int place = static_cast<int>(change.place);
  switch (change.kind) {
    case ListChange::Kind::kInserting:
      beginInsertRows({}, place, place);
      break;
    case ListChange::Kind::kInserted:
      endInsertRows();
      break;
    case ListChange::Kind::kRemoving:
      beginRemoveRows({}, place, place);
      break;
    case ListChange::Kind::kRemoved:
      endRemoveRows();
      break;
    case ListChange::Kind::kResetting:
      beginResetModel();
      resetting_ = true;
      break;
    case ListChange::Kind::kReset:
      resetting_ = false;
      endResetModel();
      break;
    case ListChange::Kind::kChanged:
      Q_EMIT dataChanged(index(place, 0), index(place, columnCount() - 1));
      break;
    case ListChange::Kind::kSelected:
    case ListChange::Kind::kFiltered:
      break;
  }
}

}  // namespace twk::screens
