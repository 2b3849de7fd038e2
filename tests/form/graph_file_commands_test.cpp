// The entries of the graph's menu that save, export and print: what they ask, what they do with the
// answers, and what a cancel or a failure leaves.

#include <string>
#include <utility>
#include <vector>

#include "form/file_commands_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kBook = "/home/user/measured/table.xlsx";

// --- Captions, cancel ----------------------------------------------------------------------------

TEST_F(GraphFileCommands, HaveTheirCaptions) {
  std::string captions;
  for (const MenuEntry* entry : {&menu.mnuFile, &menu.mnuSaveProperties, &menu.mnuOpenProperties,
                                 &menu.mnuSaveMeasure, &menu.mnuOpenMeasure, &menu.mnuExport,
                                 &menu.mnuAutoSave, &menu.mnuGraphSettings, &menu.mnuPrint}) {
    captions += entry->Caption.get() + "|";
  }
  EXPECT_EQ(captions,
            "File|Save properties|Open properties|Save measurements|Open measurements|Export|Auto "
            "save|Graph settings|Print|");
}

TEST_F(GraphFileCommands, ChangeNothingWhenTheyAreCancelled) {
  Measure(10);
  mss_folder = kFolder;
  grp_folder = "/home/user/lines";
  const std::string before = Everything();
  for (MenuEntry* entry : {&menu.mnuOpenMeasure, &menu.mnuOpenProperties}) {
    world.dialogs().ExpectOpenFile().Cancel();
    entry->Press();
    EXPECT_TRUE(Everything() == before) << entry->name();
  }
  for (MenuEntry* entry : {&menu.mnuSaveMeasure, &menu.mnuSaveProperties}) {
    world.dialogs().ExpectSaveFile().Cancel();
    entry->Press();
    EXPECT_TRUE(Everything() == before) << entry->name();
  }
  world.dialogs().ExpectSaveFile("Export measurement data").Cancel();
  menu.mnuExport.Press();
  world.dialogs().ExpectFolder("Select directory for auto save").Cancel();
  menu.mnuAutoSave.Press();
  EXPECT_TRUE(Everything() == before);
}

// --- Save measurements ---------------------------------------------------------------------------

TEST_F(GraphFileCommands, SaveMeasurementsProposesTheDayAndAsksAboutAnOldFile) {
  mss_folder = kFolder;
  world.dialogs().ExpectSaveFile().Cancel();
  menu.mnuSaveMeasure.Press();
  EXPECT_EQ(Asked(),
            std::string("Measurements (*.mss)|*.mss; 05Mar24-00.mss; ") + kFolder + "; mss!");
  MonthNames months = EnglishMonthNames();
  months[2] = "März";
  world.locale().SetMonths(months);
  world.clock().Set({2025, 3, 31, 23, 59, 59});
  world.dialogs().ExpectSaveFile().Cancel();
  menu.mnuSaveMeasure.Press();
  EXPECT_EQ(world.dialogs().last_file_request().file_name, "31Mär25-00.mss");
}

TEST_F(GraphFileCommands, SaveMeasurementsWritesAllThatIsInMemory) {
  graph.Data.AutoSaveDay = start + 7 * kSecond;
  Measure(10);
  world.disk().Put(kFile, "old");
  SaveMeasurements(kFile);
  EXPECT_TRUE(OnDisk() == FileText(graph.Data));
  EXPECT_EQ(Header(), "file");
  EXPECT_EQ(mss_folder, kFolder);
  EXPECT_EQ(State(), "communicates, follows ++");
  EXPECT_EQ(added, "");
}

TEST_F(GraphFileCommands, AFailedSaveIsToldAndLeavesFileMemoryAndHeading) {
  Measure(10);
  const std::string memory = FileText(graph.Data);
  world.disk().Put(kFile, "old");
  world.disk().Put(kLines, "old lines");
  const auto fail = [&] {
    SaveMeasurements(kFile, [this] { ExpectSaveError(); });
    SaveProperties(kLines, [this] { ExpectSaveError(); });
    EXPECT_EQ(OnDisk(), "old");
    EXPECT_EQ(world.disk().Get(kLines), "old lines");
    EXPECT_TRUE(FileText(graph.Data) == memory);
    EXPECT_EQ(Header(), "before");
  };
  world.disk().Forbid(kFile);
  world.disk().Forbid(kLines);
  fail();
  world.disk().Allow(kFile);
  world.disk().Allow(kLines);
  world.disk().SetFreeSpace(1000);
  fail();
}

