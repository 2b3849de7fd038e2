// Colours that a widget needs beside those of its control.
#pragma once

#include <QColor>
#include <QWidget>

namespace tarnlink {

// Black or white, whichever reads better on `background`.
QColor ReadableOn(const QColor& background);

// Gives the widget a background of its own, and a text colour.
void SetColours(QWidget* widget, const QColor& background, const QColor& text);

}  // namespace tarnlink
