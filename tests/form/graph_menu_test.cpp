// The popup menu of the graph: its captions, its check marks, and the entries that change what is
// seen or keep a picture of it.

#include <chrono>
#include <string>
#include <vector>

#include "form/open_graph.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class GraphMenuTest : public OpenGraph {
 protected:
  GraphMenuTest() { Open(); }

  // "2" for the scale that is checked.
  std::string CheckedScales() {
    std::string text;
    for (int i = 0; i < kTimeScales; ++i) {
      if (menu.mnuScale(i).Checked) text += std::to_string(i);
    }
    return text;
  }
  // What runs and follows, once the menu says the same.
  std::string State() {
    EXPECT_EQ(menu.mnuZOLTCom.Checked.get(), graph.ZOLTCommunication);
    EXPECT_EQ(menu.mnuTimeScroll.Checked.get(), graph.AutoScroll);
    EXPECT_EQ(graph.ScreenRefreshTimer->Enabled(), graph.AutoScroll);
    return std::string(graph.ZOLTCommunication ? "running" : "stopped") +
           (graph.AutoScroll ? ", following" : ", standing");
  }
  void ExpectQuestion(const std::string& verb, Answer answer) {
    world.dialogs()
        .ExpectMessageBox("Are you sure you want to " + verb + " communication",
                          "ZOLT Communication")
        .Press(answer);
  }
};

TEST_F(GraphMenuTest, EachEntryHasItsCaption) {
  std::vector<std::string> captions;
  for (const MenuEntry* entry :
       {&menu.mnuZOLTCom, &menu.mnuTimeScale, &menu.mnuScale(0), &menu.mnuScale(1),
        &menu.mnuScale(2), &menu.mnuScale(3), &menu.mnuScale(4), &menu.mnuTimeScroll,
        &menu.mnuMeasOnly, &menu.mnuAutoSave, &menu.mnuExit}) {
    captions.push_back(entry->name() + ": " + entry->Caption.get());
  }
  EXPECT_EQ(captions,
            (std::vector<std::string>{
                "mnuZOLTCom: ZOLT communication", "mnuTimeScale: Time scale",
                "mnuScale(0):  1 minute", "mnuScale(1):  5 minutes", "mnuScale(2): 10 minutes",
                "mnuScale(3): 20 minutes", "mnuScale(4): 60 minutes", "mnuTimeScroll: Time Scroll",
                "mnuMeasOnly: Measured only", "mnuAutoSave: Auto save", "mnuExit: Quit Graphics"}));
  EXPECT_EQ(menu.mnuScale.last(), 4);
}

// --- Time scale ----------------------------------------------------------------------------------

struct ScaleCase {
  int index;
  int minutes;
  int refresh;  // ms
  std::string checked;
};

