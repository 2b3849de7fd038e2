// Leaving the settings dialog: Cancel, Delete Location, and undo of what OK did.

#include <gtest/gtest.h>

#include <string>

#include "form/locations.h"
#include "form/settings_fixture.h"

namespace tarnlink {
namespace {

class LeavingSettings : public SettingsTest {
 protected:
  LeavingSettings() { OpenStart(); }

  void OpenStart() {
    OpenScreen({LocationLine("Flow", {1000, 600}, {4000, 640}),
                LocationLine("Tank", {1000, 5000}, {4000, 5040})});
  }
  void FillIn() {
    form().optSpecification.Choose(kMemorySpecification);
    form().txt_Alias.Text = "Pump";
    form().cmbActualVariable.Text = "v_pump";
    form().chk_contwrite.Value = true;
    form().chk_UseDDE.Value = true;
    form().txt_ExcelColumn.Text = "9";
    Type(form().txt_Address, "FE20");
    form().opt_Representation.Choose(kOctal);
  }
};

TEST_F(LeavingSettings, CancelKeepsTheRecordAndGivesTheColourOfTheWindow) {
  const std::string record = Record(1);
  const std::string file = FileNow();
  const std::string entries = Entries();
  OpenSettings(1);
  FillIn();
  CancelSettings();
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(Record(1), record);
  EXPECT_EQ(FileNow(), file);
  EXPECT_EQ(Colours(1), "window window");
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Text.get(), "Flow");
  EXPECT_EQ(Entries(), entries);
  EXPECT_FALSE(Changed());
}

TEST_F(LeavingSettings, CancelAlsoLeavesDuringARun) {
  main().CommRunning = true;
  OpenSettings(1);
  CancelSettings();
  EXPECT_FALSE(IsOpen());
}

TEST_F(LeavingSettings, ShowsTheRecordAgainAfterACancel) {
  OpenSettings(1);
  FillIn();
  CancelSettings();
  OpenSettings(1);
  EXPECT_EQ(form().txt_Alias.Text.get(), "Flow");
  EXPECT_FALSE(form().chk_contwrite.Value);
  EXPECT_EQ(Address(), "01A0 416 .0");
}

// --- Delete Location ---

TEST_F(LeavingSettings, DeleteAsksAndHidesTheLocation) {
  OpenSettings(1);
  ExpectDeleteQuestion().Press(Answer::kYes);
  const std::string record = Record(1);
  form().cmdDeleteLocation.Press();
  EXPECT_FALSE(IsOpen());
  EXPECT_FALSE(main().RAM_LOC_TEXT(1).Visible);
  EXPECT_FALSE(main().RAM_LOC_VAL(1).Visible);
  EXPECT_FALSE(main().RAM_LOC_CHECK(1).Visible);
  EXPECT_EQ(main().LocationCount, 1);
  EXPECT_EQ(main().MaxId, 2);
  EXPECT_EQ(Panel(2), "Locations : 1");
  EXPECT_EQ(Record(1), record);
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Entries(), "&Undo deletion of Flow | [&Redo]");
}

TEST_F(LeavingSettings, ADeletedLocationComesBackAsItWasBeforeTheDialog) {
  const std::string before = Everything();
  OpenSettings(1);
  ExpectDeleteQuestion().Press(Answer::kYes);
  form().cmdDeleteLocation.Press();
  Undo();
  EXPECT_EQ(Everything(), before);
}

TEST_F(LeavingSettings, DeleteKeepsTheFormAfterANo) {
  OpenSettings(1);
  ExpectDeleteQuestion().Press(Answer::kNo);
  form().cmdDeleteLocation.Press();
  EXPECT_TRUE(IsOpen());
  EXPECT_EQ(Colours(1), "yellow yellow");
  EXPECT_EQ(main().LocationCount, 2);
  EXPECT_TRUE(main().RAM_LOC_TEXT(1).Visible);
  EXPECT_FALSE(Changed());
}

TEST_F(LeavingSettings, DeleteBeepsDuringARunThatBeganMeanwhile) {
  OpenSettings(1);
  main().CommRunning = true;
  main().form.Caption = "old";
  EXPECT_FALSE(form().cmdDeleteLocation.Enabled);
  form().cmdDeleteLocation.Click();  // of a button that was pressed before it was disabled
  EXPECT_EQ(world.shell().beeps, 1);
  EXPECT_TRUE(IsOpen());
  EXPECT_EQ(main().LocationCount, 2);
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
}

TEST_F(LeavingSettings, DeleteBeepsWithoutALocation) {
  OpenSettings(1);
  main().LocationCount = 0;
  main().form.Caption = "old";
  form().cmdDeleteLocation.Press();
  EXPECT_EQ(world.shell().beeps, 1);
  EXPECT_TRUE(IsOpen());
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
}

// --- Undo ---

TEST_F(LeavingSettings, OkIsOneStepOfUndoWithoutTheYellowMark) {
  const std::string before = Everything() + Record(1);
  OpenSettings(1);
  FillIn();
  Ok();
  const std::string after = Everything() + Record(1);
  EXPECT_NE(after, before);
  EXPECT_TRUE(Changed());
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(Entries(), "&Undo settings of Flow | [&Redo]");
    Undo();
    EXPECT_EQ(Everything() + Record(1), before);
    EXPECT_FALSE(main().RAM_LOC_TEXT(1).Locked);
    EXPECT_FALSE(Changed());
    EXPECT_EQ(Entries(), "[&Undo] | &Redo settings of Flow");
    Redo();
    EXPECT_EQ(Everything() + Record(1), after);
    EXPECT_TRUE(main().RAM_LOC_TEXT(1).Locked);
    EXPECT_TRUE(Changed());
  }
}

TEST_F(LeavingSettings, OkThatChangesNothingIsNoStep) {
  Confirm(1);
  const std::string entries = Entries();
  Confirm(1);
  EXPECT_EQ(Entries(), entries);
  Undo();
  EXPECT_EQ(Entries(), "[&Undo] | &Redo settings of Flow");
}

TEST_F(LeavingSettings, WhatOkStoredComesOutOfTheFileAgain) {
  OpenSettings(1);
  FillIn();
  Ok();
  Save();
  const std::string record = Record(1);
  Open(kScreen);
  // The file of a memory location has no class and no byte.
  main().Locations[1].Class = 1;
  main().Locations[1].SelectByte = kMsb;
  EXPECT_EQ(Record(1), record);
}

}  // namespace
}  // namespace tarnlink
