#include "graph/page_captions.h"

#include <algorithm>
#include <array>

#include "common/readable_shade.h"
#include "graph/graph_captions.h"

namespace tarnlink {

namespace {

constexpr std::size_t kParts = 4;  // of a row: name, colon, value, unit

// What stands before each of them in the widest row.
constexpr std::array<const char*, kParts> kBefore = {"", " Temperature ",
                                                     " Temperature : ", " Temperature : 7000 "};

enum Band { kUpper, kLanes, kLower, kBands };

Band BandOf(int unit) {
  if (unit == kOnOff) return kLanes;
  return IsUpperBand(unit) ? kUpper : kLower;
}

// Where the next row of each band stands, below the panel's top.
class RowTops {
 public:
  // So many rows of each band, with letters of this height.
  RowTops(const std::array<int, kBands>& rows, float height, float letter) {
    constexpr float kMargin = 50;
    constexpr double kSpacing = 1.2;  // rows of lanes touch
    const auto at = [height](double share) { return static_cast<float>(share * height); };
    const auto spaced = static_cast<float>(kSpacing * letter);
    steps_ = {spaced, letter, spaced};
    tops_ = {kMargin, at(kUpperBand), at(kUpperBand + kLaneBand) + kMargin};
    for (const Band band : {kUpper, kLanes, kLower}) {
      if (rows.at(band) == 0) continue;
      tops_.at(band) = std::max(tops_.at(band), end_);
      end_ = tops_.at(band) + static_cast<float>(rows.at(band)) * steps_.at(band);
    }
  }

  float End() const { return end_; }  // of the last row
  float Next(Band band) {
    const float here = tops_.at(band);
    tops_.at(band) += steps_.at(band);
    return here;
  }

 private:
  std::array<float, kBands> steps_{};
  std::array<float, kBands> tops_{};
  float end_ = 0;
};

struct Name {
  Point place;
  std::string text;
  Colour colour;
};

// With smaller letters where it would cover the colon behind it.
void DrawName(DrawingSurface& output, const Font& font, const Name& name, float room) {
  constexpr float kSmallest = 3;
  Font smaller = font;
  while (output.TextWidth(name.text) > room && smaller.size > kSmallest) {
    smaller.size -= 0.5F;
    output.SetFont(smaller);
  }
  output.Text(name.place, name.text, name.colour);
  if (smaller.size != font.size) output.SetFont(font);
}

}  // namespace

void DrawPageCaptions(DrawingSurface& output, const PageContent& content, Point corner,
                      float height, const std::string& decimal_separator) {
  std::array<int, kBands> rows{};
  for (const PageLine& each : content.lines) {
    if (each.line.ShowCaption) ++rows.at(BandOf(each.line.Unit));
  }
  std::array<float, kParts> lefts{};
  for (std::size_t i = 0; i < kParts; ++i) lefts.at(i) = corner.x + output.TextWidth(kBefore.at(i));
  Font font = kPageFont;
  RowTops tops(rows, height, output.TextHeight("S"));
  constexpr float kSmallest = 3;
  while (tops.End() > std::max(height, 0.0F) && font.size > kSmallest) {
    font.size -= 0.5F;
    output.SetFont(font);
    tops = RowTops(rows, height, output.TextHeight("S"));
  }
  for (const PageLine& each : content.lines) {
    if (!each.line.ShowCaption) continue;
    const float top = corner.y + tops.Next(BandOf(each.line.Unit));
    const std::array<std::string, kParts> texts = {each.line.Alias, ":",
                                                   CaptionValue(each.value, decimal_separator),
                                                   UnitText(each.line.Unit)};
    const Colour colour = ReadableShade(each.line.LineColor, kWhite);
    DrawName(output, font, {{lefts[0], top}, texts[0], colour}, lefts[1] - lefts[0]);
    for (std::size_t i = 1; i < kParts; ++i) output.Text({lefts.at(i), top}, texts.at(i), colour);
  }
  if (font.size != kPageFont.size) output.SetFont(kPageFont);
}

}  // namespace tarnlink
