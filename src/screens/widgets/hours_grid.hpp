#pragma once

#include <QTableView>
#include <QToolButton>

#include "windows/state/desktop.hpp"

namespace twk::screens {

/// An hour as painted in the grid: filled for permitted, hatched for denied.
void paint_hour(QPainter& painter, const QRect& area, bool permitted, const QPalette& palette);

/// The hours of a week, `Logon_Hours::MSFlexGrid1`, a row for each day. A rectangle is painted by dragging
/// over it, or by selecting it with Shift and the arrow keys and pressing Space or Enter; a click on a
/// heading paints its row or column, one on "All" everything.
class HoursGrid final : public QTableView {
 public:
  HoursGrid(windows::Desktop& session, QWidget* parent);

  QSize sizeHint() const override;
  /// A mouse button is down: the selection shows the new state.
  [[nodiscard]] bool is_dragging() const { return dragging_; }

 protected:
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void updateGeometries() override;

 private:
  void size_cells();
  /// The selected rectangle, or the current cell.
  [[nodiscard]] QRect selected_cells() const;
  void paint_selected();

  windows::Desktop& session_;
  QToolButton* all_;
  bool dragging_ = false;
};

}  // namespace twk::screens
