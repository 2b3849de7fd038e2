// Colours that a widget needs beside those of its control.
#pragma once

#include <QColor>
#include <QLineEdit>
#include <QPainter>
#include <QRect>
#include <QWidget>

namespace tarnlink {

// Black or white, whichever reads better on `background`.
QColor ReadableOn(const QColor& background);

// Grey, as far as letters of it can be read on `background`.
QColor FadedOn(const QColor& background);

// `colour` as letters on `background`: the same hue, darker or lighter as far as they would be hard
// to read.
QColor ReadableShade(const QColor& colour, const QColor& background);

// Gives what stands in an empty field grey letters that can be read.
void SetPlaceholder(QLineEdit* edit, const QString& text);

// A frame inside `place` that stands out on any background: this is where the keyboard is. The thin
// one leaves letters that reach to the edge readable.
enum class FocusFrame { kThick, kThin };
void DrawFocusFrame(QPainter& painter, const QRect& place, FocusFrame frame = FocusFrame::kThick);

// Gives the widget a background of its own, and a text colour.
void SetColours(QWidget* widget, const QColor& background, const QColor& text);

}  // namespace tarnlink
