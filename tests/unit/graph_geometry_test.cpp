// Where things stand on the graph, to the number.

#include "graph/graph_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "graph/graph_attribute.h"

namespace tarnlink {
namespace {

Date At(int hour, int minute, int second) { return ToDate({2024, 3, 5, hour, minute, second}); }

GraphView View(Date base, int minutes) {
  return {.BaseTime = base, .TimeScale = minutes, .ScaleWidth = 10'001, .ScaleHeight = 10'000};
}

// --- Times and values ----------------------------------------------------------------------------

TEST(GraphView, TheStartIsAScaleBeforeTheRightEdge) {
  for (const int minutes : {1, 5, 10, 20, 60}) {
    const GraphView view = View(At(14, 0, 0), minutes);
    EXPECT_EQ(ToSeconds(view.BaseTime) - ToSeconds(view.StartTime()), minutes * 60);
    EXPECT_FLOAT_EQ(view.TimeToX(view.StartTime()), 0);
    EXPECT_FLOAT_EQ(view.TimeToX(view.BaseTime), 10'000);
    EXPECT_NEAR(view.TimeToX(view.BaseTime - minutes * 30 / kSecondsPerDay), 5'000, 0.01);
  }
}

TEST(GraphView, TimesOutsideLieOutsideThePicture) {
  const GraphView view = View(At(14, 0, 0), 10);
  EXPECT_NEAR(view.TimeToX(ToSeconds(At(14, 1, 0))), 11'000, 0.01);
  EXPECT_NEAR(view.TimeToX(ToSeconds(At(13, 45, 0))), -5'000, 0.01);
}

TEST(GraphView, EachUnitHasItsScale) {
  const GraphView view = View(At(14, 0, 0), 10);
  EXPECT_FLOAT_EQ(view.ValueToY(120, kCelsius), 0);
  EXPECT_FLOAT_EQ(view.ValueToY(-10, kCelsius), 4'500);
  EXPECT_FLOAT_EQ(view.ValueToY(55, kCelsius), 2'250);
  EXPECT_FLOAT_EQ(view.ValueToY(6.5F, kBar), 0);
  EXPECT_FLOAT_EQ(view.ValueToY(0, kBar), 4'500);
  EXPECT_FLOAT_EQ(view.ValueToY(0, kRpm), 9'999);
  EXPECT_FLOAT_EQ(view.ValueToY(7'000, kRpm), 5'999);
  EXPECT_FLOAT_EQ(view.ValueToY(0, kPercent), 9'999);
  EXPECT_FLOAT_EQ(view.ValueToY(140, kPercent), 5'999);
  for (const int unit : {kNoUnit, kOnOff, 9, -1}) {
    EXPECT_EQ(view.ValueToY(35, unit), view.PercentToY(35)) << unit;
  }
}

TEST(GraphView, ValuesAreNotCut) {
  const GraphView view = View(At(14, 0, 0), 10);
  EXPECT_LT(view.ValueToY(10'000, kRpm), 6'000) << "Above the lower band, in the lanes.";
  EXPECT_LT(view.ValueToY(500, kCelsius), 0);
}

// --- The grid ------------------------------------------------------------------------------------

TEST(GraphView, TheGridHasThirteenLinesAboveAndSevenBelow) {
  const GraphView view = View(At(14, 0, 0), 10);
  const auto upper = view.UpperGrid();
  EXPECT_FLOAT_EQ(upper.front(), 10'000 * 0.45F / 13);
  EXPECT_FLOAT_EQ(upper.back(), 4'500);
  const auto lower = view.LowerGrid();
  EXPECT_FLOAT_EQ(lower.front(), static_cast<float>(10'000 * (1 - 0.4 / 7)));
  EXPECT_FLOAT_EQ(lower.back(), 6'000);
}

TEST(GraphView, TheTimesOfTheGridAreThoseOfTheClock) {
  struct Case {
    int minutes;
    Date base;
    float first;
  };
  // On a width of 10,001: a tenth is 1000.1.
  for (const Case& each :
       {Case{10, At(14, 0, 0), 1000}, Case{10, At(14, 0, 30), 500}, Case{10, At(14, 7, 45), 250},
        Case{5, At(14, 0, 30), 1000}, Case{5, At(14, 0, 15), 500}, Case{1, At(14, 0, 9), 500},
        Case{20, At(14, 0, 30), 750}, Case{20, At(14, 1, 0), 500}, Case{60, At(14, 6, 0), 1000},
        Case{60, At(14, 9, 0), 500}}) {
    const auto lines = View(each.base, each.minutes).TimeGrid();
    EXPECT_EQ(lines[0], each.first)
        << each.minutes << " min, " << FormatDate(each.base, "hh:nn:ss", EnglishMonthNames());
    for (std::size_t i = 0; i < lines.size(); ++i) {
      EXPECT_EQ(lines[i], std::nearbyint(lines[i]));
      EXPECT_NEAR(lines[i], each.first + static_cast<float>(i) * 1000.1F, 1.0F);
    }
  }
}

TEST(GraphView, OfTwoNumbersTheGridTakesTheEvenOne) {
  GraphView view = View(At(14, 0, 30), 10);
  view.ScaleWidth = 50;  // lines at 2.5, 7.5 and so on
  EXPECT_EQ(view.TimeGrid()[0], 2);
  EXPECT_EQ(view.TimeGrid()[1], 8);
}

// --- The labels ----------------------------------------------------------------------------------

// "13:51@100 13:52@200".
std::string Labels(Date base, int minutes) {
  std::string text;
  for (const TimeLabel& label : TimeLabels(base, minutes, 6'000)) {
    text +=
        (text.empty() ? "" : " ") + label.Caption + "@" + std::to_string(std::lround(label.Center));
  }
  return text;
}

TEST(TimeLabels, AtOneMinuteThereAreTheFullAndTheHalfOne) {
  EXPECT_EQ(Labels(At(14, 3, 0), 1), "14:03:00@6000 14:02:30@3000");
  EXPECT_EQ(Labels(At(14, 3, 30), 1), "14:03:00@3000 14:02:30@0");
  EXPECT_EQ(Labels(At(14, 3, 31), 1), "14:03:00@2900 14:03:30@5900");
  EXPECT_EQ(Labels(At(14, 3, 59), 1), "14:03:00@100 14:03:30@3100");
  EXPECT_EQ(Labels(At(0, 0, 10), 1), "00:00:00@5000 23:59:30@2000");
}

TEST(TimeLabels, AtFiveMinutesThereAreFive) {
  EXPECT_EQ(Labels(At(14, 3, 0), 5), "13:59@1200 14:00@2400 14:01@3600 14:02@4800 14:03@6000");
  EXPECT_EQ(Labels(At(14, 3, 30), 5), "13:59@600 14:00@1800 14:01@3000 14:02@4200 14:03@5400");
}

TEST(TimeLabels, AtTenMinutesThereAreTen) {
  EXPECT_EQ(Labels(At(14, 9, 15), 10),
            "14:00@450 14:01@1050 14:02@1650 14:03@2250 14:04@2850 14:05@3450 14:06@4050 "
            "14:07@4650 14:08@5250 14:09@5850");
}

TEST(TimeLabels, AtTwentyMinutesThereIsOneForEachEvenMinute) {
  EXPECT_EQ(Labels(At(14, 18, 0), 20),
            "14:00@600 14:02@1200 14:04@1800 14:06@2400 14:08@3000 14:10@3600 14:12@4200 "
            "14:14@4800 14:16@5400 14:18@6000");
  EXPECT_EQ(Labels(At(14, 19, 30), 20),
            "14:00@150 14:02@750 14:04@1350 14:06@1950 14:08@2550 14:10@3150 14:12@3750 "
            "14:14@4350 14:16@4950 14:18@5550");
}

TEST(TimeLabels, AtAnHourThereIsOneForEverySixthMinute) {
  EXPECT_EQ(Labels(At(14, 54, 0), 60),
            "14:00@600 14:06@1200 14:12@1800 14:18@2400 14:24@3000 14:30@3600 14:36@4200 "
            "14:42@4800 14:48@5400 14:54@6000");
  EXPECT_EQ(Labels(At(14, 59, 0), 60).substr(0, 9), "14:00@100");
}

// --- The form ------------------------------------------------------------------------------------

TEST(GraphLayout, PlacesThePictureAndWhatStandsAroundIt) {
  const GraphLayout layout = LayOutGraph(12'000, 9'000);
  EXPECT_EQ(layout.GraphPan, (Place{2500, 50, 9050, 8340}));
  EXPECT_EQ(layout.frm[0], (Place{50, 50, 2000, 8340}));
  EXPECT_EQ(layout.frm[1], (Place{2500, 8390, 9050, 255}));
  EXPECT_EQ(layout.frm[2], (Place{2100, 50, 400, 8340}));
  EXPECT_EQ(layout.frm[3], (Place{11'550, 50, 400, 8340}));
  EXPECT_EQ(layout.HScroll1, (Place{2500, 8695, 9050, 255}));
}

TEST(GraphLayout, EachScaleLabelStandsOnItsLine) {
  EXPECT_FLOAT_EQ(ScaleLabelTop(0, 8000, 200), 0);
  EXPECT_FLOAT_EQ(ScaleLabelTop(1, 8000, 200), static_cast<float>(8000 * 0.45 / 13 - 100));
  EXPECT_FLOAT_EQ(ScaleLabelTop(13, 8000, 200), 3500);
  EXPECT_FLOAT_EQ(ScaleLabelTop(14, 8000, 200), 4700);
  EXPECT_FLOAT_EQ(ScaleLabelTop(20, 8000, 200), static_cast<float>(4800 + 3200.0 * 6 / 7 - 100));
  EXPECT_FLOAT_EQ(ScaleLabelTop(21, 8000, 200), 7800);
}

// Further on, a picture that moves to the left shows the lines of the views that follow.
TEST(GraphView, TheTimeGridGoesOnBeyondTheRightEdge) {
  for (const int scale : {1, 5, 10, 20, 60}) {
    GraphView view{.BaseTime = ToDate({2024, 3, 5, 14, 7, 20}),
                   .TimeScale = scale,
                   .ScaleWidth = 6000,
                   .ScaleHeight = 1000};
    const GraphView later{.BaseTime = view.BaseTime + scale * 60 / kSecondsPerDay,
                          .TimeScale = scale,
                          .ScaleWidth = 6000,
                          .ScaleHeight = 1000};
    for (int i = 0; i < kTimeLines; ++i) {
      EXPECT_EQ(view.TimeLine(i), view.TimeGrid().at(static_cast<std::size_t>(i)));
      EXPECT_NEAR(view.TimeLine(i + kTimeLines), later.TimeLine(i) + 6000, 1) << scale << " " << i;
    }
  }
}

TEST(GraphView, APlaceIsTheTimeThatStandsThere) {
  const GraphView view{.BaseTime = ToDate({2024, 3, 5, 14, 0, 0}),
                       .TimeScale = 10,
                       .ScaleWidth = 6001,
                       .ScaleHeight = 1000};
  const double base = view.BaseTime * kSecondsPerDay;
  for (const double seconds : {-700.0, -600.0, -123.5, 0.0, 50.0}) {
    const float x = view.TimeToX((base + seconds) / kSecondsPerDay);
    EXPECT_NEAR(view.Times().SecondsAt(x), base + seconds, 0.001);
  }
}

}  // namespace
}  // namespace tarnlink
