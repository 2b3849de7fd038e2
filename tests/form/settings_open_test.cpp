// Opening the settings dialog of a Location: what it shows, and what can be chosen in it.

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>

#include "form/locations.h"
#include "form/settings_fixture.h"

using namespace std::chrono_literals;

namespace tarnlink {
namespace {

Location Whole() {
  Location location;
  location.Specification = 1;
  location.StorageType = kSignedByte;
  location.Representation = kOctal;
  location.Address = "F1A0";
  location.BitAddress = 10;
  location.Alias = "Flow";
  location.ActualVariable = "t_flow";
  location.LogEnable = 1;
  location.DDEEnable = 1;
  location.ExcelColumn = "7";
  location.LocSlaveAddress = "A";
  location.Class = 4;
  location.SelectByte = kLsb;
  location.FunctionCode = "&H04";
  location.NumReg = 1;
  return location;
}

Location Memory(StorageType type = kUnsignedByte) {
  Location location = Whole();
  location.Specification = 0;
  location.SelectByte = kMsb;
  location.StorageType = type;
  return location;
}

class OpeningSettings : public SettingsTest {};

TEST_F(OpeningSettings, ShowsTheCaptionsOfItsControls) {
  EXPECT_EQ(form().caption.Caption.get(), "Settings For Memory Location");
  EXPECT_EQ(form().lbl_ActualVariable.Caption.get(), "Actual Variable Name:");
  EXPECT_EQ(form().lbl_Alias.Caption.get(), "Alias:");
  EXPECT_EQ(form().Frame10.Caption.get(), "Slave Address");
  EXPECT_EQ(form().Function_code.Caption.get(), " Function Code");
  EXPECT_EQ(form().frm_BitAddress.Caption.get(), "Bit");
  EXPECT_EQ(form().frmStorageType.Caption.get(), "Storage type");
  EXPECT_EQ(form().frmSelectByte.Caption.get(), "Select Byte");
  EXPECT_EQ(form().chk_Log.Caption.get(), "Log to file");
  EXPECT_EQ(form().chk_UseDDE.Caption.get(), "DDE");
  EXPECT_EQ(form().chk_DisableScanning.Caption.get(), "Disable Scanning");
  EXPECT_EQ(form().chk_contwrite.Caption.get(), "Continuous Write");
  EXPECT_EQ(form().cmd_Ok.Caption.get(), "Ok");
  EXPECT_EQ(form().cmd_Cancel.Caption.get(), "Cancel");
  EXPECT_EQ(form().cmdDeleteLocation.Caption.get(), "Delete Location");
}

TEST_F(OpeningSettings, HasTheToolTipsAndLengthsOfItsBoxes) {
  EXPECT_EQ(form().txt_Address.ToolTipText.get(), "Address and ID in HEX format !");
  EXPECT_EQ(form().txt_Address_dec.ToolTipText.get(), "Address and ID in Decimal format !");
  EXPECT_EQ(form().chk_DisableScanning.ToolTipText.get(), "Disables the scanning of this location");
  EXPECT_EQ(form().chk_contwrite.ToolTipText.get(), "Write continuous (e.g. waterpressure)");
  EXPECT_EQ(form().txt_Address.MaxLength.get(), 4);
  EXPECT_EQ(form().txt_Address_dec.MaxLength.get(), 5);
}

TEST_F(OpeningSettings, OffersSixClassesAndFiveFunctions) {
  const auto texts = [](const PickBox& box) {
    std::string text;
    for (const auto& row : box.List.get()) text += row.text + " ";
    return text;
  };
  EXPECT_EQ(texts(form().cmbClass), "1 2 3 4 5 6 ");
  EXPECT_EQ(texts(form().CmbFunc), "0x00 0x03 0x04 0x06 0x10 ");
}

TEST_F(OpeningSettings, ComesWithADoubleClickOnANameBox) {
  BeginWith(kZoltProtocol, {Whole(), Memory()});
  EXPECT_FALSE(IsOpen());
  OpenSettings(2);
  EXPECT_TRUE(IsOpen());
  EXPECT_EQ(main().SelectedLocation, 2);
  OpenSettings(1);
  EXPECT_EQ(main().SelectedLocation, 2);
}

TEST_F(OpeningSettings, IgnoresALocationThatIsNotThere) {
  Begin(kZoltProtocol, 1);
  OpenSettings(2);
  EXPECT_FALSE(IsOpen());
}

TEST_F(OpeningSettings, EndsTheDragThatTheDoubleClickBegan) {
  BeginWith(kZoltProtocol, {Whole()});
  const std::string entries = Entries();
  GrabName(1);
  OpenSettings(1);
  CancelSettings();
  EXPECT_TRUE(main().RAM_LOC_TEXT(1).Visible);
  EXPECT_TRUE(main().RAM_LOC_VAL(1).Visible);
  EXPECT_EQ(main().DragSource, nullptr);
  EXPECT_EQ(Entries(), entries);
}

TEST_F(OpeningSettings, ShowsEveryFieldOfTheRecord) {
  BeginWith(kZoltProtocol, {Whole()});
  OpenSettings(1);
  EXPECT_EQ(Chosen(), "Class, Lsb, Signed Byte, Octal");
  EXPECT_EQ(Address(), "F1A0 61856 .A");
  EXPECT_EQ(form().txt_Alias.Text.get(), "Flow");
  EXPECT_EQ(form().cmbActualVariable.Text.get(), "t_flow");
  EXPECT_TRUE(form().chk_Log.Value);
  EXPECT_TRUE(form().chk_UseDDE.Value);
  EXPECT_EQ(form().txt_ExcelColumn.Text.get(), "7");
  EXPECT_EQ(form().txt_SlaveAddress.Text.get(), "A");
  EXPECT_EQ(form().cmbClass.Text.get(), "4");
  EXPECT_EQ(form().cmbClass.ListIndex.get(), 3);
  EXPECT_EQ(form().txt_NumReg.Text.get(), "1");
  EXPECT_EQ(form().CmbFunc.Text.get(), "0x04");
}

TEST_F(OpeningSettings, ShowsTheNextLocationWithoutARestOfTheLast) {
  BeginWith(kZoltProtocol, {Whole(), Memory(kBit)});
  Location plain = Memory(kUnsignedWord);
  plain.LogEnable = plain.DDEEnable = 0;
  plain.BitAddress = 0;
  plain.Representation = kDecimal;
  Define(2, plain);
  OpenSettings(1);
  CancelSettings();
  OpenSettings(2);
  EXPECT_EQ(Chosen(), "Memory Location, Msb, Unsigned Word, Decimal");
  EXPECT_FALSE(form().chk_Log.Value);
  EXPECT_FALSE(form().chk_UseDDE.Value);
  EXPECT_EQ(form().txt_BitAddress.Text.get(), "0");
}

TEST_F(OpeningSettings, ShowsTheStoredBitsOfTheScanControl) {
  Begin(kZoltProtocol, 1);
  for (const int flags : {0, 1, 2, 3, 2, 1, 0}) {
    Define(1, Flagged(flags, Whole()));
    OpenSettings(1);
    EXPECT_EQ(form().chk_DisableScanning.Value.get(), (flags & 1) != 0) << flags;
    EXPECT_EQ(form().chk_contwrite.Value.get(), (flags & 2) != 0) << flags;
    CancelSettings();
  }
}

TEST_F(OpeningSettings, FindsTheRowOfTheFunction) {
  Begin(kModbusProtocol, 1);
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"&H03", "0x03"}, {"&H04", "0x04"}, {"&H06", "0x06"}, {"&H10", "0x10"}, {"&H00", "Select"},
      {"&H05", "0x00"}, {"3", "0x03"},    {"16", "0x10"},   {"", "0x00"},     {"&Hct", "0x00"}};
  for (const auto& [code, shown] : cases) {
    Location location = Whole();
    location.FunctionCode = code;
    Define(1, location);
    OpenSettings(1);
    EXPECT_EQ(form().CmbFunc.Text.get(), shown) << code;
    CancelSettings();
  }
}

