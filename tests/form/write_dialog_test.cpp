// Writes of values and bits through their dialogs, under each protocol: what goes out, and what the
// boiler holds and shows afterwards.

#include "form/write_fixture.h"

namespace tarnlink {
namespace {

// --- TarnLink ----------------------------------------------------------------------------------

TEST_F(TarnlinkWrite, AByteGoesOutCutToTwoDigitsAndIsReadBack) {
  Run({ByteAt("F400"), ByteAt("F410", kDecimal)});
  WriteDecimal(2, "300");
  EXPECT_EQ(Sent(), "38 ms: 04 06 46 34 31 30 32 43 35 36 03\n");
  EXPECT_EQ(monitor.main.Locations[2].RawValue, 0x2C);
  Advance(50);
  EXPECT_EQ(Memory(), 0x2C);
  EXPECT_EQ(Value(2), "44");
}

TEST_F(TarnlinkWrite, AWordGoesOutInOneFrameOfFourDigits) {
  Run({WordAt("F410")});
  Write(1, "12ab");
  EXPECT_EQ(Sent(), "38 ms: 04 06 46 34 31 30 31 32 41 42 43 37 03\n");
  EXPECT_TRUE(monitor.main.SendSecondByte);
  EXPECT_EQ(monitor.main.SecondByteValue, "12");
  EXPECT_EQ(monitor.main.SecondByteIndex, 1);
}

TEST_F(TarnlinkWrite, AWriteThatIsNoWordLeavesNoSecondByte) {
  Run({WordAt("F410"), ByteAt("F414")});
  Write(1, "12AB");
  Advance(40);
  Write(2, "1");
  EXPECT_FALSE(monitor.main.SendSecondByte);
}

TEST_F(TarnlinkWrite, OtherBitsAreThoseOfTheLastWrite) {
  boiler.controller().WriteByte(0xF412, 0x44);
  Run({BitOf(3, ByteAt("F412")), BitOf(0, ByteAt("F412"))});
  WriteBit(1, true);
  EXPECT_EQ(Sent(), "38 ms: 04 06 46 34 31 32 30 38 34 42 03\n");
  Advance(50);
  Sent();
  // The second Location knows of no other bit.
  WriteBit(2, true);
  EXPECT_EQ(Sent(), "88 ms: 04 06 46 34 31 32 30 31 34 34 03\n");
  Advance(50);
  EXPECT_EQ(Memory(2), 0x01);
}

// --- ZOLT --------------------------------------------------------------------------------------

TEST_F(ZoltDialogWrite, ADataIdTakesTheValueInItsByte) {
  Run({IdAt("003D"), Selected(kMsb, IdAt("056D", "0", 5))});
  WriteDecimal(2, "65");
  Advance(30);
  EXPECT_EQ(Sent(), At(0x85, "0056D4100A9F8", 38) + At(0x05, "0056D00416CE8", 58));
  EXPECT_EQ(Value(2), "41");
}

TEST_F(ZoltDialogWrite, EachSelectedByteHasItsPlaceInTheFrame) {
  Run({Selected(kMsb, IdAt("056D", "0", 5)), Selected(kLsb, IdAt("056D", "0", 5)),
       IdAt("056D", "0", 5)});
  Write(1, "5A");
  EXPECT_EQ(Sent(), At(0x85, "0056D5A000744", 38));
  Advance(8);
  Write(2, "5A");
  EXPECT_EQ(Sent(), At(0x85, "0056D005AC57A", 46));
  Advance(8);
  Write(3, "12AB");
  EXPECT_EQ(Sent(), At(0x85, "0056D12AB2950", 54));
}

TEST_F(ZoltDialogWrite, AByteOfMemoryGoesToItsPage) {
  Run({ByteAt("F410", kDecimal)});
  WriteDecimal(1, "300");
  EXPECT_EQ(Sent(), At(0x87, "0FCFD102C848E", 38));
  Advance(40);
  EXPECT_EQ(Memory(), 0x2C);
  EXPECT_EQ(Value(1), "44");
}

TEST_F(ZoltDialogWrite, AWordOfMemoryGoesOutInTwoBytes) {
  Run({WordAt("F410")});
  Write(1, "1234");
  // Only the byte that went out is kept.
  EXPECT_EQ(monitor.main.Locations[1].RawValue, 0x34);
  Advance(8);
  EXPECT_EQ(Sent(), At(0x87, "0FCFD1034B9CF", 38) + At(0x87, "0FCFD1112885B", 43));
  Advance(40);
  EXPECT_EQ(Memory(), 0x34);
  EXPECT_EQ(Memory(1), 0x12);
  EXPECT_EQ(Value(1), "1234");
}

TEST_F(ZoltDialogWrite, ASlaveThatFallsSilentInTheMiddleOfAWordIsLeftAfterTheWatchdog) {
  SetTimeout(1);
  Run({WordAt("F410"), ByteAt("F400")});
  Write(1, "1234");
  boiler.line().AddFault("no_reply#1");  // the first half has been heard
  Advance(5);
  Sent();
  Advance(2'000);
  EXPECT_TRUE(monitor.main.CommRunning);
  EXPECT_FALSE(monitor.main.SendSecondByte);
  // The next write is a byte, and nothing of the word follows it.
  Write(2, "5A");
  Sent();
  Advance(8);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(boiler.controller().memory().Byte(0xF400), 0x5A);
}

TEST_F(ZoltDialogWrite, ASlaveThatFallsSilentAtTheSecondHalfIsLeftAfterTheWatchdog) {
  SetTimeout(1);
  Run({WordAt("F410"), ByteAt("F400")});
  Write(1, "1234");
  boiler.line().AddFault("no_reply#2");  // the first half is answered
  Advance(8);
  EXPECT_EQ(Sent(), At(0x87, "0FCFD1034B9CF", 38) + At(0x87, "0FCFD1112885B", 43));
  EXPECT_EQ(Value(1), "-");
  Advance(990);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse");
  EXPECT_FALSE(monitor.main.SendSecondByte);
  Advance(50);
  EXPECT_EQ(Sent(), At(0x07, "0FFABF400FBD7", 1058));
  EXPECT_TRUE(world.dialogs().shown().empty());
  // The next write is a byte, and nothing of the word follows it.
  Write(2, "5A");
  Advance(8);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF400), 0x5A);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF401), 0);
}

