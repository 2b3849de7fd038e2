// How a run's log begins: what is asked, under which name, and what stands in it then.

#include <gtest/gtest.h>

#include "form/log_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kStopped = "Stopped, port closed, no timers";

class LogStart : public LogTest {
 protected:
  // The name that the dialog proposes; the dialog is cancelled.
  std::string ProposedName() {
    ExpectLogDialog().Cancel();
    Start();
    return world.dialogs().last_file_request().file_name;
  }
};

TEST_F(LogStart, WritesTheHeadingAndTheTimeOfTheFirstRow) {
  Screen({Logged(ByteAt("01A0")), ByteAt("0002"), Logged(WordAt("F00A"))});
  monitor.main.CurrentTarnLinkFile = "/jobs/boiler 7.wcr";
  StartLog();
  EXPECT_EQ(world.disk().Get(kLog),
            "5-Mar-2024\t/jobs/boiler 7.wcr\r\n\t\tat 01A0(01A0)\tat F00A(F00A)\r\n14:07:09");
  EXPECT_TRUE(monitor.main.filelogging);
  EXPECT_TRUE(monitor.main.CommRunning);
}

TEST_F(LogStart, AsksForTheFileWithTheNameOfTheNumberOfLocations) {
  Screen({Logged(ByteAt("0001")), ByteAt("0002"), ByteAt("0003"), ByteAt("0004"), ByteAt("0005")});
  StartLog();
  const FileDialogRequest& request = world.dialogs().last_file_request();
  EXPECT_EQ(request.title, "Save log file as");
  EXPECT_TRUE(request.confirm_overwrite) << "Every run proposes the same name.";
  EXPECT_EQ(request.filter, "Log File (*.log)|*.log");
  EXPECT_EQ(request.file_name, "/home/user/Documents/log 5.log");
  EXPECT_EQ(request.folder, "/home/user/Documents");
  EXPECT_EQ(request.extension, "log");
}

TEST_F(LogStart, WithoutALocationToLogThereIsNoDialogAndNoFile) {
  Screen({ByteAt("0001"), ByteAt("0002")});
  const std::string before = world.disk().Describe();
  Start();
  EXPECT_TRUE(monitor.main.CommRunning);
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_TRUE(world.dialogs().shown().empty());
  EXPECT_EQ(world.disk().Describe(), before);
}

TEST_F(LogStart, ALocationThatIsDeletedHasNoColumn) {
  Screen({Logged(ByteAt("0001")), Logged(ByteAt("0002")), Logged(ByteAt("0003"))});
  Delete(2);
  StartLog();
  EXPECT_EQ(Text(), "5-Mar-2024|\n||at 0001(0001)|at 0003(0003)\n14:07:09");
}

TEST_F(LogStart, WithOnlyADeletedLocationToLogThereIsNoDialog) {
  Screen({Logged(ByteAt("0001")), ByteAt("0002")});
  Delete(1);
  Start();
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(LogStart, WithTheOptionOffThereIsNoDialog) {
  monitor.options.chk_GeneralLogging(0).Value = false;
  Screen({Logged(ByteAt("0001"))});
  Start();
  EXPECT_TRUE(monitor.main.CommRunning);
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(LogStart, ACancelEndsTheStartWithoutAWord) {
  Screen({Logged(ByteAt("0001"))});
  ExpectLogDialog().Cancel();
  Start();
  EXPECT_EQ(State(), kStopped);
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_FALSE(LogExists());
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(DisabledEntries(), "");
}

TEST_F(LogStart, ACancelLeavesTheOldLogAsItWas) {
  world.disk().Put(kLog, "old");
  Screen({Logged(ByteAt("0001"))});
  ExpectLogDialog().Cancel();
  Start();
  EXPECT_EQ(Text(), "old");
}

TEST_F(LogStart, ReplacesWhatWasThere) {
  world.disk().Put(kLog, std::string(1000, 'x'));
  Screen({Logged(ByteAt("0001"))});
  StartLog();
  EXPECT_EQ(Text(), "5-Mar-2024|\n||at 0001(0001)\n14:07:09");
}

// --- The folder ----------------------------------------------------------------------------------

TEST_F(LogStart, ProposesTheFolderOfTheOptions) {
  Screen({Logged(ByteAt("0001"))});
  world.disk().Put("/data/logs/old.log", "");
  monitor.options.txt_LogPath.Text = "/data/logs";
  EXPECT_EQ(ProposedName(), "/data/logs/log 1.log");
}

TEST_F(LogStart, ProposesTheDocumentsForAFolderWithoutAPlainFile) {
  Screen({Logged(ByteAt("0001"))});
  world.disk().MakeFolder("/data/logs/inner");
  monitor.options.txt_LogPath.Text = "/data/logs";
  EXPECT_EQ(ProposedName(), "/home/user/Documents/log 1.log");
}

TEST_F(LogStart, ProposesTheDocumentsForAFolderThatIsNotThere) {
  Screen({Logged(ByteAt("0001"))});
  monitor.options.txt_LogPath.Text = "/no/such/folder";
  EXPECT_EQ(ProposedName(), "/home/user/Documents/log 1.log");
}

TEST_F(LogStart, TakesAFolderAsItWasWrittenInTheOldWorld) {
  Screen({Logged(ByteAt("0001"))});
  world.disk().Put("/home/user/work/logs/old.log", "");
  monitor.options.txt_LogPath.Text = ".\\logs";
  EXPECT_EQ(ProposedName(), "./logs/log 1.log");
  monitor.options.txt_LogPath.Text = "C:\\";
  EXPECT_EQ(ProposedName(), "/home/user/Documents/log 1.log");
  monitor.options.txt_LogPath.Text = "";
  EXPECT_EQ(ProposedName(), "/home/user/Documents/log 1.log");
}

TEST_F(LogStart, CountsTheDeletedLocationsInTheName) {
  Screen({Logged(ByteAt("0001")), ByteAt("0002"), ByteAt("0003")});
  Delete(3);
  EXPECT_EQ(ProposedName(), "/home/user/Documents/log 3.log");
}

TEST_F(LogStart, AnEmptyNameIsTheOneInTheFolderOfTheOptions) {
  Screen({Logged(ByteAt("0001"))});
  world.disk().MakeFolder("/data/logs");
  monitor.options.txt_LogPath.Text = "/data/logs";
  StartLog("");
  EXPECT_EQ(world.dialogs().last_file_request().file_name, "/home/user/Documents/log 1.log");
  EXPECT_EQ(Text("/data/logs/log 1.log"), "5-Mar-2024|\n||at 0001(0001)\n14:07:09");
}

// --- What cannot be had --------------------------------------------------------------------------

TEST_F(LogStart, AFolderThatIsNotThereIsToldWithTheFileAndEndsTheStart) {
  Screen({Logged(ByteAt("0001"))});
  monitor.options.txt_LogPath.Text = "/no/such/folder";
  ExpectLogDialog().Give("");
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 76 occured, please contact distributor. Communication is "
               "stopped",
       .title = "Internal System Error",
       .icon = Icon::kCritical,
       .detail = "\"/no/such/folder/log 1.log\" could not be written: there is no such folder."});
  Start();
  EXPECT_EQ(State(), kStopped);
  EXPECT_FALSE(monitor.main.filelogging);
}

