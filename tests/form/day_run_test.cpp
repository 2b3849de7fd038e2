// A day under the ZOLT protocol, in virtual time: a large screen of data IDs and memory of three
// slaves at the speed of the line. Every request, every record and every value is held against what
// the screen's table and the slaves' memory say.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "common/numbers.h"
#include "form/boiler_on_line.h"
#include "form/day.h"
#include "form/monitor_fixture.h"
#include "form/readable_ids.h"
#include "simulator/bytes.h"
#include "simulator/data_ids.h"
#include "simulator/memory_layout.h"
#include "support/zolt_text.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr int kLocations = 200;
// 16 bytes at 2400 baud and 10 bits each way, and the slave's 5 ms: the tick after that is the
// seventh.
constexpr Micros kExchange = 140ms;
constexpr Micros kTick = 20ms;

bool IsMemory(int index) { return index % 2 == 0; }
bool IsUnknown(int index) { return index % 40 == 13; }
bool IsDisabled(int index) { return index % 9 == 4; }
bool IsDeleted(int index) { return index % 50 == 7 && !IsDisabled(index); }
// The setpoint of hot water, which the run writes over and over.
bool IsHeld(int index) { return index == 101; }

std::string SlaveOf(int index) { return std::string(1, "03A"[index % 3]); }

std::string Digits(int number) { return boiler::HexDigits(static_cast<unsigned>(number), 4); }

// Memory every four addresses of the free RAM, IDs of all classes; every kind of value.
Location LocationAt(int index) {
  Location location;
  location.LocSlaveAddress = SlaveOf(index);
  location.LogEnable = 1;
  location.StorageType = index % 5;
  location.Representation = index % 4;
  location.BitAddress = static_cast<std::uint8_t>(index % 8);
  location.ScanFlags = IsDisabled(index) ? 1 : IsHeld(index) ? 2 : 0;
  if (IsMemory(index)) {
    location.Specification = 0;
    location.Address = Digits(boiler::kFreeRamFirst + 4 * index);
    return location;
  }
  ShowReadableId(location, index);
  if (IsUnknown(index)) location.Address = kUnknownId;
  location.SelectByte = static_cast<std::uint8_t>(index % 3);
  return location;
}

// What the run is to do for one Location in a round; nothing for one whose scanning is disabled.
std::string EventsOf(int index) {
  if (IsDisabled(index)) return "";
  const std::string number = std::to_string(index);
  // A deleted Location opens its field of the row as well, and there is no traffic.
  if (IsDeleted(index)) return "request " + number + "\n";
  const Location location = LocationAt(index);
  std::string asked = "ask " + location.LocSlaveAddress + " ";
  if (IsMemory(index)) {
    asked += "7 " + location.Address;
  } else {
    asked += std::to_string(location.Class) + " " + location.Address;
  }
  const std::string events =
      "request " + number + "\n" + asked + (IsHeld(index) ? " write\n" : "\n");
  if (IsHeld(index)) return events;
  return events + (IsUnknown(index) ? "unreadable " : "value ") + number + "\n";
}

std::string EventsOfARound() {
  std::string events;
  for (int i = 1; i <= kLocations; ++i) events += EventsOf(i);
  return events + "end of row\n";
}

Micros TimeOfARound() {
  Micros time = 0ms;
  for (int i = 1; i <= kLocations; ++i) {
    if (!IsDisabled(i)) time += IsDeleted(i) ? kTick : kExchange;
  }
  return time;
}

class DayRun : public MonitorTest, private RunRecorder {
 protected:
  DayRun() {
    RecordIn(*this);
    ChooseProtocol(kZoltProtocol);
    monitor.options.chk_GeneralLogging(0).Value = true;
    std::vector<Location> locations;
    for (int i = 1; i <= kLocations; ++i) {
      locations.push_back(LocationAt(i));
      FillMemory(i);
    }
    Screen(locations);
    for (int i = 1; i <= kLocations; ++i) {
      if (IsDeleted(i)) Delete(i);
    }
    boiler_hears_ = world.on_output;
    world.on_output = [this](FakeSerialPort& port, std::string_view bytes) {
      NoteRequest(bytes);
      boiler_hears_(port, bytes);
    };
  }

  int rounds() const { return rounds_; }
  long values() const { return values_; }
  const std::string& rest_of_a_round() const { return events_; }
  std::string first_wrong_round;
  std::string first_wrong_value;

 private:
  void FillMemory(int index) {
    const auto address = static_cast<std::uint16_t>(boiler::kFreeRamFirst + 4 * index);
    boiler_.controller().WriteWord(address, static_cast<std::uint16_t>(0x9E37 * index));
  }

