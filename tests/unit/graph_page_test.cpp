// The graph as a page: its frame, its texts and its grid, operation by operation.

#include <cstdio>
#include <string>

#include "unit/graph_page_fixture.h"

namespace tarnlink {
namespace {

// "font pen line*4 text": what kinds follow each other, and how often.
std::string Kinds(const RecordingSurface::Log& operations) {
  std::string text;
  for (std::size_t i = 0; i < operations.size();) {
    const std::string kind = operations[i].substr(0, operations[i].find(' '));
    std::size_t count = 0;
    while (i < operations.size() && StartsWith(operations[i], kind.c_str())) ++count, ++i;
    text += (text.empty() ? "" : " ") + kind + (count > 1 ? "*" + std::to_string(count) : "");
  }
  return text;
}

// --- The page ------------------------------------------------------------------------------------

TEST_F(GraphPageTest, ItsPartsFollowEachOther) {
  ShowWarmLine(0);
  Line(0).ShowCaption = true;
  SetCursor(-30);
  // The frame; a row, the moment, two scales and ten times; both grids; line, cursor, heading.
  EXPECT_EQ(Kinds(Draw()),
            "font pen line*4 text*59 pen line*10 pen line*20 clip pen polyline no pen line "
            "font text");
  const Log texts = surface.Only("text");
  const auto text = [&texts](std::size_t i) { return texts[i].substr(texts[i].find('"')); };
  EXPECT_EQ(text(0), "\"Sensor 1\"");
  EXPECT_EQ(text(4), "\"05-Mar-24 14:00:00\"");
  EXPECT_EQ(text(5), "\"120 \"");
  EXPECT_EQ(text(27), "\" 6.5\"");
  EXPECT_EQ(text(49), "\"13:51\"");
}

TEST_F(GraphPageTest, TheAreaIsWhatMarginsAndColumnsLeave) {
  const GraphPage page = DrawnOn(surface);
  EXPECT_FLOAT_EQ(page.Left(), kLeft);
  EXPECT_FLOAT_EQ(page.Right(), kRight);
  EXPECT_FLOAT_EQ(page.Bottom(), kBottom);
}

TEST_F(GraphPageTest, PortraitGivesASmallGraph) {
  const auto wide = MakeA4Page(true);
  const GraphPage landscape = DrawnOn(*wide);
  EXPECT_FLOAT_EQ(landscape.Left(), kLeft);
  EXPECT_FLOAT_EQ(landscape.Right() - landscape.Left(), 11'546);
  EXPECT_FLOAT_EQ(landscape.Bottom() - kTop, 10'004.4F);
  const auto high = MakeA4Page(false);
  const GraphPage portrait = DrawnOn(*high);
  EXPECT_FLOAT_EQ(portrait.Left(), kLeft) << "The margins stay.";
  EXPECT_FLOAT_EQ(portrait.Right() - portrait.Left(), 6614);
  EXPECT_FLOAT_EQ(portrait.Bottom() - kTop, 14'936.4F);
}

TEST_F(GraphPageTest, APaperWithoutRoomForAGraphHasItsTextsOnly) {
  content.HeaderText = "heading";
  RecordingSurface narrow(5292, kPageHeight);
  DrawnOn(narrow);
  EXPECT_EQ(Kinds(narrow.operations()), "font text font text");
  RecordingSurface low(kPageWidth, 1901.5F);
  DrawnOn(low);
  EXPECT_EQ(Kinds(low.operations()), "font text font text");
}

TEST_F(GraphPageTest, TheFrameIsGrey) {
  EXPECT_EQ(Joined(OfPen(0)),
            "pen 808080 solid 1\nline 3654,850 9654,850\nline 9654,850 9654,10850\n"
            "line 9654,10850 3654,10850\nline 3654,10850 3654,850\n");
}

TEST_F(GraphPageTest, LinesAreAsWideOnEveryPaper) {
  ShowWarmLine(0);
  Show(100);
  Sample(100, kOn, 0);
  SetCursor(-30);
  struct Case {
    float units;  // in a pixel
    int grid;
    int line;
  };
  for (const Case& each : {Case{15, 1, 1}, Case{7.5F, 2, 3}, Case{5, 3, 5}, Case{4.8F, 3, 6},
                           Case{2.4F, 6, 12}, Case{1.2F, 12, 24},
                           // Not even one pixel would be no line.
                           Case{16, 1, 1}, Case{29, 1, 1}, Case{30, 1, 1}, Case{100, 1, 1}}) {
    surface.twips_per_pixel = each.units;
    const std::string grid = " solid " + std::to_string(each.grid) + "\n";
    const std::string line = " solid " + std::to_string(each.line) + "\n";
    EXPECT_EQ(Joined(Pens()), "pen 808080" + grid + "pen 000000" + grid + "pen 000000" + grid +
                                  "pen 0000FF" + line + "pen FFFF00" + line + "pen 0000FF" + line)
        << each.units;
  }
}

TEST_F(GraphPageTest, TheHeadingStandsInTheMiddleAbove) {
  content.HeaderText = "Boiler";
  EXPECT_EQ(Draw()[Draw().size() - 2], "font Verdana 8");
  EXPECT_EQ(Draw().back(), "text 5358,425 000000 \"Boiler\"");
}

TEST_F(GraphPageTest, AnEmptyHeadingIsNothingInItsPlace) {
  EXPECT_EQ(Draw().back(), "text 5646,425 000000 \"\"");
}

// --- Places --------------------------------------------------------------------------------------

TEST_F(GraphPageTest, TimesHaveTheirPlaces) {
  for (const int minutes : {1, 5, 10, 20, 60}) {
    content.view.TimeScale = minutes;
    const GraphPage page = DrawnOn(surface);
    EXPECT_FLOAT_EQ(page.TimeToX(kBase), kRight);
    EXPECT_FLOAT_EQ(page.TimeToX(kBase - minutes / kMinutesPerDay), kLeft);
    EXPECT_NEAR(page.TimeToX(kBase - minutes / kMinutesPerDay / 4), kRight - 1500, 0.01);
    EXPECT_NEAR(page.TimeToX(kBase + minutes / kMinutesPerDay), kRight + 6000, 0.01);
  }
}

TEST_F(GraphPageTest, EachUnitHasItsScale) {
  const GraphPage page = DrawnOn(surface);
  EXPECT_FLOAT_EQ(page.ValueToY(120, kCelsius), kTop);
  EXPECT_FLOAT_EQ(page.ValueToY(-10, kCelsius), kTop + 4500);
  EXPECT_FLOAT_EQ(page.ValueToY(55, kCelsius), kTop + 2250);
  EXPECT_FLOAT_EQ(page.ValueToY(6.5F, kBar), kTop);
  EXPECT_FLOAT_EQ(page.ValueToY(0, kBar), kTop + 4500);
  EXPECT_FLOAT_EQ(page.ValueToY(1.3F, kBar), kTop + 3600);
  // Not one above the lower edge, as on the screen.
  EXPECT_FLOAT_EQ(page.ValueToY(0, kRpm), kBottom);
  EXPECT_FLOAT_EQ(page.ValueToY(7000, kRpm), kTop + 6000);
  EXPECT_FLOAT_EQ(page.ValueToY(0, kPercent), kBottom);
  EXPECT_FLOAT_EQ(page.ValueToY(140, kPercent), kTop + 6000);
  EXPECT_FLOAT_EQ(page.ValueToY(35, kPercent), kTop + 9000);
  for (const int unit : {kNoUnit, kOnOff, 9, -1}) {
    EXPECT_EQ(page.ValueToY(35, unit), page.ValueToY(35, kPercent)) << unit;
  }
}

// --- Scales and grid -----------------------------------------------------------------------------

TEST_F(GraphPageTest, TheLeftScaleEndsABlankBeforeTheFrame) {
  data.Colors.CaptionColor = 0x123456;
  const Log texts = Texts();
  const auto text = [&texts](std::size_t i) { return texts[1 + i]; };
  EXPECT_EQ(text(0), "text 3318,766 123456 \"120 \"");
  EXPECT_EQ(text(1), "text 3318,1112.154 123456 \"110 \"");
  EXPECT_EQ(text(3), "text 3402,1804.462 123456 \"90 \"");
  EXPECT_EQ(text(12), "text 3486,4919.846 123456 \"0 \"");
  EXPECT_EQ(text(13), "text 3318,5266 123456 \"-10 \"");
  EXPECT_EQ(text(14), "text 3234,6766 123456 \"7000 \"");
  EXPECT_EQ(text(15), "text 3234,7337.429 123456 \"6000 \"");
  EXPECT_EQ(text(21), "text 3486,10766 123456 \"0 \"");
}

TEST_F(GraphPageTest, TheRightScaleBeginsABlankBehindTheFrame) {
  data.Colors.CaptionColor = 0x123456;
  const Log texts = Texts();
  const auto text = [&texts](std::size_t i) { return texts[23 + i]; };
  EXPECT_EQ(text(0), "text 9654,766 123456 \" 6.5\"");
  EXPECT_EQ(text(1), "text 9654,1112.154 123456 \" 6.0\"");
  EXPECT_EQ(text(13), "text 9654,5266 123456 \" 0.0\"");
  EXPECT_EQ(text(14), "text 9654,6766 123456 \" 140\"");
  EXPECT_EQ(text(15), "text 9654,7337.429 123456 \" 120\"");
  EXPECT_EQ(text(21), "text 9654,10766 123456 \" 0\"");
}

TEST_F(GraphPageTest, AllNumbersOfBothScalesAreThere) {
  std::string numbers;
  const Log texts = Texts();
  for (std::size_t i = 1; i < 45; ++i) {
    const std::size_t quote = texts[i].find('"') + 1;
    numbers += texts[i].substr(quote, texts[i].size() - quote - 1);
  }
  EXPECT_EQ(numbers,
            "120 110 100 90 80 70 60 50 40 30 20 10 0 -10 7000 6000 5000 4000 3000 2000 1000 0 "
            " 6.5 6.0 5.5 5.0 4.5 4.0 3.5 3.0 2.5 2.0 1.5 1.0 0.5 0.0"
            " 140 120 100 80 60 40 20 0");
}

TEST_F(GraphPageTest, TheGridOfValuesReachesFromSideToSide) {
  data.Colors.GridColor = 0xC0C0C0;
  const Log lines = OfPen(2);
  ASSERT_EQ(lines.size(), 21U);
  EXPECT_EQ(lines[0], "pen C0C0C0 solid 1");
  EXPECT_EQ(lines[1], "line 3654,1196.154 9654,1196.154");
  EXPECT_EQ(lines[13], "line 3654,5350 9654,5350");
  EXPECT_EQ(lines[14], "line 3654,10278.57 9654,10278.57");
  EXPECT_EQ(lines[20], "line 3654,6850 9654,6850");
}

// "14:00@3654": the texts under the frame by their middles, and the lines of the grid.
struct TimesOfPage {
  std::string labels;
  std::string lines;
};

class GraphPageTimes : public GraphPageTest {
 protected:
  TimesOfPage At(int minutes, const CivilTime& base) {
    content.view.TimeScale = minutes;
    content.view.BaseTime = ToDate(base);
    constexpr float kHalfLetter = 84;
    const std::string place = "," + std::to_string(static_cast<int>(kBottom + kHalfLetter)) + " ";
    TimesOfPage times;
    for (const std::string& text : Texts()) {
      float left = 0;
      std::string caption = text.substr(text.find('"') + 1);
      caption.pop_back();
      if (text.find(place) == std::string::npos || caption.starts_with("05-Mar")) continue;
      if (std::sscanf(text.c_str(), "text %f,", &left) != 1) ADD_FAILURE() << text;
      const float middle = left + static_cast<float>(caption.size()) * 42;
      times.labels += (times.labels.empty() ? "" : " ") + caption + "@" +
                      std::to_string(static_cast<int>(middle + 0.5F));
    }
    for (const std::string& line : OfPen(1)) {
      float top = 0;
      float x = 0;
      float below_x = 0;
      float bottom = 0;
      if (StartsWith(line, "pen")) continue;
      if (std::sscanf(line.c_str(), "line %f,%f %f,%f", &x, &top, &below_x, &bottom) != 4) {
        ADD_FAILURE() << line;
      }
      EXPECT_EQ(x, below_x);
      EXPECT_EQ(top, kTop);
      EXPECT_EQ(bottom, kBottom);
      times.lines += (times.lines.empty() ? "" : " ") + std::to_string(static_cast<int>(x));
    }
    return times;
  }
};

TEST_F(GraphPageTimes, AtOneMinuteThereAreTheFullAndTheHalfOne) {
  const TimesOfPage early = At(1, {2024, 3, 5, 14, 3, 12});
  EXPECT_EQ(early.labels, "14:03:00@8454 14:02:30@5454");
  EXPECT_EQ(early.lines, "4254 4854 5454 6054 6654 7254 7854 8454 9054 9654");
  const TimesOfPage late = At(1, {2024, 3, 5, 14, 3, 45});
  EXPECT_EQ(late.labels, "14:03:00@5154 14:03:30@8154");
  EXPECT_EQ(late.lines, "3954 4554 5154 5754 6354 6954 7554 8154 8754 9354");
}

TEST_F(GraphPageTimes, AtFiveMinutesThereAreFive) {
  const TimesOfPage times = At(5, {2024, 3, 5, 14, 3, 15});
  EXPECT_EQ(times.labels, "13:59@4554 14:00@5754 14:01@6954 14:02@8154 14:03@9354");
  EXPECT_EQ(times.lines, "3954 4554 5154 5754 6354 6954 7554 8154 8754 9354");
}

TEST_F(GraphPageTimes, AtTenMinutesThereAreTen) {
  const TimesOfPage times = At(10, {2024, 3, 5, 14, 3, 15});
  EXPECT_EQ(times.labels,
            "13:54@4104 13:55@4704 13:56@5304 13:57@5904 13:58@6504 13:59@7104 14:00@7704 "
            "14:01@8304 14:02@8904 14:03@9504");
  EXPECT_EQ(times.lines, "4104 4704 5304 5904 6504 7104 7704 8304 8904 9504");
}

TEST_F(GraphPageTimes, AtTwentyMinutesAnOddMinuteMovesThemBack) {
  const TimesOfPage even = At(20, {2024, 3, 5, 14, 2, 0});
  EXPECT_EQ(even.labels,
            "13:44@4254 13:46@4854 13:48@5454 13:50@6054 13:52@6654 13:54@7254 13:56@7854 "
            "13:58@8454 14:00@9054 14:02@9654");
  EXPECT_EQ(even.lines, "4254 4854 5454 6054 6654 7254 7854 8454 9054 9654");
  const TimesOfPage odd = At(20, {2024, 3, 5, 14, 3, 30});
  EXPECT_EQ(odd.labels,
            "13:44@3804 13:46@4404 13:48@5004 13:50@5604 13:52@6204 13:54@6804 13:56@7404 "
            "13:58@8004 14:00@8604 14:02@9204");
  EXPECT_EQ(odd.lines, "3804 4404 5004 5604 6204 6804 7404 8004 8604 9204");
}

TEST_F(GraphPageTimes, AtAnHourTheyStandAtEverySixthMinute) {
  const TimesOfPage times = At(60, {2024, 3, 5, 14, 3, 0});
  EXPECT_EQ(times.labels,
            "13:06@3954 13:12@4554 13:18@5154 13:24@5754 13:30@6354 13:36@6954 13:42@7554 "
            "13:48@8154 13:54@8754 14:00@9354");
  EXPECT_EQ(times.lines, "3954 4554 5154 5754 6354 6954 7554 8154 8754 9354");
}

TEST_F(GraphPageTimes, HaveTheColourOfTheScalesAndTheirLinesThatOfTheGrid) {
  data.Colors.CaptionColor = 0x123456;
  data.Colors.GridColor = 0xC0C0C0;
  EXPECT_EQ(Texts()[45], "text 4044,10934 123456 \"13:51\"");
  EXPECT_EQ(OfPen(1)[0], "pen C0C0C0 solid 1");
}

// --- Values --------------------------------------------------------------------------------------

class GraphPageValues : public GraphPageTest {
 protected:
  // What a text says, behind a blank.
  static std::string Quoted(const std::string& text) {
    const std::size_t quote = text.find('"') + 1;
    return " " + text.substr(quote, text.size() - quote - 1);
  }
  // Shows a row with this name and value.
  void Row(int index, const std::string& name, std::int32_t raw) {
    Line(index).Alias = name;
    Line(index).ShowCaption = true;
    if (index < kStatusChannel) Sample(index, raw, 0);
  }
  // The rows of the panel and the moment below.
  std::string Panel() {
    const Log texts = Texts();
    Log panel;
    for (const std::string& text : texts) {
      if (text.ends_with("\"120 \"")) break;
      panel.push_back(text);
    }
    return Joined(panel);
  }
};

TEST_F(GraphPageValues, ARowIsNameColonValueAndUnitInTheLinesColour) {
  Row(0, "Flow", kWarm);
  Line(0).LineColor = 0x506070;
  EXPECT_EQ(Panel(),
            "text 1134,900 506070 \"Flow\"\ntext 2226,900 506070 \":\"\n"
            "text 2394,900 506070 \"55\"\ntext 2814,900 506070 \"\xC2\xB0"
            "C\"\n"
            "text 1134,10850 000000 \"05-Mar-24 14:00:00\"\n");
}

TEST_F(GraphPageValues, EachBandHasItsRows) {
  Row(0, "a1", 0);
  Row(17, "a2", 0);  // bar
  Row(100, "b1", 0);
  Row(101, "b2", 0);
  Row(11, "c1", 0);  // rpm
  Row(15, "c2", 0);  // percent
  Row(12, "c3", 0);  // none
  Row(1, "a3", 0);
  Row(102, "b3", 0);
  Row(2, "b0", 0);
  Line(2).Unit = kOnOff;
  std::string rows;
  const Log texts = Texts();
  for (std::size_t i = 0; i < 40; i += 4) {
    const std::string place = texts[i].substr(0, texts[i].find(' ', 5));
    rows += place.substr(place.find(',') + 1) + Quoted(texts[i]) + Quoted(texts[i + 3]) + "\n";
  }
  EXPECT_EQ(rows,
            "900 a1 \xC2\xB0"
            "C\n1101.6 a3 \xC2\xB0"
            "C\n5350 b0 \n6900 c1 rpm\n7101.6 c3 \n7303.2 c2 %\n1303.2 a2 bar\n"
            "5518 b1 \n5686 b2 \n5854 b3 \n");
}

TEST_F(GraphPageValues, TheSeparatorIsThatOfTheLocale) {
  Row(17, "Pressure", 15 << 8);
  EXPECT_NE(Panel().find("\"1.5\""), std::string::npos);
  content.decimal_separator = ",";
  EXPECT_NE(Panel().find("\"1,5\""), std::string::npos);
}

TEST_F(GraphPageValues, AreThoseUnderTheCursor) {
  Row(0, "Flow", kWarm);
  Sample(0, kHot, 60);
  EXPECT_NE(Panel().find("\"120\""), std::string::npos) << "Without one the newest is shown.";
  SetCursor(30);
  EXPECT_NE(Panel().find("\"55\""), std::string::npos);
  SetCursor(60);
  EXPECT_NE(Panel().find("\"120\""), std::string::npos);
}

TEST_F(GraphPageValues, ALaneShowsItsBit) {
  Row(100, "Heating", 0);
  Row(101, "Hot water", 0);
  Sample(100, 0x0200, 0);
  const Log texts = Texts();
  EXPECT_EQ(texts[2], "text 2394,5350 808000 \"0\"");
  EXPECT_EQ(texts[6], "text 2394,5518 000000 \"1\"");
  EXPECT_EQ(texts[7], "text 2814,5518 000000 \"\"");
}

TEST_F(GraphPageValues, OnlyLinesWithACaptionHaveARow) {
  Show(0);
  Row(115, "last", 0);
  EXPECT_EQ(Panel(),
            "text 1134,5350 008000 \"last\"\ntext 2226,5350 008000 \":\"\n"
            "text 2394,5350 008000 \"0\"\ntext 2814,5350 008000 \"\"\n"
            "text 1134,10850 000000 \"05-Mar-24 14:00:00\"\n");
}

// Paper is white: what was chosen for a dark screen is darker here.
TEST_F(GraphPageValues, WhatCouldNotBeReadOnPaperIsDarker) {
  data.Colors.CaptionColor = data.Colors.GridColor = data.Colors.CursorColor = 0xFFFFFF;
  ShowWarmLine(0);
  Line(0).ShowCaption = true;
  Line(0).LineColor = 0xFFFFFF;
  SetCursor(-30);
  const std::string page = Joined(Draw());
  EXPECT_EQ(page.find("FFFFFF"), std::string::npos) << page;
  EXPECT_NE(page.find(" 737373 \"Sensor 1\""), std::string::npos) << page;
  EXPECT_NE(page.find(" 737373 \"7000 \""), std::string::npos) << page;
  EXPECT_NE(page.find("pen D9D9D9 solid"), std::string::npos) << page;
}

TEST_F(GraphPageValues, ABandBeginsBehindTheRowsOfTheOneBefore) {
  for (int lane = 100; lane < 116; ++lane) Row(lane, "lane", 0);
  Row(10, "fan", 0);
  const std::string panel = Panel();
  // Sixteen rows of 168 from 5350 on.
  EXPECT_NE(panel.find("text 1134,7870"), std::string::npos) << panel;
  EXPECT_NE(panel.find("text 1134,8038 808000 \"fan\""), std::string::npos) << panel;
}

TEST_F(GraphPageValues, LettersAreSmallerWhereNotAllRowsWouldFindRoom) {
  for (int line = 0; line < 60; ++line) Row(line, "row", 0);
  Draw();
  const Log fonts = surface.Only("font");
  ASSERT_GE(fonts.size(), 4U);
  EXPECT_EQ(fonts[1], "font Small Fonts 6.5");
  EXPECT_EQ(fonts[fonts.size() - 2], "font Small Fonts 7") << "for all that comes behind them";
}

TEST_F(GraphPageValues, ALongNameHasSmallerLettersAndCoversNoColon) {
  Row(0, "A name of many letters", kWarm);
  Row(1, "Short", kWarm);
  Draw();
  Log order;
  for (const std::string& operation : surface.operations()) {
    if (operation.find("120 ") != std::string::npos) break;
    if (StartsWith(operation, "font")) order.push_back(operation);
    if (operation.find("letters") != std::string::npos) order.push_back("name");
    if (operation.ends_with("\":\"")) order.push_back("colon");
  }
  ASSERT_GE(order.size(), 6U);
  EXPECT_EQ(order[1], "font Small Fonts 6.5");
  const auto name = std::find(order.begin(), order.end(), "name");
  EXPECT_EQ(*(name + 1), "font Small Fonts 7") << "before the rest of the row";
  EXPECT_EQ(*(name + 2), "colon");
  EXPECT_EQ(*(name + 3), "colon") << "nothing is to be changed for a short one";
}

TEST_F(GraphPageValues, TheMomentHasTheMonthsOfTheLocale) {
  MonthNames names = EnglishMonthNames();
  names[11] = "Dezember";
  content.months = names;
  content.moment = ToDate({2099, 12, 31, 23, 59, 58});
  EXPECT_EQ(Texts()[0], "text 1134,10850 000000 \"31-Dez-99 23:59:58\"");
}

}  // namespace
}  // namespace tarnlink
