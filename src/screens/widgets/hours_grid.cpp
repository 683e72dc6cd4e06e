#include "screens/widgets/hours_grid.hpp"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "directory/hours_of_week.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/text.hpp"
#include "windows/editors/logon_hours.hpp"
#include "windows/state/editor_windows.hpp"

namespace twk::screens {
namespace {

class HoursModel final : public QAbstractTableModel {
 public:
  HoursModel(const windows::Logon_Hours& window, QObject* parent)
      : QAbstractTableModel(parent), window_(&window), watch_(window.MSFlexGrid1.watch([this] {
          Q_EMIT dataChanged(index(0, 0), index(directory::kDays - 1, directory::kHours - 1));
        })) {}

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : directory::kDays;
  }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : directory::kHours;
  }
  [[nodiscard]] bool is_permitted(const QModelIndex& cell) const {
    const int place = cell.row() * directory::kHours + cell.column();
    return window_->MSFlexGrid1.get().at(static_cast<std::size_t>(place));
  }
  /// The painted cell says nothing to a person who cannot see it.
  QVariant data(const QModelIndex& cell, int role) const override {
    if (!cell.isValid() || (role != Qt::AccessibleTextRole && role != Qt::ToolTipRole))
      return {};
    return QString("%1 %2, %3")
        .arg(to_qt(directory::day_name(cell.row() + 1)), to_qt(directory::hour_name(cell.column())),
             is_permitted(cell) ? "permitted" : "denied");
  }
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation == Qt::Vertical)
      return role == Qt::DisplayRole ? to_qt(directory::day_name(section + 1)) : QVariant();
    const QString hour = to_qt(directory::hour_name(section));
    if (role == Qt::AccessibleTextRole || role == Qt::ToolTipRole)
      return hour;
    // In two lines, so that 24 columns fit.
    return role == Qt::DisplayRole ? hour.chopped(2) + "\n" + hour.right(2) : QVariant();
  }

 private:
  const windows::Logon_Hours* window_;
  controls::Watch watch_;
};

class HourPainter final : public QStyledItemDelegate {
 public:
  HourPainter(const windows::Logon_Hours& window, const HoursModel& model, HoursGrid& grid)
      : QStyledItemDelegate(&grid), window_(&window), model_(&model), grid_(&grid) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& cell) const override {
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const bool permitted =
        selected && grid_->is_dragging() ? window_->Option1.index == 0 : model_->is_permitted(cell);
    paint_hour(*painter, option.rect, permitted, option.palette);
    painter->save();
    if (selected) {
      painter->setPen(QPen(option.palette.color(QPalette::Text), 2));
      painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    }
    if (option.state.testFlag(QStyle::State_HasFocus)) {
      painter->setPen(QPen(permitted ? Qt::white : option.palette.color(QPalette::Text), 1, Qt::DotLine));
      painter->drawRect(option.rect.adjusted(4, 4, -5, -5));
    }
    painter->restore();
  }

 private:
  const windows::Logon_Hours* window_;
  const HoursModel* model_;
  const HoursGrid* grid_;
};

}  // namespace

void paint_hour(QPainter& painter, const QRect& area, bool permitted, const QPalette& palette) {
  const bool dark = palette.color(QPalette::Base).lightness() < 128;
  painter.fillRect(area, permitted ? QColor(dark ? 0x4a80ff : 0x0000ff) : palette.color(QPalette::Base));
  if (!permitted)
    painter.fillRect(area, QBrush(palette.color(QPalette::PlaceholderText), Qt::BDiagPattern));
}

HoursGrid::HoursGrid(windows::Desktop& session, QWidget* parent)
    : QTableView(parent), session_(session), all_(new QToolButton(this)) {
  auto* const model = new HoursModel(session.logon_hours, this);
  setModel(model);
  setItemDelegate(new HourPainter(session.logon_hours, *model, *this));
  setSelectionMode(ContiguousSelection);
  setTabKeyNavigation(false);
  setCornerButtonEnabled(false);
  for (QHeaderView* const head : {horizontalHeader(), verticalHeader()}) {
    head->setSectionResizeMode(QHeaderView::Fixed);
    head->setDefaultAlignment(Qt::AlignCenter);
    head->setHighlightSections(false);
    head->setMinimumSectionSize(1);
    head->viewport()->installEventFilter(this);
  }
  all_->setText("All");
  all_->setObjectName("All");
  all_->setAccessibleName("All hours");
  all_->setFocusPolicy(Qt::NoFocus);
  on_click(*all_, [this] {
    selectAll();
    paint_selected();
  });
  size_cells();
}

QSize HoursGrid::sizeHint() const {
  const QMargins frame = contentsMargins();
  return {
      verticalHeader()->sizeHint().width() + horizontalHeader()->length() + frame.left() + frame.right(),
      horizontalHeader()->sizeHint().height() + verticalHeader()->length() + frame.top() + frame.bottom()};
}

void HoursGrid::size_cells() {
  const QFontMetrics metrics = horizontalHeader()->fontMetrics();
  const int text = std::max(metrics.horizontalAdvance("12"), metrics.horizontalAdvance("am"));
  horizontalHeader()->setDefaultSectionSize(text + 6);
  verticalHeader()->setDefaultSectionSize(std::max(text + 6, metrics.height() + 8));
  updateGeometry();
}

void HoursGrid::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
    size_cells();
}

void HoursGrid::updateGeometries() {
  QTableView::updateGeometries();
  all_->setGeometry(verticalHeader()->x(), horizontalHeader()->y(), verticalHeader()->width(),
                    horizontalHeader()->height());
}

QRect HoursGrid::selected_cells() const {
  QRect cells;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    cells |= QRect(QPoint(range.left(), range.top()), QPoint(range.right(), range.bottom()));
  if (cells.isNull() && currentIndex().isValid())
    cells = QRect(currentIndex().column(), currentIndex().row(), 1, 1);
  return cells;
}

void HoursGrid::paint_selected() {
  const QRect cells = selected_cells();
  if (!cells.isNull()) {
    run_guarded([&] {
      windows::select_cells(session_, cells.top() + 1, cells.left() + 1, cells.bottom() + 1,
                            cells.right() + 1);
    });
  }
}

void HoursGrid::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  const QRect cells = selected_cells();
  if (!cells.isNull())
    windows::show_selected(session_, cells.top() + 1, cells.left() + 1, cells.bottom() + 1,
                           cells.right() + 1);
}

bool HoursGrid::eventFilter(QObject* watched, QEvent* event) {
  const bool released = event->type() == QEvent::MouseButtonRelease &&
                        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
  if (released && (watched == horizontalHeader()->viewport() || watched == verticalHeader()->viewport()))
    paint_selected();
  return QTableView::eventFilter(watched, event);
}

void HoursGrid::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
    paint_selected();
  else
    QTableView::keyPressEvent(event);
}

void HoursGrid::mousePressEvent(QMouseEvent* event) {
  dragging_ = event->button() == Qt::LeftButton;
  QTableView::mousePressEvent(event);
}

void HoursGrid::mouseReleaseEvent(QMouseEvent* event) {
  QTableView::mouseReleaseEvent(event);
  if (event->button() != Qt::LeftButton || !dragging_)
    return;
  dragging_ = false;
  paint_selected();
  viewport()->update();
}

}  // namespace twk::screens
