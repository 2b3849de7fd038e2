// The files of automatic saving.

#include "form/measure_files_fixture.h"

namespace tarnlink {
namespace {

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

// The box of a failed save stands over two days; nobody is there to answer it.
TEST_F(AutoSavedFilesTest, NothingIsMissingAfterABoxThatStoodLong) {
  Tick();
  world.clock().Set({2024, 3, 5, 23, 59, 30});
  graph.Data.AutoSaveDir = "/gone/";
  world.dialogs().ExpectMessageBox("Error saving file", "Saving file").While([this] {
    for (int i = 0; i < 48; ++i) {
      world.Advance(1h);
      Tick();
      if (i == 2) graph.Data.AutoSaveDir = "/home/user/measured/";
    }
    EXPECT_EQ(Names(), "05Mar24-00.mss 06Mar24-00.mss 07Mar24-00.mss ");
  });
  world.Advance(10min);
  EXPECT_EQ(Saved("05Mar24-00.mss").Channels[0].Count(), 1 + 3);
  EXPECT_EQ(Saved("06Mar24-00.mss").Channels[0].Count(), 23);
  EXPECT_EQ(Saved("07Mar24-00.mss").Channels[0].Count(), 24);
}

TEST_F(AutoSavedFilesTest, AFailedDayIsTriedAgainWithoutAWordEveryTenMinutes) {
  Tick();
  world.clock().Set({2024, 3, 6, 0, 5, 30});
  world.disk().SetFreeSpace(100);
  ExpectSaveError();
  world.Advance(1min + 1ms);
  EXPECT_EQ(world.dialogs().shown().size(), 1U);
  world.Advance(30min);
  EXPECT_EQ(Names(), "");
  world.disk().SetFreeSpace(100'000'000);
  Tick();
  world.Advance(10min);
  EXPECT_EQ(Names(), "05Mar24-00.mss ");
  EXPECT_EQ(Saved("05Mar24-00.mss").Channels[0].Count(), 2);
  world.Advance(3h);
  EXPECT_EQ(Names(), "05Mar24-00.mss ") << "once";
}

TEST_F(AutoSavedFilesTest, AFailedDayIsLeftAloneWhenAutomaticSavingIsOff) {
  Tick();
  world.disk().SetFreeSpace(100);
  ExpectSaveError();
  files.AutoSaveMeasurements();
  world.disk().SetFreeSpace(100'000'000);
  menu.mnuAutoSave.Checked = false;
  world.Advance(1h);
  EXPECT_EQ(Names(), "");
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

// The box of a failed save stands while the day's file waits.
TEST_F(AutoSavedFilesTest, ADayThatWaitsComesOnceThoughTheClockTicksOn) {
  MeasureLong();
  world.disk().SetFreeSpace(1'000);
  Save();
  files.AutoSaveMeasurements();
  world.dialogs()
      .ExpectMessageBox("Error saving file", "Saving file")
      .While([this] {
        world.disk().SetFreeSpace(100'000'000);
        world.clock().Set({2024, 3, 6, 0, 6, 0});
      })
      .For(5min);
  ASSERT_TRUE(world.RunUntil([this] { return !files.IsBusy(); }, 10min));
  world.Advance(5min);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Names(), "05Mar24-00.mss ");
  EXPECT_EQ(graph.Data.AutoSaveDay, ToDate({2024, 3, 6}));
}

TEST_F(AutoSavedFilesTest, ADayIsSavedBehindALoadThatIsUnderWayOrStopped) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  for (const bool is_stopped : {false, true}) {
    Load();
    files.AutoSaveMeasurements();
    if (is_stopped) files.Cancel();
    ASSERT_TRUE(WaitForEnd());
    graph.Data.AutoSaveDay = ToDate({2024, 3, 5});
  }
  EXPECT_EQ(Names(), "05Mar24-00.mss 05Mar24-01.mss file.mss ");
}

// The user did not ask for the file now, and may be typing.
TEST_F(AutoSavedFilesTest, ItsWindowDoesNotTakeTheKeyboard) {
  MeasureLong();
  files.AutoSaveMeasurements();
  EXPECT_FALSE(files.progress.TakesFocus);
  files.progress.cmdCancel.Press();
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Names(), "05Mar24-00.mss ") << "nothing stops it";
  Save();
  EXPECT_TRUE(files.progress.TakesFocus);
  EXPECT_TRUE(files.progress.cmdCancel.Enabled);
}

TEST_F(AutoSavedFilesTest, LeavingTheGraphSavesOnceMoreBehindTheHiddenForm) {
  MeasureLong();
  all.form.Unloaded = [this] { done += "unloaded "; };
  all.form.Unload();
  EXPECT_FALSE(graph.form.Visible);
  EXPECT_EQ(Done(), "");
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "unloaded ");
  EXPECT_EQ(Names(), "05Mar24-00.mss ");
  EXPECT_EQ(Saved("05Mar24-00.mss").Channels[0].Count(), 40'000);
}

// Nothing else has the day's samples: its folder is gone, or the disk is full.
TEST_F(AutoSavedFilesTest, ADayThatCannotBeSavedKeepsTheGraphOnceWhenItIsLeft) {
  for (const bool is_long : {false, true}) {
    if (is_long) {
      MeasureLong();
    } else {
      Tick();
    }
    int unloaded = 0;
    all.form.Unloaded = [&] { ++unloaded; };
    menu.mnuAutoSave.Checked = true;
    world.disk().SetFreeSpace(100);
    ExpectSaveError();
    all.form.Unload();
    ASSERT_TRUE(WaitForEnd());
    EXPECT_EQ(unloaded, 0);
    EXPECT_TRUE(graph.form.Visible);
    EXPECT_TRUE(all.form.IsLoaded());
    EXPECT_FALSE(menu.mnuAutoSave.Checked);
    EXPECT_EQ(State(), "silent, stands --");
    EXPECT_GT(Count(0), 0) << "what is to be saved elsewhere";
  }
  int unloaded = 0;
  all.form.Unloaded = [&] { ++unloaded; };
  all.form.Unload();
  EXPECT_EQ(unloaded, 1);
  EXPECT_FALSE(graph.form.Visible);
}

// The user asked for it, and saw the graph go before it was written.
TEST_F(AutoSavedFilesTest, AnyFileThatFailsBehindTheHiddenFormBringsItBack) {
  MeasureLong();
  menu.mnuAutoSave.Checked = false;
  int unloaded = 0;
  int returned = 0;
  all.form.Unloaded = [&] { ++unloaded; };
  all.form.Returned = [&] { ++returned; };
  for (const bool is_export : {false, true}) {
    world.disk().SetFreeSpace(100'000'000);
    if (is_export) {
      Export();
    } else {
      Save();
    }
    all.form.Unload();
    EXPECT_FALSE(graph.form.Visible);
    world.disk().SetFreeSpace(100);
    if (is_export) {
      ExpectExportError();
    } else {
      ExpectSaveError();
    }
    ASSERT_TRUE(WaitForEnd());
    EXPECT_TRUE(graph.form.Visible);
    EXPECT_EQ(Count(0), 40'000);
  }
  EXPECT_EQ(unloaded, 0);
  EXPECT_EQ(returned, 2);
}

// It is written as the load before it is stopped.
TEST_F(AutoSavedFilesTest, ADayThatWaitedForALoadAndFailsBringsTheFormBack) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  for (const int line : {0, 1}) {
    graph.Data.Channels.at(static_cast<std::size_t>(line)).Dimension(0);
    Show(line);
  }
  Tick();
  Load();
  files.AutoSaveMeasurements();
  menu.mnuAutoSave.Checked = false;
  world.disk().SetFreeSpace(100);
  ExpectSaveError();
  int unloaded = 0;
  all.form.Unloaded = [&] { ++unloaded; };
  all.form.Unload();
  EXPECT_EQ(unloaded, 0);
  EXPECT_TRUE(graph.form.Visible);
  EXPECT_EQ(Count(0), 1);
}

// Behind the box there may be more to write, and what the box belongs to must still be there.
TEST_F(AutoSavedFilesTest, TheGraphIsNotGoneWhileABoxOfAFileStands) {
  MeasureLong();
  menu.mnuAutoSave.Checked = false;
  Save();
  files.SaveMeasureFile("/home/user/measured/lines.grp", false, false, Then());
  all.form.Unloaded = [this] { done += "unloaded "; };
  all.form.Returned = [this] { done += "returned "; };
  world.disk().SetFreeSpace(100);
  world.dialogs()
      .ExpectMessageBox(
          {.text = "Error saving file", .title = "Saving file", .icon = Icon::kCritical})
      .While([this] {
        world.disk().SetFreeSpace(100'000'000);
        all.form.Unload();
        done += "box ";
      });
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "then box unloaded ");
  EXPECT_TRUE(world.disk().Exists("/home/user/measured/lines.grp"));
}

