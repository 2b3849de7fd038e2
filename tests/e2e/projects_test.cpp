// Projects in the real program: opened from the command line, moved to this machine from another
// one, changed by the keyboard, and run against the simulated boiler.

#include <gtest/gtest.h>

#include <memory>

#include "job_folder.h"
#include "process.h"

namespace e2e {
namespace {

constexpr int kPatience = 5000;  // ms

class ProjectTest : public testing::Test {
 protected:
  void Start(const std::vector<std::string>& files, const std::string& port = "") {
    std::vector<std::string> paths;
    for (const std::string& file : files) paths.push_back(folder.Path(file));
    program = std::make_unique<DrivenProgram>(folder, TarnLinkSettings(port), paths);
  }
  // Presses the Delete key on a line of the tree and answers the question by another key.
  void DeleteFromTree(const std::string& text, const std::string& answer) {
    program->Mouse("trvProject/" + text);
    program->Key("Delete");
    ASSERT_TRUE(program->Becomes("modal",
                                 "Confirm Delete|Are you sure you want to delete : " + text + "?"));
    program->Key(answer);
    ASSERT_TRUE(program->Becomes("modal", "none"));
  }

  JobFolder folder;
  std::unique_ptr<DrivenProgram> program;
};

TEST_F(ProjectTest, TheCommandLineOpensAProjectAndAScreen) {
  Start({"boiler.prj", "boiler.wcr"});
  ExpectScreen(*program, "boiler.wcr");
  EXPECT_EQ(program->Ask("items trvProject"), kSampleTree);
  OpenSettings(*program, 1);
  EXPECT_EQ(program->Text("cmbActualVariable"), "flow_temperature");
}

TEST_F(ProjectTest, AFileOfNamesOnTheCommandLineIsTakenIntoTheProject) {
  folder.Write("other.ids",
               "*Another boiler, 9.9\r\npump_hours,0123,2,HL\r\nfan_hours,0124,2,H\r\n");
  Start({"other.ids", "zolt.wcr"});
  ExpectScreen(*program, "zolt.wcr");
  EXPECT_EQ(program->Ask("items trvProject"),
            Replaced(kEmptyTree, "ID Description", "ID Description|other.ids"));
  OpenSettings(*program, 1);
  EXPECT_EQ(program->Ask("items cmbActualVariable"), "fan_hours|pump_hours");
  EXPECT_EQ(program->Ask("get Frame9 title"), "Another boiler, 9.9");
  TypeName(*program, "fan_h");
  program->Key("Down");
  program->Key("Return");
  EXPECT_TRUE(program->Becomes("text txt_Address", "0124"));
  EXPECT_EQ(program->Text("cmbClass"), "2");
  EXPECT_EQ(program->Ask("get optSelectByte(0) checked"), "true");
}

TEST_F(ProjectTest, FilesOfAProjectFromAnotherMachineAreFoundBesideIt) {
  folder.Write(
      "moved.prj",
      "\"p\"\r\n\"wcr\"\r\n\"C:\\jobs\\boiler.wcr\"\r\n\"C:\\jobs\\gone.wcr\"\r\n\"par\"\r\n"
      "\"grp\"\r\n\"erc\"\r\n\"ids\"\r\n\"C:\\jobs\\default.ids\"\r\n\"lst\"\r\n"
      "\"C:\\jobs\\atmega.map\"\r\n");
  Start({"moved.prj"});
  EXPECT_EQ(program->Text("lbl_MapNotice"), "atmega.map: 122 variables read, 11 lines skipped");
  OpenFromTree(*program, "gone.wcr");
  ASSERT_TRUE(program->Becomes("modal", "File Error|The file : C:\\jobs\\gone.wcr does not exist"));
  program->Key("Return");
  ASSERT_TRUE(program->Becomes("modal", "none"));
  OpenFromTree(*program, "boiler.wcr");
  ExpectScreen(*program, "boiler.wcr");
  folder.Move("flow_temperature", "00000120");
  program->Press("mnuRefresh");
  EXPECT_TRUE(
      program->Becomes("text lbl_MapNotice",
                       "atmega.map: 122 variables read, 11 lines skipped; 1 location moved; "
                       "8 locations without their name"));
}

TEST_F(ProjectTest, TheDeleteKeyTakesAFileOutOfTheProjectAfterAQuestion) {
  Start({"boiler.prj"});
  DeleteFromTree("service.wcr", "Escape");
  EXPECT_EQ(program->Ask("items trvProject"), kSampleTree);
  DeleteFromTree("service.wcr", "Return");
  EXPECT_EQ(program->Ask("items trvProject"), Replaced(kSampleTree, "|service.wcr", ""));

  program->Press("mnuSaveProject");
  program->SaveAs("Save As", "new.prj");  // in the project's folder
  // A name without a folder has become a path, so that the project could have gone elsewhere.
  std::string expected = Replaced(folder.Read("boiler.prj"), "\"service.wcr\"\r\n", "");
  for (const char* name :
       {"zolt.wcr", "boiler.wcr", "burner.grp", "default.erc", "default.ids", "atmega.map"}) {
    expected = Replaced(expected, name, folder.Path(name));
  }
  EXPECT_TRUE(folder.Becomes("new.prj", expected));
  program->Press("M_exit");
  EXPECT_EQ(program->process().WaitForEnd(kPatience), 0) << program->Ask("modal");
}

TEST_F(ProjectTest, AProjectWithoutItsMapHasNothingToRefresh) {
  Start({"boiler.prj"});
  DeleteFromTree("atmega.map", "Return");
  program->Press("mnuRefresh");
  EXPECT_TRUE(program->Becomes("modal", "TarnLink|No Memory Map file in this project."));
}

TEST_F(ProjectTest, ALocationThatIsGivenANameShowsItsValueInTheRun) {
  Process boiler{{BOILER_SIMULATOR_PROGRAM, "--protocol", "tarnlink", "--at-once", "--until-eof"},
                 {}};
  Start({"boiler.prj"}, boiler.ReadLine(kPatience));
  OpenFromTree(*program, "boiler.wcr");
  ExpectScreen(*program, "boiler.wcr");
  OpenSettings(*program, 1);
  TypeName(*program, "flow_setpoint");
  program->Key("Tab");
  ASSERT_TRUE(program->Becomes("text txt_Address", "F090"));
  program->Key("Return");
  ASSERT_TRUE(program->Becomes("modal", "none"));
  program->Mouse("Toolbar1(2)");
  ASSERT_TRUE(program->Becomes("text StatusBar1(4)", "Communication Running"));
  EXPECT_TRUE(program->Becomes("text RAM_LOC_VAL(18)", "60"));
  EXPECT_TRUE(program->Becomes("text RAM_LOC_VAL(1)", "60"));
  OpenSettings(*program, 1);
  EXPECT_EQ(program->Ask("enabled cmd_Ok"), "false");
}

TEST_F(ProjectTest, EachScreenOfTheProjectRunsUnderItsProtocolAndNames) {
  struct Screen {
    const char* project;
    const char* file;
    const char* protocol;
    int hours;  // the Location that shows them
  };
  Process boiler{{BOILER_SIMULATOR_PROGRAM, "--protocol", "any", "--at-once", "--until-eof"}, {}};
  const std::string line = boiler.ReadLine(kPatience);
  for (const Screen& screen : {Screen{"boiler.prj", "boiler.wcr", "TarnLink Protocol", 26},
                               Screen{"boiler.prj", "zolt.wcr", "ZOLT Protocol", 21},
                               Screen{"modbus.prj", "modbus.wcr", "ModBus Protocol", 18}}) {
    SCOPED_TRACE(screen.file);
    Start({screen.project}, line);
    OpenFromTree(*program, screen.file);
    ExpectScreen(*program, screen.file);
    EXPECT_EQ(program->Text("StatusBar1(3)"), screen.protocol);
    const std::string index = "(" + std::to_string(screen.hours) + ")";
    EXPECT_EQ(program->Ask("get RAM_LOC_TEXT" + index + " toolTip"), "hours_burner");
    program->Mouse("Toolbar1(2)");
    EXPECT_TRUE(program->Becomes("text RAM_LOC_VAL" + index, "2938"));
    program->Mouse("Toolbar1(3)");
    ASSERT_TRUE(program->Becomes("text StatusBar1(4)", "Communication Stopped"));
  }
}

}  // namespace
}  // namespace e2e
