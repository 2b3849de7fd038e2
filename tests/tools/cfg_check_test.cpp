// The configuration check frame by frame: what goes out in each stage, and what each answer makes
// of it.

#include <map>

#include "tools/cfg_check_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

TEST_F(CfgCheckTest, OpensWithoutAFile) {
  EXPECT_EQ(tool.caption.Caption.get(), "Configuration check");
  EXPECT_EQ(tool.txt_ConfigurationFile.Text.get(), "No file specified");
  EXPECT_EQ(tool.cmb_Slave.Text.get(), "0");
  EXPECT_EQ(tool.cmb_Slave.List.get().size(), 16U);
  EXPECT_EQ(tool.tim_cfgread->Interval(), 100);
  EXPECT_EQ(tool.tim_cfgread_timeout->Interval(), 300);
}

TEST_F(CfgCheckTest, SaysThatNoFileIsSpecified) {
  world.dialogs().ExpectMessageBox({.text = "The configuration file is not specified.",
                                    .title = "Configuration check",
                                    .icon = Icon::kInformation});
  tool.cmd_Check.Press();
  ExpectIdle();
}

TEST_F(CfgCheckTest, ShowsTheFile) {
  Load("* comment\r\n056Dh\t30\t85\t60\tCH setpoint\t1\r\n95C\t0\t255\t-\tHeat demand\t0\r\n");
  EXPECT_EQ(world.dialogs().last_file_request().filter,
            "Configuration default files (*.cfg)|*.cfg");
  EXPECT_EQ(world.dialogs().last_file_request().file_name, "*.cfg");
  EXPECT_EQ(tool.txt_ConfigurationFile.Text.get(), "/home/user/work/a.cfg");
  EXPECT_EQ(Row(0), "056D\t30\t85\t60\tCH setpoint\t1\t\t");
  EXPECT_EQ(Row(1), "095C\t0\t255\t-\tHeat demand\t0\t\t");
  EXPECT_EQ(tool.ProgressBar1.Max.get(), 3);
  EXPECT_EQ(Count(), "0 / 2");
}

TEST_F(CfgCheckTest, ForgetsTheFileWhenNoneIsChosen) {
  Load(kOneItem);
  world.dialogs().ExpectOpenFile().Cancel();
  tool.cmd_Open.Press();
  EXPECT_EQ(tool.txt_ConfigurationFile.Text.get(), "No file specified");
  EXPECT_TRUE(tool.ParametersList.List.get().empty());
  EXPECT_EQ(tool.ProgressBar1.Max.get(), 1);
}

TEST_F(CfgCheckTest, TellsOfAFileThatCannotBeRead) {
  world.dialogs().ExpectOpenFile().Give("/home/user/work/none.cfg");
  world.dialogs().ExpectMessageBox("The configuration file can not be read.", "Error");
  tool.cmd_Open.Press();
  EXPECT_EQ(tool.txt_ConfigurationFile.Text.get(), "No file specified");
}

TEST_F(CfgCheckTest, TellsOfTheFirstBadLineAndShowsTheRest) {
  world.disk().Put("/home/user/work/a.cfg", std::string("056Dh\t30\r\n") + kOneItem);
  world.dialogs().ExpectOpenFile().Give("/home/user/work/a.cfg");
  world.dialogs()
      .ExpectMessageBox("Line 1 of the configuration file is wrong.", "Configuration check")
      .While([this] { EXPECT_EQ(tool.ParametersList.List.get().size(), 1U); });
  tool.cmd_Open.Press();
  EXPECT_EQ(tool.ConfigItems.size(), 1U);
}

TEST_F(CfgCheckTest, KeepsTheFirst301ItemsAndTellsOfThe302nd) {
  std::string text;
  for (int i = 0; i < 302; ++i) text += kOneItem;
  world.disk().Put("/home/user/work/a.cfg", text);
  world.dialogs().ExpectOpenFile().Give("/home/user/work/a.cfg");
  world.dialogs().ExpectMessageBox({.text = "Line 302 of the configuration file is wrong.",
                                    .title = "Configuration check",
                                    .icon = Icon::kExclamation});
  tool.cmd_Open.Press();
  EXPECT_EQ(tool.ConfigItems.size(), 301U);
  EXPECT_EQ(Count(), "0 / 301");
}