TEST_F(OpeningSettings, ShowsAClassThatHasNoRow) {
  Begin(kZoltProtocol, 1);
  for (const int data_class : {0, 7, 200}) {
    Location location = Whole();
    location.Class = static_cast<std::uint8_t>(data_class);
    Define(1, location);
    OpenSettings(1);
    EXPECT_EQ(form().cmbClass.Text.get(), std::to_string(data_class));
    EXPECT_EQ(form().cmbClass.ListIndex.get(), -1);
    CancelSettings();
  }
}

TEST_F(OpeningSettings, HoldsIndicesOfAStrangeFileInsideTheirGroups) {
  Location location = Whole();
  location.Specification = 9;
  location.SelectByte = 200;
  location.StorageType = 77;
  location.Representation = -3;
  BeginWith(kZoltProtocol, {location});
  OpenSettings(1);
  EXPECT_EQ(Chosen(), "Class, Both, Signed Word, Decimal");
}

TEST_F(OpeningSettings, ReadsAddressesThatAreNone) {
  Begin(kZoltProtocol, 1);
  const std::vector<std::vector<std::string>> cases = {{"F1  ", "F1", "241"},
                                                       {"ZZZZ", "ZZZZ", "0"},
                                                       {"    ", "", "0"},
                                                       {"FFFF", "FFFF", "65535"},
                                                       {"8000", "8000", "32768"}};
  for (const auto& each : cases) {
    Location location = Whole();
    location.Address = each[0];
    Define(1, location);
    const std::string record = Record(1);
    OpenSettings(1);
    EXPECT_EQ(form().txt_Address.Text.get(), each[1]);
    EXPECT_EQ(form().txt_Address_dec.Text.get(), each[2]) << each[0];
    Ok();
    EXPECT_EQ(Record(1), record);
  }
}

