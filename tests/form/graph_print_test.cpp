// The graph is printed from its menu: the heading, the preview, and what stands on the page.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "form/boiler_on_line.h"
#include "form/open_graph.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class GraphPrintTest : public OpenGraph {
 protected:
  GraphPrintTest() { Open(); }

  ScriptedDialog& ExpectHeading() {
    return world.dialogs().ExpectInputBox("Enter header text:", "Print");
  }
  ScriptedDialog& ExpectPages() { return world.dialogs().ExpectPreview("Print"); }
  // The user types a heading, looks at the page and closes it.
  const RecordingSurface::Log& Print(const std::string& heading = {}) {
    ExpectHeading().Give(heading);
    ExpectPages();
    menu.mnuPrint.Press();
    return Page();
  }
  const RecordingSurface::Log& Page() { return world.dialogs().last_preview(); }
  const PreviewRequest& Asked() { return world.dialogs().last_preview_request(); }

  bool IsOnPage(const std::string& end) {
    return std::any_of(Page().begin(), Page().end(),
                       [&end](const std::string& operation) { return operation.ends_with(end); });
  }
  // What is drawn with a pen of this colour.
  RecordingSurface::Log InColour(const std::string& colour) {
    RecordingSurface::Log part;
    bool is_on = false;
    for (const std::string& operation : Page()) {
      const bool is_drawn = !operation.starts_with("text") && !operation.starts_with("font") &&
                            !operation.starts_with("clip") && operation != "no clip";
      if (!is_drawn) continue;
      if (operation.starts_with("pen")) is_on = operation.starts_with("pen " + colour + " ");
      if (is_on && !operation.starts_with("pen")) part.push_back(operation);
    }
    return part;
  }
  // The captions under the frame, in their order.
  std::string TimesOnPage() {
    std::string times;
    for (const std::string& text : Page()) {
      const std::size_t quote = text.find('"') + 1;
      if (!text.starts_with("text") || text.find(',') > quote) continue;
      const std::string caption = text.substr(quote, text.size() - quote - 1);
      if (caption.find(':') != std::string::npos && caption.size() <= 8) times += caption + " ";
    }
    return times;
  }
  std::string TimesOnScreen() {
    std::string times;
    for (int i = 0; i < kTimeLines; ++i) {
      if (graph.lblX(i).Visible) times += graph.lblX(i).Caption.get() + " ";
    }
    return times;
  }
  // The view stands for ten minutes, with the cursor so many seconds after the start.
  void StandWithCursor(int second) {
    StandAfter(10);
    graph.CursorTime = start + second * kSecond;
    all.display.DrawAgain();
  }

  static constexpr const char* kCursor = "123456";
};

// --- The command ---------------------------------------------------------------------------------

TEST_F(GraphPrintTest, TheHeadingIsAskedForAndThenThePageIsShown) {
  all.printer.HeaderText = "05Mar24-00";
  Print("Boiler 7");
  EXPECT_EQ(world.dialogs().last_input_text(), "05Mar24-00");
  EXPECT_EQ(world.dialogs().TakeShown(),
            (std::vector<std::string>{"input box [Print] Enter header text: (05Mar24-00)",
                                      "preview [Print]"}));
  EXPECT_EQ(all.printer.HeaderText, "Boiler 7");
  EXPECT_TRUE(Page().back().ends_with(" 000000 \"Boiler 7\""));
  Print("Boiler 8");
  EXPECT_EQ(world.dialogs().last_input_text(), "Boiler 7");
}

TEST_F(GraphPrintTest, ACancelledHeadingIsEmptyAndPrintingGoesOn) {
  all.printer.HeaderText = "05Mar24-00";
  ExpectHeading().Cancel();
  ExpectPages();
  menu.mnuPrint.Press();
  EXPECT_EQ(all.printer.HeaderText, "");
  EXPECT_TRUE(Page().back().ends_with(" \"\""));
}