TEST_F(CfgCheckTest, EndsAtOnceWithoutItems) {
  Begin("* only a comment\r\n");
  EXPECT_EQ(State(), "Finished: no items");
  ExpectIdle();
  EXPECT_EQ(Count(), "0 / 0");
  EXPECT_EQ(world.port().opens(), 0);
}

TEST_F(CfgCheckTest, AsksInSevenStages) {
  plain.com_port = 3;
  plain.baudrate = 4;
  Begin(kOneItem);
  EXPECT_EQ(world.port().CommPort(), 3);
  EXPECT_EQ(world.port().Settings(), " 19200n,8,1");
  EXPECT_FALSE(tool.cmd_Check.Enabled);
  EXPECT_EQ(Count(), "0 / 1");
  world.Advance(99ms);
  EXPECT_EQ(Sent(), "nothing");
  world.Advance(1ms);
  EXPECT_EQ(Sent(), "read 056D");
  Receive(Frame(kCfgReadDone, 60));
  EXPECT_EQ(Asked(), "write 056D 30");
  Receive(Frame(kCfgWritten, 30));
  EXPECT_EQ(Asked(), "read 056D");
  Receive(Frame(kCfgReadDone, 30));
  EXPECT_EQ(Asked(), "write 056D 29");
  Receive(Frame(kCfgOutside, 29));
  EXPECT_EQ(Asked(), "write 056D 85");
  Receive(Frame(kCfgWritten, 85));
  EXPECT_EQ(Asked(), "read 056D");
  Receive(Frame(kCfgReadDone, 85));
  EXPECT_EQ(Asked(), "write 056D 86");
  EXPECT_EQ(Result(), "\t\t");
  Receive(Frame(kCfgOutside, 86));
  EXPECT_EQ(Result(), "OK");
  EXPECT_EQ(Row(), "056D\t30\t85\t60\tCH setpoint\t1\t60\tOK");
  EXPECT_EQ(Count(), "1 / 1");
  EXPECT_EQ(tool.ProgressBar1.Value.get(), 2);
  EXPECT_EQ(State(), "Finished: 1 of 1 OK");
  ExpectIdle();
}

TEST_F(CfgCheckTest, SendsTheseBytes) {
  Begin(kOneItem);
  world.Advance(100ms);
  EXPECT_EQ(world.port().TakeSentHex(), "0D 05 30 30 35 36 44 30 30 30 30 42 30 30 44 0A\n");
  Receive(Frame(kCfgReadDone, 60));
  world.Advance(100ms);
  EXPECT_EQ(world.port().TakeSentHex(), "0D 85 30 30 35 36 44 31 45 30 30 31 31 37 35 0A\n");
}

TEST_F(CfgCheckTest, TellsWhichStageAnAnswerDidNotPass) {
  const char* texts[] = {"Wrong default value",     "Minimum is not written",
                         "Minimum was not written", "Minimum limit incorrect",
                         "Maximum is not written",  "Maximum was not written",
                         "Maximum limit incorrect"};
  for (int stage = 0; stage < 7; ++stage) {
    const bool is_read = stage == 0 || stage == 2 || stage == 5;
    const bool is_outside = stage == 3 || stage == 6;
    const std::uint8_t wrong = is_read ? kCfgReadDone : is_outside ? kCfgWritten : kCfgOutside;
    Begin(kOneItem);
    PassTo(stage);
    EXPECT_NE(Asked(), "nothing");
    Receive(Frame(wrong, 77));
    EXPECT_EQ(Result(), texts[stage]);
    EXPECT_EQ(Count(), "1 / 1");
    ExpectIdle();
  }
}

TEST_F(CfgCheckTest, NeedsTheAcknowledgeOfAReadBesideTheValue) {
  Begin(kOneItem);
  Asked();
  Receive(Frame(kCfgOutside, 60));
  EXPECT_EQ(Result(), "Wrong default value");
  EXPECT_EQ(Row(), "056D\t30\t85\t60\tCH setpoint\t1\t\tWrong default value");
  Begin(kOneItem);
  PassTo(2);
  Asked();
  Receive(Frame(kCfgOutside, 30));
  EXPECT_EQ(Result(), "Minimum was not written");
}

