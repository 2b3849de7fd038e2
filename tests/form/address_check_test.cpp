// Opening a screen whose variables have moved in the memory map since it was saved.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/desk_fixture.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

constexpr const char* kMap = "/jobs/a.map";
constexpr const char* kListing = "/jobs/a.lst";

// A memory Location with that variable, address and storage type.
std::string Line(const std::string& variable, const std::string& address,
                 int storage = kUnsignedByte) {
  return R"("L",0,)" + std::to_string(storage) + ",\"" + address + R"(",0,"a",")" + variable +
         R"(",0,0,0,0,"0",0,1,2,3,4,"0")";
}

class AddressCheckTest : public DeskTest {
 protected:
  AddressCheckTest() {
    StartProgram();
    world.disk().Put(kMap,
                     "__cpu_name = ATmega64\nENTRY LIST\nflow DATA 00000060\nfan DATA 00000062\n"
                     "table DATA 00000070\n");
    world.disk().Put(kListing, "Target CPU\nDATA\n" + Symbol("flow", "FE20") +
                                   Symbol("low", "0064") + "BITS\n" + Symbol("pump", "FE21.3"));
  }

  static std::string Symbol(const std::string& label, const std::string& rest) {
    return std::string(11, ' ') + label + std::string(24 - label.size(), ' ') + rest + "\n";
  }
  // The project's map, as each opening of a screen reads it again.
  void Load(const std::string& path) {
    main().trvProject.InitNewProjectTree();
    main().trvProject.AddFileToProject("lst", path);
    program().map.LoadClass7(path);
  }
  void PutLines(std::vector<std::string> lines) {
    lines.insert(lines.begin(), "255");
    world.disk().Put(kScreen, FileText(lines));
  }
  void OpenLines(const std::vector<std::string>& lines) {
    PutLines(lines);
    Open(kScreen);
  }
  // Opens the screen, answers the one question and says which addresses there are then.
  std::string OpenAndAnswer(const std::string& kind, Answer answer) {
    world.dialogs().ExpectOpenFile("Open").Give(kScreen);
    world.dialogs()
        .ExpectMessageBox(
            {.text = "Addresses are not corresponding with " + kind + " file. Adapt addresses ?",
             .title = "TarnLink",
             .icon = Icon::kExclamation,
             .buttons = Buttons::kOkCancel})
        .Press(answer);
    main().M_fileopen.Press();
    return Addresses();
  }
  // The Locations' addresses, a blank behind each.
  std::string Addresses() {
    std::string text;
    for (int i = 1; i <= main().MaxId; ++i) text += main().Locations[i].Address + " ";
    return text;
  }
};

TEST_F(AddressCheckTest, NothingIsAskedWhileEveryAddressIsThatOfTheMap) {
  Load(kMap);
  OpenLines({Line("flow", "F060"), Line("fan", "F062"), Line("table+2", "F074", kUnsignedWord),
             Line("table+2", "F072")});
  EXPECT_EQ(Addresses(), "F060 F062 F074 F072 ");
}

TEST_F(AddressCheckTest, OkGivesAllThatMovedTheirNewAddressesAndIsAskedForOnce) {
  Load(kMap);
  PutLines({Line("flow", "F060"), Line("fan", "F064"), Line("flow", "01A0", kSignedWord),
            Line("table+2", "0000", kUnsignedWord), Line("table+2", "0000", kSignedByte)});
  EXPECT_EQ(OpenAndAnswer("MAP", Answer::kOk), "F060 F062 F060 F074 F072 ");
}

TEST_F(AddressCheckTest, CancelLeavesAllAddressesAndIsAskedForOnce) {
  Load(kMap);
  PutLines({Line("fan", "F064"), Line("flow", "F070"), Line("fan", "F062")});
  EXPECT_EQ(OpenAndAnswer("MAP", Answer::kCancel), "F064 F070 F062 ");
}

TEST_F(AddressCheckTest, EachOpeningAsksAnew) {
  Load(kMap);
  PutLines({Line("fan", "F064")});
  EXPECT_EQ(OpenAndAnswer("MAP", Answer::kCancel), "F064 ");
  EXPECT_EQ(OpenAndAnswer("MAP", Answer::kOk), "F062 ");
  // The file still has the old address.
  EXPECT_EQ(OpenAndAnswer("MAP", Answer::kOk), "F062 ");
}

TEST_F(AddressCheckTest, TheListingHasItsOwnQuestion) {
  Load(kListing);
  PutLines({Line("flow", "FE20"), Line("flow", "F000", kUnsignedWord)});
  EXPECT_EQ(OpenAndAnswer("NEC", Answer::kOk), "FE20 FE20 ");
}

TEST_F(AddressCheckTest, ABitKeepsItsAddressWhateverTheMapSays) {
  Load(kListing);
  OpenLines({Line("pump", "F000", kBit), Line("flow", "F000", kBit)});
  EXPECT_EQ(Addresses(), "F000 F000 ");
  Load(kMap);
  OpenLines({Line("fan", "F000", kBit)});
  EXPECT_EQ(Addresses(), "F000 ");
}

