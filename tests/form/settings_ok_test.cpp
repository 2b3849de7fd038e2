// OK of the settings dialog: what goes into the record and what the screen then shows.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "form/locations.h"
#include "form/settings_fixture.h"

namespace tarnlink {
namespace {

class ConfirmingSettings : public SettingsTest {
 protected:
  // The dialog is open on a Location under that protocol.
  void OpenUnder(int protocol, const Location& location = IdAt("001A", "A", 2)) {
    BeginWith(protocol, {location});
    OpenSettings(1);
  }
  // The record after a text was put into a box and confirmed.
  const Location& After(TextBox& box, const std::string& text) {
    if (!IsOpen()) OpenSettings(1);
    box.Text = text;
    Ok();
    return main().Locations[1];
  }
  std::string NameTip() { return main().RAM_LOC_TEXT(1).ToolTipText; }
};

TEST_F(ConfirmingSettings, StoresEveryField) {
  OpenUnder(kZoltProtocol);
  form().optSelectByte.Choose(kMsb);
  form().opt_StorageType.Choose(kSignedByte);
  form().opt_Representation.Choose(kBinary);
  Type(form().txt_Address, "2b");
  form().cmbClass.Accept("5");
  form().txt_Alias.Text = "Pump";
  form().cmbActualVariable.Accept("v_pump");
  form().txt_SlaveAddress.Text = "3";
  form().chk_Log.Value = true;
  form().chk_UseDDE.Value = true;
  form().txt_ExcelColumn.Text = "12";
  form().chk_DisableScanning.Value = true;
  Ok();
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(Record(1),
            "kind 1 type 2 text 2 at [002B].0 [Pump] [v_pump] log 1 dde 1 column 12 slave 3 flags "
            "1 class 5 byte 0 function &H00 registers 1");
}

TEST_F(ConfirmingSettings, StoresABitOfMemory) {
  OpenUnder(kTarnlinkProtocol);
  form().optSpecification.Choose(kMemorySpecification);
  form().opt_StorageType.Choose(kBit);
  form().opt_Representation.Choose(kDecimal);
  Type(form().txt_Address, "1a0");
  form().txt_BitAddress.Text = "7";
  Ok();
  EXPECT_EQ(Record(1),
            "kind 0 type 0 text 0 at [01A0].7 [id 001A] [Not Assigned] log 0 dde 0 column 0 slave "
            "A flags 0 class 2 byte 0 function &H00 registers 1");
  EXPECT_EQ(NameTip(), "01A0.7):BitDecimal");
}

TEST_F(ConfirmingSettings, ShowsAliasAndToolTipsOnTheScreen) {
  OpenUnder(kZoltProtocol);
  form().txt_Alias.Text = "Pump";
  form().cmbActualVariable.Text = "v_pump";
  form().opt_Representation.Choose(kDecimal);
  Type(form().txt_Address, "01A0");
  Ok();
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Text.get(), "Pump");
  EXPECT_EQ(NameTip(), "01A0):Unsigned WordDecimal");
  EXPECT_EQ(main().RAM_LOC_VAL(1).ToolTipText.get(), "v_pump");
  OpenSettings(1);
  form().chk_UseDDE.Value = true;
  Ok();
  EXPECT_EQ(NameTip(), "01A0):Unsigned WordDecimal [DDE]");
}

TEST_F(ConfirmingSettings, ShowsTheBitAsADecimalNumberOnTheScreen) {
  OpenUnder(kTarnlinkProtocol, BitOf(3, RegisterAt("01A0")));
  After(form().txt_BitAddress, "A");
  EXPECT_EQ(NameTip(), "01A0.10):BitHexadecimal");
}

TEST_F(ConfirmingSettings, GivesTheBoxesTheColourOfTheWindow) {
  OpenUnder(kZoltProtocol);
  Ok();
  EXPECT_EQ(Colours(1), "window window");
}

TEST_F(ConfirmingSettings, MarksTheScreenAsChangedEvenWithoutAChange) {
  OpenUnder(kZoltProtocol);
  Ok();
  for (int round = 0; round < 2; ++round) {
    main().WCRChanged = false;
    main().ShowTitle();
    Confirm(1);
    EXPECT_TRUE(Changed());
  }
}

TEST_F(ConfirmingSettings, StoresTheLogAndTheColumnOnlyWithTheirCheckBoxes) {
  OpenUnder(kZoltProtocol);
  form().txt_ExcelColumn.Text = "5";
  Ok();
  EXPECT_EQ(main().Locations[1].ExcelColumn, "0");
  OpenSettings(1);
  form().chk_UseDDE.Value = true;
  form().txt_ExcelColumn.Text = "5";
  Ok();
  EXPECT_EQ(main().Locations[1].ExcelColumn, "5");
  OpenSettings(1);
  form().chk_UseDDE.Value = false;
  Ok();
  EXPECT_EQ(main().Locations[1].ExcelColumn, "0");
  EXPECT_EQ(main().Locations[1].DDEEnable, 0);
}

TEST_F(ConfirmingSettings, ReplacesQuotesByBlanksAndCutsTheEnds) {
  OpenUnder(kZoltProtocol);
  form().txt_Alias.Text = "  12\" pipe\"  ";
  form().cmbActualVariable.Text = "\"v\"x ";
  Ok();
  EXPECT_EQ(main().Locations[1].Alias, "12  pipe");
  EXPECT_EQ(main().Locations[1].ActualVariable, "v x");
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Text.get(), "12  pipe");
  EXPECT_EQ(main().RAM_LOC_VAL(1).ToolTipText.get(), "v x");
}

