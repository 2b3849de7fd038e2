// What the control panel asks a slave for: one request for each pending flag, and the tabs that
// they belong to.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tarnlink {

// The indices that have a meaning of their own, and the first of each group.
enum PanelIndex : int {
  kResetErrorIndex = 0,
  kHeatDemandIndex = 1,
  kNoRequestIndex = 2,
  kStatusIndex = 3,
  kErrorCodeIndex = 4,
  kConfigIndex = 5,
  kFlameCurrentIndex = 6,
  kFlameAdIndex = 7,
  kSafetyIndex = 8,
  kSensorIndex = 12,      // degrees and 8 bits
  kSensorWordIndex = 19,  // 16 bits
  kOsNameIndex = 26,
  kOsNumberIndex = 27,
  kVersionIndex = 28,
  kCrcIndex = 31,
  kErrorCodesIndex = 33,  // of the history
  kErrorTimesIndex = 41,
  kStatisticsIndex = 49,
  kNothingPending = 58,
};

inline constexpr int kPendingFlags = 59;
inline constexpr int kHistoryEntries = 8;

inline constexpr int kHeatDemandId = 14;
inline constexpr int kErrorCodesId = 875;
inline constexpr int kErrorTimesId = 916;
inline constexpr std::array<int, 7> kSensorIds = {241, 770, 817, 855, 856, 5930, 5964};
inline constexpr std::array<int, 7> kSensorWordIds = {254, 781, 830, 5913, 5925, 5955, 6000};
inline constexpr std::array<int, 9> kStatisticsIds = {923,  935,  936,  961, 974,
                                                      1010, 1021, 3943, 4004};

struct PanelRequest {
  std::uint8_t Class = 0;  // the type byte; 0: nothing is sent
  int Id = 0;
  std::uint8_t DataHi = 0;
  std::uint8_t DataLo = 0;

  bool operator==(const PanelRequest&) const = default;

  // Of the error history its answer does not say which entry it is of.
  bool IsOfHistory() const { return Id == kErrorCodesId || Id == kErrorTimesId; }
};

// `is_demanded`: what was accepted last, which the heat demand turns round.
PanelRequest RequestOf(int index, bool is_demanded);

struct PanelTab {
  std::string caption;
  std::vector<int> indices;  // what an update asks for
};

const std::vector<PanelTab>& PanelTabs();
std::vector<std::string> PanelTabCaptions();

}  // namespace tarnlink
