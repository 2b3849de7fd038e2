// The mouse's buttons between Qt and the forms.
#pragma once

#include <QMouseEvent>

#include "common/controls.h"

namespace tarnlink {

inline MouseButton ToMouseButton(const QMouseEvent& event) {
  if (event.button() == Qt::LeftButton) return MouseButton::kLeft;
  return event.button() == Qt::RightButton ? MouseButton::kRight : MouseButton::kMiddle;
}

}  // namespace tarnlink
