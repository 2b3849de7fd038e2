#include "ui/screen_check.h"

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/palette.h"
#include "ui/units.h"

namespace tarnlink {

ScreenCheck::ScreenCheck(CheckBox& control, QWidget* parent)
    : QCheckBox(parent), control_(control) {
  setObjectName(ToQt(control.name()));
  setFocusPolicy(Qt::ClickFocus);  // the surface leads Tab through the screen in reading order
  connect(this, &QCheckBox::clicked, [&control](bool checked) { control.Value = checked; });
  ShowControl();
}

void ScreenCheck::ShowControl() {
  setChecked(control_.Value);
  setGeometry(PlaceOf(control_));
  ShowCommon(this, control_);
}

void ScreenCheck::paintEvent(QPaintEvent* event) {
  QCheckBox::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(this);
  DrawFocusFrame(painter, rect());
}

}  // namespace tarnlink
