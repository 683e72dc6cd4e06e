#include "screens/widgets/icons.hpp"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include "screens/widgets/text.hpp"

namespace twk::screens {
namespace {

constexpr int kSizes[] = {16, 24, 32, 48, 64, 96};

constexpr const char* kInk = "currentColor";
// The accent that would vanish in a selected row's colour.
constexpr const char* kBlue = "#3b82d6";

QByteArray drawing(const QString& file) {
  QFile source(file);
  return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

void add_pixmaps(QIcon& icon, const QByteArray& svg, QIcon::Mode mode) {
  QSvgRenderer renderer(svg);
  for (const int size : kSizes) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    painter.end();
    icon.addPixmap(pixmap, mode);
  }
}

}  // namespace

QIcon icon(std::string_view name) {
  const QByteArray svg = drawing(":/icons/" + to_qt(name).toLower() + ".svg");
  if (svg.isEmpty())
    return {};
  const QPalette palette = QGuiApplication::palette();
  const QByteArray ink = palette.color(QPalette::WindowText).name().toLatin1();
  const QByteArray selected = palette.color(QPalette::HighlightedText).name().toLatin1();
  QIcon result;
  add_pixmaps(result, QByteArray(svg).replace(kInk, ink), QIcon::Normal);
  add_pixmaps(result, QByteArray(svg).replace(kInk, selected).replace(kBlue, selected), QIcon::Selected);
  return result;
}

}  // namespace twk::screens
