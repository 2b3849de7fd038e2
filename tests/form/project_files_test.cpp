// The single files of a project: the add commands, and what a double click and the delete key do to
// a node of the tree.

#include <gtest/gtest.h>

#include <string>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

class ProjectFilesTest : public DeskTest {
 protected:
  ProjectFilesTest() { StartProgram(); }

  void DoubleClick(const std::string& key) { main().trvProject_DblClick(key); }
  void PressDelete(const std::string& key) { main().trvProject_DeleteKey(key); }
  void AddFile(const std::string& group, const std::string& path) {
    main().trvProject.AddFileToProject(group, path);
    world.disk().Put(path, "");
  }
  void ExpectBox(const std::string& text) {
    world.dialogs().ExpectMessageBox(
        {.text = text, .title = "TarnLink", .icon = Icon::kExclamation});
  }
  void Choose(MenuEntry& entry, const std::string& path) {
    world.dialogs().ExpectOpenFile("Open").Give(path);
    entry.Press();
  }
  std::string Filter() { return world.dialogs().last_file_request().filter; }
  bool Has(const std::string& key) { return main().trvProject.HasNode(key); }
};

// --- The menu ------------------------------------------------------------------------------------

TEST_F(ProjectFilesTest, ScreensParametersAndGraphsAreAddedByTheMenu) {
  struct Case {
    MenuEntry& entry;
    std::string path;
    std::string filter;
  };
  for (const Case& each :
       {Case{main().mnuAddTarnLinkFile, "/jobs/a.wcr", "Windows Tarnlink Screens (*.wcr)|*.wcr"},
        Case{main().mnuAddParameterFile, "/jobs/a.par", "Parameter File (*.par)|*.par"},
        Case{main().mnuAddGraphFile, "/jobs/a.grp", "Graphic Properties (*.grp)|*.grp"},
        Case{main().mnuAddErrorDiscr, "/jobs/a.erc", "Error Discription File (*.erc)|*.erc"}}) {
    main().ProjectChanged = false;
    Choose(each.entry, each.path);
    EXPECT_EQ(Filter(), each.filter);
    EXPECT_TRUE(Has(each.path));
    EXPECT_TRUE(main().ProjectChanged) << each.path;
  }
}

