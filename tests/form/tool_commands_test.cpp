// The tools' entries and the project's files of a tool: refused while the run has the port.

#include "monitor/tool_commands.h"

#include <string>
#include <vector>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kGraphFile = "/jobs/burner.grp";

class ToolCommandsTest : public MonitorTest {
 protected:
  ToolCommandsTest() {
    main.ShowGraphic = [this] { ++shown; };
    main.trvProject.AddFileToProject("grp", kGraphFile);
    world.disk().Put(kGraphFile, "");
  }
  void DoubleClick() { main.trvProject_DblClick(kGraphFile); }
  void ExpectRefusal() {
    world.dialogs().ExpectMessageBox({.text = "Stop Communication First",
                                      .title = "Communication Error",
                                      .icon = Icon::kCritical});
  }
  void Run() {
    Screen({ByteAt("01A0")});
    SlaveHolds({{"01A0", "2A"}});
    Start();
    Advance(500);
    ASSERT_TRUE(main.CommRunning);
  }

  frm_Main& main = monitor.main;
  int shown = 0;
};

TEST_F(ToolCommandsTest, TheGraphOpensByMenuAndByDoubleClick) {
  main.M_Graphics.Press();
  EXPECT_EQ(shown, 1);
  DoubleClick();
  EXPECT_EQ(shown, 2);
  EXPECT_EQ(main.GraphicFile, kGraphFile);
}

TEST_F(ToolCommandsTest, DuringARunTheMenuHasNoGraphAndADoubleClickIsRefused) {
  Run();
  EXPECT_FALSE(main.M_Graphics.Enabled);
  main.M_Graphics.Press();
  ExpectRefusal();
  DoubleClick();
  EXPECT_EQ(shown, 0);
  EXPECT_TRUE(main.CommRunning) << "The run goes on.";
  Stop();
  main.M_Graphics.Press();
  DoubleClick();
  EXPECT_EQ(shown, 2);
}

TEST_F(ToolCommandsTest, AnEntryThatCanBeChosenDuringARunRefusesToo) {
  Run();
  main.M_Graphics.Enabled = true;
  ExpectRefusal();
  main.M_Graphics.Press();
  EXPECT_EQ(shown, 0);
}

// The run has ended then, but its port is opened again three seconds later.
TEST_F(ToolCommandsTest, BehindASilentSlaveTheToolFindsThePortFree) {
  for (const bool is_open : {false, true}) {
    Screen({ByteAt("01A0")});
    Start();
    ExpectSilentSlaveBox();
    Advance(3020);
    ASSERT_FALSE(main.CommRunning);
    if (is_open) {
      Advance(3000);
      ASSERT_TRUE(main.Comm->PortOpen());
    }
    main.M_Graphics.Press();
    EXPECT_FALSE(main.Comm->PortOpen());
    Advance(10'000);
    EXPECT_FALSE(main.Comm->PortOpen());
    Stop();
  }
  EXPECT_EQ(shown, 2);
}

TEST_F(ToolCommandsTest, WithoutTheToolNothingHappens) {
  main.ShowGraphic = nullptr;
  main.M_Graphics.Press();
  DoubleClick();
  EXPECT_EQ(world.dialogs().shown().size(), 0U);
}

TEST_F(ToolCommandsTest, TheServiceToolsOpenByTheirEntries) {
  std::string opened;
  main.GoControlPanel = [&](int slave) { opened += "panel" + std::to_string(slave) + " "; };
  main.ShowScanSlaves = [&] { opened += "scan "; };
  main.ShowSniffer = [&] { opened += "sniffer "; };
  main.ShowErrorGenerator = [&] { opened += "errors "; };
  for (MenuEntry* entry :
       {&main.M_ControlPanel, &main.mnuScanSlaves, &main.mnuSniffer, &main.M_errgen}) {
    entry->Press();
  }
  EXPECT_EQ(opened, "panel0 scan sniffer errors ");
  Run();
  for (MenuEntry* entry :
       {&main.M_ControlPanel, &main.mnuScanSlaves, &main.mnuSniffer, &main.M_errgen}) {
    EXPECT_FALSE(entry->Enabled);
    entry->Enabled = true;
    ExpectRefusal();
    entry->Press();
  }
  EXPECT_EQ(opened, "panel0 scan sniffer errors ");
}

// --- The tools for files -------------------------------------------------------------------------

TEST_F(ToolCommandsTest, TheToolsForFilesThatNeedThePortAreRefusedDuringARun) {
  std::string opened;
  main.ShowParameters = [&] { opened += "parameters "; };
  main.ShowCfgCheck = [&] { opened += "check "; };
  main.ShowEepromDownloader = [&] { opened += "download "; };
  const std::vector<MenuEntry*> entries = {&main.mnuLoadParameters, &main.mnuCfgCheck,
                                           &main.M_EE_DOWN};
  for (MenuEntry* entry : entries) entry->Press();
  EXPECT_EQ(opened, "parameters check download ");
  Run();
  for (MenuEntry* entry : entries) {
    entry->Enabled = true;
    ExpectRefusal();
    entry->Press();
  }
  EXPECT_EQ(opened, "parameters check download ");
  EXPECT_TRUE(main.CommRunning);
}

TEST_F(ToolCommandsTest, ImagesAndThePressureConversionOpenBesideTheRun) {
  std::string opened;
  main.ShowEepromWriter = [&] { opened += "images "; };
  main.ShowWPConversion = [&] { opened += "conversion "; };
  main.M_EEPROM.Press();
  main.mnuWPConversion.Press();
  Run();
  main.M_EEPROM.Press();
  main.mnuWPConversion.Press();
  EXPECT_EQ(opened, "images conversion images conversion ");
  EXPECT_TRUE(main.CommRunning);
  EXPECT_TRUE(main.Comm->PortOpen()) << "It is the run's.";
}

// A tool that was opened beside a run finds out when it wants to begin.
TEST_F(ToolCommandsTest, ThePortIsNotGivenWhileTheRunHasIt) {
  Run();
  EXPECT_FALSE(GivePort(main));
  EXPECT_TRUE(main.Comm->PortOpen());
  Stop();
  EXPECT_TRUE(GivePort(main));
}

TEST_F(ToolCommandsTest, ThePortIsGivenBehindASilentSlave) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox();
  Advance(6020);
  ASSERT_TRUE(main.Comm->PortOpen());
  EXPECT_TRUE(GivePort(main));
  EXPECT_FALSE(main.Comm->PortOpen());
  EXPECT_EQ(main.StatusBar1(kConnectionPanel).Text.get(), "No Connection Active");
  Advance(10'000);
  EXPECT_FALSE(main.Comm->PortOpen()) << "The watchdog does not take it again.";
}

TEST_F(ToolCommandsTest, AParameterFileOfTheProjectOpensByADoubleClick) {
  constexpr const char* kFile = "/jobs/boiler.par";
  main.trvProject.AddFileToProject("par", kFile);
  world.disk().Put(kFile, "");
  std::string opened;
  main.ShowParameters = [&] { opened += main.ParameterFile + " "; };
  main.trvProject_DblClick(kFile);
  EXPECT_EQ(opened, "/jobs/boiler.par ");
  Run();
  ExpectRefusal();
  main.trvProject_DblClick(kFile);
  EXPECT_EQ(opened, "/jobs/boiler.par ");
}

}  // namespace
}  // namespace tarnlink
