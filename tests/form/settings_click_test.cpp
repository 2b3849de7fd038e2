// How the controls of the settings dialog act on each other while the user works with them.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "form/locations.h"
#include "form/settings_fixture.h"

namespace tarnlink {
namespace {

// The dialog is open on a Location of a class, under ZOLT.
class WorkingWithSettings : public SettingsTest {
 protected:
  WorkingWithSettings() {
    BeginWith(kZoltProtocol, {Selected(kBoth, IdAt("001A", "A", 2))});
    ReadIds();
    OpenSettings(1);
  }
};

TEST_F(WorkingWithSettings, MemoryHasNoByteToSelectAndEveryStorageType) {
  form().optSpecification.Choose(kMemorySpecification);
  EXPECT_EQ(Chosen(), "Memory Location, Msb, Unsigned Byte, Hexadecimal");
  EXPECT_EQ(Disabled(),
            "cmbClass frm_BitAddress txt_BitAddress frmSelectByte optSelectByte(0) "
            "optSelectByte(1) optSelectByte(2) CmbFunc txt_NumReg");
  EXPECT_EQ(form().frmAddress.Caption.get(), "Address");
  EXPECT_EQ(form().Frame9.Caption.get(), "Specification");
  EXPECT_EQ(form().Frame9.ToolTipText.get(), "");
}

TEST_F(WorkingWithSettings, AClassHasItsLowByteSelectedAndNoWords) {
  form().optSpecification.Choose(kMemorySpecification);
  form().opt_StorageType.Choose(kSignedWord);
  form().chk_contwrite.Enabled = false;
  form().optSpecification.Choose(kClassSpecification);
  EXPECT_EQ(Chosen(), "Class, Lsb, Unsigned Byte, Hexadecimal");
  EXPECT_EQ(Disabled(),
            "frm_BitAddress txt_BitAddress opt_StorageType(3) opt_StorageType(4) CmbFunc "
            "txt_NumReg");
  EXPECT_EQ(form().frmAddress.Caption.get(), "ID");
  EXPECT_EQ(form().Frame9.Caption.get(), "R1.2");
  EXPECT_EQ(form().Frame9.ToolTipText.get(), "R1.2");
}

TEST_F(WorkingWithSettings, AClickOnTheSpecificationThatIsSetActsAsWell) {
  form().optSpecification.Choose(kClassSpecification);
  EXPECT_EQ(Chosen(), "Class, Lsb, Unsigned Byte, Hexadecimal");
}

TEST_F(WorkingWithSettings, TheSpecificationKeepsTheTextOfTheName) {
  form().cmbActualVariable.Text = "t_flow";
  form().optSpecification.Choose(kMemorySpecification);
  EXPECT_EQ(form().cmbActualVariable.Text.get(), "t_flow");
  form().optSpecification.Choose(kClassSpecification);
  EXPECT_EQ(form().cmbActualVariable.Text.get(), "t_flow");
}

TEST_F(WorkingWithSettings, TheSpecificationKeepsTheNameUnderAListingWithAnyStorageType) {
  LoadNecListing();
  for (const auto& [byte, type] :
       {std::pair(kLsb, kBit), std::pair(kLsb, kSignedByte), std::pair(kBoth, kUnsignedWord),
        std::pair(kBoth, kSignedWord)}) {
    form().optSpecification.Choose(kClassSpecification);
    form().optSelectByte.Choose(byte);
    form().opt_StorageType.Choose(type);
    form().cmbActualVariable.Text = "t_flow";
    form().optSpecification.Choose(kMemorySpecification);
    EXPECT_EQ(form().cmbActualVariable.Text.get(), "t_flow") << type;
    EXPECT_EQ(Names(), "Tank=1 ubFlow=0") << type;
  }
}

TEST_F(WorkingWithSettings, OneByteIsAnUnsignedByteAndNoWord) {
  for (const int byte : {kMsb, kLsb}) {
    form().optSelectByte.Choose(kBoth);
    form().opt_StorageType.Choose(kSignedWord);
    form().optSelectByte.Choose(byte);
    EXPECT_EQ(form().GetStorageTypeIndex(), kUnsignedByte);
    EXPECT_EQ(Disabled(),
              "frm_BitAddress txt_BitAddress opt_StorageType(3) opt_StorageType(4) CmbFunc "
              "txt_NumReg");
  }
}

TEST_F(WorkingWithSettings, BothBytesAreAnUnsignedWordAndNoByte) {
  form().optSelectByte.Choose(kLsb);
  form().opt_StorageType.Choose(kBit);
  form().optSelectByte.Choose(kBoth);
  EXPECT_EQ(form().GetStorageTypeIndex(), kUnsignedWord);
  EXPECT_EQ(Disabled(),
            "frm_BitAddress txt_BitAddress opt_StorageType(0) opt_StorageType(1) "
            "opt_StorageType(2) CmbFunc txt_NumReg");
}

TEST_F(WorkingWithSettings, TheBitCanBeGivenExactlyForABit) {
  form().optSelectByte.Choose(kLsb);
  for (int type = kBit; type <= kSignedWord; ++type) {
    form().opt_StorageType.Choose(type);
    EXPECT_EQ(form().txt_BitAddress.Enabled.get(), type == kBit) << type;
    EXPECT_EQ(form().frm_BitAddress.Enabled.get(), type == kBit) << type;
  }
  form().opt_StorageType.Choose(kBit);
  EXPECT_TRUE(form().txt_BitAddress.Enabled);
  form().optSelectByte.Choose(kLsb);
  EXPECT_FALSE(form().txt_BitAddress.Enabled);
}

TEST_F(WorkingWithSettings, ContinuousWriteDisablesTheScanning) {
  form().chk_contwrite.Value = true;
  EXPECT_TRUE(form().chk_DisableScanning.Value);
  form().chk_contwrite.Value = false;
  EXPECT_TRUE(form().chk_DisableScanning.Value);
  form().chk_DisableScanning.Value = false;
  EXPECT_FALSE(form().chk_contwrite.Value);
}

TEST_F(WorkingWithSettings, AnAddressThatIsLeftIsPaddedAndShownInDecimal) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"1a0", "01A0 416"}, {"FFFF", "FFFF 65535"}, {"8000", "8000 32768"},
      {"", "0000 0"},      {"12345", "1234 4660"}, {"XYZ", "0000 0"},
      {"1G", "0000 0"},    {"-1", "0000 0"},       {"\xC3\x84", "0000 0"}};
  for (const auto& [typed, shown] : cases) {
    Type(form().txt_Address, typed);
    EXPECT_EQ(Address(), shown + " .0") << typed;
  }
}

