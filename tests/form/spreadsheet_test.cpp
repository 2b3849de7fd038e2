// The spreadsheet of a run: what reaches which cell, and what the user is told.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kFolder = "/home/user/log";
constexpr const char* kProgram = "/usr/bin/table";

Location Linked(Location location, const std::string& column) {
  location.DDEEnable = 1;
  location.ExcelColumn = column;
  return location;
}

// Hands the run's hooks to the spreadsheet alone.
class SpreadsheetOnly final : public RunRecorder {
 public:
  explicit SpreadsheetOnly(SpreadsheetLink& link) : link_(link) {}
  void PrepareLog() override {}
  void StartSpreadsheet() override { link_.Start(); }
  void LogRequest(int) override {}
  void RecordValue(int index) override { link_.Poke(index); }
  void LogUnreadable(int) override {}
  void EndLogRow() override {}
  void CloseLogFile() override { link_.Save(); }

 private:
  SpreadsheetLink& link_;
};

class Spreadsheet : public MonitorTest {
 protected:
  Spreadsheet() {
    RecordIn(only_);
    world.disk().MakeFolder(kFolder);
    monitor.options.txt_LogPath.Text = kFolder;
    monitor.options.chk_GeneralLogging(1).Value = true;
    monitor.main.CurrentTarnLinkFile = "/home/user/Boiler 1.wcr";
  }

  // The workbooks that stand in the log's folder.
  std::vector<std::string> Books() { return world.disk().ListFolder(kFolder); }
  // What the disk holds of the one that the first run made.
  std::string Book(const std::string& name = "Boiler 1 2024-03-05 14-07-09.xlsx") {
    return world.disk().Get(std::string(kFolder) + "/" + name);
  }
  // Answers at once, so that a Location takes a tick.
  void SlaveHolds(std::map<std::string, std::string> digits_by_address) {
    MonitorTest::SlaveHolds(std::move(digits_by_address), 0);
  }
  void Rounds(int rounds, int locations) { Advance(rounds * locations * kExchange); }
  void InstallProgram() {
    world.disk().Put(kProgram, "program");
    monitor.options.txt_PathToExcel.Text = kProgram;
  }
  ScriptedDialog& ExpectTold(int code, const std::string& path) {
    return ExpectCritical("Internal System Error # " + std::to_string(code) +
                              " occured, please contact distributor.\r\nDuring writing "
                              "spreadsheet " +
                              path,
                          "Internal System Error");
  }
  ScriptedDialog& ExpectStartRefused() {
    return ExpectCritical("Error in starting Excel Application, remove all DDE enables !",
                          "Program Error");
  }

  static constexpr int kExchange = 20;  // ms

 private:
  SpreadsheetLink link_{monitor.main, monitor.options};
  SpreadsheetOnly only_{link_};
};

TEST_F(Spreadsheet, NamesStandInRowOneAndEachRoundHasARow) {
  Screen({Linked(ByteAt("0001", kDecimal), "3"), Linked(ByteAt("0002", kDecimal), "1")});
  SlaveHolds({{"0001", "2A"}, {"0002", "FF"}});
  Start();
  Rounds(3, 2);
  Stop();
  Advance(0);
  EXPECT_EQ(Book(),
            "Sheet1\nR1C1 text at 0002\nR1C3 text at 0001\nR2C1 number 255\nR2C3 number 42\n"
            "R3C1 number 255\nR3C3 number 42\nR4C1 number 255\nR4C3 number 42\n");
}

TEST_F(Spreadsheet, TheNameIsSentAgainAtEveryPoll) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  SlaveHolds({{"0001", "2A"}});
  Start();
  Rounds(1, 1);
  monitor.main.RAM_LOC_TEXT(1).Text = "Flow";
  Rounds(1, 1);
  Stop();
  Advance(0);
  EXPECT_EQ(Book(), "Sheet1\nR1C1 text Flow\nR2C1 number 42\nR3C1 number 42\n");
}

TEST_F(Spreadsheet, OnlyDecimalNumbersAreNumbers) {
  Screen({Linked(WordAt("0001", kDecimal), "1"), Linked(WordAt("0002", kHexadecimal), "2"),
          Linked(ByteAt("0003", kBinary), "3"), Linked(ByteAt("0004", kOctal), "4")});
  SlaveHolds({{"0001", "FFFE"}, {"0002", "0010"}, {"0003", "02"}, {"0004", "0A"}});
  Start();
  Rounds(1, 4);
  Stop();
  Advance(0);
  EXPECT_EQ(Book(),
            "Sheet1\nR1C1 text at 0001\nR1C2 text at 0002\nR1C3 text at 0003\nR1C4 text at 0004\n"
            "R2C1 number -2\nR2C2 text 10\nR2C3 text 00000010\nR2C4 text 12\n");
}

