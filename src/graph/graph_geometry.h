// Where things stand on the graph: values and times on the picture, labels and panels on the form.
// All numbers are in units of 1440 to the inch.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "common/dates.h"

namespace tarnlink {

// The upper band of the picture holds temperatures and pressures, the lower one speeds and
// percentages, the lanes stand between them.
inline constexpr double kUpperBand = 0.45;
inline constexpr double kLowerBand = 0.4;
inline constexpr double kLaneBand = 0.15;
inline constexpr int kUpperSteps = 13;  // of the grid
inline constexpr int kLowerSteps = 7;
inline constexpr int kTimeLines = 10;

// Times and values on a picture, with all that is the same for every sample worked out once.
class TimeMap {
 public:
  TimeMap(Date start, Date base, float width)
      : start_(start), range_(base - start), width_(width - 1) {}

  float operator()(Date time) const {
    return static_cast<float>(width_ * (time - start_) / range_);
  }
  float operator()(std::int64_t seconds) const {
    return (*this)(static_cast<double>(seconds) / kSecondsPerDay);
  }
  // The seconds at a place, with their fraction.
  double SecondsAt(double x) const { return (start_ + x * range_ / width_) * kSecondsPerDay; }

 private:
  Date start_;
  Date range_;
  double width_;
};

class ValueMap {
 public:
  // `unit` as in `cmbUnit`; all but three share the scale of percentages. The lower band ends
  // `above` the bottom: on the screen by one, where its line is still to be seen.
  ValueMap(int unit, float height, float above = 1);

  float operator()(float value) const {
    return static_cast<float>(is_upper_ ? step_ * (top_ - value)
                                        : height_ - step_ * value - above_);
  }

 private:
  bool is_upper_;
  double step_ = 0;    // of a unit
  double top_ = 0;     // what stands at the top of the picture
  double height_ = 0;  // of the picture
  double above_;
};

// The moments that people read on the form.
inline constexpr const char* kStampPattern = "dd-mmm-yy hh:nn:ss";

// What is seen of time, and on how large a picture.
struct GraphView {
  Date BaseTime = 0;   // at the right edge
  int TimeScale = 10;  // minutes across the picture
  float ScaleWidth = 0.0F;
  float ScaleHeight = 0.0F;

  Date StartTime() const;  // at the left edge
  TimeMap Times() const { return {StartTime(), BaseTime, ScaleWidth}; }
  float TimeToX(Date Time) const { return Times()(Time); }
  float TimeToX(std::int64_t seconds) const { return Times()(seconds); }
  // `Unit` as for `ValueMap`.
  float ValueToY(float Value, int Unit) const { return ValueMap(Unit, ScaleHeight)(Value); }
  float TemperatureToY(float Value) const;
  float PressureToY(float Value) const;
  float SpeedToY(float Value) const;
  float PercentToY(float Value) const;

  // The grid: its lines from side to side, and those from top to bottom, which stand at full
  // times and so move along with time.
  std::array<float, kUpperSteps> UpperGrid() const;
  std::array<float, kLowerSteps> LowerGrid() const;
  std::array<float, kTimeLines> TimeGrid() const;
  // Line `index` of these, counted from the first one; those behind the last one go on beyond the
  // right edge.
  float TimeLine(int index) const;
};

// A label below the picture.
struct TimeLabel {
  std::string Caption;
  double Center = 0.0;
};

// The labels of the times below a picture, on a panel of `panel_width`, by their index.
std::vector<TimeLabel> TimeLabels(Date BaseTime, int TimeScale, double panel_width);

// The place of a control of the form.
struct Place {
  float Left = 0.0F;
  float Top = 0.0F;
  float Width = 0.0F;
  float Height = 0.0F;

  bool operator==(const Place&) const = default;
};

// The form below this size, in either direction, is not laid out anew.
inline constexpr float kSmallestForm = 5000.0F;

struct GraphLayout {
  Place GraphPan;
  std::array<Place, 4> frm;  // captions, times, left scale, right scale
  Place HScroll1;
};

GraphLayout LayOutGraph(float form_width, float form_height);

// The top of scale label `index`, 0 to 21, so that it stands on its grid line.
float ScaleLabelTop(int index, float panel_height, float label_height);

}  // namespace tarnlink
