// Long files of the graph: what goes on while they are read and written, and how they end.

#include "form/measure_files_fixture.h"

#include <algorithm>

namespace tarnlink {
namespace {

// --- Long files ----------------------------------------------------------------------------------

TEST_F(MeasureFilesTest, ALongFileIsSavedStepByStep) {
  MeasureLong();
  Save();
  EXPECT_TRUE(files.IsBusy());
  EXPECT_EQ(Done(), "");
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "then ");
  EXPECT_GT(OnDisk().size(), 1'500'000U);
  const Graphic saved = [&] {
    MeasureFileReader reader(kFile, true);
    reader.Take(OnDisk());
    reader.Finish();
    Graphic data;
    reader.HandOver(data);
    return data;
  }();
  EXPECT_EQ(saved.Channels[0].Count(), 40'000);
  EXPECT_EQ(saved.Channels[1][90'000], graph.Data.Channels[1][90'000]);
}

TEST_F(MeasureFilesTest, WhatIsMeasuredMeanwhileIsNotInTheFile) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  const std::string quiet = OnDisk();
  Save();
  int second = 40'000;
  while (files.IsBusy()) {
    world.Advance(1ms);
    Sample(0, ++second, 1);
    Sample(1, second, 1);
  }
  EXPECT_GT(second, 40'005);
  EXPECT_EQ(OnDisk(), quiet);
}

TEST_F(MeasureFilesTest, ALongFileIsLoadedStepByStep) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  graph.Data.Channels[0].Dimension(0);
  Done();
  Load();
  EXPECT_EQ(State(), "silent, stands --");
  EXPECT_TRUE(files.IsBusy());
  EXPECT_EQ(Count(0), 0) << "the old ones stay until the end";
  EXPECT_EQ(Count(1), 40'000);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "drawn then ");
  EXPECT_EQ(Count(0), 40'000);
  EXPECT_EQ(Seconds(graph.CursorTime), 39'999);
}

TEST_F(MeasureFilesTest, ALongTableIsWrittenStepByStep) {
  MeasureLong();
  Export();
  EXPECT_TRUE(files.IsBusy());
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "then ");
  const std::string table = world.disk().Get(kTable);
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 40'001);
}

// --- Its window ----------------------------------------------------------------------------------

TEST_F(MeasureFilesTest, TheWindowAppearsAfterHalfASecondAndGoesWithTheEnd) {
  Measure(60'000);
  Save();
  ASSERT_TRUE(WaitForEnd());
  world.disk().Put("/home/user/measured/long.mss", OnDisk());
  // The disk gives 4 kB a millisecond.
  files.LoadMeasureFile("/home/user/measured/long.mss", true);
  EXPECT_FALSE(files.progress.form.Visible);
  EXPECT_EQ(files.progress.caption.Caption.get(), "Reading file");
  EXPECT_EQ(files.progress.lblFile.Caption.get(), "/home/user/measured/long.mss");
  world.Advance(499ms);
  EXPECT_FALSE(files.progress.form.Visible);
  world.Advance(2ms);
  EXPECT_TRUE(files.progress.form.Visible);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_FALSE(files.progress.form.Visible);
}

TEST_F(MeasureFilesTest, TheShareNeverFallsAndBeginsAtZero) {
  MeasureLong();
  for (const char* what : {"save", "load", "export"}) {
    if (what == std::string("save")) Save();
    if (what == std::string("load")) Load();
    if (what == std::string("export")) Export();
    EXPECT_EQ(files.progress.prgShare.Value, 0) << what;
    int shown = 0;
    int steps = 0;
    files.progress.prgShare.SetView([&] {
      EXPECT_GE(files.progress.prgShare.Value, shown) << what;
      shown = files.progress.prgShare.Value;
      ++steps;
    });
    ASSERT_TRUE(WaitForEnd());
    files.progress.prgShare.SetView({});
    EXPECT_GT(steps, 2) << what;
    EXPECT_GT(shown, 50) << what;
    EXPECT_LE(shown, 100) << what;
  }
}

// --- Stopping it ---------------------------------------------------------------------------------

// Presses Cancel after so many milliseconds. False if it was done by then.
bool CancelAfter(FakeWorld& world, MeasureFiles& files, int milliseconds) {
  world.Advance(std::chrono::milliseconds(milliseconds));
  const bool was_busy = files.IsBusy();
  files.progress.cmdCancel.Press();
  EXPECT_FALSE(files.IsBusy());
  EXPECT_FALSE(files.progress.form.Visible);
  return was_busy;
}

TEST_F(MeasureFilesTest, AStoppedSaveLeavesTheOldFile) {
  MeasureLong();
  world.disk().Put(kFile, "old");
  int stopped = 0;
  Save();
  for (int after = 0; CancelAfter(world, files, after); ++after) {
    EXPECT_EQ(OnDisk(), "old") << after;
    world.Advance(1s);
    EXPECT_EQ(OnDisk(), "old") << after;
    EXPECT_EQ(Done(), "");
    ++stopped;
    Save();
  }
  EXPECT_GT(stopped, 5);
  EXPECT_EQ(Done(), "then ");
}

TEST_F(MeasureFilesTest, AStoppedTableLeavesTheOldFile) {
  MeasureLong();
  world.disk().Put(kTable, "old");
  Export();
  EXPECT_TRUE(CancelAfter(world, files, 3));
  world.Advance(1s);
  EXPECT_EQ(world.disk().Get(kTable), "old");
  EXPECT_EQ(Done(), "");
}

TEST_F(MeasureFilesTest, AStoppedLoadLeavesWhatWasThere) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  Line(0).Alias = "mine";
  Sample(0, 50'000, 5);
  graph.CursorTime = 0;
  const Date base = graph.BaseTime;
  Done();
  for (const int after : {0, 1, 2, 10, 100, 400}) {
    Load();
    EXPECT_EQ(State(), "silent, stands --");
    ASSERT_TRUE(CancelAfter(world, files, after));
    EXPECT_EQ(Line(0).Alias, "mine");
    EXPECT_EQ(Count(0), 40'001);
    EXPECT_EQ(State(), "communicates, follows ++");
    EXPECT_EQ(graph.BaseTime, base);
    EXPECT_EQ(graph.CursorTime, 0);
    EXPECT_EQ(Done(), "");
  }
}

TEST_F(MeasureFilesTest, AStoppedLoadLeavesAStandingViewAndItsCursor) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  menu.SetTimeScroll(false);
  menu.SetCommunication(false);
  graph.CursorTime = start + 50 * kSecond;
  Load();
  ASSERT_TRUE(CancelAfter(world, files, 5));
  EXPECT_EQ(State(), "silent, stands --");
  EXPECT_EQ(Seconds(graph.CursorTime), 50);
}

TEST_F(MeasureFilesTest, WithNothingUnderWayCancelDoesNothing) {
  files.Cancel();
  EXPECT_EQ(State(), "communicates, follows ++");
}

// --- Failure under way ---------------------------------------------------------------------------

TEST_F(MeasureFilesTest, ADiskThatFillsUpLeavesTheOldFile) {
  MeasureLong();
  world.disk().Put(kFile, "old");
  for (const std::size_t room : {0U, 300'000U, 1'000'000U}) {
    world.disk().SetFreeSpace(room);
    Save();
    ExpectSaveError();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(OnDisk(), "old");
    ExpectExportError();
    Export();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_FALSE(world.disk().Exists(kTable));
  }
  EXPECT_EQ(Done(), "");
}

TEST_F(MeasureFilesTest, AFolderThatVanishesIsTold) {
  MeasureLong();
  Save();
  world.Advance(3ms);
  world.disk().RemoveFolder("/home/user/measured");
  ExpectSaveError();
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "");
  EXPECT_FALSE(files.progress.form.Visible);
}

TEST_F(MeasureFilesTest, ALockedTargetIsTold) {
  MeasureLong();
  world.disk().Put(kFile, "old");
  world.disk().Forbid(kFile);
  Save();
  ExpectSaveError();
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(OnDisk(), "old");
}

TEST_F(MeasureFilesTest, AFailedReadLeavesWhatWasReadAndNothingComesBehindIt) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  Line(0).Alias = "later";
  graph.Data.Channels[0].Dimension(0);
  world.disk().BreakReading(kFile, 800'000);
  Done();
  Load();
  ExpectReadError();
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "");
  EXPECT_EQ(State(), "silent, stands --");
  EXPECT_EQ(Line(0).Alias, "Sensor 1");
  EXPECT_GT(Count(0), 30'000);
  EXPECT_LT(Count(0), 40'000);
  EXPECT_EQ(graph.Data.Channels[1].UpperBound(), 0);
  EXPECT_EQ(graph.CursorTime, graph.BaseTime);
}

TEST_F(MeasureFilesTest, ABadLineFarInsideIsToldWithItsNumber) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  std::string file = OnDisk();
  const std::size_t at = file.find("\r\n20240305200000 ");
  ASSERT_NE(at, std::string::npos);
  file[at + 10] = '7';
  world.disk().Put(kFile, file);
  const auto line = std::count(file.begin(), file.begin() + static_cast<long>(at), '\n') + 2;
  world.dialogs().ExpectMessageBox({.text = "Error reading file",
                                    .title = "Reading file",
                                    .icon = Icon::kCritical,
                                    .detail = "\"" + std::string(kFile) +
                                              "\" could not be read: line " + std::to_string(line) +
                                              ": \"20240305700000\" is no date and time."});
  Load();
  ASSERT_TRUE(WaitForEnd());
}

// A box that stands does not hold up what comes meanwhile.
TEST_F(MeasureFilesTest, WhileABoxStandsAnotherFileIsSaved) {
  MeasureLong();
  world.disk().SetFreeSpace(1'000);
  Save();
  world.dialogs()
      .ExpectMessageBox("Error saving file", "Saving file")
      .While([this] {
        world.disk().SetFreeSpace(10'000'000);
        Save();
      })
      .For(10s);
  ASSERT_TRUE(world.RunUntil([this] { return !done.empty(); }, 60s));
  EXPECT_FALSE(files.IsBusy());
  EXPECT_GT(OnDisk().size(), 1'000'000U);
}

// --- More than one -------------------------------------------------------------------------------

TEST_F(MeasureFilesTest, OneWaitsForTheOther) {
  MeasureLong();
  Save();
  files.ExportMeasureFile(kTable, [this] { done += "exported "; });
  files.SaveMeasureFile("/home/user/measured/lines.grp", false, false,
                        [this] { done += "lines "; });
  files.LoadMeasureFile(kFile, true, [this] { done += "loaded "; });
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "then exported lines drawn loaded ");
  EXPECT_TRUE(world.disk().Exists("/home/user/measured/lines.grp"));
}

// The disk may need its time for a short file too, and timers go on meanwhile.
TEST_F(MeasureFilesTest, TheDayThatEndsWhileAFileIsOpenedIsSavedBehindIt) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  Done();
  graph.Data.AutoSaveDir = "/home/user/measured/";
  world.disk().WhileItWorks = [this] {
    EXPECT_TRUE(files.IsBusy());
    files.AutoSaveMeasurements();
  };
  const auto names = [this] { return world.disk().ListFolder("/home/user/measured").size(); };
  const std::size_t before = names();
  Load();
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "drawn then ");
  EXPECT_EQ(Count(0), 40'000);
  EXPECT_EQ(names(), before + 1);
}

TEST_F(MeasureFilesTest, AFileThatComesWhileLinesAreReadHasWhatTheyLeft) {
  MeasureLong();
  Save(false);
  Export();
  ASSERT_TRUE(WaitForEnd());
  Done();
  const std::string full = world.disk().Get(kTable);
  world.disk().WhileItWorks = [&] {
    files.ExportMeasureFile(kTable, [this] { done += "exported "; });
    EXPECT_EQ(world.disk().Get(kTable), full);
  };
  Load(false);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "drawn then exported ");
  EXPECT_LT(world.disk().Get(kTable).size(), full.size()) << "the lines threw the samples away";
}

TEST_F(MeasureFilesTest, AFileThatComesWhileAShortOneIsWrittenWaitsForIt) {
  Measure(10);
  world.disk().WhileItWorks = [this] {
    Export();
    done += "inside ";
  };
  files.SaveMeasureFile("/home/user/measured/lines.grp", false, false,
                        [this] { done += "lines "; });
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "inside lines then ");
  EXPECT_TRUE(world.disk().Exists("/home/user/measured/lines.grp"));
  EXPECT_TRUE(world.disk().Exists(kTable));
}

TEST_F(MeasureFilesTest, NothingBecomesOfAShortLoadWhenTheGraphIsLeftMeanwhile) {
  Measure(10);
  Save();
  Measure(20);
  const int there = Count(0);
  for (const bool is_missing : {false, true}) {
    Done();
    world.disk().WhileItWorks = [&] {
      files.StopLoads();
      files.Cancel();
      if (is_missing) world.disk().BreakReading(kFile, 20);
    };
    Load();
    EXPECT_FALSE(files.IsBusy());
    EXPECT_EQ(Done(), "");
    EXPECT_EQ(Count(0), there);
  }
  world.disk().BreakReading(kFile, OnDisk().size() - 3);
  ExpectReadError();
  Load();
  EXPECT_EQ(Count(0), 10) << "the next one is read again";
}

TEST_F(MeasureFilesTest, AfterAStoppedOneTheNextComes) {
  MeasureLong();
  Save();
  files.SaveMeasureFile("/home/user/measured/lines.grp", false, false, Then());
  files.Cancel();
  EXPECT_EQ(Done(), "then ");
  EXPECT_FALSE(world.disk().Exists(kFile));
}

TEST_F(MeasureFilesTest, AtTheEndLoadsAreStoppedAndAllElseIsFinished) {
  MeasureLong();
  Save();
  Load();
  Export();
  files.SaveMeasureFile("/home/user/measured/lines.grp", false, false, Then());
  files.FinishNow();
  EXPECT_FALSE(files.IsBusy());
  EXPECT_EQ(Done(), "then then then ");
  EXPECT_GT(OnDisk().size(), 1'000'000U);
  EXPECT_TRUE(world.disk().Exists("/home/user/measured/lines.grp"));
  EXPECT_TRUE(world.disk().Exists(kTable));
  Load();
  EXPECT_TRUE(files.IsBusy());
  files.FinishNow();
  EXPECT_FALSE(files.IsBusy());
  EXPECT_EQ(Done(), "");
}

TEST_F(MeasureFilesTest, LeavingTheGraphStopsALoadAndFinishesWhatIsWritten) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  Done();
  all.form.Unloaded = [this] { done += "unloaded "; };
  Load();
  Load();
  Export();
  all.form.Unload();
  EXPECT_FALSE(world.port().PortOpen()) << "a stopped load does not start the acquisition again";
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "then unloaded ");
  EXPECT_TRUE(world.disk().Exists(kTable));
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(MeasureFilesTest, ASaveOutlivesWhatItWasMadeFor) {
  MeasureLong();
  {
    MeasureFiles others(all.graph, all.menu, all.auto_save);
    others.SaveMeasureFile(kFile, true, false, Then());
  }
  EXPECT_GT(OnDisk().size(), 1'000'000U);
  EXPECT_EQ(Done(), "");
}