TEST_F(WorkingWithSettings, ADecimalAddressThatIsLeftIsShownInHexadecimal) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"416", "01A0 416"},     {"65535", "FFFF 65535"}, {"65536", "0000 0"}, {"70000", "0000 0"},
      {"40000", "9C40 40000"}, {"0", "0000 0"},         {"x", "0000 x"},     {"", "0000 "}};
  for (const auto& [typed, shown] : cases) {
    form().txt_Address.Text = "1234";
    Type(form().txt_Address_dec, typed);
    EXPECT_EQ(Address(), shown + " .0") << typed;
  }
}

TEST_F(WorkingWithSettings, ArrowsStepTheColumn) {
  form().txt_ExcelColumn.Text = "0";
  form().ud_Col.Press(1);
  EXPECT_EQ(form().txt_ExcelColumn.Text.get(), "1");
  form().ud_Col.Press(1);
  EXPECT_EQ(form().txt_ExcelColumn.Text.get(), "2");
  form().ud_Col.Press(-1);
  form().ud_Col.Press(-1);
  EXPECT_EQ(form().txt_ExcelColumn.Text.get(), "1");
  form().txt_ExcelColumn.Text = "16384";
  form().ud_Col.Press(1);
  EXPECT_EQ(form().txt_ExcelColumn.Text.get(), "16384");
  form().txt_ExcelColumn.Text = "x";
  form().ud_Col.Press(1);
  EXPECT_EQ(form().txt_ExcelColumn.Text.get(), "1");
}

TEST_F(WorkingWithSettings, TheArrowDownComesToNoColumnThatIsHigher) {
  form().txt_ExcelColumn.Text = "0";
  form().ud_Col.Press(-1);
  EXPECT_EQ(form().txt_ExcelColumn.Text.get(), "0");
  form().ud_Col.Press(1);
  form().ud_Col.Press(-1);
  EXPECT_EQ(form().txt_ExcelColumn.Text.get(), "1");
}

TEST_F(WorkingWithSettings, ArrowsStepTheSlaveInHexadecimal) {
  const auto step = [this](const char* from, int by) {
    form().txt_SlaveAddress.Text = from;
    form().UpDown1.Press(by);
    return form().txt_SlaveAddress.Text.get();
  };
  EXPECT_EQ(step("9", 1), "A");
  EXPECT_EQ(step("A", -1), "9");
  EXPECT_EQ(step("F", 1), "F");
  EXPECT_EQ(step("0", -1), "0");
  EXPECT_EQ(step("", 1), "1");
  options().opt_Protocol.Select(kModbusProtocol);
  EXPECT_EQ(step("F", 1), "10");
  EXPECT_EQ(step("F7", 1), "F7");
  EXPECT_EQ(step("10", -1), "F");
}

