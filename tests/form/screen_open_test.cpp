// Opening a screen file: the controls that it builds, and what becomes of the screen before it.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/desk_fixture.h"
#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kOther = "/home/user/Documents/other.wcr";

// A memory Location named `alias` whose name box stands at `left`, `top`.
std::string MemoryLine(const std::string& alias, int left, int top, int scan_flags = 0) {
  return R"("L",0,3,"01A0",0,")" + alias + R"(","v",0,0,)" + std::to_string(scan_flags) +
         R"(,0,"0",0,)" + std::to_string(top) + ",3000," + std::to_string(top) + "," +
         std::to_string(left) + R"(,"0")";
}

// A Location by class and ID under tag "I" or "M".
std::string IdLine(char tag, int storage_type, int select_byte, const std::string& rest = {}) {
  return std::string("\"") + tag + R"(",1,)" + std::to_string(storage_type) +
         R"(,"0012",0,"Status","Not Assigned",0,0,0,0,"0",1,900,2400,900,240,"1",3,)" +
         std::to_string(select_byte) + rest;
}

class OpeningAScreen : public DeskTest {
 protected:
  OpeningAScreen() { StartProgram(); }
};

TEST_F(OpeningAScreen, BuildsEveryControlOfTheFile) {
  OpenText(FileText(
      {"16744576", R"("L",0,3,"01A0",0,"Flow","t_flow",0,1,0,0,"0",0,600,2400,600,240,"0")",
       R"("I",1,3,"0012",0,"Status","Not Assigned",0,0,0,0,"0",1,900,2400,900.5,240.25,"1",3,2)",
       R"("T","Boiler 1",120,240,"Arial",8.25,#TRUE#,#FALSE#,255)",
       R"("T","Small",130.5,-20,"Courier",6,#FALSE#,#TRUE#,16711680)"}));
  // A check box keeps the distance that the template's has from its name box.
  EXPECT_EQ(main().RAM_LOC_CHECK(0).Left - main().RAM_LOC_TEXT(0).Left, -305);
  EXPECT_EQ(Screen(),
            "colour FF8080\n"
            "RAM_LOC_TEXT(1) \"Flow\" at 240,600 tip \"t_flow\" back FFFFFF\n"
            "RAM_LOC_VAL(1) \"Value 1\" at 2400,600 tip \"t_flow\" back FFFFFF\n"
            "RAM_LOC_CHECK(1) on at -65,650 hidden\n"
            "RAM_LOC_TEXT(2) \"Status\" at 240.25,900.5 tip \"Not Assigned\" back FFFFFF\n"
            "RAM_LOC_VAL(2) \"Value 2\" at 2400,900 tip \"Not Assigned\" back FFFFFF\n"
            "RAM_LOC_CHECK(2) on at -64.75,950.5 hidden\n"
            "lbl_TextInfo(1) \"Boiler 1\" at 240,120 font \"Arial\" 8.25 bold colour 0000FF "
            "back FF8080\n"
            "lbl_TextInfo(2) \"Small\" at -20,130.5 font \"Courier\" 6 italic colour FF0000 "
            "back FF8080\n");
  const std::string tip = main().lbl_TextInfo(0).ToolTipText;
  EXPECT_NE(tip, "");
  for (int j = 1; j <= 2; ++j) EXPECT_EQ(main().lbl_TextInfo(j).ToolTipText.get(), tip);
  EXPECT_EQ(Counts(), "MaxId 2, LocationCount 2, TextInfoCount 2");
  EXPECT_EQ(Panel(2), "Locations : 2");
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
  EXPECT_EQ(main().CurrentTarnLinkFile, kScreen);
  EXPECT_FALSE(main().WCRChanged);
  EXPECT_FALSE(main().building);
  EXPECT_TRUE(main().form.Painting);
  EXPECT_EQ(History(main().M_fileHist), std::string(kScreen) + "\n[<Free>]\n[<Free>]\n[<Free>]\n");
}