TEST_F(MeasureFilesTest, ASaveThatWaitsOutlivesWhatItWasMadeForToo) {
  MeasureLong();
  {
    MeasureFiles others(all.graph, all.menu, all.auto_save);
    others.ExportMeasureFile(kTable, Then());
    others.SaveMeasureFile(kFile, true, false, Then());
    others.LoadMeasureFile(kFile, true, Then());
  }
  EXPECT_GT(OnDisk().size(), 1'000'000U);
  EXPECT_TRUE(world.disk().Exists(kTable));
  EXPECT_EQ(Done(), "");
}

// --- What happens while a file is read -----------------------------------------------------------

TEST_F(MeasureFilesTest, AnAcquisitionThatIsStartedMeanwhileIsStoppedBeforeTheFileComes) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  Load();
  world.Advance(5ms);
  menu.SetCommunication(true);
  menu.SetTimeScroll(true);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(State(), "silent, stands --");
  EXPECT_EQ(graph.CursorTime, graph.Data.LastTime);
  world.Advance(1min);
  EXPECT_EQ(Seconds(graph.Data.LastTime), 39'999);
}

// The box of a port that is gone stands over midnight.
TEST_F(MeasureFilesTest, LinesWaitForAFileThatBeganBehindTheBoxOfThePort) {
  Save(false);
  MeasureLong();
  menu.SetCommunication(false);
  world.port().MakeBusy();
  Done();
  ExpectBusy().While([this] { files.SaveMeasureFile("/home/user/measured/day.mss", true, false); });
  Load(false);
  EXPECT_TRUE(files.IsBusy());
  EXPECT_EQ(Count(0), 40'000) << "the samples that are being saved";
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "drawn then ");
  EXPECT_EQ(Count(0), 0);
  EXPECT_GT(world.disk().Get("/home/user/measured/day.mss").size(), 1'000'000U);
}

