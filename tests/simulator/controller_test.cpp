#include "simulator/controller.h"

#include <map>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace boiler {
namespace {

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kHour = 3600 * kSecond;

std::vector<int> AllValues(const Controller& controller) {
  std::vector<int> values;
  for (const MemoryItem& item : MemoryLayout()) values.push_back(controller.Value(item));
  return values;
}

int Named(const Controller& controller, std::string_view name) {
  return controller.Value(Item(name));
}

// Lets the controller live until the phase comes, for an hour at most.
bool ReachPhase(Controller& controller, Phase phase, std::int64_t& now_us) {
  for (const std::int64_t end = now_us + kHour; now_us < end; now_us += kStepUs) {
    controller.AdvanceTo(now_us);
    if (controller.boiler().phase == phase) return true;
  }
  return false;
}

TEST(Memory, KeepsTheLowByteOfAWordAtItsAddress) {
  Memory memory;
  memory.SetWord(0xF400, 0x1234);
  EXPECT_EQ(memory.Byte(0xF400), 0x34);
  EXPECT_EQ(memory.Byte(0xF401), 0x12);
  memory.SetWord(0xFFFF, 0xABCD);
  EXPECT_EQ(memory.Byte(0x0000), 0xAB);
  EXPECT_EQ(memory.Word(0xFFFF), 0xABCD);
}

TEST(MemoryLayout, HasItemsInOrderThatDoNotOverlap) {
  unsigned free_from = 0;
  std::set<std::string_view> names;
  for (const MemoryItem& item : MemoryLayout()) {
    EXPECT_GE(item.address, free_from) << item.name;
    free_from = item.address + (IsWord(item.type) ? 2u : 1u);
    EXPECT_TRUE(names.insert(item.name).second) << item.name;
    const bool in_free_ram = item.address >= kFreeRamFirst && item.address <= kFreeRamLast;
    EXPECT_FALSE(in_free_ram) << item.name;
  }
}

TEST(MemoryLayout, HasItemsLowHighAndInTheEeprom) {
  std::set<int> pages;
  for (const MemoryItem& item : MemoryLayout()) pages.insert(item.address >> 12);
  EXPECT_EQ(pages, (std::set<int>{0x0, 0x8, 0xF}));
  EXPECT_EQ(Item("flow_degrees").address, 0x01A0);
  EXPECT_EQ(Item("phase").address, 0x0060);
}

TEST(Controller, KeepsEveryValueInItsRangeForADay) {
  Controller controller(3);
  for (std::int64_t now_us = 0; now_us < 24 * kHour; now_us += 700'000) {
    controller.AdvanceTo(now_us);
    for (const MemoryItem& item : MemoryLayout()) {
      ASSERT_GE(controller.Value(item), item.lowest) << item.name << " at " << now_us;
      ASSERT_LE(controller.Value(item), item.highest) << item.name << " at " << now_us;
    }
  }
}

TEST(Controller, MovesItsLiveValues) {
  Controller controller(3);
  std::map<std::string_view, std::set<int>> seen;
  for (std::int64_t now_us = 0; now_us < 24 * kHour; now_us += 7 * kSecond) {
    controller.AdvanceTo(now_us);
    for (const MemoryItem& item : MemoryLayout()) {
      if (item.role == ItemRole::kLive) seen[item.name].insert(controller.Value(item));
    }
  }
  for (const auto& [name, values] : seen) EXPECT_GT(values.size(), 1u) << name;
  EXPECT_GT(seen["flow_temperature"].size(), 100u);
  EXPECT_GT(seen["fan_speed"].size(), 1000u);
}

TEST(Controller, RunsThroughTheBurnerCycle) {
  Controller controller(1);
  std::vector<Phase> phases;
  for (std::int64_t now_us = 0; now_us < 900 * kSecond; now_us += kStepUs) {
    controller.AdvanceTo(now_us);
    const Phase phase = controller.boiler().phase;
    if (phases.empty() || phases.back() != phase) phases.push_back(phase);
  }
  ASSERT_GE(phases.size(), 6u);
  phases.resize(6);
  EXPECT_EQ(phases, (std::vector{Phase::kStandby, Phase::kPrepurge, Phase::kIgnition, Phase::kBurn,
                                 Phase::kPostpurge, Phase::kWait}));
}

TEST(Controller, ShowsAFlameOnlyWhileItBurns) {
  Controller controller(1);
  std::int64_t now_us = 0;
  EXPECT_EQ(Named(controller, "flame_current"), 0);
  ASSERT_TRUE(ReachPhase(controller, Phase::kBurn, now_us));
  controller.AdvanceTo(now_us + 10 * kSecond);
  EXPECT_GT(Named(controller, "flame_current"), 30);
  EXPECT_EQ(Named(controller, "status_high") & 0x08, 0x08);
  ASSERT_TRUE(ReachPhase(controller, Phase::kPostpurge, now_us));
  EXPECT_EQ(Named(controller, "flame_current"), 0);
  EXPECT_EQ(Named(controller, "status_high") & 0x08, 0);
}

TEST(Controller, TellsTheSameTemperatureInDegreesAndInTenths) {
  Controller controller(1);
  for (int minute = 0; minute < 120; ++minute) {
    controller.AdvanceTo(minute * 60 * kSecond);
    EXPECT_NEAR(Named(controller, "flow_temperature") / 10.0, Named(controller, "flow_degrees"),
                0.51);
    EXPECT_NEAR(Named(controller, "outside_temperature") / 10.0,
                Named(controller, "outside_degrees"), 0.51);
  }
}

TEST(Controller, LivesTheSameLifeHoweverOftenItIsLookedAt) {
  Controller often(5), once(5), other(6);
  for (std::int64_t now_us = 0; now_us < kHour; now_us += 33'333) often.AdvanceTo(now_us);
  often.AdvanceTo(kHour);
  once.AdvanceTo(kHour);
  other.AdvanceTo(kHour);
  EXPECT_EQ(AllValues(often), AllValues(once));
  EXPECT_NE(AllValues(often), AllValues(other));
}

TEST(Controller, DoesNotGoBackInTime) {
  Controller controller(1);
  controller.AdvanceTo(kHour);
  const auto values = AllValues(controller);
  controller.AdvanceTo(kHour - kSecond);
  EXPECT_EQ(AllValues(controller), values);
}

TEST(Controller, ObeysTheFlowSetpoint) {
  Controller cool(1), hot(1);
  for (Controller* controller : {&cool, &hot}) {
    controller->WriteByte(Item("heat_demand").address, 0xFF);
    controller->WriteByte(Item("flow_setpoint").address, controller == &cool ? 35 : 80);
    controller->AdvanceTo(250 * kSecond);
  }
  EXPECT_LT(cool.boiler().flow, 45);
  EXPECT_GT(hot.boiler().flow, 65);
}

TEST(Controller, NeverBurnsForHeatingThatNobodyWants) {
  Controller controller(1);
  controller.WriteByte(Item("heat_demand").address, 1);
  for (std::int64_t now_us = 0; now_us < kHour; now_us += kSecond) {
    controller.AdvanceTo(now_us);
    ASSERT_FALSE(controller.boiler().ch_demand);
  }
}

TEST(Controller, TakesASettingOutsideItsRangeForTheNearestInside) {
  Controller controller(1);
  controller.WriteByte(Item("heat_demand").address, 0xFF);
  controller.WriteByte(Item("flow_setpoint").address, 255);
  controller.AdvanceTo(2 * kHour);
  EXPECT_LT(controller.boiler().flow, 95);
  EXPECT_EQ(Named(controller, "flow_setpoint"), 255);
}

TEST(Controller, KeepsWhatIsWrittenToFreeRam) {
  Controller controller(1);
  controller.WriteWord(kFreeRamFirst, 0xBEEF);
  controller.AdvanceTo(kHour);
  EXPECT_EQ(controller.memory().Word(kFreeRamFirst), 0xBEEF);
}

TEST(Controller, WritesOverALiveValueWithinATenthOfASecond) {
  Controller controller(1);
  controller.AdvanceTo(kSecond);
  controller.WriteByte(Item("flow_degrees").address, 0xEE);
  EXPECT_EQ(Named(controller, "flow_degrees"), 0xEE);
  controller.AdvanceTo(kSecond + kStepUs);
  EXPECT_LT(Named(controller, "flow_degrees"), 0xEE);
}

TEST(Controller, LocksOutAndComesBackByCommand) {
  Controller controller(1);
  controller.AdvanceTo(kSecond);
  const int lockouts = Named(controller, "lockouts");
  const int newest = Named(controller, "error_code_0");
  controller.WriteByte(Item("lock_out").address, 17);
  controller.AdvanceTo(2 * kSecond);
  EXPECT_EQ(Named(controller, "phase"), static_cast<int>(Phase::kLockout));
  EXPECT_EQ(Named(controller, "error_code"), 17);
  EXPECT_EQ(Named(controller, "error_code_0"), 17);
  EXPECT_EQ(Named(controller, "error_code_1"), newest);
  EXPECT_EQ(Named(controller, "error_hours_0"), Named(controller, "hours_on"));
  EXPECT_EQ(Named(controller, "lockouts"), lockouts + 1);
  EXPECT_EQ(Named(controller, "lock_out"), 0);

  controller.WriteByte(Item("reset").address, 1);
  controller.AdvanceTo(3 * kSecond);
  EXPECT_NE(Named(controller, "phase"), static_cast<int>(Phase::kLockout));
  EXPECT_EQ(Named(controller, "error_code"), 0);
  EXPECT_EQ(Named(controller, "error_code_0"), 17);
}

TEST(Controller, LocksOutByItselfWhenIgnitionFailsOftenEnough) {
  Controller controller(2);
  std::int64_t now_us = 0;
  bool locked_out = false;
  for (int hour = 0; hour < 24 && !locked_out; ++hour) {
    locked_out = ReachPhase(controller, Phase::kLockout, now_us);
  }
  ASSERT_TRUE(locked_out);
  EXPECT_EQ(Named(controller, "error_code"), kErrorNoFlame);
  ASSERT_TRUE(ReachPhase(controller, Phase::kBurn, now_us));
  EXPECT_EQ(Named(controller, "error_code"), 0);
}

TEST(Controller, StartsItsRamAnewButKeepsItsEepromWhenItReboots) {
  Controller controller(1);
  controller.AdvanceTo(kHour);
  const int starts = Named(controller, "burner_starts");
  controller.WriteByte(Item("stored_flow_setpoint").address, 71);
  controller.WriteByte(kFreeRamFirst, 0x5A);
  EXPECT_EQ(Named(controller, "flow_setpoint"), 60);
  controller.Reboot();
  EXPECT_EQ(Named(controller, "stored_flow_setpoint"), 71);
  EXPECT_EQ(Named(controller, "flow_setpoint"), 71);
  EXPECT_EQ(Named(controller, "uptime_seconds"), 0);
  EXPECT_EQ(Named(controller, "burner_starts"), starts);
  EXPECT_EQ(Named(controller, "version_major"), 3);
  EXPECT_EQ(controller.memory().Byte(kFreeRamFirst), 0);
  controller.AdvanceTo(kHour + 5 * kSecond);
  EXPECT_EQ(Named(controller, "uptime_seconds"), 5);
}

// The polynomial division on whole bits, as a second opinion.
int SlowBlockCheck(const Memory& memory, unsigned first) {
  std::vector<int> bits;
  for (unsigned i = 0; i < kEepromBlockData; ++i) {
    const int byte = memory.Byte(static_cast<std::uint16_t>(first + i));
    for (int bit = 7; bit >= 0; --bit) bits.push_back(byte >> bit & 1);
  }
  bits.insert(bits.end(), 16, 0);
  for (std::size_t i = 0; i + 16 < bits.size(); ++i) {
    if (bits[i] == 0) continue;
    for (const std::size_t term : {0, 4, 11, 16}) bits[i + term] ^= 1;
  }
  int check = 0;
  for (std::size_t i = bits.size() - 16; i < bits.size(); ++i) check = check << 1 | bits[i];
  return check;
}

TEST(Controller, HasEepromBlocksWithTheirCheckBehindThem) {
  const Controller controller(1);
  std::set<int> checks;
  for (unsigned block = kEepromFirst; block <= kEepromLast; block += kEepromBlock) {
    const int check =
        controller.memory().Word(static_cast<std::uint16_t>(block + kEepromBlockData));
    EXPECT_EQ(check, SlowBlockCheck(controller.memory(), block)) << block;
    checks.insert(check);
  }
  EXPECT_GT(checks.size(), 60u);
}

TEST(Controller, KeepsTheCheckOfABlockRightWhenAnItemOfItIsSet) {
  Controller controller(1);
  const MemoryItem& item = Item("eeprom_minor");
  const unsigned block = item.address / kEepromBlock * kEepromBlock;
  const auto check = [&] {
    return controller.memory().Word(static_cast<std::uint16_t>(block + kEepromBlockData));
  };
  const int before = check();
  controller.WriteByte(item.address, 99);
  EXPECT_EQ(check(), before);
  controller.Set(item, 98);
  EXPECT_NE(check(), before);
  EXPECT_EQ(check(), SlowBlockCheck(controller.memory(), block));
}

}  // namespace
}  // namespace boiler
