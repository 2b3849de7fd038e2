// The caption value of a line that has gone without an answer for three cycles is grey.

#include "form/graph_acquisition_fixture.h"
#include "graph/graph_captions.h"

namespace tarnlink {
namespace {

constexpr Colour kGrey = 0x808080;
constexpr Colour kRed = 0x0000FF;
constexpr int kValuePart = 2;
constexpr int kLane = 100;  // the first one

class GraphOldValues : public GraphAcquisitionTest {
 protected:
  // Line 0 and a lane, which have captions, are asked in turn.
  void Begin() {
    Show(0);
    Line(0).ShowCaption = Line(kLane).ShowCaption = true;
    Line(0).LineColor = Line(kLane).LineColor = kRed;
    acquisition.InitCom();
  }
  // A whole cycle in which the lanes are answered, and line 0 with `kind`.
  void Cycle(std::uint8_t kind) {
    Answer(kind, Line(0).ID, 1, 2);
    Answer(kReadAcknowledge, kLanesId, 0, 0);
  }
  void Cycles(int count, std::uint8_t kind) {
    for (int i = 0; i < count; ++i) Cycle(kind);
  }
  Colour ColourOf(int row, int part = kValuePart) {
    ShowCaptions(graph);
    return graph.lblVal(row * kLabelsOfRow + part).ForeColor;
  }
};

TEST_F(GraphOldValues, AnAnsweredLineKeepsItsColour) {
  Begin();
  Cycles(10, kReadAcknowledge);
  EXPECT_EQ(ColourOf(0), kRed);
  EXPECT_EQ(ColourOf(1), kRed);
}

TEST_F(GraphOldValues, AfterThreeCyclesWithoutAValueItIsGreyAndNothingElseIs) {
  Begin();
  Cycles(2, kReadAcknowledge);
  Cycles(2, kUnknownId);
  EXPECT_EQ(ColourOf(0), kRed);
  const std::string value = graph.lblVal(kValuePart).Caption;
  Cycle(kUnknownId);
  EXPECT_EQ(ColourOf(0), kGrey);
  EXPECT_EQ(graph.lblVal(kValuePart).Caption.get(), value);
  for (const int part : {0, 1, 3}) EXPECT_EQ(ColourOf(0, part), kRed) << part;
  EXPECT_EQ(ColourOf(1), kRed) << "The lanes were answered.";
}

TEST_F(GraphOldValues, ItsNextAnswerBringsTheColourBack) {
  Begin();
  Cycles(8, kUnknownId);
  EXPECT_EQ(ColourOf(0), kGrey);
  Answer(kReadAcknowledge, Line(0).ID, 1, 2);
  EXPECT_EQ(ColourOf(0), kRed);
}

// A silent line is asked again and again, and its port is tried anew.
TEST_F(GraphOldValues, SilenceCountsAsWell) {
  Begin();
  Cycles(2, kReadAcknowledge);
  world.Advance(std::chrono::seconds(60));
  EXPECT_EQ(ColourOf(0), kGrey);
  EXPECT_EQ(ColourOf(1), kGrey);
}

// What the cursor shows is of its moment, and was true then.
TEST_F(GraphOldValues, UnderTheCursorNoValueIsOld) {
  Begin();
  Cycles(8, kUnknownId);
  graph.CursorTime = graph.Now();
  EXPECT_EQ(ColourOf(0), kRed);
}

TEST_F(GraphOldValues, BeforeTheFirstRequestNoneIsOld) {
  Show(0);
  Line(0).ShowCaption = true;
  Line(0).LineColor = kRed;
  EXPECT_EQ(ColourOf(0), kRed);
}

}  // namespace
}  // namespace tarnlink
