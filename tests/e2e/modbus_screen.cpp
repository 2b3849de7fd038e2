#include "modbus_screen.h"

#include "common/numbers.h"
#include "common/text.h"
#include "files/screen_file.h"
#include "modbus_peer.h"

namespace e2e {

using tarnlink::Location;

std::string Digits(int number) { return tarnlink::Stuff(tarnlink::Hex(number), 4); }

Location Register(int index, int function) {
  Location location;
  location.Address = Digits(index);
  location.Alias = "at " + location.Address;
  location.LocSlaveAddress = ModbusPeer::kAddress;
  location.FunctionCode = "&H0" + std::to_string(function);
  return location;
}

int RegisterOf(const Location& location) { return std::stoi(location.Address, nullptr, 16); }

void AddBlock(std::vector<Location>& screen, int first, int count, int function) {
  for (int i = 0; i < count; ++i) {
    screen.push_back(Register(first + i, function));
    screen.back().NumReg = static_cast<std::int16_t>(i == 0 ? count : 1);
    screen.back().RegisterFollower = i > 0;
  }
}

std::string ScreenFile(const std::vector<Location>& locations) {
  constexpr tarnlink::Colour kGrey = 0xC0C0C0;
  constexpr std::size_t kRows = 43;
  std::vector<tarnlink::ScreenRecord> records;
  for (std::size_t i = 0; i < locations.size(); ++i) {
    const auto top = static_cast<float>(120 + i % kRows * 330);
    const auto left = static_cast<float>(450 + i / kRows * 4300);
    records.emplace_back(tarnlink::LocationRecord{.tag = tarnlink::kModbusTag,
                                                  .location = locations[i],
                                                  .value_top = top,
                                                  .value_left = left + 2100,
                                                  .name_top = top,
                                                  .name_left = left});
  }
  return tarnlink::WriteScreenFile(kGrey, records);
}

}  // namespace e2e