TEST_F(GraphPrintTest, ThePageLiesInLandscapeUntilTheUserTurnsIt) {
  Print();
  EXPECT_TRUE(Asked().setup.landscape);
  EXPECT_TRUE(IsOnPage("line 3654,850 15200,850"));
  const auto portrait = MakeA4Page(false);
  Asked().draw(*portrait);
  const auto& all_of_it = portrait->operations();
  EXPECT_EQ(std::count(all_of_it.begin(), all_of_it.end(), "line 3654,850 10268,850"), 1);
}

TEST_F(GraphPrintTest, ItIsOnePage) {
  Print();
  EXPECT_EQ(InColour("808080").size(), 4U);
  EXPECT_FALSE(IsOnPage("page"));
  EXPECT_TRUE(world.pages().empty()) << "Nothing goes to the printer before the user says so.";
}

TEST_F(GraphPrintTest, APdfFileIsProposedUnderTheHeading) {
  Print("Boiler 7");
  EXPECT_EQ(Asked().file_name, "Boiler 7.pdf");
  Print("05Mar24-00");
  EXPECT_EQ(Asked().file_name, "05Mar24-00.pdf");
  Print();
  EXPECT_EQ(Asked().file_name, "graph.pdf");
}

// A heading is no path: what stands before its last separator belongs to the name as well.
TEST_F(GraphPrintTest, ASeparatorInTheHeadingIsNoFolder) {
  for (const char* heading : {"Boiler 3/4", "/etc/boiler", "before\\after"}) {
    Print(heading);
    EXPECT_EQ(Asked().file_name.find_first_of("/\\"), std::string::npos) << Asked().file_name;
  }
}

TEST_F(GraphPrintTest, ThePointerIsAnHourglassWhileThePageIsDrawn) {
  Print();
  EXPECT_EQ(graph.form.MousePointer, kArrow);
  Asked().drawing(true);
  EXPECT_EQ(graph.form.MousePointer, kHourglass);
  Asked().drawing(false);
  EXPECT_EQ(graph.form.MousePointer, kArrow);
}

// --- What the page shows -------------------------------------------------------------------------

TEST_F(GraphPrintTest, TheTimesAreThoseOfTheScreenAtEachScale) {
  for (int scale = 0; scale < kTimeScales; ++scale) {
    menu.mnuScale(scale).Press();
    // Some time after the screen was drawn last.
    world.Advance(900ms);
    Print();
    EXPECT_EQ(TimesOnPage(), TimesOnScreen()) << graph.TimeScale;
    EXPECT_NE(TimesOnPage(), "");
  }
}

TEST_F(GraphPrintTest, ThePeriodIsTheOneThatStandsOnTheScreen) {
  StandAfter(10);
  all.display.DrawAgain();
  Print();
  EXPECT_EQ(TimesOnPage(), "14:08 14:09 14:10 14:11 14:12 14:13 14:14 14:15 14:16 14:17 ");
  EXPECT_EQ(TimesOnPage(), TimesOnScreen());
}

TEST_F(GraphPrintTest, LinesAndCaptionsAreThoseThatAreSwitchedOn) {
  StandWithCursor(300);
  Show(0);
  Show(1);
  Line(0).LineColor = 0xABCDEF;
  Line(1).LineColor = 0x345678;
  Sample(0, 60, 0);
  Sample(0, 120, 55 << 8);
  Sample(1, 60, 0);
  Sample(1, 120, 55 << 8);
  Line(1).ShowLine = false;
  Line(1).ShowCaption = true;
  Print();
  EXPECT_EQ(InColour("ABCDEF").size(), 1U);
  EXPECT_EQ(InColour("345678").size(), 0U);
  EXPECT_FALSE(IsOnPage("ABCDEF \"Sensor 1\""));
  EXPECT_TRUE(IsOnPage("345678 \"Sensor 2\""));
  EXPECT_TRUE(IsOnPage("345678 \"55\""));
}

TEST_F(GraphPrintTest, TheColoursOfScalesAndGridAreTheScreens) {
  graph.Data.Colors.GridColor = 0xC0C0C0;
  graph.Data.Colors.CaptionColor = 0x445566;
  Print();
  EXPECT_EQ(InColour("C0C0C0").size(), 30U);
  EXPECT_TRUE(IsOnPage("445566 \"7000 \""));
}

