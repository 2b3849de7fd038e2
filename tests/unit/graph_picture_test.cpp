// The picture of the graph, stroke by stroke.

#include "graph/graph_picture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/recording_surface.h"

namespace tarnlink {
namespace {

const Date kBase = ToDate({2024, 3, 5, 14, 0, 0});

// Ten units to the second; a degree is 4500 / 130 units.
constexpr float kWidth = 6001;
constexpr float kHeight = 10'000;

// Raw answers whose high byte is the temperature.
constexpr std::int32_t kHot = 120 << 8;  // at the top
constexpr std::int32_t kWarm = 55 << 8;  // in the middle of its band

class GraphPictureTest : public ::testing::Test {
 protected:
  GraphPictureTest() {
    LineColors colors;
    data.Attributes = LoadDefaultAttributes(colors);
  }
  // A sample `seconds` before the right edge, or behind it.
  void Sample(int index, std::int32_t value, int seconds) {
    data.AllocateChannel(index);
    data.AddMeasurement(value, FromSeconds(ToSeconds(kBase) + seconds), index);
  }
  GraphAttribute& Line(int index) { return data.Attributes.at(static_cast<std::size_t>(index)); }
  GraphPicture Picture() { return {surface, data, view, lane_height, meas_only}; }
  std::string Analog(int index) {
    surface.Forget();
    Picture().DrawAnalogLine(index, Line(index));
    return surface.Describe();
  }
  std::string Lane(int index, int lane = 0) {
    surface.Forget();
    Picture().DrawStatusLine(index, lane, Line(index));
    return surface.Describe();
  }
  std::string Lines() {
    surface.Forget();
    Picture().DrawLines();
    return surface.Describe();
  }

