// Leaving the program: what it asks, what it saves and in which order, and when it stays.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kOther = "/home/user/Documents/other.wcr";
constexpr const char* kProject = "/home/user/Documents/job.prj";

class Leaving : public DeskTest {
 protected:
  Leaving() {
    StartProgram();
    OpenText(Text());
    TakeNotes();
  }

  static std::string Text() {
    return FileText({"255", R"("L",0,3,"01A0",0,"Flow","v",0,0,0,0,"0",0,1,2,3,4,"0")"});
  }

  // A change that a saved file shows.
  void Paint() {
    main().form.BackColor = 77;
    ChangeScreen();
  }
  bool ScreenIsSaved() { return OnDisk().starts_with("77\r\n"); }
  std::string OnDisk() { return world.disk().Get(kScreen); }

  void ExpectStays() {
    EXPECT_FALSE(Unloaded());
    EXPECT_EQ(TakeNotes(), "");
  }
};

TEST_F(Leaving, AnUnchangedProgramAsksNothingAndSavesInThisOrder) {
  main().form.Left = -15;
  main().form.Top = 30;
  main().form.Width = 9000;
  main().form.Height = 6000;
  main().LoadShortCutsPrj(kProject);
  main().PrjCmnDlg.InitDir = "/p";
  main().ParCmnDlg.InitDir = "/a";
  main().GrpCmnDlg.InitDir = "/g";
  main().MssCmnDlg.InitDir = "/m";
  Exit();
  EXPECT_EQ(TakeNotes(),
            "save Startup/Left=-15\n"
            "save Startup/Top=30\n"
            "save Startup/Width=9000\n"
            "save Startup/Height=6000\n"
            "save FileHistory/Hist0=/home/user/Documents/boiler.wcr\n"
            "save FileHistory/Hist1=<Free>\n"
            "save FileHistory/Hist2=<Free>\n"
            "save FileHistory/Hist3=<Free>\n"
            "save FileHistoryPrj/Hist0=/home/user/Documents/job.prj\n"
            "save FileHistoryPrj/Hist1=<Free>\n"
            "save FileHistoryPrj/Hist2=<Free>\n"
            "save FileHistoryPrj/Hist3=<Free>\n"
            "save WcrCmnDlg/InitDir=/home/user/Documents\n"
            "save PrjCmnDlg/InitDir=/p\n"
            "save ParCmnDlg/InitDir=/a\n"
            "save GrpCmnDlg/InitDir=/g\n"
            "save MssCmnDlg/InitDir=/m\n"
            "save Project/ProjectWindow=True\n"
            "unload\n");
}

TEST_F(Leaving, ARunEndsBeforeAnythingIsSaved) {
  options().opt_Protocol.Choose(0);
  main().Toolbar1(2).Press();
  world.Advance(std::chrono::milliseconds(20));
  EXPECT_TRUE(main().Comm->PortOpen());
  EXPECT_TRUE(main().tmr_noresponse->Enabled());
  TakeNotes();
  Exit();
  EXPECT_TRUE(TakeNotes().starts_with("close port\nsave Startup/Left="));
  EXPECT_FALSE(main().Comm->PortOpen());
  EXPECT_FALSE(main().tmr_noresponse->Enabled());
  EXPECT_TRUE(Unloaded());
}

TEST_F(Leaving, TheRunIsSilentWhileAFailureOfTheStoreIsTold) {
  for (const bool slave_has_answered : {false, true}) {
    options().opt_Protocol.Choose(0);
    main().Toolbar1(2).Press();
    world.Advance(std::chrono::milliseconds(20));
    main().message_received = slave_has_answered;
    const int opens = world.port().opens();
    const std::size_t frames = world.port().frames().size();
    world.settings().BreakWriting("The disk is full.");
    world.dialogs()
        .ExpectMessageBox("The settings could not be saved.", "TarnLink")
        .For(std::chrono::seconds(60));
    Exit();
    EXPECT_TRUE(Unloaded());
    EXPECT_EQ(world.port().opens(), opens);
    EXPECT_EQ(world.port().frames().size(), frames);
    StartProgram();
    OpenText(Text());
  }
}

TEST_F(Leaving, AMinimizedWindowSavesNoPlace) {
  main().form.State = WindowState::kMinimized;
  Exit();
  const std::string done = TakeNotes();
  EXPECT_EQ(done.find("Startup/"), std::string::npos) << done;
  EXPECT_TRUE(Unloaded());
}