TEST_F(CfgCheckTest, TellsOfAnUnknownIdInAnyStageAndGoesOn) {
  for (int stage = 0; stage < 7; ++stage) {
    Begin(std::string(kOneItem) + "05F4\t35\t65\t50\tDHW\t1\r\n");
    PassTo(stage);
    Asked();
    Receive(Frame(kCfgUnknown, 0));
    EXPECT_EQ(Result(0), "Unknown Data ID");
    EXPECT_EQ(Count(), "1 / 2");
    EXPECT_EQ(Asked(), "read 05F4");
    tool.cmd_Stop.Press();
    world.Advance(1s);
  }
}

TEST_F(CfgCheckTest, HasFiveStagesWhereThereIsNothingBeyondTheLimits) {
  Begin("056D\t0\t255\t60\tall\t1\r\n");
  EXPECT_EQ(Asked(), "read 056D");
  Receive(Frame(kCfgReadDone, 60));
  EXPECT_EQ(Asked(), "write 056D 0");
  Receive(Frame(kCfgWritten, 0));
  EXPECT_EQ(Asked(), "read 056D");
  Receive(Frame(kCfgReadDone, 0));
  EXPECT_EQ(Asked(), "write 056D 255");
  Receive(Frame(kCfgWritten, 255));
  EXPECT_EQ(Asked(), "read 056D");
  Receive(Frame(kCfgReadDone, 255));
  EXPECT_EQ(Result(), "OK");
  ExpectIdle();
}

TEST_F(CfgCheckTest, ComparesNothingWithoutADefault) {
  Begin("056D\t30\t85\t-\tCH\t1\r\n");
  EXPECT_EQ(Asked(), "read 056D");
  Receive(Frame(kCfgReadDone, 77));
  EXPECT_EQ(Asked(), "write 056D 30");
  EXPECT_EQ(tool.ConfigItems[0].ReadValue, 77);
}

TEST_F(CfgCheckTest, SendsAMessageWithoutAnAnswerAgainAndAgain) {
  Begin(kOneItem);
  EXPECT_EQ(Asked(), "read 056D");
  for (int i = 1; i <= 50; ++i) {
    world.Advance(299ms);
    EXPECT_EQ(Sent(), "nothing");
    world.Advance(1ms);
    EXPECT_EQ(Sent(), "read 056D");
    if (i > 1) continue;
    EXPECT_EQ(State(),
              "ID 056D (CH setpoint): reading the default, no answer, repeated once; 1 left");
  }
  EXPECT_EQ(State(),
            "ID 056D (CH setpoint): reading the default, no answer, repeated 50 times; 1 left");
  EXPECT_TRUE(tool.IsRunning());
}

TEST_F(CfgCheckTest, AsksTheSlaveThatIsChosen) {
  Load(kOneItem);
  tool.cmb_Slave.Pick(10);
  tool.cmd_Check.Press();
  EXPECT_FALSE(tool.cmb_Slave.Enabled);
  world.Advance(100ms);
  EXPECT_EQ(world.port().TakeSent(),
            std::vector<std::string>{BuildZoltMessage(5, "A", 0x56D, 0, 0)});
  Receive(Frame(kCfgReadDone, 60, 0x56D, "0"));
  EXPECT_EQ(Asked(), "nothing");
  Receive(Frame(kCfgReadDone, 60, 0x56D, "A"));
  EXPECT_EQ(tool.CfgStage, 1);
}

TEST_F(CfgCheckTest, StopsAtOnce) {
  Begin(std::string(kOneItem) + "05F4\t35\t65\t50\tDHW\t1\r\n" + "0907\t40\t70\t-\tStore\t1\r\n");
  PassTo(7);
  EXPECT_EQ(Asked(), "read 05F4");
  tool.cmd_Stop.Press();
  EXPECT_EQ(Result(0), "OK");
  EXPECT_EQ(Result(1), "\t\t");
  EXPECT_EQ(Result(2), "\t\t");
  EXPECT_EQ(State(), "Stopped at ID 05F4 (DHW).");
  ExpectIdle();
}

