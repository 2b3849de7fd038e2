// What the control panel asks a slave for: one request for each pending flag, and the tabs that
// they belong to.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tarnlink {

// The data IDs, group by group in the order of their requests.
inline constexpr int kResetId = 171;
inline constexpr int kHeatDemandId = 14;
inline constexpr int kStatusId = 1;
inline constexpr int kErrorCodeId = 50;
inline constexpr int kConfigId = 84;
inline constexpr int kFlameCurrentId = 868;
inline constexpr int kFlameAdId = 6015;
inline constexpr std::array kSafetyIds = {91, 103, 104, 151};
inline constexpr std::array kSensorIds = {241, 770, 817, 855, 856, 5930, 5964};
inline constexpr std::array kSensorWordIds = {254, 781, 830, 5913, 5925, 5955, 6000};
inline constexpr int kOsNameId = 61;
inline constexpr int kOsNumberId = 5337;
inline constexpr std::array kVersionIds = {152, 1284, 164};
inline constexpr std::array kCrcIds = {5349, 5354};
inline constexpr int kErrorCodesId = 875;
inline constexpr int kErrorTimesId = 916;
inline constexpr std::array kStatisticsIds = {923, 935, 936, 961, 974, 1010, 1021, 3943, 4004};

inline constexpr int kHistoryEntries = 8;

template <typename Ids>
constexpr int SizeOf(const Ids& ids) {
  return static_cast<int>(ids.size());
}

// The indices that have a meaning of their own, and the first of each group.
enum PanelIndex : int {
  kResetErrorIndex,
  kHeatDemandIndex,
  kNoRequestIndex,
  kStatusIndex,
  kErrorCodeIndex,
  kConfigIndex,
  kFlameCurrentIndex,
  kFlameAdIndex,
  kSafetyIndex,
  kSensorIndex = kSafetyIndex + SizeOf(kSafetyIds),      // degrees and 8 bits
  kSensorWordIndex = kSensorIndex + SizeOf(kSensorIds),  // 16 bits
  kOsNameIndex = kSensorWordIndex + SizeOf(kSensorWordIds),
  kOsNumberIndex,
  kVersionIndex,
  kCrcIndex = kVersionIndex + SizeOf(kVersionIds),
  kErrorCodesIndex = kCrcIndex + SizeOf(kCrcIds),  // of the history
  kErrorTimesIndex = kErrorCodesIndex + kHistoryEntries,
  kStatisticsIndex = kErrorTimesIndex + kHistoryEntries,
  kNothingPending = kStatisticsIndex + SizeOf(kStatisticsIds),
};

inline constexpr int kPendingFlags = kNothingPending + 1;

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

// The first index whose request has this ID; `kNothingPending` for an ID that the panel does not
// have.
int IndexOf(int id);

enum class PanelTabName { kStatus, kConfig, kSensors, kErrors, kStatistics };

struct PanelTab {
  PanelTabName name;
  std::string caption;
  std::vector<int> indices;  // what an update asks for
};

// In the order in which they stand side by side.
const std::vector<PanelTab>& PanelTabs();
std::vector<std::string> PanelTabCaptions();

}  // namespace tarnlink
