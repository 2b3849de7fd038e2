// The view of the graph: labels, captions, scroll bar, cursor, size.

#include "graph/graph_display.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "graph/graph_captions.h"
#include "support/fake_world.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// The fake clock begins on 5 March 2024 at 14:07:09.
constexpr double kMinute = 1.0 / 1440;
constexpr double kSecond = 1.0 / 86'400;

class GraphDisplayTest : public ::testing::Test {
 protected:
  GraphDisplayTest() {
    LineColors colours;
    graph.Data.Attributes = LoadDefaultAttributes(colours);
    start = graph.Now();
    graph.Data.FirstTime = graph.Data.LastTime = graph.BaseTime = start;
    graph.ScaleWidth = 12'000;
    graph.ScaleHeight = 9'000;
    graph.GraphPan.Draw = [this] { ++drawn; };
    display.Form_Resize();
    drawn = 0;
  }
  GraphAttribute& Line(int index) {
    return graph.Data.Attributes.at(static_cast<std::size_t>(index));
  }
  // Everything measured from the start to `minutes` later; the view stands at its end.
  void StandAfter(int minutes) {
    graph.AutoScroll = false;
    graph.Data.LastTime = graph.BaseTime = start + minutes * kMinute;
  }
  // Seconds since the start.
  int Seconds(Date time) { return static_cast<int>(ToSeconds(time) - ToSeconds(start)); }
  // "50,50 Sensor 1" for each caption label that is shown.
  std::vector<std::string> Captions() {
    std::vector<std::string> rows;
    for (int k = 0; k <= kCaptionLabels; ++k) {
      const Label& label = graph.lblVal(k);
      if (!label.Visible) continue;
      rows.push_back(std::to_string(static_cast<int>(label.Left)) + "," +
                     std::to_string(static_cast<int>(label.Top)) + " " + label.Caption.get());
    }
    return rows;
  }
  std::string Times() {
    std::string text;
    for (int i = 0; i < kTimeLines; ++i) {
      if (graph.lblX(i).Visible) text += graph.lblX(i).Caption.get() + " ";
    }
    return text;
  }

  FakeWorld world;
  frmGraphic graph{world};
  frmContextMenu menu{graph};
  GraphDisplay display{graph, menu};
  Date start = 0;
  int drawn = 0;
};

// --- Drawing again -------------------------------------------------------------------------------

TEST_F(GraphDisplayTest, BeginsFollowingAtTenMinutes) {
  EXPECT_EQ(graph.TimeScale, 10);
  EXPECT_TRUE(graph.AutoScroll);
  EXPECT_EQ(graph.CursorTime, 0);
  EXPECT_EQ(graph.ScreenRefreshTimer->Interval(), 5000);
}

TEST_F(GraphDisplayTest, TheColoursAreThoseOfTheGraph) {
  graph.Data.Colors = {
      .GridColor = 1, .GraphColor = 2, .BackColor = 3, .CursorColor = 4, .CaptionColor = 5};
  display.DrawAgain();
  EXPECT_EQ(graph.GraphPan.BackColor, 2);
  EXPECT_EQ(graph.GraphPan.ForeColor, 5);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(graph.frm(i).BackColor, 3);
  EXPECT_EQ(graph.lblX(0).BackColor, 3);
  EXPECT_EQ(graph.lblX(0).ForeColor, 5);
  EXPECT_EQ(drawn, 1);
  display.Form_Resize();
  EXPECT_EQ(graph.lblYL(7).ForeColor, 5);
  EXPECT_EQ(graph.lblYR(7).BackColor, 3);
  EXPECT_EQ(graph.lblDate.ForeColor, 5);
  EXPECT_EQ(graph.lblVal(0).BackColor, 3);
}

TEST_F(GraphDisplayTest, FollowingTheRightEdgeIsNow) {
  world.Advance(90s);
  display.DrawAgain();
  EXPECT_EQ(Seconds(graph.BaseTime), 90);
  EXPECT_EQ(Seconds(graph.Data.LastTime), 90) << "It runs on with the clock.";
  EXPECT_EQ(Times(), "13:59 14:00 14:01 14:02 14:03 14:04 14:05 14:06 14:07 14:08 ");
  graph.AutoScroll = false;
  world.Advance(90s);
  display.DrawAgain();
  EXPECT_EQ(Seconds(graph.BaseTime), 90);
}

