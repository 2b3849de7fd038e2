#include "ui/screen_mouse.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

#include "ui/report.h"
#include "ui/screen_surface.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

// A name box is dragged with its value box, which comes to stand at its right side.
QPixmap SideBySide(const QPixmap& left, const QPixmap& right) {
  const double ratio = left.devicePixelRatio();
  QPixmap both(left.width() + right.width(), std::max(left.height(), right.height()));
  both.setDevicePixelRatio(ratio);
  both.fill(Qt::transparent);
  QPainter painter(&both);
  painter.drawPixmap(QPointF(0, 0), left);
  painter.drawPixmap(QPointF(left.width() / ratio, 0), right);
  return both;
}

}  // namespace

ScreenMouse::ScreenMouse(frm_Main& main, ScreenSurface& surface) : main_(main), surface_(surface) {
  constexpr int kScrollPace = 30;  // ms
  scroll_timer_.setInterval(kScrollPace);
  connect(&scroll_timer_, &QTimer::timeout, this, [this] { ScrollNearEdge(); });
}

void ScreenMouse::Press(const QPoint& place, MouseButton button, bool shift) {
  const ScreenItem item = surface_.ItemAt(place);
  MousePress press{
      .button = button, .shift = shift, .X = ToUnits(place.x()), .Y = ToUnits(place.y())};
  if (item.kind == ItemKind::kNone) {
    Report(main_.form.MouseDown, press);
    return;
  }
  if (item.kind == ItemKind::kCheck) return;  // its own widget takes the click
  const PlacedControl& control = surface_.ControlOf(item);
  press.X -= ShownUnits(control.Left);
  press.Y -= ShownUnits(control.Top);
  QWidget* box = surface_.WidgetOf(item);
  const bool left = button == MouseButton::kLeft;
  if (left) surface_.setFocus(Qt::OtherFocusReason);  // its frame is no part of the picture
  const QPixmap picture = left ? Picture(item) : QPixmap();
  switch (item.kind) {
    case ItemKind::kName:
      Report(main_.RAM_LOC_TEXT.MouseDown, item.index, press);
      break;
    case ItemKind::kValue:
      Report(main_.RAM_LOC_VAL.MouseDown, item.index, press);
      break;
    default:
      Report(main_.lbl_TextInfo.MouseDown, item.index, press);
  }
  if (main_.DragSource != nullptr) {
    BeginDrag(box, picture);
  } else if (left) {
    box->setFocus(Qt::MouseFocusReason);
  }
}

QPixmap ScreenMouse::Picture(const ScreenItem& item) const {
  const QPixmap picture = surface_.WidgetOf(item)->grab();
  if (item.kind != ItemKind::kName) return picture;
  QWidget* value = surface_.WidgetOf({ItemKind::kValue, item.index});
  return value == nullptr ? picture : SideBySide(picture, value->grab());
}

void ScreenMouse::DoubleClick(const QPoint& place) {
  const ScreenItem item = surface_.ItemAt(place);
  if (item.kind == ItemKind::kName) Report(main_.RAM_LOC_TEXT.DblClick, item.index);
  if (item.kind == ItemKind::kValue) Report(main_.RAM_LOC_VAL.DblClick, item.index);
  if (item.kind == ItemKind::kLabel) Report(main_.lbl_TextInfo.DblClick, item.index);
}

// --- The drag ------------------------------------------------------------------------------------

void ScreenMouse::BeginDrag(QWidget* box, const QPixmap& picture) {
  box_ = box;
  moved_ = false;
  ghost_ = std::make_unique<DragGhost>(&surface_, picture, box->pos());
  qApp->installEventFilter(this);
  scroll_timer_.start();
}

bool ScreenMouse::eventFilter(QObject* watched, QEvent* event) {
  if (main_.DragSource == nullptr) {  // something else has ended the drag
    EndDrag();
    return false;
  }
  switch (event->type()) {
    case QEvent::WindowBlocked:
    case QEvent::WindowDeactivate:
      if (watched == surface_.window()) CancelDrag();
      return false;
    case QEvent::KeyPress:
      if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) CancelDrag();
      return true;
    case QEvent::ShortcutOverride:
      event->accept();  // no command while something hangs on the mouse
      return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      return true;
    // The box that was pressed is hidden, so that no widget gets these: they come to the window.
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
      return TakeMouse(static_cast<QMouseEvent*>(event));
    case QEvent::Move:  // scrolled: the pointer stands still on the display, not on the surface
      if (watched == &surface_ && pointer_shown_) Drag();
      return false;
    default:
      return false;
  }
}

