#include "platform/qt/qt_font.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <algorithm>
#include <cmath>

#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

constexpr double kPointsPerInch = 72.0;

QFont WithoutSize(const Font& font) {
  QFont shown = QApplication::font();
  const QString family = ToQt(font.name);
  if (font.name != Font{}.name && QFontDatabase::hasFamily(family)) shown.setFamily(family);
  shown.setBold(font.bold);
  shown.setItalic(font.italic);
  return shown;
}

}  // namespace

QFont ToScreenFont(const Font& font, double dpi) {
  QFont shown = WithoutSize(font);
  if (font.size > 0) {
    const double pixels = static_cast<double>(font.size) * dpi / kPointsPerInch;
    shown.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
  }
  return shown;
}

QFont ToPaperFont(const Font& font) {
  QFont shown = WithoutSize(font);
  if (font.size > 0) shown.setPointSizeF(static_cast<double>(font.size));
  return shown;
}

Font ToFont(const QFont& font) {
  // A font whose size was set in pixels knows no points itself.
  const double points = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
  return {FromQt(font.family()), static_cast<float>(points), font.bold(), font.italic()};
}

}  // namespace tarnlink
