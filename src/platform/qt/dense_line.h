// Lines with many points, drawn straight into an image: one span for each pixel column. QPainter's
// own polylines of width 2 take seconds where this takes milliseconds.
#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRgb>
#include <span>

namespace tarnlink {

// Joins `points` in order, solid, `width` pixels wide, inside `clip`. `image` is in RGB32 format.
void DrawDenseLine(QImage& image, const QRect& clip, std::span<const QPoint> points, QRgb colour,
                   int width);

}  // namespace tarnlink
