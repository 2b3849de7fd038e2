// The drawing operations of graph and page, on a screen or on paper. Real class: `QtSurface`; fake:
// `RecordingSurface`. Coordinates are in the surface's scale, x to the right and y down.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "common/controls.h"

namespace tarnlink {

enum class DrawStyle { kSolid, kDash, kDot, kDashDot, kDashDotDot };

struct Point {
  float x = 0.0F;
  float y = 0.0F;

  bool operator==(const Point&) const = default;
};

class DrawingSurface {
 public:
  virtual ~DrawingSurface() = default;

  virtual float ScaleWidth() const = 0;
  virtual float ScaleHeight() const = 0;
  // Units of 1440 to the inch in one device pixel: 15 on a common screen, 2.4 on paper at 600 dpi.
  virtual float TwipsPerPixelX() const = 0;

  // Ends the page and begins an empty one; nothing on a surface that is one picture.
  virtual void NewPage() = 0;

  // Fills the whole surface with one colour.
  virtual void Cls(Colour colour) = 0;
  // The pen for the operations that follow; `width` in device pixels, at least 1.
  virtual void SetPen(Colour colour, DrawStyle style, int width) = 0;
  virtual void Line(Point from, Point to) = 0;
  // All points joined in order; fewer than two draw nothing.
  virtual void Polyline(std::span<const Point> points) = 0;
  // A box outlined and filled in the pen's colour.
  virtual void FilledBox(Point corner, Point opposite) = 0;
  // What follows is cut at this box; equal corners lift the cut.
  virtual void SetClip(Point corner, Point opposite) = 0;

  virtual void SetFont(const Font& font) = 0;
  virtual float TextWidth(std::string_view text) const = 0;
  virtual float TextHeight(std::string_view text) const = 0;
  // `at` is the upper left corner of the text.
  virtual void Text(Point at, std::string_view text, Colour colour) = 0;
};

}  // namespace tarnlink
