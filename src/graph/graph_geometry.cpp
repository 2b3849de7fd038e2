#include "graph/graph_geometry.h"

#include <cmath>

#include "graph/graph_attribute.h"

namespace tarnlink {

namespace {

constexpr int kLongestOfMinutes = 10;  // the longest scale with a label for each minute

// The ends of the scales.
constexpr double kHottest = 120.0;
constexpr double kDegrees = 130.0;  // from the coldest to the hottest
constexpr double kBars = 6.5;
constexpr double kTurns = 7000.0;
constexpr double kPercents = 140.0;

std::string HourAndMinute(Date time, const char* behind = "") {
  return FormatDate(time, "hh:nn", EnglishMonthNames()) + behind;
}

Date MinutesFrom(Date time, int minutes) { return time + minutes / kMinutesPerDay; }

// At one minute: the last full minute and the last half one.
std::vector<TimeLabel> MinuteLabels(Date base, int second, double width) {
  const auto at = [&](int seconds_ago) {
    return width * (1.0 - static_cast<double>(seconds_ago) / kSecondsPerMinute);
  };
  std::vector<TimeLabel> labels = {{HourAndMinute(base, ":00"), at(second)}};
  if (second > 30) {
    labels.push_back({HourAndMinute(base, ":30"), at(second - 30)});
  } else {
    labels.push_back({HourAndMinute(MinutesFrom(base, -1), ":30"), at(second + 30)});
  }
  return labels;
}

// The part of a step that is still ahead.
double Remaining(int phase, int step) { return 1.0 - static_cast<double>(phase % step) / step; }

}  // namespace

Date GraphView::StartTime() const { return MinutesFrom(BaseTime, -TimeScale); }

ValueMap::ValueMap(int unit, float height, float above)
    : is_upper_(IsUpperBand(unit)), above_(above) {
  const double degrees = height * kUpperBand / kDegrees;
  const double bars = height * kUpperBand / kBars;
  const double turns = height * kLowerBand / kTurns;
  const double percents = height * kLowerBand / kPercents;
  height_ = height;
  top_ = unit == kCelsius ? kHottest : kBars;
  if (is_upper_) {
    step_ = unit == kCelsius ? degrees : bars;
  } else {
    step_ = unit == kRpm ? turns : percents;
  }
}

float GraphView::TemperatureToY(float Value) const { return ValueToY(Value, kCelsius); }

float GraphView::PressureToY(float Value) const { return ValueToY(Value, kBar); }

float GraphView::SpeedToY(float Value) const { return ValueToY(Value, kRpm); }

float GraphView::PercentToY(float Value) const { return ValueToY(Value, kPercent); }

std::array<float, kUpperSteps> GraphView::UpperGrid() const {
  std::array<float, kUpperSteps> lines{};
  for (int i = 1; i <= kUpperSteps; ++i) {
    lines.at(static_cast<std::size_t>(i - 1)) =
        static_cast<float>(static_cast<double>(ScaleHeight) * i / kUpperSteps * kUpperBand);
  }
  return lines;
}

std::array<float, kLowerSteps> GraphView::LowerGrid() const {
  std::array<float, kLowerSteps> lines{};
  for (int i = 1; i <= kLowerSteps; ++i) {
    lines.at(static_cast<std::size_t>(i - 1)) =
        static_cast<float>(ScaleHeight * (1.0 - static_cast<double>(i) / kLowerSteps * kLowerBand));
  }
  return lines;
}

std::array<float, kTimeLines> GraphView::TimeGrid() const {
  std::array<float, kTimeLines> lines{};
  for (int i = 0; i < kTimeLines; ++i) lines.at(static_cast<std::size_t>(i)) = TimeLine(i);
  return lines;
}

float GraphView::TimeLine(int index) const {
  const CivilTime base = ToCivil(BaseTime);
  const int step = TimeScale * 60 / kTimeLines;
  const int phase = TimeScale <= kLongestOfMinutes
                        ? base.second
                        : base.minute % (TimeScale / kTimeLines) * 60 + base.second;
  const double width = static_cast<double>(ScaleWidth) / kTimeLines;
  // Rounds to the nearest, of two to the even one.
  return static_cast<float>(std::nearbyint(width * index + Remaining(phase, step) * width));
}

std::vector<TimeLabel> TimeLabels(Date BaseTime, int TimeScale, double panel_width) {
  // Whole seconds, so that all labels round a half one alike.
  BaseTime = FromSeconds(ToSeconds(BaseTime));
  const CivilTime base = ToCivil(BaseTime);
  if (TimeScale == 1) return MinuteLabels(BaseTime, base.second, panel_width);
  const int count = TimeScale < kTimeLines ? TimeScale : kTimeLines;
  const int minutes =
      TimeScale <= kLongestOfMinutes ? 1 : TimeScale / kTimeLines;  // from label to label
  // The last label is at the last minute that the labels count by.
  const int past = base.minute % minutes;
  const double width = panel_width / TimeScale;
  std::vector<TimeLabel> labels;
  for (int i = 0; i < count; ++i) {
    const int from_base = (i - (count - 1)) * minutes - past;
    labels.push_back(
        {HourAndMinute(MinutesFrom(BaseTime, from_base)),
         width * i * minutes +
             panel_width * Remaining(past * 60 + base.second, minutes * 60) * minutes / TimeScale});
  }
  return labels;
}

GraphLayout LayOutGraph(float form_width, float form_height) {
  constexpr float kMargin = 50;
  constexpr float kCaptions = 2000;  // wide
  constexpr float kScale = 400;      // wide
  constexpr float kLeftScale = 2100;
  constexpr float kPicture = kLeftScale + kScale;
  constexpr float kRightScale = 450;  // from the right
  constexpr float kStrip = 255;       // the height of times and scroll bar
  constexpr float kTimes = 610;       // from the bottom
  constexpr float kScrollBar = 305;   // from the bottom
  const float width = form_width - kPicture - kRightScale;
  const float height = form_height - kTimes - kMargin;
  GraphLayout layout;
  layout.GraphPan = {kPicture, kMargin, width, height};
  layout.frm = {{{kMargin, kMargin, kCaptions, height},
                 {kPicture, form_height - kTimes, width, kStrip},
                 {kLeftScale, kMargin, kScale, height},
                 {form_width - kRightScale, kMargin, kScale, height}}};
  layout.HScroll1 = {kPicture, form_height - kScrollBar, width, kStrip};
  return layout;
}

float ScaleLabelTop(int index, float panel_height, float label_height) {
  constexpr int kFirstLower = kUpperSteps + 1;
  constexpr int kLast = kFirstLower + kLowerSteps;
  if (index == 0) return 0;
  if (index == kLast) return panel_height - label_height;
  const double line = index < kFirstLower
                          ? panel_height * kUpperBand * index / kUpperSteps
                          : (1 - kLowerBand) * panel_height +
                                kLowerBand * panel_height * (index - kFirstLower) / kLowerSteps;
  return static_cast<float>(line - label_height / 2);
}

}  // namespace tarnlink