TEST_F(ZoltDialogWrite, TheSecondHalfGoesToItsWordAlthoughTheNextDialogIsUp) {
  Run({WordAt("F410"), ByteAt("F400")});
  Write(1, "1234");
  Advance(2);
  Ask(2);
  Advance(10);
  EXPECT_EQ(Memory(0), 0x34);
  EXPECT_EQ(Memory(1), 0x12);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF401), 0);
  dialog().cmd_WriteCancel.Press();
}

TEST_F(ZoltDialogWrite, NoOtherWriteGoesOutBetweenTheHalvesOfAWord) {
  Run({WordAt("F410"), ByteAt("F400")});
  Write(1, "1234");
  Sent();
  world.dialogs().ExpectMessageBox(
      {.text = "Nothing has been written: the slave has not yet answered the write before.",
       .title = "Write Error",
       .icon = Icon::kExclamation});
  Write(2, "5A");
  EXPECT_EQ(Sent(), "");
  Advance(50);
  EXPECT_EQ(Memory(0), 0x34);
  EXPECT_EQ(Memory(1), 0x12);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF400), 0);
  Write(2, "5A");
  Advance(50);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF400), 0x5A);
}

TEST_F(ZoltDialogWrite, ABitOfAWholeDataIdGoesOutAsShortAsItsNumber) {
  // The frame is then two characters short and nobody answers it; a screen from a file has none.
  Run({IdAt("056D", "0", 5)});
  monitor.main.Locations[1].StorageType = kBit;
  monitor.main.Locations[1].BitAddress = 3;
  monitor.main.Locations[1].RawValue = 1;
  WriteBit(1, true);
  EXPECT_EQ(Sent(), At(0x85, "0056D09F96E", 38));
}

TEST_F(ZoltDialogWrite, AWordWhoseFirstByteIsNotAnsweredHasNoSecond) {
  SetTimeout(1);
  Run({WordAt("F410"), ByteAt("F400")});
  boiler.line().AddFault("no_reply#1");
  Write(1, "1234");
  EXPECT_EQ(Sent(), At(0x87, "0FCFD1034B9CF", 38));
  Advance(2'000);
  EXPECT_EQ(Memory(1), 0);
  EXPECT_EQ(Sent().find("FCFD11"), std::string::npos);
}

TEST_F(ZoltDialogWrite, ABitGoesOutWithTheOthersAsTheyWereRead) {
  boiler.controller().WriteByte(0xF412, 0x01);
  Run({BitOf(3, ByteAt("F412"))});
  WriteBit(1, true);
  EXPECT_EQ(Sent(), At(0x87, "0FCFD12095351", 38));
  Advance(42);
  EXPECT_EQ(Value(1), "TRUE");
  Sent();
  boiler.controller().WriteByte(0xF412, 0xFF);
  Advance(40);
  Sent();
  WriteBit(1, false);
  EXPECT_EQ(Sent(), At(0x87, "0FCFD12F71060", 120));
}

TEST_F(ZoltDialogWrite, AProtectedPageIsToldAndTheRunGoesOnAfterTheWatchdog) {
  Run({ByteAt("0000"), IdAt("003D")});
  ExpectCritical("Write attempt to protected area !", "Write Error");
  Write(1, "12");
  EXPECT_EQ(world.dialogs().shown().size(), 1U);
  Advance(2'900);
  EXPECT_EQ(Sent(), "");
  Advance(200);
  EXPECT_NE(Sent(), "");
}

TEST_F(ZoltDialogWrite, AWordOfAProtectedPageOwesNoSecondHalf) {
  Run({WordAt("0000"), ByteAt("F400")});
  ExpectCritical("Write attempt to protected area !", "Write Error");
  Write(1, "1234");
  EXPECT_FALSE(monitor.main.SendSecondByte);
  Write(2, "5A");
  Advance(50);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF400), 0x5A);
}

