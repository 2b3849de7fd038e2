// New Project, Open Project, and what a project file brings with it.

#include <gtest/gtest.h>

#include <string>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kProject = "/home/user/Documents/job.prj";
constexpr const char* kMapText = "__cpu_name = ATmega64\r\nENTRY LIST\r\nflow DATA 000060\r\n";
constexpr const char* kListing = "DATA\r\n           flow                    FE20\r\n";

// As Save Project writes it.
std::string ProjectOf(const std::vector<std::string>& entries) {
  std::string text;
  for (const std::string& entry : entries) text += "\"" + entry + "\"\r\n";
  return text;
}

class OpeningAProject : public DeskTest {
 protected:
  OpeningAProject() { StartProgram(); }

  void OpenProject(const std::vector<std::string>& entries) {
    world.disk().Put(kProject, ProjectOf(entries));
    world.dialogs().ExpectOpenFile("Open").Give(kProject);
    main().mnuOpenProject.Press();
  }
  // The same without the dialog.
  void ReadProject(const std::vector<std::string>& entries) {
    world.disk().Put(kProject, ProjectOf(entries));
    program().project.ReadProject(kProject);
  }
  void ExpectCannotRead() {
    world.dialogs().ExpectMessageBox(
        {.text = "Can not read project file.", .title = "TarnLink", .icon = Icon::kExclamation});
  }
  ScriptedDialog& ExpectQuestion() {
    return world.dialogs().ExpectMessageBox({.text = "Project has changed. Save Project ?",
                                             .title = "Project Changed",
                                             .buttons = Buttons::kOkCancel});
  }
  void ExpectMapIsGone(const std::string& path) {
    world.dialogs().ExpectMessageBox(
        {.text = "Internal System Error # 53 occured, please contact distributor.\r\nDuring "
                 "reading memory map " +
                 path,
         .title = "Internal System Error",
         .icon = Icon::kCritical});
  }
  // The project's files, "group: path" a line.
  std::string Files() {
    std::string text;
    for (const ProjectNode& node : main().trvProject.Nodes()) {
      if (node.parent != "p" && !node.parent.empty()) text += node.parent + ": " + node.key + "\n";
    }
    return text;
  }
  void ExpectEmptyProject() {
    EXPECT_EQ(Files(), "");
    EXPECT_EQ(main().trvProject.Count(), 7);
    EXPECT_EQ(main().trvProject.RootText(), "Unnamed Project");
    EXPECT_FALSE(main().ProjectChanged);
  }
  std::string MapAddress() {
    Location variable;
    variable.ActualVariable = "flow";
    return program().map.AddressOf(variable);
  }
};

TEST_F(OpeningAProject, FilesEachEntryUnderItsExtension) {
  OpenProject({"p", "wcr", "C:\\jobs\\main.wcr", "/jobs/b.wcr", "par", "grp", "/jobs/a.par",
               "/jobs/a.grp", "/jobs/a.erc", "erc"});
  EXPECT_EQ(Files(),
            "wcr: C:\\jobs\\main.wcr\nwcr: /jobs/b.wcr\npar: /jobs/a.par\ngrp: /jobs/a.grp\n"
            "erc: /jobs/a.erc\n");
  EXPECT_EQ(main().trvProject.RootText(), "job.prj");
  EXPECT_EQ(main().PrjCmnDlg.InitDir, kFolder);
  EXPECT_EQ(History(main().M_fileHistPrj),
            std::string(kProject) + "\n[<Free>]\n[<Free>]\n[<Free>]\n");
  const FileDialogRequest& asked = world.dialogs().last_file_request();
  EXPECT_EQ(asked.file_name, "");
  EXPECT_EQ(asked.filter, "Project Files (*.prj)|*.prj");
}

TEST_F(OpeningAProject, ACancelLeavesEverythingAsItWas) {
  OpenProject({"/jobs/a.wcr"});
  world.dialogs().ExpectOpenFile("Open").Cancel();
  main().mnuOpenProject.Press();
  world.dialogs().ExpectOpenFile("Open").Give("");
  main().mnuOpenProject.Press();
  EXPECT_EQ(Files(), "wcr: /jobs/a.wcr\n");
}

