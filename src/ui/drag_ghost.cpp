#include "ui/drag_ghost.h"

#include <QPainter>

#include "ui/palette.h"

namespace tarnlink {

DragGhost::DragGhost(QWidget* surface, const QPixmap& picture, const QPoint& place)
    : QWidget(surface), picture_(picture) {
  setObjectName("DragGhost");
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setGeometry(QRect(place, picture.deviceIndependentSize().toSize()));
  raise();
  show();
}

void DragGhost::MoveTo(const QPoint& place, bool allowed) {
  if (allowed != allowed_) {
    allowed_ = allowed;
    update();
  }
  move(place);
}

void DragGhost::paintEvent(QPaintEvent*) {
  constexpr double kFaint = 0.35;
  constexpr double kClear = 0.85;
  QPainter painter(this);
  painter.setOpacity(allowed_ ? kClear : kFaint);
  painter.drawPixmap(0, 0, picture_);
  painter.setOpacity(1.0);
  DrawFocusFrame(painter, rect());
}

}  // namespace tarnlink
