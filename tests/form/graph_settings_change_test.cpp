// The settings of the graph: what each change writes, the colours, what is asked before closing.

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "form/graph_on_line.h"
#include "form/graph_settings_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr Colour kGreen = 0x00C000;
constexpr Colour kBrown = 0x204080;
constexpr const char* kFile = "/home/user/work/file.mss";
constexpr int kMany = 40'000;

class GraphSettingsChanged : public GraphSettingsTest {
 protected:
  GraphSettingsChanged() { OpenSettings(); }

  void OpenAdvanced(int row) {
    Click(row);
    ExpectHarm().Press(Answer::kOk);
    conf.cmdAdvanced.Press();
  }
  // Types each of the texts and compares what the line then has.
  void ExpectTyped(TextBox& box, const std::function<std::string()>& value,
                   const std::vector<std::pair<std::string, std::string>>& cases) {
    for (const auto& [text, expected] : cases) {
      box.Text = text;
      EXPECT_EQ(value(), expected) << box.name() << " \"" << text << "\"";
      EXPECT_EQ(box.Text.get(), text) << "What was typed stays.";
    }
  }
  // The colour that the dialog began with.
  std::string TakeOfferedColour() {
    const std::vector<std::string> shown = world.dialogs().TakeShown();
    EXPECT_EQ(shown.size(), 1U);
    return shown.empty() ? "" : shown.front();
  }
  // A line that is not shown, with more samples than are saved at once.
  void MeasureHidden() {
    Show(0);
    for (int i = 0; i < kMany; ++i) Sample(0, i, i);
    Line(0).ShowLine = false;
  }
  std::string ColoursText() {
    const GraphColors& colours = graph.Data.Colors;
    std::string text;
    for (const Colour each : {colours.CaptionColor, colours.GridColor, colours.CursorColor,
                              colours.GraphColor, colours.BackColor}) {
      text += ColourText(each) + " ";
    }
    return text;
  }
};

// --- Texts and lists -----------------------------------------------------------------------------

TEST_F(GraphSettingsChanged, TextsAreInTheLineAndInTheListAtOnce) {
  Click(1);
  conf.txtAlias.Text = "Flow";
  conf.txtDescription.Text = "behind the pump";
  EXPECT_EQ(Line(1).Alias, "Flow");
  EXPECT_EQ(Line(1).Description, "behind the pump");
  EXPECT_EQ(Line(1).FixedCaption, "Sensor 2");
  EXPECT_EQ(Name(1), "Flow");
  conf.txtAlias.Text = "";
  EXPECT_EQ(Line(1).Alias, "");
  EXPECT_EQ(Name(1), "");
  EXPECT_EQ(Selection(), "row 1: Sensor 2");
}

TEST_F(GraphSettingsChanged, ListsWriteTheRowThatIsPicked) {
  conf.chkLine(2).Value = true;
  OpenAdvanced(2);
  for (int i = 0; i < 5; ++i) {
    conf.cmbDrawStyle.Pick(i);
    EXPECT_EQ(Line(2).LineStyle, i);
    EXPECT_EQ(Row(2), "Sensor 3 FF0000 line: FF0000 style " + std::to_string(i) + " width " +
                          (i == 0 ? "2" : "1"));
  }
  for (int i = 5; i >= 0; --i) {
    conf.cmbUnit.Pick(i);
    EXPECT_EQ(Line(2).Unit, i);
  }
  for (int i = 2; i >= 0; --i) {
    conf.cmbStoredAs.Pick(i);
    EXPECT_EQ(Line(2).StoredAs, i);
  }
  conf.cmbUnit.Pick(-1);
  EXPECT_EQ(Line(2).Unit, 0) << "Nothing was picked.";
}

TEST_F(GraphSettingsChanged, OnlyTheSelectedLineIsWritten) {
  ScrollTo(40);
  const std::vector<GraphAttribute> before = graph.Data.Attributes;
  Click(3);
  conf.txtAlias.Text = "Flow";
  Click(4);
  conf.txtDescription.Text = "words";
  std::vector<GraphAttribute> expected = before;
  expected[43].Alias = "Flow";
  expected[44].Description = "words";
  EXPECT_EQ(graph.Data.Attributes, expected);
}