// What stands in a decimal box, and whether the cell can be reckoned with.
TEST_F(Spreadsheet, ABoxThatShowsNoPlainNumberBecomesAText) {
  struct Case {
    std::string shown;
    std::string cell;
  };
  SpreadsheetLink link(monitor.main, monitor.options);
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  link.Start();
  for (const Case& each : std::vector<Case>{{"0", "number 0"},
                                            {"-32768", "number -32768"},
                                            {"TRUE", "text TRUE"},
                                            {"can not read", "text can not read"},
                                            {"007", "text 007"},
                                            {"-", "text -"},
                                            {"1.5", "text 1.5"},
                                            {" 1", "text  1"},
                                            {"1234567890123456", "text 1234567890123456"},
                                            {"", "text "}}) {
    monitor.main.RAM_LOC_VAL(1).Text = each.shown;
    link.Poke(1);
    link.Save();
    Advance(0);
    EXPECT_EQ(Book(), "Sheet1\nR1C1 text at 0001\nR2C1 " + each.cell + "\n");
  }
}

TEST_F(Spreadsheet, ALocationThatIsNotLinkedGetsNoPoke) {
  Screen({ByteAt("0001", kDecimal), Linked(ByteAt("0002", kDecimal), "2")});
  SlaveHolds({{"0001", "01"}, {"0002", "02"}});
  Start();
  Rounds(1, 2);
  Stop();
  Advance(0);
  EXPECT_EQ(Book(), "Sheet1\nR1C2 text at 0002\nR2C2 number 2\n");
}

TEST_F(Spreadsheet, WithoutALinkedLocationNothingHappens) {
  InstallProgram();
  Screen({ByteAt("0001"), Linked(ByteAt("0002"), "1")});
  Delete(2);
  SlaveHolds({{"0001", "01"}});
  Start();
  Rounds(2, 2);
  EXPECT_EQ(Panel(4), "Communication Running");
  Stop();
  EXPECT_TRUE(Books().empty());
  EXPECT_TRUE(world.shell().started.empty());
}

TEST_F(Spreadsheet, WithoutTheOptionNothingHappens) {
  InstallProgram();
  monitor.options.chk_GeneralLogging(1).Value = false;
  Screen({Linked(ByteAt("0001"), "1")});
  SlaveHolds({{"0001", "01"}});
  Start();
  Rounds(2, 1);
  Stop();
  EXPECT_TRUE(Books().empty());
  EXPECT_TRUE(world.shell().started.empty());
}

TEST_F(Spreadsheet, AMissingAnswerLeavesTheCellEmpty) {
  ChooseProtocol(kZoltProtocol);
  Screen({Linked(ByteAt("0001"), "1"), Linked(ByteAt("0002"), "2")});
  Start();
  Advance(7000);
  Stop();
  EXPECT_EQ(Book(), "Sheet1\n");
}

TEST_F(Spreadsheet, ADeletedLastLocationLetsTheRoundsOverwriteTheirRow) {
  Screen({Linked(ByteAt("0001", kDecimal), "1"), Linked(ByteAt("0002", kDecimal), "2")});
  Delete(2);
  SlaveHolds({{"0001", "01"}});
  Start();
  Rounds(2, 2);
  SlaveHolds({{"0001", "02"}});
  Rounds(2, 2);
  Stop();
  Advance(0);
  EXPECT_EQ(Book(), "Sheet1\nR1C1 text at 0001\nR2C1 number 2\n");
}

TEST_F(Spreadsheet, EveryRunBeginsAtRowTwoOfAWorkbookOfItsOwn) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  SlaveHolds({{"0001", "01"}});
  Start();
  Rounds(2, 1);
  Stop();
  SlaveHolds({{"0001", "02"}});
  Start();
  Rounds(1, 1);
  Stop();
  Advance(0);
  EXPECT_EQ(Books(), (std::vector<std::string>{"Boiler 1 2024-03-05 14-07-09 (2).xlsx",
                                               "Boiler 1 2024-03-05 14-07-09.xlsx"}));
  EXPECT_EQ(Book(), "Sheet1\nR1C1 text at 0001\nR2C1 number 1\nR3C1 number 1\n");
  EXPECT_EQ(Book("Boiler 1 2024-03-05 14-07-09 (2).xlsx"),
            "Sheet1\nR1C1 text at 0001\nR2C1 number 2\n");
}