TEST_F(OpeningAScreen, FillsTheWholeLocation) {
  OpenText(FileText(
      {"255", R"("M",1,4,"12F",7,"A","B",9,1,3,1,"27",2,10,20,30,40,"F",5,1,"&H10",4,#TRUE#)",
       R"("L",0,0,"01A0",5,"C","D",1,0,2,0,"0",3,1,2,3,4,"A")"}));
  Location modbus;
  modbus.Specification = 1;
  modbus.StorageType = 4;
  modbus.Address = "12F ";
  modbus.BitAddress = 7;
  modbus.Alias = "A";
  modbus.ActualVariable = "B";
  modbus.SpareByte = 9;
  modbus.LogEnable = 1;
  modbus.ScanFlags = 3;
  modbus.DDEEnable = 1;
  modbus.ExcelColumn = "27";
  modbus.Representation = 2;
  modbus.LocSlaveAddress = "F";
  modbus.Class = 5;
  modbus.SelectByte = 1;
  modbus.FunctionCode = "&H10";
  modbus.NumReg = 4;
  modbus.RegisterFollower = true;
  EXPECT_EQ(main().Locations[1], modbus);
  Location memory;
  memory.Specification = 0;
  memory.StorageType = 0;
  memory.Address = "01A0";
  memory.BitAddress = 5;
  memory.Alias = "C";
  memory.ActualVariable = "D";
  memory.SpareByte = 1;
  memory.ScanFlags = 2;
  memory.ExcelColumn = "0";
  memory.Representation = 3;
  memory.LocSlaveAddress = "A";
  EXPECT_EQ(main().Locations[2], memory);
}

TEST_F(OpeningAScreen, LeavesTheDefaultsInLocationsThatTheFileDoesNotHave) {
  main().Locations[5].Alias = "stale";
  main().Locations[0].RawValue = 9;
  OpenText(FileText({"255", MemoryLine("Flow", 0, 0)}));
  Location initial;
  initial.LocSlaveAddress = "0";
  EXPECT_EQ(main().Locations[0], initial);
  EXPECT_EQ(main().Locations[5], initial);
}

TEST_F(OpeningAScreen, CheckBoxesKeepTheirDistanceFromTheNameBoxOneAfterTheOther) {
  OpenText(FileText({"255", MemoryLine("a", 1000, 0), MemoryLine("b", 400, 300),
                     MemoryLine("c", -700, 600), MemoryLine("d", 8000, 100)}));
  const float distance = main().RAM_LOC_CHECK(0).Left - main().RAM_LOC_TEXT(0).Left;
  for (int i = 1; i <= 4; ++i) {
    EXPECT_EQ(main().RAM_LOC_CHECK(i).Left - main().RAM_LOC_TEXT(i).Left, distance) << i;
    EXPECT_EQ(main().RAM_LOC_CHECK(i).Top.get(), main().RAM_LOC_TEXT(i).Top + 50) << i;
  }
}

TEST_F(OpeningAScreen, CheckBoxesShowTheFirstScanFlagAndItalicsAnyFlag) {
  OpenText(
      FileText({"255", MemoryLine("a", 0, 0, 0), MemoryLine("b", 0, 0, 1), MemoryLine("c", 0, 0, 2),
                MemoryLine("d", 0, 0, 3), MemoryLine("e", 0, 0, 128)}));
  const std::vector<bool> checked = {true, false, true, false, true};
  for (int i = 1; i <= 5; ++i) {
    EXPECT_EQ(main().RAM_LOC_CHECK(i).Value, checked[static_cast<std::size_t>(i - 1)]) << i;
    EXPECT_EQ(main().RAM_LOC_TEXT(i).TextFont->italic, i != 1) << i;
    EXPECT_FALSE(main().RAM_LOC_VAL(i).TextFont->italic) << i;
  }
}

TEST_F(OpeningAScreen, CheckBoxesAreVisibleWithTheScanningBoxOnly) {
  for (const std::string on : {"1", "0"}) {
    Store("Communication", "Scanning", on);
    StartProgram();
    OpenText(FileText({"255", MemoryLine("a", 0, 0), IdLine('I', 3, 2)}));
    for (int i = 1; i <= 2; ++i) EXPECT_EQ(main().RAM_LOC_CHECK(i).Visible, on == "1") << i;
  }
}

