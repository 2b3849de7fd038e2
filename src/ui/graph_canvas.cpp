#include "ui/graph_canvas.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_text.h"
#include "ui/label_panel.h"
#include "ui/mouse_button.h"
#include "ui/palette.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

constexpr int kWheelStep = 120;      // of a usual mouse wheel
constexpr double kStepOfView = 0.1;  // that one step of the wheel moves by

constexpr int kGap = 14;    // pixels from the pointer to its reading
constexpr int kMargin = 5;  // pixels around the reading's text
constexpr int kMark = 3;    // pixels: half of the mark on a sample

}  // namespace

GraphCanvas::GraphCanvas(Graph& graph, QWidget* parent)
    : QWidget(parent), graph_(graph), form_(graph.graph) {
  setObjectName(ToQt(form_.GraphPan.name()));
  setAccessibleName(tr("Graph"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setFont(GraphFont());
  form_.GraphPan.SetView([this] { ShowControl(); });
  form_.GraphPan.Draw = [this] { Draw(); };
  ShowControl();
}

GraphCanvas::~GraphCanvas() {
  form_.GraphPan.SetView({});
  form_.GraphPan.Draw = {};
}

void GraphCanvas::ShowControl() {
  const QRect place = PlaceOf(form_.GraphPan);
  if (place != geometry()) setGeometry(place);
}

void GraphCanvas::Draw() {
  view_ = graph_.display.View();
  cursor_ = form_.CursorTime;
  Read();
  update();
}

void GraphCanvas::ShowPlain(bool plain) {
  is_plain_ = plain;
  update();
}

void GraphCanvas::focusInEvent(QFocusEvent* event) {
  came_by_key_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  QWidget::focusInEvent(event);
}

// --- Painting ------------------------------------------------------------------------------------

void GraphCanvas::paintEvent(QPaintEvent*) {
  image_.Update(form_.Data, view_, graph_.display.LaneHeight(), graph_.menu.mnuMeasOnly.Checked,
                size(), devicePixelRatioF());
  QPainter painter(this);
  painter.drawImage(QPoint(0, 0), image_.image());
  if (!is_plain_) PaintFocus(painter);
  PaintCursor(painter);
  if (!is_plain_) PaintReading(painter);
}

// Who came by the mouse knows where the keyboard is. The cursor stands over it.
void GraphCanvas::PaintFocus(QPainter& painter) const {
  if (!hasFocus() || !came_by_key_) return;
  painter.setPen(palette().color(QPalette::Highlight));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void GraphCanvas::PaintCursor(QPainter& painter) const {
  if (cursor_ == 0) return;
  painter.setPen(ToQColor(form_.Data.Colors.CursorColor));
  const int place = static_cast<int>(std::floor(view_.TimeToX(cursor_) / kUnitsPerPixel));
  // The picture's scale may end within a pixel that the widget has no more.
  const int x = cursor_ <= view_.BaseTime ? std::min(place, width() - 1) : place;
  painter.drawLine(x, 0, x, height());
}

void GraphCanvas::PaintReading(QPainter& painter) const {
  if (!reading_) return;
  const QColor paper = palette().color(QPalette::ToolTipBase);
  const QColor ink = palette().color(QPalette::ToolTipText);
  const QString name = ToQt(reading_->Name);
  const QString rest = ToQt(reading_->Value) + "\n" + ToQt(reading_->Time);
  const QFontMetrics metrics = fontMetrics();
  const QSize text = metrics.size(0, name + "\n" + rest);
  const QRect place = ReadingPlace(text);
  painter.setPen(ink);
  painter.setBrush(paper);
  const QPoint at(ToPixels(reading_->At.x), ToPixels(reading_->At.y));
  painter.drawEllipse(at, kMark, kMark);
  painter.drawRect(place);
  const QRect lines = place.adjusted(kMargin, kMargin, -kMargin, -kMargin);
  painter.setPen(ReadableShade(ToQColor(reading_->LineColor), paper));
  painter.drawText(lines, Qt::AlignLeft | Qt::AlignTop, name);
  painter.setPen(ink);
  painter.drawText(lines.adjusted(0, metrics.lineSpacing(), 0, 0), Qt::AlignLeft | Qt::AlignTop,
                   rest);
}

// Beside the pointer, on the side where there is room.
QRect GraphCanvas::ReadingPlace(const QSize& text) const {
  const QSize box = text + QSize(2 * kMargin, 2 * kMargin);
  const QPoint at = pointer_.value_or(QPoint());
  const int left =
      at.x() + kGap + box.width() < width() ? at.x() + kGap : at.x() - kGap - box.width();
  const int top =
      at.y() + kGap + box.height() < height() ? at.y() + kGap : at.y() - kGap - box.height();
  return {QPoint(std::max(left, 0), std::max(top, 0)), box};
}

void GraphCanvas::Read() {
  std::optional<PointerReading> reading;
  if (pointer_ && !is_dragging_) {
    reading = graph_.pointer.Reading(view_, {ToUnits(pointer_->x()), ToUnits(pointer_->y())});
  }
  if (!reading && !reading_) return;
  reading_ = std::move(reading);
  update();
}

// --- The mouse -----------------------------------------------------------------------------------

void GraphCanvas::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressed_ = event->pos();
  pressed_base_ = form_.BaseTime;
  is_dragging_ = false;
}

void GraphCanvas::mouseMoveEvent(QMouseEvent* event) {
  pointer_ = event->pos();
  // A box that came up meanwhile may have taken its release.
  if (!event->buttons().testFlag(Qt::LeftButton)) EndPress();
  if (pressed_ && IsDrag(event->pos())) DragTo(event->pos());
  Read();
}

// Only a view that stands can be dragged; elsewhere the button means the cursor.
bool GraphCanvas::IsDrag(const QPoint& at) const {
  if (is_dragging_) return true;
  return !form_.AutoScroll && std::abs(at.x() - pressed_->x()) >= QApplication::startDragDistance();
}

void GraphCanvas::DragTo(const QPoint& at) {
  if (!is_dragging_) setCursor(Qt::ClosedHandCursor);
  is_dragging_ = true;
  const double minutes =
      static_cast<double>(pressed_->x() - at.x()) / std::max(width(), 1) * form_.TimeScale;
  const double moved = (form_.BaseTime - pressed_base_) * kMinutesPerDay;
  graph_.pointer.MoveInTime(minutes - moved);
}

void GraphCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && EndPress()) return Read();
  // The middle of the pixel: its edge would be drawn in the one before.
  graph_.display.GraphPanMouseUp(ToMouseButton(*event),
                                 ToUnits(event->pos().x()) + kUnitsPerPixel / 2);
}

