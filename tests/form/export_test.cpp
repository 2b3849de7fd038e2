// Export to DOC: the name it asks for, what is written, and what happens when it cannot be.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "form/desk_fixture.h"
#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kDoc = "/home/user/Documents/boiler.doc";

// A Location with this name.
std::string Named(const std::string& alias) {
  return R"("L",0,3,"01A0",0,")" + alias + R"(","v",0,0,0,0,"0",0,1,2,3,4,"0")";
}

class ExportingAScreen : public DeskTest {
 protected:
  ExportingAScreen() { StartProgram(); }

  // A screen file with Locations of these names.
  void OpenNamed(const std::vector<std::string>& aliases, const std::string& path = kScreen) {
    std::vector<std::string> lines = {"255"};
    for (const std::string& alias : aliases) lines.push_back(Named(alias));
    OpenText(FileText(lines), path);
  }

  void Press() { main().mnuPrintToFile.Press(); }
  ScriptedDialog& ExpectName(const std::string& path = kDoc) {
    return world.dialogs().ExpectSaveFile("Doc file").Give(path);
  }
  ScriptedDialog& ExpectHeader(const std::string& header = {}) {
    return world.dialogs().ExpectInputBox("Enter header text:", "Export to DOC").Give(header);
  }
  ScriptedDialog& ExpectOverwriteQuestion() {
    return world.dialogs().ExpectMessageBox({.text = "File exists, overwrite",
                                             .title = "Export to DOC",
                                             .icon = Icon::kQuestion,
                                             .buttons = Buttons::kYesNo});
  }
  ScriptedDialog& ExpectExportFailure(int code, const std::string& path = kDoc) {
    return world.dialogs().ExpectMessageBox(
        {.text = "Internal System Error # " + std::to_string(code) +
                 " occured, please contact distributor.\r\nDuring saving doc file " + path,
         .title = "Internal System Error",
         .icon = Icon::kCritical});
  }
  // Exports to a new file.
  std::string Exported(const std::string& header = {}) {
    world.disk().Remove(kDoc);
    ExpectName();
    ExpectHeader(header);
    Press();
    return world.disk().Get(kDoc);
  }
  // The name that the dialog comes up with for a screen of this path.
  std::string ProposedFor(const std::string& screen) {
    main().CurrentTarnLinkFile = screen;
    world.dialogs().ExpectSaveFile("Doc file").Cancel();
    Press();
    return world.dialogs().last_file_request().file_name;
  }
  std::string Folder() { return world.dialogs().last_file_request().folder; }
  int Writes() { return world.faults().CountOf("Files.WriteWhole"); }

  static constexpr const char* kFirstLine =
      "/home/user/Documents/boiler.wcr  14:07 05-Mar-2024\r\n";
};

// --- The name ---

TEST_F(ExportingAScreen, AsksForANameOfADocFileAndLeavesTheQuestionAboutAnOldFileToTheCommand) {
  OpenNamed({"Flow"});
  ExpectName();
  ExpectHeader();
  Press();
  const FileDialogRequest& asked = world.dialogs().last_file_request();
  EXPECT_EQ(asked.title, "Doc file");
  EXPECT_EQ(asked.filter, "Document File (*.doc)|*.doc");
  EXPECT_EQ(asked.extension, "doc");
  EXPECT_FALSE(asked.confirm_overwrite);
}

TEST_F(ExportingAScreen, ProposesTheScreensNameWithItsLastThreeCharactersMadeDoc) {
  struct Row {
    std::string screen, proposed;
  };
  for (const Row& row :
       {Row{"/jobs/boiler.wcr", "/jobs/boiler.doc"}, Row{"/jobs/BOILER.WCR", "/jobs/BOILER.doc"},
        Row{"/jobs/a.wcr", "/jobs/a.doc"}, Row{"/jobs/abcde", "/jobs/abdoc"},
        Row{"/jobs/boiler", "/jobs/boidoc"}, Row{"/jobs/boiler.screen", "/jobs/boiler.scrdoc"},
        Row{"/jobs.wcr/boiler.wcr", "/jobs.wcr/boiler.doc"},
        Row{"C:\\jobs\\a.wcr", "C:\\jobs\\a.doc"}}) {
    EXPECT_EQ(ProposedFor(row.screen), row.proposed);
  }
}

