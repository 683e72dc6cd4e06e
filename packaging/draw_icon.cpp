#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>
#include <cstdio>

/// Draws an SVG as a square PNG: draw_icon DRAWING SIZE PNG
int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: draw_icon DRAWING SIZE PNG\n", stderr);
    return 64;
  }
  QSvgRenderer drawing{QString::fromLocal8Bit(argv[1])};
  const int size = QString::fromLocal8Bit(argv[2]).toInt();
  if (!drawing.isValid() || size <= 0) {
    std::fprintf(stderr, "draw_icon: cannot draw %s at %s pixels\n", argv[1], argv[2]);
    return 65;
  }
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  drawing.render(&painter);
  painter.end();
  return image.save(QString::fromLocal8Bit(argv[3])) ? 0 : 70;
}
