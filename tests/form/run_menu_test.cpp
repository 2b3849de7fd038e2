// Which menu entries can be chosen, in every state and under every protocol.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"
#include "form/test_protocols.h"

namespace tarnlink {
namespace {

using RunMenu = MonitorTest;

// Everything that a run disables, but Options: what stays so under Modbus.
constexpr const char* kAllTools =
    "M_Graphics mnuLoadParameters M_ControlPanel mnuScanSlaves M_errgen mnuCfgCheck mnuSniffer";

TEST_F(RunMenu, BeforeTheFirstStartEverythingCanBeChosen) {
  for (const int protocol : {kTarnlinkProtocol, kZoltProtocol, kModbusProtocol}) {
    ChooseProtocol(protocol);
    EXPECT_EQ(DisabledEntries(), "");
  }
}

TEST_F(RunMenu, ARunDisablesOptionsAndSevenToolsUnderEveryProtocol) {
  Screen({ByteAt("01A0")});
  Start();
  EXPECT_EQ(DisabledEntries(), kAllRunEntries);
  Stop();
  for (const int protocol : {kZoltProtocol, kModbusProtocol}) {
    PollWith(protocol, std::make_unique<FrameProtocol>());
    Start();
    EXPECT_EQ(DisabledEntries(), kAllRunEntries) << protocol;
    Stop();
  }
}

TEST_F(RunMenu, StopEnablesAllOfThemUnderTarnlinkAndZolt) {
  Screen({ByteAt("01A0")});
  Start();
  Stop();
  EXPECT_EQ(DisabledEntries(), "");
  PollWith(kZoltProtocol, std::make_unique<FrameProtocol>());
  Start();
  Stop();
  EXPECT_EQ(DisabledEntries(), "");
}

TEST_F(RunMenu, StopUnderModbusEnablesOptionsOnly) {
  Screen({ByteAt("01A0")});
  PollWith(kModbusProtocol, std::make_unique<FrameProtocol>());
  Start();
  Stop();
  EXPECT_EQ(DisabledEntries(), kAllTools);
}

TEST_F(RunMenu, AGreyEntrySaysWhyItIs) {
  frm_Main& main = monitor.main;
  Screen({ByteAt("01A0")});
  EXPECT_EQ(main.M_Graphics.ToolTipText.get(), "");
  Start();
  for (const MenuEntry* entry : {&main.M_Graphics, &main.M_options, &main.mnuSniffer}) {
    EXPECT_EQ(entry->ToolTipText.get(), "The port is in use: press \"Stop Communication\" first");
  }
  Stop();
  for (const MenuEntry* entry : {&main.M_Graphics, &main.M_options, &main.mnuSniffer}) {
    EXPECT_EQ(entry->ToolTipText.get(), "");
  }
  PollWith(kModbusProtocol, std::make_unique<FrameProtocol>());
  Start();
  Stop();
  EXPECT_EQ(main.M_Graphics.ToolTipText.get(), "There is no such tool for the ModBus protocol");
  EXPECT_EQ(main.M_options.ToolTipText.get(), "");
}

TEST_F(RunMenu, StopGoesByTheProtocolOfTheMoment) {
  Screen({ByteAt("01A0")});
  ChooseProtocol(kModbusProtocol);
  Stop();
  EXPECT_EQ(DisabledEntries(), kAllTools);
  ChooseProtocol(kTarnlinkProtocol);
  Stop();
  EXPECT_EQ(DisabledEntries(), "");
}

TEST_F(RunMenu, WithoutAChosenProtocolItIsModbus) {
  Screen({ByteAt("01A0")});
  monitor.options.opt_Protocol.Clear();
  Stop();
  EXPECT_EQ(DisabledEntries(), kAllTools);
}

TEST_F(RunMenu, AFailedStartLeavesThemAsStopDoes) {
  Screen({ByteAt("01A0")});
  world.port().MakeBusy();
  ExpectOccupiedBox();
  Start();
  EXPECT_EQ(DisabledEntries(), "");
  PollWith(kModbusProtocol, std::make_unique<FrameProtocol>());
  ExpectOccupiedBox();
  Start();
  EXPECT_EQ(DisabledEntries(), kAllTools);
}

TEST_F(RunMenu, ASilentSlaveLeavesCheckAndSnifferDisabled) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox();
  Advance(3020);
  EXPECT_EQ(DisabledEntries(), "mnuCfgCheck mnuSniffer");
}

TEST_F(RunMenu, TheProtocolOfTheMomentCountsWhenTheSilentSlaveBoxIsClosed) {
  Screen({ByteAt("01A0")});
  Start();
  ExpectSilentSlaveBox().While([this] { ChooseProtocol(kModbusProtocol); });
  Advance(3020);
  EXPECT_EQ(DisabledEntries(), kAllTools);
}

TEST_F(RunMenu, NothingElseIsTouched) {
  frm_Main& main = monitor.main;
  const std::vector<const MenuEntry*> others = {
      &main.M_file,         &main.M_fileopen,     &main.M_NewScreen, &main.mnuPrint,
      &main.mnuPrintToFile, &main.M_exit,         &main.M_Tools,     &main.mnuWPConversion,
      &main.mnuGenParaFile, &main.M_EE_DOWN,      &main.M_EEPROM,    &main.mnuProject,
      &main.mnuOpenProject, &main.mnuSaveProject, &main.M_Help,      &main.M_About,
      &main.Toolbar1(1),    &main.Toolbar1(2),    &main.Toolbar1(3), &main.Toolbar1(6)};
  const auto all_enabled = [&] {
    for (const MenuEntry* entry : others) {
      if (!entry->Enabled) return "disabled: " + entry->name();
    }
    return std::string("all enabled");
  };
  main.Toolbar1(6).Enabled = true;  // as with a memory map
  Screen({ByteAt("01A0")});
  Start();
  EXPECT_EQ(all_enabled(), "all enabled");
  ExpectSilentSlaveBox();
  Advance(3020);
  EXPECT_EQ(all_enabled(), "all enabled");
  Stop();
  EXPECT_EQ(all_enabled(), "all enabled");
}

}  // namespace
}  // namespace tarnlink