TEST_F(Spreadsheet, ARunThatGotNothingLeavesItsWorkbookToTheNext) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  for (int i = 0; i < 3; ++i) {
    Start();
    Stop();
    Advance(1000);
  }
  EXPECT_EQ(Books().size(), 1U);
  monitor.options.txt_LogPath.Text = "/home/user/work";
  Start();
  Stop();
  EXPECT_EQ(Books().size(), 1U);
  EXPECT_EQ(world.disk().ListFolder("/home/user/work").size(), 1U);
}

TEST_F(Spreadsheet, AnotherScreenOrDayHasAWorkbookOfItsOwnAlthoughTheLastRunGotNothing) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  Start();
  Stop();
  monitor.main.CurrentTarnLinkFile = "/home/user/Boiler 2.wcr";
  Start();
  Stop();
  EXPECT_EQ(Books().size(), 2U);
  EXPECT_NE(Books().back().find("Boiler 2 "), std::string::npos) << Books().back();
  Advance(24 * 60 * 60 * 1000);
  Start();
  Stop();
  EXPECT_EQ(Books().size(), 3U);
}

TEST_F(Spreadsheet, IsSavedWhileTheRunGoesOn) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  SlaveHolds({{"0001", "01"}});
  Start();
  Rounds(1, 1);
  SlaveIsSilent();
  SetTimeout(0);
  Advance(5000);
  EXPECT_NE(Book().find("R2C1 number 1\n"), std::string::npos) << Book();
}

TEST_F(Spreadsheet, AScreenWithoutAFileGivesTheProgramsName) {
  monitor.main.CurrentTarnLinkFile = "";
  Screen({Linked(ByteAt("0001"), "1")});
  Start();
  EXPECT_EQ(Books(), std::vector<std::string>{"TarnLink 2024-03-05 14-07-09.xlsx"});
}

TEST_F(Spreadsheet, AFolderThatIsNotThereMeansTheDocuments) {
  for (const char* folder : {"C:", "/no/such/folder"}) {
    monitor.options.txt_LogPath.Text = folder;
    const auto before = world.disk().ListFolder(world.disk().DocumentsFolder()).size();
    monitor.main.CurrentTarnLinkFile = std::string(folder) + "/name.wcr";
    SpreadsheetLink link(monitor.main, monitor.options);
    if (monitor.main.MaxId == 0) Screen({Linked(ByteAt("0001"), "1")});
    link.Start();
    EXPECT_EQ(world.disk().ListFolder(world.disk().DocumentsFolder()).size(), before + 1) << folder;
  }
}

TEST_F(Spreadsheet, TheProgramOfTheOptionsIsStartedOnceOnTheWorkbook) {
  InstallProgram();
  Screen({Linked(ByteAt("0001"), "1"), Linked(ByteAt("0002"), "2")});
  Start();
  EXPECT_EQ(world.shell().started, std::vector<std::string>{std::string(kProgram) + " " + kFolder +
                                                            "/Boiler 1 2024-03-05 14-07-09.xlsx"});
  EXPECT_EQ(Panel(4), "Communication Running");
}

TEST_F(Spreadsheet, AProgramOfTheOldWorldIsNotMissed) {
  monitor.options.txt_PathToExcel.Text = "J:\\MSOFFICE\\OFFICE\\EXCEL.EXE";
  Screen({Linked(ByteAt("0001"), "1")});
  Start();
  EXPECT_TRUE(world.shell().started.empty());
  EXPECT_EQ(Books().size(), 1U);
  EXPECT_EQ(Panel(4), "Communication Running");
}