// Nothing but the next write ends the waiting then.
TEST_F(ZoltDialogWrite, WithoutATimeOutAWordThatIsNotAnsweredHoldsNoOtherWriteUp) {
  SetTimeout(0);
  Run({WordAt("F410"), ByteAt("F400")});
  boiler.line().AddFault("no_reply#1");
  Write(1, "1234");
  Advance(60'000);
  ASSERT_TRUE(monitor.main.SendSecondByte);
  Write(2, "5A");
  Advance(50);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF400), 0x5A);
  EXPECT_EQ(boiler.controller().memory().Byte(0xF401), 0);
  EXPECT_FALSE(monitor.main.SendSecondByte);
}

TEST_F(ZoltDialogWrite, ARunThatEndsBehindTheRefusalStaysEnded) {
  Run({ByteAt("0000")});
  ExpectCritical("Write attempt to protected area !", "Write Error").While([this] {
    ExpectDeviceGoneBox();
    world.port().Unplug();
    world.Settle();
  });
  Write(1, "12");
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

TEST_F(ZoltDialogWrite, AClassThatCannotBeWrittenIsToldAndTheRunGoesOnAfterTheWatchdog) {
  Run({IdAt("003D", "0", 200), IdAt("003D")});
  ExpectCritical(
      "Internal System Error # 6 occured, please contact distributor.\r\n"
      "During writing a value to id 003D",
      "Internal System Error");
  monitor.main.Locations[1].RawValue = 0x55;
  Write(1, "12");
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(monitor.main.Locations[1].RawValue, 0x55) << "It was not written.";
  Advance(3'100);
  EXPECT_NE(Sent(), "");
  EXPECT_TRUE(monitor.main.CommRunning);
}

TEST_F(ZoltDialogWrite, AContinuousWriteGoesOnWithTheValueOfTheDialog) {
  Run({Flagged(kContinuousWrite, IdAt("056D", "0", 5))});
  Write(1, "0203");
  EXPECT_EQ(Sent(), At(0x85, "0056D02030A3A", 38));
  Advance(50);
  EXPECT_EQ(Value(1), "0203");
  EXPECT_EQ(Sent(), At(0x85, "0056D02030A3A", 78));
}

// --- Modbus ------------------------------------------------------------------------------------

TEST_F(ModbusDialogWrite, ARegisterIsWrittenByteOrWord) {
  Run({Selected(kLsb, RegisterAt("0200")), Selected(kMsb, RegisterAt("0200")), RegisterAt("0200")});
  WriteDecimal(1, "300");
  EXPECT_EQ(Sent(), "38 ms: 01 06 02 00 00 2C 89 AF\n");
  Advance(16);
  WriteDecimal(2, "300");
  EXPECT_EQ(Sent(), "54 ms: 01 06 02 00 2C 00 94 B2\n");
  Advance(16);
  Write(3, "12ab");
  EXPECT_EQ(Sent(), "70 ms: 01 06 02 00 12 AB C5 6D\n");
  Advance(60);
  EXPECT_EQ(Value(3), "12AB");
}

TEST_F(ModbusDialogWrite, ABitGoesOutWithTheOthersAsTheyWereRead) {
  boiler.controller().WriteWord(0xF400, 1);
  Run({BitOf(3, Selected(kLsb, RegisterAt("0200")))});
  EXPECT_EQ(Value(1), "FALSE");
  WriteBit(1, true);
  EXPECT_EQ(Sent(), "38 ms: 01 06 02 00 00 09 48 74\n");
  Advance(60);
  EXPECT_EQ(Value(1), "TRUE");
  WriteBit(1, false);
  EXPECT_NE(Sent().find("01 06 02 00 00 01 49 B2\n"), std::string::npos);
}

TEST_F(ModbusDialogWrite, ABitIsOneRegisterAlthoughABlockWasChosenBefore) {
  Run({RegisterAt("0210"), BitOf(3, Selected(kLsb, RegisterAt("0200")))});
  WriteBlock(1, {1, 2});
  Advance(60);
  Sent();
  ASSERT_EQ(dialog().Option1.Selected(), kMultipleWrite);
  WriteBit(2, true);
  EXPECT_EQ(Sent(), "98 ms: 01 06 02 00 00 08 89 B4\n");
}

TEST_F(ModbusDialogWrite, ASilentSlaveIsLeftAfterTheWatchdogWithoutAWord) {
  SetTimeout(1);
  Run({RegisterAt("0200"), RegisterAt("0201")});
  boiler.line().AddFault("no_reply#1");
  Write(1, "1234");
  EXPECT_EQ(Sent(), "38 ms: 01 06 02 00 12 34 85 05\n");
  Advance(990);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse");
  Advance(20);
  EXPECT_EQ(Sent(), "1038 ms: 01 03 02 01 00 01 D4 72\n");
  Advance(60);
  EXPECT_EQ(Value(1), "0000");
  EXPECT_EQ(Value(2), "0000");
  EXPECT_TRUE(world.dialogs().shown().empty());
  EXPECT_EQ(world.port().opens(), 2);
}

}  // namespace
}  // namespace tarnlink
