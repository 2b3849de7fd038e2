#include "tools/panel_requests.h"

#include "protocols/zolt_frame.h"

namespace tarnlink {

namespace {

using zolt_frame::kWrite;

constexpr PanelRequest kReset{kWrite + 3, 171, 170, 85};
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
  Put(all, kStatusIndex, {1, 1});
  Put(all, kErrorCodeIndex, {1, 50});
  Put(all, kConfigIndex, {2, 84});
  Put(all, kFlameCurrentIndex, {4, 868});
  Put(all, kFlameAdIndex, {4, 6015});
  PutAll(all, kSafetyIndex, 2, std::array{91, 103, 104, 151});
  PutAll(all, kSensorIndex, 4, kSensorIds);
  PutAll(all, kSensorWordIndex, 4, kSensorWordIds);
  PutAll(all, kOsNameIndex, 1, std::array{61, 5337});
  PutAll(all, kVersionIndex, 2, std::array{152, 1284, 164});
  PutAll(all, kCrcIndex, 6, std::array{5349, 5354});
  for (int entry = 0; entry < kHistoryEntries; ++entry) {
    const auto position = static_cast<std::uint8_t>(entry);
    Put(all, kErrorCodesIndex + entry, {6, kErrorCodesId, position});
    Put(all, kErrorTimesIndex + entry, {6, kErrorTimesId, position});
  }
  PutAll(all, kStatisticsIndex, 6, kStatisticsIds);
  return all;
}

PanelTab Tab(const std::string& caption, std::vector<int> indices, int first, int last) {
  for (int index = first; index <= last; ++index) indices.push_back(index);
  return {caption, std::move(indices)};
}

}  // namespace

PanelRequest RequestOf(int index, bool is_demanded) {
  static const Requests reads = MakeRequests();
  if (index == kResetErrorIndex) return kReset;
  if (index == kHeatDemandIndex) return is_demanded ? kNoDemand : kDemand;
  return reads.at(static_cast<std::size_t>(index));
}

const std::vector<PanelTab>& PanelTabs() {
  static const std::vector<PanelTab> tabs = {
      Tab("Status and Controll", {kStatusIndex, kFlameCurrentIndex, kFlameAdIndex}, kOsNameIndex,
          kErrorCodesIndex - 1),
      Tab("Configuration", {kConfigIndex}, kSafetyIndex, kSensorIndex - 1),
      Tab("Sensors", {}, kSensorIndex, kOsNameIndex - 1),
      Tab("Error and History", {kErrorCodeIndex}, kErrorCodesIndex, kStatisticsIndex - 1),
      Tab("Statistics", {}, kStatisticsIndex, kNothingPending - 1),
  };
  return tabs;
}

std::vector<std::string> PanelTabCaptions() {
  std::vector<std::string> captions;
  for (const PanelTab& tab : PanelTabs()) captions.push_back(tab.caption);
  return captions;
}

}  // namespace tarnlink