TEST_F(OpeningAScreen, RegisterBlocksHaveTheirColour) {
  OpenText(FileText(
      {"255", IdLine('M', 3, 2, R"(,"&H03",1,#FALSE#)"), IdLine('M', 3, 2, R"(,"&H03",2,#FALSE#)"),
       IdLine('M', 3, 2, R"(,"&H03",1,#TRUE#)"), IdLine('M', 3, 2, R"(,"&H03",0,#FALSE#)"),
       IdLine('M', 3, 2, R"(,"&H03",-1,#FALSE#)"), MemoryLine("a", 0, 0)}));
  const std::vector<bool> in_block = {false, true, true, false, false, false};
  for (int i = 1; i <= 6; ++i) {
    const Colour expected = in_block[static_cast<std::size_t>(i - 1)] ? 0xFFFF00 : 0xFFFFFF;
    EXPECT_EQ(main().RAM_LOC_TEXT(i).BackColor.get(), expected) << i;
    EXPECT_EQ(main().RAM_LOC_VAL(i).BackColor.get(), expected) << i;
  }
}

TEST_F(OpeningAScreen, ALocationThatShowsBothBytesIsAWord) {
  for (const char tag : {'I', 'M'}) {
    const std::string rest = tag == 'M' ? R"(,"&H03",1,#FALSE#)" : "";
    for (const int select : {0, 1, 2, 3, 255}) {
      for (const int storage : {0, 1, 2, 3, 4, 9}) {
        OpenText(FileText({"255", IdLine(tag, storage, select, rest)}));
        const int expected = select >= 2 && storage != 4 ? 3 : storage;
        EXPECT_EQ(main().Locations[1].StorageType, expected) << tag << storage << select;
      }
    }
  }
}

TEST_F(OpeningAScreen, AMemoryLocationKeepsItsStorageType) {
  for (const int storage : {0, 1, 2, 3, 4}) {
    OpenText(FileText({"255", R"("L",0,)" + std::to_string(storage) +
                                  R"(,"01A0",0,"a","v",0,0,0,0,"0",0,1,2,3,4,"0")"}));
    EXPECT_EQ(main().Locations[1].StorageType, storage);
  }
}

TEST_F(OpeningAScreen, KeepsTheNameOfAFontThatThereIsNot) {
  OpenText(FileText({"255", R"("T","x",1,2,"No Such Font At All",8.25,#FALSE#,#FALSE#,0)"}));
  EXPECT_EQ(main().lbl_TextInfo(1).TextFont->name, "No Such Font At All");
  Save();
  EXPECT_NE(world.disk().Get(kScreen).find("\"No Such Font At All\""), std::string::npos);
}

TEST_F(OpeningAScreen, ReplacesTheScreenBeforeIt) {
  OpenText(FileText({"255", MemoryLine("a", 0, 0), MemoryLine("b", 0, 0),
                     R"("T","x",1,2,"Arial",8,#FALSE#,#FALSE#,0)"}));
  main().RAM_LOC_VAL(1).Text = "42";
  OpenText(FileText({"77", MemoryLine("c", 5, 6)}), kOther);
  EXPECT_EQ(Counts(), "MaxId 1, LocationCount 1, TextInfoCount 0");
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Text.get(), "c");
  EXPECT_EQ(main().RAM_LOC_VAL(1).Text.get(), "Value 1");
  EXPECT_EQ(main().form.BackColor.get(), 77);
  EXPECT_EQ(main().CurrentTarnLinkFile, kOther);
  EXPECT_EQ(Panel(2), "Locations : 1");
}

TEST_F(OpeningAScreen, TheSameFileAgainBuildsTheSameScreen) {
  OpenText(FileText({"255", MemoryLine("a", 0, 0), IdLine('I', 3, 2),
                     R"("T","x",1,2,"Arial",8,#FALSE#,#FALSE#,0)"}));
  const std::string first = Screen();
  Open(kScreen);
  EXPECT_EQ(Screen(), first);
}

