// The settings of the graph: how they open, what their list shows, what a selection does.

#include <string>
#include <tuple>
#include <vector>

#include "form/graph_settings_fixture.h"

namespace tarnlink {
namespace {

constexpr Colour kGreen = 0x00C000;

std::string Texts(const PickBox& box) {
  std::string text;
  for (const ComboBox::Item& item : box.List.get()) text += item.text + "|";
  return text;
}

// --- Captions ------------------------------------------------------------------------------------

TEST_F(GraphSettingsTest, EachControlHasItsCaption) {
  EXPECT_EQ(conf.caption.Caption.get(), "Graphic Settings");
  for (int row = 0; row < frmGraphConf::kRows; ++row) {
    EXPECT_EQ(conf.chkLine(row).Caption.get(), "Show line");
    EXPECT_EQ(conf.chkCap(row).Caption.get(), "Show caption");
  }
  EXPECT_EQ(conf.lblCap.last(), 24);
  EXPECT_EQ(conf.lblLine.last(), 24);
  EXPECT_EQ(conf.chkLine.last(), 24);
  EXPECT_EQ(conf.chkCap.last(), 24);
  EXPECT_EQ(conf.Frame1.Caption.get(), "View");
  EXPECT_EQ(conf.optView.count(), 2);
  EXPECT_EQ(conf.optView(0).Caption.get(), "View alias");
  EXPECT_EQ(conf.optView(1).Caption.get(), "View fixed");
  EXPECT_EQ(conf.chkShowLine.Caption.get(), "Show line");
  EXPECT_EQ(conf.chkShowCaption.Caption.get(), "Show caption");
  EXPECT_EQ(conf.cmdLineColor.Caption.get(), "Color");
  EXPECT_EQ(conf.cmdAdvanced.Caption.get(), "Advanced");
}

TEST_F(GraphSettingsTest, EachAdvancedFieldHasItsLabel) {
  std::string labels;
  for (int i = 0; i <= conf.lblAdvanced.last(); ++i) {
    labels += conf.lblAdvanced(i).Caption.get() + "|";
  }
  EXPECT_EQ(labels, "ID :|SA :|Class :|Data :|Factor :|Stored as :|Unit :|");
  EXPECT_EQ(conf.txtSlaveAddress.ToolTipText.get(), "Slave Address");
  EXPECT_EQ(conf.txtFactor.ToolTipText.get(), "when unit=onf off bit number");
}

TEST_F(GraphSettingsTest, TheListsToPickFromAreThoseOfTheFiles) {
  EXPECT_EQ(Texts(conf.cmbDrawStyle), "Solid|Dash|Dot|Dash Dot|Dash Dot Dot|");
  EXPECT_EQ(Texts(conf.cmbUnit), "No|Celcius|rpm|bar|%|on off|");
  EXPECT_EQ(Texts(conf.cmbStoredAs), "Msb|Lsb|Both|");
}

TEST_F(GraphSettingsTest, TheButtonsOfTheColoursSayWhichTheyAre) {
  std::string captions;
  for (int i = 0; i <= conf.cmdColor.last(); ++i) captions += conf.cmdColor(i).Caption.get() + "|";
  EXPECT_EQ(captions,
            "Caption color|Grid color|Cursor color|Graph color|Back color|Default colors|");
}

// --- Opening and closing -------------------------------------------------------------------------

TEST_F(GraphSettingsTest, OpenWithTheFirstLinesAndNoneOfThemSelected) {
  EXPECT_FALSE(conf.form.Visible);
  OpenSettings();
  EXPECT_TRUE(conf.form.Visible);
  EXPECT_EQ(Selection(), kNoneSelected);
  EXPECT_EQ(conf.VScroll1.Max, 91);
  EXPECT_EQ(conf.VScroll1.Value, 0);
  EXPECT_EQ(conf.optView.Selected(), 0);
  EXPECT_EQ(RowsSeen(), 25);
  EXPECT_EQ(Name(0), "Sensor 1");
  EXPECT_EQ(Name(24), "Item 24");
}

TEST_F(GraphSettingsTest, OpenByALeftClickOnTheCaptionsToo) {
  all.display.PanelMouseDown(0, MouseButton::kRight);
  all.display.PanelMouseDown(1, MouseButton::kLeft);
  EXPECT_FALSE(conf.form.Visible);
  all.display.PanelMouseDown(0, MouseButton::kLeft);
  EXPECT_TRUE(conf.form.Visible);
}

TEST_F(GraphSettingsTest, OpenAgainAsTheFirstTimeWithWhatHasChangedMeanwhile) {
  OpenSettings();
  conf.optView.Choose(1);
  ScrollTo(50);
  Click(3);
  conf.Close();
  Line(0).Alias = "Flow";
  OpenSettings();
  EXPECT_EQ(Selection(), kNoneSelected);
  EXPECT_EQ(conf.VScroll1.Value, 0);
  EXPECT_EQ(conf.optView.Selected(), 0);
  EXPECT_EQ(Name(0), "Flow");
}

TEST_F(GraphSettingsTest, ClosedTheyHaveTheGraphDrawn) {
  OpenSettings();
  drawn = 0;
  conf.Close();
  EXPECT_FALSE(conf.form.Visible);
  EXPECT_EQ(drawn, 1);
  conf.Close();
  EXPECT_EQ(drawn, 1) << "They are closed already.";
}

// --- The list ------------------------------------------------------------------------------------

TEST_F(GraphSettingsTest, ShowTwentyFiveLinesFromWhereTheBarStands) {
  OpenSettings();
  for (const int line : {1, 40, 91, 0}) {
    ScrollTo(line);
    for (int row = 0; row < frmGraphConf::kRows; ++row) {
      EXPECT_EQ(Name(row), Line(line + row).Alias) << line << " + " << row;
    }
  }
}

TEST_F(GraphSettingsTest, ShowTheAliasOrTheFixedCaption) {
  Line(0).Alias = "Flow";
  Line(91).Alias = "Return";
  OpenSettings();
  EXPECT_EQ(Name(0), "Flow");
  conf.optView.Choose(1);
  EXPECT_EQ(Name(0), "Sensor 1");
  ScrollTo(91);
  EXPECT_EQ(Name(0), "Item 91");
  conf.optView.Choose(0);
  EXPECT_EQ(Name(0), "Return");
}

TEST_F(GraphSettingsTest, ShowALineThatIsOffInTheColourOfItsBackground) {
  graph.Data.Colors.GraphColor = 0xC0FFEE;
  for (const int line : {0, 1, 2, 3}) Line(line).LineColor = kGreen;
  Line(1).ShowLine = true;
  Line(2).ShowCaption = true;
  Line(3).ShowLine = Line(3).ShowCaption = true;
  OpenSettings();
  EXPECT_EQ(Row(0), "Sensor 1 00C000: C0FFEE style 0 width 2");
  EXPECT_EQ(Row(1), "Sensor 2 00C000 line: 00C000 style 0 width 2");
  EXPECT_EQ(Row(2), "Sensor 3 00C000 caption: 00C000 style 0 width 2");
  EXPECT_EQ(Row(3), "Sensor 4 00C000 line caption: 00C000 style 0 width 2");
  EXPECT_EQ(conf.Picture1.BackColor, 0xC0FFEE);
  for (int row = 0; row < frmGraphConf::kRows; ++row) {
    EXPECT_EQ(conf.lblLine(row).BackColor, 0xC0FFEE) << row;
  }
}

// What another line left in a row goes when the list is scrolled.
TEST_F(GraphSettingsTest, ClearARowThatShowsAnotherLine) {
  Line(0).ShowLine = Line(0).ShowCaption = true;
  OpenSettings();
  EXPECT_EQ(Row(0), "Sensor 1 0000FF line caption: 0000FF style 0 width 2");
  ScrollTo(1);
  EXPECT_EQ(Row(0), "Sensor 2 00FF00: FFFFFF style 0 width 2");
  EXPECT_TRUE(Line(0).ShowLine);
  EXPECT_FALSE(Line(1).IsShown());
}

TEST_F(GraphSettingsTest, DrawEachStyleAsTheGraphDoes) {
  for (const auto& [style, pen] :
       std::vector<std::pair<int, std::string>>{{0, "style 0 width 2"},
                                                {1, "style 1 width 1"},
                                                {2, "style 2 width 1"},
                                                {3, "style 3 width 1"},
                                                {4, "style 4 width 1"},
                                                {5, "style 0 width 2"},
                                                {-1, "style 0 width 2"}}) {
    Line(0).LineStyle = static_cast<std::int16_t>(style);
    OpenSettings();
    EXPECT_EQ(Row(0), "Sensor 1 0000FF: FFFFFF " + pen) << style;
    conf.Close();
  }
}

// --- Which line a row shows ----------------------------------------------------------------------

TEST_F(GraphSettingsTest, BehindTheLastLineEachRowMeansTheFirstOfTheLastPage) {
  OpenSettings();
  for (const int row : {0, 1, 24}) {
    ScrollTo(90);
    EXPECT_EQ(conf.GetAttributeIndex(row), 90 + row);
    ScrollTo(91);
    EXPECT_EQ(conf.GetAttributeIndex(row), 91 + row);
    ScrollTo(92);
    EXPECT_EQ(conf.GetAttributeIndex(row), 91);
    ScrollTo(115);
    EXPECT_EQ(conf.GetAttributeIndex(row), 91);
  }
}

TEST_F(GraphSettingsTest, TheSameCountsForTheChannels) {
  OpenSettings();
  for (const int row : {0, 1, 24}) {
    ScrollTo(0);
    EXPECT_EQ(conf.GetLineIndex(row), row);
    ScrollTo(76);
    EXPECT_EQ(conf.GetLineIndex(row), 76 + row);
    ScrollTo(77);
    EXPECT_EQ(conf.GetLineIndex(row), 76);
    ScrollTo(91);
    EXPECT_EQ(conf.GetLineIndex(row), 76);
  }
}

// --- Selecting -----------------------------------------------------------------------------------

TEST_F(GraphSettingsTest, AClickSelectsARowAndShowsItsDetails) {
  GraphAttribute& line = Line(43);
  line = {.Class = 5,
          .ID = -7,
          .Data = 513,
          .SlaveAddress = 12,
          .FixedCaption = "fixed",
          .ShowLine = false,
          .ShowCaption = true,
          .Alias = "alias",
          .Description = "some words",
          .LineStyle = 3,
          .Unit = kBar,
          .Factor = 0.1F,
          .StoredAs = kStoredBoth};
  const GraphAttribute before = line;
  OpenSettings();
  ScrollTo(40);
  Click(3);
  EXPECT_EQ(Selection(), "row 3: fixed");
  EXPECT_EQ(conf.txtAlias.Text.get(), "alias");
  EXPECT_EQ(conf.txtDescription.Text.get(), "some words");
  EXPECT_EQ(conf.cmbDrawStyle.Text.get(), "Dash Dot");
  EXPECT_FALSE(conf.chkShowLine.Value);
  EXPECT_TRUE(conf.chkShowCaption.Value);
  EXPECT_EQ(conf.txtID.Text.get(), "-7");
  EXPECT_EQ(conf.txtSlaveAddress.Text.get(), "12");
  EXPECT_EQ(conf.txtClass.Text.get(), "5");
  EXPECT_EQ(conf.txtData.Text.get(), "513");
  EXPECT_EQ(conf.txtFactor.Text.get(), "0.1");
  EXPECT_EQ(conf.cmbStoredAs.Text.get(), "Both");
  EXPECT_EQ(conf.cmbUnit.Text.get(), "bar");
  EXPECT_EQ(Line(43), before) << "Showing a line does not change it.";
  EXPECT_EQ(Channel(43).UpperBound(), 0);
}

TEST_F(GraphSettingsTest, TheNextClickSelectsAnotherRow) {
  OpenSettings();
  Click(0);
  Click(24);
  EXPECT_EQ(Selection(), "row 24: Item 24");
  EXPECT_EQ(conf.txtAlias.Text.get(), "Item 24");
  EXPECT_EQ(Line(0).Alias, "Sensor 1");
}

TEST_F(GraphSettingsTest, RowMinusOneSelectsNothing) {
  OpenSettings();
  Click(2);
  Click(-1);
  EXPECT_EQ(Selection(), kNoneSelected);
}

TEST_F(GraphSettingsTest, TheFactorHasTheSystemsDecimalSeparator) {
  Line(0).Factor = -0.05F;
  world.locale().SetDecimalSeparator(",");
  OpenSettings();
  Click(0);
  EXPECT_EQ(conf.txtFactor.Text.get(), "-0,05");
  EXPECT_EQ(Line(0).Factor, -0.05F);
}

TEST_F(GraphSettingsTest, NumbersThatAreInNoListPickNothing) {
  Line(1).LineStyle = 9;
  Line(1).Unit = 77;
  Line(1).StoredAs = -1;
  OpenSettings();
  Click(0);
  EXPECT_EQ(conf.cmbUnit.ListIndex, kCelsius);
  Click(1);
  for (const PickBox* box : {&conf.cmbDrawStyle, &conf.cmbUnit, &conf.cmbStoredAs}) {
    EXPECT_EQ(box->ListIndex, -1) << box->name();
    EXPECT_EQ(box->Text.get(), "") << box->name();
  }
  EXPECT_EQ(Line(1).Unit, 77);
}

TEST_F(GraphSettingsTest, ASelectionDoesNotSurviveScrollingOrAnotherView) {
  OpenSettings();
  Click(3);
  ScrollTo(1);
  EXPECT_EQ(Selection(), kNoneSelected);
  for (const int view : {1, 1, 0}) {
    Click(3);
    EXPECT_EQ(Selection(), "row 3: Sensor 5");
    conf.optView.Choose(view);
    EXPECT_EQ(Selection(), kNoneSelected) << view;
  }
}

// --- Other tables --------------------------------------------------------------------------------

TEST_F(GraphSettingsTest, AShortTableFillsTheFirstRows) {
  LoadLines(17);
  OpenSettings();
  EXPECT_EQ(conf.VScroll1.Max, 0);
  EXPECT_EQ(RowsSeen(), 17);
  EXPECT_EQ(Name(16), "Line 16");
  EXPECT_EQ(conf.GetAttributeIndex(16), 16);
  EXPECT_EQ(conf.GetAttributeIndex(17), frmGraphConf::kNone);
  EXPECT_EQ(conf.GetLineIndex(1), 1);
  EXPECT_EQ(conf.GetLineIndex(2), frmGraphConf::kNone);
  Click(16);
  EXPECT_EQ(HighlightedRow(), 16);
}

TEST_F(GraphSettingsTest, RowsBehindAShortTableDoNothing) {
  LoadLines(17);
  OpenSettings();
  const std::vector<GraphAttribute> before = graph.Data.Attributes;
  Click(17);
  EXPECT_EQ(Selection(), kNoneSelected);
  conf.chkLine(17).Value = true;
  conf.chkCap(24).Value = true;
  conf.lblLine(20).Click();
  EXPECT_EQ(Selection(), kNoneSelected);
  EXPECT_EQ(graph.Data.Attributes, before);
}

TEST_F(GraphSettingsTest, TheBarReachesAsFarAsThereAreLines) {
  for (const auto& [lines, max, seen] : std::vector<std::tuple<int, int, int>>{
           {24, 0, 24}, {25, 0, 25}, {26, 1, 25}, {131, 106, 25}}) {
    LoadLines(lines);
    OpenSettings();
    EXPECT_EQ(conf.VScroll1.Max, max) << lines;
    EXPECT_EQ(RowsSeen(), seen) << lines;
    ScrollTo(max);
    EXPECT_EQ(Name(seen - 1), "Line " + std::to_string(lines - 1));
    ScrollTo(0);
    conf.Close();
  }
}

TEST_F(GraphSettingsTest, AfterAShorterTableTheBarStandsInsideItsRange) {
  OpenSettings();
  ScrollTo(91);
  conf.Close();
  LoadLines(31);
  OpenSettings();
  EXPECT_EQ(conf.VScroll1.Max, 6);
  EXPECT_EQ(conf.VScroll1.Value, 0);
  EXPECT_EQ(Name(24), "Line 24");
}

TEST_F(GraphSettingsTest, ATableThatBecomesShorterWhileTheyAreOpenIsNotLeft) {
  OpenSettings();
  ScrollTo(91);
  Click(24);
  EXPECT_EQ(Selection(), "row 24: Frost mode");
  LoadLines(17);
  const std::vector<GraphAttribute> loaded = graph.Data.Attributes;
  conf.txtAlias.Text = "gone";
  conf.txtID.Text = "5";
  conf.chkShowLine.Value = true;
  conf.cmbUnit.Pick(1);
  conf.cmdLineColor.Press();
  conf.cmdAdvanced.Press();
  conf.lblFixedCapClick();
  EXPECT_EQ(graph.Data.Attributes, loaded);
  conf.optView.Choose(0);
  EXPECT_EQ(RowsSeen(), 17);
  EXPECT_EQ(Name(0), "Line 0");
  conf.Close();
}

TEST_F(GraphSettingsTest, AnotherTableIsSeenAtOnceAndNothingIsSelected) {
  OpenSettings();
  ScrollTo(91);
  Click(3);
  LoadLines(31);
  EXPECT_EQ(Selection(), kNoneSelected);
  EXPECT_EQ(conf.VScroll1.Max, 6);
  EXPECT_EQ(conf.VScroll1.Value, 6);
  EXPECT_EQ(Name(0), "Line 6");
  EXPECT_EQ(Name(24), "Line 30");
}

TEST_F(GraphSettingsTest, WhatWasReadOfABadFileIsSeenToo) {
  OpenSettings();
  ScrollTo(91);
  Click(3);
  const std::string whole = LinesText(17);
  world.dialogs().ExpectMessageBox("Error reading file", "Reading file");
  Load(whole.substr(0, whole.find("Attribute 5")));
  EXPECT_EQ(Selection(), kNoneSelected);
  EXPECT_EQ(RowsSeen(), 17);
  EXPECT_EQ(Name(4), "Line 4");
  EXPECT_EQ(Name(5), "");
}

TEST_F(GraphSettingsTest, ATableThatBecomesShorterBehindTheColourDialogIsNotLeft) {
  OpenSettings();
  ScrollTo(91);
  world.dialogs().ExpectColour().GiveColour(kGreen).While([this] { LoadLines(17); });
  conf.lblLine(24).Click();
  ASSERT_EQ(graph.Data.LastAttribute(), 16);
  for (int i = 0; i <= 16; ++i) EXPECT_EQ(Line(i).LineColor, 0) << i;
  EXPECT_EQ(Selection(), kNoneSelected);
}

}  // namespace
}  // namespace tarnlink