TEST_F(OpeningAProject, AShortEntryIsPassedOver) {
  OpenProject({"a.b", "wcr", "", "b.p"});
  EXPECT_EQ(Files(), "");
  EXPECT_EQ(main().trvProject.RootText(), "job.prj");
}

TEST_F(OpeningAProject, OfAnEntryThatHasNoPlaceNothingIsLeft) {
  for (const std::string bad : {"/jobs/x.txt", "/jobs/X.WCR", "/jobs/noextension", "/jobs/x.p"}) {
    ExpectCannotRead();
    ReadProject({"/jobs/a.wcr", bad, "/jobs/b.wcr"});
    ExpectEmptyProject();
    EXPECT_EQ(main().CurrentProjectFile, "") << bad;
  }
  EXPECT_EQ(History(main().M_fileHistPrj), "[<Free>]\n[<Free>]\n[<Free>]\n[<Free>]\n");
}

TEST_F(OpeningAProject, APathThatStandsTwiceFailsIt) {
  ExpectCannotRead();
  ReadProject({"/jobs/a.wcr", "/jobs/b.wcr", "/jobs/a.wcr"});
  ExpectEmptyProject();
}

TEST_F(OpeningAProject, AFileThatIsNotThereIsToldInTheSameWords) {
  ExpectCannotRead();
  program().project.ReadProject("/home/user/Documents/gone.prj");
  ExpectEmptyProject();
}