TEST_F(OpeningAScreen, ItsOwnFileCanBeGivenByTheFieldThatNamesIt) {
  OpenText(FileText({"255", MemoryLine("a", 0, 0)}));
  program().screen.OpenTarnLinkFileBuildScreen(main().CurrentTarnLinkFile);
  EXPECT_EQ(main().CurrentTarnLinkFile, kScreen);
  EXPECT_EQ(Counts(), "MaxId 1, LocationCount 1, TextInfoCount 0");
}

TEST_F(OpeningAScreen, AFirstLineAloneIsAnEmptyScreen) {
  OpenText("77\r\n");
  EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 0");
  EXPECT_EQ(options().opt_Protocol.Selected(), 0);
  EXPECT_EQ(Screen(), "colour 00004D\n");
  EXPECT_EQ(main().CurrentTarnLinkFile, kScreen);
  EXPECT_EQ(Panel(2), "Locations : 0");
}

TEST_F(OpeningAScreen, AScreenOfLabelsKeepsItsColour) {
  OpenText(FileText({"77", R"("T","x",1,2,"Arial",8,#FALSE#,#FALSE#,0)"}));
  EXPECT_EQ(main().form.BackColor.get(), 77);
  EXPECT_EQ(main().lbl_TextInfo(1).BackColor.get(), 77);
  Ok();
  EXPECT_EQ(main().form.BackColor.get(), 77);
  EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 1");
}

TEST_F(OpeningAScreen, PassesOverFieldsThatAreNoTag) {
  OpenText(FileText({"77", "\"X\",1,2", "", MemoryLine("a", 0, 0) + ",7,8", "\"l\"", "5",
                     R"("T","x",1,2,"Arial",8,#FALSE#,#FALSE#,0)"}));
  EXPECT_EQ(Counts(), "MaxId 1, LocationCount 1, TextInfoCount 1");
}

TEST_F(OpeningAScreen, TakesBareTagsPlainLineEndsAndOtherCodings) {
  OpenText("77\n" + MemoryLine("W\xE4rme", 0, 0) + "\nT,\"\xC4\",1,2,Arial,8,#false#,#FALSE#,0");
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Text.get(), "Wärme");
  EXPECT_EQ(main().lbl_TextInfo(1).Caption.get(), "Ä");
}

TEST_F(OpeningAScreen, EndsARunUnderWay) {
  OpenText(FileText({"255", MemoryLine("a", 0, 0)}));
  main().Toolbar1(2).Press();
  world.Advance(20ms);
  ASSERT_EQ(world.port().frames().size(), 1U);
  main().filelogging = true;
  NotingRecorder recorder(main());
  ScreenCommands screen(main(), options(), program().run, recorder, program().history,
                        program().addresses);

  OpenText(FileText({"255", MemoryLine("b", 0, 0), MemoryLine("c", 0, 0)}), kOther);
  EXPECT_EQ(recorder.TakeNotes(), "close log\n");
  EXPECT_FALSE(main().CommRunning);
  EXPECT_FALSE(main().Comm->PortOpen());
  EXPECT_FALSE(main().Comm_Timer->Enabled());
  EXPECT_FALSE(main().tmr_noresponse->Enabled());
  EXPECT_EQ(main().MsgPointer, 0);
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_TRUE(main().M_options.Enabled);
  // Nothing of the old run stirs any more, and a new one works.
  world.Advance(60s);
  EXPECT_EQ(world.port().frames().size(), 1U);
  EXPECT_EQ(world.port().opens(), 1);
  main().Toolbar1(2).Press();
  world.Advance(20ms);
  EXPECT_EQ(world.port().frames().size(), 2U);
}

