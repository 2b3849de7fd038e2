// The log of a day under each protocol. Now and then the boiler does not answer, or wrongly, or
// late.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/locations.h"
#include "form/log_day_fixture.h"
#include "form/readable_ids.h"
#include "simulator/bytes.h"
#include "simulator/memory_layout.h"

namespace tarnlink {
namespace {

constexpr int kLocations = 40;
constexpr int kAnswerDelay = 250'000;  // us; a slow boiler makes the day short

bool IsWord(int index) { return index % 4 < 2; }
bool IsLogged(int index) { return index % 7 != 5; }

std::string Digits(int number) { return boiler::HexDigits(static_cast<unsigned>(number), 4); }

// What all of them have, whatever the protocol.
Location LocationAt(int index) {
  Location location;
  location.Alias = "L" + std::to_string(index);
  location.LogEnable = IsLogged(index) ? 1 : 0;
  location.Representation = index % 3 == 0 ? kDecimal : kHexadecimal;
  return location;
}

std::vector<Location> Locations(Location (*at)(int index)) {
  std::vector<Location> locations;
  for (int i = 1; i <= kLocations; ++i) locations.push_back(at(i));
  return locations;
}

// --- TarnLink ------------------------------------------------------------------------------------

Location TarnlinkLocation(int index) {
  Location location = LocationAt(index);
  location.Specification = 0;
  location.StorageType = IsWord(index) ? kUnsignedWord : kUnsignedByte;
  location.Address = Digits(boiler::Item("flow_temperature").address + index);
  return location;
}

class LogTarnlinkDay : public LogDayTest {
 protected:
  LogTarnlinkDay()
      : LogDayTest(kTarnlinkProtocol, Locations(TarnlinkLocation),
                   {.line = {.pace = {.baud = 1200}, .answer_delay_us = kAnswerDelay}}) {}
};

// An answer that does not come would end the run. A deleted Location has no field.
TEST_F(LogTarnlinkDay, HoldsWhatTheBoilerSaid) {
  RunADay({"check_wrong@0.004", "late_reply(500)@0.002"}, {5, 12});
  ExpectWhatTheBoilerSaid(5'000, 170'000);
  EXPECT_GT(record.faults(), 1'000);
  EXPECT_EQ(world.port().opens(), 1);
}

// --- ZOLT ----------------------------------------------------------------------------------------

bool IsMemory(int index) { return index % 2 == 0; }
bool IsUnknown(int index) { return index % 20 == 13; }
bool IsDisabled(int index) { return index % 10 == 4; }
constexpr int kHeld = 21;

Location ZoltLocation(int index) {
  Location location = LocationAt(index);
  location.LocSlaveAddress = index % 2 == 0 ? "0" : "3";
  location = Selected(IsWord(index) ? kBoth : kLsb, location);
  if (IsDisabled(index)) location.ScanFlags = kScanningDisabled;
  if (index == kHeld) location.ScanFlags = kContinuousWrite;
  if (IsMemory(index)) {
    location.Specification = 0;
    location.Address = Digits(boiler::Item("flow_temperature").address + 2 * index);
    return location;
  }
  ShowReadableId(location, index);
  if (IsUnknown(index)) location.Address = kUnknownId;
  return location;
}

class LogZoltDay : public LogDayTest {
 protected:
  LogZoltDay()
      : LogDayTest(kZoltProtocol, Locations(ZoltLocation),
                   {.protocol = "zolt",
                    .slave = {.addresses = "0,3"},
                    .line = {.pace = {.baud = 2400}, .answer_delay_us = kAnswerDelay}}) {
    monitor.main.Locations[kHeld].RawValue = 0x2800;
  }
};

TEST_F(LogZoltDay, HoldsWhatTheBoilerSaid) {
  RunADay({"no_reply@0.002", "check_wrong@0.004"}, {11, 40});
  ExpectWhatTheBoilerSaid(5'000, 150'000);
  EXPECT_GT(record.faults(), 1'000);
}

// --- Modbus --------------------------------------------------------------------------------------

constexpr const char* kNoRegister = "EEEE";
// In each ten Locations the second is the head of a block that goes up to the ninth.
constexpr int kBlock = 8;
bool IsHead(int index) { return index % 10 == 2; }
bool IsFollower(int index) { return index % 10 > 2; }

Location ModbusLocation(int index) {
  Location location = LocationAt(index);
  location.LocSlaveAddress = "1";
  location.FunctionCode = "&H03";
  location.Address = index == 31 ? kNoRegister : Digits(index - 1);
  location.RegisterFollower = IsFollower(index);
  if (IsHead(index)) location.NumReg = kBlock;
  if (index % 20 == 10) location.ScanFlags = kScanningDisabled;
  return location;
}

class LogModbusDay : public LogDayTest {
 protected:
  LogModbusDay()
      : LogDayTest(kModbusProtocol, Locations(ModbusLocation),
                   {.protocol = "modbus",
                    .slave = {.addresses = "1"},
                    .line = {.pace = {.baud = 1200}, .answer_delay_us = kAnswerDelay}}) {}
};

TEST_F(LogModbusDay, HoldsWhatTheBoilerSaid) {
  RunADay({"no_reply@0.001", "check_wrong@0.003", "refused@0.003"}, {5, 40});
  ExpectWhatTheBoilerSaid(18'000, 500'000);
  EXPECT_GT(record.faults(), 1'000);
}

}  // namespace
}  // namespace tarnlink
