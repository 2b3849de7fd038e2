#include "ui/palette.h"

#include <QPalette>

#include "common/readable_shade.h"
#include "platform/qt/qt_colour.h"

namespace tarnlink {

QColor ReadableOn(const QColor& background) { return ToQColor(ReadableOn(ToColour(background))); }

QColor FadedOn(const QColor& background) {
  constexpr Colour kGrey = 0x909090;
  return ToQColor(ReadableShade(kGrey, ToColour(background)));
}

QColor ReadableShade(const QColor& colour, const QColor& background) {
  return ToQColor(ReadableShade(ToColour(colour), ToColour(background)));
}

void SetPlaceholder(QLineEdit* edit, const QString& text) {
  edit->setPlaceholderText(text);
  QPalette colours = edit->palette();
  colours.setColor(QPalette::PlaceholderText, FadedOn(colours.color(QPalette::Base)));
  edit->setPalette(colours);
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
