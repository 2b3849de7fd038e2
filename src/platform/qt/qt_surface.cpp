#include "platform/qt/qt_surface.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPagedPaintDevice>
#include <QPaintDevice>
#include <QPen>
#include <QPolygonF>
#include <algorithm>

#include "platform/qt/dense_line.h"
#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

constexpr double kTwipsPerInch = 1440.0;

// Far outside any picture, and far inside what integers can hold.
constexpr double kFarthestPixel = 1 << 24;

Qt::PenStyle ToPenStyle(DrawStyle style) {
  switch (style) {
    case DrawStyle::kDash:
      return Qt::DashLine;
    case DrawStyle::kDot:
      return Qt::DotLine;
    case DrawStyle::kDashDot:
      return Qt::DashDotLine;
    case DrawStyle::kDashDotDot:
      return Qt::DashDotDotLine;
    case DrawStyle::kSolid:
      break;
  }
  return Qt::SolidLine;
}

// A coordinate that is no number falls outside too.
int ToPixel(float units, double units_per_pixel) {
  const double pixel = static_cast<double>(units) / units_per_pixel;
  if (!(pixel > -kFarthestPixel)) return static_cast<int>(-kFarthestPixel);
  // Shifted above 0, where cutting is rounding down.
  return static_cast<int>(std::min(pixel, kFarthestPixel) + kFarthestPixel) -
         static_cast<int>(kFarthestPixel);
}

}  // namespace

QtSurface::QtSurface(QImage& image, double dpi)
    : device_(image),
      image_(&image),
      painter_(&image),
      twips_per_pixel_x_(kTwipsPerInch / dpi),
      twips_per_pixel_y_(kTwipsPerInch / dpi) {
  SetFont({});
  SetClip({}, {});
}

QtSurface::QtSurface(QPaintDevice& paper)
    : device_(paper),
      image_(nullptr),
      painter_(&paper),
      twips_per_pixel_x_(kTwipsPerInch / paper.logicalDpiX()),
      twips_per_pixel_y_(kTwipsPerInch / paper.logicalDpiY()) {
  SetFont({});
  SetClip({}, {});
}

float QtSurface::ScaleWidth() const {
  return static_cast<float>(device_.width() * twips_per_pixel_x_);
}

float QtSurface::ScaleHeight() const {
  return static_cast<float>(device_.height() * twips_per_pixel_y_);
}

void QtSurface::NewPage() {
  auto* pages = dynamic_cast<QPagedPaintDevice*>(&device_);
  if (pages != nullptr && Ready()) pages->newPage();
}

void QtSurface::Cls(Colour colour) {
  if (!Ready()) return;
  painter_.setClipping(false);
  painter_.fillRect(WholeArea(), ToQColor(colour));
  painter_.setClipping(true);
}

void QtSurface::SetPen(Colour colour, DrawStyle style, int width) {
  if (!Ready()) return;
  QPen pen(ToQColor(colour), std::max(width, 1), ToPenStyle(style));
  pen.setCapStyle(style == DrawStyle::kSolid ? Qt::SquareCap : Qt::FlatCap);
  // Mitred corners would shoot out of a noisy line.
  pen.setJoinStyle(Qt::BevelJoin);
  painter_.setPen(pen);
}

void QtSurface::Line(Point from, Point to) {
  if (!Ready()) return;
  if (image_ != nullptr) {
    painter_.drawLine(PixelOf(from), PixelOf(to));
  } else {
    painter_.drawLine(PlaceOf(from), PlaceOf(to));
  }
}

void QtSurface::Polyline(std::span<const Point> points) {
  if (!Ready() || points.size() < 2) return;
  if (image_ == nullptr) {
    QPolygonF places;
    places.reserve(static_cast<qsizetype>(points.size()));
    for (const Point point : points) places.append(PlaceOf(point));
    painter_.drawPolyline(places);
    return;
  }
  pixels_.clear();
  for (const Point point : points) pixels_.push_back(PixelOf(point));
  const QPen& pen = painter_.pen();
  if (pen.style() == Qt::SolidLine && image_->format() == QImage::Format_RGB32) {
    DrawDenseLine(*image_, clip_, pixels_, pen.color().rgb(), pen.width());
  } else {
    painter_.drawPolyline(pixels_.data(), static_cast<int>(pixels_.size()));
  }
}

void QtSurface::FilledBox(Point corner, Point opposite) {
  if (!Ready()) return;
  // The outline's pen lies on the edge, half of it outside.
  const int width = painter_.pen().width();
  const QRect box = PixelBox(corner, opposite)
                        .adjusted(-(width / 2), -(width / 2), (width - 1) / 2, (width - 1) / 2);
  painter_.fillRect(box, painter_.pen().color());
}

void QtSurface::SetClip(Point corner, Point opposite) {
  if (!Ready()) return;
  // Always a clip, were it the whole area: without one dashed lines take twice the time.
  clip_ = corner == opposite ? WholeArea() : PixelBox(corner, opposite) & WholeArea();
  painter_.setClipRect(clip_);
}

void QtSurface::SetFont(const Font& font) {
  font_ = image_ != nullptr ? ToScreenFont(font, kTwipsPerInch / twips_per_pixel_x_)
                            : ToPaperFont(font);
  if (Ready()) painter_.setFont(font_);
}

float QtSurface::TextWidth(std::string_view text) const {
  const QFontMetricsF metrics(font_, &device_);
  return static_cast<float>(metrics.horizontalAdvance(ToQt(text)) * twips_per_pixel_x_);
}

float QtSurface::TextHeight(std::string_view) const {
  const QFontMetricsF metrics(font_, &device_);
  return static_cast<float>(metrics.height() * twips_per_pixel_y_);
}

void QtSurface::Text(Point at, std::string_view text, Colour colour) {
  if (!Ready()) return;
  const QPen line_pen = painter_.pen();
  painter_.setPen(ToQColor(colour));
  const QPointF corner = PlaceOf(at);
  const double ascent = QFontMetricsF(font_, &device_).ascent();
  painter_.drawText(QPointF(corner.x(), corner.y() + ascent), ToQt(text));
  painter_.setPen(line_pen);
}

QPoint QtSurface::PixelOf(Point point) const {
  return {ToPixel(point.x, twips_per_pixel_x_), ToPixel(point.y, twips_per_pixel_y_)};
}

QPointF QtSurface::PlaceOf(Point point) const {
  return {static_cast<double>(point.x) / twips_per_pixel_x_,
          static_cast<double>(point.y) / twips_per_pixel_y_};
}

QRect QtSurface::PixelBox(Point corner, Point opposite) const {
  const QPoint a = PixelOf(corner);
  const QPoint b = PixelOf(opposite);
  return {QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
          QPoint(std::max(a.x(), b.x()), std::max(a.y(), b.y()))};
}

QRect QtSurface::WholeArea() const { return {0, 0, device_.width(), device_.height()}; }

}  // namespace tarnlink
