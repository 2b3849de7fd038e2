// The options dialog before OK: what its buttons do at once, what Cancel leaves, how it opens.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

using OptionsDialogForm = DeskTest;

TEST_F(OptionsDialogForm, ProtocolButtonsPresetThePort) {
  StartProgram();
  const std::vector<std::string> presets = {"0: 9600 None One 3", "1: 2400 None One 3",
                                            "2: 19200 Even One 3"};
  for (const int index : {0, 1, 2, 1, 0}) {
    options().opt_Baudrate.Choose(5);
    options().opt_parity.Choose(2);
    options().opt_stop.Choose(1);
    options().sld_MsgTimeout.SetValue(5);
    options().opt_Protocol.Choose(index);
    EXPECT_EQ(PortOptions(), presets[static_cast<std::size_t>(index)]);
  }
}

TEST_F(OptionsDialogForm, TheProtocolThatIsSetAlreadyPresetsAgainWhenClicked) {
  StartProgram();
  EXPECT_EQ(PortOptions(), "1: 2400 Even Two 3");
  options().opt_Protocol.Choose(1);
  EXPECT_EQ(PortOptions(), "1: 2400 None One 3");
}

TEST_F(OptionsDialogForm, ProtocolButtonsSaveAndApplyNothingBeforeOk) {
  StartProgram();
  TakeNotes();
  options().opt_Protocol.Choose(0);
  EXPECT_EQ(TakeNotes(), "");
  EXPECT_EQ(Panel(3), "ZOLT Protocol");
  EXPECT_EQ(Panel(1), "COM1, 2400,E,8, 2");
}

TEST_F(OptionsDialogForm, GroupsHaveOneSetButton) {
  StartProgram();
  OptionGroup* groups[] = {&options().opt_Protocol, &options().opt_Baudrate,
                           &options().opt_CommPort, &options().opt_stop,
                           &options().opt_parity,   &options().MicroSelect};
  for (OptionGroup* group : groups) {
    for (int chosen = 0; chosen < group->count(); ++chosen) {
      group->Choose(chosen);
      for (int i = 0; i < group->count(); ++i) {
        EXPECT_EQ((*group)(i).Value, i == chosen) << (*group)(i).name();
      }
    }
  }
}

TEST_F(OptionsDialogForm, CarriesItsCaptions) {
  StartProgram();
  const auto captions = [](const OptionGroup& group) {
    std::string text;
    for (int i = 0; i < group.count(); ++i) text += "|" + group(i).Caption.get();
    return text + "|";
  };
  EXPECT_EQ(captions(options().opt_Protocol), "|Tarnlink Protocol|ZOLT External Protocol|ModBus|");
  EXPECT_EQ(captions(options().opt_Baudrate), "|1200|2400|4800|9600|19200|38400|");
  EXPECT_EQ(captions(options().opt_CommPort), "|COM1|COM2|COM3|COM4|COM|");
  EXPECT_EQ(captions(options().opt_stop), "|One|Two|");
  EXPECT_EQ(captions(options().opt_parity), "|None|Even|Odd|");
  EXPECT_EQ(captions(options().MicroSelect), "|ATMega|XMega|NEC|Renesas|");
  EXPECT_EQ(options().ComPortNumber.ToolTipText.get(), "Set 1  to 16");
  EXPECT_EQ(options().chk_GeneralLogging(0).Caption.get(), "File Logging");
  EXPECT_EQ(options().chk_GeneralLogging(1).Caption.get(), "DDE Support");
  EXPECT_EQ(options().chk_DisableCommErrors.Caption.get(), "Ignore Communication Errors");
  EXPECT_EQ(options().ScanningBox.Caption.get(), "Scanning box");
  EXPECT_EQ(options().chkGridOn.Caption.get(), "Grid  on");
  EXPECT_EQ(options().chkClearAllValues.Caption.get(),
            "Clear all values at start of communication");
}

TEST_F(OptionsDialogForm, HoldsItsDesignValuesBeforeTheOptionsAreLoaded) {
  MakeProgram();
  EXPECT_EQ(options().txt_PathToExcel.Text.get(), "J:\\MSOFFICE\\OFFICE\\EXCEL.EXE");
  EXPECT_FALSE(options().form.Visible);
}

TEST_F(OptionsDialogForm, SliderTellsItsSecondsInTheToolTip) {
  StartProgram();
  EXPECT_EQ(options().sld_MsgTimeout.ToolTipText.get(), "3 second(s)");
  for (const int seconds : {0, 1, 5}) {
    options().sld_MsgTimeout.SetValue(seconds);
    EXPECT_EQ(options().sld_MsgTimeout.ToolTipText.get(), std::to_string(seconds) + " second(s)");
  }
}

TEST_F(OptionsDialogForm, SliderGoesFromZeroToFive) {
  StartProgram();
  options().sld_MsgTimeout.SetValue(6);
  EXPECT_EQ(options().sld_MsgTimeout.Value.get(), 5);
  options().sld_MsgTimeout.SetValue(-1);
  EXPECT_EQ(options().sld_MsgTimeout.Value.get(), 0);
}

TEST_F(OptionsDialogForm, MicroSelectCountsAtOnce) {
  StartProgram();
  TakeNotes();
  for (const int index : {3, 2, 1, 0}) {
    options().MicroSelect.Choose(index);
    EXPECT_EQ(main().MicroType, index);
  }
  EXPECT_EQ(TakeNotes(), "");
  main().MicroType = 2;
  options().MicroSelect.Choose(0);
  EXPECT_EQ(main().MicroType, 0);
}