TEST_F(Leaving, AMaximizedWindowSavesItsPlace) {
  main().form.State = WindowState::kMaximized;
  Exit();
  EXPECT_EQ(Stored("Startup", "Width"), "4000");
}

TEST_F(Leaving, APlaceIsSavedInWholeUnits) {
  main().form.Left = 14.6F;
  main().form.Top = -14.6F;
  Exit();
  EXPECT_EQ(Stored("Startup", "Left"), "15");
  EXPECT_EQ(Stored("Startup", "Top"), "-15");
}

TEST_F(Leaving, AFolderOfTheOldWorldStaysInTheStoreAsItIs) {
  Exit();
  EXPECT_EQ(Stored("PrjCmnDlg", "InitDir"), "C:\\");
}

TEST_F(Leaving, SavesAHiddenProjectWindowAsFalse) {
  main().mnuViewProjectWindow.Press();
  Exit();
  EXPECT_EQ(Stored("Project", "ProjectWindow"), "False");
}

TEST_F(Leaving, AChangedScreenIsSavedOnYes) {
  Paint();
  ExpectScreenQuestion().Press(Answer::kYes);
  Exit();
  EXPECT_TRUE(ScreenIsSaved());
  EXPECT_FALSE(main().WCRChanged);
  EXPECT_TRUE(Unloaded());
}

TEST_F(Leaving, AChangedScreenIsLostOnNo) {
  Paint();
  ExpectScreenQuestion().Press(Answer::kNo);
  Exit();
  EXPECT_EQ(OnDisk(), Text());
  EXPECT_TRUE(Unloaded());
}

TEST_F(Leaving, AQuestionLeftWithoutAnAnswerKeepsTheProgramAndTheChange) {
  Paint();
  ExpectScreenQuestion();
  Exit();
  EXPECT_EQ(OnDisk(), Text());
  EXPECT_FALSE(Unloaded());
  EXPECT_TRUE(main().WCRChanged);
}

TEST_F(Leaving, AProjectQuestionLeftWithoutAnAnswerKeepsTheProgram) {
  ChangeProject();
  ExpectProjectQuestion();
  Exit();
  EXPECT_FALSE(Unloaded());
  EXPECT_TRUE(main().ProjectChanged);
}

TEST_F(Leaving, AScreenWithoutAFileIsSavedUnderTheNameThatTheUserGives) {
  main().M_NewScreen.Press();
  Paint();
  ExpectScreenQuestion().Press(Answer::kYes);
  world.dialogs().ExpectSaveFile("Save As").Give(kOther);
  ExpectAddToProject().Press(Answer::kNo);
  Exit();
  EXPECT_EQ(world.disk().Get(kOther), "77\r\n");
  EXPECT_TRUE(Unloaded());
  EXPECT_EQ(Stored("FileHistory", "Hist0"), kOther);
}

TEST_F(Leaving, AddingTheSavedScreenToTheProjectChangesTheProject) {
  main().M_NewScreen.Press();
  Paint();
  ExpectScreenQuestion().Press(Answer::kYes);
  world.dialogs().ExpectSaveFile("Save As").Give(kOther);
  ExpectAddToProject().Press(Answer::kYes);
  ExpectProjectQuestion().Press(Answer::kNo);
  Exit();
  EXPECT_TRUE(Unloaded());
}

TEST_F(Leaving, ACancelledNameKeepsTheProgram) {
  main().M_NewScreen.Press();
  Paint();
  TakeNotes();
  ExpectScreenQuestion().Press(Answer::kYes);
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  Exit();
  ExpectStays();
  EXPECT_TRUE(main().WCRChanged);
}

TEST_F(Leaving, AScreenThatCannotBeSavedKeepsTheProgram) {
  Paint();
  ChangeProject();
  world.disk().SetFreeSpace(3);
  ExpectScreenQuestion().Press(Answer::kYes);
  ExpectSaveFailure(61);
  Exit();
  ExpectStays();
  EXPECT_TRUE(main().WCRChanged);
  EXPECT_EQ(OnDisk(), Text());
  // Leaving works once there is room again.
  world.disk().SetFreeSpace(1000);
  ExpectScreenQuestion().Press(Answer::kYes);
  ExpectProjectQuestion().Press(Answer::kNo);
  Exit();
  EXPECT_TRUE(ScreenIsSaved());
  EXPECT_TRUE(Unloaded());
}

