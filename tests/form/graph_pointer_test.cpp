// What stands under the mouse pointer, and moving the view in time.

#include "graph/graph_pointer.h"

#include <optional>
#include <string>
#include <vector>

#include "form/open_graph.h"

namespace tarnlink {
namespace {

constexpr const char* kDegrees =
    "\xC2\xB0"
    "C";

// Ten minutes up to the start, on a picture of 9050 by 8340: 15 units to the second and the pixel,
// 29 to a degree.
class GraphPointerTest : public OpenGraph {
 protected:
  GraphPointerTest() { Open(); }

  // A line of temperatures, in whole degrees.
  void Degrees(int index, const std::vector<std::pair<int, int>>& samples) {
    Show(index);
    for (const auto& [second, degrees] : samples) Sample(index, second, degrees << 8);
  }
  // Where a time and a value stand in the picture.
  Point At(double second, float value, int unit = kCelsius) {
    const GraphView view = all.display.View();
    return {view.TimeToX(start + second * kSecond), view.ValueToY(value, unit)};
  }
  // In the middle of a lane.
  Point InLane(int lane, double second) {
    return {At(second, 0).x, 3753 + (static_cast<float>(lane) + 0.5F) * 195};
  }
  std::optional<PointerReading> Reading(Point at) {
    return all.pointer.Reading(all.display.View(), at);
  }
  PointerReading Found(Point at) { return Reading(at).value(); }
  // "Sensor 1: 20 °C at 14:02:09", or "nothing".
  std::string Read(Point at) {
    const auto reading = Reading(at);
    if (!reading) return "nothing";
    constexpr std::size_t kDay = 10;  // letters before the time
    return reading->Name + ": " + reading->Value + " at " + reading->Time.substr(kDay);
  }
  static Point Beside(Point at, float right, float down) { return {at.x + right, at.y + down}; }
};

// --- Lines ---------------------------------------------------------------------------------------

TEST_F(GraphPointerTest, ReadsTheNearerSampleOfALine) {
  Degrees(0, {{-300, 20}, {-290, 30}});
  const std::string unit = std::string(" ") + kDegrees;
  EXPECT_EQ(Read(At(-297, 23)), "Sensor 1: 20" + unit + " at 14:02:09");
  EXPECT_EQ(Read(At(-293, 27)), "Sensor 1: 30" + unit + " at 14:02:19");
  EXPECT_EQ(Reading(At(-293, 27)), (PointerReading{.Name = "Sensor 1",
                                                   .Value = "30" + unit,
                                                   .Time = "05-Mar-24 14:02:19",
                                                   .At = At(-290, 30),
                                                   .LineColor = 0x0000FF}));
}

TEST_F(GraphPointerTest, ReachesTenPixels) {
  Degrees(0, {{-400, 50}, {-200, 50}});
  const Point on = At(-300, 50);
  EXPECT_NE(Read(Beside(on, 0, 149)), "nothing");
  EXPECT_NE(Read(Beside(on, 0, -149)), "nothing");
  EXPECT_EQ(Read(Beside(on, 0, 151)), "nothing");
  EXPECT_EQ(Read(Beside(on, 0, -151)), "nothing");
  const Point end = At(-200, 50);
  EXPECT_NE(Read(Beside(end, 149, 0)), "nothing");
  EXPECT_EQ(Read(Beside(end, 151, 0)), "nothing");
  EXPECT_EQ(Read(Beside(end, 110, 110)), "nothing") << "across the corner";
}

TEST_F(GraphPointerTest, ReadsTheNearerOfTwoLines) {
  Degrees(0, {{-400, 50}, {-200, 50}});
  Degrees(1, {{-400, 54}, {-200, 54}});
  EXPECT_EQ(Found(At(-300, 51)).Name, "Sensor 1");
  EXPECT_EQ(Found(At(-300, 53)).Name, "Sensor 2");
}

TEST_F(GraphPointerTest, ReadsALineUnderItsAlias) {
  Degrees(0, {{-400, 50}, {-200, 50}});
  Line(0).Alias = "Flow";
  EXPECT_EQ(Found(At(-300, 50)).Name, "Flow");
}

TEST_F(GraphPointerTest, PassesByWhatIsNotShown) {
  Degrees(0, {{-400, 50}, {-200, 50}});
  Line(0).ShowLine = false;
  Line(0).ShowCaption = true;
  EXPECT_EQ(Read(At(-300, 50)), "nothing");
}

TEST_F(GraphPointerTest, ReadsTheLineThatCrossesASilence) {
  Degrees(0, {{-500, 20}, {-100, 60}});
  EXPECT_EQ(Read(At(-310, 39)), std::string("Sensor 1: 20 ") + kDegrees + " at 13:58:49");
  EXPECT_EQ(Read(At(-290, 41)), std::string("Sensor 1: 60 ") + kDegrees + " at 14:05:29");
}

TEST_F(GraphPointerTest, ReadsAStepAtBothItsEnds) {
  Degrees(0, {{-301, 20}, {-300, 100}, {-299, 100}});
  EXPECT_EQ(Found(At(-300.4, 60)).At, At(-300, 100));
  EXPECT_EQ(Found(At(-300.6, 60)).At, At(-301, 20));
}

TEST_F(GraphPointerTest, ReadsToTheEdgesOfThePicture) {
  Degrees(0, {{-700, 40}, {-550, 40}, {-20, 80}, {0, 80}});
  EXPECT_EQ(Found({0, At(0, 40).y}).At, At(-550, 40));
  EXPECT_EQ(Found({9050, At(0, 80).y}).At, At(0, 80));
  EXPECT_EQ(Read({0, 0}), "nothing");
  EXPECT_EQ(Read({9050, 8340}), "nothing");
}

TEST_F(GraphPointerTest, FindsNothingWithoutSamples) {
  Show(0);
  Show(11);
  Line(5).ShowLine = true;  // without a channel
  Line(100).ShowLine = true;
  for (const float y : {0.0F, 1000.0F, 3800.0F, 5000.0F, 8340.0F}) {
    EXPECT_EQ(Read({4000, y}), "nothing") << y;
  }
}

TEST_F(GraphPointerTest, ReadsEachUnitInItsScale) {
  struct Case {
    int index;
    int raw;
    float value;
    std::string text;
  };
  for (const Case& one : {Case{0, 50 << 8, 50, std::string("50 ") + kDegrees},
                          Case{10, 100 << 8, 3000, "3000 rpm"}, Case{12, 80 << 8, 80, "80"},
                          Case{15, 60 << 8, 60, "60 %"}, Case{17, 12 << 8, 1.2F, "1.2 bar"}}) {
    Show(one.index);
    Sample(one.index, -400, one.raw);
    Sample(one.index, -200, one.raw);
    const auto reading = Reading(At(-300, one.value, Line(one.index).Unit));
    ASSERT_TRUE(reading) << one.text;
    EXPECT_EQ(reading->Value, one.text);
    Line(one.index).ShowLine = false;
  }
  world.locale().SetDecimalSeparator(",");
  Line(17).ShowLine = true;
  EXPECT_EQ(Found(At(-300, 1.2F, kBar)).Value, "1,2 bar");
}

TEST_F(GraphPointerTest, ReadsAllThatAClockThatWasSetBackHasDrawn) {
  Degrees(0, {{-300, 20}, {-100, 60}, {-200, 40}, {-150, 90}});
  EXPECT_EQ(Found(At(-250, 30)).At, At(-300, 20)) << "before";
  EXPECT_EQ(Found(At(-180, 44)).At, At(-100, 60)) << "before, passed by later ones";
  EXPECT_EQ(Found(At(-120, 56)).At, At(-100, 60)) << "the line that runs back";
  EXPECT_EQ(Found(At(-155, 85)).At, At(-150, 90)) << "behind";
}

// --- Lanes ---------------------------------------------------------------------------------------

TEST_F(GraphPointerTest, ReadsALaneAsOnOrOff) {
  Line(100).ShowLine = Line(103).ShowLine = true;
  Sample(100, -400, 0x0100);
  Sample(100, -300, 0x0900);
  Sample(100, -200, 0x0800);
  EXPECT_EQ(Read(InLane(0, -350)), "CH mode: on at 14:00:29");
  EXPECT_EQ(Read(InLane(0, -201)), "CH mode: on at 14:02:09") << "the state is the older one's";
  EXPECT_EQ(Read(InLane(0, -150)), "CH mode: off at 14:03:49");
  EXPECT_EQ(Read(InLane(1, -350)), "Flame status: off at 14:00:29");
  EXPECT_EQ(Read(InLane(1, -250)), "Flame status: on at 14:02:09");
  EXPECT_EQ(Read(InLane(0, -401)), "nothing") << "before the first sample";
  EXPECT_EQ(Read(InLane(-1, -250)), "nothing");
  EXPECT_EQ(Read(InLane(2, -250)), "nothing");
  const auto reading = Reading(InLane(1, -250));
  EXPECT_EQ(reading->At, InLane(1, -250));
  EXPECT_EQ(reading->LineColor, Line(103).LineColor);
}

TEST_F(GraphPointerTest, ALineOfBitsTakesTheLaneBeforeThoseOfTheStatus) {
  Line(100).ShowLine = true;
  Sample(100, -400, 0x0000);
  Show(30);
  Line(30).Unit = kOnOff;
  Line(30).Factor = 2;
  Sample(30, -400, 0x0400);
  EXPECT_EQ(Read(InLane(0, -300)), "Item 30: on at 14:00:29");
  EXPECT_EQ(Read(InLane(1, -300)), "CH mode: off at 14:00:29");
}

TEST_F(GraphPointerTest, ALineOverALaneIsReadFirst) {
  Line(100).ShowLine = true;
  Sample(100, -500, 0x0100);
  Show(10);
  Sample(10, -400, 255 << 8);  // beyond the top of its scale
  Sample(10, -200, 255 << 8);
  const Point on_both = {At(-300, 0).x, InLane(0, 0).y};
  Line(10).Factor = 7000 * (8340 - 1 - on_both.y) / (8340 * 0.4F) / 255;
  EXPECT_EQ(Found(on_both).Name, "Req fan");
  EXPECT_EQ(Found(Beside(on_both, 3000, 0)).Name, "CH mode");
}

// --- Moving in time ------------------------------------------------------------------------------

TEST_F(GraphPointerTest, AStandingViewMovesOverAllThatWasMeasured) {
  StandAfter(60);
  for (const auto& [minutes, base] : std::vector<std::pair<double, int>>{
           {-5, 3300}, {-0.5, 3270}, {2, 3390}, {-100, 600}, {-1, 600}, {1, 660}, {500, 3600}}) {
    all.pointer.MoveInTime(minutes);
    EXPECT_EQ(Seconds(graph.BaseTime), base) << minutes;
  }
  EXPECT_EQ(Seconds(graph.CursorTime), 0) << "It stays at its time.";
}

TEST_F(GraphPointerTest, EachMoveDrawsAndAtTheEndNothingIsLeftToDraw) {
  StandAfter(60);
  all.pointer.MoveInTime(-1);
  EXPECT_EQ(drawn, 1);
  EXPECT_EQ(graph.HScroll1.Value, 49);
  all.pointer.MoveInTime(5);
  EXPECT_EQ(drawn, 2);
  all.pointer.MoveInTime(5);
  EXPECT_EQ(drawn, 2);
}

TEST_F(GraphPointerTest, WhatIsShorterThanTheViewDoesNotMove) {
  StandAfter(4);
  all.pointer.MoveInTime(-1);
  all.pointer.MoveInTime(1);
  EXPECT_EQ(Seconds(graph.BaseTime), 240);
  EXPECT_EQ(drawn, 0);
}

TEST_F(GraphPointerTest, AFollowingViewDoesNotMove) {
  graph.Data.FirstTime = start - 60 * kMinute;
  all.pointer.MoveInTime(-5);
  EXPECT_EQ(Seconds(graph.BaseTime), 0);
  EXPECT_EQ(drawn, 0);
}

}  // namespace
}  // namespace tarnlink