// --- Names ---

TEST_F(WorkingWithSettings, OffersTheIdsOfAClassByName) {
  EXPECT_EQ(Names(), "flow=2 Status=1 Temperature=0");
  form().optSpecification.Choose(kMemorySpecification);
  EXPECT_EQ(Names(), "");
}

TEST_F(WorkingWithSettings, OffersTheVariablesOfTheMapForMemory) {
  LoadAtmegaMap();
  form().optSpecification.Choose(kMemorySpecification);
  EXPECT_EQ(Names(), "alpha=2 sbBeta=3 Table=1 zero=0");
  LoadXmegaMap();
  form().optSpecification.Choose(kMemorySpecification);
  EXPECT_EQ(Names(), "alpha=2 sbBeta=3 Table=1 zero=0");
  form().optSpecification.Choose(kClassSpecification);
  EXPECT_EQ(Names(), "flow=2 Status=1 Temperature=0");
}

TEST_F(WorkingWithSettings, OffersNoVariablesForAProcessorWithoutAMap) {
  LoadAtmegaMap();
  main().MicroType = 3;
  form().optSpecification.Choose(kMemorySpecification);
  EXPECT_EQ(Names(), "");
}

TEST_F(WorkingWithSettings, OffersBitsAndBytesOfAListingApartAndKeepsNoName) {
  LoadNecListing();
  form().optSpecification.Choose(kMemorySpecification);
  EXPECT_EQ(Names(), "Tank=1 ubFlow=0");
  PickName("Tank");
  form().opt_StorageType.Choose(kBit);
  EXPECT_EQ(Names(), "Heat=1 lamp=0");
  EXPECT_EQ(form().cmbActualVariable.Text.get(), "");
  EXPECT_EQ(form().cmbActualVariable.ListIndex.get(), -1);
  PickName("lamp");
  form().opt_StorageType.Choose(kUnsignedByte);
  EXPECT_EQ(Names(), "Tank=1 ubFlow=0");
  EXPECT_EQ(form().cmbActualVariable.Text.get(), "");
}

TEST_F(WorkingWithSettings, AStorageTypeLeavesTheNamesOfAMapAndOfIdsAlone) {
  PickName("flow");
  form().opt_StorageType.Choose(kSignedWord);
  EXPECT_EQ(form().cmbActualVariable.Text.get(), "flow");
  LoadAtmegaMap();
  form().optSpecification.Choose(kMemorySpecification);
  PickName("alpha");
  form().opt_StorageType.Choose(kBit);
  EXPECT_EQ(form().cmbActualVariable.Text.get(), "alpha");
}

TEST_F(WorkingWithSettings, RefillsTheNamesWithTheTextOrWithout) {
  form().cmbActualVariable.Text = "x";
  form().FillActualVariables(true);
  EXPECT_EQ(form().cmbActualVariable.Text.get(), "x");
  form().FillActualVariables(false);
  EXPECT_EQ(form().cmbActualVariable.Text.get(), "");
  EXPECT_EQ(Names(), "flow=2 Status=1 Temperature=0");
}

TEST_F(WorkingWithSettings, AnIdBringsItsAddressClassAndByte) {
  PickName("Temperature");
  EXPECT_EQ(Chosen(), "Class, Msb, Unsigned Byte, Hexadecimal");
  EXPECT_EQ(Address(), "001A 26 .0");
  EXPECT_EQ(form().cmbClass.Text.get(), "3");
  PickName("flow");
  EXPECT_EQ(Chosen(), "Class, Both, Unsigned Word, Hexadecimal");
  EXPECT_EQ(Address(), "0010 16 .0");
  EXPECT_EQ(form().cmbClass.Text.get(), "2");
  PickName("Status");
  EXPECT_EQ(Chosen(), "Class, Lsb, Unsigned Byte, Hexadecimal");
  EXPECT_EQ(form().cmbClass.Text.get(), "0");
}

TEST_F(WorkingWithSettings, AnIdLeavesTheClassOfARegisterAlone) {
  options().opt_Protocol.Select(kModbusProtocol);
  PickName("Temperature");
  EXPECT_EQ(Address(), "001A 26 .0");
  EXPECT_EQ(form().cmbClass.Text.get(), "2");
}