TEST_F(GraphSettingsChanged, WithoutASelectionNothingIsWritten) {
  const std::vector<GraphAttribute> before = graph.Data.Attributes;
  Click(3);
  Click(-1);
  conf.txtAlias.Text = "Flow";
  conf.txtID.Text = "99";
  conf.cmbUnit.Pick(3);
  conf.chkShowLine.Value = !conf.chkShowLine.Value;
  EXPECT_EQ(graph.Data.Attributes, before);
}

// --- Numbers -------------------------------------------------------------------------------------

TEST_F(GraphSettingsChanged, ABadNumberLeavesTheOldOneInTheLineAndItselfInTheBox) {
  OpenAdvanced(0);
  const std::vector<std::pair<std::string, std::string>> bytes = {
      {"7", "7"},    {"", "7"},    {"x", "7"},     {"256", "7"},    {"-1", "7"},
      {"1e99", "7"}, {"8 9", "7"}, {"255", "255"}, {"255x", "255"}, {"0", "0"}};
  ExpectTyped(
      conf.txtClass, [this] { return std::to_string(Line(0).Class); }, bytes);
  ExpectTyped(
      conf.txtSlaveAddress, [this] { return std::to_string(Line(0).SlaveAddress); }, bytes);
  const std::vector<std::pair<std::string, std::string>> longs = {
      {"256", "256"},        {"", "256"},
      {"abc", "256"},        {"1e99", "256"},
      {"2147483648", "256"}, {"2147483647", "2147483647"},
      {"-1", "-1"},          {"-", "-1"},
      {"-2147483649", "-1"}, {"-2147483648", "-2147483648"}};
  ExpectTyped(
      conf.txtID, [this] { return std::to_string(Line(0).ID); }, longs);
  ExpectTyped(
      conf.txtData, [this] { return std::to_string(Line(0).Data); }, longs);
  EXPECT_EQ(Selection(), "row 0: Sensor 1, advanced");
}

TEST_F(GraphSettingsChanged, AFactorMayHaveAPointOrAComma) {
  for (const char* separator : {".", ","}) {
    SCOPED_TRACE(separator);
    world.locale().SetDecimalSeparator(separator);
    OpenAdvanced(0);
    ExpectTyped(conf.txtFactor, [this] { return FormatSingle(Line(0).Factor); },
                {{"0.25", "0.25"},
                 {"0,5", "0.5"},
                 {"-3", "-3"},
                 {"", "-3"},
                 {"half", "-3"},
                 {"1e99", "-3"},
                 {"1.000,5", "-3"},
                 {",1", "0.1"},
                 {"256", "256"}});
  }
}

TEST_F(GraphSettingsChanged, ABadNumberIsForgottenWithTheSelection) {
  OpenAdvanced(0);
  conf.txtID.Text = "nonsense";
  Click(0);
  EXPECT_EQ(conf.txtID.Text.get(), "241");
  EXPECT_EQ(Selection(), "row 0: Sensor 1");
}

// Two quantities are in one channel then.
TEST_F(GraphSettingsChanged, AnotherIdLeavesTheSamplesOfTheLine) {
  Show(0);
  Sample(0, 1, 10);
  OpenAdvanced(0);
  conf.txtID.Text = "4711";
  EXPECT_EQ(Line(0).ID, 4711);
  Sample(0, 2, 20);
  EXPECT_EQ(Channel(0).Count(), 2);
}

// --- Switching lines on and off ------------------------------------------------------------------

