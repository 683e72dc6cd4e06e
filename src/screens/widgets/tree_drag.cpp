#include "screens/widgets/tree_drag.hpp"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTimer>

#include "screens/widgets/application.hpp"
#include "screens/widgets/bind.hpp"
#include "windows/state/form1.hpp"
#include "windows/tree/tree_drag.hpp"

namespace twk::screens {
namespace {

constexpr int kScrollInterval = 200;  ///< milliseconds
constexpr int kScrollEdge = 20;       ///< pixels

/// The mouse and the Esc key of a drag, before the tree itself handles them.
class TreeDrag final : public QObject {
 public:
  TreeDrag(TreePane& tree, windows::Desktop& session) : QObject(&tree), tree_(tree), session_(session) {
    setObjectName("TreeDrag");
    Timer2_.setInterval(kScrollInterval);
    connect(&Timer2_, &QTimer::timeout, this, [this] { scroll(); });
    tree.installEventFilter(this);
    tree.viewport()->installEventFilter(this);
    follow(tree, session.form1.DropHighlight, [this](const std::string& key) {
      tree_.set_drop_highlight(key.empty() ? nullptr : session_.form1.TreeView1.find(key));
    });
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == &tree_)
      return takes_tree_event(*event);
    switch (event->type()) {
      case QEvent::MouseButtonPress:
        press(*static_cast<QMouseEvent*>(event));
        return false;
      case QEvent::MouseMove:
        return takes_move(*static_cast<QMouseEvent*>(event));
      case QEvent::MouseButtonRelease:
        return takes_release(*static_cast<QMouseEvent*>(event));
      default:
        return false;
    }
  }

 private:
  void press(const QMouseEvent& event) {
    const bool starts = event.button() == Qt::LeftButton && event.modifiers().testFlag(Qt::ShiftModifier);
    held_ = starts ? QPersistentModelIndex(tree_.indexAt(event.pos())) : QPersistentModelIndex();
    pressed_at_ = event.pos();
  }

  bool takes_move(const QMouseEvent& event) {
    if (!event.buttons().testFlag(Qt::LeftButton))
      return false;
    at_ = event.pos();
    if (!dragging_ && !begin())
      return held_.isValid();
    show_target();
    const bool at_edge = at_.y() < kScrollEdge || at_.y() >= tree_.viewport()->height() - kScrollEdge;
    if (!at_edge)
      Timer2_.stop();
    else if (!Timer2_.isActive())
      Timer2_.start();
    return true;
  }

  bool begin() {
    const controls::TreeNode* const node = tree_.node(held_);
    const bool far = (at_ - pressed_at_).manhattanLength() >= QApplication::startDragDistance();
    if (node == nullptr || !far || !windows::begin_drag(session_, *node))
      return false;
    dragging_ = true;
    const QPixmap picture = held_.data(Qt::DecorationRole).value<QIcon>().pixmap(24, 24);
    QApplication::setOverrideCursor(picture.isNull() ? QCursor(Qt::DragMoveCursor) : QCursor(picture, 0, 0));
    return true;
  }

  void show_target() { windows::drag_over(session_, tree_.node(tree_.indexAt(at_))); }

  bool takes_release(const QMouseEvent& event) {
    held_ = QPersistentModelIndex();
    if (!dragging_ || event.button() != Qt::LeftButton)
      return false;
    at_ = event.pos();
    show_target();
    end();
    run_guarded([this] { windows::drop(session_); });
    return true;
  }

  bool takes_tree_event(const QEvent& event) {
    if (!dragging_)
      return false;
    const bool escape =
        event.type() == QEvent::KeyPress && static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape;
    if (!escape && event.type() != QEvent::FocusOut && event.type() != QEvent::Hide)
      return false;
    end();
    windows::cancel_drag(session_);
    return escape;
  }

  void end() {
    dragging_ = false;
    held_ = QPersistentModelIndex();
    Timer2_.stop();
    QApplication::restoreOverrideCursor();
  }

  void scroll() {
    tree_.verticalScrollBar()->triggerAction(at_.y() < kScrollEdge ? QAbstractSlider::SliderSingleStepSub
                                                                   : QAbstractSlider::SliderSingleStepAdd);
    show_target();
  }

  TreePane& tree_;
  windows::Desktop& session_;
  QTimer Timer2_;
  QPersistentModelIndex held_;  ///< where Shift and the left button were pressed
  QPoint pressed_at_;
  QPoint at_;
  bool dragging_ = false;
};

}  // namespace

void add_tree_drag(TreePane& tree, windows::Desktop& session) {
  new TreeDrag(tree, session);
}

}  // namespace twk::screens