TEST_F(OpeningSettings, ColoursTheBoxesYellow) {
  BeginWith(kZoltProtocol, {Whole(), Whole()});
  OpenSettings(2);
  EXPECT_EQ(Colours(2), "yellow yellow");
  EXPECT_EQ(Colours(1), "white white");
}

TEST_F(OpeningSettings, ChangesNothingOfTheScreen) {
  BeginWith(kZoltProtocol, {Whole()});
  main().WCRChanged = false;
  main().ShowTitle();
  const std::string record = Record(1);
  const std::string entries = Entries();
  OpenSettings(1);
  EXPECT_EQ(Record(1), record);
  EXPECT_EQ(Entries(), entries);
  EXPECT_FALSE(Changed());
}

// --- What can be chosen ---

TEST_F(OpeningSettings, EnablesForAClassUnderZolt) {
  Begin(kZoltProtocol, 1);
  Define(1, Whole());
  OpenSettings(1);
  EXPECT_EQ(Disabled(), "frm_BitAddress opt_StorageType(3) CmbFunc txt_NumReg");
  CancelSettings();
  Define(1, BitOf(3, Whole()));
  OpenSettings(1);
  EXPECT_EQ(Disabled(), "opt_StorageType(3) CmbFunc txt_NumReg");
  CancelSettings();
  Define(1, Selected(kBoth, Whole()));
  OpenSettings(1);
  EXPECT_EQ(Disabled(), "frm_BitAddress CmbFunc txt_NumReg");
}

TEST_F(OpeningSettings, EnablesForMemoryUnderTarnlink) {
  Begin(kTarnlinkProtocol, 1);
  Define(1, Memory());
  OpenSettings(1);
  EXPECT_EQ(Disabled(), "frm_BitAddress frmSelectByte optSelectByte(2) CmbFunc txt_NumReg");
  CancelSettings();
  Define(1, Memory(kBit));
  OpenSettings(1);
  EXPECT_EQ(Disabled(), "frmSelectByte optSelectByte(2) CmbFunc txt_NumReg");
}

TEST_F(OpeningSettings, EnablesForARegisterUnderModbus) {
  Begin(kModbusProtocol, 1);
  Define(1, Whole());
  OpenSettings(1);
  EXPECT_EQ(Disabled(),
            "cmbClass optSpecification(0) optSpecification(1) frm_BitAddress opt_StorageType(3) "
            "txt_NumReg");
  CancelSettings();
  Define(1, Follower(Selected(kBoth, Whole())));
  OpenSettings(1);
  EXPECT_EQ(Disabled(),
            "cmbClass optSpecification(0) optSpecification(1) frm_BitAddress CmbFunc txt_NumReg");
}

TEST_F(OpeningSettings, GoesByTheProtocolOfTheMoment) {
  BeginWith(kModbusProtocol, {Whole()});
  OpenSettings(1);
  CancelSettings();
  options().opt_Protocol.Select(kZoltProtocol);
  OpenSettings(1);
  EXPECT_EQ(Disabled(), "frm_BitAddress opt_StorageType(3) CmbFunc txt_NumReg");
}