TEST_F(OptionsDialogForm, ThePortNumberCanBeTypedOnlyBesideTheButtonCom) {
  StartProgram();
  ShowOptions();
  EXPECT_FALSE(options().ComPortNumber.Enabled);
  for (const int index : {4, 0, 4, 3, 2, 1}) {
    options().opt_CommPort.Choose(index);
    EXPECT_EQ(options().ComPortNumber.Enabled, index == 4) << index;
  }
}

TEST_F(OptionsDialogForm, OpensWithTheButtonOfThePortNumber) {
  for (int number = 1; number <= 16; ++number) {
    SCOPED_TRACE(number);
    Store("Communication", "Commport", std::to_string(number));
    StartProgram();
    const int button = number > 4 ? 4 : number - 1;
    EXPECT_EQ(options().opt_CommPort.Selected(), button);
    EXPECT_EQ(options().ComPortNumber.Enabled, number > 4);
    ShowOptions();
    EXPECT_EQ(options().opt_CommPort.Selected(), button);
    EXPECT_EQ(options().ComPortNumber.Text.get(), std::to_string(number));
    EXPECT_EQ(options().ComPortNumber.Enabled, number > 4);
  }
}

TEST_F(OptionsDialogForm, OpensWithComOneWhereNoPortButtonIsSet) {
  Store("Communication", "Commport", "0");
  StartProgram();
  EXPECT_EQ(options().ComPortNumber.Text.get(), "1");
  ShowOptions();
  EXPECT_EQ(options().opt_CommPort.Selected(), 0);
  EXPECT_FALSE(options().ComPortNumber.Enabled);
}

TEST_F(OptionsDialogForm, GoesBackToTheNumberWhenABareComWasCancelled) {
  StartProgram();
  ShowOptions();
  options().opt_CommPort.Choose(4);
  Cancel();
  ShowOptions();
  EXPECT_EQ(options().opt_CommPort.Selected(), 0);
  EXPECT_FALSE(options().ComPortNumber.Enabled);
}

TEST_F(OptionsDialogForm, GoesBackToTheTypedNumberWhenAnotherButtonWasCancelled) {
  Store("Communication", "Commport", "9");
  StartProgram();
  ShowOptions();
  options().opt_CommPort.Choose(1);
  Cancel();
  ShowOptions();
  EXPECT_EQ(options().opt_CommPort.Selected(), 4);
  EXPECT_EQ(options().ComPortNumber.Text.get(), "9");
  EXPECT_TRUE(options().ComPortNumber.Enabled);
}

TEST_F(OptionsDialogForm, ShowsTheScanningBoxWhenItOpens) {
  StartProgram();
  options().ScanningBox.Visible = false;
  EXPECT_FALSE(options().form.Visible);
  ShowOptions();
  EXPECT_TRUE(options().ScanningBox.Visible);
  EXPECT_TRUE(options().form.Visible);
}

TEST_F(OptionsDialogForm, CannotBeOpenedWhileItsEntryIsDisabled) {
  StartProgram();
  main().M_options.Enabled = false;
  ShowOptions();
  EXPECT_FALSE(options().form.Visible);
}

TEST_F(OptionsDialogForm, CancelHidesItAndUndoesNothing) {
  StartProgram();
  ShowOptions();
  options().opt_Protocol.Choose(2);
  options().opt_CommPort.Choose(2);
  options().txt_LogPath.Text = "/elsewhere";
  options().chk_GeneralLogging(0).Value = true;
  options().MicroSelect.Choose(3);
  TakeNotes();
  Cancel();
  EXPECT_FALSE(options().form.Visible);
  EXPECT_EQ(TakeNotes(), "");
  EXPECT_EQ(Panel(3), "ZOLT Protocol");
  EXPECT_EQ(PortOptions(), "2: 19200 Even One 3");
  EXPECT_EQ(options().opt_CommPort.Selected(), 2);
  EXPECT_EQ(options().txt_LogPath.Text.get(), "/elsewhere");
  EXPECT_TRUE(options().chk_GeneralLogging(0).Value);
  EXPECT_EQ(main().MicroType, 3);
}

TEST_F(OptionsDialogForm, WhatWasCancelledGoesLiveWithTheNextOk) {
  StartProgram();
  ShowOptions();
  options().opt_Protocol.Choose(2);
  options().txt_LogPath.Text = "/elsewhere";
  Cancel();
  ShowOptions();
  Ok();
  EXPECT_EQ(Stored("Communication", "Protocol"), "2");
  EXPECT_EQ(Stored("Paths", "LogPath"), "/elsewhere");
  EXPECT_EQ(Panel(3), "ModBus Protocol");
}

TEST_F(OptionsDialogForm, ACancelledProtocolIsTheOneThatIsLive) {
  StartProgram();
  ShowOptions();
  options().opt_Protocol.Choose(0);
  Cancel();
  EXPECT_EQ(options().SelectedProtocol(), 0);
}

TEST_F(OptionsDialogForm, TheAboutBoxTellsTitleAndVersion) {
  StartProgram();
  EXPECT_FALSE(program().about.form.Visible);
  main().M_About.Press();
  EXPECT_TRUE(program().about.form.Visible);
  EXPECT_EQ(program().about.caption.Caption.get(), "About TarnLink");
  const std::string version = program().about.lblVersion.Caption;
  EXPECT_EQ(version, "V" TARNLINK_VERSION);
  int major = -1, minor = -1, revision = -1, read = 0;
  ASSERT_EQ(std::sscanf(version.c_str(), "V%d.%d.%d%n", &major, &minor, &revision, &read), 3);
  EXPECT_EQ(read, static_cast<int>(version.size()));
  program().about.cmdOk.Press();
  EXPECT_FALSE(program().about.form.Visible);
}

}  // namespace
}  // namespace tarnlink