TEST_F(Spreadsheet, AProgramThatDoesNotStartEndsTheStart) {
  InstallProgram();
  world.shell().programs_start = false;
  Screen({Linked(ByteAt("0001"), "1")});
  ExpectStartRefused();
  Start();
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

TEST_F(Spreadsheet, AWorkbookThatCannotBeMadeEndsTheStart) {
  world.disk().Forbid(kFolder);
  Screen({Linked(ByteAt("0001"), "1")});
  world.dialogs().ExpectMessageBox(
      {.text = "Error in starting Excel Application, remove all DDE enables !",
       .title = "Program Error",
       .icon = Icon::kCritical,
       .detail = "\"/home/user/log/Boiler 1 2024-03-05 14-07-09.xlsx\" could not be written: you "
                 "do not have the permission."});
  Start();
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
  EXPECT_EQ(Sent(), "");
}

TEST_F(Spreadsheet, ADiskThatFillsUpIsToldOnceAndTheRunGoesOn) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  SlaveHolds({{"0001", "01"}});
  Start();
  world.disk().SetFreeSpace(0);
  ExpectTold(kDiskFull, "/home/user/log/Boiler 1 2024-03-05 14-07-09.xlsx");
  Advance(20'000);
  world.dialogs().Verify();
  EXPECT_EQ(Book(), "Sheet1\n");
  EXPECT_EQ(Panel(4), "Communication Running");
  world.disk().SetFreeSpace(1'000'000);
  Stop();
  Advance(0);
  EXPECT_NE(Book().find("R2C1 number 1\nR3C1 number 1\n"), std::string::npos)
      << "Nothing of what the disk had no room for may be lost.";
}

TEST_F(Spreadsheet, TheRunIsNotHeldUpWhileTheBoxIsUp) {
  Screen({Linked(ByteAt("0001", kDecimal), "no column")});
  SlaveHolds({{"0001", "01"}});
  Start();
  ExpectTold(kSubscript, "/home/user/log/Boiler 1 2024-03-05 14-07-09.xlsx").While([this] {
    const int row = monitor.main.DDERowCounter;
    Advance(10 * kExchange);
    EXPECT_GE(monitor.main.DDERowCounter, row + 9);
  });
  Advance(1'000);
}

TEST_F(Spreadsheet, TheNextRunTellsAgain) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  SlaveHolds({{"0001", "01"}});
  for (int run = 1; run <= 2; ++run) {
    world.disk().SetFreeSpace(1'000'000);
    Start();
    world.disk().SetFreeSpace(0);
    ExpectTold(kDiskFull, std::string(kFolder) + "/" +
                              (run == 1 ? "Boiler 1 2024-03-05 14-07-09.xlsx"
                                        : "Boiler 1 2024-03-05 14-07-19.xlsx"));
    Advance(10'000);
    world.dialogs().Verify();
    world.disk().SetFreeSpace(1'000'000);
    Stop();
    Advance(0);
  }
}

TEST_F(Spreadsheet, AWorkbookOfAnEarlierRunIsNotToldAgain) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  SlaveHolds({{"0001", "01"}});
  Start();
  world.disk().Forbid(kFolder);
  ExpectTold(kPermissionDenied, std::string(kFolder) + "/Boiler 1 2024-03-05 14-07-09.xlsx");
  Advance(10'000);
  world.dialogs().Verify();
  Stop();
  monitor.options.txt_LogPath.Text = "/home/user/work";
  Start();
  Advance(20'000);
  Stop();
  Advance(0);
  world.disk().Allow(kFolder);
  Advance(20'000);
  Start();
  EXPECT_NE(world.disk().Get(std::string(kFolder) + "/Boiler 1 2024-03-05 14-07-09.xlsx"), "")
      << "It is saved as soon as it can be.";
}

TEST_F(Spreadsheet, AFolderThatDoesNotAnswerEndsTheStart) {
  Screen({Linked(ByteAt("0001"), "1")});
  world.faults().Break("Files.Exists", RunTimeError(kDeviceIo, "The disk does not answer."));
  ExpectStartRefused();
  Start();
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
  EXPECT_TRUE(Books().empty());
}

TEST_F(Spreadsheet, AStickThatIsPulledIsToldByNameAndReason) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  SlaveHolds({{"0001", "01"}});
  Start();
  world.faults().Break("Files.WriteWhole", RunTimeError(kPathNotFound, "there is no such folder."));
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 76 occured, please contact distributor.\r\nDuring writing "
               "spreadsheet /home/user/log/Boiler 1 2024-03-05 14-07-09.xlsx",
       .title = "Internal System Error",
       .icon = Icon::kCritical,
       .detail = "there is no such folder."});
  Advance(10'000);
}

TEST_F(Spreadsheet, EachLocationWithoutARealColumnIsToldOnceAndTheOthersGoOn) {
  Screen({Linked(ByteAt("0001", kDecimal), "A"), Linked(ByteAt("0002", kDecimal), "2"),
          Linked(ByteAt("0003", kDecimal), "0")});
  SlaveHolds({{"0001", "01"}, {"0002", "02"}, {"0003", "03"}});
  Start();
  for (const char* reason : {"at 0001: A spreadsheet has no cell \"R1CA\".",
                             "at 0003: A spreadsheet has no cell \"R1C0\"."}) {
    world.dialogs().ExpectMessageBox(
        {.text = "Internal System Error # 9 occured, please contact distributor.\r\nDuring writing "
                 "spreadsheet /home/user/log/Boiler 1 2024-03-05 14-07-09.xlsx",
         .title = "Internal System Error",
         .icon = Icon::kCritical,
         .detail = std::string(reason) + " Its values are left out."});
  }
  Rounds(2, 3);
  Stop();
  Advance(0);
  EXPECT_EQ(Book(), "Sheet1\nR1C2 text at 0002\nR2C2 number 2\nR3C2 number 2\n");
}

TEST_F(Spreadsheet, NoNonsenseInTheColumnIsTakenForACell) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  for (const char* column : {"", "0", "-1", "1.5", "1 2", "C1", "16385", "99999999999", "+1"}) {
    SpreadsheetLink link(monitor.main, monitor.options);
    monitor.main.Locations[1].ExcelColumn = column;
    ExpectTold(kSubscript, "/home/user/log/Boiler 1 2024-03-05 14-07-09.xlsx");
    link.Start();
    link.Poke(1);
    Advance(10);
    world.dialogs().Verify();
    EXPECT_EQ(Book(), "Sheet1\n") << column;
    world.disk().Remove(std::string(kFolder) + "/Boiler 1 2024-03-05 14-07-09.xlsx");
  }
}

TEST_F(Spreadsheet, BlanksAroundTheColumnDoNotCount) {
  Screen({Linked(ByteAt("0001", kDecimal), " 7 ")});
  SlaveHolds({{"0001", "01"}});
  Start();
  Rounds(1, 1);
  Stop();
  Advance(0);
  EXPECT_EQ(Book(), "Sheet1\nR1C7 text at 0001\nR2C7 number 1\n");
}

TEST_F(Spreadsheet, ASheetWithoutRoomForMoreRowsIsToldOnceAndTheRunGoesOn) {
  Screen({Linked(ByteAt("0001", kDecimal), "1")});
  SlaveHolds({{"0001", "01"}});
  Start();
  monitor.main.DDERowCounter = kLastCell.row;
  ExpectTold(kSubscript, "/home/user/log/Boiler 1 2024-03-05 14-07-09.xlsx");
  Rounds(3, 1);
  EXPECT_EQ(Panel(4), "Communication Running");
  Stop();
  Advance(0);
  EXPECT_EQ(Book(), "Sheet1\nR1C1 text at 0001\nR1048576C1 number 1\n");
}

TEST_F(Spreadsheet, ALocationThatIsLinkedDuringTheRunGetsItsWorkbookThen) {
  Screen({ByteAt("0001", kDecimal)});
  SlaveHolds({{"0001", "01"}});
  Start();
  Rounds(1, 1);
  EXPECT_TRUE(Books().empty());
  monitor.main.Locations[1].DDEEnable = 1;
  Rounds(1, 1);
  Stop();
  Advance(0);
  EXPECT_EQ(Book(), "Sheet1\nR1C1 text at 0001\nR3C1 number 1\n");
}

TEST_F(Spreadsheet, AWorkbookThatCannotBeMadeDuringTheRunIsToldOnce) {
  Screen({ByteAt("0001", kDecimal)});
  SlaveHolds({{"0001", "01"}});
  Start();
  world.disk().Forbid(kFolder);
  monitor.main.Locations[1].DDEEnable = 1;
  ExpectTold(kPermissionDenied, kFolder);
  Rounds(5, 1);
  EXPECT_EQ(Panel(4), "Communication Running");
}

TEST_F(Spreadsheet, AnotherTopicOrModeIsNoSpreadsheet) {
  const auto book = world.CreateWorkbook(std::string(kFolder) + "/a.xlsx");
  const auto code_of = [&](const std::string& topic, int mode, const std::string& item) {
    BoxLink link(*book);
    link.LinkTopic = topic;
    link.LinkMode = mode;
    link.LinkItem = item;
    try {
      link.LinkPoke("x", false);
    } catch (const RunTimeError& error) {
      return error.code();
    }
    return 0;
  };
  EXPECT_EQ(code_of("Excel|Sheet1", 2, "R2C1"), 0);
  EXPECT_EQ(code_of("Excel|Sheet2", 2, "R2C1"), kDeviceIo);
  EXPECT_EQ(code_of("Excel|Sheet1", 0, "R2C1"), kDeviceIo);
  for (const char* item : {"", "R", "C1", "R2", "R0C1", "R2C1x", "r2c1", "R-2C1", "R2C"}) {
    EXPECT_EQ(code_of("Excel|Sheet1", 2, item), kSubscript) << item;
  }
}

}  // namespace
}  // namespace tarnlink