bool ScreenMouse::TakeMouse(const QMouseEvent* event) {
  pointer_ = event->globalPosition().toPoint();
  if (event->type() == QEvent::MouseMove) {
    Drag();
  } else if (event->button() == Qt::LeftButton) {
    Drop();
  }
  return true;
}

void ScreenMouse::Drag() {
  const QPoint place = Place();
  const bool allowed = TakesDrop(place);
  const FormPlace landing = main_.form.DropPlace(ToUnits(place.x()), ToUnits(place.y()));
  const QPoint corner(ToPixels(landing.Left), ToPixels(landing.Top));
  moved_ = moved_ || corner != ghost_->pos();
  ghost_->MoveTo(corner, allowed);
  ShowPointer(allowed);
}

void ScreenMouse::Drop() {
  const QPoint place = Place();
  if (!InSight(place)) return CancelDrag();
  const ScreenItem under = surface_.ItemAt(place);
  if (under.kind == ItemKind::kName) {
    main_.RAM_LOC_TEXT.DragDrop(under.index);
  } else if (under.kind == ItemKind::kValue) {
    main_.RAM_LOC_VAL.DragDrop(under.index);
  } else {
    main_.form.DragDrop(ToUnits(place.x()), ToUnits(place.y()));
  }
  EndDrag();
}

void ScreenMouse::CancelDrag() {
  main_.form.DragCancel();
  EndDrag();
}

void ScreenMouse::EndDrag() {
  qApp->removeEventFilter(this);
  scroll_timer_.stop();
  ghost_.reset();
  if (pointer_shown_) QApplication::restoreOverrideCursor();
  pointer_shown_ = false;
  surface_.Fit();
  if (box_ != nullptr && box_->isVisible()) {
    BringToFront();
    box_->setFocus(Qt::MouseFocusReason);
  }
  box_ = nullptr;
}

// What was moved last lies above the others.
void ScreenMouse::BringToFront() {
  box_->raise();
  const ScreenItem item = surface_.ItemOf(box_);
  if (item.kind != ItemKind::kName) return;
  if (QWidget* value = surface_.WidgetOf({ItemKind::kValue, item.index})) value->raise();
}

QPoint ScreenMouse::Place() const { return surface_.mapFromGlobal(pointer_); }

bool ScreenMouse::InSight(const QPoint& place) const {
  const QScrollArea* area = surface_.Scroller();
  const QWidget* shown = area == nullptr ? &surface_ : area->viewport();
  return shown->rect().contains(surface_.mapTo(shown, place));
}

// Labels and check boxes let a drop through to the form.
bool ScreenMouse::TakesDrop(const QPoint& place) const {
  const ItemKind under = surface_.ItemAt(place).kind;
  return InSight(place) && under != ItemKind::kName && under != ItemKind::kValue;
}

void ScreenMouse::ShowPointer(bool allowed) {
  const QCursor cursor(allowed ? Qt::ClosedHandCursor : Qt::ForbiddenCursor);
  if (pointer_shown_) {
    QApplication::changeOverrideCursor(cursor);
  } else {
    QApplication::setOverrideCursor(cursor);
  }
  pointer_shown_ = true;
}

// Held near an edge of what is in sight, the box draws the screen along. A click does not.
void ScreenMouse::ScrollNearEdge() {
  constexpr int kEdge = 24;  // pixels
  constexpr int kStep = 16;  // pixels
  QScrollArea* area = surface_.Scroller();
  if (area == nullptr || !moved_) return;
  const QPoint pointer = area->mapFromGlobal(pointer_);
  const QRect calm = area->viewport()->geometry().adjusted(kEdge, kEdge, -kEdge, -kEdge);
  const auto scroll = [](QScrollBar* bar, int place, int low, int high) {
    if (place < low) bar->setValue(bar->value() - kStep);
    if (place > high) bar->setValue(bar->value() + kStep);
  };
  scroll(area->horizontalScrollBar(), pointer.x(), calm.left(), calm.right());
  scroll(area->verticalScrollBar(), pointer.y(), calm.top(), calm.bottom());
}

}  // namespace tarnlink
