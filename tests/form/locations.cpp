#include "form/locations.h"

#include <cstdint>

#include "common/numbers.h"
#include "common/text.h"

namespace tarnlink {

Location IdAt(const std::string& address, const std::string& slave, int data_class) {
  Location location;
  location.Address = address;
  location.Alias = "id " + address;
  location.LocSlaveAddress = slave;
  location.Class = static_cast<std::uint8_t>(data_class);
  return location;
}

Location RegisterAt(const std::string& address, const std::string& slave) {
  Location location;
  location.Address = address;
  location.Alias = "at " + address;
  location.LocSlaveAddress = slave;
  location.FunctionCode = "&H03";
  return location;
}

std::vector<Location> BlockAt(int first, int count) {
  std::vector<Location> locations;
  for (int i = 0; i < count; ++i) {
    const Location location = RegisterAt(Stuff(Hex(first + i), 4));
    locations.push_back(i == 0 ? HeadOf(count, location) : Follower(location));
  }
  return locations;
}

Location OfSlave(const std::string& slave, Location location) {
  location.LocSlaveAddress = slave;
  return location;
}

Location Flagged(int scan_flags, Location location) {
  location.ScanFlags = static_cast<std::uint8_t>(scan_flags);
  return location;
}

Location Selected(SelectByte byte, Location location) {
  location.SelectByte = byte;
  location.StorageType = byte == kBoth ? kUnsignedWord : kUnsignedByte;
  return location;
}

Location BitOf(int bit, Location location) {
  location.StorageType = kBit;
  location.BitAddress = static_cast<std::uint8_t>(bit);
  return location;
}

Location Follower(Location location) {
  location.RegisterFollower = true;
  return location;
}

Location HeadOf(int registers, Location location) {
  location.NumReg = static_cast<std::int16_t>(registers);
  return location;
}

}  // namespace tarnlink
