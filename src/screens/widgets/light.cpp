#include "screens/widgets/light.hpp"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

#include "screens/widgets/bind.hpp"
#include "screens/widgets/text.hpp"

namespace twk::screens {
namespace {

constexpr int kDot = 14;

/// Colour values of controls are blue * 65536 + green * 256 + red.
QColor colour(std::int32_t value) {
  return {value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF};
}

QPixmap dot(const QColor& fill, const QWidget& widget) {
  const qreal ratio = widget.devicePixelRatioF();
  QPixmap pixmap(QSize(kDot, kDot) * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(widget.palette().color(QPalette::WindowText), 1));
  painter.setBrush(fill);
  painter.drawEllipse(QRectF(1.5, 1.5, kDot - 3, kDot - 3));
  return pixmap;
}

}  // namespace

Light::Light(controls::Label& control, QWidget* parent)
    : QWidget(parent), control_(&control), dot_(new QLabel(this)), text_(new QLabel(this)) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(dot_);
  row->addWidget(text_, 1);
  dot_->setFixedSize(kDot, kDot);
  text_->setTextFormat(Qt::PlainText);
  text_->setMinimumWidth(text_->fontMetrics().horizontalAdvance("Completed"));
  const PacedShowing show(*this, [this] { show_state(); });
  show_state();
  keep(*this, control.caption.watch(show));
  keep(*this, control.colour.watch(show));
}

void Light::show_state() {
  const QString caption = to_qt(control_->caption.get());
  text_->setText(caption);
  dot_->setPixmap(caption.isEmpty() ? QPixmap() : dot(colour(control_->colour), *this));
}

}  // namespace twk::screens