TEST_F(OpeningAProject, AnOpenedOneIsUnchanged) {
  main().ProjectChanged = true;
  ExpectQuestion().Press(Answer::kCancel);
  OpenProject({"/jobs/a.wcr"});
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(OpeningAProject, AChangedOneIsSavedFirstOnOk) {
  main().trvProject.AddFileToProject("wcr", "/jobs/old.wcr");
  main().ProjectChanged = true;
  ExpectQuestion().Press(Answer::kOk);
  world.dialogs().ExpectSaveFile("Save As").Give("/home/user/Documents/old.prj");
  OpenProject({"/jobs/a.wcr"});
  EXPECT_NE(world.disk().Get("/home/user/Documents/old.prj").find("\"/jobs/old.wcr\""),
            std::string::npos);
  EXPECT_EQ(Files(), "wcr: /jobs/a.wcr\n");
}

TEST_F(OpeningAProject, NothingIsOpenedIfAWantedSaveIsCancelled) {
  main().trvProject.AddFileToProject("wcr", "/jobs/old.wcr");
  main().ProjectChanged = true;
  ExpectQuestion().Press(Answer::kOk);
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  main().mnuOpenProject.Press();
  EXPECT_EQ(Files(), "wcr: /jobs/old.wcr\n");
  EXPECT_TRUE(main().ProjectChanged);
}

TEST_F(OpeningAProject, SavingAndReloadingKeepsTheOrderWithinAGroup) {
  OpenProject({"/jobs/b.par", "/jobs/b.wcr", "/jobs/a.wcr", "/jobs/c.wcr", "/jobs/a.par"});
  const std::string before = Files();
  world.dialogs().ExpectSaveFile("Save As").Give(kProject);
  main().mnuSaveProject.Press();
  world.dialogs().ExpectOpenFile("Open").Give(kProject);
  main().mnuOpenProject.Press();
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(before,
            "wcr: /jobs/b.wcr\nwcr: /jobs/a.wcr\nwcr: /jobs/c.wcr\npar: /jobs/b.par\n"
            "par: /jobs/a.par\n");
}

TEST_F(OpeningAProject, HistoryOpensAndMovesToTheTop) {
  for (const char* name : {"/p/1.prj", "/p/2.prj", "/p/3.prj", "/p/4.prj", "/p/5.prj"}) {
    world.disk().Put(name, ProjectOf({"/jobs/a.wcr"}));
    program().project.ReadProject(name);
  }
  EXPECT_EQ(History(main().M_fileHistPrj), "/p/5.prj\n/p/4.prj\n/p/3.prj\n/p/2.prj\n");
  main().ProjectChanged = true;
  ExpectQuestion().Press(Answer::kCancel);
  main().M_fileHistPrj(2).Press();
  EXPECT_EQ(main().trvProject.RootText(), "3.prj");
  EXPECT_EQ(History(main().M_fileHistPrj), "/p/3.prj\n/p/5.prj\n/p/4.prj\n/p/2.prj\n");
}

// --- Map and names -------------------------------------------------------------------------------

TEST_F(OpeningAProject, AMapIsLoaded) {
  world.disk().Put("/jobs/a.map", kMapText);
  main().MicroType = kAtmegaMap;
  OpenProject({"/jobs/a.map"});
  EXPECT_EQ(Files(), "lst: /jobs/a.map\n");
  EXPECT_EQ(MapAddress(), "F060");
  EXPECT_TRUE(main().Toolbar1(6).Enabled);
}

// Whatever the listing says of itself, and without a word to the options.
TEST_F(OpeningAProject, AListingIsReadAsItIs) {
  world.disk().Put("/jobs/a.lst", kListing);
  OpenProject({"/jobs/a.lst"});
  EXPECT_EQ(main().MicroType, kNecListing);
  EXPECT_EQ(MapAddress(), "FE20");
  EXPECT_FALSE(main().Toolbar1(6).Enabled);
}

TEST_F(OpeningAProject, AMapThatIsGoneIsToldOnceAndTheProjectStaysOpen) {
  world.disk().MakeFolder("/jobs");
  for (const std::string path : {"/jobs/gone.map", "/jobs/gone.lst"}) {
    ExpectMapIsGone(path);
    ReadProject({path, "/jobs/a.wcr"});
    EXPECT_EQ(Files(), "wcr: /jobs/a.wcr\nlst: " + path + "\n");
    EXPECT_EQ(main().trvProject.RootText(), "job.prj");
  }
}

// The names of the project before would pass for those of this one.
TEST_F(OpeningAProject, AMapThatIsGoneLeavesNoNames) {
  world.disk().Put("/jobs/a.map", kMapText);
  world.disk().Put("/jobs/a.lst", kListing);
  for (const std::string path : {"/jobs/gone.map", "/jobs/gone.lst"}) {
    main().MicroType = kAtmegaMap;
    ReadProject({"/jobs/a.map"});
    ASSERT_EQ(program().map.variables().size(), 1U);
    const bool is_listing = path.ends_with("lst");
    if (is_listing) {
      ReadProject({"/jobs/a.lst"});
      ASSERT_EQ(program().map.bytes().size(), 1U);
    }
    ExpectMapIsGone(path);
    ReadProject({path});
    EXPECT_EQ(MapAddress(), "");
    EXPECT_EQ(main().MicroType, is_listing ? kNecListing : kAtmegaMap);
    EXPECT_EQ(main().Toolbar1(6).Enabled, is_listing);
  }
}

// A code of its own, so that the reason can be told.
TEST_F(OpeningAProject, AMapThatMayNotBeReadIsToldToo) {
  world.disk().Put("/jobs/a.map", kMapText);
  world.disk().Forbid("/jobs/a.map");
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 70 occured, please contact distributor.\r\nDuring reading "
               "memory map /jobs/a.map",
       .title = "Internal System Error",
       .icon = Icon::kCritical});
  ReadProject({"/jobs/a.map"});
  EXPECT_EQ(MapAddress(), "");
}

TEST_F(OpeningAProject, AMapThatStoodAheadOfABadEntryStaysLoaded) {
  world.disk().Put("/jobs/a.map", kMapText);
  main().MicroType = kAtmegaMap;
  ExpectCannotRead();
  ReadProject({"/jobs/a.map", "/jobs/a.txt"});
  ExpectEmptyProject();
  EXPECT_EQ(MapAddress(), "F060");
}

TEST_F(OpeningAProject, OfTwoIdFilesTheFirstIsRead) {
  world.disk().Put("/jobs/a.ids", "*first\r\nFlow,1A,3,H\r\n");
  world.disk().Put("/jobs/b.ids", "*second\r\nFlow,1A,3,H\r\n");
  OpenProject({"/jobs/a.ids", "/jobs/b.ids"});
  EXPECT_EQ(program().ids.IDRevision(), "first");
}

TEST_F(OpeningAProject, OneThatCannotBeReadIsNoChangedOne) {
  main().ProjectChanged = true;
  ExpectCannotRead();
  ReadProject({"/jobs/a.txt"});
  ExpectEmptyProject();
}