// --- Scan control ---

TEST_F(ConfirmingSettings, StoresBothBitsOfTheScanControlAndMarksTheName) {
  OpenUnder(kZoltProtocol);
  for (const int flags : {1, 3, 2, 0}) {
    if (!IsOpen()) OpenSettings(1);
    form().chk_contwrite.Value = (flags & kContinuousWrite) != 0;
    form().chk_DisableScanning.Value = (flags & kScanningDisabled) != 0;
    Ok();
    EXPECT_EQ(main().Locations[1].ScanFlags, flags);
    EXPECT_EQ(main().RAM_LOC_TEXT(1).Locked.get(), flags != 0) << flags;
    EXPECT_EQ(main().RAM_LOC_TEXT(1).TextFont->italic, flags != 0) << flags;
    EXPECT_EQ(main().RAM_LOC_CHECK(1).Value.get(), (flags & kScanningDisabled) == 0) << flags;
  }
}

TEST_F(ConfirmingSettings, NeverScansABroadcastUnderModbus) {
  OpenUnder(kModbusProtocol, RegisterAt("0002"));
  form().txt_SlaveAddress.Text = "0";
  form().chk_DisableScanning.Value = false;
  form().chk_contwrite.Value = false;
  Ok();
  EXPECT_EQ(main().Locations[1].ScanFlags, 3);
  EXPECT_TRUE(form().chk_DisableScanning.Value);
  EXPECT_TRUE(form().chk_contwrite.Value);
  EXPECT_FALSE(main().RAM_LOC_CHECK(1).Value);
}

TEST_F(ConfirmingSettings, ScansSlaveZeroOfTheOtherProtocolsAndOtherSlaves) {
  for (const int protocol : {kTarnlinkProtocol, kZoltProtocol}) {
    OpenUnder(protocol);
    form().txt_SlaveAddress.Text = "0";
    Ok();
    EXPECT_EQ(main().Locations[1].ScanFlags, 0);
  }
  OpenUnder(kModbusProtocol, RegisterAt("0002"));
  form().txt_SlaveAddress.Text = "10";
  Ok();
  EXPECT_EQ(main().Locations[1].ScanFlags, 0);
}

// --- Input that is none ---

TEST_F(ConfirmingSettings, FitsAnyAddressIntoFourCharacters) {
  OpenUnder(kZoltProtocol);
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"1", "1   "}, {"", "    "}, {"12345", "1234"}, {"xyz", "xyz "}, {"\xC3\x84", "?   "}};
  for (const auto& [typed, stored] : cases) {
    EXPECT_EQ(After(form().txt_Address, typed).Address, stored) << typed;
  }
}

TEST_F(ConfirmingSettings, TakesTheBitAsHexadecimal) {
  OpenUnder(kZoltProtocol);
  const std::vector<std::pair<std::string, int>> cases = {
      {"A", 10}, {"0f", 15}, {"12", 18}, {"", 0}, {"x", 0}, {"-1", 0}, {"300", 255}};
  for (const auto& [typed, stored] : cases) {
    EXPECT_EQ(After(form().txt_BitAddress, typed).BitAddress, stored) << typed;
  }
}

TEST_F(ConfirmingSettings, TakesTheClassAsANumberAndNoneAsOne) {
  OpenUnder(kZoltProtocol);
  const std::vector<std::pair<std::string, int>> cases = {
      {"6", 6}, {"0", 1}, {"", 1}, {"x", 1}, {"-4", 1}, {"200", 200}, {"300", 255}};
  for (const auto& [typed, stored] : cases) {
    if (!IsOpen()) OpenSettings(1);
    form().cmbClass.Accept(typed);
    Ok();
    EXPECT_EQ(main().Locations[1].Class, stored) << typed;
  }
}

TEST_F(ConfirmingSettings, LetsMemoryHaveClassZero) {
  OpenUnder(kTarnlinkProtocol);
  form().optSpecification.Choose(kMemorySpecification);
  form().cmbClass.Text = "0";
  Ok();
  EXPECT_EQ(main().Locations[1].Class, 0);
}

TEST_F(ConfirmingSettings, LeavesARecordAsItIsIfNothingWasTyped) {
  for (const int protocol : {kTarnlinkProtocol, kZoltProtocol, kModbusProtocol}) {
    Begin(protocol, 1);
    for (int mix = 0; mix < 2 * 3 * 5 * 4; ++mix) {
      Location location = RegisterAt("F1A0", "3");
      location.Specification = mix % 2;
      location.SelectByte = static_cast<std::uint8_t>(mix / 2 % 3);
      location.StorageType = mix / 6 % 5;
      location.Representation = mix / 30;
      location.BitAddress = static_cast<std::uint8_t>(mix);
      location.ScanFlags = static_cast<std::uint8_t>(mix % 4);
      location.Class = static_cast<std::uint8_t>(1 + mix);
      location.DDEEnable = location.LogEnable = static_cast<std::uint8_t>(mix % 2);
      location.ExcelColumn = mix % 2 == 0 ? "0" : "4";
      Define(1, location);
      const std::string record = Record(1);
      Confirm(1);
      EXPECT_EQ(Record(1), record) << protocol;
    }
  }
}

}  // namespace
}  // namespace tarnlink