TEST_F(WorkingWithSettings, AVariableBringsItsAddressAndStorageType) {
  LoadAtmegaMap();
  form().optSpecification.Choose(kMemorySpecification);
  const std::vector<std::vector<std::string>> cases = {{"zero", "F100 61696 .", "Unsigned Word"},
                                                       {"Table", "F102 61698 .", "Unsigned Byte"},
                                                       {"sbBeta", "F107 61703 .", "Signed Byte"}};
  for (const auto& each : cases) {
    PickName(each[0]);
    EXPECT_EQ(Address(), each[1]);
    EXPECT_EQ(Chosen(), "Memory Location, Msb, " + each[2] + ", Hexadecimal");
  }
  LoadXmegaMap();
  form().optSpecification.Choose(kMemorySpecification);
  PickName("alpha");
  EXPECT_EQ(Address(), "F206 61958 .");
}

TEST_F(WorkingWithSettings, ABitStaysABitInAVariableOfTheMap) {
  LoadAtmegaMap();
  form().optSpecification.Choose(kMemorySpecification);
  form().opt_StorageType.Choose(kBit);
  form().txt_BitAddress.Text = "5";
  PickName("zero");
  EXPECT_EQ(Address(), "F100 61696 .5");
  EXPECT_EQ(form().GetStorageTypeIndex(), kBit);
}

TEST_F(WorkingWithSettings, ANameOfTheListingBringsItsAddressAndBit) {
  LoadNecListing();
  form().optSpecification.Choose(kMemorySpecification);
  form().opt_StorageType.Choose(kSignedByte);
  PickName("ubFlow");
  EXPECT_EQ(Address(), "FE20 65056 .");
  EXPECT_EQ(form().GetStorageTypeIndex(), kSignedByte);
  PickName("Tank");
  EXPECT_EQ(Address(), "0123 291 .");
  form().opt_StorageType.Choose(kBit);
  PickName("Heat");
  EXPECT_EQ(Address(), "FE21 65057 .7");
}

TEST_F(WorkingWithSettings, ATypedNameThatIsInTheListIsPicked) {
  form().cmbActualVariable.Accept("Temperature");
  EXPECT_EQ(Address(), "001A 26 .0");
  EXPECT_EQ(form().cmbActualVariable.ListIndex.get(), 2);
}

TEST_F(WorkingWithSettings, ATypedElementOfATableHasItsAddress) {
  LoadAtmegaMap();
  form().optSpecification.Choose(kMemorySpecification);
  form().cmbActualVariable.Accept("Table+3");
  EXPECT_EQ(Address(), "F105 61701 .0");
  EXPECT_EQ(form().cmbActualVariable.Text.get(), "Table+3");
  form().opt_StorageType.Choose(kUnsignedWord);
  form().cmbActualVariable.Accept("Table+3");
  EXPECT_EQ(Address(), "F108 61704 .0");
}

TEST_F(WorkingWithSettings, ATypedNameThatNobodyKnowsChangesNoAddress) {
  LoadAtmegaMap();
  form().optSpecification.Choose(kMemorySpecification);
  form().txt_Address.Text = "1234";
  for (const char* typed : {"table+3", "nobody", "", "+3"}) {
    form().cmbActualVariable.Accept(typed);
    EXPECT_EQ(form().txt_Address.Text.get(), "1234") << typed;
  }
  LoadNecListing();
  form().optSpecification.Choose(kMemorySpecification);
  form().cmbActualVariable.Accept("ubFlow+1");
  EXPECT_EQ(form().txt_Address.Text.get(), "1234");
  form().optSpecification.Choose(kClassSpecification);
  form().cmbActualVariable.Accept("Flow");
  EXPECT_EQ(form().txt_Address.Text.get(), "1234");
}

TEST_F(WorkingWithSettings, ANewIdFileIsOfferedTheNextTime) {
  CancelSettings();
  world.disk().Put("/home/user/work/other.ids", "*R2\r\nPump,2,1,L\r\n");
  main().ReadIDItems("/home/user/work/other.ids");
  OpenSettings(1);
  EXPECT_EQ(Names(), "Pump=0");
  EXPECT_EQ(form().Frame9.Caption.get(), "R2");
}

TEST_F(WorkingWithSettings, OfALongRevisionTheBeginningIsSeen) {
  const std::string revision(300, 'R');
  world.disk().Put("/a.ids", "*" + revision + "\r\nTemperature,1A,3,H\r\n");
  main().ReadIDItems("/a.ids");
  form().optSpecification.Choose(kMemorySpecification);
  form().optSpecification.Choose(kClassSpecification);
  EXPECT_EQ(form().Frame9.Caption.get(), revision.substr(0, 200) + "...");
  EXPECT_EQ(form().Frame9.ToolTipText.get(), revision.substr(0, 200) + "...");
}

}  // namespace
}  // namespace tarnlink
