// The caption rows of the graph: their values, and that the rows of many lanes cover no others.

#include "graph/graph_captions.h"

#include <string>
#include <utility>
#include <vector>

#include "form/open_graph.h"

namespace tarnlink {
namespace {

constexpr int kLanesShown = 16;

class GraphCaptionsTest : public OpenGraph {
 protected:
  GraphCaptionsTest() { Open(); }

  struct Row {
    int unit;
    float top;  // as it is seen
    float bottom;
  };
  // The rows that are shown, of the lines in their order.
  std::vector<Row> Rows() {
    std::vector<Row> rows;
    for (const GraphAttribute& line : graph.Data.Attributes) {
      if (!line.ShowCaption) continue;
      const std::size_t row = rows.size();
      const Label& label = graph.lblVal(static_cast<int>(row) * kLabelsOfRow);
      EXPECT_TRUE(label.Visible);
      const float top = label.Top + graph.CaptionDrop.at(row);
      rows.push_back({line.Unit, top, top + label.Height});
    }
    return rows;
  }
  void ShowLanes(int count) {
    for (int i = 0; i < count; ++i) Line(100 + i).ShowCaption = true;
  }
  std::string Value(int row) { return graph.lblVal(row * kLabelsOfRow + 2).Caption; }
};

TEST_F(GraphCaptionsTest, TheRowsOfAllLanesCoverNoneBelowThem) {
  for (const int index : {0, 10, 11, 12, 15, 17}) Line(index).ShowCaption = true;
  ShowLanes(kLanesShown);
  for (const float form_height : {5001.0F, 7500.0F, 9000.0F, 11'400.0F, 20'000.0F, 40'000.0F}) {
    for (const float label_height : {180.0F, 195.0F, 255.0F}) {
      SCOPED_TRACE(form_height);
      for (int k = 0; k <= kCaptionLabels; ++k) graph.lblVal(k).Height = label_height;
      graph.ScaleHeight = form_height;
      all.display.Form_Resize();
      const std::vector<Row> rows = Rows();
      for (const Row& lane : rows) {
        if (lane.unit != kOnOff) continue;
        for (const Row& other : rows) {
          const bool is_lower = other.unit == kRpm || other.unit == kPercent || other.unit == 0;
          if (!is_lower) continue;
          EXPECT_GE(other.top, lane.bottom);
        }
      }
    }
  }
}

TEST_F(GraphCaptionsTest, OnlyTheRowsBelowTheLanesAreSeenLowerAndNoMoreThanNeeded) {
  for (const int index : {0, 11, 15, 17}) Line(index).ShowCaption = true;
  ShowLanes(6);
  all.display.DrawAgain();
  for (int row = 0; row < 10; ++row) EXPECT_EQ(graph.CaptionDrop.at(row), 0) << row;
  // The seventh lane ends at 3753 + 7 * 195, the rows below begin at 5054.
  ShowLanes(7);
  all.display.DrawAgain();
  const std::vector<float> drops(graph.CaptionDrop.begin(), graph.CaptionDrop.begin() + 11);
  EXPECT_EQ(drops, (std::vector<float>{0, 64, 64, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(graph.lblVal(4).Top, 5054) << "Its place stays.";
  for (int i = 100; i <= kLastAttribute; ++i) Line(i).ShowCaption = false;
  all.display.DrawAgain();
  EXPECT_EQ(graph.CaptionDrop.at(1), 0);
}

TEST_F(GraphCaptionsTest, ARowThatMovesUpLeavesNothingOfTheOneBefore) {
  Line(0).ShowCaption = Line(1).ShowCaption = true;
  Line(0).Description = "in front of the pump";
  all.display.DrawAgain();
  Line(0).ShowCaption = false;
  Line(1).Alias = "Return";
  all.display.DrawAgain();
  EXPECT_EQ(graph.lblVal(0).Caption.get(), "Return");
  EXPECT_EQ(graph.lblVal(0).ToolTipText.get(), "");
  EXPECT_EQ(graph.lblVal(0).ForeColor, Line(1).LineColor);
  EXPECT_FALSE(graph.lblVal(4).Visible);
}

TEST_F(GraphCaptionsTest, ValuesHaveTheDecimalSeparatorOfTheLocale) {
  Line(17).ShowCaption = true;
  Show(17);
  Sample(17, 0, 12 << 8);
  all.display.DrawAgain();
  EXPECT_EQ(Value(0), "1.2");
  world.locale().SetDecimalSeparator(",");
  all.display.DrawAgain();
  EXPECT_EQ(Value(0), "1,2");
}

TEST_F(GraphCaptionsTest, ALaneShowsOneOrZero) {
  ShowLanes(2);
  Sample(100, 0, 0x0200);
  all.display.DrawAgain();
  EXPECT_EQ(Value(0), "0");
  EXPECT_EQ(Value(1), "1");
}

TEST(CaptionValue, KeepsSevenDigitsAndThenAnExponent) {
  for (const auto& [value, text] :
       std::vector<std::pair<float, std::string>>{{9'999'999, "9999999"},
                                                  {1e7F, "1E+07"},
                                                  {12'345'678, "1.234568E+07"},
                                                  {-1e9F, "-1E+09"},
                                                  {0.0001F, "0.0001"},
                                                  {0.00001F, "1E-05"},
                                                  {6553.5F, "6553.5"},
                                                  {65'535 * 0.1F, "6553.5"},
                                                  {2.0F / 3, "0.6666667"},
                                                  {100, "100"}}) {
    EXPECT_EQ(CaptionValue(value, "."), text);
  }
  EXPECT_EQ(CaptionValue(12'345'678, ","), "1,234568E+07");
}

TEST(UnitText, IsThatOfTheFourUnits) {
  std::string text;
  for (const int unit : {-1, 0, 1, 2, 3, 4, 5, 6}) text += "[" + UnitText(unit) + "]";
  EXPECT_EQ(text,
            "[][][\xC2\xB0"
            "C][rpm][bar][%][][]");
}

// A longer one is cut there, so that it covers no value.
TEST_F(GraphCaptionsTest, ANameReachesToItsColon) {
  Line(0).ShowCaption = true;
  all.display.DrawAgain();
  EXPECT_EQ(graph.lblVal(0).Left + graph.lblVal(0).Width, graph.lblVal(1).Left);
}

}  // namespace
}  // namespace tarnlink