TEST_F(GraphDisplayTest, TheTimerDrawsAgainWhileItRuns) {
  graph.ScreenRefreshTimer->SetEnabled(true);
  world.Advance(5s);
  EXPECT_EQ(drawn, 1);
  world.Advance(10s);
  EXPECT_EQ(drawn, 3);
  EXPECT_TRUE(graph.ScreenRefreshTimer->Enabled());
}

TEST_F(GraphDisplayTest, ATimeLabelStandsCentredUnderItsTime) {
  graph.TimeScale = 5;
  graph.lblX(4).Width = 400;
  display.DrawAgain();
  // Nine seconds behind the last minute, on a panel of 9050.
  EXPECT_NEAR(graph.lblX(4).Left, 9050 * (0.8 + 0.2 * (1 - 9.0 / 60)) - 200, 0.1);
  EXPECT_EQ(Times(), "14:03 14:04 14:05 14:06 14:07 ");
}

TEST_F(GraphDisplayTest, AStandingViewDoesNotReachBeyondTheLastTime) {
  graph.AutoScroll = false;
  graph.BaseTime = start + 5 * kMinute;
  display.DrawAgain();
  EXPECT_EQ(Seconds(graph.BaseTime), 0);
}

// --- Captions ------------------------------------------------------------------------------------

TEST_F(GraphDisplayTest, EachLineHasARowInItsBand) {
  for (const int index : {0, 1, 11, 15, 17, 100, 101}) Line(index).ShowCaption = true;
  Line(0).Description = "in front of the pump";
  display.DrawAgain();
  // The panel is 8340 high, a label 195.
  EXPECT_EQ(Captions(), (std::vector<std::string>{"50,50 Sensor 1",
                                                  "1200,50 :",
                                                  "1300,50 0",
                                                  "1725,50 \xC2\xB0"
                                                  "C",
                                                  "50,284 Sensor 2",
                                                  "1200,284 :",
                                                  "1300,284 0",
                                                  "1725,284 \xC2\xB0"
                                                  "C",
                                                  "50,5054 Fan speed",
                                                  "1200,5054 :",
                                                  "1300,5054 0",
                                                  "1725,5054 rpm",
                                                  "50,5288 Output level",
                                                  "1200,5288 :",
                                                  "1300,5288 0",
                                                  "1725,5288 %",
                                                  "50,518 Water pres",
                                                  "1200,518 :",
                                                  "1300,518 0",
                                                  "1725,518 bar",
                                                  "50,3753 CH mode",
                                                  "1200,3753 :",
                                                  "1300,3753 0",
                                                  "1725,3753 ",
                                                  "50,3948 DHW mode",
                                                  "1200,3948 :",
                                                  "1300,3948 0",
                                                  "1725,3948 "}));
  EXPECT_EQ(graph.lblVal(0).ToolTipText.get(), "in front of the pump");
  EXPECT_EQ(graph.lblVal(1).ToolTipText.get(), "");
  EXPECT_EQ(graph.lblVal(4).ForeColor, 0x00FF00);
  for (GraphAttribute& line : graph.Data.Attributes) line.ShowCaption = false;
  display.DrawAgain();
  EXPECT_TRUE(Captions().empty());
}

TEST_F(GraphDisplayTest, AHundredRowsAreTheMost) {
  for (GraphAttribute& line : graph.Data.Attributes) line.ShowCaption = true;
  display.DrawAgain();
  EXPECT_EQ(Captions().size(), 400U);
  EXPECT_EQ(graph.lblVal(396).Caption.get(), "Item 99");
}

TEST_F(GraphDisplayTest, ACaptionShowsTheValueUnderTheCursor) {
  Line(0).ShowCaption = true;
  Line(0).ShowLine = true;
  graph.Data.AllocateChannel(0);
  graph.Data.AddMeasurement(20 << 8, start - 60 * kSecond, 0);
  display.DrawAgain();
  EXPECT_EQ(graph.lblVal(2).Caption.get(), "20") << "A single sample draws no line.";
  graph.Data.AddMeasurement(30 << 8, start, 0);
  display.DrawAgain();
  EXPECT_EQ(graph.lblVal(2).Caption.get(), "30");
  graph.AutoScroll = false;
  graph.CursorTime = start - 30 * kSecond;
  display.DrawAgain();
  EXPECT_EQ(graph.lblVal(2).Caption.get(), "20");
}