TEST_F(AddressCheckTest, ANameThatTheMapDoesNotHaveKeepsItsAddress) {
  Load(kMap);
  OpenLines({Line("gone", "F064"), Line("Flow", "F000"), Line("", "F000"),
             Line("Not Assigned", "F000"), Line("low", "F000"), Line("flow ", "F000")});
  EXPECT_EQ(Addresses(), "F064 F000 F000 F000 F000 F000 ");
}

TEST_F(AddressCheckTest, NothingIsAskedWithoutAMap) {
  OpenLines({Line("flow", "F000"), Line("fan", "F000")});
  EXPECT_EQ(Addresses(), "F000 F000 ");
}

TEST_F(AddressCheckTest, NothingIsAskedUnderARenesas) {
  Load(kMap);
  Load(kListing);
  options().MicroSelect.Choose(3);
  OpenLines({Line("flow", "F000"), Line("low", "F000"), Line("pump", "F000", kBit)});
  EXPECT_EQ(Addresses(), "F000 F000 F000 ");
}

TEST_F(AddressCheckTest, OnlyTheFamilysOwnListCounts) {
  Load(kListing);
  options().MicroSelect.Choose(0);
  OpenLines({Line("flow", "F000")});
  EXPECT_EQ(Addresses(), "F000 ");
}

TEST_F(AddressCheckTest, DataIdsAndRegistersAreNotCompared) {
  Load(kMap);
  OpenLines(
      {R"("I",1,3,"0012",0,"a","flow",0,0,0,0,"0",1,900,2400,900,240,"1",3,2)",
       R"("M",1,3,"0012",0,"a","flow",0,0,0,0,"0",1,900,2400,900,240,"1",3,2,"&H03",1,#FALSE#)"});
  EXPECT_EQ(Addresses(), "0012 0012 ");
}

TEST_F(AddressCheckTest, TheMarkOfAChangedScreenIsLostAtTheEnd) {
  Load(kMap);
  PutLines({Line("fan", "F064")});
  EXPECT_EQ(OpenAndAnswer("MAP", Answer::kOk), "F062 ");
  EXPECT_FALSE(main().WCRChanged);
  // So a further opening asks nothing about saving, and the old address comes back.
  EXPECT_EQ(OpenAndAnswer("MAP", Answer::kCancel), "F064 ");
}

TEST_F(AddressCheckTest, TheNewAddressesAreSavedWithTheScreen) {
  Load(kMap);
  PutLines({Line("fan", "F064")});
  OpenAndAnswer("MAP", Answer::kOk);
  Save();
  EXPECT_NE(world.disk().Get(kScreen).find("\"F062\""), std::string::npos);
  EXPECT_EQ(world.disk().Get(kScreen).find("F064"), std::string::npos);
  Open(kScreen);
  EXPECT_EQ(Addresses(), "F062 ");
}

TEST_F(AddressCheckTest, AnAddressOfTheListingThatIsShorterThanFourDigitsIsFilledWithZeros) {
  Load(kListing);
  OpenLines({Line("low", "0064")});
  EXPECT_EQ(Addresses(), "0064 ");
  PutLines({Line("low", "0065")});
  EXPECT_EQ(OpenAndAnswer("NEC", Answer::kOk), "0064 ");
}

TEST_F(AddressCheckTest, AnAddressFollowsTheMapAsItIsWhenTheScreenIsOpened) {
  Load(kMap);
  world.disk().Put(kMap, "__cpu_name = ATmega64\nENTRY LIST\nflow DATA 00000080\n");
  main().trvProject.AddFileToProject("lst", kMap);
  OpenLines({Line("flow", "F060")});
  EXPECT_EQ(Addresses(), "F060 ");
  // The opening has read the map of the project at its end.
  EXPECT_EQ(OpenAndAnswer("MAP", Answer::kOk), "F080 ");
}

TEST_F(AddressCheckTest, TheSampleScreenFitsTheSampleMapAndMovesWithTheOtherOne) {
  world.disk().Put("/jobs/atmega.map", SampleBytes("atmega.map"));
  world.disk().Put("/jobs/xmega.map", SampleBytes("xmega.map"));
  world.disk().Put(kScreen, SampleBytes("boiler.wcr"));
  Load("/jobs/atmega.map");
  Open(kScreen);
  EXPECT_EQ(main().Locations[1].Address, "F000");
  Load("/jobs/xmega.map");
  Load("/jobs/xmega.map");
  OpenAndAnswer("MAP", Answer::kOk);
  EXPECT_EQ(main().Locations[1].ActualVariable, "flow_temperature");
  EXPECT_EQ(main().Locations[1].Address, "F40A");
}

}  // namespace
}  // namespace tarnlink
