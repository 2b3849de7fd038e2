// Where the files of a project are found: where they were added, or beside the project file.

#include "monitor/project_paths.h"

#include <gtest/gtest.h>

#include <string>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kProject = "/moved/job.prj";

class ProjectPaths : public DeskTest {
 protected:
  ProjectPaths() {
    StartProgram();
    world.disk().Put("/moved/a.wcr", "255\r\n");
    world.disk().MakeFolder("/jobs");
    main().CurrentProjectFile = kProject;
  }
  void Add(const std::string& group, const std::string& key) {
    ASSERT_TRUE(main().trvProject.AddFileToProject(group, key));
  }
};

TEST_F(ProjectPaths, AFileThatIsThereIsTheOne) {
  world.disk().Put("/jobs/a.wcr", "0\r\n");
  EXPECT_EQ(FoundFile(main(), "/jobs/a.wcr"), "/jobs/a.wcr");
}

TEST_F(ProjectPaths, OfAFolderThatIsNotHereTheFileIsBesideTheProject) {
  for (const std::string key :
       {"C:\\jobs\\a.wcr", "C:\\a.wcr", "c:/jobs/a.wcr", "/home/other/jobs/a.wcr"}) {
    EXPECT_EQ(FoundFile(main(), key), "/moved/a.wcr") << key;
  }
}

// Another file of its name may be of another job.
TEST_F(ProjectPaths, AFileThatIsGoneFromItsFolderIsMissing) {
  EXPECT_EQ(FoundFile(main(), "/jobs/a.wcr"), "/jobs/a.wcr");
}

TEST_F(ProjectPaths, ANameAloneIsBesideTheProjectWhereverThatIsSavedLater) {
  world.disk().Put("a.wcr", "0\r\n");
  world.disk().Put(kProject, "\"a.wcr\"\r\n");
  program().project.ReadProject(kProject);
  EXPECT_TRUE(main().trvProject.HasNode("/moved/a.wcr"));
  world.dialogs().ExpectSaveFile("Save As").Give("/jobs/other.prj");
  main().mnuSaveProject.Press();
  EXPECT_NE(world.disk().Get("/jobs/other.prj").find("\"/moved/a.wcr\""), std::string::npos);
}

TEST_F(ProjectPaths, TheNextProjectIsLookedForWhereThisOneIs) {
  world.disk().Put(kProject, "\"a.wcr\"\r\n");
  program().project.ReadProject(kProject);
  EXPECT_EQ(main().PrjCmnDlg.InitDir, "/moved");
}

TEST_F(ProjectPaths, WhatIsNowhereKeepsItsPath) {
  EXPECT_EQ(FoundFile(main(), "C:\\jobs\\b.wcr"), "C:\\jobs\\b.wcr");
  EXPECT_EQ(FoundFile(main(), ""), "");
}

TEST_F(ProjectPaths, WithoutAProjectFileNothingIsBesideIt) {
  main().CurrentProjectFile.clear();
  EXPECT_EQ(FoundFile(main(), "C:\\jobs\\a.wcr"), "C:\\jobs\\a.wcr");
}

TEST_F(ProjectPaths, AFileOfTheOptionsIsNotLookedForBesideTheProject) {
  world.disk().Put("/moved/a.map", "x");
  EXPECT_EQ(FileOfGroup(main(), "lst", "C:\\jobs\\a.map"), "C:\\jobs\\a.map");
  Add("lst", "C:\\jobs\\a.map");
  EXPECT_EQ(FileOfGroup(main(), "lst", "C:\\other.map"), "/moved/a.map");
}

TEST_F(ProjectPaths, AScreenOfAMovedProjectIsAFileOfTheProject) {
  Add("wcr", "C:\\jobs\\a.wcr");
  EXPECT_TRUE(HoldsFile(main(), "/moved/a.wcr"));
  EXPECT_TRUE(HoldsFile(main(), "C:\\jobs\\a.wcr"));
  EXPECT_FALSE(HoldsFile(main(), "/moved/b.wcr"));
}

TEST_F(ProjectPaths, SavingAScreenOfAMovedProjectDoesNotAskToAddIt) {
  Add("wcr", "C:\\jobs\\a.wcr");
  main().trvProject_DblClick("C:\\jobs\\a.wcr");
  EXPECT_EQ(main().CurrentTarnLinkFile, "/moved/a.wcr");
  world.dialogs().ExpectSaveFile("Save As").Give("/moved/a.wcr");
  main().M_filesave(1).Press();
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(ProjectPaths, ATakenAwayGroupIsToldWhenASavedScreenIsToBeAdded) {
  main().trvProject.Remove("wcr");
  program().screen.OpenTarnLinkFileBuildScreen("/moved/a.wcr");
  world.dialogs().ExpectSaveFile("Save As").Give("/moved/b.wcr");
  world.dialogs()
      .ExpectMessageBox({.text = "Add file to project?",
                         .title = "TarnLink2",
                         .icon = Icon::kQuestion,
                         .buttons = Buttons::kYesNo})
      .Press(Answer::kYes);
  world.dialogs().ExpectMessageBox({.text = "\"b.wcr\" has no group in this project.",
                                    .title = "TarnLink",
                                    .icon = Icon::kExclamation});
  main().M_filesave(1).Press();
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(ProjectPaths, ParametersAndGraphsOfAMovedProjectAreFoundToo) {
  world.disk().Put("/moved/a.par", "x");
  world.disk().Put("/moved/a.grp", "x");
  Add("par", "C:\\jobs\\a.par");
  Add("grp", "C:\\jobs\\a.grp");
  main().trvProject_DblClick("C:\\jobs\\a.par");
  main().trvProject_DblClick("C:\\jobs\\a.grp");
  EXPECT_EQ(main().ParameterFile, "/moved/a.par");
  EXPECT_EQ(main().GraphicFile, "/moved/a.grp");
}

}  // namespace
}  // namespace tarnlink