TEST_F(ExportingAScreen, ProposesExportForANameOfFewerThanFiveCharacters) {
  for (const std::string screen : {"/jobs/.wcr", "/a/long/folder/abcd", "/jobs/a", "a.wc"}) {
    EXPECT_EQ(ProposedFor(screen), "export.doc") << screen;
  }
}

TEST_F(ExportingAScreen, CountsTheCharactersOfANameNotItsBytes) {
  EXPECT_EQ(ProposedFor("/jobs/äöüß"), "export.doc");
  EXPECT_EQ(ProposedFor("/jobs/Kühlö"), "/jobs/Küdoc");
  EXPECT_EQ(ProposedFor("/jobs/5€ab"), "export.doc");
  EXPECT_EQ(ProposedFor("/jobs/Wärme.wcr"), "/jobs/Wärme.doc");
  EXPECT_EQ(ProposedFor("/jobs/ab€€€"), "/jobs/abdoc");
}

TEST_F(ExportingAScreen, ProposesANewScreensReportInTheFolderOfScreens) {
  main().WcrCmnDlg.InitDir = "/home/user/Documents/sub";
  EXPECT_EQ(ProposedFor(""), "export.doc");
  EXPECT_EQ(Folder(), "/home/user/Documents/sub");
  main().WcrCmnDlg.InitDir = "C:";
  ProposedFor("");
  EXPECT_EQ(Folder(), kFolder);
}

TEST_F(ExportingAScreen, TheDialogOpensBesideTheScreen) {
  ProposedFor("/jobs/today/boiler.wcr");
  EXPECT_EQ(Folder(), "/jobs/today");
  ProposedFor("/jobs/today/abcd");
  EXPECT_EQ(Folder(), "/jobs/today");
}

TEST_F(ExportingAScreen, ACancelOrAnEmptyNameWritesNothing) {
  OpenNamed({"Flow"});
  world.dialogs().ExpectSaveFile("Doc file").Cancel();
  Press();
  ExpectName("");
  Press();
  EXPECT_EQ(Writes(), 0);
}

// --- An old file ---

TEST_F(ExportingAScreen, AsksAboutAnOldFileAndKeepsItUnlessTheAnswerIsYes) {
  OpenNamed({"Flow"});
  world.disk().Put(kDoc, "old");
  ExpectName();
  ExpectOverwriteQuestion().Press(Answer::kNo);
  Press();
  EXPECT_EQ(world.disk().Get(kDoc), "old");
  ExpectName();
  ExpectOverwriteQuestion().Cancel();
  Press();
  EXPECT_EQ(world.disk().Get(kDoc), "old");
  EXPECT_EQ(Writes(), 0);
}

