#include "graph/page_content.h"

#include "graph/graph_picture.h"

namespace tarnlink {

namespace {

std::vector<MeasureSample> SamplesOf(const MeasureChannel& channel, const GraphView& view) {
  if (channel.UpperBound() == 0) return {};
  const SamplesShown shown =
      SamplesInView(channel, ToSeconds(view.BaseTime), ToSeconds(view.StartTime()));
  if (channel[shown.newest].Time == 0) return {};
  std::vector<MeasureSample> samples;
  samples.reserve(static_cast<std::size_t>(shown.older) + 1);
  for (int i = 0; i <= shown.older; ++i) samples.push_back(channel[shown.newest - i]);
  return samples;
}

}  // namespace

void TakeLines(PageContent& content, const Graphic& data) {
  content.Colors = data.Colors;
  content.lines.clear();
  for (int i = 0; i <= data.LastAttribute(); ++i) {
    const GraphAttribute& line = data.LineAt(i);
    if (!line.IsShown()) continue;
    PageLine& taken = content.lines.emplace_back(PageLine{.line = line, .is_lane = data.IsLane(i)});
    if (line.ShowCaption) taken.value = data.GetCursorValue(i, content.CursorTime);
    if (line.ShowLine) taken.samples = SamplesOf(data.ChannelOf(i), content.view);
  }
}

}  // namespace tarnlink