// What a project file cannot bring back is not taken in.
TEST_F(ProjectFilesTest, TheMenuRefusesAFileOfAnotherExtension) {
  for (const std::string name : {"A.WCR", "a.txt", "a.par", "wcr"}) {
    world.dialogs().ExpectOpenFile("Open").Give("/jobs/" + name);
    ExpectBox("\"" + name +
              "\" cannot stand in a project: its extension must be \"wcr\", in small letters.");
    main().mnuAddTarnLinkFile.Press();
    EXPECT_FALSE(Has("/jobs/" + name));
  }
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(ProjectFilesTest, ACancelAddsNothing) {
  for (MenuEntry* entry :
       {&main().mnuAddTarnLinkFile, &main().mnuAddParameterFile, &main().mnuAddGraphFile,
        &main().mnuAddErrorDiscr, &main().mnuAddIDFile, &main().mnuAddNecMap}) {
    world.dialogs().ExpectOpenFile("Open").Cancel();
    entry->Press();
    Choose(*entry, "");
  }
  EXPECT_EQ(main().trvProject.Count(), 7);
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(ProjectFilesTest, AnIdFileIsReadAtOnceAndASecondRefused) {
  world.disk().Put("/jobs/a.ids", "*R7\r\nFlow,1A,3,H\r\n");
  Choose(main().mnuAddIDFile, "/jobs/a.ids");
  EXPECT_EQ(Filter(), "ID File (*.ids)|*.ids");
  EXPECT_EQ(program().ids.IDRevision(), "R7");
  ExpectBox("First remove the current ID file from project.");
  main().mnuAddIDFile.Press();
}

TEST_F(ProjectFilesTest, ASecondErrorDescriptionIsRefused) {
  AddFile("erc", "/jobs/a.erc");
  ExpectBox("First remove the current error description file from project.");
  main().mnuAddErrorDiscr.Press();
}

TEST_F(ProjectFilesTest, AFileOfTheProjectIsNotAddedAgain) {
  AddFile("par", "/jobs/a.par");
  world.dialogs().ExpectOpenFile("Open").Give("/jobs/a.par");
  ExpectBox("\"a.par\" stands in the project already.");
  main().mnuAddParameterFile.Press();
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(ProjectFilesTest, WithoutItsGroupAFileHasNoPlace) {
  main().trvProject.Remove("par");
  world.dialogs().ExpectOpenFile("Open").Give("/jobs/a.par");
  ExpectBox("\"a.par\" has no group in this project.");
  main().mnuAddParameterFile.Press();
  EXPECT_FALSE(Has("/jobs/a.par"));
}

// --- The double click ----------------------------------------------------------------------------

TEST_F(ProjectFilesTest, OnAGroupNothingHappens) {
  for (const char* key : {"p", "wcr", "par", "grp", "erc", "ids", "lst"}) DoubleClick(key);
}

TEST_F(ProjectFilesTest, AFileThatIsGoneIsTold) {
  main().trvProject.AddFileToProject("wcr", "C:\\jobs\\gone.wcr");
  world.dialogs().ExpectMessageBox({.text = "The file : C:\\jobs\\gone.wcr does not exist",
                                    .title = "File Error",
                                    .icon = Icon::kCritical});
  DoubleClick("C:\\jobs\\gone.wcr");
}

TEST_F(ProjectFilesTest, AFileOnADiskThatDoesNotAnswerIsNotToldAsGone) {
  AddFile("wcr", "/jobs/a.wcr");
  world.disk().Put("/jobs/a.wcr", "255\r\n");
  for (const char* question : {"Files.Exists", "Files.IsFolder"}) {
    world.faults().Break(question, RunTimeError(kDeviceIo, "The disk does not answer."));
    DoubleClick("/jobs/a.wcr");
    EXPECT_TRUE(world.faults().Spent());
    EXPECT_EQ(main().CurrentTarnLinkFile, "/jobs/a.wcr");
    main().CurrentTarnLinkFile = "";
  }
}

TEST_F(ProjectFilesTest, AScreenIsOpened) {
  AddFile("wcr", "/jobs/A.WCR");
  world.disk().Put("/jobs/A.WCR", "255\r\n");
  ChangeScreen();
  ExpectScreenQuestion().Press(Answer::kNo);
  DoubleClick("/jobs/A.WCR");
  EXPECT_EQ(main().CurrentTarnLinkFile, "/jobs/A.WCR");
}

TEST_F(ProjectFilesTest, AScreenIsNotOpenedWhileTheQuestionHasNoAnswer) {
  AddFile("wcr", "/jobs/a.wcr");
  ChangeScreen();
  ExpectScreenQuestion().Cancel();
  DoubleClick("/jobs/a.wcr");
  EXPECT_EQ(main().CurrentTarnLinkFile, "");
}

TEST_F(ProjectFilesTest, ParametersAndGraphsGoToTheirTools) {
  std::string shown;
  main().ShowParameters = [&] { shown += "parameters of " + main().ParameterFile + "\n"; };
  main().ShowGraphic = [&] { shown += "graph of " + main().GraphicFile + "\n"; };
  AddFile("par", "/jobs/a.par");
  AddFile("grp", "/jobs/a.grp");
  DoubleClick("/jobs/a.par");
  DoubleClick("/jobs/a.grp");
  EXPECT_EQ(shown, "parameters of /jobs/a.par\ngraph of /jobs/a.grp\n");
}

TEST_F(ProjectFilesTest, DuringARunTheToolsAreRefused) {
  main().ShowParameters = [] { ADD_FAILURE(); };
  main().ShowGraphic = [] { ADD_FAILURE(); };
  AddFile("par", "/jobs/a.par");
  AddFile("grp", "/jobs/a.grp");
  main().CommRunning = true;
  for (const char* key : {"/jobs/a.par", "/jobs/a.grp"}) {
    world.dialogs().ExpectMessageBox({.text = "Stop Communication First",
                                      .title = "Communication Error",
                                      .icon = Icon::kCritical});
    DoubleClick(key);
  }
  EXPECT_EQ(main().ParameterFile, "/jobs/a.par");
  EXPECT_EQ(main().GraphicFile, "/jobs/a.grp");
  main().CommRunning = false;
}

TEST_F(ProjectFilesTest, FilesThatNoToolOpensSayHowTheyAreChanged) {
  AddFile("lst", "/jobs/a.lst");
  AddFile("erc", "/jobs/a.erc");
  AddFile("ids", "/jobs/a.IDS");
  for (const char* key : {"/jobs/a.lst", "/jobs/a.erc", "/jobs/a.IDS"}) {
    world.dialogs().ExpectMessageBox(
        {.text = "Use delete key to remove file / Project menu to add files.",
         .title = "TarnLink",
         .icon = Icon::kInformation});
    DoubleClick(key);
  }
}

TEST_F(ProjectFilesTest, AMapSaysNothing) {
  AddFile("lst", "/jobs/a.map");
  DoubleClick("/jobs/a.map");
}

// --- The delete key ------------------------------------------------------------------------------

TEST_F(ProjectFilesTest, TheDeleteKeyAsksAndRemovesAnyNode) {
  AddFile("wcr", "/jobs/a.wcr");
  for (const auto& [key, text] :
       {std::pair<std::string, std::string>{"/jobs/a.wcr", "a.wcr"}, {"par", "Parameter Files"}}) {
    main().ProjectChanged = false;
    for (const Answer answer : {Answer::kCancel, Answer::kOk}) {
      EXPECT_TRUE(Has(key));
      EXPECT_FALSE(main().ProjectChanged);
      world.dialogs()
          .ExpectMessageBox({.text = "Are you sure you want to delete : " + text + "?",
                             .title = "Confirm Delete",
                             .buttons = Buttons::kOkCancel})
          .Press(answer);
      PressDelete(key);
    }
    EXPECT_FALSE(Has(key));
    EXPECT_TRUE(main().ProjectChanged);
  }
  EXPECT_TRUE(world.disk().Exists("/jobs/a.wcr")) << "The file itself is nobody's to delete.";
}

}  // namespace
}  // namespace tarnlink