TEST_F(CfgCheckTest, MarksWhatStopHasLeftOut) {
  const std::string second = "05F4\t35\t65\t50\tDHW\t1\r\n";
  Load(std::string(kOneItem) + second + "0907\t40\t70\t-\tStore\t1\r\n" + second);
  // Nothing has gone out yet: the first has not been reached either.
  tool.cmd_Check.Press();
  tool.cmd_Stop.Press();
  EXPECT_EQ(Result(0), "ID has not been checked");
  EXPECT_EQ(State(), "Stopped at ID 056D (CH setpoint).");
  tool.cmd_Check.Press();
  EXPECT_EQ(Result(0), "\t\t");
  Asked();
  tool.cmd_Stop.Press();
  EXPECT_EQ(State(), "Stopped at ID 056D (CH setpoint).");
  EXPECT_EQ(Result(0), "\t\t");
  EXPECT_EQ(Result(1), "ID has not been checked");
  EXPECT_EQ(Row(1), "05F4\t35\t65\t50\tDHW\t1\t\tID has not been checked");
  EXPECT_EQ(Result(2), "\t\t");
  EXPECT_EQ(Result(3), "ID has not been checked");
  // What the run before has reached, this one has not.
  tool.cmd_Check.Press();
  tool.cmd_Stop.Press();
  EXPECT_EQ(Result(0), "ID has not been checked");
}

TEST_F(CfgCheckTest, NamesTheLinesThatWereLeftOut) {
  const auto load = [this](const std::string& text) {
    world.disk().Put("/home/user/work/a.cfg", text);
    world.dialogs().ExpectOpenFile().Give("/home/user/work/a.cfg");
    world.dialogs().ExpectMessageBox("Line 1 of the configuration file is wrong.",
                                     "Configuration check");
    tool.cmd_Open.Press();
  };
  load(std::string("x\r\n") + kOneItem + "056D\t85\t30\t60\r\n");
  EXPECT_EQ(tool.ConfigItems.size(), 1U);
  tool.cmd_Check.Press();
  PassTo(7);
  EXPECT_EQ(State(), "Finished: 1 of 1 OK; 2 lines of the file were left out");
  load("x\r\n");
  EXPECT_EQ(State(), "");
  tool.cmd_Check.Press();
  EXPECT_EQ(State(), "Finished: no items; 1 line of the file was left out");
  Begin(kOneItem);
  PassTo(7);
  EXPECT_EQ(State(), "Finished: 1 of 1 OK");
}

TEST_F(CfgCheckTest, BeginsAnewWithoutTheResultsBefore) {
  Begin(kOneItem);
  PassTo(7);
  tool.cmd_Check.Press();
  EXPECT_EQ(Row(), "056D\t30\t85\t60\tCH setpoint\t1\t\t");
  EXPECT_EQ(Count(), "0 / 1");
  EXPECT_EQ(Asked(), "read 056D");
}

TEST_F(CfgCheckTest, KeepsTheResultsWhereThePortCannotBeHad) {
  Begin(kOneItem);
  PassTo(7);
  world.faults().Break("Port.Open", RunTimeError(kPortUnavailable, "COM1 is busy."));
  world.dialogs().ExpectMessageBox("COM1 is busy.", "Error");
  tool.cmd_Check.Press();
  EXPECT_EQ(Result(), "OK");
  EXPECT_EQ(Count(), "1 / 1");
  EXPECT_EQ(State(), "COM1 is busy.");
  ExpectIdle();
}

TEST_F(CfgCheckTest, OpensWithoutTheFileThatItWasClosedWith) {
  Begin(kOneItem);
  PassTo(7);
  tool.cmb_Slave.Pick(10);
  tool.Show();  // it is open
  EXPECT_EQ(Result(), "OK");
  EXPECT_EQ(tool.cmb_Slave.Text.get(), "A");
  tool.Unload();
  tool.Show();
  EXPECT_EQ(tool.txt_ConfigurationFile.Text.get(), "No file specified");
  EXPECT_EQ(tool.txt_ConfigurationFile.ToolTipText.get(), "");
  EXPECT_EQ(tool.cmb_Slave.Text.get(), "0");
  EXPECT_TRUE(tool.ParametersList.List.get().empty());
  EXPECT_TRUE(tool.ConfigItems.empty());
  EXPECT_EQ(Count(), "0 / 0");
  EXPECT_EQ(State(), "");
  EXPECT_EQ(tool.ProgressBar1.Value.get(), 0);
  EXPECT_FALSE(tool.cmd_Save.Enabled);
  // The folder is remembered.
  world.dialogs().ExpectOpenFile().Cancel();
  tool.cmd_Open.Press();
  EXPECT_EQ(world.dialogs().last_file_request().folder, "/home/user/work");
}

