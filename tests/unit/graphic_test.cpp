// What the graph knows: its default lines, what is appended, the values of samples and cursor.

#include "graph/graphic.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnlink {
namespace {

constexpr int kTop = MeasureChannel::kUpperBound;
const Date kNoon = ToDate({2024, 3, 5, 12, 0, 0});

Date At(int seconds) { return FromSeconds(ToSeconds(kNoon) + seconds); }

class GraphicTest : public ::testing::Test {
 protected:
  GraphicTest() {
    LineColors colors;
    graphic.Attributes = LoadDefaultAttributes(colors);
  }
  GraphAttribute& Line(int index) { return graphic.Attributes.at(static_cast<std::size_t>(index)); }
  const MeasureChannel& Channel(int index) {
    return graphic.Channels.at(static_cast<std::size_t>(index));
  }

  Graphic graphic;
};

TEST_F(GraphicTest, HasAHundredLinesAndSixteenLanes) {
  EXPECT_EQ(graphic.LastAttribute(), 115);
  EXPECT_EQ(graphic.LastChannel(), 100);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(Channel(i).UpperBound(), 0);
  EXPECT_EQ(Channel(100).UpperBound(), 90'000);
}

TEST_F(GraphicTest, ColoursHaveTheirDefaults) {
  const GraphColors defaults;
  EXPECT_EQ(defaults.GridColor, 0);
  EXPECT_EQ(defaults.GraphColor, 0xFFFFFF);
  EXPECT_EQ(defaults.BackColor, 0xFFFFFF);
  EXPECT_EQ(defaults.CursorColor, 0x0000FF);
  EXPECT_EQ(defaults.CaptionColor, 0);
  graphic.Colors.GridColor = 5;
  graphic.DefaultColor();
  EXPECT_EQ(graphic.Colors, defaults);
}

// --- The default lines ---------------------------------------------------------------------------

// "caption class id unit factor stored_as".
std::string Row(const GraphAttribute& line) {
  return line.FixedCaption + " " + std::to_string(line.Class) + " " + std::to_string(line.ID) +
         " " + std::to_string(line.Unit) + " " + std::to_string(line.Factor).substr(0, 4) + " " +
         std::to_string(line.StoredAs);
}

TEST_F(GraphicTest, LinesBeginWithTheValuesOfABoiler) {
  const std::vector<std::pair<int, std::string>> rows = {{0, "Sensor 1 4 241 1 1.00 0"},
                                                         {1, "Sensor 2 4 770 1 1.00 0"},
                                                         {2, "Sensor 3 4 817 1 1.00 0"},
                                                         {3, "Sensor 4 4 855 1 1.00 0"},
                                                         {4, "Sensor 5 4 856 1 1.00 0"},
                                                         {5, "Contr setp 1 4011 1 1.00 0"},
                                                         {6, "Calc TTB trip 4 4627 1 1.00 0"},
                                                         {7, "CH setpoint 5 1389 1 1.00 0"},
                                                         {8, "DHW setpoint 5 1524 1 1.00 0"},
                                                         {9, "Storage setp 5 2311 1 1.00 0"},
                                                         {10, "Req fan 4 4572 2 30.0 0"},
                                                         {11, "Fan speed 4 4572 2 30.0 1"},
                                                         {12, "Flame current 4 868 0 1.00 0"},
                                                         {13, "Flow sensor 4 3854 0 1.00 0"},
                                                         {14, "Valve current 4 4034 0 1.00 0"},
                                                         {15, "Output level 4 4045 4 1.00 0"},
                                                         {16, "Measured load 4 4383 4 1.00 0"},
                                                         {17, "Water pres 4 4368 3 0.10 0"},
                                                         {18, "CH anti cycle 4 4576 0 1.00 0"},
                                                         {19, "DHW anti cycle 4 4576 0 1.00 1"},
                                                         {20, "Item 20 0 0 1 1.00 0"},
                                                         {99, "Item 99 0 0 1 1.00 0"},
                                                         {100, "CH mode 1 1 5 0.00 0"},
                                                         {101, "DHW mode 1 1 5 1.00 0"},
                                                         {102, "TEST mode 1 1 5 2.00 0"},
                                                         {103, "Flame status 1 1 5 3.00 0"},
                                                         {104, "Exhaust status 1 1 5 4.00 0"},
                                                         {105, "Water filling 1 1 5 5.00 0"},
                                                         {106, "Cal. start 1 1 5 6.00 0"},
                                                         {107, "Cal. min 1 1 5 7.00 0"},
                                                         {108, "Fault 1 1 5 0.00 1"},
                                                         {109, "Valve 1 1 1 5 1.00 1"},
                                                         {110, "Valve 2 1 1 5 2.00 1"},
                                                         {111, "APS 1 1 5 3.00 1"},
                                                         {112, "Fan 1 1 5 4.00 1"},
                                                         {113, "CH pump 1 1 5 5.00 1"},
                                                         {114, "DHW pump 1 1 5 6.00 1"},
                                                         {115, "Frost mode 1 1 5 7.00 1"}};
  for (const auto& [index, row] : rows) EXPECT_EQ(Row(Line(index)), row) << index;
}

TEST_F(GraphicTest, NoLineIsShownAndEachHasItsCaptionAsAlias) {
  for (const GraphAttribute& line : graphic.Attributes) {
    EXPECT_FALSE(line.IsShown());
    EXPECT_EQ(line.Alias, line.FixedCaption);
    EXPECT_EQ(line.Description, "");
    EXPECT_EQ(line.Data, 0);
    EXPECT_EQ(line.SlaveAddress, 0);
    EXPECT_EQ(line.LineStyle, 0);
  }
}

TEST_F(GraphicTest, SixColoursInTurn) {
  const std::vector<Colour> six = {0x0000FF, 0x00FF00, 0xFF0000, 0xFF00FF, 0xFFFF00, 0};
  for (int i = 0; i <= 115; ++i) EXPECT_EQ(Line(i).LineColor, six[static_cast<std::size_t>(i % 6)]);
}

// --- Samples -------------------------------------------------------------------------------------

TEST_F(GraphicTest, AllocatesOnceAndNeverTheStatusChannel) {
  graphic.AllocateChannel(3);
  EXPECT_EQ(Channel(3).UpperBound(), 90'000);
  graphic.AddMeasurement(5, kNoon, 3);
  graphic.AllocateChannel(3);
  EXPECT_EQ(Channel(3).Count(), 1);
  graphic.AddMeasurement(5, kNoon, 100);
  graphic.AllocateChannel(100);
  graphic.AllocateChannel(101);
  EXPECT_EQ(Channel(100).Count(), 1);
}

TEST_F(GraphicTest, AChannelWithoutRoomDropsItsSamples) {
  graphic.AddMeasurement(5, kNoon, 3);
  EXPECT_EQ(Channel(3).Count(), 0);
  EXPECT_EQ(graphic.LastTime, 0);
  EXPECT_EQ(graphic.FirstTime, 0);
}

TEST_F(GraphicTest, OfOneSecondTheFirstSampleStays) {
  graphic.AllocateChannel(0);
  graphic.AddMeasurement(1, At(0), 0);
  graphic.AddMeasurement(2, At(0), 0);
  // The same second, although the clock gives a little more.
  graphic.AddMeasurement(3, At(0) + 0.3 / kSecondsPerDay, 0);
  EXPECT_EQ(Channel(0).Count(), 1);
  EXPECT_EQ(Channel(0)[kTop].Value, 1);
}

TEST_F(GraphicTest, FallingTimesAreKeptInTheOrderOfTheirArrival) {
  graphic.AllocateChannel(0);
  graphic.AddMeasurement(1, At(10), 0);
  graphic.AddMeasurement(2, At(5), 0);
  EXPECT_EQ(Channel(0)[kTop].Value, 2);
  EXPECT_EQ(Channel(0)[kTop - 1].Value, 1);
  EXPECT_EQ(graphic.LastTime, At(5));
}

TEST_F(GraphicTest, NoSecondOfADayIsLost) {
  graphic.AllocateChannel(0);
  constexpr int kDay = 86'400;
  for (int i = 0; i < kDay; ++i) graphic.AddMeasurement(i, At(i), 0);
  EXPECT_EQ(Channel(0).Count(), kDay);
}

TEST_F(GraphicTest, TheRangeOfTimeBeginsWithTheFirstSampleAndEndsWithTheLast) {
  graphic.AddMeasurement(1, At(10), 100);
  EXPECT_EQ(graphic.FirstTime, At(10));
  graphic.AddMeasurement(1, At(20), 100);
  EXPECT_EQ(graphic.FirstTime, At(10));
  EXPECT_EQ(graphic.LastTime, At(20));
}

// --- Values --------------------------------------------------------------------------------------

TEST_F(GraphicTest, ALineTakesAByteOrBothTimesItsFactor) {
  graphic.AllocateChannel(0);
  graphic.AddMeasurement(0x1234, kNoon, 0);
  Line(0).Factor = 0.5F;
  for (const auto& [stored_as, value] : std::vector<std::pair<int, float>>{
           {0, 9.0F}, {1, 26.0F}, {2, 2330.0F}, {7, 2330.0F}, {-1, 2330.0F}}) {
    Line(0).StoredAs = stored_as;
    EXPECT_EQ(graphic.GetSampleValue(0, kTop), value) << stored_as;
  }
  EXPECT_EQ(graphic.GetSampleValue(0, 0), 0.0F) << "An empty element is zero.";
}

TEST_F(GraphicTest, ALaneIsOneBit) {
  graphic.AddMeasurement(0x81'02, kNoon, 100);
  for (const auto& [factor, stored_as, bit] :
       std::vector<std::tuple<float, int, float>>{{0, 0, 1},
                                                  {1, 0, 0},
                                                  {7, 0, 1},
                                                  {9, 0, 1},
                                                  {-1, 0, 1},
                                                  {0.5, 0, 1},
                                                  {6, 0, 0},
                                                  {0, 1, 0},
                                                  {1, 1, 1},
                                                  {7, 1, 0},
                                                  {1, 2, 1},
                                                  {9, 1, 0}}) {
    Line(110).Factor = factor;
    Line(110).StoredAs = stored_as;
    EXPECT_EQ(graphic.GetSampleValue(110, kTop), bit) << factor << " " << stored_as;
  }
}

TEST_F(GraphicTest, ALineBehindTheChannelsReadsTheLastWhateverItsUnit) {
  graphic.AddMeasurement(0x1234, kNoon, 100);
  Line(115).Unit = kCelsius;
  Line(115).Factor = 1;
  Line(115).StoredAs = kStoredMsb;
  EXPECT_EQ(graphic.GetSampleValue(115, kTop), 18.0F);
}

TEST_F(GraphicTest, TheCursorShowsTheLastValueBeforeIt) {
  graphic.AllocateChannel(0);
  for (int i = 0; i < 5; ++i) graphic.AddMeasurement((10 + i) << 8, At(10 * i), 0);
  EXPECT_EQ(graphic.GetCursorValue(0, 0), 14.0F) << "Without a cursor the newest.";
  EXPECT_EQ(graphic.GetCursorValue(0, At(40)), 14.0F);
  EXPECT_EQ(graphic.GetCursorValue(0, At(39)), 13.0F);
  EXPECT_EQ(graphic.GetCursorValue(0, At(0)), 10.0F);
  EXPECT_EQ(graphic.GetCursorValue(0, At(-1)), 0.0F);
}

TEST_F(GraphicTest, OfAFullChannelTheOldestValueIsShownLeftOfIt) {
  graphic.Channels[0].Dimension(3);
  for (int i = 0; i < 9; ++i) graphic.AddMeasurement((10 + i) << 8, At(i), 0);
  EXPECT_EQ(graphic.GetCursorValue(0, At(-1)), 15.0F);
  EXPECT_EQ(graphic.GetCursorValue(0, 0), 18.0F);
}

}  // namespace
}  // namespace tarnlink