// The same where the file is so short that it is written at once.
TEST_F(AutoSavedFilesTest, TheBoxOfAShortFileIsWaitedForToo) {
  Tick();
  menu.mnuAutoSave.Checked = false;
  all.form.Unloaded = [this] { done += "unloaded "; };
  world.disk().SetFreeSpace(10);
  world.dialogs()
      .ExpectMessageBox(
          {.text = "Error saving file", .title = "Saving file", .icon = Icon::kCritical})
      .While([this] {
        all.form.Unload();
        done += "box ";
      });
  Save();
  EXPECT_EQ(Done(), "box unloaded ");
}

TEST_F(AutoSavedFilesTest, WhoeverWaitsForTheEndSeesTheFilesAtOnce) {
  MeasureLong();
  Save();
  EXPECT_FALSE(files.progress.form.Visible);
  all.form.Unload();
  files.AwaitEnd();
  EXPECT_TRUE(files.progress.form.Visible);
  EXPECT_TRUE(files.progress.TakesFocus);
  ASSERT_TRUE(world.RunUntil([this] { return world.disk().Exists(kFile); }, 60s));
  ASSERT_TRUE(files.IsBusy()) << "the day";
  EXPECT_TRUE(files.progress.form.Visible);
  EXPECT_TRUE(files.progress.TakesFocus);
  files.progress.cmdCancel.Press();
  menu.mnuAutoSave.Checked = true;
  files.AutoSaveMeasurements();
  EXPECT_FALSE(files.progress.form.Visible) << "nobody waits any more";
}

