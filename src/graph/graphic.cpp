#include "graph/graphic.h"

#include <algorithm>

namespace tarnlink {

namespace {

constexpr int kLastBit = 7;

// Numbers that name no bit mean the last one.
int BitOf(float factor) {
  for (int bit = 0; bit < kLastBit; ++bit) {
    if (factor == static_cast<float>(bit)) return bit;
  }
  return kLastBit;
}

}  // namespace

void Graphic::InitMeasurements() {
  Attributes.assign(kLastAttribute + 1, {});
  Channels.clear();
  Channels.resize(kStatusChannel + 1);
  Channels.back().Dimension(MeasureChannel::kUpperBound);
}

void Graphic::AllocateChannel(int Index) {
  if (Index >= LastChannel()) return;
  MeasureChannel& channel = Channels.at(static_cast<std::size_t>(Index));
  if (channel.UpperBound() == 0) channel.Dimension(MeasureChannel::kUpperBound);
}

// A clock that was set back counts on: only an equal time is refused.
void Graphic::AddMeasurement(std::int32_t Value, Date Time, int Index) {
  if (Index < 0 || Index > LastChannel()) return;
  MeasureChannel& channel = Channels[static_cast<std::size_t>(Index)];
  if (channel.UpperBound() == 0) return;
  const std::int64_t seconds = ToSeconds(Time);
  if (seconds == channel[channel.UpperBound()].Time) return;
  channel.Append({Value, seconds});
  LastTime = Time;
  if (FirstTime == 0) FirstTime = Time;
}

const GraphAttribute& Graphic::LineAt(int Index) const {
  static const GraphAttribute kOff;
  if (Index < 0 || Index > LastAttribute()) return kOff;
  return Attributes[static_cast<std::size_t>(Index)];
}

const MeasureChannel& Graphic::ChannelOf(int Index) const {
  return Channels.at(static_cast<std::size_t>(std::min(Index, LastChannel())));
}

float BitOfLine(const GraphAttribute& line, std::int32_t raw) {
  const std::int32_t byte = line.StoredAs == kStoredMsb ? HighByte(raw) : LowByte(raw);
  return static_cast<float>(byte >> BitOf(line.Factor) & 1);
}

float Graphic::GetSampleValue(int Index, int SampleIndex) const {
  return ValueOfLine(Attributes.at(static_cast<std::size_t>(Index)),
                     ChannelOf(Index)[SampleIndex].Value);
}

float Graphic::GetCursorValue(int Index, Date CursorTime) const {
  const MeasureChannel& channel = ChannelOf(Index);
  if (CursorTime == 0) return GetSampleValue(Index, channel.UpperBound());
  // Before the oldest sample the value of element 0 is shown.
  return GetSampleValue(Index, std::max(channel.LastNotLater(ToSeconds(CursorTime)), 0));
}

}  // namespace tarnlink