TEST_F(GraphSettingsChanged, SwitchedOnALineHasRoomForSamplesAndIsSeenInTheList) {
  Click(5);
  conf.chkShowLine.Value = true;
  EXPECT_TRUE(Line(5).ShowLine);
  EXPECT_FALSE(Line(5).ShowCaption);
  EXPECT_EQ(Channel(5).UpperBound(), 90'000);
  EXPECT_EQ(Row(5), "Contr setp 000000 line: 000000 style 0 width 2");
  Click(6);
  conf.chkShowCaption.Value = true;
  EXPECT_TRUE(Line(6).ShowCaption);
  EXPECT_FALSE(Line(6).ShowLine);
  EXPECT_EQ(Channel(6).UpperBound(), 90'000);
  EXPECT_EQ(Row(6), "Calc TTB trip 0000FF caption: 0000FF style 0 width 2");
  EXPECT_EQ(Channel(7).UpperBound(), 0);
}

TEST_F(GraphSettingsChanged, SwitchedOffALineKeepsItsSamples) {
  Show(5);
  Sample(5, 1, 10);
  Click(5);
  conf.chkShowLine.Value = false;
  EXPECT_FALSE(Line(5).IsShown());
  EXPECT_EQ(Channel(5).Count(), 1);
  EXPECT_EQ(Row(5), "Contr setp 000000: FFFFFF style 0 width 2");
  conf.chkShowCaption.Value = true;
  EXPECT_EQ(Channel(5).Count(), 1) << "What it has stays.";
}

TEST_F(GraphSettingsChanged, TheBoxesOfARowSwitchItsLineAndSelectIt) {
  ScrollTo(40);
  Click(1);
  conf.chkLine(3).Value = true;
  EXPECT_TRUE(Line(43).ShowLine);
  EXPECT_EQ(Channel(43).UpperBound(), 90'000);
  EXPECT_EQ(Selection(), "row 3: Item 43");
  EXPECT_TRUE(conf.chkShowLine.Value);
  EXPECT_FALSE(conf.chkShowCaption.Value);
  conf.chkCap(4).Value = true;
  EXPECT_TRUE(Line(44).ShowCaption);
  EXPECT_EQ(Channel(44).UpperBound(), 90'000);
  EXPECT_EQ(Selection(), "row 4: Item 44");
  EXPECT_FALSE(conf.chkShowLine.Value);
  EXPECT_TRUE(conf.chkShowCaption.Value);
  conf.chkLine(3).Value = false;
  EXPECT_FALSE(Line(43).ShowLine);
  EXPECT_EQ(Selection(), "row 3: Item 43");
  EXPECT_FALSE(conf.chkShowLine.Value);
  EXPECT_EQ(Row(3), "Item 43 00FF00: FFFFFF style 0 width 2");
}

TEST_F(GraphSettingsChanged, ABoxOfARowHidesTheAdvancedFields) {
  OpenAdvanced(3);
  conf.chkLine(3).Value = true;
  EXPECT_EQ(Selection(), "row 3: Sensor 4");
}

TEST_F(GraphSettingsChanged, AStatusLineIsShownNamedAndColouredAndItsChannelStays) {
  Sample(100, 1, 3);
  ScrollTo(91);
  conf.chkLine(24).Value = true;
  conf.txtAlias.Text = "Frost";
  world.dialogs().ExpectColour().GiveColour(kGreen);
  conf.cmdLineColor.Press();
  EXPECT_EQ(Row(24), "Frost 00C000 line: 00C000 style 0 width 2");
  EXPECT_TRUE(Line(115).ShowLine);
  EXPECT_EQ(Channel(100).Count(), 1);
  EXPECT_EQ(graph.Data.LastChannel(), 100);
}

// --- Advanced ------------------------------------------------------------------------------------

TEST_F(GraphSettingsChanged, TheAdvancedFieldsAreSeenOnlyWhenTheUserInsists) {
  Click(0);
  EXPECT_FALSE(AdvancedSetIsSeen());
  ExpectHarm().Press(Answer::kCancel);
  conf.cmdAdvanced.Press();
  EXPECT_EQ(Selection(), "row 0: Sensor 1");
  ExpectHarm().Press(Answer::kOk);
  conf.cmdAdvanced.Press();
  EXPECT_EQ(Selection(), "row 0: Sensor 1, advanced");
}

TEST_F(GraphSettingsChanged, AClickOnTheNameAboveAsksForThemToo) {
  Click(0);
  ExpectHarm();
  conf.lblFixedCapClick();
  EXPECT_FALSE(AdvancedSetIsSeen());
  ExpectHarm().Press(Answer::kOk);
  conf.lblFixedCapClick();
  EXPECT_TRUE(AdvancedSetIsSeen());
}

TEST_F(GraphSettingsChanged, TheNextSelectionHidesThem) {
  for (const int row : {0, 1, -1}) {
    OpenAdvanced(0);
    Click(row);
    EXPECT_FALSE(AdvancedSetIsSeen()) << row;
  }
  OpenAdvanced(0);
  ScrollTo(1);
  EXPECT_EQ(Selection(), kNoneSelected);
  OpenAdvanced(0);
  conf.optView.Choose(1);
  EXPECT_EQ(Selection(), kNoneSelected);
}

TEST_F(GraphSettingsChanged, WithoutASelectionAdvancedDoesNothing) {
  conf.cmdAdvanced.Press();
  conf.lblFixedCapClick();
  EXPECT_EQ(Selection(), kNoneSelected);
}

TEST_F(GraphSettingsChanged, StatusLinesHaveNoAdvancedFields) {
  ScrollTo(91);
  for (const int row : {9, 24}) {
    Click(row);
    conf.cmdAdvanced.Press();
    conf.lblFixedCapClick();
    EXPECT_EQ(Selection(), "row " + std::to_string(row) + ": " + Line(91 + row).FixedCaption);
  }
  OpenAdvanced(8);
  EXPECT_EQ(Selection(), "row 8: Item 99, advanced");
}

// --- Colours -------------------------------------------------------------------------------------

TEST_F(GraphSettingsChanged, AClickOnASampleGivesItsLineAnotherColour) {
  ScrollTo(40);
  Line(43).ShowLine = true;
  Line(43).LineColor = kBrown;
  world.dialogs().ExpectColour().GiveColour(kGreen);
  conf.lblLine(3).Click();
  EXPECT_EQ(TakeOfferedColour(), "colour 204080");
  EXPECT_EQ(Line(43).LineColor, kGreen);
  EXPECT_EQ(Row(3), "Item 43 00C000 line: 00C000 style 0 width 2");
  EXPECT_EQ(Selection(), "row 3: Item 43");
}

TEST_F(GraphSettingsChanged, ColorDoesTheSameForTheSelectedLine) {
  Click(4);
  world.dialogs().ExpectColour().GiveColour(kGreen);
  conf.cmdLineColor.Press();
  EXPECT_EQ(TakeOfferedColour(), "colour FFFF00");
  EXPECT_EQ(Line(4).LineColor, kGreen);
  EXPECT_EQ(conf.lblCap(4).ForeColor, kGreen);
  EXPECT_EQ(Selection(), "row 4: Sensor 5");
}

TEST_F(GraphSettingsChanged, TheButtonsShowWhichColoursTheyChange) {
  graph.Data.Colors = {
      .GridColor = 2, .GraphColor = 4, .BackColor = 5, .CursorColor = 3, .CaptionColor = 1};
  Click(4);
  EXPECT_EQ(conf.cmdLineColor.Color.get(), 0xFFFF00);
  Click(5);
  EXPECT_EQ(conf.cmdLineColor.Color.get(), 0);
  world.dialogs().ExpectColour().GiveColour(kGreen);
  conf.cmdLineColor.Press();
  EXPECT_EQ(conf.cmdLineColor.Color.get(), kGreen);
  world.dialogs().ExpectColour().GiveColour(kBrown);
  conf.cmdColor(0).Press();
  EXPECT_EQ(conf.cmdColor(0).Color.get(), kBrown);
  for (int i = 1; i < 5; ++i) EXPECT_EQ(conf.cmdColor(i).Color.get(), i + 1) << i;
  EXPECT_EQ(conf.cmdColor(5).Color.get(), std::nullopt);
}

TEST_F(GraphSettingsChanged, ACancelledChoiceLeavesEveryColour) {
  Click(4);
  const std::vector<GraphAttribute> lines = graph.Data.Attributes;
  const std::string colours = ColoursText();
  for (int i = 0; i < 7; ++i) world.dialogs().ExpectColour().Cancel();
  conf.lblLine(4).Click();
  conf.cmdLineColor.Press();
  for (int i = 0; i < 5; ++i) conf.cmdColor(i).Press();
  EXPECT_EQ(graph.Data.Attributes, lines);
  EXPECT_EQ(ColoursText(), colours);
}

TEST_F(GraphSettingsChanged, EachButtonSetsItsColourOfTheGraph) {
  graph.Data.Colors = {
      .GridColor = 2, .GraphColor = 4, .BackColor = 5, .CursorColor = 3, .CaptionColor = 1};
  for (int i = 0; i < 5; ++i) {
    drawn = 0;
    world.dialogs().ExpectColour().GiveColour(0x10 + i);
    conf.cmdColor(i).Press();
    EXPECT_EQ(TakeOfferedColour(), "colour " + ColourText(i + 1)) << i;
    EXPECT_EQ(drawn, 1) << i;
  }
  EXPECT_EQ(ColoursText(), "000010 000011 000012 000013 000014 ");
}

TEST_F(GraphSettingsChanged, TheColoursOfTheGraphAreSeenAtOnce) {
  for (int i = 0; i < 5; ++i) {
    world.dialogs().ExpectColour().GiveColour(0x10 + i);
    conf.cmdColor(i).Press();
  }
  EXPECT_EQ(graph.lblYL(1).ForeColor, 0x10);
  EXPECT_EQ(graph.GraphPan.BackColor, 0x13);
  EXPECT_EQ(graph.lblYL(1).BackColor, 0x14);
  EXPECT_EQ(graph.form.BackColor, 0x14);
  EXPECT_EQ(conf.Picture1.BackColor, 0x13);
  EXPECT_EQ(Row(0), "Sensor 1 0000FF: 000013 style 0 width 2");
}

TEST_F(GraphSettingsChanged, DefaultColorsBringsBackThoseOfTheBeginning) {
  graph.Data.Colors = {1, 2, 3, 4, 5};
  Line(0).LineColor = kGreen;
  drawn = 0;
  conf.cmdColor(5).Press();
  EXPECT_EQ(ColoursText(), "000000 000000 0000FF FFFFFF FFFFFF ");
  EXPECT_EQ(drawn, 1);
  EXPECT_EQ(conf.Picture1.BackColor, kWhite);
  EXPECT_EQ(graph.form.BackColor, kWhite);
  EXPECT_EQ(Line(0).LineColor, kGreen);
}

// --- Closing -------------------------------------------------------------------------------------

TEST_F(GraphSettingsChanged, ClosingAsksNothingWhileAllThatHasRoomIsShown) {
  Sample(100, 1, 3);
  conf.chkLine(0).Value = true;
  conf.chkCap(1).Value = true;
  Sample(0, 1, 10);
  conf.Close();
  EXPECT_FALSE(conf.form.Visible);
  EXPECT_EQ(Channel(0).Count(), 1);
  EXPECT_EQ(Channel(100).Count(), 1);
}

TEST_F(GraphSettingsChanged, YesThrowsAwayTheSamplesOfAllLinesThatAreNotShown) {
  for (const int line : {0, 1, 99}) {
    Show(line);
    Sample(line, 1, 10);
  }
  Sample(100, 1, 3);
  Line(1).ShowLine = Line(99).ShowLine = false;
  ExpectClear().Press(Answer::kYes);
  conf.Close();
  EXPECT_EQ(Channel(0).Count(), 1);
  for (const int line : {1, 99}) {
    EXPECT_EQ(Channel(line).UpperBound(), 0);
    EXPECT_EQ(Channel(line).Count(), 0);
  }
  EXPECT_EQ(Channel(100).Count(), 1);
}

TEST_F(GraphSettingsChanged, RoomWithoutASampleIsAskedAboutToo) {
  conf.chkLine(7).Value = true;
  conf.chkLine(7).Value = false;
  ExpectClear().Press(Answer::kYes);
  conf.Close();
  EXPECT_EQ(Channel(7).UpperBound(), 0);
}

TEST_F(GraphSettingsChanged, NoKeepsThemAndShownAgainTheLineHasItsOldSamples) {
  conf.chkLine(0).Value = true;
  Sample(0, -60, 10);
  Sample(0, -30, 20);
  conf.chkLine(0).Value = false;
  ExpectClear().Press(Answer::kNo);
  conf.Close();
  EXPECT_FALSE(conf.form.Visible);
  EXPECT_EQ(Channel(0).Count(), 2);
  OpenSettings();
  conf.chkLine(0).Value = true;
  EXPECT_EQ(Channel(0).Count(), 2);
  RecordingSurface surface(graph.GraphPan.ScaleWidth, graph.GraphPan.ScaleHeight);
  all.display.Paint(surface);
  EXPECT_EQ(surface.Only("polyline").size(), 1U) << "They are drawn.";
}

TEST_F(GraphSettingsChanged, AQuestionWithoutAnAnswerLeavesThemOpen) {
  conf.chkLine(0).Value = true;
  Sample(0, 1, 10);
  conf.chkLine(0).Value = false;
  drawn = 0;
  ExpectClear();
  conf.Close();
  EXPECT_TRUE(conf.form.Visible);
  EXPECT_EQ(Channel(0).Count(), 1);
  EXPECT_EQ(drawn, 0);
}

// Those samples are still wanted.
TEST_F(GraphSettingsChanged, WhileAFileIsUnderWayNothingIsAskedAndNothingLost) {
  MeasureHidden();
  all.files.SaveMeasureFile(kFile, true, false);
  ASSERT_TRUE(all.files.IsBusy());
  conf.Close();
  EXPECT_FALSE(conf.form.Visible);
  EXPECT_EQ(Channel(0).Count(), kMany);
}

TEST_F(GraphSettingsChanged, AFileThatBeginsBehindTheQuestionIsWhole) {
  MeasureHidden();
  const std::string whole = FileText(graph.Data);
  ExpectClear().Press(Answer::kYes).While([this] {
    all.files.SaveMeasureFile(kFile, true, false);
  });
  conf.Close();
  ASSERT_TRUE(world.RunUntil([this] { return !all.files.IsBusy(); }, 60s));
  EXPECT_TRUE(world.disk().Get(kFile) == whole);
}

TEST_F(GraphSettingsChanged, WhatIsShownByTheTimeOfTheAnswerStays) {
  Show(0);
  Sample(0, 1, 10);
  Line(0).ShowLine = false;
  ExpectClear().Press(Answer::kYes).While([this] { Line(0).ShowLine = true; });
  conf.Close();
  EXPECT_EQ(Channel(0).Count(), 1);
}

TEST_F(GraphSettingsChanged, ATableThatBecomesShorterBehindTheQuestionIsNotLeft) {
  Show(99);
  Line(99).ShowLine = false;
  ExpectClear().Press(Answer::kYes).While([this] { LoadLines(17); });
  conf.Close();
  EXPECT_EQ(graph.Data.LastChannel(), 1);
  EXPECT_EQ(Channel(1).UpperBound(), 90'000);
}

// --- Polling -------------------------------------------------------------------------------------

TEST(GraphSettingsOnLine, ALineIsPolledFromTheNextCycleOnUntilItIsSwitchedOff) {
  GraphOnLine one({.pace = {.baud = 9600}, .answer_delay_us = 20'000});
  GraphDisplay display(one.graph, one.menu);
  frmGraphConf conf(one.graph, display);
  one.Start();
  one.Advance(3s);
  conf.Show();
  EXPECT_EQ(one.Channel(0).Count(), 0);
  conf.chkLine(0).Value = true;
  // The lanes were the only line: a request and an answer of each.
  EXPECT_TRUE(one.world.RunUntil([&] { return one.Channel(0).Count() > 0; }, 200ms));
  one.Advance(3s);
  const int held = one.Channel(0).Count();
  EXPECT_GE(held, 3);
  conf.chkLine(0).Value = false;
  one.Advance(5s);
  EXPECT_LE(one.Channel(0).Count(), held + 1) << "The request that was out.";
  EXPECT_EQ(one.record.Difference(), "");
}

TEST(GraphSettingsOnLine, PollingGoesOnBehindTheQuestions) {
  GraphOnLine one({.pace = {.baud = 9600}, .answer_delay_us = 20'000});
  GraphDisplay display(one.graph, one.menu);
  frmGraphConf conf(one.graph, display);
  one.Show(0);
  one.Start();
  conf.Show();
  conf.lblCapClick(0);
  one.world.dialogs()
      .ExpectMessageBox("Altering this data could harm your measurement.", "Edit")
      .For(5s);
  conf.cmdAdvanced.Press();
  EXPECT_GE(one.Channel(0).Count(), 5);
}

}  // namespace
}  // namespace tarnlink
