#include "graph/graph_pointer.h"

#include <algorithm>
#include <cmath>

#include "graph/graph_captions.h"

namespace tarnlink {

namespace {

constexpr float kReach = 150;  // in the picture's scale: ten pixels

// How far `at` is from the stroke between two points.
float Distance(Point at, Point from, Point to) {
  const float dx = to.x - from.x;
  const float dy = to.y - from.y;
  const float length = dx * dx + dy * dy;
  const float along =
      length > 0 ? std::clamp(((at.x - from.x) * dx + (at.y - from.y) * dy) / length, 0.0F, 1.0F)
                 : 0.0F;
  return std::hypot(at.x - from.x - along * dx, at.y - from.y - along * dy);
}

std::int64_t SecondsAt(const GraphView& view, float x) {
  return static_cast<std::int64_t>(std::floor(view.Times().SecondsAt(x)));
}

}  // namespace

std::optional<PointerReading> GraphPointer::Reading(const GraphView& view, Point at) const {
  auto reading = ReadLine(view, at);
  return reading ? reading : ReadLane(view, at);
}

std::optional<PointerReading> GraphPointer::ReadLine(const GraphView& view, Point at) const {
  std::optional<PointerReading> nearest;
  float reach = kReach;
  for (int i = 0; i < graph_.Data.LastChannel(); ++i) {
    const GraphAttribute& line = graph_.Data.Attributes[static_cast<std::size_t>(i)];
    const MeasureChannel& channel = graph_.Data.ChannelOf(i);
    if (!line.ShowLine || graph_.Data.IsLane(i) || channel.Count() == 0) continue;
    const auto point = [&](int sample) {
      return Point{view.TimeToX(channel[sample].Time),
                   view.ValueToY(ValueOfLine(line, channel[sample].Value), line.Unit)};
    };
    const int before = channel.LastNotLater(SecondsAt(view, at.x));
    // The strokes on both sides of the pointer, and the one before: it may end at the pointer.
    for (int sample = std::max(before - 1, 1); sample <= before + 1; ++sample) {
      if (sample > channel.UpperBound() || channel[sample].Time == 0) continue;
      const Point to = point(sample);
      const Point from = channel[sample - 1].Time == 0 ? to : point(sample - 1);
      const float distance = Distance(at, from, to);
      if (distance >= reach) continue;
      reach = distance;
      const bool is_later = std::abs(at.x - to.x) <= std::abs(at.x - from.x);
      nearest = Tell(line, channel[is_later ? sample : sample - 1], is_later ? to : from);
    }
  }
  return nearest;
}

std::optional<PointerReading> GraphPointer::ReadLane(const GraphView& view, Point at) const {
  const float height = display_.LaneHeight();
  const float top = view.ScaleHeight * static_cast<float>(kUpperBand);
  if (height <= 0 || at.y < top) return {};
  int lane = static_cast<int>((at.y - top) / height);
  for (int i = 0; i <= graph_.Data.LastAttribute(); ++i) {
    const GraphAttribute& line = graph_.Data.Attributes[static_cast<std::size_t>(i)];
    if (!line.ShowLine || !graph_.Data.IsLane(i)) continue;
    if (lane-- > 0) continue;
    const MeasureChannel& channel = graph_.Data.ChannelOf(i);
    const int sample = channel.LastNotLater(SecondsAt(view, at.x));
    if (sample < 0 || channel[sample].Time == 0) return {};
    return Tell(line, channel[sample], at);
  }
  return {};
}

PointerReading GraphPointer::Tell(const GraphAttribute& line, const MeasureSample& sample,
                                  Point at) const {
  Locale& locale = graph_.platform().locale();
  const float value = ValueOfLine(line, sample.Value);
  std::string text;
  if (line.Unit == kOnOff) {
    text = value != 0 ? "on" : "off";
  } else {
    text = CaptionValue(value, locale.DecimalSeparator());
    if (const std::string unit = UnitText(line.Unit); !unit.empty()) text += " " + unit;
  }
  return {.Name = line.Alias,
          .Value = text,
          .Time = FormatDate(FromSeconds(sample.Time), kStampPattern, locale.Months()),
          .At = at,
          .LineColor = line.LineColor};
}

void GraphPointer::MoveInTime(double minutes) {
  if (graph_.AutoScroll) return;
  const Date scale = graph_.TimeScale / kMinutesPerDay;
  const Date latest = graph_.Data.LastTime;
  const Date earliest = std::min(graph_.Data.FirstTime + scale, latest);
  const Date base = std::clamp(graph_.BaseTime + minutes / kMinutesPerDay, earliest, latest);
  if (base == graph_.BaseTime) return;
  graph_.BaseTime = base;
  display_.DrawAgain();
}

}  // namespace tarnlink
