// The life of the graph's form: how it begins, how it is left, and that it begins anew.

#include "graph/graph_form.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "form/open_graph.h"
#include "protocols/zolt_message.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// A read of the lanes, which are asked for whatever is shown.
const std::string kLanesRequest = BuildZoltMessage(1, "0", 1, 0, 0);

class GraphFormTest : public OpenGraph {
 protected:
  GraphFormTest() {
    all.form.Unloaded = [this] { ++unloaded; };
    all.auto_save.AutoSaveMeasurements = [this] { ++saved; };
  }
  // What keeps the form at work.
  std::string Running() {
    std::string text;
    if (world.port().PortOpen()) text += "port ";
    if (graph.CommWatch->Enabled()) text += "watch ";
    if (graph.AutoSaveTimer->Enabled()) text += "auto save ";
    if (graph.ScreenRefreshTimer->Enabled()) text += "refresh ";
    return text;
  }

  int unloaded = 0;
  int saved = 0;
};

TEST_F(GraphFormTest, BeginsWithTheDefaultLinesAndShowsNoneOfThem) {
  EXPECT_FALSE(graph.form.Visible);
  Open();
  LineColors colours;
  EXPECT_EQ(graph.Data.Attributes, LoadDefaultAttributes(colours));
  for (const GraphAttribute& line : graph.Data.Attributes) EXPECT_FALSE(line.IsShown());
  EXPECT_EQ(graph.Data.Colors, GraphColors{});
  EXPECT_EQ(graph.Data.LastChannel(), 100);
  for (int k = 0; k <= kCaptionLabels; ++k) EXPECT_FALSE(graph.lblVal(k).Visible);
  EXPECT_TRUE(graph.form.Visible);
}

TEST_F(GraphFormTest, ItsLabelsHaveTheirTextsAndTips) {
  EXPECT_EQ(graph.caption.Caption.get(), "Graphic");
  EXPECT_EQ(graph.lblExit.Caption.get(), "Exit");
  EXPECT_EQ(graph.lblExit.ToolTipText.get(), "Click to exit ");
  EXPECT_EQ(graph.lblTest.Caption.get(), "Test");
  EXPECT_EQ(graph.lblTest.ToolTipText.get(), "Send testmode command to ZOLT");
  EXPECT_EQ(graph.lblCommunicationError.Caption.get(), "Communication error");
}

