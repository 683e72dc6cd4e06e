#pragma once

#include <QTableView>
#include <QToolButton>

#include "session/session.hpp"

namespace twk::screens {

/// One hour as the grid paints it: filled for permitted, hatched for denied.
void paint_hour(QPainter& painter, const QRect& area, bool permitted, const QPalette& palette);

/// The hours of a week, `Logon_Hours::MSFlexGrid1`, a row a day. A rectangle is painted by dragging over it,
/// or by selecting it with Shift and the arrow keys and pressing Space or Enter; a click on a head paints its
/// row or column, one on "All" everything.
class HoursGrid final : public QTableView {
 public:
  HoursGrid(session::Session& session, QWidget* parent);

  QSize sizeHint() const override;
  /// A button of the mouse is down: the selection shows what it will become.
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
  /// The rectangle that is selected, the current cell when none is.
  [[nodiscard]] QRect selected_cells() const;
  void paint_selected();

  session::Session& session_;
  QToolButton* all_;
  bool dragging_ = false;
};

}  // namespace twk::screens
