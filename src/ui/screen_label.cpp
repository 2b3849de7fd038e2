#include "ui/screen_label.h"

#include <algorithm>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/palette.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

// What a display has room for, and a font engine can draw, whatever a file says.
constexpr qsizetype kLongestCaption = 500;  // characters
constexpr float kLargestLetters = 300.0F;   // points

QFont FontOf(const Label& control) {
  Font font = control.TextFont;
  font.size = std::min(font.size, kLargestLetters);
  return ToScreenFont(font);
}

}  // namespace

ScreenLabel::ScreenLabel(const Label& control, QWidget* parent)
    : QLabel(parent), control_(control) {
  setObjectName(ToQt(control.name()));
  setTextFormat(Qt::PlainText);
  setAutoFillBackground(true);
  setFocusPolicy(Qt::ClickFocus);  // the surface leads Tab through the screen in reading order
  ShowControl();
}

void ScreenLabel::ShowControl() {
  setText(ToQt(control_.Caption.get()).left(kLongestCaption));
  setFont(FontOf(control_));
  SetColours(this, ToQColor(control_.BackColor), ToQColor(control_.ForeColor));
  adjustSize();
  move(ToPixels(control_.Left), ToPixels(control_.Top));
  ShowCommon(this, control_);
}

void ScreenLabel::paintEvent(QPaintEvent* event) {
  QLabel::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  DrawFocusFrame(painter, rect(), FocusFrame::kThin);
}

}  // namespace tarnlink
