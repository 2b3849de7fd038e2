// Colours between the program and Qt.
#pragma once

#include <QColor>

#include "common/controls.h"

namespace tarnlink {

// 0x00BBGGRR as it is; a system colour as the desktop's palette has it now.
QColor ToQColor(Colour colour);

// Without the transparency.
Colour ToColour(const QColor& colour);

}  // namespace tarnlink
