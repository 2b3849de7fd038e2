#include "graph/graph_captions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "common/local_decimal.h"
#include "common/text.h"

namespace tarnlink {

namespace {

// The places of a caption row's labels.
constexpr std::array<float, kLabelsOfRow> kRowLeft = {50, 1200, 1300, 1725};

constexpr std::size_t kValuePart = 2;

// Where the value may have changed since; on any background it is drawn as far as it can be read.
constexpr Colour kOldValue = 0x808080;

// Whether what the caption shows as the present value was not confirmed for a while.
bool ShowsOldValue(const frmGraphic& graph, int index) {
  return graph.CursorTime == 0 && graph.Ages.IsOld(std::min(index, graph.Data.LastChannel()));
}

// The tops of the next rows, one below the other in each band.
class CaptionTops {
 public:
  CaptionTops(float panel_height, float row_height)
      : upper_(kMargin),
        lanes_(std::floor(panel_height * static_cast<float>(kUpperBand))),
        lower_top_(std::floor(static_cast<float>(kUpperBand + kLaneBand) * panel_height + kMargin)),
        lower_(lower_top_),
        lane_step_(std::nearbyint(row_height)),
        step_(static_cast<float>(std::nearbyint(kSpacing * row_height))) {}

  float Next(int unit) {
    if (unit == kOnOff) return Step(lanes_, lane_step_);
    return Step(IsUpperBand(unit) ? upper_ : lower_, step_);
  }

  // How far the rows of the lanes have come into those below them.
  float Overlap() const { return std::max(lanes_ - lower_top_, 0.0F); }

 private:
  static constexpr float kMargin = 50;
  static constexpr double kSpacing = 1.2;

  static float Step(float& top, float step) {
    const float here = top;
    top += step;
    return here;
  }

  float upper_;
  float lanes_;
  float lower_top_;
  float lower_;
  float lane_step_;
  float step_;
};

void ShowRow(frmGraphic& graph, int k, int index, float top, const std::string& separator) {
  const GraphAttribute& line = graph.Data.Attributes[static_cast<std::size_t>(index)];
  const std::array<std::string, kLabelsOfRow> texts = {
      line.Alias, ":", CaptionValue(graph.Data.GetCursorValue(index, graph.CursorTime), separator),
      UnitText(line.Unit)};
  for (std::size_t part = 0; part < texts.size(); ++part) {
    Label& label = graph.lblVal(k + static_cast<int>(part));
    label.Top = top;
    label.Left = kRowLeft.at(part);
    if (part == 0) label.Width = kRowLeft[1] - kRowLeft[0];  // a longer name covers no value
    const bool is_old = part == kValuePart && ShowsOldValue(graph, index);
    label.ForeColor = is_old ? kOldValue : line.LineColor;
    label.Caption = texts.at(part);
    label.ToolTipText = part == 0 ? line.Description : std::string();
    label.Enabled = true;
    label.Visible = true;
  }
}

}  // namespace

void ShowCaptions(frmGraphic& graph) {
  CaptionTops tops(graph.frm(0).Height, graph.lblVal(0).Height);
  const std::string separator = graph.platform().locale().DecimalSeparator();
  std::vector<int> units;
  int k = 0;
  for (int i = 0; i <= graph.Data.LastAttribute() && k < kCaptionLabels; ++i) {
    const GraphAttribute& line = graph.Data.Attributes[static_cast<std::size_t>(i)];
    if (!line.ShowCaption) continue;
    ShowRow(graph, k, i, tops.Next(line.Unit), separator);
    units.push_back(line.Unit);
    k += kLabelsOfRow;
  }
  for (; k <= kCaptionLabels; ++k) graph.lblVal(k).Visible = false;
  for (std::size_t row = 0; row < units.size(); ++row) {
    const bool is_lower = units[row] != kOnOff && !IsUpperBand(units[row]);
    graph.CaptionDrop.at(row) = is_lower ? tops.Overlap() : 0;
  }
}

std::string UnitText(int unit) {
  constexpr std::array<const char*, 5> kTexts = {"",
                                                 "\xC2\xB0"
                                                 "C",
                                                 "rpm", "bar", "%"};
  return unit > kNoUnit && unit <= kPercent ? kTexts.at(static_cast<std::size_t>(unit)) : "";
}

std::string CaptionValue(float value, const std::string& decimal_separator) {
  constexpr int kDigits = 7;
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                 static_cast<double>(value), std::chars_format::general, kDigits);
  const std::string text = ToUpper(std::string(digits.data(), end.ptr));
  return LocalizeDecimal(text, decimal_separator);
}

}  // namespace tarnlink
