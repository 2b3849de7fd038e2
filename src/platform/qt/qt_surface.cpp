#include "platform/qt/qt_surface.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPagedPaintDevice>
#include <QPaintDevice>
#include <QPen>
#include <QPolygonF>
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/thin_line.h"

namespace tarnlink {
namespace {

constexpr double kTwipsPerInch = 1440.0;

// Far outside any picture, and far inside what integers can hold.
constexpr double kFarthestPixel = 1 << 24;

}  // namespace

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

namespace {

// Of dashed lines, in widths of the pen.
constexpr int kGap = 2;

// On paper a line is thinned out in columns so wide: a part of the pen, or of a pixel.
constexpr double kUnseenPart = 0.25;
constexpr double kLeastColumn = 0.25;

// Both corners included, whichever way they lie.
QRect BoxOf(const QPoint& a, const QPoint& b) {
  return {QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
          QPoint(std::max(a.x(), b.x()), std::max(a.y(), b.y()))};
}

// The pixel of a coordinate, in few steps. One that is no number falls outside too.
int ToPixel(float units, double pixels_per_unit) {
  // Added to this, a number shows its whole part and 16 binary digits of its fraction at the end of
  // its bits. Rounded there, an exact border of two pixels belongs to the second one, whatever the
  // product lost.
  constexpr double kShift = 1.5 * (1ULL << 36);
  constexpr int kFraction = 16;
  const double pixel = static_cast<double>(units) * pixels_per_unit;
  const double below = pixel < kFarthestPixel ? pixel : kFarthestPixel;
  const double inside = below > -kFarthestPixel ? below : -kFarthestPixel;
  const std::int64_t steps =
      std::bit_cast<std::int64_t>(inside + kShift) - std::bit_cast<std::int64_t>(kShift);
  return static_cast<int>(steps >> kFraction);
}

}  // namespace

inline QPoint QtSurface::PixelOf(Point point) const {
  return {ToPixel(point.x, pixels_per_unit_) - origin_, ToPixel(point.y, pixels_per_unit_)};
}

QtSurface::QtSurface(QImage& image, double dpi)
    : device_(image),
      image_(&image),
      painter_(&image),
      twips_per_pixel_x_(kTwipsPerInch / dpi),
      twips_per_pixel_y_(kTwipsPerInch / dpi),
      pixels_per_unit_(dpi / kTwipsPerInch) {
  if (image.format() == QImage::Format_RGB32) {
    lines_.emplace(image);
    bits_ = reinterpret_cast<QRgb*>(image.bits());
    stride_ = image.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
  }
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

QtSurface::~QtSurface() { PaintLines(); }

void QtSurface::PaintLines() {
  is_repeated_ = false;
  if (IsFast()) lines_->Paint();
}

float QtSurface::ScaleWidth() const {
  return static_cast<float>(device_.width() * twips_per_pixel_x_);
}

float QtSurface::ScaleHeight() const {
  return static_cast<float>(device_.height() * twips_per_pixel_y_);
}

void QtSurface::NewPage() {
  ++pages_;
  auto* pages = dynamic_cast<QPagedPaintDevice*>(&device_);
  if (pages != nullptr && Ready()) pages->newPage();
}

void QtSurface::Cls(Colour colour) {
  if (!Ready()) return;
  PaintLines();
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
  pen_colour_ = pen.color().rgb();
  pen_width_ = pen.width();
  is_repeated_ = false;
  style_ = style;
}

void QtSurface::Line(Point from, Point to) {
  if (!IsFast()) {
    if (!Ready()) return;
    if (image_ == nullptr) return DrawOnPaper(PlaceOf(from), PlaceOf(to));
    return painter_.drawLine(PixelOf(from), PixelOf(to));
  }
  const std::array<QPoint, 2> ends{PixelOf(from), PixelOf(to)};
  // Many samples in one place are one stroke.
  if (is_repeated_ && ends == last_line_) return;
  last_line_ = ends;
  const QPoint length = ends[1] - ends[0];
  // In a gap a stroke as short as that would be lost.
  const int gap = kGap * pen_width_;
  const bool is_short = std::abs(length.x()) < gap && std::abs(length.y()) < gap;
  const bool is_solid = is_short || style_ == DrawStyle::kSolid;
  if (is_solid && (length.x() == 0 || length.y() == 0)) {
    Fill(std::min(ends[0].x(), ends[1].x()), std::min(ends[0].y(), ends[1].y()),
         std::max(ends[0].x(), ends[1].x()), std::max(ends[0].y(), ends[1].y()));
  } else if (is_short && std::abs(length.x()) == 1 && std::abs(length.y()) == 1) {
    for (const QPoint end : ends) Fill(end.x(), end.y(), end.x(), end.y());
  } else {
    Join(ends, is_solid);
  }
  is_repeated_ = true;
}

void QtSurface::Polyline(std::span<const Point> points) {
  if (!Ready() || points.size() < 2) return;
  if (image_ == nullptr) {
    QPolygonF places;
    places.reserve(static_cast<qsizetype>(points.size()));
    for (const Point point : points) places.append(PlaceOf(point));
    ThinLine(places, std::max(pen_width_ * kUnseenPart, kLeastColumn));
    return DrawOnPaper(places);
  }
  pixels_.resize(points.size());
  std::transform(points.begin(), points.end(), pixels_.begin(),
                 [scale = pixels_per_unit_, origin = origin_](const Point& point) {
                   return QPoint(ToPixel(point.x, scale) - origin, ToPixel(point.y, scale));
                 });
  if (IsFast()) {
    Join(pixels_, false);
  } else {
    painter_.drawPolyline(pixels_.data(), static_cast<int>(pixels_.size()));
  }
}

// In a gap a stroke as short as that would be lost.
void QtSurface::DrawOnPaper(QPointF from, QPointF to) {
  ++strokes_;
  const QPen pen = painter_.pen();
  const bool is_short = QLineF(from, to).length() < kGap * pen_width_;
  if (is_short && style_ != DrawStyle::kSolid) {
    painter_.setPen(QPen(pen.color(), pen.widthF(), Qt::SolidLine, Qt::SquareCap));
  }
  painter_.drawLine(from, to);
  painter_.setPen(pen);
}

// A long line at a time would take its own length squared: the painter looks for all places where
// it meets itself. Pieces of a solid one end in each other.
void QtSurface::DrawOnPaper(const QPolygonF& places) {
  strokes_ += places.size();
  constexpr qsizetype kPiece = 8;
  if (style_ != DrawStyle::kSolid) return painter_.drawPolyline(places);
  for (qsizetype i = 0; i + 1 < places.size(); i += kPiece) {
    const auto count = std::min(kPiece + 1, places.size() - i);
    painter_.drawPolyline(places.constData() + i, static_cast<int>(count));
  }
}

void QtSurface::Join(std::span<const QPoint> pixels, bool is_solid) {
  is_repeated_ = false;
  lines_->Add(pixels, clip_,
              {pen_colour_, pen_width_, is_solid ? DrawStyle::kSolid : style_, dash_origin_});
  if (!gathers_) lines_->Paint();
}

void QtSurface::FilledBox(Point corner, Point opposite) {
  if (!Ready()) return;
  const QRect box = PixelBox(corner, opposite);
  if (IsFast()) return Fill(box.left(), box.top(), box.right(), box.bottom());
  painter_.fillRect(box.adjusted(-(pen_width_ / 2), -(pen_width_ / 2), (pen_width_ - 1) / 2,
                                 (pen_width_ - 1) / 2),
                    painter_.pen().color());
}

// With the pen's outline. Four numbers: a box that has just been put together is read slowly.
void QtSurface::Fill(int left, int top, int right, int bottom) {
  PaintLines();
  const int before = pen_width_ / 2;
  const int behind = (pen_width_ - 1) / 2;
  left = std::max(left - before, clip_.left());
  top = std::max(top - before, clip_.top());
  right = std::min(right + behind, clip_.right());
  bottom = std::min(bottom + behind, clip_.bottom());
  if (left > right || top > bottom) return;
  constexpr int kLarge = 2000;  // pixels from which on the library's own way is the faster one
  if ((right - left + 1) * (bottom - top + 1) > kLarge) {
    const QRect area(QPoint(left, top), QPoint(right, bottom));
    return painter_.fillRect(area, QColor::fromRgb(pen_colour_));
  }
  QRgb* row = bits_ + top * stride_;
  for (int y = top; y <= bottom; ++y, row += stride_) {
    for (int x = left; x <= right; ++x) row[x] = pen_colour_;
  }
}

void QtSurface::SetClip(Point corner, Point opposite) {
  if (!Ready()) return;
  // Always a clip, were it the whole area: without one dashed lines take twice the time.
  clip_ = corner == opposite ? WholeArea() : PixelBox(corner, opposite) & WholeArea();
  painter_.setClipRect(clip_);
  is_repeated_ = false;
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
  PaintLines();
  const QPen line_pen = painter_.pen();
  painter_.setPen(ToQColor(colour));
  const QPointF corner = PlaceOf(at);
  const double ascent = QFontMetricsF(font_, &device_).ascent();
  painter_.drawText(QPointF(corner.x(), corner.y() + ascent), ToQt(text));
  painter_.setPen(line_pen);
}

QPointF QtSurface::PlaceOf(Point point) const {
  return {static_cast<double>(point.x) / twips_per_pixel_x_,
          static_cast<double>(point.y) / twips_per_pixel_y_};
}

QRect QtSurface::PixelBox(Point corner, Point opposite) const {
  if (image_ != nullptr) return BoxOf(PixelOf(corner), PixelOf(opposite));
  return BoxOf(PlaceOf(corner).toPoint(), PlaceOf(opposite).toPoint());
}

QRect QtSurface::WholeArea() const { return {0, 0, device_.width(), device_.height()}; }

}  // namespace tarnlink
