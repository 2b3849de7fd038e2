// What the graph knows: its lines, their samples, the range of time that these cover, its colours.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/controls.h"
#include "common/dates.h"
#include "graph/graph_attribute.h"
#include "graph/measure_channel.h"

namespace tarnlink {

struct GraphColors {
  Colour GridColor = kBlack;
  Colour GraphColor = kWhite;  // behind the lines
  Colour BackColor = kWhite;   // of the form, its panels and labels
  Colour CursorColor = 0x0000FF;
  Colour CaptionColor = kBlack;  // of the scales

  bool operator==(const GraphColors&) const = default;
};

class Graphic {
 public:
  Graphic() { InitMeasurements(); }

  GraphColors Colors;
  // Line i has channel i; all lines behind the channels are lanes of the last one.
  std::vector<GraphAttribute> Attributes;
  std::vector<MeasureChannel> Channels;
  Date FirstTime = 0;
  Date LastTime = 0;
  std::string AutoSaveDir;  // with its separator at the end
  Date AutoSaveDay = 0;

  // Lines and channels as many as there are by default, and none of their samples.
  void InitMeasurements();
  void DefaultColor() { Colors = {}; }
  // Room for the samples of a line that is switched on; what it has stays.
  void AllocateChannel(int Index);

  // A sample for channel `Index`. Dropped if there is no such channel, if it records nothing or has
  // a sample of the same second on top.
  void AddMeasurement(std::int32_t Value, Date Time, int Index);

  // The value of element `SampleIndex` in the unit of line `Index`; 1 or 0 of an on/off line.
  float GetSampleValue(int Index, int SampleIndex) const;
  // The value under the cursor, the newest one if `CursorTime` is 0.
  float GetCursorValue(int Index, Date CursorTime) const;

  int LastChannel() const { return static_cast<int>(Channels.size()) - 1; }
  int LastAttribute() const { return static_cast<int>(Attributes.size()) - 1; }
  // Line `Index`; one that is off where the table has none.
  const GraphAttribute& LineAt(int Index) const;
  // Whether line `Index` is drawn as an on/off lane.
  bool IsLane(int Index) const { return Index >= LastChannel() || LineAt(Index).Unit == kOnOff; }
  // The channel that line `Index` reads.
  const MeasureChannel& ChannelOf(int Index) const;
};

inline std::int32_t HighByte(std::int32_t raw) { return (raw & 0xFF00) / 256; }
inline std::int32_t LowByte(std::int32_t raw) { return raw & 0xFF; }

// The bit of an on/off line.
float BitOfLine(const GraphAttribute& line, std::int32_t raw);

// The value of a raw answer in the unit of `line`. Drawn graphs need hundreds of thousands.
inline float ValueOfLine(const GraphAttribute& line, std::int32_t raw) {
  if (line.Unit == kOnOff) return BitOfLine(line, raw);
  std::int32_t number = raw;
  if (line.StoredAs == kStoredMsb) number = HighByte(raw);
  if (line.StoredAs == kStoredLsb) number = LowByte(raw);
  return static_cast<float>(number) * line.Factor;
}

}  // namespace tarnlink