const std::vector<ScaleCase> kScaleCases = {
    {0, 1, 1000, "0"},    {1, 5, 2000, "1"}, {2, 10, 5000, "2"}, {3, 20, 10'000, "3"},
    {4, 60, 30'000, "4"}, {5, 10, 5000, ""}, {-1, 10, 5000, ""}};

TEST_F(GraphMenuTest, EachScaleHasItsMinutesItsRefreshAndItsMark) {
  EXPECT_EQ(CheckedScales(), "2");
  for (const ScaleCase& one : kScaleCases) {
    SCOPED_TRACE(one.index);
    drawn = 0;
    if (one.checked.empty()) {
      all.commands.mnuScale(one.index);
    } else {
      menu.mnuScale(one.index).Press();
    }
    EXPECT_EQ(graph.TimeScale, one.minutes);
    EXPECT_EQ(graph.ScreenRefreshTimer->Interval(), one.refresh);
    EXPECT_EQ(CheckedScales(), one.checked);
    EXPECT_EQ(drawn, 1);
  }
}

TEST_F(GraphMenuTest, AFollowingViewKeepsItsTimeAndIsDrawnAsOftenAsItsScaleSays) {
  for (const ScaleCase& one : kScaleCases) {
    all.commands.mnuScale(one.index);
    EXPECT_EQ(State(), "running, following");
    drawn = 0;
    world.Advance(60s);
    EXPECT_EQ(drawn, 60'000 / one.refresh) << one.index;
    EXPECT_EQ(ToSeconds(graph.BaseTime), ToSeconds(graph.Now())) << one.index;
  }
}

TEST_F(GraphMenuTest, ACursorComesToTheMiddle) {
  for (const auto& [index, half] :
       std::vector<std::pair<int, int>>{{0, 30}, {1, 150}, {2, 300}, {3, 600}, {4, 1800}}) {
    StandAfter(120);
    graph.CursorTime = start + 60 * kMinute;
    menu.mnuScale(index).Press();
    EXPECT_EQ(Seconds(graph.BaseTime), 3600 + half) << index;
    EXPECT_EQ(Seconds(graph.CursorTime), 3600) << index;
  }
}

TEST_F(GraphMenuTest, TheMiddleDoesNotReachBeyondTheLastTime) {
  StandAfter(120);
  for (const auto& [cursor, base] :
       std::vector<std::pair<int, int>>{{7200, 7200}, {6901, 7200}, {6900, 7200}, {6899, 7199}}) {
    graph.CursorTime = start + cursor * kSecond;
    menu.mnuScale(2).Press();
    EXPECT_EQ(Seconds(graph.BaseTime), base) << cursor;
  }
}

TEST_F(GraphMenuTest, WithoutACursorAStandingViewKeepsItsRightEdge) {
  StandAfter(120);
  graph.BaseTime = start + 30 * kMinute;
  graph.CursorTime = 0;
  menu.mnuScale(4).Press();
  EXPECT_EQ(Seconds(graph.BaseTime), 1800);
}

TEST_F(GraphMenuTest, TheScaleGoesOneStepLongerOrShorterAndStopsAtItsEnds) {
  for (const auto& [steps, minutes] : std::vector<std::pair<int, int>>{
           {1, 20}, {1, 60}, {1, 60}, {-1, 20}, {-2, 5}, {-1, 1}, {-1, 1}, {9, 60}}) {
    all.commands.ChangeScale(steps);
    EXPECT_EQ(graph.TimeScale, minutes) << steps;
  }
  EXPECT_EQ(CheckedScales(), "4");
  drawn = 0;
  all.commands.ChangeScale(1);
  EXPECT_EQ(drawn, 0) << "There is no longer one.";
}

// --- Scrolling and strokes -----------------------------------------------------------------------

TEST_F(GraphMenuTest, TimeScrollStandsWithACursorAtTheRightEdgeAndFollowsAgain) {
  world.Advance(7s);
  menu.mnuTimeScroll.Press();
  EXPECT_EQ(State(), "running, standing");
  EXPECT_EQ(graph.CursorTime, graph.BaseTime);
  EXPECT_EQ(Seconds(graph.BaseTime), 5) << "what was seen last";
  EXPECT_EQ(drawn, 2) << "once by the clock, once by the entry";
  world.Advance(60s);
  EXPECT_EQ(drawn, 2);
  menu.mnuTimeScroll.Press();
  EXPECT_EQ(State(), "running, following");
  EXPECT_EQ(graph.CursorTime, 0);
  EXPECT_EQ(Seconds(graph.BaseTime), 67);
  EXPECT_EQ(drawn, 3);
}

TEST_F(GraphMenuTest, WhileStoppedTimeScrollOnlySaysWhatIsToBeDone) {
  menu.SetTimeScroll(false);
  menu.SetCommunication(false);
  world.dialogs().ExpectMessageBox(
      {.text = "Start communication first", .title = "Time Scroll", .icon = Icon::kExclamation});
  menu.mnuTimeScroll.Press();
  EXPECT_EQ(State(), "stopped, standing");
  EXPECT_EQ(drawn, 0);
}

TEST_F(GraphMenuTest, MeasuredOnlyIsSwitchedBeforeThePictureIsDrawn) {
  EXPECT_FALSE(menu.mnuMeasOnly.Checked);
  std::string seen;
  graph.GraphPan.Draw = [&] { seen += menu.mnuMeasOnly.Checked ? "strokes " : "lines "; };
  menu.mnuMeasOnly.Press();
  menu.mnuMeasOnly.Press();
  EXPECT_EQ(seen, "strokes lines ");
}

TEST_F(GraphMenuTest, MeasuredOnlyLeavesAStrokeForEachSample) {
  Show(0);
  for (int i = 0; i < 4; ++i) Sample(0, i - 60, 0x1000);
  const auto strokes = [this] {
    RecordingSurface surface(graph.GraphPan.ScaleWidth, graph.GraphPan.ScaleHeight);
    all.display.Paint(surface);
    const std::size_t grid = kTimeLines + kUpperSteps + kLowerSteps;
    return surface.Only("line").size() - grid;
  };
  EXPECT_EQ(strokes(), 0U);
  menu.mnuMeasOnly.Press();
  EXPECT_EQ(strokes(), 3U);
}

// --- Check marks ---------------------------------------------------------------------------------

TEST_F(GraphMenuTest, TheCheckMarksSayWhatIs) {
  EXPECT_EQ(State(), "running, following");
  ExpectQuestion("stop", Answer::kNo);
  menu.mnuZOLTCom.Press();
  EXPECT_EQ(State(), "running, following");
  ExpectQuestion("stop", Answer::kYes);
  menu.mnuZOLTCom.Press();
  EXPECT_EQ(State(), "stopped, standing");
  ExpectQuestion("start", Answer::kNo);
  menu.mnuZOLTCom.Press();
  EXPECT_EQ(State(), "stopped, standing");
  ExpectQuestion("start", Answer::kYes);
  menu.mnuZOLTCom.Press();
  EXPECT_EQ(State(), "running, following");
  all.display.GraphPanMouseUp(MouseButton::kLeft, 3000);
  EXPECT_EQ(State(), "running, standing") << "A cursor is set.";
  all.display.GraphPanMouseUp(MouseButton::kLeft, 4000);
  EXPECT_EQ(State(), "running, standing");
  menu.mnuTimeScroll.Press();
  EXPECT_EQ(State(), "running, following");
}

TEST_F(GraphMenuTest, TheCheckMarksSayWhatIsWhenThePortIsLost) {
  world.port().Unplug();
  ExpectBusy().While([this] {
    EXPECT_FALSE(menu.mnuZOLTCom.Checked);
    EXPECT_FALSE(graph.ZOLTCommunication);
  });
  world.Advance(60s);
  EXPECT_EQ(State(), "stopped, following");
  EXPECT_EQ(graph.lblCommunicationError.Caption.get(), "Communication stopped");
  world.port().PlugIn();
  ExpectQuestion("start", Answer::kYes);
  menu.mnuZOLTCom.Press();
  EXPECT_EQ(State(), "running, following");
  EXPECT_FALSE(graph.lblCommunicationError.Visible);
}

// --- Leaving, pictures ---------------------------------------------------------------------------

TEST_F(GraphMenuTest, QuitLeavesTheForm) {
  menu.mnuExit.Press();
  EXPECT_FALSE(graph.form.Visible);
  EXPECT_FALSE(world.port().PortOpen());
}

class GraphPicturesKept : public GraphMenuTest {
 protected:
  GraphPicturesKept() {
    all.picture.CopyPicture = [this] { ++copies; };
    all.picture.PngBytes = [this] { return picture; };
  }

  static constexpr const char* kPath = "/home/user/work/start.png";
  std::string picture = "as it was";
  int copies = 0;
};

TEST_F(GraphPicturesKept, AreCopiedByTheirEntry) {
  EXPECT_EQ(menu.mnuCopyPicture.Caption.get(), "Copy picture");
  EXPECT_EQ(menu.mnuSavePicture.Caption.get(), "Save picture");
  menu.mnuCopyPicture.Press();
  EXPECT_EQ(copies, 1);
}

// What stood in the picture's middle is at its edge then.
TEST_F(GraphMenuTest, StoppingAndStartingDrawTheCursorWhereItHasGone) {
  StandAfter(5);
  graph.CursorTime = start + 2 * kMinute;
  for (const char* verb : {"stop", "start"}) {
    drawn = 0;
    world.dialogs()
        .ExpectMessageBox(std::string("Are you sure you want to ") + verb + " communication",
                          "ZOLT Communication")
        .Press(Answer::kYes);
    menu.mnuZOLTCom.Press();
    EXPECT_EQ(drawn, 1) << verb;
  }
}

TEST_F(GraphPicturesKept, AreSavedAsTheyWereWhenTheUserAskedForIt) {
  world.dialogs().ExpectSaveFile("Save picture").Give(kPath).While([this] { picture = "later"; });
  menu.mnuSavePicture.Press();
  EXPECT_EQ(world.disk().Get(kPath), "as it was");
  const FileDialogRequest& asked = world.dialogs().last_file_request();
  EXPECT_EQ(asked.file_name, "05Mar24-140709.png");
  EXPECT_EQ(asked.filter, "Picture (*.png)|*.png");
  EXPECT_EQ(asked.extension, "png");
  EXPECT_TRUE(asked.confirm_overwrite);
}

TEST_F(GraphPicturesKept, AreNotSavedByACancel) {
  const std::string before = world.disk().Describe();
  world.dialogs().ExpectSaveFile("Save picture").Cancel();
  menu.mnuSavePicture.Press();
  EXPECT_EQ(world.disk().Describe(), before);
}

TEST_F(GraphPicturesKept, SayThatTheDiskIsFull) {
  world.disk().Put(kPath, "an older one");
  world.disk().SetFreeSpace(3);
  world.dialogs().ExpectSaveFile("Save picture").Give(kPath);
  world.dialogs().ExpectMessageBox(
      {.text = "Error saving file", .title = "Saving file", .icon = Icon::kCritical});
  menu.mnuSavePicture.Press();
  EXPECT_EQ(world.disk().Get(kPath), "an older one");
}

}  // namespace
}  // namespace tarnlink