TEST_F(GraphFileCommands, ADiskThatFillsUpInTheMiddleLeavesTheOldFile) {
  MeasureLong();
  world.disk().Put(kFile, "old");
  world.disk().SetFreeSpace(500'000);
  SaveMeasurements(kFile);
  EXPECT_TRUE(files.IsBusy());
  ExpectSaveError();
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(OnDisk(), "old");
  EXPECT_EQ(Count(0), 40'000);
  EXPECT_EQ(Header(), "before");
}

// --- Save properties -----------------------------------------------------------------------------

TEST_F(GraphFileCommands, SavePropertiesProposesGraph) {
  grp_folder = "/home/user/lines";
  world.dialogs().ExpectSaveFile().Cancel();
  menu.mnuSaveProperties.Press();
  EXPECT_EQ(Asked(), "Graphic Properties (*.grp)|*.grp; Graph.grp; /home/user/lines; grp!");
}

TEST_F(GraphFileCommands, SavePropertiesWritesTheLinesAndOffersThemToTheProject) {
  Measure(10);
  for (const Answer answer : {Answer::kNo, Answer::kYes}) {
    SaveProperties(kLines, [&] { ExpectAddToProject().Press(answer); });
    EXPECT_TRUE(world.disk().Get(kLines) == FileText(graph.Data, {.with_measurements = false}));
    EXPECT_EQ(added, answer == Answer::kYes ? kLines : "");
  }
  EXPECT_EQ(grp_folder, kFolder);
  EXPECT_EQ(mss_folder, "");
  EXPECT_EQ(Header(), "before");
  EXPECT_EQ(Count(0), 10);
}

TEST_F(GraphFileCommands, AQuestionThatIsClosedAddsNothing) {
  SaveProperties(kLines, [&] { ExpectAddToProject(); });
  EXPECT_EQ(added, "");
}

TEST_F(GraphFileCommands, WhatIsInTheProjectAlreadyIsNotOffered) {
  project_files = {kLines};
  SaveProperties(kLines);
  EXPECT_TRUE(world.disk().Exists(kLines));
  EXPECT_EQ(added, "");
}

// --- Export --------------------------------------------------------------------------------------

TEST_F(GraphFileCommands, ExportProposesTheDayAndLeavesTheQuestionAboutAnOldFileToTheCommand) {
  world.dialogs().ExpectSaveFile("Export measurement data").Cancel();
  menu.mnuExport.Press();
  EXPECT_EQ(Asked(), "Text File (*.txt)|*.txt|Workbook (*.xlsx)|*.xlsx; 05Mar24-00.txt; ; txt");
}

TEST_F(GraphFileCommands, ExportWritesATable) {
  Sample(0, 0, 0x0A00);
  ExportAs(kTable);
  EXPECT_EQ(world.disk().Get(kTable), "Time\tSensor 1\tStatus bits\r\n05/03/2024 14:07:09\t10\r\n");
  EXPECT_EQ(Header(), "before");
  EXPECT_EQ(State(), "communicates, follows ++");
  EXPECT_EQ(drawn, 0);
}

TEST_F(GraphFileCommands, ExportReplacesAnOldFileOnlyAfterOk) {
  Sample(0, 0, 0x0A00);
  for (const char* name : {kTable, kBook}) {
    world.disk().Put(name, "old");
    ExportAs(name, [&] { ExpectOverwrite().Press(Answer::kCancel); });
    ExportAs(name, [&] { ExpectOverwrite(); });
    EXPECT_FALSE(files.IsBusy());
    EXPECT_EQ(world.disk().Get(name), "old") << name;
    ExportAs(name, [&] { ExpectOverwrite().Press(Answer::kOk); });
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(world.disk().Get(name).substr(0, 5), "Time\t") << name;
  }
}

TEST_F(GraphFileCommands, OnADiskThatDoesNotAnswerAnOldFileCountsAsThere) {
  world.disk().Put(kTable, "old");
  world.faults().Break("Files.Exists", RunTimeError(kDeviceIo, "The disk does not answer."));
  ExportAs(kTable, [&] { ExpectOverwrite().Press(Answer::kCancel); });
  EXPECT_EQ(world.disk().Get(kTable), "old");
}

TEST_F(GraphFileCommands, ExportWritesAWorkbookWhenThatExtensionIsChosen) {
  world.locale().SetDecimalSeparator(",");
  Line(0).Factor = 0.5F;
  Sample(0, 0, 0x0100);
  ExportAs(kBook);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_NE(world.disk().Get(kBook).find("\t0.5"), std::string::npos) << "A number, not its text.";
}

TEST_F(GraphFileCommands, AFailedExportIsTold) {
  ExportAs("/no/such/folder/table.txt", [&] { ExpectExportError(); });
  Measure(10);
  world.disk().Put(kTable, "old");
  world.disk().Forbid(kTable);
  ExportAs(kTable, [&] {
    ExpectOverwrite().Press(Answer::kOk);
    ExpectExportError();
  });
  EXPECT_EQ(world.disk().Get(kTable), "old");
}

// --- Automatic saving ----------------------------------------------------------------------------

TEST_F(GraphFileCommands, AutoSaveRemembersFolderAndDayAndLetsItsClockRun) {
  mss_folder = "/home/user/old";
  const std::string disk = world.disk().Describe();
  AutoSaveIn(kFolder);
  EXPECT_EQ(world.dialogs().last_folder(), "/home/user/old");
  EXPECT_TRUE(menu.mnuAutoSave.Checked);
  EXPECT_EQ(graph.Data.AutoSaveDir, "/home/user/measured/");
  EXPECT_EQ(graph.Data.AutoSaveDay, ToDate({2024, 3, 5}));
  EXPECT_EQ(graph.AutoSaveTimer->Interval(), 60'000);
  EXPECT_TRUE(graph.AutoSaveTimer->Enabled());
  EXPECT_EQ(world.disk().Describe(), disk) << "Nothing is written now.";
}

TEST_F(GraphFileCommands, AutoSavesFolderEndsInOneSeparator) {
  for (const auto& [folder, dir] : std::vector<std::pair<std::string, std::string>>{
           {"/", "/"}, {"/home/user/measured/", "/home/user/measured/"}}) {
    menu.mnuAutoSave.Checked = false;
    AutoSaveIn(folder);
    EXPECT_EQ(graph.Data.AutoSaveDir, dir);
    EXPECT_TRUE(menu.mnuAutoSave.Checked);
  }
}

TEST_F(GraphFileCommands, AutoSaveIsSwitchedOffWithoutASave) {
  Measure(10);
  AutoSaveIn(kFolder);
  const std::string disk = world.disk().Describe();
  menu.mnuAutoSave.Press();
  EXPECT_FALSE(menu.mnuAutoSave.Checked);
  EXPECT_FALSE(graph.AutoSaveTimer->Enabled());
  menu.SetCommunication(false);
  world.Advance(50h);
  all.form.Unload();
  EXPECT_EQ(world.disk().Describe(), disk);
}

TEST_F(GraphFileCommands, AFolderThatHasVanishedLeavesAutoSaveOff) {
  world.dialogs().ExpectFolder("Select directory for auto save").Give(kFolder).While([this] {
    world.disk().RemoveFolder(kFolder);
  });
  menu.mnuAutoSave.Press();
  EXPECT_FALSE(menu.mnuAutoSave.Checked);
  menu.SetCommunication(false);
  world.Advance(50h);
  all.form.Unload();
  EXPECT_TRUE(world.dialogs().TakeShown().size() == 1U) << "No save was tried.";
}

// The name of the day, once a minute says that it is over.
TEST_F(GraphFileCommands, AutoSaveSavesThePastDayInItsFolder) {
  AutoSaveIn(kFolder);
  menu.SetCommunication(false);
  Measure(10);
  world.clock().Set({2024, 3, 6, 0, 4, 30});
  world.Advance(1min + 1ms);
  EXPECT_TRUE(world.disk().Get("/home/user/measured/05Mar24-00.mss") == FileText(graph.Data));
  EXPECT_EQ(graph.Data.AutoSaveDay, ToDate({2024, 3, 6}));
}

// --- Print ---------------------------------------------------------------------------------------

TEST_F(GraphFileCommands, TheHeadingThatIsOfferedIsThatOfTheFile) {
  SaveMeasurements("/home/user/measured/start.mss");
  world.dialogs().ExpectInputBox("Enter header text:", "Print").Cancel();
  world.dialogs().ExpectPreview("Print");
  menu.mnuPrint.Press();
  EXPECT_EQ(world.dialogs().last_input_text(), "start");
}

}  // namespace
}  // namespace tarnlink
