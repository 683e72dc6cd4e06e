#pragma once

#include <QLineEdit>
#include <QTreeView>
#include <functional>

#include "controls/list_view.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/list_order.hpp"

namespace twk::screens {

struct ListLook {
  QStringList headings{};      ///< one for each column; a list of one column shows none
  bool many_selected = false;  ///< several rows may be selected, with Ctrl and Shift
  bool sorted = false;         ///< in alphabetical order, and by the column whose heading was clicked
  bool checkable = false;
  QString empty_text{};   ///< shown while there is no row
  bool pictured = false;  ///< a row without a picture keeps its place
};

/// A list on the screen. The selection follows the rows, both ways.
class ListPane final : public QTreeView {
 public:
  ListPane(controls::ListView& list, const ListLook& look, QWidget* parent);

  Action on_click;     ///< a row was selected by a person
  Action on_activate;  ///< double click, or Enter
  Action on_delete;    ///< the Del key
  /// Lets the first column be edited with F2 or by `edit_selected`; gets what was typed.
  void set_edited(std::function<void(controls::ListRow& row, const std::string& text)> edited);
  /// Begins the edit of the selected row. A cancelled edit is reported as the row's own text.
  void edit_selected();
  /// Other columns from now on.
  void set_headings(const QStringList& headings);
  /// Shows only rows that contain the text. Hidden rows are not selected.
  void set_filter(const QString& text);
  /// Shown from now on while there is no row.
  void set_empty_text(const QString& text);

  /// What stands in the place of rows: the text of an empty list, or that the filter hides all.
  [[nodiscard]] QString shown_instead() const;

  [[nodiscard]] controls::ListView& list() const { return *list_; }
  /// The row under an index of this view; none when there is none.
  [[nodiscard]] controls::ListRow* row(const QModelIndex& index) const;
  [[nodiscard]] QModelIndex index_of(const controls::ListRow& row) const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

 private:
  void show_selection();

  controls::ListView* list_;
  bool ending_edit_ = false;
  bool showing_ = false;   ///< the view follows the rows, not the other way round
  controls::Watch early_;  ///< called before the model
  ListModel* model_;
  ListOrder* order_;
  QString empty_text_;
  controls::Watch watch_;
};

/// A search field over a list: what is typed filters it.
QLineEdit* add_filter(ListPane& pane, const QString& placeholder, QWidget* parent);

}  // namespace twk::screens
