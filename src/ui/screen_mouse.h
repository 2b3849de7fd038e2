// The mouse on the screen: reports presses and double clicks on boxes, labels and the free area,
// and leads a drag from the press to the drop with a picture of the box where it would land.
#pragma once

#include <QMouseEvent>
#include <QObject>
#include <QPixmap>
#include <QPoint>
#include <QPointer>
#include <QTimer>
#include <memory>

#include "monitor/frm_main.h"
#include "ui/drag_ghost.h"
#include "ui/screen_item.h"

namespace tarnlink {

class ScreenSurface;

class ScreenMouse final : public QObject {
 public:
  // Both outlive it.
  ScreenMouse(frm_Main& main, ScreenSurface& surface);

  // Places are pixels on the surface.
  void Press(const QPoint& place, MouseButton button, bool shift);
  void DoubleClick(const QPoint& place);

  // A widget of the screen is about to go.
  void Forget(const QWidget* widget) {
    if (box_ == widget) box_ = nullptr;
  }

 protected:
  // Watches the whole program while a drag is under way: the pointer may be anywhere.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPixmap Picture(const ScreenItem& item) const;
  void BeginDrag(QWidget* box, const QPixmap& picture);
  bool TakeMouse(const QMouseEvent* event);
  void Drag();
  void Drop();
  void CancelDrag();
  void EndDrag();
  void BringToFront();
  // Where the pointer is on the surface.
  QPoint Place() const;
  bool InSight(const QPoint& place) const;
  bool TakesDrop(const QPoint& place) const;
  void ShowPointer(bool allowed);
  void ScrollNearEdge();

  frm_Main& main_;
  ScreenSurface& surface_;
  std::unique_ptr<DragGhost> ghost_;  // while a drag is under way
  QPointer<QWidget> box_;             // what is being dragged
  QPoint pointer_;                    // on the display
  QTimer scroll_timer_;
  bool pointer_shown_ = false;  // the pointer has moved and tells whether a drop is allowed
  bool moved_ = false;          // farther than a click does
};

}  // namespace tarnlink
