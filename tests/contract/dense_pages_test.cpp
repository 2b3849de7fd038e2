// Pages with very many samples: thinned out where nobody sees it, drawn while the window goes on.

#include <gtest/gtest.h>

#include <QImage>
#include <QPolygonF>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "common/run_time_error.h"
#include "contract/dialogs_benches.h"
#include "contract/loops.h"
#include "platform/qt/pages_beside_loop.h"
#include "platform/qt/qt_colour.h"
#include "platform/qt/thin_line.h"

namespace tarnlink {
namespace {

// --- Thinning out --------------------------------------------------------------------------------

QPolygonF Thin(QPolygonF points, double column = 1.0) {
  ThinLine(points, column);
  return points;
}

TEST(ThinLineTest, AFewPointsStayAsTheyAre) {
  const QPolygonF few{{{0, 1}, {0.2, 7}, {0.4, -3}, {0.9, 2}, {1.0, 5}, {2.5, 5}}};
  EXPECT_EQ(Thin(few), few);
  EXPECT_EQ(Thin({}), QPolygonF());
  EXPECT_EQ(Thin({{{3, 4}}}), (QPolygonF{{{3, 4}}}));
}

TEST(ThinLineTest, OfAColumnTheFirstTheHighestTheLowestAndTheLastAreKeptInTheirOrder) {
  EXPECT_EQ(Thin({{{0, 1}, {0.1, 9}, {0.2, 5}, {0.3, -4}, {0.4, 3}, {0.5, 2}}}),
            (QPolygonF{{{0, 1}, {0.1, 9}, {0.3, -4}, {0.5, 2}}}));
  EXPECT_EQ(Thin({{{0, 1}, {0.1, -9}, {0.2, 5}, {0.3, 14}, {0.4, 3}, {0.5, 2}}}),
            (QPolygonF{{{0, 1}, {0.1, -9}, {0.3, 14}, {0.5, 2}}}));
}

TEST(ThinLineTest, OneThatIsTwoOfThemIsThereOnce) {
  EXPECT_EQ(Thin({{{0, 9}, {0.1, 8}, {0.2, 7}, {0.3, 6}, {0.4, 5}, {0.5, 4}}}),
            (QPolygonF{{{0, 9}, {0.5, 4}}}));
}

TEST(ThinLineTest, ALineThatComesBackKeepsBothOfItsWays) {
  QPolygonF there_and_back;
  for (int i = 0; i < 100; ++i) there_and_back << QPointF(0.5 + i * 0.001, i);
  there_and_back << QPointF(7.5, 50);
  for (int i = 0; i < 100; ++i) there_and_back << QPointF(0.6 - i * 0.001, 100 - i);
  const QPolygonF thin = Thin(there_and_back);
  EXPECT_EQ(thin, (QPolygonF{{{0.5, 0}, {0.599, 99}, {7.5, 50}, {0.6, 100}, {0.501, 1}}}));
}

TEST(ThinLineTest, PlacesThatAreNoNumbersEnd) {
  const double none = std::numeric_limits<double>::quiet_NaN();
  const double far = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Thin({{{none, 1}, {none, 2}, {0, none}, {far, 3}, {-far, 4}, {0, 5}}}).size(), 6);
}

// Highest and lowest place of each column.
std::map<double, std::pair<double, double>> Reach(const QPolygonF& points, double column) {
  std::map<double, std::pair<double, double>> reach;
  for (const QPointF& point : points) {
    auto& [low, high] =
        reach.try_emplace(std::floor(point.x() / column), point.y(), point.y()).first->second;
    low = std::min(low, point.y());
    high = std::max(high, point.y());
  }
  return reach;
}

QPolygonF Noise(int count, double width, unsigned seed = 7) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> height(0, 1000);
  QPolygonF points;
  for (int i = 0; i < count; ++i) points << QPointF(width * i / count, height(random));
  return points;
}

