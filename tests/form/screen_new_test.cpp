// A new screen, the removal of all controls, and the title.

#include <gtest/gtest.h>

#include <string>

#include "form/desk_fixture.h"
#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kL = R"("L",0,3,"01A0",0,"Flow","v",0,0,0,0,"0",0,1,2,3,4,"0")";
constexpr const char* kT = R"("T","Boiler",1,2,"Arial",8.25,#FALSE#,#TRUE#,255)";

class NewScreen : public DeskTest {
 protected:
  NewScreen() {
    StartProgram();
    OpenText(Text());
  }

  static std::string Text() { return FileText({"77", kL, kL, kT}); }
  void New() { main().M_NewScreen.Press(); }
  void Start() {
    main().Toolbar1(2).Press();
    world.Advance(20ms);
    ASSERT_TRUE(main().CommRunning);
  }
};

TEST_F(NewScreen, IsEmptyAndHasNoFile) {
  main().Locations[1].RawValue = 9;
  main().MsgPointer = 2;
  New();
  EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 0");
  EXPECT_EQ(Screen(), "colour FF8080\n");
  EXPECT_EQ(main().CurrentTarnLinkFile, "");
  EXPECT_EQ(main().MsgPointer, 0);
  EXPECT_EQ(main().Locations[1], Location());
  EXPECT_FALSE(main().WCRChanged);
  EXPECT_EQ(Title(), "TarnLink - New Screen");
  EXPECT_EQ(Panel(2), "Locations : 0");
  EXPECT_EQ(world.disk().Get(kScreen), Text());
}

TEST_F(NewScreen, KeepsProtocolPortAndHistory) {
  const std::string options_before = PortOptions();
  New();
  EXPECT_EQ(PortOptions(), options_before);
  EXPECT_EQ(main().M_fileHist(0).Caption.get(), kScreen);
}

TEST_F(NewScreen, EndsARunUnderWay) {
  Start();
  New();
  EXPECT_FALSE(main().CommRunning);
  EXPECT_FALSE(main().Comm->PortOpen());
  EXPECT_FALSE(main().Comm_Timer->Enabled());
  EXPECT_FALSE(main().tmr_noresponse->Enabled());
  EXPECT_FALSE(main().tmr_MsgTimeout->Enabled());
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_EQ(Panel(6), "No Connection Active");
  EXPECT_TRUE(main().M_options.Enabled);
  world.Advance(60s);
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(NewScreen, ClosesTheLog) {
  NotingRecorder recorder(main());
  ScreenCommands screen(main(), options(), program().run, recorder, program().history,
                        program().addresses);
  main().filelogging = true;
  New();
  EXPECT_EQ(recorder.TakeNotes(), "close log\n");
}

TEST_F(NewScreen, AsksAboutAChangedOne) {
  main().form.BackColor = 88;
  ChangeScreen();
  ExpectScreenQuestion().Press(Answer::kYes);
  New();
  EXPECT_EQ(world.disk().Get(kScreen), FileText({"88", kL, kL, kT}));
  EXPECT_EQ(Title(), "TarnLink - New Screen");

  Open(kScreen);
  main().form.BackColor = 99;
  ChangeScreen();
  ExpectScreenQuestion().Press(Answer::kNo);
  New();
  EXPECT_EQ(world.disk().Get(kScreen), FileText({"88", kL, kL, kT}));
  EXPECT_FALSE(main().WCRChanged);
}

TEST_F(NewScreen, DoesNotComeWhenTheOldOneCouldNotBeSaved) {
  ChangeScreen();
  Start();
  world.disk().SetFreeSpace(0);
  ExpectScreenQuestion().Press(Answer::kYes);
  ExpectSaveFailure(61);
  New();
  EXPECT_EQ(Counts(), "MaxId 2, LocationCount 2, TextInfoCount 1");
  EXPECT_TRUE(main().WCRChanged);
  EXPECT_TRUE(main().CommRunning);
  EXPECT_EQ(main().CurrentTarnLinkFile, kScreen);
}

TEST_F(NewScreen, DoesNotComeWhenTheNameForTheOldOneWasCancelled) {
  New();
  main().form.BackColor = 88;
  ChangeScreen();
  ExpectScreenQuestion().Press(Answer::kYes);
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  New();
  EXPECT_EQ(main().form.BackColor.get(), 88);
  EXPECT_TRUE(main().WCRChanged);
}

TEST_F(NewScreen, TheTitleMarksAChange) {
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr");
  ChangeScreen();
  EXPECT_EQ(Title(), "TarnLink - boiler.wcr *");
  main().CurrentTarnLinkFile = "C:\\jobs\\old.wcr";
  main().ShowTitle();
  EXPECT_EQ(Title(), "TarnLink - old.wcr *");
  main().CurrentTarnLinkFile.clear();
  main().ShowTitle();
  EXPECT_EQ(Title(), "TarnLink - New Screen *");
}

// --- UnloadObjects ---

TEST_F(NewScreen, UnloadingDestroysTheControlsAndTellsTheirViews) {
  std::string unloaded;
  main().RAM_LOC_TEXT.Unloading = [&](int i) { unloaded += "name " + std::to_string(i) + "\n"; };
  main().RAM_LOC_VAL.Unloading = [&](int i) { unloaded += "value " + std::to_string(i) + "\n"; };
  main().RAM_LOC_CHECK.Unloading = [&](int i) { unloaded += "check " + std::to_string(i) + "\n"; };
  main().lbl_TextInfo.Unloading = [&](int i) { unloaded += "label " + std::to_string(i) + "\n"; };
  program().screen.UnloadObjects();
  EXPECT_EQ(unloaded, "name 1\nvalue 1\ncheck 1\nname 2\nvalue 2\ncheck 2\nlabel 1\n");
  EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 0");
  EXPECT_TRUE(main().RAM_LOC_TEXT.Has(0));
  EXPECT_FALSE(main().RAM_LOC_TEXT(0).Visible);
}

TEST_F(NewScreen, UnloadingStopsTheWatchdogAndClosesThePort) {
  Start();
  ASSERT_TRUE(main().tmr_noresponse->Enabled());
  main().MsgPointer = 2;
  program().screen.UnloadObjects();
  EXPECT_FALSE(main().tmr_noresponse->Enabled());
  EXPECT_FALSE(main().Comm->PortOpen());
  EXPECT_EQ(main().MsgPointer, 0);
}

TEST_F(NewScreen, UnloadingLeavesTheTableAndTheColour) {
  program().screen.UnloadObjects();
  EXPECT_EQ(main().Locations[1].Alias, "Flow");
  EXPECT_EQ(main().form.BackColor.get(), 77);
}

TEST_F(NewScreen, UnloadingAnEmptyScreenDoesNothing) {
  New();
  TakeNotes();
  program().screen.UnloadObjects();
  EXPECT_EQ(TakeNotes(), "");
  EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 0");
}

}  // namespace
}  // namespace tarnlink
