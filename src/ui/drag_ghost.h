// The picture of what is being dragged, over the screen, where it would come to stand.
#pragma once

#include <QPixmap>
#include <QWidget>

namespace tarnlink {

class DragGhost final : public QWidget {
 public:
  // Shows `picture` with its corner at `place`.
  DragGhost(QWidget* surface, const QPixmap& picture, const QPoint& place);

  // A place that is not allowed is shown fainter.
  void MoveTo(const QPoint& place, bool allowed);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QPixmap picture_;
  bool allowed_ = true;
};

}  // namespace tarnlink
