// The entries of the graph's menu that open files: what they ask, what follows, what a bad file
// leaves; and the heading that a file's name gives.

#include <string>
#include <vector>

#include "form/file_commands_fixture.h"

namespace tarnlink {
namespace {

// --- The heading that a file gives ---------------------------------------------------------------

TEST_F(GraphFileCommands, TheHeadingIsTheFilesBaseName) {
  EXPECT_EQ(HeaderOf("/home/user/measured/05Mar24-00.mss"), "05Mar24-00");
  EXPECT_EQ(HeaderOf("C:\\measured\\boiler room.mss"), "boiler room");
  EXPECT_EQ(HeaderOf("/home/user.mss/a.b.mss"), "a.b");
  EXPECT_EQ(HeaderOf("/home/user/.mss"), "");
  const std::string is_long(5000, 'x');
  EXPECT_EQ(HeaderOf("/home/" + is_long + ".mss"), is_long);
}

TEST_F(GraphFileCommands, AFileInARootFolderGivesItsBaseNameToo) {
  EXPECT_EQ(HeaderOf("/boiler.mss"), "boiler");
  EXPECT_EQ(HeaderOf("/b.mss"), "b");
  EXPECT_EQ(HeaderOf("C:\\b.mss"), "b");
}

TEST_F(GraphFileCommands, WithoutAPathTheFirstCharacterIsNoPartOfTheHeading) {
  EXPECT_EQ(HeaderOf("boiler.mss"), "oiler");
  EXPECT_EQ(HeaderOf("ab.mss"), "b");
  for (const char* name : {"", "a", ".mss", "a.mss", "abcde", "/.mss"}) {
    EXPECT_EQ(HeaderOf(name), "") << name;
  }
}

TEST_F(GraphFileCommands, TheHeadingsLettersStayWhole) {
  EXPECT_EQ(HeaderOf("/home/user/Größe 温度.mss"), "Größe 温度");
  EXPECT_EQ(HeaderOf("/ä.mss"), "ä");
}

TEST_F(GraphFileCommands, CharactersAreCountedNotBytes) {
  EXPECT_EQ(HeaderOf("ä.mss"), "");
  EXPECT_EQ(HeaderOf("äußeres.mss"), "ußeres");
  EXPECT_EQ(HeaderOf("/home/user/öbcd"), "");
  EXPECT_EQ(HeaderOf("/home/user/boiler.mäs"), "boiler");
}

// --- Open measurements ---------------------------------------------------------------------------

TEST_F(GraphFileCommands, OpenMeasurementsAsksForAFileThatIsThere) {
  mss_folder = "/home/user/old";
  world.dialogs().ExpectOpenFile().Cancel();
  menu.mnuOpenMeasure.Press();
  EXPECT_EQ(Asked(), "Measurements (*.mss)|*.mss; ; /home/user/old; ");
}

TEST_F(GraphFileCommands, OpenMeasurementsStopsLinkAndScrollingAndShowsThem) {
  Measure(10);
  Save();
  graph.Data.Channels[0].Dimension(0);
  Line(0).Alias = "other";
  drawn = 0;
  OpenMeasurements(kFile);
  EXPECT_EQ(State(), "silent, stands --");
  EXPECT_FALSE(graph.ScreenRefreshTimer->Enabled());
  EXPECT_EQ(Line(0).Alias, "Sensor 1");
  EXPECT_EQ(Count(0), 10);
  EXPECT_EQ(Seconds(graph.BaseTime), 9);
  EXPECT_EQ(Seconds(graph.CursorTime), 9);
  EXPECT_EQ(Header(), "file");
  EXPECT_EQ(mss_folder, kFolder);
  EXPECT_EQ(grp_folder, "");
  EXPECT_GT(drawn, 0);
}

// The colours of the file are those of the scales too.
TEST_F(GraphFileCommands, OpenMeasurementsLaysTheFormOutAnew) {
  graph.Data.Colors.CaptionColor = 0x123456;
  Save();
  graph.Data.Colors.CaptionColor = 0;
  OpenMeasurements(kFile);
  EXPECT_EQ(graph.lblYL(1).ForeColor, 0x123456);
}

TEST_F(GraphFileCommands, AcquisitionGoesOnUntilAFileIsChosen) {
  Save();
  world.dialogs().ExpectOpenFile().Give(kFile).While([this] {
    EXPECT_EQ(State(), "communicates, follows ++");
    Sample(0, 1, 10);
    EXPECT_EQ(Count(0), 1);
  });
  menu.mnuOpenMeasure.Press();
  EXPECT_EQ(State(), "silent, stands --");
  EXPECT_EQ(Count(0), 0);
}

TEST_F(GraphFileCommands, AfterOpenMeasurementsTimeScrollAsksForTheLinkFirst) {
  Save();
  OpenMeasurements(kFile);
  world.dialogs().ExpectMessageBox(
      {.text = "Start communication first", .title = "Time Scroll", .icon = Icon::kExclamation});
  menu.mnuTimeScroll.Press();
  EXPECT_EQ(State(), "silent, stands --");
}

TEST_F(GraphFileCommands, TheNextDialogOpensInTheFolderOfTheLastFile) {
  Save();
  OpenMeasurements(kFile);
  world.dialogs().ExpectSaveFile().Cancel();
  menu.mnuSaveMeasure.Press();
  EXPECT_EQ(world.dialogs().last_file_request().folder, kFolder);
  world.dialogs().ExpectSaveFile("Export measurement data").Cancel();
  menu.mnuExport.Press();
  EXPECT_EQ(world.dialogs().last_file_request().folder, kFolder);
  world.dialogs().ExpectOpenFile().Cancel();
  menu.mnuOpenProperties.Press();
  EXPECT_EQ(world.dialogs().last_file_request().folder, "") << "Lines have a folder of their own.";
}

TEST_F(GraphFileCommands, ALongFileGivesItsHeadingWhenItIsThere) {
  MeasureLong();
  Save();
  ASSERT_TRUE(WaitForEnd());
  drawn = 0;
  OpenMeasurements(kFile);
  EXPECT_TRUE(files.IsBusy());
  EXPECT_EQ(Header(), "before");
  EXPECT_EQ(drawn, 0);
  files.progress.cmdCancel.Press();
  EXPECT_EQ(Header(), "before") << "It was stopped.";
  EXPECT_EQ(drawn, 0);
  OpenMeasurements(kFile);
  ASSERT_TRUE(WaitForEnd());
  EXPECT_EQ(Header(), "file");
  EXPECT_GT(drawn, 0);
}

// --- Bad files -----------------------------------------------------------------------------------

TEST_F(GraphFileCommands, AFileThatCannotBeReadIsToldAndNothingFollows) {
  Measure(10);
  world.disk().Put("/home/user/measured/locked.mss", "x");
  world.disk().Forbid("/home/user/measured/locked.mss");
  world.disk().Put("/home/user/measured/empty.mss", "");
  const std::vector<GraphAttribute> lines = graph.Data.Attributes;
  for (const char* name : {"missing.mss", "locked.mss", "empty.mss"}) {
    OpenMeasurements(std::string(kFolder) + "/" + name, [this] { ExpectReadError(); });
    EXPECT_EQ(State(), "silent, stands --") << name;
    EXPECT_EQ(Header(), "before") << name;
    EXPECT_EQ(drawn, 0) << name;
    EXPECT_EQ(graph.Data.Attributes, lines) << name;
    EXPECT_EQ(Count(0), 10) << name;
  }
  OpenProperties("/home/user/measured/missing.grp", [this] { ExpectReadError(); });
  EXPECT_EQ(State(), "communicates, follows ++");
  EXPECT_EQ(drawn, 0);
  EXPECT_EQ(Count(0), 10) << "Only lines that were read throw the samples away.";
}

TEST_F(GraphFileCommands, CountsThatCannotBeAreToldAndTakeNoMemory) {
  Measure(10);
  Save();
  const std::string good = OnDisk();
  const std::vector<GraphAttribute> lines = graph.Data.Attributes;
  for (const char* count : {"0", "15", "-1", "100000000", "2147483648"}) {
    std::string bad = good;
    bad.replace(bad.find(" 115 "), 5, count);
    world.disk().Put(kFile, bad);
    OpenMeasurements(kFile, [this] { ExpectReadError(); });
    OpenProperties(kFile, [this] { ExpectReadError(); });
    EXPECT_EQ(graph.Data.Attributes, lines) << count;
    EXPECT_EQ(graph.Data.LastChannel(), 100) << count;
    EXPECT_EQ(Count(0), 10) << count;
  }
  EXPECT_EQ(Header(), "before");
  EXPECT_EQ(drawn, 0);
}

TEST_F(GraphFileCommands, AFileThatIsCutIsToldWhereverThatIs) {
  Measure(3);
  Save();
  const std::string whole = OnDisk();
  const std::size_t step = whole.size() / 150;
  for (std::size_t size = 0; size + 12 < whole.size(); size += step) {
    world.disk().Put(kFile, whole.substr(0, size));
    OpenMeasurements(kFile, [this] { ExpectReadError(); });
    EXPECT_EQ(Header(), "before") << size;
    EXPECT_GE(graph.Data.LastAttribute(), 16) << size;
    EXPECT_GE(graph.Data.LastChannel(), 0) << size;
  }
  EXPECT_EQ(drawn, 0);
  // What is left can be drawn, and the whole file be read again.
  all.display.DrawAgain();
  world.disk().Put(kFile, whole);
  OpenMeasurements(kFile);
  EXPECT_EQ(Header(), "file");
  EXPECT_EQ(Count(0), 3);
}

TEST_F(GraphFileCommands, AFileOfLinesIsNoMeasurement) {
  Measure(10);
  Save(false);
  Line(0).Alias = "later";
  OpenMeasurements(kFile, [this] { ExpectReadError(); });
  EXPECT_EQ(Line(0).Alias, "Sensor 1") << "What was read stays.";
  EXPECT_EQ(Count(0), 10);
  EXPECT_EQ(Count(1), 10);
  EXPECT_EQ(State(), "silent, stands --");
  EXPECT_EQ(Header(), "before");
  EXPECT_EQ(drawn, 0);
}

TEST_F(GraphFileCommands, OfAMeasurementFileTheLinesCanBeOpened) {
  Measure(10);
  Line(0).Alias = "saved";
  Save();
  Line(0).Alias = "later";
  OpenProperties(kFile);
  EXPECT_EQ(Line(0).Alias, "saved");
  EXPECT_EQ(Count(0), 0);
  EXPECT_EQ(Header(), "before");
}

// --- Open properties -----------------------------------------------------------------------------

TEST_F(GraphFileCommands, OpenPropertiesAsksForAFileThatIsThere) {
  mss_folder = "/home/user/other";
  grp_folder = "/home/user/lines";
  world.dialogs().ExpectOpenFile().Cancel();
  menu.mnuOpenProperties.Press();
  EXPECT_EQ(Asked(), "Graphic Properties (*.grp)|*.grp; ; /home/user/lines; ");
}

TEST_F(GraphFileCommands, OpenPropertiesThrowsTheSamplesAwayWithoutAsking) {
  Measure(10);
  Line(2).ShowLine = true;
  graph.Data.Colors.CaptionColor = 0x123456;
  Save(false);
  Line(2).ShowLine = false;
  graph.Data.Colors.CaptionColor = 0;
  OpenProperties(kFile);
  EXPECT_EQ(Count(0), 0);
  EXPECT_EQ(Count(1), 0);
  EXPECT_TRUE(Line(2).ShowLine);
  EXPECT_EQ(graph.Data.Channels[2].UpperBound(), 90'000);
  EXPECT_EQ(graph.lblYL(1).ForeColor, 0x123456);
  EXPECT_GT(drawn, 0);
  EXPECT_EQ(grp_folder, kFolder);
  EXPECT_EQ(mss_folder, "");
  EXPECT_EQ(Header(), "before");
}

TEST_F(GraphFileCommands, OpenPropertiesStartsLinkAndScrolling) {
  Save();
  Save(false);
  const std::string lines = OnDisk();
  world.disk().Put(kLines, lines);
  Save();
  OpenMeasurements(kFile);
  EXPECT_EQ(State(), "silent, stands --");
  OpenProperties(kLines);
  EXPECT_EQ(State(), "communicates, follows ++");
  EXPECT_TRUE(graph.ScreenRefreshTimer->Enabled());
  EXPECT_TRUE(world.port().PortOpen());
  EXPECT_EQ(graph.CursorTime, 0);
}

}  // namespace
}  // namespace tarnlink
