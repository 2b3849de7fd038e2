#include "graph/graph_picture.h"

#include <algorithm>

namespace tarnlink {

namespace {

constexpr int kHairline = 1;
// The stroke of a single sample, and what a lane reaches beyond its newest one.
constexpr float kStroke = 2;
constexpr float kLaneStroke = 3;
// Of a lane's height.
constexpr float kLaneGap = 0.1F;
constexpr float kLaneBar = 0.6F;

DrawStyle StyleOf(const GraphAttribute& line) {
  const bool is_known = line.LineStyle >= static_cast<int>(DrawStyle::kSolid) &&
                        line.LineStyle <= static_cast<int>(DrawStyle::kDashDotDot);
  return is_known ? static_cast<DrawStyle>(line.LineStyle) : DrawStyle::kSolid;
}

// A lane as it grows to the left: a bar or a line as long as its state stays.
class LaneDrawing {
 public:
  LaneDrawing(DrawingSurface& surface, float top, float bottom)
      : surface_(surface), top_(top), bottom_(bottom) {}

  // From `x` to `right`, in this state.
  void Add(float x, float right, bool is_on) {
    const float low = std::min(x, right);
    const float high = std::max(x, right);
    const bool joins = is_open_ && is_on == is_on_ && high >= left_ && low <= right_;
    if (!joins) {
      Finish();
      left_ = low;
      right_ = high;
    }
    left_ = std::min(left_, low);
    right_ = std::max(right_, high);
    is_on_ = is_on;
    is_open_ = true;
  }
  void Finish() {
    if (!is_open_) return;
    if (is_on_) {
      surface_.FilledBox({left_, bottom_}, {right_, top_});
    } else {
      surface_.Line({left_, bottom_}, {right_, bottom_});
    }
    is_open_ = false;
  }

 private:
  DrawingSurface& surface_;
  float top_;
  float bottom_;
  float left_ = 0;
  float right_ = 0;
  bool is_on_ = false;
  bool is_open_ = false;
};

}  // namespace

GraphPicture::GraphPicture(DrawingSurface& surface, const Graphic& data, const GraphView& view,
                           float lane_height, bool MeasOnly, const GraphPens& pens)
    : surface_(surface),
      data_(data),
      view_(view),
      lane_height_(lane_height),
      meas_only_(MeasOnly),
      pens_(pens) {}

void GraphPicture::DrawGrid() {
  surface_.SetPen(data_.Colors.GridColor, DrawStyle::kSolid, kHairline);
  for (const float x : view_.TimeGrid()) surface_.Line({x, 0}, {x, view_.ScaleHeight});
  for (const float y : view_.UpperGrid()) surface_.Line({0, y}, {view_.ScaleWidth, y});
  for (const float y : view_.LowerGrid()) surface_.Line({0, y}, {view_.ScaleWidth, y});
}

void GraphPicture::DrawLines() {
  int lane = 0;
  for (int i = 0; i <= data_.LastAttribute(); ++i) {
    const GraphAttribute& line = data_.Attributes[static_cast<std::size_t>(i)];
    if (!line.ShowLine) continue;
    if (i >= data_.LastChannel() || line.Unit == kOnOff) {
      DrawStatusLine(i, lane++, line);
    } else {
      DrawAnalogLine(i, line);
    }
  }
}

// Begins with the first sample behind the right edge, and ends with the first one before the left.
GraphPicture::Range GraphPicture::InView(const MeasureChannel& channel) const {
  constexpr int kLowest = 2;  // the walk does not go on below it
  const int bound = channel.UpperBound();
  const int in_view = channel.LastNotLater(ToSeconds(view_.BaseTime), bound - 1);
  Range range{.newest = std::min(bound, std::max(in_view + 1, kLowest))};
  const std::int64_t start = ToSeconds(view_.StartTime());
  for (int i = range.newest; i >= 1 && channel[i - 1].Time != 0 && channel[i].Time >= start; --i) {
    ++range.older;
  }
  return range;
}

Point GraphPicture::PointOf(const MeasureSample& sample, const GraphAttribute& line) const {
  return {view_.TimeToX(sample.Time), view_.ValueToY(ValueOfLine(line, sample.Value), line.Unit)};
}

void GraphPicture::SetLinePen(const GraphAttribute& line, int solid, int broken) {
  const DrawStyle style = StyleOf(line);
  surface_.SetPen(line.LineColor, style, style == DrawStyle::kSolid ? solid : broken);
}

void GraphPicture::DrawAnalogLine(int Index, const GraphAttribute& Attribute) {
  const MeasureChannel& channel = data_.ChannelOf(Index);
  if (channel.UpperBound() == 0) return;
  SetLinePen(Attribute, pens_.solid, pens_.broken);
  const Range range = InView(channel);
  if (range.older == 0) return;
  points_.clear();
  for (int i = range.newest; i >= range.newest - range.older; --i) {
    points_.push_back(PointOf(channel[i], Attribute));
  }
  if (!meas_only_) return surface_.Polyline(points_);
  for (std::size_t i = 1; i < points_.size(); ++i) {
    surface_.Line(points_[i], {points_[i].x - kStroke, points_[i].y - kStroke});
  }
}

void GraphPicture::DrawStatusLine(int Index, int Lane, const GraphAttribute& Attribute) {
  const MeasureChannel& channel = data_.ChannelOf(Index);
  if (channel.UpperBound() == 0) return;
  SetLinePen(Attribute, pens_.lane, pens_.lane);
  const Range range = InView(channel);
  if (channel[range.newest].Time == 0) return;
  const float top = static_cast<float>(view_.ScaleHeight * kUpperBand) +
                    lane_height_ * (static_cast<float>(Lane) + kLaneGap);
  LaneDrawing drawing(surface_, top, top + lane_height_ * kLaneBar);
  const auto is_on = [&](int i) { return ValueOfLine(Attribute, channel[i].Value) != 0; };
  const float newest = view_.TimeToX(channel[range.newest].Time);
  drawing.Add(newest - kLaneStroke, newest, is_on(range.newest));
  float previous = newest - kLaneStroke;
  for (int i = range.newest - 1; i >= range.newest - range.older; --i) {
    const float x = view_.TimeToX(channel[i].Time);
    // The state between two samples is that of the older one.
    drawing.Add(x, meas_only_ ? x - kLaneStroke : previous, is_on(i));
    previous = x;
  }
  drawing.Finish();
}

void GraphPicture::DrawCursor(Date CursorTime) {
  if (CursorTime == 0) return;
  surface_.SetPen(data_.Colors.CursorColor, DrawStyle::kSolid, kHairline);
  const float x = view_.TimeToX(CursorTime);
  surface_.Line({x, 0}, {x, view_.ScaleHeight});
}

}  // namespace tarnlink