  void NoteRequest(std::string_view frame) {
    const int type = static_cast<unsigned char>(frame[1]);
    const bool is_memory = (type & 7) == 7;
    events_ += "ask " + std::string(frame.substr(2, 1)) + " " + std::to_string(type & 7) + " " +
               std::string(frame.substr(is_memory ? 7 : 3, 4)) +
               ((type & 0x80) != 0 ? " write\n" : "\n");
  }

  // The controller has stood still since it answered.
  int HeldBy(int index) {
    const Location& location = monitor.main.Locations[index];
    const auto number = static_cast<std::uint16_t>(std::stoi(location.Address, nullptr, 16));
    if (IsMemory(index)) {
      const auto& memory = boiler_.controller().memory();
      return location.StorageType < kUnsignedWord ? memory.Byte(number) : memory.Word(number);
    }
    const int slave = std::stoi(location.LocSlaveAddress, nullptr, 16);
    const int word = boiler::FindDataId(location.Class, number)
                         ->read({.controller = boiler_.controller(), .slave = slave});
    return location.SelectByte == kMsb   ? word >> 8
           : location.SelectByte == kLsb ? word & 255
                                         : word;
  }

  void CheckValue(int index) {
    ++values_;
    const Location& location = monitor.main.Locations[index];
    const int expected = HeldBy(index);
    if (location.RawValue == expected && HasDigitsOf(index, expected)) return;
    if (!first_wrong_value.empty()) return;
    first_wrong_value = std::to_string(index) + ": " + Value(index) + ", held " + Hex32(expected);
  }

  // Of the texts, the hexadecimal ones say all.
  bool HasDigitsOf(int index, int number) const {
    const Location& location = monitor.main.Locations[index];
    if (location.StorageType == kBit || location.Representation != kHexadecimal) return true;
    const bool is_word =
        IsMemory(index) ? location.StorageType >= kUnsignedWord : location.SelectByte == kBoth;
    return Value(index) == (is_word ? Digits(number) : Digits(number).substr(2));
  }

  void PrepareLog() override { monitor.main.filelogging = true; }
  void StartSpreadsheet() override {}
  void LogRequest(int index) override { events_ += "request " + std::to_string(index) + "\n"; }
  void RecordValue(int index) override {
    events_ += "value " + std::to_string(index) + "\n";
    CheckValue(index);
  }
  void LogUnreadable(int index) override {
    events_ += "unreadable " + std::to_string(index) + "\n";
  }
  void EndLogRow() override {
    ++rounds_;
    events_ += "end of row\n";
    if (events_ != expected_ && first_wrong_round.empty()) {
      first_wrong_round = std::to_string(rounds_) + ":\n" + events_;
    }
    events_.clear();
    world.port().Forget();
  }
  void CloseLogFile() override { monitor.main.filelogging = false; }

  const std::string expected_ = EventsOfARound();
  BoilerOnLine boiler_{world,
                       {.protocol = "zolt",
                        .slave = {.addresses = "0,3,A"},
                        .line = {.pace = {.baud = 2400}, .answer_delay_us = 5'000}}};
  std::function<void(FakeSerialPort&, std::string_view)> boiler_hears_;
  std::string events_;
  int rounds_ = 0;
  long values_ = 0;
};

TEST_F(DayRun, PollsTwoHundredLocationsOfThreeSlavesForADay) {
  Start();
  world.Advance(kDay);
  EXPECT_EQ(first_wrong_round, "");
  EXPECT_EQ(first_wrong_value, "");
  // The first tick comes 20 ms after the start.
  const auto expected_rounds = static_cast<int>((kDay - kTick) / TimeOfARound());
  EXPECT_EQ(rounds(), expected_rounds);
  EXPECT_EQ(monitor.main.DDERowCounter, 2 + expected_rounds);
  EXPECT_EQ(EventsOfARound().find(rest_of_a_round()), 0U);
  EXPECT_GT(values(), 500'000);
  EXPECT_EQ(world.port().opens(), 1);
  EXPECT_TRUE(world.dialogs().shown().empty());
  for (int i = 1; i <= kLocations; ++i) {
    if (IsDisabled(i) || IsDeleted(i)) {
      EXPECT_EQ(Value(i), "Value " + std::to_string(i));
    } else if (IsUnknown(i)) {
      EXPECT_EQ(Value(i), "can not read") << i;
    }
  }
  Stop();
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

}  // namespace
}  // namespace tarnlink