TEST_F(GraphPrintTest, TheCursorIsThereWhileTheViewStands) {
  graph.Data.Colors.CursorColor = 0x123456;
  StandWithCursor(300);
  Print();
  EXPECT_EQ(InColour(kCursor), RecordingSurface::Log{"line 9427,850 9427,10854.4"});
  EXPECT_TRUE(IsOnPage(" \"05-Mar-24 14:12:09\""));
  StandWithCursor(-1);
  Print();
  EXPECT_TRUE(InColour(kCursor).empty()) << "A cursor outside the period is no line.";
  EXPECT_TRUE(IsOnPage(" \"05-Mar-24 14:07:08\"")) << "Its time is told all the same.";
}

TEST_F(GraphPrintTest, FollowingTheClockThereIsThePresentMomentAndNoCursor) {
  graph.Data.Colors.CursorColor = 0x123456;
  StandWithCursor(300);
  graph.AutoScroll = true;
  world.Advance(61s);
  Print();
  EXPECT_TRUE(InColour(kCursor).empty());
  EXPECT_TRUE(IsOnPage(" \"05-Mar-24 14:08:10\""));
  graph.AutoScroll = false;
  graph.CursorTime = 0;
  Print();
  EXPECT_TRUE(IsOnPage(" \"05-Mar-24 14:08:10\""));
}

TEST_F(GraphPrintTest, TheValuesAreThoseUnderTheCursor) {
  Show(0);
  Line(0).ShowCaption = true;
  Sample(0, 60, 20 << 8);
  Sample(0, 400, 80 << 8);
  StandWithCursor(300);
  Print();
  EXPECT_TRUE(IsOnPage("\"20\""));
  EXPECT_FALSE(IsOnPage("\"80\""));
}

TEST_F(GraphPrintTest, OnlyWhatWasMeasuredIsThereIfTheMenuSaysSo) {
  StandAfter(10);
  Show(0);
  Line(0).LineColor = 0xABCDEF;
  for (const int second : {60, 120, 180}) Sample(0, second, 55 << 8);
  Print();
  ASSERT_EQ(InColour("ABCDEF").size(), 1U);
  EXPECT_TRUE(InColour("ABCDEF")[0].starts_with("polyline"));
  menu.mnuMeasOnly.Press();
  Print();
  ASSERT_EQ(InColour("ABCDEF").size(), 2U);
  EXPECT_TRUE(InColour("ABCDEF")[0].starts_with("line"));
}

