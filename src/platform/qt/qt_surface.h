// A screen picture or a page, drawn with QPainter. The scale is units of 1440 to the inch.
#pragma once

#include <QFont>
#include <QPainter>
#include <QRect>
#include <QRgb>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/drawing_surface.h"
#include "platform/qt/dense_line.h"

class QImage;
class QPaintDevice;

namespace tarnlink {

Qt::PenStyle ToPenStyle(DrawStyle style);

class QtSurface final : public DrawingSurface {
 public:
  static constexpr double kScreenDpi = 96.0;

  // A picture for the screen; `dpi` is 96 times the screen's device pixel ratio. An image in RGB32
  // format is the fast one. It must outlive this, as must the paper.
  explicit QtSurface(QImage& image, double dpi = kScreenDpi);
  // A page of a printer or the like, at its own resolution.
  explicit QtSurface(QPaintDevice& paper);
  ~QtSurface() override;

  // False when nothing can be drawn, such as on a printer that is not there; all operations are
  // without effect then.
  bool Ready() const { return painter_.isActive() && !(is_to_stop_ && is_to_stop_()); }
  // From the moment that this says so nothing is drawn any more. Asked often, in the thread that
  // draws.
  void StopWhen(std::function<bool()> is_to_stop) { is_to_stop_ = std::move(is_to_stop); }

  // Of a picture: this column of the scale stands at its left edge. What lies in it is the same
  // pixel by pixel, however far it has been moved.
  void SetOrigin(int column) { origin_ = column; }
  // Of a picture in RGB32: where its left edge stands in the pattern of dashed lines, in pixels.
  void SetDashOrigin(int column) {
    dash_origin_ = column;
    is_repeated_ = false;
  }
  // From here on lines need not appear before `PaintLines`, the next operation of another kind, or
  // the end of this. Many lines that cover one another are faster so.
  void GatherLines() { gathers_ = true; }
  void PaintLines();

  // Of paper: the lines and the points of polylines so far, which is what drawing it takes.
  std::int64_t Strokes() const { return strokes_; }
  int Pages() const { return pages_; }

  float ScaleWidth() const override;
  float ScaleHeight() const override;
  float TwipsPerPixelX() const override { return static_cast<float>(twips_per_pixel_x_); }
  void NewPage() override;
  void Cls(Colour colour) override;
  void SetPen(Colour colour, DrawStyle style, int width) override;
  void Line(Point from, Point to) override;
  void Polyline(std::span<const Point> points) override;
  void FilledBox(Point corner, Point opposite) override;
  void SetClip(Point corner, Point opposite) override;
  void SetFont(const Font& font) override;
  float TextWidth(std::string_view text) const override;
  float TextHeight(std::string_view text) const override;
  void Text(Point at, std::string_view text, Colour colour) override;

 private:
  bool IsFast() const { return lines_.has_value(); }
  void Fill(int left, int top, int right, int bottom);
  void Join(std::span<const QPoint> pixels, bool is_solid);
  QPoint PixelOf(Point point) const;
  void DrawOnPaper(QPointF from, QPointF to);
  void DrawOnPaper(const QPolygonF& places);
  QPointF PlaceOf(Point point) const;
  QRect PixelBox(Point corner, Point opposite) const;
  QRect WholeArea() const;

  QPaintDevice& device_;
  QImage* image_;  // the device, unless that is paper
  QPainter painter_;
  double twips_per_pixel_x_;
  double twips_per_pixel_y_;
  double pixels_per_unit_ = 0;  // of a picture, in both directions
  QFont font_;
  QRect clip_;
  QRgb pen_colour_ = 0;
  int pen_width_ = 1;
  DrawStyle style_ = DrawStyle::kSolid;
  std::function<bool()> is_to_stop_;
  std::int64_t strokes_ = 0;
  int pages_ = 1;
  int origin_ = 0;
  int dash_origin_ = 0;
  std::optional<DenseLines> lines_;  // on an image in RGB32
  QRgb* bits_ = nullptr;             // that image's first pixel, and pixels from row to row
  qsizetype stride_ = 0;
  bool gathers_ = false;
  std::array<QPoint, 2> last_line_;
  bool is_repeated_ = false;    // nothing has happened since that one
  std::vector<QPoint> pixels_;  // kept between calls, so that a redraw does not allocate
};

}  // namespace tarnlink
