#include "simulator/modbus_registers.h"

#include <gtest/gtest.h>

namespace boiler {
namespace {

class RegisterValues : public ::testing::Test {
 protected:
  int Holding(int number) {
    const auto value = HoldingRegister(controller_, static_cast<std::uint16_t>(number));
    return value ? *value : -1;
  }
  int Input(int number) {
    const auto value = InputRegister(controller_, static_cast<std::uint16_t>(number));
    return value ? *value : -1;
  }
  void Put(std::string_view item, int value) { controller_.Set(Item(item), value); }
  int Get(std::string_view item) { return controller_.Value(Item(item)); }

  Controller controller_{1};
};

TEST(ModbusRegisters, StandInOrderWithoutGapsInTheirLivePart) {
  unsigned free_from = 0;
  for (const ModbusRegister& one : ModbusRegisters()) {
    EXPECT_GE(one.number, free_from) << one.item;
    free_from = one.number + 1u;
    if (one.number < kFirstHoldingOnly) {
      EXPECT_FALSE(CanWriteRegister(one.number)) << one.item;
    } else {
      EXPECT_TRUE(CanWriteRegister(one.number)) << one.item;
    }
  }
  for (std::uint16_t number = 0; number <= 0x32; ++number) {
    EXPECT_TRUE(HoldingRegister(Controller(1), number)) << number;
  }
}

TEST_F(RegisterValues, AreThoseOfTheMemory) {
  Put("flow_temperature", 456);
  Put("outside_temperature", -87);
  Put("noise", -1);
  Put("status_high", 0x0A);
  Put("status_low", 0x36);
  Put("burner_starts", 40'000);
  Put("error_hours_7", 1234);
  EXPECT_EQ(Holding(0x0001), 0x0A36);
  EXPECT_EQ(Holding(0x0002), 456);
  EXPECT_EQ(Holding(0x0006), 0xFFA9);
  EXPECT_EQ(Holding(0x0011), 0xFFFF);
  EXPECT_EQ(Holding(0x0018), 40'000);
  EXPECT_EQ(Holding(0x0021), 0x0307);
  EXPECT_EQ(Holding(0x0032), 1234);
  EXPECT_EQ(Holding(0x0100), 60);
}

TEST_F(RegisterValues, AreTheSameOfBothKindsWhereThereAreBoth) {
  for (int number = 0; number <= 0xFFFF; ++number) {
    EXPECT_EQ(Input(number), number < 0x0100 ? Holding(number) : -1);
  }
}

TEST_F(RegisterValues, AreNotThereOutsideTheTable) {
  for (const int number : {0x0033, 0x00FF, 0x0107, 0x010F, 0x0119, 0x01FF, 0x0300, 0xFFFF}) {
    EXPECT_EQ(Holding(number), -1) << number;
    EXPECT_FALSE(CanWriteRegister(static_cast<std::uint16_t>(number)));
  }
}

TEST_F(RegisterValues, StayInTheFreeOnes) {
  for (int number = 0x0200; number <= 0x02FF; ++number) {
    EXPECT_TRUE(RegisterTakes(static_cast<std::uint16_t>(number), 0xFFFF));
    WriteRegister(controller_, static_cast<std::uint16_t>(number),
                  static_cast<std::uint16_t>(number * 7));
  }
  controller_.AdvanceTo(60'000'000);
  for (int number = 0x0200; number <= 0x02FF; ++number) EXPECT_EQ(Holding(number), number * 7);
  EXPECT_EQ(controller_.memory().Word(0xF400), 0x0200 * 7);
  EXPECT_EQ(controller_.memory().Word(0xF5FE), 0x02FF * 7);
}

TEST_F(RegisterValues, AreTakenWithinTheirRanges) {
  for (const ModbusRegister& one : ModbusRegisters()) {
    if (!CanWriteRegister(one.number)) continue;
    const MemoryItem& item = Item(one.item);
    EXPECT_TRUE(RegisterTakes(one.number, static_cast<std::uint16_t>(item.lowest)));
    EXPECT_TRUE(RegisterTakes(one.number, static_cast<std::uint16_t>(item.highest)));
    EXPECT_FALSE(RegisterTakes(one.number, static_cast<std::uint16_t>(item.highest + 1)));
    EXPECT_FALSE(RegisterTakes(one.number, static_cast<std::uint16_t>(item.lowest - 1)));
    WriteRegister(controller_, one.number, static_cast<std::uint16_t>(item.highest));
    EXPECT_EQ(Holding(one.number), item.highest);
  }
  EXPECT_EQ(Get("flow_setpoint"), 85);
  EXPECT_EQ(Get("stored_dhw_setpoint"), 65);
}

}  // namespace
}  // namespace boiler