TEST_F(LogStart, AFullDiskIsToldAndEndsTheStart) {
  Screen({Logged(ByteAt("0001"))});
  world.disk().SetFreeSpace(20);
  ExpectLogDialog().Give(kLog);
  ExpectCritical(
      "Internal System Error # 61 occured, please contact distributor. Communication is stopped",
      "Internal System Error");
  Start();
  Advance(1000);
  EXPECT_EQ(State(), kStopped);
  EXPECT_FALSE(monitor.main.filelogging);
  EXPECT_EQ(Text(), "");
}

TEST_F(LogStart, ADeviceThatVanishesBehindTheDialogIsToldOnceAndEndsTheStart) {
  Screen({Logged(ByteAt("0001"))});
  ExpectLogDialog()
      .Give(kLog)
      .While([this] { world.port().Unplug(); })
      .For(std::chrono::seconds(1));
  ExpectDeviceGoneBox();
  Start();
  EXPECT_EQ(State(), kStopped);
  EXPECT_FALSE(monitor.main.filelogging);
  world.port().PlugIn();
  StartLog();
  EXPECT_TRUE(monitor.main.CommRunning);
}

// --- Texts ---------------------------------------------------------------------------------------

TEST_F(LogStart, WritesTheMonthAsTheUserDoes) {
  MonthNames months = EnglishMonthNames();
  months[2] = "März";
  world.locale().SetMonths(months);
  Screen({Logged(ByteAt("0001"))});
  StartLog();
  EXPECT_EQ(world.disk().Get(kLog), "5-M\xE4r-2024\t\r\n\t\tat 0001(0001)\r\n14:07:09");
}

TEST_F(LogStart, IsUnicodeIfAnyNameNeedsIt) {
  Location wide = Logged(ByteAt("0001"));
  wide.Alias = "Wärme Ω";
  Screen({wide});
  StartLog();
  EXPECT_EQ(Text(), "5-Mar-2024|\n||Wärme Ω(0001)\n14:07:09");
}

TEST_F(LogStart, ATabInANameMakesNoColumn) {
  Location odd = Logged(ByteAt("0001"));
  odd.Alias = "two\twords";
  Screen({odd});
  StartLog();
  EXPECT_EQ(Text(), "5-Mar-2024|\n||two words(0001)\n14:07:09");
}

TEST_F(LogStart, EveryStartAsksAgainAndOpensAnew) {
  Screen({Logged(ByteAt("0001"))});
  SlaveHolds({{"0001", "2A"}});
  StartLog();
  Advance(100);
  Stop();
  const std::string first = Text();
  StartLog("/home/user/Documents/second.log");
  Advance(100);
  Stop();
  EXPECT_EQ(Text(), first);
  EXPECT_EQ(Text("/home/user/Documents/second.log").substr(0, 20), "5-Mar-2024|\n||at 000");
  ExpectLogDialog().Cancel();
  Start();
}

TEST_F(LogStart, AFolderThatDoesNotAnswerEndsTheStart) {
  Screen({Logged(ByteAt("0001"))});
  world.faults().Break("Files.ListFolder", RunTimeError(kDeviceIo, "The disk does not answer."));
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 57 occured, please contact distributor. Communication is "
               "stopped",
       .title = "Internal System Error",
       .icon = Icon::kCritical,
       .detail = "The disk does not answer."});
  Start();
  EXPECT_FALSE(monitor.main.CommRunning);
  EXPECT_FALSE(monitor.main.filelogging);
}

}  // namespace
}  // namespace tarnlink
