#include "screens/widgets/list_csv.hpp"

#include <QHeaderView>
#include <QTreeView>
#include <algorithm>

namespace twk::screens {
namespace {

QString csv_field(QString text) {
  const bool plain = std::none_of(text.begin(), text.end(), [](QChar c) {
    return c == ',' || c == ';' || c == '"' || c == '\n' || c == '\r';
  });
  return plain ? text : '"' + text.replace('"', "\"\"") + '"';
}

/// The columns as they stand, from the left.
QList<int> shown_columns(const QTreeView& view) {
  QList<int> columns;
  for (int place = 0; place < view.header()->count(); ++place) {
    const int column = view.header()->logicalIndex(place);
    if (!view.isColumnHidden(column))
      columns << column;
  }
  return columns;
}

template <typename TextOf>
QString csv_line(const QList<int>& columns, const TextOf& text_of) {
  QStringList fields;
  for (const int column : columns)
    fields << csv_field(text_of(column));
  return fields.join(',') + '\n';
}

}  // namespace

QString selection_as_csv(const QTreeView& view) {
  QModelIndexList rows = view.selectionModel()->selectedRows();
  if (rows.isEmpty())
    return {};
  std::ranges::sort(rows, {}, &QModelIndex::row);
  const QList<int> columns = shown_columns(view);
  QString text;
  if (columns.size() > 1)
    text = csv_line(columns,
                    [&](int column) { return view.model()->headerData(column, Qt::Horizontal).toString(); });
  for (const QModelIndex& row : rows)
    text += csv_line(columns, [&](int column) { return row.siblingAtColumn(column).data().toString(); });
  return text;
}

}  // namespace twk::screens