TEST(CaptionValue, HasSevenDigitsAtMost) {
  const std::vector<std::pair<float, std::string>> values = {{0, "0"},
                                                             {1, "1"},
                                                             {-5, "-5"},
                                                             {0.1F, "0.1"},
                                                             {0.3F * 3, "0.9"},
                                                             {65'535, "65535"},
                                                             {1.0F / 3, "0.3333333"},
                                                             {1966.05F, "1966.05"}};
  for (const auto& [value, text] : values) EXPECT_EQ(CaptionValue(value, "."), text);
  EXPECT_EQ(CaptionValue(0.5F, ","), "0,5");
  EXPECT_EQ(CaptionValue(1e9F, "."), "1E+09");
  EXPECT_EQ(CaptionValue(0.00007F, ","), "7E-05");
}

// --- Date and scroll bar -------------------------------------------------------------------------

TEST_F(GraphDisplayTest, TheDateIsNowOrThatOfTheCursor) {
  world.Advance(1s);
  display.DrawAgain();
  EXPECT_EQ(graph.lblDate.Caption.get(), "05-Mar-24 14:07:10");
  EXPECT_EQ(graph.lblDate.ToolTipText.get(), "05-Mar-24 14:07:09  <->  05-Mar-24 14:07:10");
  graph.CursorTime = start;
  display.DrawAgain();
  EXPECT_EQ(graph.lblDate.Caption.get(), "05-Mar-24 14:07:10") << "It follows the clock.";
  graph.AutoScroll = false;
  display.DrawAgain();
  EXPECT_EQ(graph.lblDate.Caption.get(), "05-Mar-24 14:07:09");
}

TEST_F(GraphDisplayTest, TheScrollBarReachesOverAllThatWasMeasured) {
  StandAfter(35);
  display.DrawAgain();
  EXPECT_EQ(graph.HScroll1.Max, 25);
  EXPECT_EQ(graph.HScroll1.Value, 25);
  EXPECT_EQ(graph.HScroll1.LargeChange, 10);
  EXPECT_EQ(graph.HScroll1.SmallChange, 1);
  EXPECT_EQ(Seconds(graph.BaseTime), 35 * 60) << "The bar follows the time, not the time the bar.";
  graph.HScroll1.Value = 5;
  EXPECT_EQ(Seconds(graph.BaseTime), 15 * 60);
  EXPECT_EQ(graph.HScroll1.Value, 5);
}

TEST_F(GraphDisplayTest, AShortMeasurementHasNothingToScroll) {
  StandAfter(3);
  display.DrawAgain();
  EXPECT_EQ(graph.HScroll1.Max, 0);
  EXPECT_EQ(graph.HScroll1.Value, 0);
}

TEST_F(GraphDisplayTest, TheScrollBarEndsAtThirtyThousandMinutes) {
  StandAfter(30'010);
  display.DrawAgain();
  EXPECT_EQ(graph.HScroll1.Max, 30'000);
  StandAfter(30'500);
  graph.HScroll1.Value = 0;
  StandAfter(30'500);
  display.DrawAgain();
  EXPECT_EQ(graph.HScroll1.Max, 30'000);
  EXPECT_EQ(graph.HScroll1.Value, 30'000);
}

TEST(MinutesBetween, CountsTheBoundariesThatArePassed) {
  const Date at = ToDate({2024, 3, 5, 14, 7, 59});
  EXPECT_EQ(MinutesBetween(at, at), 0);
  EXPECT_EQ(MinutesBetween(at, at + kSecond), 1);
  EXPECT_EQ(MinutesBetween(at, at + 61 * kSecond), 2);
  EXPECT_EQ(MinutesBetween(at + kSecond, at), -1);
}

// --- The cursor ----------------------------------------------------------------------------------

TEST_F(GraphDisplayTest, AClickSetsTheCursorAndStopsTheView) {
  graph.ScreenRefreshTimer->SetEnabled(true);
  menu.mnuTimeScroll.Checked = true;
  display.GraphPanMouseUp(MouseButton::kLeft, graph.GraphPan.ScaleWidth / 2);
  EXPECT_FALSE(graph.AutoScroll);
  EXPECT_FALSE(graph.ScreenRefreshTimer->Enabled());
  EXPECT_FALSE(menu.mnuTimeScroll.Checked);
  EXPECT_NEAR(graph.CursorTime, start - 5 * kMinute, 0.01 * kSecond);
  EXPECT_EQ(drawn, 1);
}

TEST_F(GraphDisplayTest, TheMouseKeepsTheFractionOfASecond) {
  graph.TimeScale = 1;
  display.GraphPanMouseUp(MouseButton::kLeft, graph.GraphPan.ScaleWidth * 0.7525F);
  EXPECT_NEAR((start - graph.CursorTime) / kSecond, 14.85, 0.01);
}

TEST_F(GraphDisplayTest, ArrowsMoveTheCursorByASecondAndWithShiftByTen) {
  StandAfter(60);
  display.GraphPanKeyDown(CursorKey::kLeft, false);
  EXPECT_EQ(graph.CursorTime, 0) << "Without a cursor nothing happens.";
  EXPECT_EQ(drawn, 0);
  graph.CursorTime = start + 55 * kMinute;
  for (const auto& [key, shift, seconds] :
       std::vector<std::tuple<CursorKey, bool, int>>{{CursorKey::kLeft, false, 3299},
                                                     {CursorKey::kLeft, true, 3289},
                                                     {CursorKey::kRight, true, 3299},
                                                     {CursorKey::kRight, false, 3300}}) {
    display.GraphPanKeyDown(key, shift);
    EXPECT_EQ(Seconds(graph.CursorTime), seconds);
    EXPECT_EQ(Seconds(graph.BaseTime), 3600);
  }
}

TEST_F(GraphDisplayTest, InsideTheViewTheCursorMovesAlone) {
  StandAfter(60);
  graph.BaseTime = start + 40 * kMinute;
  graph.CursorTime = start + 31 * kMinute;
  display.GraphPanKeyDown(CursorKey::kLeft, true);
  EXPECT_EQ(Seconds(graph.CursorTime), 31 * 60 - 10);
  EXPECT_EQ(Seconds(graph.BaseTime), 40 * 60);
}

TEST_F(GraphDisplayTest, ToTheLeftTheViewGoesOnByAPage) {
  StandAfter(60);
  graph.CursorTime = start + 50 * kMinute;
  display.GraphPanKeyDown(CursorKey::kLeft, false);
  EXPECT_EQ(Seconds(graph.CursorTime), 50 * 60 - 1);
  EXPECT_EQ(Seconds(graph.BaseTime), 60 * 60 - 1);
}

TEST_F(GraphDisplayTest, AtTheFirstTimeTheCursorStopsAtTheLeftEdge) {
  StandAfter(10);
  graph.CursorTime = start;
  display.GraphPanKeyDown(CursorKey::kLeft, true);
  EXPECT_EQ(Seconds(graph.CursorTime), 0);
  EXPECT_EQ(Seconds(graph.BaseTime), 600);
}

TEST_F(GraphDisplayTest, ToTheRightTheViewRunsAlong) {
  StandAfter(60);
  graph.BaseTime = start + 30 * kMinute;
  graph.CursorTime = graph.BaseTime - kSecond;
  display.GraphPanKeyDown(CursorKey::kRight, true);
  EXPECT_EQ(Seconds(graph.CursorTime), 30 * 60 + 9);
  EXPECT_EQ(Seconds(graph.BaseTime), 30 * 60 + 9);
}

TEST_F(GraphDisplayTest, AtTheLastTimeTheCursorStopsAtTheRightEdge) {
  StandAfter(60);
  graph.CursorTime = graph.Data.LastTime;
  display.GraphPanKeyDown(CursorKey::kRight, false);
  EXPECT_EQ(Seconds(graph.CursorTime), 3600);
  EXPECT_EQ(Seconds(graph.BaseTime), 3600);
}

TEST_F(GraphDisplayTest, ACursorStandsWhileSamplesComeIn) {
  display.GraphPanMouseUp(MouseButton::kLeft, 100);
  const Date base = graph.BaseTime;
  world.Advance(30s);
  display.DrawAgain();
  EXPECT_EQ(graph.BaseTime, base);
  EXPECT_EQ(Seconds(graph.Data.LastTime), 0);
  graph.Data.AddMeasurement(1, graph.Now(), 100);
  EXPECT_EQ(Seconds(graph.Data.LastTime), 30);
}

// --- Mouse and size ------------------------------------------------------------------------------

TEST_F(GraphDisplayTest, OtherButtonsAskForTheMenuAndTheCaptionsForTheSettings) {
  int menus = 0;
  int settings = 0;
  display.ShowContextMenu = [&] { ++menus; };
  display.ShowSettings = [&] { ++settings; };
  display.GraphPanMouseUp(MouseButton::kRight, 0);
  display.FormMouseUp(MouseButton::kRight);
  display.FormMouseUp(MouseButton::kLeft);
  display.PanelMouseDown(2, MouseButton::kRight);
  display.PanelMouseDown(0, MouseButton::kMiddle);
  EXPECT_EQ(menus, 4);
  display.PanelMouseDown(1, MouseButton::kLeft);
  EXPECT_EQ(settings, 0);
  EXPECT_EQ(drawn, 0);
  display.PanelMouseDown(0, MouseButton::kLeft);
  EXPECT_EQ(settings, 1);
  EXPECT_EQ(drawn, 1);
}

TEST_F(GraphDisplayTest, BelowItsSmallestSizeOnlyTheBottomLabelsFollow) {
  graph.lblExit.Height = graph.lblTest.Height = 255;
  graph.lblDate.Height = 200;
  graph.lblExit.Width = 600;
  const float width = graph.GraphPan.Width;
  for (const auto& [form_width, form_height] :
       std::vector<std::pair<float, float>>{{5000, 9000}, {9000, 5000}}) {
    graph.ScaleWidth = form_width;
    graph.ScaleHeight = form_height;
    display.Form_Resize();
    EXPECT_EQ(graph.GraphPan.Width, width);
    EXPECT_EQ(drawn, 0);
    EXPECT_EQ(graph.lblExit.Top, form_height - 255);
    EXPECT_EQ(graph.lblTest.Left, 600);
    EXPECT_FLOAT_EQ(graph.lblDate.Top, form_height - 255 - 220);
  }
  graph.ScaleWidth = graph.ScaleHeight = 5001;
  display.Form_Resize();
  EXPECT_EQ(graph.GraphPan.Width, 5001 - 2950);
  EXPECT_EQ(drawn, 1);
}

TEST_F(GraphDisplayTest, ThePictureShowsGridLinesAndCursor) {
  RecordingSurface surface(graph.GraphPan.ScaleWidth, graph.GraphPan.ScaleHeight);
  graph.CursorTime = start;
  graph.Data.AddMeasurement(0x0100, start, 100);
  Line(100).ShowLine = true;
  display.Paint(surface);
  const auto& all = surface.operations();
  EXPECT_EQ(all.front(), "cls FFFFFF");
  EXPECT_EQ(
      surface.Only("pen"),
      (std::vector<std::string>{"pen 000000 solid 1", "pen FFFF00 solid 2", "pen 0000FF solid 1"}));
  EXPECT_EQ(surface.Only("box").size(), 1U);
  EXPECT_TRUE(all.back().starts_with("line 9049,0 9049,8340")) << all.back();
}

TEST_F(GraphDisplayTest, AHintStandsThereAsLongAsNothingIsShown) {
  display.DrawAgain();
  EXPECT_TRUE(graph.lblNoLine.Visible);
  Line(3).ShowCaption = true;
  display.DrawAgain();
  EXPECT_FALSE(graph.lblNoLine.Visible);
  Line(3).ShowCaption = false;
  Line(107).ShowLine = true;
  display.DrawAgain();
  EXPECT_FALSE(graph.lblNoLine.Visible);
  Line(107).ShowLine = false;
  display.DrawAgain();
  EXPECT_TRUE(graph.lblNoLine.Visible);
}

}  // namespace
}  // namespace tarnlink