TEST_F(MeasureFilesTest, TheSettingsFollowAFileThatComesWhileTheyAreOpen) {
  MeasureLong();
  Line(0).Alias = "of the file";
  Save();
  ASSERT_TRUE(WaitForEnd());
  Line(0).Alias = "of today";
  Load();
  all.settings.Show();
  all.settings.lblCapClick(0);
  EXPECT_EQ(all.settings.txtAlias.Text.get(), "of today");
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(all.settings.lblCap(0).Caption.get(), "of the file");
  EXPECT_EQ(all.settings.lblFixedCap.Caption.get(), "No item selected");
  all.settings.txtAlias.Text = "typed on";
  EXPECT_EQ(Line(0).Alias, "of the file");
}

TEST_F(MeasureFilesTest, AFileThatComesBehindTheQuestionAboutUnusedDataLosesNothing) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  Line(0).ShowLine = false;  // unused in memory, shown in the file
  all.settings.Show();
  world.dialogs()
      .ExpectMessageBox("Remove unused data from memory.", "Clear")
      .While([this] { Load(); })
      .For(10s)
      .Press(Answer::kYes);
  all.settings.Close();
  EXPECT_EQ(Count(0), 40'000);
}

TEST_F(MeasureFilesTest, WhatIsBeingSavedIsNotClearedByTheSettings) {
  MeasureLong();
  all.settings.Show();
  Line(0).ShowLine = false;
  Save();
  all.settings.Close();  // no question
  EXPECT_EQ(Count(0), 40'000);
  ASSERT_TRUE(WaitForEnd());
}

}  // namespace
}  // namespace tarnlink
