#include "simulator/data_ids.h"

#include <map>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace boiler {
namespace {

using ::testing::ElementsAre;

constexpr std::int64_t kSecond = 1'000'000;

class DataIdValues : public ::testing::Test {
 protected:
  void Put(std::string_view item, int value) { controller_.Set(Item(item), value); }
  int Get(std::string_view item) { return controller_.Value(Item(item)); }

  int Read(int data_class, int id, int position = 0, int slave = 0) {
    const DataId* found = FindDataId(data_class, static_cast<std::uint16_t>(id));
    if (found == nullptr || !found->read) return -1;
    return found->read({controller_, slave, position});
  }

  // Whether it was taken.
  bool Write(int data_class, int id, int high, int low) {
    const DataId* found = FindDataId(data_class, static_cast<std::uint16_t>(id));
    if (found == nullptr || !found->store || !found->takes(high, low)) return false;
    found->store(controller_, high, low);
    return true;
  }

  Controller controller_{1};
};

TEST(DataIds, StandOnceEachInOrder) {
  const auto& ids = DataIds();
  std::set<std::string_view> names;
  for (const DataId& id : ids) {
    EXPECT_TRUE(names.insert(id.name).second) << id.name;
    EXPECT_EQ(FindDataId(id.data_class, id.id), &id);
    EXPECT_EQ(static_cast<bool>(id.takes), static_cast<bool>(id.store)) << id.name;
    EXPECT_EQ(id.written.empty(), !id.store) << id.name;
  }
  EXPECT_EQ(FindDataId(4, 1), nullptr);
  EXPECT_EQ(FindDataId(1, 2), nullptr);
}

TEST(DataIds, HaveAllThatAServiceToolAsksFor) {
  const std::map<int, std::vector<int>> asked = {
      {1, {1, 14, 50, 61, 4011, 5337}},
      {2, {84, 91, 103, 104, 151, 152, 164, 1284}},
      {3, {171}},
      {4, {241,  254,  770,  781,  817,  830,  855,  856,  868,  3854, 4034, 4045,
           4368, 4383, 4572, 4576, 4627, 5913, 5925, 5930, 5955, 5964, 6000, 6015}},
      {5, {1389, 1524, 2311, 2352, 2363, 2374, 2385, 2396, 2408}},
      {6, {875, 916, 923, 935, 936, 961, 974, 1010, 1021, 3943, 4004, 5349, 5354}},
  };
  std::map<int, std::vector<int>> held;
  for (const DataId& id : DataIds()) held[id.data_class].push_back(id.id);
  EXPECT_EQ(held, asked);
}

TEST_F(DataIdValues, ShowTheStatusInTwoBytes) {
  Put("status_high", 0x0A);
  Put("status_low", 0x36);
  EXPECT_EQ(Read(1, 1), 0x0A36);
}

TEST_F(DataIdValues, ShowASensorInDegreesAndAsConverted) {
  const struct {
    int bytes, tenths;
    const char* item;
  } sensors[] = {
      {241, 254, "flow_temperature"},     {770, 781, "return_temperature"},
      {817, 830, "dhw_temperature"},      {855, 5913, "outside_temperature"},
      {856, 5925, "exhaust_temperature"}, {5930, 5955, "exchanger_temperature"},
      {5964, 6000, "air_temperature"},
  };
  for (const auto& sensor : sensors) {
    Put(sensor.item, 456);
    EXPECT_EQ(Read(4, sensor.bytes), 46 << 8 | 136) << sensor.item;  // 255 - 65.6 / 140 * 255
    EXPECT_EQ(Read(4, sensor.tenths), 456) << sensor.item;
  }
}

TEST_F(DataIdValues, ShowFrostBelowZero) {
  Put("outside_temperature", -87);
  EXPECT_EQ(Read(4, 855) >> 8, 0xF7);  // -9
  EXPECT_EQ(Read(4, 5913), 0xFFA9);
}

TEST_F(DataIdValues, ShowMeasurements) {
  Put("flame_current", 47);
  Put("flame_ad", 423);
  Put("tap_flow", 83);
  Put("valve_current", 131);
  Put("power", 71);
  Put("water_pressure", 164);
  Put("measured_load", 69);
  Put("fan_target", 4710);
  Put("fan_speed", 4655);
  Put("flow_target", 60);
  EXPECT_EQ(Read(4, 868), 4 << 8 | 105);
  EXPECT_EQ(Read(4, 6015), 423);
  EXPECT_EQ(Read(4, 3854), 83 << 8);
  EXPECT_EQ(Read(4, 4034), 131 << 8);
  EXPECT_EQ(Read(4, 4045), 71 << 8);
  EXPECT_EQ(Read(4, 4368), 16 << 8);
  EXPECT_EQ(Read(4, 4383), 69 << 8);
  EXPECT_EQ(Read(4, 4572), 157 << 8 | 155);
  EXPECT_EQ(Read(4, 4627), 65 << 8);
  EXPECT_EQ(Read(1, 4011), 60 << 8);
}

TEST_F(DataIdValues, ShowTheWaitForHotWaterOnlyWhileItIsDrawn) {
  Put("wait_seconds", 9);
  Put("demand", 1);
  EXPECT_EQ(Read(4, 4576), 0x0900);
  Put("demand", 3);
  EXPECT_EQ(Read(4, 4576), 0x0909);
}

TEST_F(DataIdValues, ShowVersionsNamesAndTimes) {
  Put("prepurge_time", 35);
  Put("ignition_time", 20);
  Put("postpurge_time", 45);
  Put("retries", 4);
  EXPECT_EQ(Read(1, 61), 0x0502);
  EXPECT_EQ(Read(1, 5337, 0, 0), 2040);
  EXPECT_EQ(Read(1, 5337, 0, 10), 2050);
  EXPECT_EQ(Read(2, 84), 0x020C);
  EXPECT_EQ(Read(2, 91), 35 << 8 | 5);
  EXPECT_EQ(Read(2, 103), 20 << 8 | 10);
  EXPECT_EQ(Read(2, 104), 45 << 8 | 4);
  EXPECT_EQ(Read(2, 151), 50 << 8 | 25);
  EXPECT_EQ(Read(2, 152), 0x0307);
  EXPECT_EQ(Read(2, 1284), 0x040C);
  EXPECT_EQ(Read(2, 164), 0x020E);
  EXPECT_EQ(Read(6, 5349), 0x3A7C);
  EXPECT_EQ(Read(6, 5354), 0xC51E);
}

TEST_F(DataIdValues, DifferUnderEachSlaveAddress) {
  std::set<std::string> seen;
  for (int slave = 0; slave < 16; ++slave) {
    std::string all;
    for (const auto& [data_class, id] :
         std::vector<std::pair<int, int>>{{1, 61}, {1, 5337}, {2, 152}, {2, 1284}, {2, 164}}) {
      all += std::to_string(Read(data_class, id, 0, slave)) + " ";
    }
    EXPECT_TRUE(seen.insert(all).second) << slave;
  }
  EXPECT_EQ(Read(1, 61, 0, 3), 0x0802);
  EXPECT_EQ(Read(1, 61, 0, 10), 0x0103);
  EXPECT_EQ(Read(2, 152, 0, 10), 0x0311);
  EXPECT_EQ(Read(2, 164, 0, 10), 0x0218);
  EXPECT_EQ(Read(2, 1284, 0, 10), 0x0416);
}

TEST_F(DataIdValues, ASlaveLacksAsManyErrorsAsItsAddressSays) {
  for (int i = 0; i < 8; ++i) {
    Put("error_code_" + std::to_string(i), 20 + i);
    Put("error_hours_" + std::to_string(i), 9000 - i);
  }
  EXPECT_EQ(Read(6, 875, 0, 3) & 0xFF, 23);
  EXPECT_EQ(Read(6, 875, 4, 3) & 0xFF, 27);
  EXPECT_EQ(Read(6, 875, 5, 3) & 0xFF, 0);
  EXPECT_EQ(Read(6, 916, 4, 3), 9000 - 7);
  EXPECT_EQ(Read(6, 916, 5, 3), 0);
  EXPECT_EQ(Read(6, 916, 0, 8), 0);
}

TEST_F(DataIdValues, ShowErrors) {
  Put("error_code", 4);
  EXPECT_EQ(Read(1, 50), 0x0400);
  for (int i = 0; i < 8; ++i) {
    Put("error_code_" + std::to_string(i), 20 + i);
    Put("error_hours_" + std::to_string(i), 9000 - i);
    EXPECT_EQ(Read(6, 875, i), i << 8 | (20 + i));
    EXPECT_EQ(Read(6, 916, i), 9000 - i);
  }
  EXPECT_EQ(FindDataId(6, 875)->positions, 8);
  EXPECT_EQ(FindDataId(6, 916)->positions, 8);
}

TEST_F(DataIdValues, ShowCounters) {
  const std::pair<int, const char*> counters[] = {
      {923, "burner_starts"}, {935, "lockouts"},         {936, "burner_starts_dhw"},
      {961, "hours_burner"},  {974, "hours_burner_dhw"}, {1010, "hours_on"},
      {1021, "dhw_volume"},   {3943, "hours_ch_pump"},   {4004, "hours_dhw_pump"},
  };
  int value = 40'000;
  for (const auto& [id, item] : counters) {
    Put(item, ++value);
    EXPECT_EQ(Read(6, id), value) << item;
  }
}

TEST_F(DataIdValues, TakeParametersWithinTheirLimits) {
  const struct {
    int id, lowest, highest;
    const char* item;
  } parameters[] = {
      {1389, 30, 85, "flow_setpoint"},
      {1524, 35, 65, "dhw_setpoint"},
      {2311, 40, 70, "storage_setpoint"},
      {2352, 5, 150, "prepurge_time"},
      {2363, 5, 50, "ignition_time"},
      {2374, 5, 250, "postpurge_time"},
      {2385, 1, 10, "retries"},
      {2396, 0, 255, "heat_demand"},
      {2408, 0, 150, "tap"},
  };
  for (const auto& one : parameters) {
    // A byte has no values beyond its own ends.
    if (one.lowest > 0) {
      EXPECT_FALSE(Write(5, one.id, one.lowest - 1, 0)) << one.item;
    }
    if (one.highest < 255) {
      EXPECT_FALSE(Write(5, one.id, one.highest + 1, 0)) << one.item;
    }
    EXPECT_TRUE(Write(5, one.id, one.lowest, 0)) << one.item;
    EXPECT_EQ(Get(one.item), one.lowest);
    EXPECT_TRUE(Write(5, one.id, one.highest, 99)) << one.item;
    EXPECT_EQ(Get(one.item), one.highest);
    EXPECT_EQ(Read(5, one.id), one.highest << 8);
  }
}

TEST_F(DataIdValues, BeginWithTheirDefaults) {
  const std::map<int, int> defaults = {{1389, 60}, {1524, 50}, {2311, 60}, {2352, 25}, {2363, 15},
                                       {2374, 40}, {2385, 3},  {2396, 0},  {2408, 0}};
  for (const auto& [id, value] : defaults) EXPECT_EQ(Read(5, id), value << 8) << id;
}

TEST_F(DataIdValues, KeepParametersPastPowerOff) {
  EXPECT_TRUE(Write(5, 1389, 77, 0));
  EXPECT_TRUE(Write(5, 1524, 44, 0));
  EXPECT_TRUE(Write(5, 2311, 41, 0));
  controller_.Reboot();
  EXPECT_EQ(Read(5, 1389), 77 << 8);
  EXPECT_EQ(Read(5, 1524), 44 << 8);
  EXPECT_EQ(Read(5, 2311), 41 << 8);
}

TEST_F(DataIdValues, TurnTheHeatDemandOnAndOff) {
  EXPECT_TRUE(Write(1, 14, 255, 255));
  EXPECT_EQ(Get("heat_demand"), 255);
  EXPECT_EQ(Get("test_power"), 0);
  EXPECT_EQ(Read(1, 14), 0xFF00);
  EXPECT_TRUE(Write(1, 14, 0, 0));
  EXPECT_EQ(Get("heat_demand"), 0);
}

TEST_F(DataIdValues, TakeATestPowerOfUpToAHundredPercent) {
  EXPECT_TRUE(Write(1, 14, 255, 55));
  EXPECT_EQ(Get("test_power"), 55);
  EXPECT_EQ(Read(1, 14), 255 << 8 | 55);
  EXPECT_TRUE(Write(1, 14, 255, 100));
  for (const int low : {101, 180, 254}) EXPECT_FALSE(Write(1, 14, 255, low));
  EXPECT_EQ(Get("test_power"), 100);
}

TEST_F(DataIdValues, LetTheBurnerRunAtTheTestPower) {
  EXPECT_TRUE(Write(1, 14, 255, 55));
  std::int64_t now_us = 0;
  while (Get("power") < 55 && now_us < 120 * kSecond) {
    controller_.AdvanceTo(now_us += kSecond);
  }
  controller_.AdvanceTo(now_us += 10 * kSecond);
  EXPECT_EQ(Read(4, 4045), 55 << 8);
  EXPECT_EQ(Read(1, 1) >> 8 & 0x0C, 0x0C);  // test mode, flame
  EXPECT_TRUE(Write(1, 14, 0, 0));
  controller_.AdvanceTo(now_us += 10 * kSecond);
  EXPECT_EQ(Read(1, 1) >> 8 & 0x04, 0);
  EXPECT_NE(Read(4, 4045), 55 << 8);
}

TEST_F(DataIdValues, EndALockoutByTheRightWordAlone) {
  Put("lock_out", 9);
  controller_.AdvanceTo(kSecond);
  ASSERT_EQ(Read(1, 50), 0x0900);
  EXPECT_FALSE(Write(3, 171, 0x55, 0xAA));
  EXPECT_FALSE(Write(3, 171, 0, 0));
  EXPECT_TRUE(Write(3, 171, 0xAA, 0x55));
  EXPECT_EQ(Read(3, 171), -1);
  controller_.AdvanceTo(2 * kSecond);
  EXPECT_EQ(Read(1, 50), 0);
}

// What is fixed, and what somebody sets.
TEST(DataIds, LiveWhileTheBoilerDoes) {
  Controller controller(3);
  std::map<std::string_view, std::set<int>> seen;
  for (std::int64_t now_us = 0; now_us < 24 * 3600 * kSecond; now_us += 7 * kSecond) {
    controller.AdvanceTo(now_us);
    for (const DataId& id : DataIds()) {
      if (id.read) seen[id.name].insert(id.read({controller, 0, 0}));
    }
  }
  std::vector<std::string_view> still;
  for (const auto& [name, values] : seen) {
    if (values.size() == 1) still.push_back(name);
  }
  EXPECT_THAT(
      still, ElementsAre("air_switch_times", "ch_setpoint", "configuration", "crc_rom_high",
                         "crc_rom_low", "dhw_setpoint", "heat_demand", "heat_demand_parameter",
                         "ignition_parameter", "os_name", "os_number", "postpurge_and_retries",
                         "postpurge_parameter", "prepurge_and_preignition", "prepurge_parameter",
                         "retries_parameter", "safety_and_postignition", "storage_setpoint",
                         "tap_parameter", "version_eeprom", "version_rom_high", "version_rom_low"));
}

}  // namespace
}  // namespace boiler