TEST_F(GraphFormTest, AllItsTimesAreNow) {
  world.Advance(90'500ms);
  all.form.Load();
  const std::int64_t now = ToSeconds(ToDate({2024, 3, 5, 14, 8, 39}));
  EXPECT_EQ(ToSeconds(graph.Data.FirstTime), now);
  EXPECT_EQ(ToSeconds(graph.Data.LastTime), now);
  EXPECT_EQ(ToSeconds(graph.BaseTime), now);
  EXPECT_EQ(graph.CursorTime, 0);
  EXPECT_TRUE(graph.AutoScroll);
  EXPECT_EQ(graph.TimeScale, 10);
}

TEST_F(GraphFormTest, TheAcquisitionBeginsByItself) {
  all.form.Load();
  EXPECT_TRUE(graph.ZOLTCommunication);
  EXPECT_FALSE(graph.lblCommunicationError.Visible);
  EXPECT_EQ(world.port().TakeSent(), std::vector<std::string>{kLanesRequest});
  EXPECT_EQ(Running(), "port watch refresh ");
  EXPECT_EQ(graph.CommWatch->Interval(), 2000);
  EXPECT_TRUE(graph.TestModeOn);
  EXPECT_EQ(graph.TestModePower, 100);
}

TEST_F(GraphFormTest, ABusyPortIsToldBeforeTheFormAppears) {
  world.port().MakeBusy();
  ExpectBusy().While([this] { EXPECT_FALSE(graph.form.Visible); });
  all.form.Load();
  EXPECT_TRUE(graph.form.Visible);
  EXPECT_TRUE(graph.lblCommunicationError.Visible);
  EXPECT_EQ(graph.lblCommunicationError.Caption.get(), "Communication stopped");
  EXPECT_FALSE(graph.ZOLTCommunication);
  EXPECT_FALSE(menu.mnuZOLTCom.Checked);
  EXPECT_TRUE(menu.mnuTimeScroll.Checked);
  EXPECT_EQ(Running(), "refresh ");
  world.Advance(1min);
  EXPECT_TRUE(world.port().frames().empty());
}

TEST_F(GraphFormTest, ThePictureFollowsTheClockFromTheBeginning) {
  Open();
  world.Advance(5s);
  EXPECT_EQ(drawn, 1);
  EXPECT_EQ(graph.lblDate.Caption.get(), "05-Mar-24 14:07:14");
}

// --- Leaving -------------------------------------------------------------------------------------

TEST_F(GraphFormTest, LeavingLetsGoOfPortAndTimers) {
  Open();
  graph.AutoSaveTimer->SetInterval(60'000);
  graph.AutoSaveTimer->SetEnabled(true);
  ASSERT_EQ(Running(), "port watch auto save refresh ");
  world.port().TakeSent();
  all.form.Unload();
  EXPECT_EQ(Running(), "");
  EXPECT_FALSE(graph.form.Visible);
  EXPECT_FALSE(graph.ZOLTCommunication);
  EXPECT_EQ(unloaded, 1);
  world.Advance(1h);
  EXPECT_EQ(drawn, 0);
  EXPECT_TRUE(world.port().TakeSent().empty());
}

TEST_F(GraphFormTest, ItIsLeftOnlyOnce) {
  Open();
  menu.mnuAutoSave.Checked = true;
  // Again on its way out, as by a second click.
  all.auto_save.AutoSaveMeasurements = [this] {
    ++saved;
    all.form.Unload();
  };
  menu.mnuExit.Press();
  menu.mnuExit.Press();
  all.form.Unload();
  EXPECT_EQ(unloaded, 1);
  EXPECT_EQ(saved, 1);
}

TEST_F(GraphFormTest, OneThatWasNeverOpenedIsNotLeft) {
  menu.mnuAutoSave.Checked = true;
  all.form.Unload();
  EXPECT_EQ(unloaded, 0);
  EXPECT_EQ(saved, 0);
}

TEST_F(GraphFormTest, LeavingSavesOnceMoreOnlyIfThatIsOn) {
  Open();
  all.form.Unload();
  EXPECT_EQ(saved, 0);
  all.form.Load();
  menu.mnuAutoSave.Checked = true;
  all.form.Unload();
  EXPECT_EQ(saved, 1);
}

TEST_F(GraphFormTest, ADeviceThatFailsWhileItIsClosedIsNoError) {
  Open();
  world.faults().Break("Port.Close", RunTimeError(57, "Device I/O error"));
  all.form.Unload();
  EXPECT_EQ(unloaded, 1);
  EXPECT_FALSE(graph.form.Visible);
}

TEST_F(GraphFormTest, AfterAPulledDeviceItCanBeLeft) {
  Open();
  world.port().Unplug();
  all.form.Unload();
  EXPECT_EQ(unloaded, 1);
  EXPECT_EQ(Running(), "");
}

// --- A second time -------------------------------------------------------------------------------

TEST(SecondGraph, BeginsAnew) {
  FakeWorld world;
  std::string folder;
  GraphProject project{folder, folder, {}, {}};
  auto first = std::make_unique<Graph>(world, PortOne(), project);
  first->form.Load();
  const std::vector<GraphAttribute> lines = first->graph.Data.Attributes;
  auto& data = first->graph.Data;
  data.Attributes[0].LineColor = 0x123456;
  data.Attributes[0].ShowLine = true;
  data.Colors.GraphColor = 0x404040;
  data.AddMeasurement(7, first->graph.Now(), 100);
  first->menu.mnuMeasOnly.Press();
  first->menu.mnuScale(0).Press();
  first->graph.TestModePower = 20;
  first->graph.TestModeOn = false;
  first->form.Unload();
  first.reset();
  world.Advance(10min);

  Graph second(world, PortOne(), project);
  second.form.Load();
  EXPECT_EQ(second.graph.Data.Attributes, lines);
  EXPECT_EQ(second.graph.Data.Attributes[0].LineColor, 0x0000FF);
  EXPECT_EQ(second.graph.Data.Colors, GraphColors{});
  EXPECT_EQ(second.graph.Data.ChannelOf(100).Count(), 0);
  EXPECT_FALSE(second.menu.mnuMeasOnly.Checked);
  EXPECT_TRUE(second.menu.mnuScale(2).Checked);
  EXPECT_EQ(second.graph.TimeScale, 10);
  EXPECT_EQ(second.graph.ScreenRefreshTimer->Interval(), 5000);
  EXPECT_EQ(second.graph.TestModePower, 100);
  EXPECT_TRUE(second.graph.TestModeOn);
  EXPECT_EQ(ToSeconds(second.graph.Data.FirstTime), ToSeconds(ToDate({2024, 3, 5, 14, 17, 9})));
  EXPECT_TRUE(world.port(1).PortOpen());
  EXPECT_EQ(world.port(1).TakeSent(), std::vector<std::string>{kLanesRequest});
}

}  // namespace
}  // namespace tarnlink
