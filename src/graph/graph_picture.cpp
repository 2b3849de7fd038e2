#include "graph/graph_picture.h"

#include <algorithm>
#include <span>

#include "graph/lane_drawing.h"

namespace tarnlink {

namespace {

constexpr float kLaneStroke = 3;  // back from a lane's newest sample

}  // namespace

DrawStyle StyleOf(const GraphAttribute& line) {
  const bool is_known = line.LineStyle >= static_cast<int>(DrawStyle::kSolid) &&
                        line.LineStyle <= static_cast<int>(DrawStyle::kDashDotDot);
  return is_known ? static_cast<DrawStyle>(line.LineStyle) : DrawStyle::kSolid;
}

int NewestInView(const MeasureChannel& channel, std::int64_t base) {
  constexpr int kLowest = 2;  // the walk down to the right edge does not go below it
  const int bound = channel.UpperBound();
  return std::min(bound, std::max(channel.LastNotLater(base, bound - 1) + 1, kLowest));
}

SamplesShown SamplesInView(const MeasureChannel& channel, std::int64_t base, std::int64_t start) {
  SamplesShown range{.newest = NewestInView(channel, base)};
  const std::span<const std::int64_t> times = channel.Times();
  int i = range.newest - channel.FirstIndex();
  const auto time = [&](int at) { return times[static_cast<std::size_t>(at)]; };
  for (; i >= 1 && time(i - 1) != 0 && time(i) >= start; --i) ++range.older;
  return range;
}

GraphPicture::GraphPicture(DrawingSurface& surface, const Graphic& data, const GraphView& view,
                           float lane_height, bool MeasOnly, const GraphPens& pens)
    : surface_(surface),
      data_(data),
      view_(view),
      lane_height_(lane_height),
      meas_only_(MeasOnly),
      pens_(pens),
      times_(view.Times()),
      part_{.right = view.ScaleWidth,
            .newest = ToSeconds(view.BaseTime),
            .oldest = ToSeconds(view.StartTime())} {}

void GraphPicture::SetPart(const GraphPart& part) {
  part_ = part;
  places_.clear();
}

// Of each second in view, once for all lines.
void GraphPicture::MapTimes() {
  if (!places_.empty()) return;
  constexpr std::int64_t kMost = 1 << 16;  // a view that is no usual one goes without
  const std::int64_t seconds = part_.newest - part_.oldest + 1;
  if (seconds < 1 || seconds > kMost) return;
  places_.reserve(static_cast<std::size_t>(seconds));
  for (std::int64_t i = 0; i < seconds; ++i) places_.push_back(times_(part_.oldest + i));
}

float GraphPicture::ToX(std::int64_t seconds) const {
  const auto at = static_cast<std::uint64_t>(seconds - part_.oldest);
  return at < places_.size() ? places_[at] : times_(seconds);
}

void GraphPicture::DrawGrid() {
  surface_.SetPen(data_.Colors.GridColor, DrawStyle::kSolid, pens_.hairline);
  for (int i = 0;; ++i) {
    const float x = view_.TimeLine(i);
    if (i >= kTimeLines && x > part_.right) break;
    if (x >= part_.left) surface_.Line({x, 0}, {x, view_.ScaleHeight});
  }
  for (const float y : view_.UpperGrid()) surface_.Line({part_.left, y}, {part_.right, y});
  for (const float y : view_.LowerGrid()) surface_.Line({part_.left, y}, {part_.right, y});
}

void GraphPicture::DrawLines() {
  int lane = 0;
  for (int i = 0; i <= data_.LastAttribute(); ++i) {
    const GraphAttribute& line = data_.Attributes[static_cast<std::size_t>(i)];
    if (!line.ShowLine) continue;
    if (data_.IsLane(i)) {
      DrawStatusLine(i, lane++, line);
    } else {
      DrawAnalogLine(i, line);
    }
  }
}

// Where times fall, a sample before the left edge ends the line, so that edge is kept to.
SamplesShown GraphPicture::InView(const MeasureChannel& channel) const {
  const SamplesShown range = SamplesInView(channel, part_.newest, part_.oldest);
  const std::int64_t start = ToSeconds(view_.StartTime());
  if (part_.oldest >= start || !channel.FallsBehind(range.newest - range.older)) return range;
  return SamplesInView(channel, part_.newest, start);
}

void GraphPicture::SetLinePen(const GraphAttribute& line, int solid, int broken) {
  const DrawStyle style = StyleOf(line);
  surface_.SetPen(line.LineColor, style, style == DrawStyle::kSolid ? solid : broken);
}

void GraphPicture::DrawAnalogLine(int Index, const GraphAttribute& Attribute) {
  const MeasureChannel& channel = data_.ChannelOf(Index);
  if (channel.UpperBound() == 0) return;
  SetLinePen(Attribute, pens_.solid, pens_.broken);
  const SamplesShown range = InView(channel);
  if (range.older == 0) return;
  const std::span<const std::int64_t> times = channel.Times();
  const std::span<const std::int32_t> values = channel.Values();
  MapTimes();
  const ValueMap y(Attribute.Unit, view_.ScaleHeight);
  auto at = static_cast<std::size_t>(range.newest - channel.FirstIndex());
  points_.resize(static_cast<std::size_t>(range.older) + 1);
  for (Point& point : points_) {
    point = {ToX(times[at]), y(ValueOfLine(Attribute, values[at]))};
    --at;
  }
  if (!meas_only_) return surface_.Polyline(points_);
  for (std::size_t i = 1; i < points_.size(); ++i) {
    surface_.Line(points_[i], {points_[i].x - kSampleStroke, points_[i].y - kSampleStroke});
  }
}

void GraphPicture::DrawStatusLine(int Index, int Lane, const GraphAttribute& Attribute) {
  const MeasureChannel& channel = data_.ChannelOf(Index);
  if (channel.UpperBound() == 0) return;
  SetLinePen(Attribute, pens_.lane, pens_.lane);
  const SamplesShown range = InView(channel);
  if (channel[range.newest].Time == 0) return;
  const float top = static_cast<float>(view_.ScaleHeight * kUpperBand) +
                    lane_height_ * (static_cast<float>(Lane) + kLaneGap);
  LaneDrawing drawing(surface_, top, top + lane_height_ * kLaneBar);
  const auto is_on = [&](int i) { return ValueOfLine(Attribute, channel[i].Value) != 0; };
  MapTimes();
  const float newest = ToX(channel[range.newest].Time);
  drawing.Add(newest - kLaneStroke, newest, is_on(range.newest));
  float previous = newest - kLaneStroke;
  for (int i = range.newest - 1; i >= range.newest - range.older; --i) {
    const float x = ToX(channel[i].Time);
    // The state between two samples is that of the older one.
    drawing.Add(x, meas_only_ ? x - kLaneStroke : previous, is_on(i));
    previous = x;
  }
  drawing.Finish();
}

void GraphPicture::DrawCursor(Date CursorTime) {
  if (CursorTime == 0) return;
  surface_.SetPen(data_.Colors.CursorColor, DrawStyle::kSolid, pens_.hairline);
  const float x = view_.TimeToX(CursorTime);
  surface_.Line({x, 0}, {x, view_.ScaleHeight});
}

}  // namespace tarnlink