  Graphic data;
  GraphView view{.BaseTime = kBase, .TimeScale = 10, .ScaleWidth = kWidth, .ScaleHeight = kHeight};
  float lane_height = 100;
  bool meas_only = false;
  RecordingSurface surface{kWidth, kHeight};
};

TEST_F(GraphPictureTest, TheGridStandsInItsColour) {
  data.Colors.GridColor = 0xC0C0C0;
  view.ScaleWidth = 1000;
  view.ScaleHeight = 1300;
  Picture().DrawGrid();
  const auto& all = surface.operations();
  ASSERT_EQ(all.size(), 31U);
  EXPECT_EQ(all[0], "pen C0C0C0 solid 1");
  EXPECT_EQ(all[1], "line 100,0 100,1300");
  EXPECT_EQ(all[10], "line 1000,0 1000,1300");
  EXPECT_EQ(all[11], "line 0,45 1000,45");
  EXPECT_EQ(all[23], "line 0,585 1000,585");
  EXPECT_EQ(all[30], "line 0,780 1000,780");
}

// --- Lines ---------------------------------------------------------------------------------------

TEST_F(GraphPictureTest, SamplesAreJoinedFromTheNewestBack) {
  Sample(0, kWarm, -120);
  Sample(0, kHot, -60);
  Sample(0, kWarm, 0);
  EXPECT_EQ(Analog(0), "pen 0000FF solid 2\npolyline 6000,2250 5400,0 4800,2250\n");
}

TEST_F(GraphPictureTest, OneSampleOrNoneIsNoLine) {
  EXPECT_EQ(Analog(0), "");
  data.AllocateChannel(0);
  EXPECT_EQ(Analog(0), "pen 0000FF solid 2\n");
  Sample(0, kWarm, 0);
  EXPECT_EQ(Analog(0), "pen 0000FF solid 2\n");
}

TEST_F(GraphPictureTest, ALineReachesOneSampleBeyondEachEdge) {
  for (const int seconds : {-800, -700, -300, 100, 200}) Sample(0, kWarm, seconds);
  EXPECT_EQ(Analog(0), "pen 0000FF solid 2\npolyline 7000,2250 3000,2250 -1000,2250\n");
}

TEST_F(GraphPictureTest, WhatLiesWhollyLeftOfTheViewIsNotDrawn) {
  for (const int seconds : {-900, -800, -700}) Sample(0, kWarm, seconds);
  EXPECT_EQ(Analog(0), "pen 0000FF solid 2\n");
}

TEST_F(GraphPictureTest, OnlyASolidLineIsTwoPixelsWide) {
  Sample(0, kWarm, -60);
  Sample(0, kWarm, 0);
  const std::vector<std::string> pens = {"solid 2", "dash 1", "dot 1", "dash-dot 1",
                                         "dash-dot-dot 1"};
  for (int style = 0; style < 5; ++style) {
    Line(0).LineStyle = static_cast<std::int16_t>(style);
    EXPECT_TRUE(Analog(0).starts_with("pen 0000FF " + pens[static_cast<std::size_t>(style)] + "\n"))
        << Analog(0);
  }
  for (const int unknown : {-1, 5, 9999}) {
    Line(0).LineStyle = static_cast<std::int16_t>(unknown);
    EXPECT_TRUE(Analog(0).starts_with("pen 0000FF solid 2\n"));
  }
}

TEST_F(GraphPictureTest, MeasuredOnlyLeavesAStrokeForEachSampleButTheFirst) {
  meas_only = true;
  Sample(0, kWarm, -120);
  Sample(0, kHot, -60);
  Sample(0, kWarm, 0);
  EXPECT_EQ(Analog(0), "pen 0000FF solid 2\nline 5400,0 5398,-2\nline 4800,2250 4798,2248\n");
}

// The walk goes by the order of arrival; it ends where a sample lies before the view.
TEST_F(GraphPictureTest, AClockThatWasSetBackIsDrawnAsItRan) {
  for (const int seconds : {-100, -50, -200, -150}) Sample(0, kWarm, seconds);
  EXPECT_EQ(Analog(0), "pen 0000FF solid 2\npolyline 4500,2250 4000,2250 5500,2250 5000,2250\n");
  Sample(0, kWarm, -3600);
  Sample(0, kHot, -90);
  EXPECT_EQ(Analog(0), "pen 0000FF solid 2\npolyline 5100,0 -30000,2250\n");
}

TEST_F(GraphPictureTest, ASampleAheadOfTheClockIsPassedByOnTheWayToTheRightEdge) {
  for (const int seconds : {-100, 50, 60, -10}) Sample(0, kWarm, seconds);
  // The newest is in view, but the ones before it are behind the edge.
  EXPECT_EQ(Analog(0), "pen 0000FF solid 2\npolyline 6500,2250 5000,2250\n");
}

// --- Lanes ---------------------------------------------------------------------------------------

TEST_F(GraphPictureTest, ALaneIsABarWhileOnAndAThinLineWhileOff) {
  Sample(100, 0x0000, -300);
  Sample(100, 0x0100, -200);
  Sample(100, 0x0100, -100);
  Sample(100, 0x0000, 0);
  // The state between two samples is that of the older one.
  EXPECT_EQ(Lane(100),
            "pen FFFF00 solid 2\nline 5997,4570 6000,4570\nbox 4000,4570 5997,4510\n"
            "line 3000,4570 4000,4570\n");
}

TEST_F(GraphPictureTest, ANewestSampleThatIsOnReachesALittleFurther) {
  Sample(100, 0x0100, -100);
  EXPECT_EQ(Lane(100), "pen FFFF00 solid 2\nbox 4997,4570 5000,4510\n");
}

TEST_F(GraphPictureTest, AnEmptyLaneIsNothing) {
  EXPECT_EQ(Lane(100), "pen FFFF00 solid 2\n");
  EXPECT_EQ(Lane(3), "") << "Nor is one without a channel.";
}

TEST_F(GraphPictureTest, EachLaneIsARowOfTheCaptionsHigh) {
  Sample(100, 0x0100, 0);
  lane_height = 200;
  EXPECT_EQ(Lane(100, 3), "pen FFFF00 solid 2\nbox 5997,5240 6000,5120\n");
}

TEST_F(GraphPictureTest, MeasuredOnlyLeavesAStrokeOfALaneForEachSample) {
  meas_only = true;
  Sample(100, 0x0100, -200);
  Sample(100, 0x0000, -100);
  Sample(100, 0x0100, 0);
  EXPECT_EQ(Lane(100),
            "pen FFFF00 solid 2\nbox 5997,4570 6000,4510\nline 4997,4570 5000,4570\n"
            "box 3997,4570 4000,4510\n");
}

TEST_F(GraphPictureTest, ALaneKeepsItsWidthInEveryStyle) {
  Sample(100, 0x0100, 0);
  Line(100).LineStyle = 1;
  EXPECT_TRUE(Lane(100).starts_with("pen FFFF00 dash 2\n"));
}

// --- All of them ---------------------------------------------------------------------------------

TEST_F(GraphPictureTest, OnlyShownLinesAreDrawnAndOnlyTheyTakeALane) {
  Sample(0, kWarm, -60);
  Sample(0, kWarm, 0);
  Sample(100, 0x0300, 0);
  Sample(7, 0x0100, 0);
  EXPECT_EQ(Lines(), "");
  Line(0).ShowLine = true;
  Line(1).ShowCaption = true;
  Line(7).ShowLine = true;
  Line(7).Unit = kOnOff;
  Line(7).Factor = 0;
  Line(101).ShowLine = true;
  Line(115).ShowLine = true;
  EXPECT_EQ(Lines(),
            "pen 0000FF solid 2\npolyline 6000,2250 5400,2250\n"
            // An on/off line with a channel of its own, in the first lane.
            "pen 00FF00 solid 2\nbox 5997,4570 6000,4510\n"
            "pen 000000 solid 2\nbox 5997,4670 6000,4610\n"
            "pen 00FF00 solid 2\nline 5997,4770 6000,4770\n");
}

// --- A part of them ------------------------------------------------------------------------------

TEST_F(GraphPictureTest, APartReachesFromASampleBeforeItToOneBehindIt) {
  for (const int seconds : {-400, -300, -200, -100, 0, 100, 200}) Sample(0, kWarm, seconds);
  GraphPicture picture = Picture();
  picture.SetPart({.left = 3000,
                   .right = 6100,
                   .newest = ToSeconds(kBase) + 50,
                   .oldest = ToSeconds(kBase) - 250});
  picture.DrawAnalogLine(0, Line(0));
  EXPECT_EQ(surface.Describe(),
            "pen 0000FF solid 2\npolyline 7000,2250 6000,2250 5000,2250 4000,2250 3000,2250\n");
}

TEST_F(GraphPictureTest, TheGridOfAPartGoesOnBeyondTheRightEdge) {
  view.ScaleWidth = 1000;
  view.ScaleHeight = 1300;
  GraphPicture picture = Picture();
  picture.SetPart({.left = 950, .right = 1250});
  picture.DrawGrid();
  const auto& all = surface.operations();
  ASSERT_EQ(all.size(), 24U);
  EXPECT_EQ(all[1], "line 1000,0 1000,1300");
  EXPECT_EQ(all[3], "line 1200,0 1200,1300");
  EXPECT_EQ(all[4], "line 950,45 1250,45");
}

TEST_F(GraphPictureTest, TheGridHasTheWidthOfItsPen) {
  GraphPicture picture(surface, data, view, lane_height, false, {.hairline = 3});
  picture.DrawGrid();
  EXPECT_EQ(surface.operations()[0], "pen 000000 solid 3");
}

TEST_F(GraphPictureTest, TheCursorIsALineFromTopToBottom) {
  data.Colors.CursorColor = 0x123456;
  Picture().DrawCursor(kBase - 30 / kSecondsPerDay);
  EXPECT_EQ(surface.Describe(), "pen 123456 solid 1\nline 5700,0 5700,10000\n");
  surface.Forget();
  Picture().DrawCursor(0);
  EXPECT_EQ(surface.Describe(), "");
}

}  // namespace
}  // namespace tarnlink