// Whoever stops it, by a key that was meant for another window too, has the samples still.
TEST_F(AutoSavedFilesTest, AFileThatIsStoppedBehindTheHiddenFormBringsItBack) {
  MeasureLong();
  int unloaded = 0;
  all.form.Unloaded = [&] { ++unloaded; };
  for (const bool is_day : {false, true}) {
    menu.mnuAutoSave.Checked = is_day;
    if (!is_day) Save();
    all.form.Unload();
    ASSERT_TRUE(files.IsBusy());
    EXPECT_TRUE(files.progress.cmdCancel.Enabled) << "the disk may never answer";
    files.progress.cmdCancel.Press();
    EXPECT_FALSE(files.IsBusy());
    EXPECT_TRUE(graph.form.Visible);
    EXPECT_EQ(Count(0), 40'000);
  }
  EXPECT_EQ(unloaded, 0);
  EXPECT_EQ(Names(), "");
}

TEST_F(AutoSavedFilesTest, ADayThatComesBehindAnotherFileCanBeStoppedToo) {
  MeasureLong();
  Save();
  all.form.Unload();
  ASSERT_TRUE(world.RunUntil([this] { return world.disk().Exists(kFile); }, 60s));
  ASSERT_TRUE(files.IsBusy());
  EXPECT_TRUE(files.progress.cmdCancel.Enabled);
  files.progress.cmdCancel.Press();
  EXPECT_TRUE(graph.form.Visible);
}

TEST_F(AutoSavedFilesTest, AStoppedFileTakesTheLoadsBehindItWithIt) {
  MeasureLong();
  Save();
  Load();
  files.Cancel();
  EXPECT_FALSE(files.IsBusy());
  EXPECT_EQ(Done(), "");
}

// The user relies on the file that was begun before.
TEST_F(AutoSavedFilesTest, AFileThatFailsTakesTheLoadsBehindItWithIt) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  Done();
  Sample(0, 40'001, 7);
  world.disk().SetFreeSpace(100);
  files.AutoSaveMeasurements();
  Load();
  world.dialogs()
      .ExpectMessageBox(
          {.text = "Error saving file", .title = "Saving file", .icon = Icon::kCritical})
      .While([this] {
        world.disk().SetFreeSpace(100'000'000);
        Save();
        Load();
      });
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Done(), "then ") << "saved, and nothing was loaded";
  EXPECT_EQ(Count(0), 40'001);
}

TEST_F(AutoSavedFilesTest, TheNextFileHasADayWhoseFileFailed) {
  Tick();
  world.clock().Set({2024, 3, 6, 0, 5, 30});
  const std::int64_t free = 100;
  world.disk().SetFreeSpace(free);
  ExpectSaveError();
  files.AutoSaveMeasurements();
  Tick();
  world.clock().Set({2024, 3, 7, 0, 5, 30});
  world.disk().SetFreeSpace(100'000'000);
  files.AutoSaveMeasurements();
  EXPECT_EQ(Names(), "05Mar24-00.mss ");
  EXPECT_EQ(Saved("05Mar24-00.mss").Channels[0].Count(), 2);
  Tick();
  world.clock().Set({2024, 3, 8, 0, 5, 30});
  files.AutoSaveMeasurements();
  EXPECT_EQ(Saved("07Mar24-00.mss").Channels[0].Count(), 1) << "nothing twice";
}

// What failed was of measurements that are not there any more.
TEST_F(AutoSavedFilesTest, ALostDayIsForgottenWithItsMeasurementsOnly) {
  Tick();
  Save();
  world.clock().Set({2024, 3, 6, 0, 5, 30});
  world.disk().SetFreeSpace(100);
  ExpectSaveError();
  files.AutoSaveMeasurements();
  world.disk().SetFreeSpace(100'000'000);
  ExpectReadError();
  files.LoadMeasureFile("/home/user/measured/gone.mss", true);
  files.AutoSaveMeasurements();
  EXPECT_EQ(Names(), "05Mar24-00.mss file.mss ") << "still there";
  world.clock().Set({2024, 3, 7, 0, 5, 30});
  world.disk().SetFreeSpace(100);
  ExpectSaveError();
  files.AutoSaveMeasurements();
  Load();
  world.disk().SetFreeSpace(100'000'000);
  graph.Data.AddMeasurement(1, graph.Now(), 0);
  files.AutoSaveMeasurements();
  EXPECT_EQ(Saved("07Mar24-00.mss").Channels[0].Count(), 1);
}

// One that failed at midnight was told then.
TEST_F(AutoSavedFilesTest, ADayThatFailedBeforeDoesNotKeepTheGraph) {
  Tick();
  world.disk().SetFreeSpace(100);
  ExpectSaveError();
  files.AutoSaveMeasurements();
  world.disk().SetFreeSpace(100'000'000);
  int unloaded = 0;
  all.form.Unloaded = [&] { ++unloaded; };
  all.form.Unload();
  EXPECT_EQ(unloaded, 1);
}

TEST_F(AutoSavedFilesTest, ADayWhoseNameTheDiskDoesNotTellIsToldAndTriedAgain) {
  Tick();
  world.clock().Set({2024, 3, 6, 0, 5, 30});
  world.faults().Break("Files.Exists", RunTimeError(kDeviceIo, "The disk does not answer."));
  world.dialogs().ExpectMessageBox({.text = "Error saving file",
                                    .title = "Saving file",
                                    .icon = Icon::kCritical,
                                    .detail = "The disk does not answer."});
  world.Advance(1min + 1ms);
  EXPECT_EQ(world.dialogs().shown().size(), 1U);
  EXPECT_EQ(Names(), "");
  EXPECT_EQ(ToSeconds(graph.Data.AutoSaveDay), ToSeconds(ToDate({2024, 3, 6})));
  world.Advance(10min);
  EXPECT_EQ(Names(), "05Mar24-00.mss ");
  EXPECT_EQ(Saved("05Mar24-00.mss").Channels[0].Count(), 1);
}

}  // namespace
}  // namespace tarnlink
