// The files of the graph: what the routines read and write, what they say, and what goes on while a
// long file is under way.

#include "graph/measure_files.h"

#include <chrono>
#include <string>

#include "form/open_graph.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kFile = "/home/user/measured/file.mss";
constexpr const char* kTable = "/home/user/measured/table.txt";

class MeasureFilesTest : public OpenGraph {
 protected:
  MeasureFilesTest() {
    Open();
    files.DrawAgain = [this] { done += "drawn "; };
    world.disk().MakeFolder("/home/user/measured");
    Show(0);
    Show(1);
  }

  MeasureFiles::Then Then() {
    return [this] { done += "then "; };
  }
  std::string Done() { return std::exchange(done, {}); }
  // Samples of as many seconds in both lines.
  void Measure(int seconds) {
    for (int i = 0; i < seconds; ++i) {
      Sample(0, i, i % 5000);
      Sample(1, i, 65'535 - i % 1000);
    }
  }
  // More than is done at once.
  void MeasureLong() { Measure(40'000); }
  void Save(bool with_measurements = true) {
    files.SaveMeasureFile(kFile, with_measurements, false, Then());
  }
  void Load(bool with_measurements = true) {
    files.LoadMeasureFile(kFile, with_measurements, Then());
  }
  void Export(const std::string& name = kTable) { files.ExportMeasureFile(name, Then()); }
  bool WaitForEnd() {
    return world.RunUntil([this] { return !files.IsBusy(); }, 60s);
  }
  void ExpectError(const char* text, const char* title) {
    world.dialogs().ExpectMessageBox({.text = text, .title = title, .icon = Icon::kCritical});
  }
  void ExpectReadError() { ExpectError("Error reading file", "Reading file"); }
  void ExpectSaveError() { ExpectError("Error saving file", "Saving file"); }
  void ExpectExportError() { ExpectError("Error exporting file", "exporting file"); }
  int Count(int channel) const {
    return graph.Data.Channels.at(static_cast<std::size_t>(channel)).Count();
  }
  std::string State() const {
    return std::string(graph.ZOLTCommunication ? "communicates" : "silent") +
           (graph.AutoScroll ? ", follows" : ", stands") + (menu.mnuZOLTCom.Checked ? " +" : " -") +
           (menu.mnuTimeScroll.Checked ? "+" : "-");
  }
  // What is on the disk now, as another graph reads it.
  std::string OnDisk() { return world.disk().Get(kFile); }

  MeasureFiles& files = all.files;
  std::string done;
};

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

TEST_F(MeasureFilesTest, AfterAStoppedOneTheNextComes) {
  MeasureLong();
  Save();
  files.SaveMeasureFile("/home/user/measured/lines.grp", false, false, Then());
  files.Cancel();
  EXPECT_EQ(Done(), "then ");
  EXPECT_FALSE(world.disk().Exists(kFile));
}

TEST_F(MeasureFilesTest, BeforeTheGraphIsLeftASaveIsFinishedAndAllElseIsStopped) {
  MeasureLong();
  Save();
  Load();
  Export();
  files.SaveMeasureFile("/home/user/measured/lines.grp", false, false, Then());
  files.FinishNow();
  EXPECT_EQ(Done(), "then then ");
  EXPECT_GT(OnDisk().size(), 1'000'000U);
  EXPECT_TRUE(world.disk().Exists("/home/user/measured/lines.grp"));
  EXPECT_FALSE(world.disk().Exists(kTable));
  Load();
  EXPECT_TRUE(files.IsBusy());
  files.FinishNow();
  EXPECT_EQ(Done(), "");
  EXPECT_EQ(State(), "communicates, follows ++");
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

// --- Automatic saving ----------------------------------------------------------------------------

class AutoSavedFilesTest : public MeasureFilesTest {
 protected:
  AutoSavedFilesTest() {
    menu.mnuAutoSave.Checked = true;
    graph.Data.AutoSaveDir = "/home/user/measured/";
    graph.Data.AutoSaveDay = ToDate({2024, 3, 5});
    graph.AutoSaveTimer->SetInterval(60'000);
    graph.AutoSaveTimer->SetEnabled(true);
    menu.SetCommunication(false);
  }
  std::string Names() {
    std::string names;
    for (const std::string& name : world.disk().ListFolder("/home/user/measured")) {
      names += name + " ";
    }
    return names;
  }
  // A sample now.
  void Tick() { graph.Data.AddMeasurement(7, graph.Now(), 0); }
  Graphic Saved(const std::string& name) {
    MeasureFileReader reader(name, true);
    reader.Take(world.disk().Get("/home/user/measured/" + name));
    reader.Finish();
    Graphic data;
    reader.HandOver(data);
    return data;
  }
};

TEST_F(AutoSavedFilesTest, SavesWhatIsNewerThanTheDayAndGoesOnWithToday) {
  Tick();
  graph.Data.AddMeasurement(1, ToDate({2024, 3, 6, 0, 4, 0}), 0);
  world.clock().Set({2024, 3, 6, 0, 5, 30});
  files.AutoSaveMeasurements();
  EXPECT_EQ(Names(), "05Mar24-00.mss ");
  EXPECT_EQ(graph.Data.AutoSaveDay, ToDate({2024, 3, 6}));
  EXPECT_EQ(Saved("05Mar24-00.mss").Channels[0].Count(), 2);
}

// A sample every ten minutes over a week.
TEST_F(AutoSavedFilesTest, OverAWeekEveryDayHasItsFileAndNothingIsMissing) {
  world.clock().Set({2024, 3, 5, 0, 0, 30});
  for (int i = 0; i < 7 * 144 + 1; ++i) {
    Tick();
    world.Advance(10min);
  }
  EXPECT_EQ(Names(),
            "05Mar24-00.mss 06Mar24-00.mss 07Mar24-00.mss 08Mar24-00.mss 09Mar24-00.mss "
            "10Mar24-00.mss 11Mar24-00.mss ");
  std::int64_t expected = ToSeconds(ToDate({2024, 3, 5, 0, 0, 30}));
  for (int day = 5; day <= 11; ++day) {
    const std::string name = (day < 10 ? "0" : "") + std::to_string(day) + "Mar24-00.mss";
    const Graphic saved = Saved(name);
    const MeasureChannel& channel = saved.Channels[0];
    // Each begins behind its day's midnight, and so repeats what the one before had of the first
    // minutes of this day.
    if (day > 5) expected -= 600;
    for (const std::int64_t time : channel.Times()) {
      EXPECT_EQ(time, expected) << name;
      expected += 600;
    }
  }
  EXPECT_EQ(expected, ToSeconds(ToDate({2024, 3, 12, 0, 10, 30})));
}

TEST_F(AutoSavedFilesTest, AFolderThatVanishesIsToldOnceADay) {
  world.clock().Set({2024, 3, 5, 23, 59, 30});
  world.disk().RemoveFolder("/home/user/measured");
  ExpectSaveError();
  ExpectSaveError();
  world.Advance(30h);
  EXPECT_EQ(Count(0), 0);
  Tick();
  EXPECT_EQ(Count(0), 1) << "nothing of the memory suffers";
}

// The box of a failed save stands over two days.
TEST_F(AutoSavedFilesTest, NothingIsMissingAfterABoxThatStoodLong) {
  world.clock().Set({2024, 3, 5, 23, 59, 30});
  graph.Data.AutoSaveDir = "/gone/";
  world.dialogs().ExpectMessageBox("Error saving file", "Saving file").While([this] {
    graph.Data.AutoSaveDir = "/home/user/measured/";
    for (int i = 0; i < 48; ++i) {
      world.Advance(1h);
      Tick();
    }
  });
  world.Advance(10min);
  world.Advance(10min);
  EXPECT_EQ(Names(), "06Mar24-00.mss ");
  EXPECT_EQ(Saved("06Mar24-00.mss").Channels[0].Count(), 48);
}

TEST_F(AutoSavedFilesTest, WhileAFileIsUnderWayItWaitsAndComesOnce) {
  MeasureLong();
  Save();
  files.AutoSaveMeasurements();
  files.AutoSaveMeasurements();
  EXPECT_EQ(graph.Data.AutoSaveDay, ToDate({2024, 3, 5}));
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Names(), "05Mar24-00.mss file.mss ");
  files.AutoSaveMeasurements();
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Names(), "05Mar24-00.mss 05Mar24-01.mss file.mss ");
}

TEST_F(AutoSavedFilesTest, LeavingTheGraphSavesOnceMore) {
  MeasureLong();
  all.form.Unload();
  files.FinishNow();
  EXPECT_EQ(Names(), "05Mar24-00.mss ");
  EXPECT_EQ(Saved("05Mar24-00.mss").Channels[0].Count(), 40'000);
}

}  // namespace
}  // namespace tarnlink
