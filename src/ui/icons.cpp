#include "ui/icons.h"

#include <QPainter>
#include <QPixmap>
#include <QPolygonF>

namespace tarnlink {

namespace {

QIcon Filled(const QPolygonF& shape, const QColor& colour) {
  constexpr int kSide = 64;  // pixels: enough for the densest display, made smaller for the others
  QPixmap picture(kSide, kSide);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawPolygon(shape);
  return QIcon(picture);
}

}  // namespace

QIcon StartIcon() {
  const QPolygonF triangle({{14, 8}, {54, 32}, {14, 56}});
  return Filled(triangle, QColor(46, 160, 67));
}

QIcon StopIcon() { return Filled(QPolygonF(QRectF(13, 13, 38, 38)), QColor(218, 68, 56)); }

}  // namespace tarnlink