TEST_F(OpeningAProject, OfAProjectThatMovedTheFilesStandBesideIt) {
  world.disk().Put(std::string(kFolder) + "/a.map", kMapText);
  world.disk().Put(std::string(kFolder) + "/a.ids", "*R7\r\nFlow,1A,3,H\r\n");
  main().MicroType = kAtmegaMap;
  OpenProject({"D:\\jobs\\a.map", "D:\\jobs\\a.ids"});
  EXPECT_EQ(MapAddress(), "F060");
  EXPECT_EQ(program().ids.IDRevision(), "R7");
  EXPECT_EQ(Files(), "ids: D:\\jobs\\a.ids\nlst: D:\\jobs\\a.map\n");
}

TEST_F(OpeningAProject, WithoutAnIdFileTheNamesStayAsTheyWere) {
  world.disk().Put("/jobs/a.ids", "*R7\r\nFlow,1A,3,H\r\n");
  OpenProject({"/jobs/a.ids"});
  ASSERT_EQ(program().ids.items().size(), 1U);
  OpenProject({"/jobs/a.wcr"});
  EXPECT_EQ(program().ids.items().size(), 1U);
}

TEST_F(OpeningAProject, ANewProjectTakesTheIdFileOfTheOptions) {
  world.disk().Put("/jobs/a.ids", "Flow,1A,3,H\r\n");
  world.disk().Put("/jobs/options.ids", "*of the options\r\nFlow,1A,3,H\r\n");
  OpenProject({"/jobs/a.ids"});
  options().txt_ZOLTIDDef.Text = "/jobs/options.ids";
  main().mnuNewProject.Press();
  EXPECT_EQ(program().ids.IDRevision(), "of the options");
  ExpectEmptyProject();
}

TEST_F(OpeningAProject, ANewProjectAsksAboutAChangedOne) {
  main().trvProject.AddFileToProject("wcr", "/jobs/old.wcr");
  main().ProjectChanged = true;
  ExpectQuestion().Press(Answer::kCancel);
  main().mnuNewProject.Press();
  ExpectEmptyProject();
}

TEST_F(OpeningAProject, AnExtensionInCapitalsIsWarnedOfWhenTheProjectIsSaved) {
  main().trvProject.AddFileToProject("wcr", "/jobs/A.WCR");
  main().trvProject.AddFileToProject("lst", "/jobs/a.map");
  world.dialogs().ExpectSaveFile("Save As").Give(kProject);
  world.dialogs().ExpectMessageBox(
      {.text = "The project cannot be opened again as long as it holds \"A.WCR\": a file must have "
               "the extension of its group, in small letters.",
       .title = "TarnLink",
       .icon = Icon::kExclamation});
  main().mnuSaveProject.Press();
  EXPECT_NE(world.disk().Get(kProject).find("A.WCR"), std::string::npos);
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(OpeningAProject, MoreNodesThanTheFormatHoldsAreRefusedAndTheOldFileStays) {
  constexpr int kGroups = 7;
  for (int i = kGroups; i < 255; ++i) {
    main().trvProject.AddFileToProject("wcr", "/jobs/" + std::to_string(i) + ".wcr");
  }
  world.dialogs().ExpectSaveFile("Save As").Give(kProject);
  main().mnuSaveProject.Press();
  const std::string whole = world.disk().Get(kProject);
  main().trvProject.AddFileToProject("wcr", "/jobs/one more.wcr");
  main().ProjectChanged = true;
  world.dialogs().ExpectSaveFile("Save As").Give(kProject);
  world.dialogs().ExpectMessageBox(
      {.text = "A project file holds at most 255 entries, groups included; this project has 256.",
       .title = "TarnLink",
       .icon = Icon::kExclamation});
  main().mnuSaveProject.Press();
  EXPECT_EQ(world.disk().Get(kProject), whole);
  EXPECT_TRUE(main().ProjectChanged);
}

// What a damaged file holds may be anything, and as long as it likes.
TEST_F(OpeningAProject, ShowsOnlyTheBeginningOfAnEntryThatItCannotTake) {
  ExpectCannotRead();
  ReadProject({std::string(100'000, 'x') + ".exe"});
  ASSERT_EQ(world.dialogs().shown().size(), 1U);
  EXPECT_LT(world.dialogs().shown().front().size(), 400U);
}

}  // namespace
}  // namespace tarnlink