TEST(ThinLineTest, NoColumnReachesLessFarThanBefore) {
  for (const double column : {0.25, 1.0, 6.0}) {
    const QPolygonF noise = Noise(20'000, 500);
    const QPolygonF thin = Thin(noise, column);
    EXPECT_LE(thin.size(), 4 * std::ceil(500 / column));
    EXPECT_EQ(Reach(thin, column), Reach(noise, column)) << column;
    EXPECT_EQ(thin.front(), noise.front());
    EXPECT_EQ(thin.back(), noise.back());
  }
}

// --- Beside the loop -----------------------------------------------------------------------------

constexpr int kDenseLines = 40;
constexpr int kSamples = 5000;
constexpr Colour kInk = 0x4080C0;

// More than a preview can show at once.
void DrawDensePage(DrawingSurface& paper) {
  std::vector<Point> points;
  for (const QPointF& place : Noise(kSamples, paper.ScaleWidth())) {
    points.push_back({static_cast<float>(place.x()), static_cast<float>(place.y())});
  }
  paper.SetPen(kInk, DrawStyle::kSolid, 4);
  for (int line = 0; line < kDenseLines; ++line) {
    paper.Polyline(points);
    for (Point& point : points) point.y += 100;
  }
  paper.SetFont({"Sans Serif", 20});
  paper.Text({1440, 6000}, "Behind them", kBlack);
}

void DrawLightPage(DrawingSurface& paper) {
  paper.SetPen(kInk, DrawStyle::kSolid, 60);
  paper.Line({0, 0}, {5000, 5000});
}

class DensePagesTest : public ::testing::Test {
 protected:
  // The first page of the preview, as it is seen.
  QImage Shown(const DrawPages& draw) {
    QPrinter printer(QPrinter::HighResolution);
    QPrintPreviewWidget preview(&printer);
    QObject::connect(&preview, &QPrintPreviewWidget::paintRequested,
                     [&](QPrinter* paper) { is_drawn = DrawForPreview(*paper, draw); });
    preview.resize(900, 1200);
    preview.show();
    QtLoop().RunUntil([&] { return preview.isVisible(); });
    pages = preview.pageCount();
    return preview.grab().toImage().convertToFormat(QImage::Format_RGB32);
  }
  static int PixelsOf(const QImage& picture, Colour colour) {
    const QRgb wanted = ToQColor(colour).rgb();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
      const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
      count += static_cast<int>(std::count(row, row + picture.width(), wanted));
    }
    return count;
  }

  bool is_drawn = false;
  int pages = 0;
};

TEST_F(DensePagesTest, APageWithFewLinesIsShownAsItIsDrawn) {
  int times = 0;
  const QImage picture = Shown([&times](DrawingSurface& paper) {
    ++times;
    DrawLightPage(paper);
  });
  EXPECT_TRUE(is_drawn);
  EXPECT_EQ(times, 1) << "and not as a picture";
  EXPECT_GT(PixelsOf(picture, kInk), 300);
}

TEST_F(DensePagesTest, APageWithVeryManyLinesIsShownAsAPicture) {
  int times = 0;
  const QImage picture = Shown([&times](DrawingSurface& paper) {
    ++times;
    DrawDensePage(paper);
  });
  EXPECT_TRUE(is_drawn);
  EXPECT_EQ(times, 2) << "first its lines, as far as they are not too many";
  EXPECT_GT(PixelsOf(picture, kInk), 10'000);
  EXPECT_GT(PixelsOf(picture, kBlack), 10) << "what is drawn last";
}

TEST_F(DensePagesTest, SeveralPagesAreShownAsTheyAreDrawn) {
  Shown([](DrawingSurface& paper) {
    DrawDensePage(paper);
    paper.NewPage();
    DrawLightPage(paper);
  });
  EXPECT_TRUE(is_drawn);
  EXPECT_EQ(pages, 2);
}

TEST_F(DensePagesTest, TheWindowGoesOnMeanwhile) {
  std::atomic<bool> has_ticked = false;
  QTimer::singleShot(0, [&has_ticked] { has_ticked = true; });
  EXPECT_TRUE(DrawBesideLoop([&has_ticked](const auto&) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!has_ticked && std::chrono::steady_clock::now() < end) std::this_thread::yield();
  }));
  EXPECT_TRUE(has_ticked);
}

// Nothing may draw on the caller's paper any more when it comes back.
TEST_F(DensePagesTest, WhoStopsWaitingHasNothingDrawnAnyMore) {
  QtUser user;
  user.With("Waiting", [](QWidget& window) { window.findChild<QPushButton*>()->click(); });
  bool was_told = false;
  const bool is_whole = DrawBesideLoop([&was_told](const auto& is_given_up) {
    while (!is_given_up()) std::this_thread::yield();
    was_told = true;
  });
  EXPECT_FALSE(is_whole);
  EXPECT_TRUE(was_told);
}

TEST_F(DensePagesTest, WhatTheDrawingThrowsComesOut) {
  for (const int code : {kDiskFull, kDeviceIo}) {
    EXPECT_EQ(
        ErrorOf([code] { DrawBesideLoop([code](const auto&) { throw RunTimeError(code); }); }),
        code);
  }
}

TEST_F(DensePagesTest, ASurfaceStopsWhenItIsToldTo) {
  QImage image(400, 400, QImage::Format_RGB32);
  image.fill(Qt::white);
  {
    bool is_to_stop = false;
    QtSurface surface(static_cast<QPaintDevice&>(image));
    surface.StopWhen([&is_to_stop] { return is_to_stop; });
    surface.SetPen(kInk, DrawStyle::kSolid, 1);
    surface.FilledBox({}, {1440, 1440});
    surface.SetPen(kBlack, DrawStyle::kSolid, 1);
    is_to_stop = true;
    DrawLightPage(surface);
    surface.FilledBox({}, {1440, 1440});
    surface.Text({}, "not any more", kBlack);
    surface.Cls(kBlack);
    EXPECT_EQ(surface.Strokes(), 0);
  }
  EXPECT_GT(PixelsOf(image, kInk), 96 * 96);
  EXPECT_EQ(PixelsOf(image, kBlack), 0);
}

}  // namespace
}  // namespace tarnlink