TEST_F(OpeningSettings, LetsOnlyLookDuringARun) {
  BeginWith(kZoltProtocol, {Whole()});
  main().CommRunning = true;
  OpenSettings(1);
  EXPECT_EQ(Disabled(),
            "frm_BitAddress opt_StorageType(3) CmbFunc txt_NumReg cmd_Ok cmdDeleteLocation");
  for (const CommandButton* button : {&form().cmd_Ok, &form().cmdDeleteLocation}) {
    EXPECT_EQ(button->ToolTipText.get(), "Communication runs: press \"Stop Communication\" first");
  }
  form().txt_Alias.Text = "other";
  const std::string record = Record(1);
  Ok();
  EXPECT_TRUE(IsOpen());
  EXPECT_EQ(Record(1), record);
  CancelSettings();
  main().CommRunning = false;
  OpenSettings(1);
  EXPECT_EQ(Disabled(), "frm_BitAddress opt_StorageType(3) CmbFunc txt_NumReg");
  EXPECT_EQ(form().cmd_Ok.ToolTipText.get(), "");
}

TEST_F(OpeningSettings, LetsChangeAgainOnceTheRunHasEndedBehindThem) {
  BeginWith(kTarnlinkProtocol, {Memory()});
  main().Toolbar1(2).Press();
  OpenSettings(1);
  EXPECT_FALSE(form().cmd_Ok.Enabled);
  EXPECT_FALSE(form().cmdDeleteLocation.Enabled);
  world.dialogs().ExpectMessageBox("Slave is not responding", "Message Timeout");
  world.Advance(4s);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_TRUE(form().cmd_Ok.Enabled);
  EXPECT_TRUE(form().cmdDeleteLocation.Enabled);
  Ok();
  EXPECT_FALSE(IsOpen());
}

TEST_F(OpeningSettings, LetsOnlyLookOnceARunHasBegunBehindThem) {
  BeginWith(kTarnlinkProtocol, {Memory()});
  OpenSettings(1);
  EXPECT_TRUE(form().cmd_Ok.Enabled);
  main().Toolbar1(2).Press();
  EXPECT_FALSE(form().cmd_Ok.Enabled);
  EXPECT_FALSE(form().cmdDeleteLocation.Enabled);
  main().Toolbar1(3).Press();
  EXPECT_TRUE(form().cmd_Ok.Enabled);
  EXPECT_TRUE(form().cmdDeleteLocation.Enabled);
}

TEST_F(OpeningSettings, PicksTheRowOfTheName) {
  BeginWith(kZoltProtocol, {Memory()});
  LoadAtmegaMap();
  for (const auto& [name, row] : {std::pair("alpha", 0), std::pair("Table", 2),
                                  std::pair("table", -1), std::pair("t_flow", -1)}) {
    main().Locations[1].ActualVariable = name;
    OpenSettings(1);
    EXPECT_EQ(form().cmbActualVariable.ListIndex.get(), row) << name;
    EXPECT_EQ(form().cmbActualVariable.Text.get(), name);
    EXPECT_EQ(Address(), "F1A0 61856 .A");
    CancelSettings();
  }
}

// --- A Location that nobody has defined yet ---

TEST_F(OpeningSettings, AsksForTheFunctionAndTheLengthOfANewRegister) {
  Begin(kModbusProtocol, 1);
  OpenSettings(1);
  EXPECT_EQ(form().CmbFunc.Text.get(), "Select");
  EXPECT_EQ(form().CmbFunc.ListIndex.get(), -1);
  EXPECT_EQ(form().txt_SlaveAddress.Text.get(), "1");
  EXPECT_EQ(Disabled(), "cmbClass optSpecification(0) optSpecification(1) frm_BitAddress");
}

TEST_F(OpeningSettings, AsksForNeitherUnderTheOtherProtocols) {
  for (const int protocol : {kTarnlinkProtocol, kZoltProtocol}) {
    Begin(protocol, 1);
    OpenSettings(1);
    EXPECT_EQ(Chosen(), "Class, Both, Unsigned Word, Hexadecimal");
    EXPECT_EQ(form().CmbFunc.Text.get(), "0x00");
    EXPECT_EQ(Disabled(), "frm_BitAddress CmbFunc txt_NumReg");
  }
}

TEST_F(OpeningSettings, KnowsANewRegisterAlsoAfterAnotherProtocolAndARun) {
  Begin(kZoltProtocol, 1);
  options().opt_Protocol.Select(kModbusProtocol);
  main().Locations[1].RawValue = 17;
  OpenSettings(1);
  EXPECT_EQ(form().CmbFunc.Text.get(), "Select");
  EXPECT_TRUE(form().txt_NumReg.Enabled);
}

}  // namespace
}  // namespace tarnlink
