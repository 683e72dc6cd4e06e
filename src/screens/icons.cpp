#include "screens/icons.hpp"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include "screens/text.hpp"

namespace twk::screens {
namespace {

constexpr int kSizes[] = {16, 24, 32, 48, 64, 96};

/// The drawing with its ink in the colour of the desktop's text.
QByteArray drawing(const QString& file, const QColor& ink) {
  QFile source(file);
  if (!source.open(QIODevice::ReadOnly))
    return {};
  return source.readAll().replace("currentColor", ink.name().toLatin1());
}

}  // namespace

QIcon icon(std::string_view name) {
  const QString file = ":/icons/" + to_qt(name).toLower() + ".svg";
  const QByteArray svg = drawing(file, QGuiApplication::palette().color(QPalette::WindowText));
  if (svg.isEmpty())
    return {};
  QSvgRenderer renderer(svg);
  QIcon result;
  for (const int size : kSizes) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    painter.end();
    result.addPixmap(pixmap);
  }
  return result;
}

}  // namespace twk::screens
