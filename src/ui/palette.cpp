#include "ui/palette.h"

#include <QPalette>

namespace tarnlink {

QColor ReadableOn(const QColor& background) {
  // Weights of the eye's response to red, green and blue, in thousandths.
  const int brightness =
      (299 * background.red() + 587 * background.green() + 114 * background.blue()) / 1000;
  constexpr int kMiddle = 128;
  return brightness < kMiddle ? QColor(Qt::white) : QColor(Qt::black);
}

void SetColours(QWidget* widget, const QColor& background, const QColor& text) {
  QPalette colours = widget->palette();
  colours.setColor(QPalette::Window, background);
  colours.setColor(QPalette::WindowText, text);
  widget->setPalette(colours);
}

}  // namespace tarnlink