TEST_F(ExportingAScreen, YesReplacesTheOldFileAltogether) {
  OpenNamed({"Flow"});
  world.disk().Put(kDoc, std::string(10'000, 'x'));
  ExpectName();
  ExpectOverwriteQuestion().Press(Answer::kYes);
  ExpectHeader();
  Press();
  EXPECT_EQ(world.disk().Get(kDoc), kFirstLine + FileText({"", "", "Flow\tValue 1"}));
}

// --- What is written ---

TEST_F(ExportingAScreen, WritesPathMomentAndEachNameWithItsValue) {
  OpenNamed({"Flow", "Return"});
  main().RAM_LOC_VAL(1).Text = "61";
  main().RAM_LOC_VAL(2).Text = "-4";
  EXPECT_EQ(Exported(), kFirstLine + FileText({"", "", "Flow\t61", "Return\t-4"}));
}

TEST_F(ExportingAScreen, WritesTheHeaderAndAnEmptyLineBeforeTheValues) {
  OpenNamed({"Flow"});
  EXPECT_EQ(Exported("Boiler 7"), kFirstLine + FileText({"", "", "Boiler 7", "", "Flow\tValue 1"}));
  EXPECT_EQ(world.dialogs().last_input_text(), "");
}

TEST_F(ExportingAScreen, ACancelledHeaderIsAnEmptyOneAndTheExportGoesOn) {
  OpenNamed({"Flow"});
  ExpectName();
  world.dialogs().ExpectInputBox("Enter header text:", "Export to DOC").Cancel();
  Press();
  EXPECT_EQ(world.disk().Get(kDoc), kFirstLine + FileText({"", "", "Flow\tValue 1"}));
}

TEST_F(ExportingAScreen, AHeaderStaysAsItWasTyped) {
  OpenNamed({});
  EXPECT_EQ(Exported(" \"7\", \r\nnew\n"),
            kFirstLine + FileText({"", ""}) + " \"7\", \r\nnew\n\r\n\r\n");
}

TEST_F(ExportingAScreen, TheHeaderIsAskedForAnewEachTime) {
  OpenNamed({});
  Exported("Boiler 7");
  EXPECT_EQ(Exported(), kFirstLine + FileText({"", ""}));
  EXPECT_EQ(world.dialogs().last_input_text(), "");
}

TEST_F(ExportingAScreen, ANewScreensReportBeginsWithTheTwoBlanks) {
  EXPECT_EQ(Exported(), FileText({"  14:07 05-Mar-2024", "", ""}));
}

TEST_F(ExportingAScreen, AValueThatWasNeverReadGivesALineThatEndsWithTheTab) {
  OpenNamed({"Flow", "Return"});
  main().RAM_LOC_VAL(1).Text = "";
  EXPECT_EQ(Exported(), kFirstLine + FileText({"", "", "Flow\t", "Return\tValue 2"}));
}

TEST_F(ExportingAScreen, DeletedLocationsHaveNoLineAndTheRestStaysInTheOrderOfTheIndices) {
  OpenNamed({"e", "d", "c", "b", "a"});
  main().RAM_LOC_TEXT(4).Top = -500;
  Delete(1);
  Delete(3);
  EXPECT_EQ(Exported(), kFirstLine + FileText({"", "", "d\tValue 2", "b\tValue 4", "a\tValue 5"}));
  Delete(2);
  Delete(4);
  Delete(5);
  EXPECT_EQ(Exported(), kFirstLine + FileText({"", ""}));
}

TEST_F(ExportingAScreen, ALocationWithAHiddenValueBoxIsNoDeletedOne) {
  OpenNamed({"Flow"});
  main().RAM_LOC_VAL(1).Visible = false;
  EXPECT_EQ(Exported(), kFirstLine + FileText({"", "", "Flow\tValue 1"}));
}

TEST_F(ExportingAScreen, LabelsAreNotExported) {
  OpenText(FileText({"255", R"("T","Boiler",1,2,"Arial",8.25,#FALSE#,#TRUE#,255)", Named("Flow")}));
  EXPECT_EQ(Exported(), kFirstLine + FileText({"", "", "Flow\tValue 1"}));
}

TEST_F(ExportingAScreen, WritesTextsAsTheyAre) {
  OpenNamed({"Flow"});
  main().RAM_LOC_TEXT(1).Text = " Wärme \"1\", 5 € ";
  main().RAM_LOC_VAL(1).Text = "can not read";
  EXPECT_EQ(Exported(), kFirstLine + FileText({"", "", " W\xE4rme \"1\", 5 \x80 \tcan not read"}));
  main().RAM_LOC_VAL(1).Text = "Ω";
  EXPECT_EQ(Exported(), kFirstLine + FileText({"", "", " Wärme \"1\", 5 € \tΩ"}));
}

TEST_F(ExportingAScreen, WritesAllLocationsOfAFullScreen) {
  OpenNamed(std::vector<std::string>(512, "n"));
  std::vector<std::string> lines = {"", ""};
  for (int i = 1; i <= 512; ++i) lines.push_back("n\tValue " + std::to_string(i));
  EXPECT_EQ(Exported(), kFirstLine + FileText(lines));
}

TEST_F(ExportingAScreen, TellsTheMomentInTheMonthNamesOfTheUser) {
  OpenNamed({});
  world.clock().Set({2025, 12, 1, 0, 5, 59});
  MonthNames names = EnglishMonthNames();
  names[11] = "Dezember";
  world.locale().SetMonths(names);
  EXPECT_EQ(Exported(), FileText({"/home/user/Documents/boiler.wcr  00:05 01-Dez-2025", "", ""}));
}

TEST_F(ExportingAScreen, LeavesTheScreenAsItIs) {
  OpenNamed({"Flow"});
  ChangeScreen();
  TakeNotes();
  const std::string before = Screen() + Counts() + History(main().M_fileHist);
  Exported("x");
  EXPECT_EQ(Screen() + Counts() + History(main().M_fileHist), before);
  EXPECT_EQ(main().CurrentTarnLinkFile, kScreen);
  EXPECT_TRUE(main().WCRChanged);
  EXPECT_EQ(main().WcrCmnDlg.InitDir, kFolder);
  EXPECT_EQ(TakeNotes(), "");
}

TEST_F(ExportingAScreen, ToANameAsksForNothingButTheHeader) {
  OpenNamed({"Flow"});
  world.disk().Put(kDoc, "old");
  ExpectHeader("h");
  program().doc_export.ExportScreen(kDoc);
  EXPECT_EQ(world.disk().Get(kDoc), kFirstLine + FileText({"", "", "h", "", "Flow\tValue 1"}));
}

// --- Failures ---

TEST_F(ExportingAScreen, ThatFailsTellsTheReasonAndKeepsTheOldFile) {
  struct Row {
    int code;
    std::function<void()> spoil, mend;
  };
  OpenNamed({"Flow"});
  world.disk().Put(kDoc, "old");
  const std::vector<Row> rows = {
      {61, [this] { world.disk().SetFreeSpace(5); }, [this] { world.disk().SetFreeSpace(10'000); }},
      {70, [this] { world.disk().Forbid(kDoc); }, [this] { world.disk().Allow(kDoc); }},
      {70, [this] { world.disk().Forbid(kFolder); }, [this] { world.disk().Allow(kFolder); }},
      {57, [this] { world.faults().Break("Files.WriteWhole", RunTimeError(kDeviceIo, "Broken.")); },
       [] {}}};
  for (const Row& row : rows) {
    row.spoil();
    ExpectName();
    ExpectOverwriteQuestion().Press(Answer::kYes);
    ExpectHeader();
    ExpectExportFailure(row.code);
    Press();
    EXPECT_NE(world.dialogs().shown().back().find(" | "), std::string::npos);
    row.mend();
    EXPECT_EQ(world.disk().Get(kDoc), "old");
  }
}

TEST_F(ExportingAScreen, ToAPlaceWhereNoFileCanBeIsTold) {
  OpenNamed({"Flow"});
  world.disk().MakeFolder("/home/user/Documents/sub");
  for (const auto& [path, code] : std::vector<std::pair<std::string, int>>{
           {"/nowhere/a.doc", 76}, {"/home/user/Documents/sub", 57}}) {
    ExpectName(path);
    ExpectHeader();
    ExpectExportFailure(code, path);
    Press();
  }
  world.disk().MakeFolder("/dev");
  world.disk().MakeSpecial("/dev/full");
  ExpectName("/dev/full");
  ExpectOverwriteQuestion().Press(Answer::kYes);
  ExpectHeader();
  ExpectExportFailure(57, "/dev/full");
  Press();
}

// --- During a run ---

class ExportingDuringARun : public MonitorTest {};

TEST_F(ExportingDuringARun, WritesTheValuesOfTheMomentOfWritingAndTheRunGoesOn) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  SlaveHolds({{"01A0", "A1"}, {"01A1", "A2"}});
  Start();
  world.dialogs().ExpectSaveFile("Doc file").Give("/home/user/Documents/run.doc").For(30ms);
  world.dialogs().ExpectInputBox("Enter header text:", "Export to DOC").For(90s);
  monitor.main.mnuPrintToFile.Press();
  EXPECT_EQ(world.disk().Get("/home/user/Documents/run.doc"),
            FileText({"  14:08 05-Mar-2024", "", "", "at 01A0\tA1", "at 01A1\tA2"}));
  EXPECT_TRUE(monitor.main.CommRunning);
  SlaveHolds({{"01A0", "B1"}, {"01A1", "B2"}});
  Advance(200);
  EXPECT_EQ(Value(1), "B1");
}

// Nobody's document is replaced because the disk kept silent.
TEST_F(ExportingAScreen, OnADiskThatDoesNotAnswerAFileCountsAsThere) {
  world.faults().Break("Files.Exists", RunTimeError(kDeviceIo, "The disk does not answer."));
  ExpectName();
  ExpectOverwriteQuestion().Press(Answer::kNo);
  Press();
  EXPECT_EQ(Writes(), 0);
}

}  // namespace
}  // namespace tarnlink