// True if it was a drag.
bool GraphCanvas::EndPress() {
  pressed_.reset();
  if (!is_dragging_) return false;
  unsetCursor();
  is_dragging_ = false;
  return true;
}

void GraphCanvas::leaveEvent(QEvent*) {
  pointer_.reset();
  Read();
}

void GraphCanvas::wheelEvent(QWheelEvent* event) {
  event->accept();
  const QPoint turned = event->angleDelta();
  wheel_ += turned.y() != 0 ? turned.y() : turned.x();
  const int steps = wheel_ / kWheelStep;
  wheel_ -= steps * kWheelStep;
  if (steps == 0) return;
  if (event->modifiers().testFlag(Qt::ControlModifier)) return graph_.commands.ChangeScale(-steps);
  graph_.pointer.MoveInTime(-steps * kStepOfView * form_.TimeScale);
}

// --- The keyboard --------------------------------------------------------------------------------

// Shift alone makes the step longer.
void GraphCanvas::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Left && event->key() != Qt::Key_Right) {
    return QWidget::keyPressEvent(event);
  }
  const bool shift = (event->modifiers() & ~Qt::KeypadModifier) == Qt::ShiftModifier;
  graph_.display.GraphPanKeyDown(
      event->key() == Qt::Key_Left ? CursorKey::kLeft : CursorKey::kRight, shift);
}

// The mouse asks for the menu when its button goes up.
void GraphCanvas::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  if (event->reason() == QContextMenuEvent::Keyboard) {
    graph_.display.GraphPanMouseUp(MouseButton::kRight, 0);
  }
}

}  // namespace tarnlink
