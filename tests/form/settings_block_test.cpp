// Modbus in the settings dialog: the function code, and blocks of registers.

#include <gtest/gtest.h>

#include <string>

#include "form/locations.h"
#include "form/settings_fixture.h"

namespace tarnlink {
namespace {

constexpr int kRowOf03 = 1;
constexpr int kRowOf04 = 2;

class SettingRegisters : public SettingsTest {
 protected:
  // So many new Locations, of which the dialog of one is open with this in its boxes.
  void OpenNew(int locations, int index, int function_row, const std::string& NumReg) {
    Begin(kModbusProtocol, locations);
    OpenSettings(index);
    if (function_row >= 0) form().CmbFunc.Pick(function_row);
    form().txt_NumReg.Text = NumReg;
  }
  std::string BlockOf(int index) {
    const Location& location = main().Locations[index];
    return location.FunctionCode + " " + std::to_string(location.NumReg) +
           (location.RegisterFollower ? " follower " : " ") + Colours(index);
  }
};

TEST_F(SettingRegisters, StoresTheFunctionAsItsNumber) {
  const char* codes[] = {"&H00", "&H03", "&H04", "&H06", "&H10"};
  for (int row = 0; row < 5; ++row) {
    OpenNew(1, 1, row, "1");
    Ok();
    EXPECT_EQ(BlockOf(1), std::string(codes[row]) + " 1 window window");
  }
}

TEST_F(SettingRegisters, MakesFollowersOfTheLocationsBehindTheFirst) {
  OpenNew(8, 5, kRowOf04, "3");
  Ok();
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(BlockOf(4), "&H00 1 white white");
  EXPECT_EQ(BlockOf(5), "&H04 3 aqua aqua");
  EXPECT_EQ(BlockOf(6), "&H04 1 follower aqua aqua");
  EXPECT_EQ(BlockOf(7), "&H04 1 follower aqua aqua");
  EXPECT_EQ(BlockOf(8), "&H00 1 white white");
}

TEST_F(SettingRegisters, TakesABlockThatEndsWithTheLastLocation) {
  OpenNew(3, 1, kRowOf03, "3");
  Ok();
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(BlockOf(3), "&H03 1 follower aqua aqua");
}

TEST_F(SettingRegisters, RefusesABlockThatIsLongerThanTheScreen) {
  for (const char* length : {"4", "600", "99999"}) {
    OpenNew(3, 1, kRowOf03, length);
    ExpectBlockTooLong();
    Ok();
    EXPECT_TRUE(IsOpen());
    for (const int i : {1, 2, 3}) EXPECT_EQ(main().Locations[i].NumReg, 1) << length;
    EXPECT_FALSE(main().Locations[2].RegisterFollower);
    form().txt_NumReg.Text = "2";
    Ok();
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(BlockOf(2), "&H03 1 follower aqua aqua");
  }
}

TEST_F(SettingRegisters, RefusesABlockAtTheEndOfAFullTable) {
  Begin(kModbusProtocol, kLastLocation);
  OpenSettings(kLastLocation);
  form().CmbFunc.Pick(kRowOf03);
  form().txt_NumReg.Text = "2";
  ExpectBlockTooLong();
  Ok();
  EXPECT_TRUE(IsOpen());
  form().txt_NumReg.Text = "1";
  Ok();
  EXPECT_EQ(BlockOf(kLastLocation), "&H03 1 window window");
}

TEST_F(SettingRegisters, LeavesTheBlockAloneWithoutALength) {
  for (const char* length : {"", "0", "x", "-2"}) {
    OpenNew(2, 1, kRowOf03, length);
    Ok();
    EXPECT_FALSE(IsOpen()) << length;
    EXPECT_EQ(BlockOf(1), "&H00 1 window window") << length;
    EXPECT_EQ(BlockOf(2), "&H00 1 white white") << length;
  }
}

TEST_F(SettingRegisters, AsksForAFunctionLastAndKeepsTheForm) {
  OpenNew(1, 1, -1, "1");
  form().txt_Alias.Text = "Flow";
  main().WCRChanged = false;
  main().ShowTitle();
  ExpectNoFunction().While([this] {
    EXPECT_EQ(main().Locations[1].Alias, "Flow");
    EXPECT_EQ(main().RAM_LOC_TEXT(1).Text.get(), "Flow");
    EXPECT_EQ(BlockOf(1), "&H00 1 window window");
    EXPECT_TRUE(Changed());
  });
  Ok();
  EXPECT_TRUE(IsOpen());
  form().CmbFunc.Pick(kRowOf03);
  Ok();
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(main().Locations[1].FunctionCode, "&H03");
}

TEST_F(SettingRegisters, LeavesNothingOfTheBlockOfAnOkThatAskedForAFunction) {
  for (const char* shorter : {"2", "1", "0", ""}) {
    OpenNew(4, 1, -1, "3");
    ExpectNoFunction();
    Ok();
    EXPECT_EQ(BlockOf(3), "&H00 1 follower aqua aqua");
    form().CmbFunc.Pick(kRowOf03);
    form().txt_NumReg.Text = shorter;
    Ok();
    EXPECT_FALSE(IsOpen());
    const bool is_block = std::string(shorter) == "2";
    EXPECT_EQ(BlockOf(2), is_block ? "&H03 1 follower aqua aqua" : "&H00 1 white white") << shorter;
    EXPECT_EQ(BlockOf(3), "&H00 1 white white") << shorter;
    EXPECT_EQ(main().Locations[1].NumReg, is_block ? 2 : 1) << shorter;
    Undo();
    EXPECT_EQ(BlockOf(3), "&H00 1 follower aqua aqua") << shorter;
    Undo();
    EXPECT_EQ(BlockOf(3), "&H00 1 white white") << shorter;
  }
}

TEST_F(SettingRegisters, KeepsTheBlockOfAnOkBeforeWhenTheDialogIsOpenedAgain) {
  OpenNew(3, 1, kRowOf03, "2");
  Ok();
  OpenSettings(3);
  form().CmbFunc.Pick(kRowOf04);
  Ok();
  EXPECT_EQ(BlockOf(1), "&H03 2 aqua aqua");
  EXPECT_EQ(BlockOf(2), "&H03 1 follower aqua aqua");
}

TEST_F(SettingRegisters, AsksForNoFunctionUnderTheOtherProtocols) {
  for (const int protocol : {kTarnlinkProtocol, kZoltProtocol}) {
    Begin(protocol, 1);
    Confirm(1);
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(BlockOf(1), "&H00 1 window window");
  }
}

TEST_F(SettingRegisters, KeepsABlockThatIsConfirmedAgain) {
  BeginWith(kModbusProtocol, BlockAt(2, 3));
  for (const int i : {1, 2, 3}) {
    const std::string record = Record(i);
    OpenSettings(i);
    EXPECT_FALSE(form().txt_NumReg.Enabled);
    EXPECT_EQ(form().CmbFunc.Enabled.get(), i == 1);
    Ok();
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(main().Locations[i].RegisterFollower, i != 1);
    EXPECT_EQ(Colours(i), "aqua aqua");
  }
  EXPECT_EQ(BlockOf(1), "&H03 3 aqua aqua");
}

TEST_F(SettingRegisters, GivesTheFunctionOfTheFirstToTheWholeBlock) {
  BeginWith(kModbusProtocol, BlockAt(2, 3));
  OpenSettings(1);
  form().CmbFunc.Pick(kRowOf04);
  Ok();
  for (const int i : {1, 2, 3}) EXPECT_EQ(main().Locations[i].FunctionCode, "&H04");
}

TEST_F(SettingRegisters, GivesALocationOfABlockThePlainColourOnCancel) {
  BeginWith(kModbusProtocol, BlockAt(2, 2));
  Confirm(1);
  EXPECT_EQ(Colours(2), "aqua aqua");
  OpenSettings(2);
  CancelSettings();
  EXPECT_EQ(Colours(2), "window window");
}

// --- Undo ---

TEST_F(SettingRegisters, UndoesABlockInOneStep) {
  const auto block = [this] { return BlockOf(2) + "; " + BlockOf(3) + "; " + BlockOf(4); };
  Begin(kModbusProtocol, 4);
  const std::string before = block();
  OpenSettings(2);
  form().CmbFunc.Pick(kRowOf04);
  form().txt_NumReg.Text = "3";
  form().txt_Alias.Text = "Head";
  Ok();
  const std::string after = block();
  EXPECT_EQ(after, "&H04 3 aqua aqua; &H04 1 follower aqua aqua; &H04 1 follower aqua aqua");
  for (int round = 0; round < 2; ++round) {
    Undo();
    EXPECT_EQ(block(), before);
    EXPECT_EQ(main().RAM_LOC_TEXT(2).Text.get(), "Name 1");
    Redo();
    EXPECT_EQ(block(), after);
    EXPECT_EQ(main().RAM_LOC_TEXT(2).Text.get(), "Head");
  }
}

TEST_F(SettingRegisters, AsksAnewForTheLengthOfABlockThatWasUndone) {
  OpenNew(2, 1, kRowOf04, "2");
  Ok();
  OpenSettings(1);
  EXPECT_FALSE(form().txt_NumReg.Enabled);
  CancelSettings();
  Undo();
  OpenSettings(1);
  EXPECT_TRUE(form().txt_NumReg.Enabled);
  EXPECT_EQ(form().CmbFunc.Text.get(), "Select");
}

}  // namespace
}  // namespace tarnlink
