#include "screens/widgets/account_look.hpp"

#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

#include "directory/account_marks.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/text.hpp"

namespace twk::screens {
namespace {

namespace mark = directory::mark;

constexpr int kSize = 64;
const QColor kLockedSign(0xd9, 0x8e, 0x04);
const QColor kExpiredSign(0xc0, 0x39, 0x2b);

/// A disc in the lower corner: with a bar for a lock, with a clock's hands for an end.
void draw_sign(QPainter& painter, const QColor& colour, bool locked) {
  const QRectF disc(kSize * 0.5, kSize * 0.5, kSize * 0.5, kSize * 0.5);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawEllipse(disc);
  painter.setPen(QPen(Qt::white, kSize / 12.0, Qt::SolidLine, Qt::RoundCap));
  const QPointF middle = disc.center();
  const double reach = disc.width() * 0.27;
  if (locked) {
    painter.drawLine(middle - QPointF(reach, 0), middle + QPointF(reach, 0));
  } else {
    painter.drawLine(middle, middle - QPointF(0, reach));
    painter.drawLine(middle, middle + QPointF(reach, 0));
  }
}

QIcon marked(const QIcon& plain, std::uint8_t marks) {
  if ((marks & (mark::kLocked | mark::kExpired)) == 0 || plain.isNull())
    return plain;
  QIcon icon;
  for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected}) {
    QPixmap pixmap = plain.pixmap(QSize(kSize, kSize), 1.0, mode);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool locked = (marks & mark::kLocked) != 0;
    draw_sign(painter, locked ? kLockedSign : kExpiredSign, locked);
    painter.end();
    icon.addPixmap(pixmap, mode);
  }
  return icon;
}

}  // namespace

QString with_marks(const QString& text, std::uint8_t marks) {
  return marks == 0 ? text : text + " (" + to_qt(directory::marks_in_words(marks)) + ")";
}

QVariant look_of_marks(std::uint8_t marks, int role) {
  if ((marks & mark::kDisabled) == 0)
    return {};
  if (role == Qt::ForegroundRole)
    return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
  QFont font = QGuiApplication::font();
  font.setStrikeOut(true);
  return font;
}

const QIcon& MarkedPictures::of(const std::string& name, std::uint8_t marks) const {
  const auto [found, is_new] = icons_.try_emplace({name, marks});
  if (is_new)
    found->second = marked(icon(name), marks);
  return found->second;
}

}  // namespace twk::screens
