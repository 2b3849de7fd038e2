// The project window and the Save Project command.

#include <gtest/gtest.h>

#include <string>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kProject = "/home/user/Documents/job.prj";
constexpr const char* kEmptyProject =
    "\"p\"\r\n\"wcr\"\r\n\"par\"\r\n\"grp\"\r\n\"erc\"\r\n\"ids\"\r\n\"lst\"\r\n";

class ProjectCommandsTest : public DeskTest {
 protected:
  ProjectCommandsTest() { StartProgram(); }

  void SaveProject(const std::string& path) {
    world.dialogs().ExpectSaveFile("Save As").Give(path);
    main().mnuSaveProject.Press();
  }
};

TEST_F(ProjectCommandsTest, EntryAndToolBarButtonHideAndShowTheWindow) {
  for (MenuEntry* entry : {&main().mnuViewProjectWindow, &main().Toolbar1(5)}) {
    entry->Press();
    EXPECT_FALSE(main().sstProject.Visible);
    EXPECT_FALSE(main().mnuViewProjectWindow.Checked);
    entry->Press();
    EXPECT_TRUE(main().sstProject.Visible);
    EXPECT_TRUE(main().mnuViewProjectWindow.Checked);
  }
}

TEST_F(ProjectCommandsTest, SaveAlwaysAsksForAName) {
  SaveProject(kProject);
  const FileDialogRequest& asked = world.dialogs().last_file_request();
  EXPECT_EQ(asked.file_name, "Unnamed Project");
  EXPECT_EQ(asked.filter, "Project Files (*.prj)|*.prj");
  EXPECT_EQ(asked.extension, "prj");
  EXPECT_EQ(asked.folder, kFolder);
  EXPECT_TRUE(asked.confirm_overwrite);
  SaveProject(kProject);
  EXPECT_EQ(world.dialogs().last_file_request().file_name, "job.prj");
}

TEST_F(ProjectCommandsTest, SaveWritesEveryNodeInTreeOrder) {
  main().trvProject.AddFileToProject("lst", "/jobs/a.lst");
  main().trvProject.AddFileToProject("wcr", "C:\\jobs\\main.wcr");
  main().trvProject.AddFileToProject("wcr", "/jobs/b.wcr");
  SaveProject(kProject);
  EXPECT_EQ(
      world.disk().Get(kProject),
      "\"p\"\r\n\"wcr\"\r\n\"C:\\jobs\\main.wcr\"\r\n\"/jobs/b.wcr\"\r\n\"par\"\r\n\"grp\"\r\n"
      "\"erc\"\r\n\"ids\"\r\n\"lst\"\r\n\"/jobs/a.lst\"\r\n");
}

TEST_F(ProjectCommandsTest, SaveNamesTheProjectAndEntersItAtTheTopOfTheHistory) {
  ChangeProject();
  SaveProject("/home/user/Documents/first.prj");
  SaveProject(kProject);
  EXPECT_EQ(main().trvProject.RootText(), "job.prj");
  EXPECT_EQ(main().PrjCmnDlg.InitDir, kFolder);
  EXPECT_FALSE(main().ProjectChanged);
  EXPECT_EQ(History(main().M_fileHistPrj),
            "/home/user/Documents/job.prj\n/home/user/Documents/first.prj\n[<Free>]\n[<Free>]\n");
  EXPECT_EQ(History(main().M_fileHist), "[<Free>]\n[<Free>]\n[<Free>]\n[<Free>]\n");
}

TEST_F(ProjectCommandsTest, SaveReplacesAnOldFile) {
  world.disk().Put(kProject, std::string(10'000, 'x'));
  SaveProject(kProject);
  EXPECT_EQ(world.disk().Get(kProject), kEmptyProject);
}

TEST_F(ProjectCommandsTest, ACancelOrAnEmptyNameDoesNothing) {
  ChangeProject();
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  main().mnuSaveProject.Press();
  SaveProject("");
  EXPECT_TRUE(main().ProjectChanged);
  EXPECT_EQ(main().trvProject.RootText(), "Unnamed Project");
  EXPECT_EQ(world.faults().CountOf("Files.WriteWhole"), 0);
}

TEST_F(ProjectCommandsTest, AFailedWriteIsToldAndLeavesEverythingAsItWas) {
  world.disk().Put(kProject, "old");
  ChangeProject();
  world.faults().Break("Files.WriteWhole", RunTimeError(kDiskFull, "The disk is full."));
  world.dialogs().ExpectSaveFile("Save As").Give(kProject);
  world.dialogs().ExpectMessageBox(
      {.text = "Internal System Error # 61 occured, please contact distributor.\r\nDuring saving "
               "prj file /home/user/Documents/job.prj",
       .title = "Internal System Error",
       .icon = Icon::kCritical});
  main().mnuSaveProject.Press();
  EXPECT_EQ(world.disk().Get(kProject), "old");
  EXPECT_TRUE(main().ProjectChanged);
  EXPECT_EQ(main().trvProject.RootText(), "Unnamed Project");
  EXPECT_EQ(History(main().M_fileHistPrj), "[<Free>]\n[<Free>]\n[<Free>]\n[<Free>]\n");
}

}  // namespace
}  // namespace tarnlink
