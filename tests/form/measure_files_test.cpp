// The files of the graph: what the routines read and write, and what they say.

#include "form/measure_files_fixture.h"

namespace tarnlink {
namespace {

// --- Small files ---------------------------------------------------------------------------------

TEST_F(MeasureFilesTest, ASmallFileIsSavedAtOnce) {
  Measure(10);
  Save();
  EXPECT_EQ(Done(), "then ");
  EXPECT_FALSE(files.IsBusy());
  EXPECT_TRUE(OnDisk().ends_with("Measurement 100\r\n 90000 \r\n00000000000000 0\r\n"));
  EXPECT_NE(OnDisk().find("Measurement 0\r\n 90000 \r\n20240305140718 9\r\n"), std::string::npos);
}

TEST_F(MeasureFilesTest, LinesAloneAreSavedWithoutSamples) {
  Measure(10);
  Save(false);
  EXPECT_EQ(OnDisk().find("Measurement"), std::string::npos);
}

TEST_F(MeasureFilesTest, OnlyWhatIsNewIsSavedWhenThatIsWanted) {
  Measure(10);
  graph.Data.AutoSaveDay = start + 7 * kSecond;
  files.SaveMeasureFile(kFile, true, true);
  EXPECT_NE(
      OnDisk().find("Measurement 0\r\n 90000 \r\n20240305140718 9\r\n20240305140717 8\r\n0000"),
      std::string::npos);
}

TEST_F(MeasureFilesTest, LoadingMeasurementsStopsAcquisitionAndScrollingFirst) {
  Measure(10);
  Save();
  Measure(0);
  Line(0).Alias = "other";
  graph.Data.Channels[0].Dimension(0);
  EXPECT_EQ(State(), "communicates, follows ++");
  Done();
  graph.ScreenRefreshTimer->SetEnabled(true);
  Load();
  EXPECT_EQ(Done(), "drawn then ");
  EXPECT_EQ(State(), "silent, stands --");
  EXPECT_FALSE(graph.ScreenRefreshTimer->Enabled());
  EXPECT_EQ(Line(0).Alias, "Sensor 1");
  EXPECT_EQ(Count(0), 10);
  EXPECT_EQ(Seconds(graph.Data.FirstTime), 0);
  EXPECT_EQ(Seconds(graph.Data.LastTime), 9);
  EXPECT_EQ(graph.BaseTime, graph.Data.LastTime);
  EXPECT_EQ(graph.CursorTime, graph.Data.LastTime);
}

TEST_F(MeasureFilesTest, LoadingLinesStartsBothAndThrowsTheSamplesAway) {
  Measure(10);
  Save(false);
  menu.SetTimeScroll(false);
  menu.SetCommunication(false);
  Line(1).ShowLine = false;
  const Date first = graph.Data.FirstTime;
  const Date last = graph.Data.LastTime;
  Done();
  Load(false);
  EXPECT_EQ(Done(), "drawn then ");
  EXPECT_EQ(State(), "communicates, follows ++");
  EXPECT_TRUE(Line(1).ShowLine);
  EXPECT_EQ(Count(0), 0);
  EXPECT_EQ(graph.Data.Channels[0].UpperBound(), 90'000);
  EXPECT_EQ(graph.Data.Channels[2].UpperBound(), 0);
  EXPECT_EQ(graph.Data.FirstTime, first);
  EXPECT_EQ(graph.Data.LastTime, last);
  EXPECT_EQ(graph.CursorTime, 0);
}

TEST_F(MeasureFilesTest, AFileWithoutSamplesLeavesTheRange) {
  Save();
  Measure(10);
  Load();
  EXPECT_EQ(Seconds(graph.Data.FirstTime), 0);
  EXPECT_EQ(Seconds(graph.Data.LastTime), 9);
  EXPECT_EQ(Seconds(graph.CursorTime), 9);
  EXPECT_EQ(Count(0), 0);
}

TEST_F(MeasureFilesTest, WhatAutomaticSavingHasToKnowStays) {
  Save();
  graph.Data.AutoSaveDir = "/home/user/measured/";
  graph.Data.AutoSaveDay = 5;
  Load();
  EXPECT_EQ(graph.Data.AutoSaveDir, "/home/user/measured/");
  EXPECT_EQ(graph.Data.AutoSaveDay, 5);
}

TEST_F(MeasureFilesTest, ATableIsWritten) {
  Sample(0, 0, 0x0A00);
  Sample(0, 1, 0x0B00);
  Export();
  EXPECT_EQ(
      world.disk().Get(kTable),
      "Time\tSensor 1\tStatus bits\r\n05/03/2024 14:07:09\t10\r\n05/03/2024 14:07:10\t11\r\n");
  EXPECT_EQ(Done(), "then ");
}

TEST_F(MeasureFilesTest, NumbersHaveTheSystemsSeparator) {
  world.locale().SetDecimalSeparator(",");
  Line(0).Factor = 0.5F;
  Sample(0, 0, 0x0100);
  Export();
  EXPECT_NE(world.disk().Get(kTable).find("\t0,5\r\n"), std::string::npos);
  Save();
  EXPECT_NE(OnDisk().find("\r\n ,5 \r\n"), std::string::npos);
  world.locale().SetDecimalSeparator(".");
  Line(0).Factor = 3;
  Load();
  EXPECT_EQ(Line(0).Factor, 0.5F);
  Save();
  EXPECT_NE(OnDisk().find("\r\n .5 \r\n"), std::string::npos);
}

TEST_F(MeasureFilesTest, AWorkbookIsWrittenByItsExtensionWithAPoint) {
  world.locale().SetDecimalSeparator(",");
  Line(0).Factor = 0.5F;
  Sample(0, 0, 0x0100);
  const std::string book = "/home/user/measured/table.XLSX";
  Export(book);
  EXPECT_TRUE(files.IsBusy());
  EXPECT_EQ(Done(), "");
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "then ");
  EXPECT_EQ(world.disk().Get(book), "Time\tSensor 1\tStatus bits\r\n05/03/2024 14:07:09\t0.5\r\n");
}

// --- Failure at once -----------------------------------------------------------------------------

TEST_F(MeasureFilesTest, AMissingFileIsToldAndChangesTheLinkOnly) {
  Measure(10);
  Done();
  ExpectReadError();
  Load();
  EXPECT_EQ(Done(), "");
  EXPECT_EQ(State(), "silent, stands --");
  EXPECT_EQ(Count(0), 10);
  EXPECT_EQ(graph.CursorTime, graph.BaseTime);
}

TEST_F(MeasureFilesTest, TheReasonIsInTheBox) {
  world.disk().Put(kFile, "title\r\n 1 \r\nblue\r\n");
  world.dialogs().ExpectMessageBox(
      {.text = "Error reading file",
       .title = "Reading file",
       .icon = Icon::kCritical,
       .detail =
           "\"/home/user/measured/file.mss\" could not be read: line 3: \"blue\" is no number."});
  Load();
  EXPECT_EQ(graph.Data.Colors.GridColor, 1);
  EXPECT_EQ(Done(), "");
}

TEST_F(MeasureFilesTest, AFileOfLinesIsNotReadAsMeasurements) {
  Line(0).Alias = "saved";
  Save(false);
  Measure(10);
  Line(0).Alias = "later";
  Done();
  ExpectReadError();
  Load();
  EXPECT_EQ(Line(0).Alias, "saved") << "what was read stays";
  EXPECT_EQ(Count(0), 10);
  EXPECT_EQ(Done(), "");
}

TEST_F(MeasureFilesTest, AMeasurementFileIsReadAsLines) {
  Measure(10);
  Line(0).Alias = "saved";
  Save();
  Line(0).Alias = "later";
  Load(false);
  EXPECT_EQ(Line(0).Alias, "saved");
  EXPECT_EQ(Count(0), 0);
}

TEST_F(MeasureFilesTest, AFileThatCannotBeWrittenIsTold) {
  for (const char* name : {"/no/folder/file.mss", "/home/user/measured"}) {
    ExpectSaveError();
    files.SaveMeasureFile(name, true, false, Then());
    ExpectExportError();
    files.ExportMeasureFile(name, Then());
  }
  world.disk().Put(kFile, "old");
  world.disk().Forbid(kFile);
  ExpectSaveError();
  Save();
  EXPECT_EQ(OnDisk(), "old");
  world.disk().Allow(kFile);
  world.disk().SetFreeSpace(1'000);
  ExpectSaveError();
  Save();
  EXPECT_EQ(OnDisk(), "old");
  EXPECT_EQ(Done(), "");
}

}  // namespace
}  // namespace tarnlink
