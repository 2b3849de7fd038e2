// A surface that draws nothing and writes down every operation.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/drawing_surface.h"

namespace tarnlink {

class RecordingSurface final : public DrawingSurface {
 public:
  using Log = std::vector<std::string>;

  // The log may be shared with somebody who reads it after the surface is gone.
  RecordingSurface(float width, float height, std::shared_ptr<Log> log = std::make_shared<Log>())
      : width_(width), height_(height), operations_(std::move(log)) {}

  float ScaleWidth() const override { return width_; }
  float ScaleHeight() const override { return height_; }
  float TwipsPerPixelX() const override { return twips_per_pixel; }
  void NewPage() override { Note("page"); }
  void Cls(Colour colour) override;
  void SetPen(Colour colour, DrawStyle style, int width) override;
  void Line(Point from, Point to) override;
  void Polyline(std::span<const Point> points) override;
  void FilledBox(Point corner, Point opposite) override;
  void SetClip(Point corner, Point opposite) override;
  void SetFont(const Font& font) override;
  // Every character is 12 units wide and 24 high for each point of the font's size.
  float TextWidth(std::string_view text) const override;
  float TextHeight(std::string_view text) const override;
  void Text(Point at, std::string_view text, Colour colour) override;

  // One line for each operation:
  //   cls FFFFFF | pen 0000FF dash 1 | line 0,0 10,10.5 | polyline 0,0 1,1 2,0 | box 1,2 3,4 |
  //   clip 0,0 9,9 | font Verdana 8 bold | text 3,4 000000 "abc" | page
  const Log& operations() const { return *operations_; }
  std::string Describe() const;
  // The operations that begin with `kind`, such as "text".
  Log Only(std::string_view kind) const;
  void Forget() { operations_->clear(); }

  float twips_per_pixel = 15.0F;

 private:
  void Note(std::string operation) { operations_->push_back(std::move(operation)); }

  float width_;
  float height_;
  Font font_;
  std::shared_ptr<Log> operations_;
};

// An empty sheet of A4 in a printer of 600 dpi that prints up to the edges.
std::unique_ptr<RecordingSurface> MakeA4Page(
    bool landscape,
    std::shared_ptr<RecordingSurface::Log> log = std::make_shared<RecordingSurface::Log>());

}  // namespace tarnlink
