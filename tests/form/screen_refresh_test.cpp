// The Refresh button: the memory map and the screen are read again from their files.

#include <gtest/gtest.h>

#include <string>

#include "form/edit_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kMap = "/home/user/Documents/boiler.map";

class Refreshing : public EditTest {
 protected:
  // Only with a map there is anything to refresh.
  Refreshing() {
    world.disk().Put(kMap, "__cpu_name = ATmega64\nENTRY LIST\n\n");
    options().txt_MapFile.Text = kMap;
    Ok();
  }

  void Refresh() { main().Toolbar1(6).Press(); }
  static std::string Text() {
    return FileText(
        {"77", LocationLine("Flow", {1000, 600}, {4000, 640}), LabelLine("Boiler", {500, 9000})});
  }
  ScriptedDialog& ExpectNotSavedYet() {
    return world.dialogs().ExpectMessageBox({.text = " The file has to be saved first. ",
                                             .title = "TarnLink",
                                             .icon = Icon::kInformation});
  }
  std::string OnDisk() { return world.disk().Get(kScreen); }
};

TEST_F(Refreshing, ReadsTheScreenAgain) {
  OpenText(Text());
  world.disk().Put(kScreen, FileText({"88", LabelLine("Tank", {1, 2})}));
  Refresh();
  EXPECT_EQ(FileNow(), FileText({"88", LabelLine("Tank", {1, 2})}));
  EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 1");
  EXPECT_EQ(main().CurrentTarnLinkFile, kScreen);
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
}

TEST_F(Refreshing, WritesAChangedScreenFirstOnYes) {
  OpenText(Text());
  DragLabel(1, {1000, 2000});
  ExpectScreenQuestion().Press(Answer::kYes);
  Refresh();
  EXPECT_EQ(OnDisk(), FileText({"77", LocationLine("Flow", {1000, 600}, {4000, 640}),
                                LabelLine("Boiler", {1000, 2000})}));
  EXPECT_EQ(FileNow(), OnDisk());
  EXPECT_FALSE(Changed());
}

TEST_F(Refreshing, LosesTheChangeOnNo) {
  OpenText(Text());
  DragLabel(1, {1000, 2000});
  ExpectScreenQuestion().Press(Answer::kNo);
  Refresh();
  EXPECT_EQ(OnDisk(), Text());
  EXPECT_EQ(FileNow(), Text());
  EXPECT_FALSE(Changed());
}

TEST_F(Refreshing, GoesNoFurtherWhenTheChangeCannotBeSaved) {
  OpenText(Text());
  DragLabel(1, {1000, 2000});
  world.disk().SetFreeSpace(0);
  ExpectScreenQuestion().Press(Answer::kYes);
  ExpectSaveFailure(61);
  Refresh();
  EXPECT_EQ(PlaceOf(main().lbl_TextInfo(1)), "1000,2000");
  EXPECT_TRUE(Changed());
  EXPECT_EQ(OnDisk(), Text());
  EXPECT_EQ(Entries(), "&Undo move of Boiler | [&Redo]");
}

TEST_F(Refreshing, AScreenWithoutAFileIsNotReadAgain) {
  AddLocation();
  const std::string before = Everything();
  ExpectNotSavedYet();
  Refresh();
  EXPECT_EQ(Everything(), before);
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Entries(), "&Undo adding of Name 0 | [&Redo]");
}

TEST_F(Refreshing, AnUnchangedNewScreenIsNotReadAgainEither) {
  ExpectNotSavedYet();
  Refresh();
  EXPECT_FALSE(Changed());
}

TEST_F(Refreshing, AFileThatHasGoneIsToldAndIsTheScreensNoMore) {
  OpenText(Text());
  world.disk().Remove(kScreen);
  ExpectOpenFailure(53);
  Refresh();
  EXPECT_EQ(main().CurrentTarnLinkFile, "");
  EXPECT_EQ(Title(), "TarnLink - New Screen");
}

TEST_F(Refreshing, LeavesNothingToUndo) {
  OpenText(Text());
  DragLabel(1, {1000, 2000});
  Save();
  Refresh();
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
}

TEST_F(Refreshing, EndsARun) {
  OpenText(Text());
  main().Toolbar1(2).Press();
  world.Advance(20ms);
  ASSERT_TRUE(main().CommRunning);
  Refresh();
  EXPECT_FALSE(main().CommRunning);
  EXPECT_FALSE(main().Comm->PortOpen());
  EXPECT_EQ(Counts(), "MaxId 1, LocationCount 1, TextInfoCount 1");
}

// --- The memory map ---

TEST_F(Refreshing, ReadsTheMapOfTheOptionsAgain) {
  std::string read;
  main().LoadClass7 = [&](const std::string& file) { read += file + "\n"; };
  options().txt_MapFile.Text = "/maps/boiler.map";
  ExpectNotSavedYet().While([&] { EXPECT_EQ(read, "/maps/boiler.map\n"); });
  Refresh();
  EXPECT_EQ(read, "/maps/boiler.map\n");
}

TEST_F(Refreshing, ReadsTheMapOfTheProjectAgainIfThereIsOne) {
  std::string read;
  main().LoadClass7 = [&](const std::string& file) { read += file + "\n"; };
  options().txt_MapFile.Text = "/maps/boiler.map";
  main().trvProject.AddFileToProject("lst", "/jobs/main.lst");
  ExpectNotSavedYet();
  Refresh();
  EXPECT_EQ(read, "/jobs/main.lst\n");
}

TEST_F(Refreshing, ReadsTheMapBeforeItAsksAnything) {
  OpenText(Text());
  DragLabel(1, {1000, 2000});
  std::string read;
  main().LoadClass7 = [&](const std::string& file) { read += file + "\n"; };
  main().trvProject.AddFileToProject("lst", "/jobs/main.lst");
  ExpectScreenQuestion().Press(Answer::kNo).While([&] { EXPECT_EQ(read, "/jobs/main.lst\n"); });
  Refresh();
}

}  // namespace
}  // namespace tarnlink
