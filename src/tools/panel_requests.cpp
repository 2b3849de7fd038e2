#include "tools/panel_requests.h"

#include "protocols/zolt_frame.h"

namespace tarnlink {

namespace {

using zolt_frame::kWrite;

constexpr PanelRequest kReset{kWrite + 3, kResetId, 170, 85};
constexpr PanelRequest kDemand{kWrite + 1, kHeatDemandId, 255, 255};
constexpr PanelRequest kNoDemand{kWrite + 1, kHeatDemandId, 0, 0};

using Requests = std::array<PanelRequest, kPendingFlags>;

void Put(Requests& all, int index, PanelRequest request) {
  all[static_cast<std::size_t>(index)] = request;
}

template <std::size_t count>
void PutAll(Requests& all, int first, std::uint8_t data_class, const std::array<int, count>& ids) {
  for (const int id : ids) Put(all, first++, {data_class, id});
}

Requests MakeRequests() {
  Requests all{};
  Put(all, kStatusIndex, {1, kStatusId});
  Put(all, kErrorCodeIndex, {1, kErrorCodeId});
  Put(all, kConfigIndex, {2, kConfigId});
  Put(all, kFlameCurrentIndex, {4, kFlameCurrentId});
  Put(all, kFlameAdIndex, {4, kFlameAdId});
  PutAll(all, kSafetyIndex, 2, kSafetyIds);
  PutAll(all, kSensorIndex, 4, kSensorIds);
  PutAll(all, kSensorWordIndex, 4, kSensorWordIds);
  Put(all, kOsNameIndex, {1, kOsNameId});
  Put(all, kOsNumberIndex, {1, kOsNumberId});
  PutAll(all, kVersionIndex, 2, kVersionIds);
  PutAll(all, kCrcIndex, 6, kCrcIds);
  for (int entry = 0; entry < kHistoryEntries; ++entry) {
    const auto position = static_cast<std::uint8_t>(entry);
    Put(all, kErrorCodesIndex + entry, {6, kErrorCodesId, position});
    Put(all, kErrorTimesIndex + entry, {6, kErrorTimesId, position});
  }
  PutAll(all, kStatisticsIndex, 6, kStatisticsIds);
  return all;
}

// The single indices, and a row of them that ends before `end`.
PanelTab Tab(PanelTabName name, const std::string& caption, std::vector<int> indices, int first,
             int end) {
  for (int index = first; index < end; ++index) indices.push_back(index);
  return {name, caption, std::move(indices)};
}

}  // namespace

PanelRequest RequestOf(int index, bool is_demanded) {
  static const Requests reads = MakeRequests();
  if (index == kResetErrorIndex) return kReset;
  if (index == kHeatDemandIndex) return is_demanded ? kNoDemand : kDemand;
  return reads.at(static_cast<std::size_t>(index));
}

int IndexOf(int id) {
  int index = 0;
  while (index < kNothingPending && RequestOf(index, false).Id != id) ++index;
  return index;
}

const std::vector<PanelTab>& PanelTabs() {
  static const std::vector<PanelTab> tabs = {
      Tab(PanelTabName::kStatus, "Status and Controll",
          {kStatusIndex, kFlameCurrentIndex, kFlameAdIndex}, kOsNameIndex, kErrorCodesIndex),
      Tab(PanelTabName::kConfig, "Configuration", {kConfigIndex}, kSafetyIndex, kSensorIndex),
      Tab(PanelTabName::kSensors, "Sensors", {}, kSensorIndex, kOsNameIndex),
      Tab(PanelTabName::kErrors, "Error and History", {kErrorCodeIndex}, kErrorCodesIndex,
          kStatisticsIndex),
      Tab(PanelTabName::kStatistics, "Statistics", {}, kStatisticsIndex, kNothingPending),
  };
  return tabs;
}

std::vector<std::string> PanelTabCaptions() {
  std::vector<std::string> captions;
  for (const PanelTab& tab : PanelTabs()) captions.push_back(tab.caption);
  return captions;
}

}  // namespace tarnlink
