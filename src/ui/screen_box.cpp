#include "ui/screen_box.h"

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/palette.h"
#include "ui/units.h"

namespace tarnlink {

ScreenBox::ScreenBox(const TextBox& control, QWidget* parent)
    : TextPlate(parent), control_(control) {
  setObjectName(ToQt(control.name()));
  setFocusPolicy(Qt::ClickFocus);  // the surface leads Tab through the boxes in reading order
  ShowControl();
}

void ScreenBox::paintEvent(QPaintEvent* event) {
  TextPlate::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  DrawFocusFrame(painter, rect());
}

void ScreenBox::ShowControl() {
  SetText(ToQt(control_.Text.get()));
  SetFaded(control_.IsOld);
  if (control_.TextFont.get() != shown_font_) {
    shown_font_ = control_.TextFont;
    setFont(ToScreenFont(shown_font_));
  }
  if (control_.BackColor.get() != shown_colour_) {
    shown_colour_ = control_.BackColor;
    SetBackground(ToQColor(shown_colour_));
  }
  const QRect place = PlaceOf(control_);
  if (place.height() > height()) raise();  // one that was made larger is not to be covered
  if (place != geometry()) setGeometry(place);
  ShowCommon(this, control_);
}

}  // namespace tarnlink