// The window is at work until then, and what it does may need saving too.
TEST_F(Leaving, AToolThatStillWritesAFileIsWaitedForAsIfNothingHadBeen) {
  std::function<void()> again;
  main().MayEnd = [&](std::function<void()> call) {
    again = std::move(call);
    return false;
  };
  options().opt_Protocol.Choose(0);
  main().Toolbar1(2).Press();
  TakeNotes();
  Exit();
  ExpectStays();
  EXPECT_TRUE(main().CommRunning);
  EXPECT_TRUE(world.port().PortOpen());
  Paint();
  main().MayEnd = [](const std::function<void()>&) { return true; };
  ExpectScreenQuestion().Press(Answer::kYes);
  again();
  EXPECT_TRUE(ScreenIsSaved());
  EXPECT_TRUE(Unloaded());
}

TEST_F(Leaving, ARunGoesOnWhenTheProgramStays) {
  options().opt_Protocol.Choose(0);
  main().Toolbar1(2).Press();
  Paint();
  TakeNotes();
  ExpectScreenQuestion().Press(Answer::kYes);
  world.disk().Forbid(kScreen);
  ExpectSaveFailure(70);
  Exit();
  ExpectStays();
  EXPECT_TRUE(main().CommRunning);
  EXPECT_TRUE(main().Comm->PortOpen());
}

TEST_F(Leaving, AChangedProjectIsSavedOnYes) {
  ChangeProject();
  ExpectProjectQuestion().Press(Answer::kYes);
  world.dialogs().ExpectSaveFile("Save As").Give(kProject);
  Exit();
  EXPECT_TRUE(world.disk().Exists(kProject));
  EXPECT_TRUE(Unloaded());
  EXPECT_EQ(Stored("FileHistoryPrj", "Hist0"), kProject);
}

TEST_F(Leaving, AChangedProjectIsLostOnNo) {
  ChangeProject();
  ExpectProjectQuestion().Press(Answer::kNo);
  Exit();
  EXPECT_FALSE(world.disk().Exists(kProject));
  EXPECT_TRUE(Unloaded());
}

TEST_F(Leaving, ACancelledProjectNameKeepsTheProgram) {
  ChangeProject();
  ExpectProjectQuestion().Press(Answer::kYes);
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  Exit();
  ExpectStays();
  EXPECT_TRUE(main().ProjectChanged);
}

TEST_F(Leaving, AProjectThatCannotBeSavedKeepsTheProgram) {
  ChangeProject();
  ExpectProjectQuestion().Press(Answer::kYes);
  world.dialogs().ExpectSaveFile("Save As").Give("/nowhere/job.prj");
  world.dialogs().ExpectMessageBox(
      "Internal System Error # 76 occured, please contact distributor.\r\nDuring saving prj file "
      "/nowhere/job.prj",
      "Internal System Error");
  Exit();
  ExpectStays();
  EXPECT_TRUE(main().ProjectChanged);
}

TEST_F(Leaving, AsksForTheScreenBeforeTheProjectWhateverIsAnswered) {
  for (const Answer screen : {Answer::kYes, Answer::kNo}) {
    for (const Answer project : {Answer::kYes, Answer::kNo}) {
      StartProgram();
      OpenText(Text());
      Paint();
      ChangeProject();
      world.disk().Remove(kProject);
      ExpectScreenQuestion().Press(screen);
      ExpectProjectQuestion().Press(project);
      if (project == Answer::kYes) world.dialogs().ExpectSaveFile("Save As").Give(kProject);
      Exit();
      EXPECT_EQ(ScreenIsSaved(), screen == Answer::kYes);
      EXPECT_EQ(world.disk().Exists(kProject), project == Answer::kYes);
      EXPECT_TRUE(Unloaded());
    }
  }
}

TEST_F(Leaving, NoOnTheScreenDoesNotForgetTheChangeWhenTheProjectKeepsTheProgram) {
  Paint();
  ChangeProject();
  ExpectScreenQuestion().Press(Answer::kNo);
  ExpectProjectQuestion().Press(Answer::kYes);
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  Exit();
  ExpectStays();
  EXPECT_TRUE(main().WCRChanged);
}

TEST_F(Leaving, AStoreThatCannotBeWrittenIsToldButKeepsNobodyHere) {
  world.settings().BreakWriting("\"TarnLink2.ini\" could not be written: the disk is full.");
  world.dialogs().ExpectMessageBox("The settings could not be saved.", "TarnLink").While([this] {
    EXPECT_FALSE(Unloaded());
  });
  Exit();
  EXPECT_TRUE(Unloaded());
}

}  // namespace
}  // namespace tarnlink