TEST_F(GraphPrintTest, ALaneHasTheScreensPartOfTheHeight) {
  StandAfter(10);
  Show(100);
  Line(100).LineColor = 0xABCDEF;
  Sample(100, 300, 0x0100);
  for (const float form_height : {6000.0F, 9000.0F, 20'000.0F}) {
    graph.ScaleHeight = form_height;
    all.display.Form_Resize();
    Print();
    ASSERT_EQ(InColour("ABCDEF").size(), 1U);
    float left = 0;
    float bottom = 0;
    float right = 0;
    float top = 0;
    ASSERT_EQ(
        std::sscanf(InColour("ABCDEF")[0].c_str(), "box %f,%f %f,%f", &left, &bottom, &right, &top),
        4);
    const float part = graph.lblVal(0).Height / graph.frm(0).Height;
    EXPECT_NEAR(bottom - top, 0.6F * part * 10'004.4F, 0.1F) << form_height;
  }
}

TEST_F(GraphPrintTest, NumbersAndMonthsAreThoseOfTheLocale) {
  MonthNames names = EnglishMonthNames();
  names[2] = "Mrz";
  world.locale().SetMonths(names);
  world.locale().SetDecimalSeparator(",");
  Line(17).ShowCaption = true;
  Show(17);
  Sample(17, 0, 15 << 8);
  Print();
  EXPECT_TRUE(IsOnPage("\"1,5\""));
  EXPECT_TRUE(IsOnPage("\"05-Mrz-24 14:07:09\""));
}

// --- Time goes on --------------------------------------------------------------------------------

TEST_F(GraphPrintTest, PrintingMovesNoTimeAndDrawsNothingOnTheScreen) {
  world.Advance(3s);
  const Date base = graph.BaseTime;
  const Date last = graph.Data.LastTime;
  const std::string bar = std::to_string(graph.HScroll1.Max) + std::to_string(graph.HScroll1.Value);
  drawn = 0;
  Print();
  EXPECT_EQ(drawn, 0);
  EXPECT_EQ(graph.BaseTime, base);
  EXPECT_EQ(graph.Data.LastTime, last);
  EXPECT_EQ(graph.CursorTime, 0);
  EXPECT_TRUE(graph.AutoScroll);
  EXPECT_EQ(std::to_string(graph.HScroll1.Max) + std::to_string(graph.HScroll1.Value), bar);
}

// The fake draws the page again after the look, and fails if it differs.
TEST_F(GraphPrintTest, ThePageStaysThatOfTheMomentWhileTheScreenGoesOn) {
  Print();
  const RecordingSurface::Log before = Page();
  ExpectHeading();
  ExpectPages()
      .While([this] {
        menu.mnuScale(0).Press();
        menu.mnuMeasOnly.Press();
        menu.SetTimeScroll(false);
        graph.CursorTime = graph.BaseTime - 10 * kSecond;
        graph.ScaleHeight = 12'000;
        all.display.Form_Resize();
        menu.SetTimeScroll(true);
      })
      .For(2min);
  menu.mnuPrint.Press();
  EXPECT_EQ(Page(), before);
  EXPECT_EQ(graph.TimeScale, 1);
  EXPECT_EQ(Seconds(graph.BaseTime), 120) << "The screen has followed the clock.";
  Print();
  EXPECT_NE(Page(), before);
}

// With the simulated boiler at the other end of the line.
class GraphPrintOnLine : public GraphPrintTest {
 protected:
  GraphPrintOnLine() {
    Show(0);
    Line(0).ShowCaption = true;
    menu.SetCommunication(true);
  }
  int Recorded() const { return graph.Data.Channels[0].Count(); }

  static boiler::SimulatedBoiler::Options Options() {
    boiler::SimulatedBoiler::Options options;
    options.protocol = "zolt";
    options.line.pace.baud = 9600;
    return options;
  }
  BoilerOnLine boiler{world, Options()};
};

TEST_F(GraphPrintOnLine, RecordingGoesOnBehindThePreview) {
  world.Advance(30s);
  menu.SetTimeScroll(false);
  all.display.DrawAgain();
  world.Advance(10s);
  const int before = Recorded();
  ASSERT_GE(before, 30);
  ExpectHeading();
  ExpectPages().For(60s);
  menu.mnuPrint.Press();
  EXPECT_GE(Recorded(), before + 55);
  EXPECT_TRUE(graph.ZOLTCommunication);
}

TEST_F(GraphPrintOnLine, RecordingGoesOnWhileTheHeadingIsTypedAndIsOnThePage) {
  Line(0).LineColor = 0xABCDEF;
  world.Advance(30s);
  ExpectHeading().For(60s);
  ExpectPages();
  menu.mnuPrint.Press();
  EXPECT_GE(Recorded(), 85);
  EXPECT_TRUE(IsOnPage("\"05-Mar-24 14:08:39\""));
  const RecordingSurface::Log drawn_line = InColour("ABCDEF");
  ASSERT_EQ(drawn_line.size(), 1U);
  // A point for each second.
  EXPECT_GE(std::count(drawn_line[0].begin(), drawn_line[0].end(), ','), 85);
}

TEST_F(GraphPrintOnLine, WhatIsRecordedMeanwhileIsNotOnThePage) {
  world.Advance(30s);
  ExpectHeading();
  ExpectPages().For(60s);
  menu.mnuPrint.Press();
  EXPECT_GE(Recorded(), 85);
}

// As automatic saving does at midnight.
TEST_F(GraphPrintOnLine, WhatIsThrownAwayMeanwhileStaysOnThePage) {
  world.Advance(30s);
  ExpectHeading();
  ExpectPages().While([this] { graph.Data.Channels[0].Dimension(MeasureChannel::kUpperBound); });
  menu.mnuPrint.Press();
}

}  // namespace
}  // namespace tarnlink
