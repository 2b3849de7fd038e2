#include "ui/click_label.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <utility>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/label_panel.h"
#include "ui/mouse_button.h"
#include "ui/palette.h"
#include "ui/report.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

constexpr int kIndent = 8;  // pixels beside the caption
constexpr int kAir = 2;     // above and below

bool IsPressKey(const QKeyEvent& event) {
  return !event.isAutoRepeat() && (event.key() == Qt::Key_Space || event.key() == Qt::Key_Return ||
                                   event.key() == Qt::Key_Enter);
}

}  // namespace

ClickLabel::ClickLabel(Label& control, QWidget* parent) : QWidget(parent), control_(control) {
  setObjectName(ToQt(control_.name()));
  setAccessibleName(ToQt(control_.Caption.get()));
  setFont(GraphFont());
  // A click leaves the keyboard with the picture.
  setFocusPolicy(Qt::TabFocus);
  setCursor(Qt::PointingHandCursor);
  const QString caption = ToQt(control_.Caption.get());
  control_.Width = ToUnits(fontMetrics().horizontalAdvance(caption) + 2 * kIndent);
  control_.Height = ToUnits(fontMetrics().height() + 2 * kAir);
  control_.SetView([this] { ShowControl(); });
  ShowControl();
}

ClickLabel::~ClickLabel() { control_.SetView({}); }

void ClickLabel::ShowControl() {
  const QRect place = PlaceOf(control_);
  if (place != geometry()) setGeometry(place);
  ShowCommon(this, control_);
  update();
}

void ClickLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor background = ToQColor(control_.BackColor);
  painter.fillRect(rect(), background);
  painter.setPen(ReadableOn(background));
  painter.setOpacity(underMouse() || hasFocus() ? 1.0 : 0.4);
  painter.drawRect(1, 1, width() - 3, height() - 3);
  painter.setOpacity(1.0);
  painter.setPen(ToQColor(control_.ForeColor));
  painter.drawText(rect(), Qt::AlignCenter, ToQt(control_.Caption.get()));
  if (hasFocus()) DrawFocusFrame(painter, rect(), FocusFrame::kThin);
}

void ClickLabel::mousePressEvent(QMouseEvent* event) { Press(ToMouseButton(*event)); }

void ClickLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (down_ == ToMouseButton(*event)) LetGo(rect().contains(event->pos()));
}

void ClickLabel::keyPressEvent(QKeyEvent* event) {
  if (!IsPressKey(*event)) return QWidget::keyPressEvent(event);
  Press(MouseButton::kLeft);
}

void ClickLabel::keyReleaseEvent(QKeyEvent* event) {
  if (!IsPressKey(*event)) return QWidget::keyReleaseEvent(event);
  LetGo(true);
}

// The menu key is the other button.
void ClickLabel::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  if (event->reason() != QContextMenuEvent::Keyboard) return;
  Press(MouseButton::kRight);
  LetGo(true);
}

// What goes up now goes to another window.
bool ClickLabel::event(QEvent* event) {
  if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::WindowDeactivate) {
    LetGo(false);
  }
  return QWidget::event(event);
}

void ClickLabel::Press(MouseButton button) {
  LetGo(false);
  down_ = button;
  Report(Down, button);
}

// A key that went down elsewhere goes up for nothing.
void ClickLabel::LetGo(bool is_here) {
  if (!down_) return;
  const MouseButton button = *std::exchange(down_, std::nullopt);
  Report(Up, button);
  if (is_here && button == MouseButton::kLeft) Report(Click);
}

}  // namespace tarnlink