TEST_F(CfgCheckTest, AsksBeforeItIsClosedInTheMiddle) {
  int closed = 0;
  tool.Unloaded = [&] { ++closed; };
  Begin(kOneItem);
  Asked();
  const std::string text = "The check is running. Stop it and close the window?";
  world.dialogs().ExpectMessageBox(text, "Configuration check").Press(Answer::kNo);
  tool.Unload();
  EXPECT_TRUE(tool.form.Visible);
  EXPECT_TRUE(tool.IsRunning());
  world.dialogs().ExpectMessageBox(text, "Configuration check").Press(Answer::kYes);
  tool.Unload();
  EXPECT_FALSE(tool.form.Visible);
  EXPECT_EQ(closed, 1);
  ExpectIdle();
  tool.Unload();
  EXPECT_EQ(closed, 1);
}

TEST_F(CfgCheckTest, ClosesAnIdleFormWithoutAQuestion) {
  Load(kOneItem);
  tool.Unload();
  EXPECT_FALSE(tool.form.Visible);
}

TEST_F(CfgCheckTest, MarksTheRowInWork) {
  Begin(std::string(kOneItem) + "05F4\t35\t65\t50\tDHW\t1\r\n");
  EXPECT_EQ(tool.ParametersList.InWork.get(), 0);
  PassTo(7);
  EXPECT_EQ(tool.ParametersList.InWork.get(), 1);
  tool.cmd_Stop.Press();
  EXPECT_EQ(tool.ParametersList.InWork.get(), -1);
  world.Advance(1s);
  Begin(kOneItem);
  PassTo(7);
  EXPECT_EQ(tool.ParametersList.InWork.get(), -1);
}

TEST_F(CfgCheckTest, TellsGoodWrongAndUnknownApart) {
  const std::map<std::string, CfgVerdict> verdicts = {
      {"\t\t", CfgVerdict::kNone},
      {"OK", CfgVerdict::kGood},
      {"Wrong default value", CfgVerdict::kWrong},
      {"Maximum limit incorrect", CfgVerdict::kWrong},
      {"Unknown Data ID", CfgVerdict::kUnknown},
      {"ID has not been checked", CfgVerdict::kUnknown}};
  Load(kOneItem);
  for (const auto& [result, verdict] : verdicts) {
    tool.ConfigItems[0].Result = result;
    EXPECT_EQ(tool.VerdictAt(0), verdict) << result;
  }
}

TEST_F(CfgCheckTest, OpensTheNextFileWhereTheLastOneWas) {
  Load(kOneItem);
  EXPECT_EQ(tool.txt_ConfigurationFile.ToolTipText.get(), "/home/user/work/a.cfg");
  world.dialogs().ExpectOpenFile().Cancel();
  tool.cmd_Open.Press();
  EXPECT_EQ(world.dialogs().last_file_request().folder, "/home/user/work");
  EXPECT_EQ(tool.txt_ConfigurationFile.ToolTipText.get(), "");
}

TEST_F(CfgCheckTest, HasNothingToCopyOrSaveWithoutAList) {
  EXPECT_FALSE(tool.cmd_Copy.Enabled);
  EXPECT_FALSE(tool.cmd_Save.Enabled);
  Load(kOneItem);
  EXPECT_TRUE(tool.cmd_Copy.Enabled);
  EXPECT_TRUE(tool.cmd_Save.Enabled);
}

TEST_F(CfgCheckTest, CopiesAndSavesTheList) {
  std::string copied;
  tool.CopyText = [&](const std::string& text) { copied = text; };
  Load(kOneItem);
  tool.cmd_Copy.Press();
  EXPECT_EQ(copied,
            "ID\tMinimum\tMaximum\tDefault\tDescription\tTest type\tRead\tResult\n"
            "056D\t30\t85\t60\tCH setpoint\t1\t\t\n");
  world.dialogs().ExpectSaveFile("Save list").Give("/home/user/work/list.txt");
  tool.cmd_Save.Press();
  EXPECT_EQ(world.disk().Get("/home/user/work/list.txt"),
            "ID\tMinimum\tMaximum\tDefault\tDescription\tTest type\tRead\tResult\r\n"
            "056D\t30\t85\t60\tCH setpoint\t1\t\t\r\n");
  world.disk().SetFreeSpace(0);
  world.dialogs().ExpectSaveFile("Save list").Give("/home/user/work/list.txt");
  world.dialogs().ExpectMessageBox("The list can not be saved.", "Configuration check");
  tool.cmd_Save.Press();
}

}  // namespace
}  // namespace tarnlink
