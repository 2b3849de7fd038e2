// Fonts between the program and Qt.
#pragma once

#include <QFont>

#include "common/controls.h"

namespace tarnlink {

// A family that this machine does not have becomes the desktop's own. The size is in pixels, so
// that texts keep their size against places on a screen of `dpi`.
QFont ToScreenFont(const Font& font, double dpi = 96.0);

// The same with the size in points.
QFont ToPaperFont(const Font& font);

Font ToFont(const QFont& font);

}  // namespace tarnlink