TEST_F(OpeningAScreen, EndsARunEvenIfItsFileCannotBeRead) {
  OpenText(FileText({"255", MemoryLine("a", 0, 0)}));
  main().Toolbar1(2).Press();
  world.Advance(20ms);
  OpenFails(53, kOther);
  EXPECT_FALSE(main().CommRunning);
  EXPECT_FALSE(main().Comm->PortOpen());
  EXPECT_TRUE(main().M_options.Enabled);
  world.Advance(60s);
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(OpeningAScreen, ClosesThePortThatAWatchdogHasOpenedAfterTheRun) {
  OpenText(FileText({"255", MemoryLine("a", 0, 0)}));
  main().Toolbar1(2).Press();
  world.dialogs().ExpectMessageBox("Slave is not responding", "Message Timeout");
  world.Advance(10s);
  ASSERT_TRUE(main().Comm->PortOpen());
  Open(kScreen);
  EXPECT_FALSE(main().Comm->PortOpen());
  world.Advance(10s);
  EXPECT_FALSE(main().Comm->PortOpen());
}

TEST_F(OpeningAScreen, AsksAboutAChangedScreenBeforeItAsksForAFile) {
  OpenText("77\r\n");
  main().form.BackColor = 88;
  ChangeScreen();
  ExpectScreenQuestion().Press(Answer::kYes);
  OpenText("99\r\n", kOther);
  EXPECT_EQ(world.disk().Get(kScreen), "88\r\n");
  EXPECT_EQ(main().CurrentTarnLinkFile, kOther);

  main().form.BackColor = 11;
  ChangeScreen();
  ExpectScreenQuestion().Press(Answer::kNo);
  Open(kScreen);
  EXPECT_EQ(world.disk().Get(kOther), "99\r\n");
  EXPECT_EQ(main().form.BackColor.get(), 88);
  EXPECT_FALSE(main().WCRChanged);
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
}

TEST_F(OpeningAScreen, DoesNotGoOnWhenTheChangedScreenCouldNotBeSaved) {
  OpenText("77\r\n");
  ChangeScreen();
  world.disk().Forbid(kScreen);
  ExpectScreenQuestion().Press(Answer::kYes);
  ExpectSaveFailure(70);
  main().M_fileopen.Press();
  EXPECT_TRUE(main().WCRChanged);
  EXPECT_EQ(main().form.BackColor.get(), 77);
}

TEST_F(OpeningAScreen, ACancelledDialogLeavesTheScreen) {
  OpenText(FileText({"77", MemoryLine("a", 0, 0)}));
  const std::string before = Screen();
  main().Toolbar1(2).Press();
  TakeNotes();
  world.dialogs().ExpectOpenFile("Open").Cancel();
  main().M_fileopen.Press();
  EXPECT_EQ(TakeNotes(), "");
  EXPECT_EQ(Screen(), before);
  EXPECT_TRUE(main().CommRunning);
  EXPECT_EQ(world.dialogs().last_file_request().filter, "Windows Tarnlink Screens (*.wcr)|*.wcr");
  EXPECT_EQ(world.dialogs().last_file_request().extension, "wcr");
}

TEST_F(OpeningAScreen, RemembersTheFolder) {
  OpenText("77\r\n", "/jobs/a.wcr");
  world.dialogs().ExpectOpenFile("Open").Cancel();
  main().M_fileopen.Press();
  EXPECT_EQ(world.dialogs().last_file_request().folder, "/jobs");
}

TEST_F(OpeningAScreen, Builds512LocationsAndThousandsOfLabels) {
  std::vector<std::string> lines = {"77"};
  for (int i = 0; i < 512; ++i) lines.push_back(MemoryLine("a" + std::to_string(i + 1), i, i));
  for (int i = 0; i < 2000; ++i) {
    lines.push_back(R"("T","x",1,2,"Arial",8,#FALSE#,#FALSE#,0)");
  }
  OpenText(FileText(lines));
  EXPECT_EQ(Counts(), "MaxId 512, LocationCount 512, TextInfoCount 2000");
  EXPECT_EQ(main().RAM_LOC_TEXT(512).Text.get(), "a512");
  EXPECT_EQ(main().RAM_LOC_VAL(512).Text.get(), "Value 512");
}

}  // namespace
}  // namespace tarnlink
