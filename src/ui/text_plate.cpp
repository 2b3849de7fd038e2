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

void TextPlate::SetFaded(bool is_faded) {
  if (is_faded == is_faded_) return;
  is_faded_ = is_faded;
  PaintPace::Paint(this);
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
  painter.setPen(is_faded_ ? FadedOn(background) : ReadableOn(background));
  const QFontMetrics metrics = painter.fontMetrics();
  const int baseline = (height() + metrics.ascent() - metrics.descent()) / 2;
  const QString drawn = text_.left(kLongestDrawn);
  const int room = width() - 2 * kIndent;
  // A number that is cut off must not look like another number. Measuring costs less than eliding.
  const bool fits = metrics.horizontalAdvance(drawn) <= room;
  painter.drawText(kIndent, baseline,
                   fits ? drawn : metrics.elidedText(drawn, Qt::ElideRight, room));
}

}  // namespace tarnlink
