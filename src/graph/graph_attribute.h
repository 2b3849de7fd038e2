// The lines of the graph: what each asks the slave for and how its answer is drawn.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/controls.h"

namespace tarnlink {

// Indices of `cmbUnit`.
inline constexpr int kNoUnit = 0;
inline constexpr int kCelsius = 1;
inline constexpr int kRpm = 2;
inline constexpr int kBar = 3;
inline constexpr int kPercent = 4;
inline constexpr int kOnOff = 5;

// Temperatures and pressures have the upper band of the picture, all other lines the lower one.
constexpr bool IsUpperBand(int unit) { return unit == kCelsius || unit == kBar; }

// Indices of `cmbStoredAs`: which part of the raw value counts.
inline constexpr int kStoredMsb = 0;
inline constexpr int kStoredLsb = 1;
inline constexpr int kStoredBoth = 2;

// Indices of the table: lines with a channel of their own, then the lanes that share the last one.
inline constexpr int kLastAttribute = 115;
inline constexpr int kLanes = 16;
inline constexpr int kStatusChannel = kLastAttribute - kLanes + 1;

// The fields in the order of the measurement file.
struct GraphAttribute {
  std::uint8_t Class = 0;
  std::int32_t ID = 0;    // an answer counts only if it carries this ID
  std::int32_t Data = 0;  // sent along: 256 times the high byte and the low byte
  std::uint8_t SlaveAddress = 0;
  std::string FixedCaption;
  bool ShowLine = false;  // this and the next one also have the line polled
  bool ShowCaption = false;
  std::string Alias;
  std::string Description;
  Colour LineColor = 0;
  std::int16_t LineStyle = 0;  // as `DrawStyle`
  std::int32_t Unit = kCelsius;
  float Factor = 1.0F;  // of an on/off line the number of its bit
  std::int32_t StoredAs = kStoredMsb;

  bool operator==(const GraphAttribute&) const = default;
  bool IsShown() const { return ShowLine || ShowCaption; }
};

// The colours that lines begin with, six in turn.
class LineColors {
 public:
  Colour GetColor();

 private:
  std::int16_t color_index_ = 0;
};

// The lines that a graph begins with, all of them switched off.
std::vector<GraphAttribute> LoadDefaultAttributes(LineColors& colours);

}  // namespace tarnlink
