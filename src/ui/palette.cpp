#include "ui/palette.h"

#include <QPalette>
#include <algorithm>
#include <cmath>

namespace tarnlink {

namespace {

// How bright the eye sees a colour, 0 to 1, and how far two of them stand apart, 1 to 21.
double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
  const auto [low, high] = std::minmax({Luminance(a), Luminance(b)});
  constexpr double kGlare = 0.05;
  return (high + kGlare) / (low + kGlare);
}

}  // namespace

QColor ReadableOn(const QColor& background) {
  // Weights of the eye's response to red, green and blue, in thousandths.
  const int brightness =
      (299 * background.red() + 587 * background.green() + 114 * background.blue()) / 1000;
  constexpr int kMiddle = 128;
  return brightness < kMiddle ? QColor(Qt::white) : QColor(Qt::black);
}

QColor ReadableShade(const QColor& colour, const QColor& background) {
  constexpr double kReadable = 3.0;
  constexpr int kSteps = 20;
  const QColor end = ReadableOn(background);
  for (int step = 0; step < kSteps; ++step) {
    const double share = static_cast<double>(step) / kSteps;
    const auto mix = [&](int from, int to) {
      return static_cast<int>(std::lround(from + share * (to - from)));
    };
    const QColor shade(mix(colour.red(), end.red()), mix(colour.green(), end.green()),
                       mix(colour.blue(), end.blue()));
    if (Contrast(shade, background) >= kReadable) return shade;
  }
  return end;
}

void DrawFocusFrame(QPainter& painter, const QRect& place, FocusFrame frame) {
  // Blue outside of white, or blue and white by turns: one of the two shows on every colour.
  constexpr QColor kOuter(0, 60, 200);
  constexpr QColor kInner(255, 255, 255);
  painter.setBrush(Qt::NoBrush);
  if (frame == FocusFrame::kThin) {
    painter.setPen(kInner);
    painter.drawRect(place.adjusted(0, 0, -1, -1));
    painter.setPen(QPen(kOuter, 1, Qt::DashLine));
    painter.drawRect(place.adjusted(0, 0, -1, -1));
    return;
  }
  painter.setPen(kOuter);
  painter.drawRect(place.adjusted(0, 0, -1, -1));
  painter.drawRect(place.adjusted(1, 1, -2, -2));
  painter.setPen(kInner);
  painter.drawRect(place.adjusted(2, 2, -3, -3));
}

void SetColours(QWidget* widget, const QColor& background, const QColor& text) {
  QPalette colours = widget->palette();
  colours.setColor(QPalette::Window, background);
  colours.setColor(QPalette::WindowText, text);
  widget->setPalette(colours);
}

}  // namespace tarnlink
