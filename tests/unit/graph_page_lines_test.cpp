// The graph as a page: its lines, lanes and cursor, cut at the frame.

#include <string>
#include <utility>
#include <vector>

#include "unit/graph_page_fixture.h"

namespace tarnlink {
namespace {

// --- Lines ---------------------------------------------------------------------------------------

class GraphPageLines : public GraphPageTest {
 protected:
  GraphPageLines() { Show(0); }
};

TEST_F(GraphPageLines, SamplesAreJoinedFromTheNewestBack) {
  Sample(0, kWarm, -120);
  Sample(0, kHot, -60);
  Sample(0, kWarm, 0);
  EXPECT_EQ(OverTheGrid(), "pen 0000FF solid 1\npolyline 9654,3100 9054,850 8454,3100\n");
}

TEST_F(GraphPageLines, OneSampleOrNoneIsNoLine) {
  EXPECT_EQ(OverTheGrid(), "");
  Sample(0, kWarm, 0);
  EXPECT_EQ(OverTheGrid(), "pen 0000FF solid 1\n");
  data.Channels[0].Dimension(0);
  EXPECT_EQ(OverTheGrid(), "");
}

TEST_F(GraphPageLines, AreCutAtBothEdgesOfTheFrame) {
  Sample(0, kHot, -660);
  Sample(0, kWarm, -480);
  Sample(0, kWarm, -60);
  Sample(0, kHot, 60);
  // A third of the way to the older one lies outside, half of the way to the newer one.
  EXPECT_EQ(OverTheGrid(),
            "pen 0000FF solid 1\npolyline 9654,1975 9054,3100 4854,3100 3654,1600\n");
}

TEST_F(GraphPageLines, BothEndsOutsideLeaveWhatLiesBetween) {
  Sample(0, kHot, -1200);
  Sample(0, kWarm, 600);
  EXPECT_EQ(OverTheGrid(), "pen 0000FF solid 1\npolyline 9654,2350 3654,1600\n");
}

TEST_F(GraphPageLines, ASampleOnAnEdgeIsNotCut) {
  Sample(0, kWarm, -600);
  Sample(0, kHot, 0);
  EXPECT_EQ(OverTheGrid(), "pen 0000FF solid 1\npolyline 9654,850 3654,3100\n");
}

TEST_F(GraphPageLines, WhatLiesWhollyOutsideIsNotThere) {
  for (const int seconds : {-900, -800, -700}) Sample(0, kWarm, seconds);
  EXPECT_EQ(OverTheGrid(), "pen 0000FF solid 1\n");
  data.Channels[0].Dimension(MeasureChannel::kUpperBound);
  for (const int seconds : {700, 800, 900}) Sample(0, kWarm, seconds);
  EXPECT_EQ(OverTheGrid(), "pen 0000FF solid 1\n");
}

TEST_F(GraphPageLines, AClockThatWasSetBackIsDrawnAsItRan) {
  for (const int seconds : {-100, -50, -200, -150}) Sample(0, kWarm, seconds);
  EXPECT_EQ(OverTheGrid(),
            "pen 0000FF solid 1\npolyline 8154,3100 7654,3100 9154,3100 8654,3100\n");
}

// Set back while the samples before lay ahead of the view.
TEST_F(GraphPageLines, NothingLiesBeyondTheFrameWhereTimesFall) {
  for (const int seconds : {-100, 50, 60, -20, -10}) Sample(0, kWarm, seconds);
  const std::string drawn = OverTheGrid();
  EXPECT_NE(drawn.find("polyline 9554,3100 9454,3100 9654,3100 8654,3100"), std::string::npos)
      << drawn;
  EXPECT_EQ(drawn.find("10154"), std::string::npos) << drawn;
  EXPECT_EQ(drawn.find("10254"), std::string::npos) << drawn;
}

// As on the screen, where the line leaves the picture.
TEST_F(GraphPageLines, WhereTimesFallALineReachesTheRightEdge) {
  for (const int seconds : {60, -20, -10}) Sample(0, kWarm, seconds);
  const std::string drawn = OverTheGrid();
  EXPECT_NE(drawn.find("9454,3100 9654,3100"), std::string::npos) << drawn;
}

TEST_F(GraphPageLines, AStyleHasTheWidthOfASolidLine) {
  ShowWarmLine(0);
  surface.twips_per_pixel = 2.4F;
  const std::vector<std::pair<int, std::string>> styles = {
      {0, "solid"},        {1, "dash"},  {2, "dot"},    {3, "dash-dot"},
      {4, "dash-dot-dot"}, {5, "solid"}, {-1, "solid"}, {99, "solid"},
  };
  for (const auto& [style, name] : styles) {
    Line(0).LineStyle = static_cast<std::int16_t>(style);
    EXPECT_EQ(Pens()[3], "pen 0000FF " + name + " 12") << style;
  }
}

TEST_F(GraphPageLines, MeasuredOnlyLeavesAStrokeForEachSampleButTheFirst) {
  content.MeasOnly = true;
  Sample(0, kWarm, -120);
  Sample(0, kHot, -60);
  Sample(0, kWarm, 0);
  EXPECT_EQ(OverTheGrid(),
            "pen 0000FF solid 1\nline 9054,850 9052,848\nline 8454,3100 8452,3098\n");
}

TEST_F(GraphPageLines, MeasuredOnlyStrokesAtTheCut) {
  content.MeasOnly = true;
  Sample(0, kHot, -660);
  Sample(0, kWarm, -480);
  Sample(0, kHot, 120);
  EXPECT_EQ(OverTheGrid(),
            "pen 0000FF solid 1\nline 4854,3100 4852,3098\nline 3654,1600 3652,1598\n");
}

// --- Lanes ---------------------------------------------------------------------------------------

TEST_F(GraphPageLines, TheFrameClipsThemAndNothingElse) {
  Sample(0, kHot, -60);
  Sample(0, kWarm, 0);
  Log order;
  for (const std::string& operation : Draw()) {
    if (IsClip(operation) || StartsWith(operation, "polyline")) order.push_back(operation);
  }
  EXPECT_EQ(Joined(order), "clip 3654,850 9654,10850\npolyline 9654,3100 9054,850\nno clip\n");
}

class GraphPageLanes : public GraphPageTest {
 protected:
  GraphPageLanes() { Show(100); }
};

TEST_F(GraphPageLanes, ALaneIsABarWhileOnAndALineWhileOff) {
  Sample(100, 0, -300);
  Sample(100, kOn, -200);
  Sample(100, kOn, -100);
  Sample(100, 0, 0);
  // The state between two samples is that of the older one; the newest reaches back by 50.
  EXPECT_EQ(OverTheGrid(),
            "pen FFFF00 solid 1\nline 9604,5420 9654,5420\nbox 7654,5420 9604,5360\n"
            "line 6654,5420 7654,5420\n");
}

TEST_F(GraphPageLanes, TheHeightIsThatOfTheScreensRowsInProportion) {
  Sample(100, kOn, -100);
  content.lane_height = 0.025F;
  EXPECT_EQ(OverTheGrid(), "pen FFFF00 solid 1\nbox 8604,5525 8654,5375\n");
}

TEST_F(GraphPageLanes, AreCutAtTheFrame) {
  Sample(100, 0, -700);
  Sample(100, kOn, -400);
  Sample(100, 0, 100);
  EXPECT_EQ(OverTheGrid(),
            "pen FFFF00 solid 1\nbox 5654,5420 9654,5360\nline 3654,5420 5654,5420\n");
  // Of the stub of the newest one only the part inside is left.
  data.Channels.back().Dimension(MeasureChannel::kUpperBound);
  Sample(100, kOn, -598);
  EXPECT_EQ(OverTheGrid(), "pen FFFF00 solid 1\nbox 3654,5420 3674,5360\n");
  data.Channels.back().Dimension(MeasureChannel::kUpperBound);
  Sample(100, kOn, 2);
  EXPECT_EQ(OverTheGrid(), "pen FFFF00 solid 1\nbox 9624,5420 9654,5360\n");
}

TEST_F(GraphPageLanes, BothEndsOutsideLeaveTheWholeWidth) {
  Sample(100, kOn, -1200);
  Sample(100, 0, 600);
  EXPECT_EQ(OverTheGrid(), "pen FFFF00 solid 1\nbox 3654,5420 9654,5360\n");
}

TEST_F(GraphPageLanes, WithoutSamplesThereIsNothing) { EXPECT_EQ(OverTheGrid(), ""); }

TEST_F(GraphPageLanes, MeasuredOnlyLeavesAStrokeForEachSample) {
  content.MeasOnly = true;
  Sample(100, kOn, -200);
  Sample(100, 0, -100);
  Sample(100, kOn, 0);
  EXPECT_EQ(OverTheGrid(),
            "pen FFFF00 solid 1\nbox 9604,5420 9654,5360\nline 8604,5420 8654,5420\n"
            "box 7604,5420 7654,5360\n");
}

TEST_F(GraphPageLanes, StandInTheOrderOfTheLinesThatAreShown) {
  Show(7);
  Line(7).Unit = kOnOff;
  Line(7).Factor = 0;
  Sample(7, kOn, 0);
  Show(101);
  Show(115);
  Line(102).ShowCaption = true;
  Sample(100, 0x0380, 0);
  ShowWarmLine(1);
  EXPECT_EQ(OverTheGrid(),
            "pen 00FF00 solid 1\npolyline 9654,3100 9054,3100\n"
            "pen 00FF00 solid 1\nbox 9604,5420 9654,5360\n"
            "pen FFFF00 solid 1\nbox 9604,5520 9654,5460\n"
            "pen 000000 solid 1\nbox 9604,5620 9654,5560\n"
            "pen 00FF00 solid 1\nbox 9604,5720 9654,5660\n");
}

TEST_F(GraphPageLanes, HaveTheWidthOfTheLinesInEveryStyle) {
  surface.twips_per_pixel = 2.4F;
  Line(100).LineStyle = 2;
  Sample(100, 0, 0);
  EXPECT_EQ(OverTheGrid(), "pen FFFF00 dot 12\nline 9604,5420 9654,5420\n");
}

// --- The cursor ----------------------------------------------------------------------------------

class GraphPageCursor : public GraphPageTest {
 protected:
  GraphPageCursor() { data.Colors.CursorColor = 0x445566; }
};

TEST_F(GraphPageCursor, IsALineFromTopToBottom) {
  SetCursor(-150);
  EXPECT_EQ(OverTheGrid(), "pen 445566 solid 1\nline 8154,850 8154,10850\n");
}

TEST_F(GraphPageCursor, StandsOverAllLines) {
  ShowWarmLine(0);
  Line(0).LineStyle = 1;
  SetCursor(-150);
  EXPECT_EQ(OverTheGrid(),
            "pen 0000FF dash 1\npolyline 9654,3100 9054,3100\n"
            "pen 445566 solid 1\nline 8154,850 8154,10850\n");
}

TEST_F(GraphPageCursor, IsThereOnlyBetweenTheEdges) {
  SetCursor(-599);
  EXPECT_EQ(OverTheGrid(), "pen 445566 solid 1\nline 3664,850 3664,10850\n");
  SetCursor(-1);
  EXPECT_EQ(OverTheGrid(), "pen 445566 solid 1\nline 9644,850 9644,10850\n");
  for (const int seconds : {-3600, -601, -600, 0, 1, 3600}) {
    SetCursor(seconds);
    EXPECT_EQ(OverTheGrid(), "") << seconds;
  }
}

TEST_F(GraphPageCursor, IsNotThereWhileTheGraphFollowsTheClock) {
  SetCursor(-150);
  content.AutoScroll = true;
  EXPECT_EQ(OverTheGrid(), "");
}

TEST_F(GraphPageCursor, IsNotThereWithoutATime) {
  content.AutoScroll = false;
  EXPECT_EQ(OverTheGrid(), "");
}

}  // namespace
}  // namespace tarnlink
