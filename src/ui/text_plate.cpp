#include "ui/text_plate.h"

#include <QFontMetrics>
#include <QPainter>

#include "ui/paint_pace.h"
#include "ui/palette.h"

namespace tarnlink {

namespace {

constexpr int kIndent = 5;  // pixels from the frame to the text
constexpr int kAir = 3;     // pixels above and below the text

// More than any display has room for; the time that drawing takes grows with the text.
constexpr qsizetype kLongestDrawn = 500;  // characters

}  // namespace

TextPlate::TextPlate(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_OpaquePaintEvent); }

void TextPlate::SetText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  setAccessibleName(text_);
  PaintPace::Paint(this);
}

void TextPlate::SetBackground(const QColor& background) {
  if (background == background_) return;
  background_ = background;
  update();
}

QSize TextPlate::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  return {metrics.horizontalAdvance(text_.left(kLongestDrawn)) + 2 * kIndent,
          metrics.height() + 2 * kAir};
}

void TextPlate::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor background = background_.isValid() ? background_ : palette().color(QPalette::Window);
  painter.fillRect(rect(), background);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(0, 0, width() - 1, height() - 1);
  if (text_.isEmpty()) return;
  painter.setPen(ReadableOn(background));
  const QFontMetrics metrics = painter.fontMetrics();
  const int baseline = (height() + metrics.ascent() - metrics.descent()) / 2;
  // A number that is cut off must not look like another number.
  const QString fitting =
      metrics.elidedText(text_.left(kLongestDrawn), Qt::ElideRight, width() - 2 * kIndent);
  painter.drawText(kIndent, baseline, fitting);
}

}  // namespace tarnlink
