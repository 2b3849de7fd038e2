// The files of the graph by its menu, under the mouse, and the window of a file that takes long.

#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "ui/graph_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kMeasured = "/home/user/burner.mss";

class GraphFilesUiTest : public GraphUiTest {
 protected:
  GraphFilesUiTest() { ShowLine(0, std::vector<int>(20, 0x3000)); }

  static QDialog& Progress() {
    auto* dialog = qobject_cast<QDialog*>(FindTopLevel("frmFileProgress"));
    if (dialog == nullptr) throw std::runtime_error("There is no progress.");
    return *dialog;
  }
  MeasureFiles& files() { return all().files; }
  // A file that is read for a while: the fake disk gives 4 kB a millisecond.
  void PutLongFile() {
    for (const int line : {1, 2}) ShowLine(line, std::vector<int>(89'000, 0x1234));
    files().SaveMeasureFile(kMeasured, true, false);
    ASSERT_TRUE(world.RunUntil([this] { return !files().IsBusy(); }, 60s));
  }
  // It is half a second under way.
  void OpenLongFile() {
    PutLongFile();
    world.dialogs().ExpectOpenFile().Give(kMeasured);
    Choose("mnuOpenMeasure");
    world.Advance(510ms);
    ASSERT_TRUE(Progress().isVisible());
  }
  int Count(int channel) {
    return graph().Data.Channels.at(static_cast<std::size_t>(channel)).Count();
  }
};

TEST_F(GraphFilesUiTest, TheMenuSavesAndOpensMeasurementsAndLines) {
  world.dialogs().ExpectSaveFile().Give(kMeasured);
  Choose("mnuSaveMeasure");
  world.dialogs().ExpectSaveFile().Give("/home/user/lines.grp");
  Choose("mnuSaveProperties");
  graph().Data.Channels[0].Dimension(0);
  world.dialogs().ExpectOpenFile().Give(kMeasured);
  Choose("mnuOpenMeasure");
  EXPECT_EQ(Count(0), 20);
  EXPECT_FALSE(graph().ZOLTCommunication);
  world.dialogs().ExpectOpenFile().Give("/home/user/lines.grp");
  Choose("mnuOpenProperties");
  EXPECT_EQ(Count(0), 0);
  EXPECT_TRUE(graph().ZOLTCommunication);
}

TEST_F(GraphFilesUiTest, TheMenuExports) {
  world.dialogs().ExpectSaveFile("Export measurement data").Give("/home/user/table.txt");
  Choose("mnuExport");
  EXPECT_EQ(world.disk().Get("/home/user/table.txt").substr(0, 13), "Time\tSensor 1");
}

TEST_F(GraphFilesUiTest, AutomaticSavingIsCheckedInTheMenu) {
  const auto is_checked = [this] {
    for (QAction* entry : Menu().findChildren<QAction*>()) {
      if (entry->objectName() == "mnuAutoSave") return entry->isCheckable() && entry->isChecked();
    }
    return false;
  };
  world.disk().MakeFolder("/home/user/days");
  world.dialogs().ExpectFolder("Select directory for auto save").Give("/home/user/days");
  Choose("mnuAutoSave");
  EXPECT_TRUE(is_checked());
  Choose("mnuAutoSave");
  EXPECT_FALSE(is_checked());
}

TEST_F(GraphFilesUiTest, TheMenuPrints) {
  world.dialogs().ExpectInputBox("Enter header text:", "Print").Give("Boiler room");
  world.dialogs().ExpectPreview("Print");
  Choose("mnuPrint");
  EXPECT_EQ(all().printer.HeaderText, "Boiler room");
}

TEST_F(GraphFilesUiTest, TheWindowOfALongFileShowsItsShareAndGoesWithIt) {
  OpenLongFile();
  EXPECT_EQ(QApplication::activeModalWidget(), &Progress());
  EXPECT_EQ(Progress().windowTitle(), "Reading file");
  const auto* bar = Progress().findChild<QProgressBar*>();
  const int share = bar->value();
  EXPECT_GT(share, 10);
  world.Advance(20ms);
  EXPECT_GT(bar->value(), share);
  ASSERT_TRUE(world.RunUntil([this] { return !files().IsBusy(); }, 60s));
  EXPECT_FALSE(Progress().isVisible());
  EXPECT_EQ(QApplication::activeModalWidget(), &window());
  EXPECT_EQ(Count(1), 89'000);
}

TEST_F(GraphFilesUiTest, EveryWayOfClosingTheWindowStopsTheFile) {
  PutLongFile();
  const std::vector<std::pair<const char*, std::function<void()>>> ways = {
      {"button",
       [] {
         auto* cancel = Progress().findChild<QPushButton*>("cmdCancel");
         QTest::mouseClick(Progress().windowHandle(), Qt::LeftButton, {},
                           cancel->mapTo(&Progress(), cancel->rect().center()));
       }},
      {"Esc", [] { QTest::keyClick(Progress().windowHandle(), Qt::Key_Escape); }},
      {"frame", [] { Progress().close(); }}};
  for (const auto& [way, close] : ways) {
    graph().Data.Channels[1].Dimension(0);
    world.dialogs().ExpectOpenFile().Give(kMeasured);
    Activate(window());
    Choose("mnuOpenMeasure");
    world.Advance(510ms);
    ASSERT_TRUE(Progress().isVisible()) << way;
    close();
    EXPECT_FALSE(Progress().isVisible()) << way;
    EXPECT_FALSE(files().IsBusy()) << way;
    EXPECT_EQ(Count(1), 0) << way;
    EXPECT_TRUE(graph().ZOLTCommunication) << way;
  }
}

// The user may be typing elsewhere, and stops nothing by a key that was meant for that.
TEST_F(GraphFilesUiTest, TheWindowOfADayIsNotModalAndCannotBeStopped) {
  ShowLine(1, std::vector<int>(89'000, 0x1234));
  auto& progress = files().progress;
  progress.TakesFocus = false;
  progress.cmdCancel.Enabled = false;
  progress.form.Visible = true;
  EXPECT_EQ(QApplication::activeModalWidget(), &window());
  EXPECT_TRUE(Progress().testAttribute(Qt::WA_ShowWithoutActivating));
  EXPECT_FALSE(Progress().findChild<QPushButton*>("cmdCancel")->isEnabled());
  Progress().close();
  EXPECT_TRUE(progress.form.Visible);
}

TEST_F(GraphFilesUiTest, AGraphThatIsLeftIsGoneOnlyWithItsFile) {
  ShowLine(1, std::vector<int>(89'000, 0x1234));
  files().SaveMeasureFile(kMeasured, true, false);
  ClickAt(Middle("lblExit"));
  EXPECT_FALSE(window().isVisible());
  ASSERT_TRUE(world.RunUntil([this] { return !files().IsBusy(); }, 60s));
  EXPECT_TRUE(IsGone());
  EXPECT_GT(world.disk().Get(kMeasured).size(), 1'500'000U);
}

// A day of automatic saving that has no folder any more.
class LostDayUiTest : public GraphFilesUiTest {
 protected:
  LostDayUiTest() {
    graph().Data.AutoSaveDir = "/home/user/gone/";
    graph().Data.AutoSaveDay = std::floor(graph().Now());
    all().menu.mnuAutoSave.Checked = true;
  }
  void ExpectSaveError() { world.dialogs().ExpectMessageBox("Error saving file", "Saving file"); }
};

TEST_F(LostDayUiTest, TheFramesButtonLeavesTheWindowThere) {
  ExpectSaveError();
  window().close();
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(Count(0), 20);
  window().close();
  EXPECT_TRUE(IsGone());
}

TEST_F(LostDayUiTest, ANewGraphWaitsForTheFilesOfTheOneBefore) {
  ShowLine(1, std::vector<int>(89'000, 0x1234));
  world.disk().MakeFolder("/home/user/gone");
  const Graph* before = &all();
  ClickAt(Middle("lblExit"));
  tool.Show();
  EXPECT_EQ(&all(), before);
  EXPECT_FALSE(window().isVisible());
  ASSERT_TRUE(world.RunUntil([this] { return !files().IsBusy(); }, 60s));
  ASSERT_TRUE(QTest::qWaitFor([this] { return window().isVisible(); }, 3000));
  EXPECT_EQ(graph().Data.Channels.at(1).Count(), 0) << "it began anew";
  EXPECT_EQ(world.disk().ListFolder("/home/user/gone").size(), 1U);
}

TEST_F(LostDayUiTest, OneThatComesBackIsTheOneThatIsOpen) {
  ShowLine(1, std::vector<int>(89'000, 0x1234));
  ExpectSaveError();
  ClickAt(Middle("lblExit"));
  tool.Show();
  ASSERT_TRUE(world.RunUntil([this] { return window().isVisible(); }, 60s));
  EXPECT_EQ(Count(1), 89'000);
  ClickAt(Middle("lblExit"));
  EXPECT_TRUE(IsGone()) << "nothing was put off any more";
}

TEST_F(LostDayUiTest, LeavingTheProgramWaitsForTheFiles) {
  ShowLine(1, std::vector<int>(89'000, 0x1234));
  world.disk().MakeFolder("/home/user/gone");
  bool has_ended = false;
  ClickAt(Middle("lblExit"));
  EXPECT_FALSE(tool.Leave([&] { has_ended = true; }));
  EXPECT_FALSE(has_ended);
  EXPECT_EQ(QApplication::activeModalWidget(), &Progress()) << "nothing else can be begun";
  ASSERT_TRUE(world.RunUntil([this] { return !files().IsBusy(); }, 60s));
  ASSERT_TRUE(QTest::qWaitFor([&] { return has_ended; }, 3000));
  EXPECT_EQ(tool.graph(), nullptr);
  EXPECT_TRUE(tool.Leave([] { FAIL() << "There was nothing to wait for."; }));
}

TEST_F(LostDayUiTest, WhoeverOpensTheGraphIsAskedAgainOnceTheFilesAreWritten) {
  ShowLine(1, std::vector<int>(89'000, 0x1234));
  world.disk().MakeFolder("/home/user/gone");
  std::string asked;
  tool.ShowAgain = [&](const std::string& properties) { asked = properties; };
  ClickAt(Middle("lblExit"));
  tool.Show("/home/user/lines.grp");
  EXPECT_EQ(asked, "");
  ASSERT_TRUE(world.RunUntil([this] { return !files().IsBusy(); }, 60s));
  EXPECT_TRUE(IsGone());
  EXPECT_EQ(asked, "/home/user/lines.grp");
}

// A box of another window, or of the graph itself as the desktop ends.
TEST_F(LostDayUiTest, TheGraphIsThereAsLongAsABoxStands) {
  world.disk().MakeFolder("/home/user/gone");
  QDialog outer;
  QDialog box;
  bool was_there = false;
  QTimer::singleShot(0, &outer, [&] {
    QTimer::singleShot(0, &box, [&] {
      all().form.Unload();
      QTimer::singleShot(0, &box, [&] {
        was_there = tool.graph() != nullptr;
        box.accept();
      });
    });
    box.exec();
    outer.accept();
  });
  outer.exec();
  EXPECT_TRUE(was_there);
  EXPECT_TRUE(IsGone());
}

TEST_F(LostDayUiTest, AFileThatFailsKeepsTheProgram) {
  ShowLine(1, std::vector<int>(89'000, 0x1234));
  ExpectSaveError();
  bool has_ended = false;
  EXPECT_FALSE(tool.Leave([&] { has_ended = true; }));
  ASSERT_TRUE(world.RunUntil([this] { return window().isVisible(); }, 60s));
  ClickAt(Middle("lblExit"));
  EXPECT_TRUE(IsGone());
  EXPECT_FALSE(has_ended) << "the user left the graph, not the program";
}

}  // namespace
}  // namespace tarnlink
