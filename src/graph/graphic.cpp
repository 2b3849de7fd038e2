#include "graph/graphic.h"

#include <algorithm>

namespace tarnlink {

namespace {

constexpr std::int32_t kHighByte = 0xFF00;
constexpr std::int32_t kLowByte = 0xFF;
constexpr int kLastBit = 7;

std::int32_t High(std::int32_t raw) { return (raw & kHighByte) / 256; }
std::int32_t Low(std::int32_t raw) { return raw & kLowByte; }

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
  MeasureChannel& channel = Channels.at(static_cast<std::size_t>(Index));
  if (channel.UpperBound() == 0) return;
  const std::int64_t seconds = ToSeconds(Time);
  if (seconds == channel[channel.UpperBound()].Time) return;
  channel.Append({Value, seconds});
  LastTime = Time;
  if (FirstTime == 0) FirstTime = Time;
}

const MeasureChannel& Graphic::ChannelOf(int Index) const {
  return Channels.at(static_cast<std::size_t>(std::min(Index, LastChannel())));
}

float ValueOfLine(const GraphAttribute& line, std::int32_t raw) {
  if (line.Unit == kOnOff) {
    const std::int32_t byte = line.StoredAs == kStoredMsb ? High(raw) : Low(raw);
    return static_cast<float>(byte >> BitOf(line.Factor) & 1);
  }
  std::int32_t number = raw;
  if (line.StoredAs == kStoredMsb) number = High(raw);
  if (line.StoredAs == kStoredLsb) number = Low(raw);
  return static_cast<float>(number) * line.Factor;
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
