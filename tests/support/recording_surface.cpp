#include "support/recording_surface.h"

#include <array>
#include <cstdio>
#include <utility>

#include "common/text.h"

namespace tarnlink {
namespace {

// A page of 297 by 210 mm, in twips.
constexpr float kLongEdge = 16838.0F;
constexpr float kShortEdge = 11906.0F;
constexpr float kPaperTwipsPerPixel = 2.4F;

std::string Number(float value) {
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%.7g", static_cast<double>(value));
  return text.data();
}

std::string Place(Point point) { return Number(point.x) + "," + Number(point.y); }

std::string Hue(Colour colour) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "%06X", static_cast<unsigned>(colour));
  return text.data();
}

std::string StyleName(DrawStyle style) {
  constexpr std::array<const char*, 5> kNames{"solid", "dash", "dot", "dash-dot", "dash-dot-dot"};
  return kNames[static_cast<std::size_t>(style)];
}

}  // namespace

void RecordingSurface::Cls(Colour colour) { Note("cls " + Hue(colour)); }

void RecordingSurface::SetPen(Colour colour, DrawStyle style, int width) {
  Note("pen " + Hue(colour) + " " + StyleName(style) + " " + std::to_string(width));
}

void RecordingSurface::Line(Point from, Point to) { Note("line " + Place(from) + " " + Place(to)); }

void RecordingSurface::Polyline(std::span<const Point> points) {
  if (points.size() < 2) return;
  std::string line = "polyline";
  for (const Point point : points) line += " " + Place(point);
  Note(std::move(line));
}

void RecordingSurface::FilledBox(Point corner, Point opposite) {
  Note("box " + Place(corner) + " " + Place(opposite));
}

void RecordingSurface::SetClip(Point corner, Point opposite) {
  Note(corner == opposite ? "no clip" : "clip " + Place(corner) + " " + Place(opposite));
}

void RecordingSurface::SetFont(const Font& font) {
  font_ = font;
  Note("font " + font.name + " " + Number(font.size) + (font.bold ? " bold" : "") +
       (font.italic ? " italic" : ""));
}

float RecordingSurface::TextWidth(std::string_view text) const {
  return static_cast<float>(CharacterCount(text)) * font_.size * 12.0F;
}

float RecordingSurface::TextHeight(std::string_view) const { return font_.size * 24.0F; }

void RecordingSurface::Text(Point at, std::string_view text, Colour colour) {
  Note("text " + Place(at) + " " + Hue(colour) + " \"" + std::string(text) + "\"");
}

std::string RecordingSurface::Describe() const {
  std::string all;
  for (const std::string& operation : *operations_) all += operation + "\n";
  return all;
}

RecordingSurface::Log RecordingSurface::Only(std::string_view kind) const {
  Log some;
  for (const std::string& operation : *operations_) {
    if (operation.starts_with(kind)) some.push_back(operation);
  }
  return some;
}

std::unique_ptr<RecordingSurface> MakeA4Page(bool landscape,
                                             std::shared_ptr<RecordingSurface::Log> log) {
  auto page = std::make_unique<RecordingSurface>(
      landscape ? kLongEdge : kShortEdge, landscape ? kShortEdge : kLongEdge, std::move(log));
  page->twips_per_pixel = kPaperTwipsPerPixel;
  return page;
}

}  // namespace tarnlink
