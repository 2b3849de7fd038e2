#include <gtest/gtest.h>

#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPalette>
#include <QPdfWriter>
#include <array>

#include "contract/loops.h"
#include "platform/qt/dense_line.h"
#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_surface.h"
#include "support/recording_surface.h"

namespace tarnlink {
namespace {

constexpr float kTwips = 15.0F;  // of one pixel of the test pictures
constexpr int kWidth = 200;
constexpr int kHeight = 100;

class RecordingBench {
 public:
  DrawingSurface& surface() { return surface_; }

 private:
  RecordingSurface surface_{kWidth * kTwips, kHeight* kTwips};
};

class QtSurfaceBench {
 public:
  DrawingSurface& surface() { return surface_; }

 private:
  QImage image_{kWidth, kHeight, QImage::Format_RGB32};
  QtSurface surface_{image_};
};

template <class Bench>
class SurfaceContract : public testing::Test {
 protected:
  Bench bench;
};

using Benches = testing::Types<RecordingBench, QtSurfaceBench>;
TYPED_TEST_SUITE(SurfaceContract, Benches, BenchNames);

TYPED_TEST(SurfaceContract, HasAScaleOf1440ToTheInch) {
  EXPECT_EQ(this->bench.surface().ScaleWidth(), 3000.0F);
  EXPECT_EQ(this->bench.surface().ScaleHeight(), 1500.0F);
  EXPECT_EQ(this->bench.surface().TwipsPerPixelX(), 15.0F);
}

TYPED_TEST(SurfaceContract, MeasuresTextsInTheFontThatIsSet) {
  DrawingSurface& surface = this->bench.surface();
  EXPECT_EQ(surface.TextWidth(""), 0.0F);
  EXPECT_GT(surface.TextWidth("WW"), surface.TextWidth("W"));
  EXPECT_GT(surface.TextWidth("W"), 0.0F);
  surface.SetFont({"Sans Serif", 7});
  const float width = surface.TextWidth(" Temperature : 7000 rpm ");
  const float height = surface.TextHeight("S");
  surface.SetFont({"Sans Serif", 14});
  EXPECT_GT(surface.TextWidth(" Temperature : 7000 rpm "), width * 1.5F);
  EXPECT_GT(surface.TextHeight("S"), height * 1.5F);
  EXPECT_EQ(surface.TextHeight("S"), surface.TextHeight("g"));
}

TYPED_TEST(SurfaceContract, HoldsOnForANewPage) {
  DrawingSurface& surface = this->bench.surface();
  surface.SetFont({"Sans Serif", 14});
  const float width = surface.TextWidth("W");
  surface.NewPage();
  EXPECT_EQ(surface.TextWidth("W"), width);
  EXPECT_EQ(surface.ScaleWidth(), 3000.0F);
}

TYPED_TEST(SurfaceContract, CountsCharactersAndNotBytes) {
  DrawingSurface& surface = this->bench.surface();
  EXPECT_LT(surface.TextWidth("°"), surface.TextWidth("WW"));
}

TEST(RecordingSurface, WritesDownEveryOperation) {
  RecordingSurface surface(100, 50);
  surface.Cls(kWhite);
  surface.SetPen(0x0000FF, DrawStyle::kDashDot, 2);
  surface.Line({0, 0.5F}, {10, 20});
  const std::array<Point, 3> points{Point{0, 0}, Point{1, 2}, Point{3, -4}};
  surface.Polyline(points);
  surface.Polyline(std::span(points).first(1));
  surface.FilledBox({1, 2}, {3, 4});
  surface.SetClip({0, 0}, {9, 9});
  surface.SetClip({1, 1}, {1, 1});
  surface.SetFont({"Verdana", 8, true, false});
  surface.Text({3, 4}, "abc", 0);
  surface.NewPage();
  EXPECT_EQ(surface.Describe(),
            "cls FFFFFF\n"
            "pen 0000FF dash-dot 2\n"
            "line 0,0.5 10,20\n"
            "polyline 0,0 1,2 3,-4\n"
            "box 1,2 3,4\n"
            "clip 0,0 9,9\n"
            "no clip\n"
            "font Verdana 8 bold\n"
            "text 3,4 000000 \"abc\"\n"
            "page\n");
  EXPECT_EQ(surface.Only("line"), RecordingSurface::Log{"line 0,0.5 10,20"});
}

// A small picture as text: one character a pixel, '.' for the background.
class Picture : public testing::Test {
 protected:
  explicit Picture(QImage::Format format = QImage::Format_RGB32)
      : image(12, 8, format), surface(image) {
    surface.Cls(kWhite);
    surface.SetPen(kBlack, DrawStyle::kSolid, 1);
  }
  // The middle of a pixel.
  static Point At(int x, int y) {
    return {(static_cast<float>(x) + 0.5F) * kTwips, (static_cast<float>(y) + 0.5F) * kTwips};
  }
  std::string Shown() const {
    std::string text;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        text += image.pixelColor(x, y) == QColor(Qt::white) ? '.' : '#';
      }
      text += '\n';
    }
    return text;
  }

  QImage image;
  QtSurface surface;
};

TEST_F(Picture, ALineCoversBothItsEnds) {
  surface.Line(At(1, 1), At(5, 1));
  surface.Line(At(8, 2), At(8, 5));
  EXPECT_EQ(Shown(),
            "............\n"
            ".#####......\n"
            "........#...\n"
            "........#...\n"
            "........#...\n"
            "........#...\n"
            "............\n"
            "............\n");
}

TEST_F(Picture, APolylineJoinsItsPointsInOrder) {
  const std::array<Point, 4> points{At(1, 6), At(1, 2), At(5, 2), At(5, 5)};
  surface.Polyline(points);
  EXPECT_EQ(Shown(),
            "............\n"
            "............\n"
            ".#####......\n"
            ".#...#......\n"
            ".#...#......\n"
            ".#...#......\n"
            ".#..........\n"
            "............\n");
}

TEST_F(Picture, FewerThanTwoPointsDrawNothing) {
  const std::string before = Shown();
  const std::array<Point, 1> point{At(1, 1)};
  surface.Polyline(point);
  surface.Polyline({});
  EXPECT_EQ(Shown(), before);
}

TEST_F(Picture, AFilledBoxCoversBothItsCornersWhicheverComesFirst) {
  surface.FilledBox(At(4, 5), At(2, 3));
  EXPECT_EQ(Shown(),
            "............\n"
            "............\n"
            "............\n"
            "..###.......\n"
            "..###.......\n"
            "..###.......\n"
            "............\n"
            "............\n");
}

TEST_F(Picture, ANewPageLeavesAPictureAsItIs) {
  surface.FilledBox(At(2, 2), At(3, 3));
  const std::string before = Shown();
  surface.NewPage();
  EXPECT_EQ(Shown(), before);
}

TEST_F(Picture, AWidePenWidensLinesAndBoxes) {
  surface.SetPen(kBlack, DrawStyle::kSolid, 2);
  surface.FilledBox(At(2, 2), At(3, 3));
  const std::array<Point, 2> points{At(7, 4), At(10, 4)};
  surface.Polyline(points);
  EXPECT_EQ(Shown(),
            "............\n"
            ".###........\n"
            ".###........\n"
            ".###..#####.\n"
            "......#####.\n"
            "............\n"
            "............\n"
            "............\n");
}

TEST_F(Picture, NothingIsDrawnOutsideTheClipUntilItIsLifted) {
  surface.SetClip(At(2, 1), At(4, 2));
  surface.Line(At(0, 1), At(11, 1));
  const std::array<Point, 2> points{At(0, 2), At(11, 2)};
  surface.Polyline(points);
  surface.FilledBox(At(0, 3), At(11, 3));
  surface.SetClip(At(0, 0), At(0, 0));
  surface.Line(At(0, 5), At(11, 5));
  EXPECT_EQ(Shown(),
            "............\n"
            "..###.......\n"
            "..###.......\n"
            "............\n"
            "............\n"
            "############\n"
            "............\n"
            "............\n");
}

TEST_F(Picture, ClsCoversAllAlsoUnderAClip) {
  surface.FilledBox(At(0, 0), At(11, 7));
  surface.SetClip(At(2, 1), At(4, 2));
  surface.Cls(kWhite);
  EXPECT_EQ(Shown().find('#'), std::string::npos);
  surface.FilledBox(At(0, 0), At(11, 7));
  EXPECT_EQ(Shown().find('#'), std::string("............\n..").size()) << "the clip still holds";
}

TEST_F(Picture, DashedLinesHaveGaps) {
  for (const DrawStyle style :
       {DrawStyle::kDash, DrawStyle::kDot, DrawStyle::kDashDot, DrawStyle::kDashDotDot}) {
    surface.Cls(kWhite);
    surface.SetPen(kBlack, style, 1);
    const std::array<Point, 2> points{At(0, 3), At(11, 3)};
    surface.Polyline(points);
    const std::string row = Shown().substr(3 * 13, 12);
    EXPECT_NE(row.find('#'), std::string::npos);
    EXPECT_NE(row.find('.'), std::string::npos) << row;
  }
}

TEST_F(Picture, ColoursAreBlueGreenRed) {
  surface.SetPen(0x0000FF, DrawStyle::kSolid, 1);
  surface.FilledBox(At(1, 1), At(1, 1));
  surface.SetPen(0xFF8000, DrawStyle::kSolid, 1);
  surface.FilledBox(At(2, 1), At(2, 1));
  EXPECT_EQ(image.pixelColor(1, 1), QColor(255, 0, 0));
  EXPECT_EQ(image.pixelColor(2, 1), QColor(0, 128, 255));
}

TEST_F(Picture, PlacesFarOutsideAreCutOff) {
  const std::array<Point, 2> across{Point{-1e9F, 3.5F * kTwips}, Point{1e9F, 3.5F * kTwips}};
  surface.Polyline(across);
  surface.Line({2.5F * kTwips, -3e38F}, {2.5F * kTwips, 3e38F});
  surface.FilledBox({-1e30F, 7 * kTwips}, {1e30F, 1e30F});
  EXPECT_EQ(Shown(),
            "..#.........\n"
            "..#.........\n"
            "..#.........\n"
            "############\n"
            "..#.........\n"
            "..#.........\n"
            "..#.........\n"
            "############\n");
}

TEST(QtSurfaceText, StandsBelowAndToTheRightOfItsCorner) {
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  QtSurface surface(image);
  surface.Cls(kWhite);
  surface.SetFont({"Sans Serif", 12});
  surface.Text({20 * kTwips, 30 * kTwips}, "HHH", 0x0000FF);
  QRect ink;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      if (image.pixelColor(x, y) != QColor(Qt::white)) ink |= QRect(x, y, 1, 1);
    }
  }
  ASSERT_FALSE(ink.isEmpty());
  const int width = static_cast<int>(surface.TextWidth("HHH") / kTwips);
  const int height = static_cast<int>(surface.TextHeight("HHH") / kTwips);
  EXPECT_TRUE(QRect(19, 30, width + 3, height + 1).contains(ink)) << ink.x() << " " << ink.y();
  EXPECT_GT(ink.width(), width / 2);
}

TEST(QtSurfaceText, IsDrawnAsItIsMeasuredBeforeAFontIsSet) {
  const auto drawn = [](bool set_font) {
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    QtSurface surface(image);
    surface.Cls(kWhite);
    if (set_font) surface.SetFont({});
    surface.Text({0, 0}, "HHHHHHHH", kBlack);
    return image;
  };
  EXPECT_EQ(drawn(false), drawn(true));
}

TEST(QtSurface, OnAFinerScreenAPixelHasFewerUnits) {
  QImage image(400, 200, QImage::Format_RGB32);
  const QtSurface surface(image, 2 * QtSurface::kScreenDpi);
  EXPECT_EQ(surface.ScaleWidth(), 3000.0F);
  EXPECT_EQ(surface.TwipsPerPixelX(), 7.5F);
}

// Paper of 300 dots to the inch, that of a picture behind it to be looked at.
TEST(QtSurface, OnPaperBoxesAndClipsLieWhereTheyAreToLie) {
  QImage sheet(600, 600, QImage::Format_RGB32);
  sheet.setDotsPerMeterX(11'811);
  sheet.setDotsPerMeterY(11'811);
  sheet.fill(Qt::white);
  {
    QtSurface paper(static_cast<QPaintDevice&>(sheet));
    ASSERT_NEAR(paper.TwipsPerPixelX(), 4.8, 1e-6);
    paper.SetPen(0x0000FF, DrawStyle::kSolid, 1);
    paper.FilledBox({480, 960}, {960, 480});
    paper.SetClip({1440, 1440}, {1920, 1920});
    paper.SetPen(0xFF0000, DrawStyle::kSolid, 10);
    paper.Line({0, 1680}, {2880, 1680});
    paper.FilledBox({1200, 1440}, {1500, 1500});
    paper.SetClip({}, {});
    paper.Line({0, 2640}, {2880, 2640});
  }
  const auto is = [&](int x, int y, QColor colour) { return sheet.pixelColor(x, y) == colour; };
  EXPECT_TRUE(is(100, 100, Qt::red) && is(200, 200, Qt::red) && is(150, 150, Qt::red));
  EXPECT_TRUE(is(98, 150, Qt::white) && is(202, 150, Qt::white) && is(150, 98, Qt::white));
  EXPECT_TRUE(is(350, 350, Qt::blue));
  EXPECT_TRUE(is(298, 350, Qt::white) && is(402, 350, Qt::white)) << "beyond the clip";
  EXPECT_TRUE(is(305, 305, Qt::blue) && is(280, 305, Qt::white));
  EXPECT_TRUE(is(2, 550, Qt::blue) && is(597, 550, Qt::blue)) << "the clip is off again";
}

TEST(QtSurface, OnPaperTheResolutionIsThePrintersAndEverythingDraws) {
  QBuffer pdf;
  pdf.open(QIODevice::WriteOnly);
  {
    QPdfWriter paper(&pdf);
    paper.setResolution(600);
    QtSurface surface(paper);
    EXPECT_TRUE(surface.Ready());
    EXPECT_FLOAT_EQ(surface.TwipsPerPixelX(), 2.4F);
    EXPECT_GT(surface.ScaleWidth(), 10'000.0F);
    surface.SetFont({"Sans Serif", 8});
    const float on_paper = surface.TextWidth(" Temperature : 7000 rpm ");
    EXPECT_GT(on_paper, 1000.0F);
    EXPECT_LT(on_paper, 4000.0F);
    surface.SetPen(0x0000FF, DrawStyle::kSolid, 12);
    const std::array<Point, 3> points{Point{0, 0}, Point{5000, 5000}, Point{9000, 0}};
    surface.Polyline(points);
    surface.FilledBox({100, 100}, {200, 200});
    surface.Text({1000, 1000}, "text", 0);
  }
  EXPECT_GT(pdf.data().size(), 1000);
}

TEST(QtSurface, OnAPrinterThatIsNotThereEverythingIsWithoutEffect) {
  QImage nothing;
  QtSurface surface(nothing);
  EXPECT_FALSE(surface.Ready());
  surface.Cls(0);
  surface.SetPen(0, DrawStyle::kSolid, 1);
  surface.Line({0, 0}, {1, 1});
  surface.FilledBox({0, 0}, {1, 1});
  surface.SetClip({0, 0}, {1, 1});
  surface.SetFont({});
  surface.Text({0, 0}, "x", 0);
  surface.NewPage();
  EXPECT_EQ(surface.ScaleWidth(), 0.0F);
}

// The fast lines against QPainter's own: where one has drawn, the other has within one pixel.
TEST(DenseLine, CoversWhatQPainterCoversWithinOnePixel) {
  std::uint32_t seed = 12345;
  const auto random = [&](int range) {
    seed = seed * 1664525U + 1013904223U;
    return static_cast<int>((seed >> 8) % static_cast<std::uint32_t>(range));
  };
  int drawn_pixels = 0;
  int far_off = 0;
  for (const int width : {1, 2, 3}) {
    for (int round = 0; round < 50; ++round) {
      std::vector<QPoint> points;
      for (int i = 0; i < 6; ++i) points.emplace_back(random(160) - 30, random(140) - 20);
      QImage expected(100, 100, QImage::Format_RGB32);
      expected.fill(Qt::white);
      QImage drawn = expected;
      {
        QPainter painter(&expected);
        painter.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
        painter.drawPolyline(points.data(), static_cast<int>(points.size()));
      }
      DrawDenseLine(drawn, drawn.rect(), points, {qRgb(0, 0, 0), width});
      const auto near = [](const QImage& image, int x, int y) {
        for (int dy = -1; dy <= 1; ++dy) {
          for (int dx = -1; dx <= 1; ++dx) {
            const QPoint at(x + dx, y + dy);
            if (!image.rect().contains(at) || image.pixel(at) != qRgb(255, 255, 255)) return true;
          }
        }
        return false;
      };
      for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 100; ++x) {
          const bool one = expected.pixel(x, y) != qRgb(255, 255, 255);
          const bool other = drawn.pixel(x, y) != qRgb(255, 255, 255);
          if (one) ++drawn_pixels;
          if (one != other && !near(one ? drawn : expected, x, y)) ++far_off;
        }
      }
    }
  }
  EXPECT_GT(drawn_pixels, 50'000);
  EXPECT_LT(far_off, drawn_pixels / 1000);
}

TEST(DenseLine, ALineThatTurnsBackDoesNotFillWhatLiesBetween) {
  QImage image(40, 40, QImage::Format_RGB32);
  image.fill(Qt::white);
  const std::vector<QPoint> points{{5, 5}, {35, 20}, {5, 35}};
  DrawDenseLine(image, image.rect(), points, {qRgb(0, 0, 0), 2});
  EXPECT_EQ(image.pixelColor(10, 20), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(20, 12), QColor(Qt::black));
  EXPECT_EQ(image.pixelColor(20, 28), QColor(Qt::black));
}

// A line for each round, with a clip now and then and a box between.
QImage RandomLines(bool gathers, int shapes) {
  std::uint32_t seed = 99;
  const auto random = [&](int range) {
    seed = seed * 1664525U + 1013904223U;
    return static_cast<int>((seed >> 8) % static_cast<std::uint32_t>(range));
  };
  QImage image(150, 130, QImage::Format_RGB32);
  QtSurface surface(image);
  surface.Cls(kWhite);
  if (gathers) surface.GatherLines();
  for (int i = 0; i < shapes; ++i) {
    surface.SetPen(random(0xFFFFFF), static_cast<DrawStyle>(random(5)), 1 + random(3));
    if (i % 50 == 30) surface.SetClip({300, 300}, {1500, 1200});
    if (i % 50 == 40) surface.SetClip({0, 0}, {0, 0});
    if (i % 20 == 10) surface.FilledBox({600, 600}, {900, 700});
    std::vector<Point> points;
    const int height = i % 3 == 0 ? 130 : 5;
    for (int step = 0; step < 170 / (1 + i % 4); ++step) {
      // Each tenth line turns back now and then.
      const int x = 160 - step * (1 + i % 4) + (i % 10 == 0 && step % 40 > 30 ? 30 : 0);
      points.push_back({static_cast<float>(x) * kTwips, static_cast<float>(random(height)) * 20});
    }
    surface.Polyline(points);
  }
  surface.PaintLines();
  return image;
}

TEST(QtSurface, LinesThatAreGatheredAreTheSamePicture) {
  for (const int shapes : {5, 9, 200}) {
    EXPECT_TRUE(RandomLines(false, shapes) == RandomLines(true, shapes)) << shapes;
  }
}

TEST_F(Picture, AStrokeToANeighbouringPixelIsSeenInEveryStyle) {
  for (int style = 0; style < 5; ++style) {
    surface.SetPen(kBlack, static_cast<DrawStyle>(style), 1);
    for (int x = 2; x <= 8; ++x) {
      for (int y = 3; y <= 5; ++y) {
        surface.Cls(kWhite);
        surface.Line(At(5, 4), At(x > 6 ? 6 : (x < 4 ? 4 : x), y));
        EXPECT_EQ(image.pixelColor(5, 4), QColor(Qt::black)) << style << " " << x << "," << y;
        EXPECT_EQ(image.pixelColor(x > 6 ? 6 : (x < 4 ? 4 : x), y), QColor(Qt::black));
      }
    }
  }
}

TEST_F(Picture, AnotherOriginMovesEverythingByWholePixelsAndTheDashesWithIt) {
  const auto draw = [this] {
    surface.Cls(kWhite);
    const std::array<Point, 4> points{At(1, 6), At(1, 2), At(9, 2), At(11, 7)};
    surface.SetPen(kBlack, DrawStyle::kDashDot, 1);
    surface.Polyline(points);
    surface.Line(At(3, 7), At(11, 7));
    surface.FilledBox(At(4, 4), At(6, 5));
    return image.copy();
  };
  const QImage before = draw();
  surface.SetOrigin(3);
  surface.SetDashOrigin(3);
  const QImage after = draw();
  EXPECT_TRUE(before.copy(3, 0, 9, 8) == after.copy(0, 0, 9, 8));
  EXPECT_FALSE(before == after);
}

// The first four columns of six, wherever the line begins.
TEST_F(Picture, DashesKeepToTheirPlaceOnThePicture) {
  const auto row = [this](int from, int to) {
    surface.Cls(kWhite);
    surface.SetPen(kBlack, DrawStyle::kDash, 1);
    const std::array<Point, 2> points{At(from, 3), At(to, 3)};
    surface.Polyline(points);
    return Shown().substr(3 * 13, 12);
  };
  EXPECT_EQ(row(0, 11), "####..####..");
  EXPECT_EQ(row(11, 0), "####..####..");
  EXPECT_EQ(row(2, 8), "..##..###...");
  surface.SetDashOrigin(2);
  EXPECT_EQ(row(0, 11), "##..####..##");
  surface.SetDashOrigin(-1);
  EXPECT_EQ(row(0, 11), ".####..####.");
}

TEST(Colours, GoToQtAndBack) {
  for (const Colour colour : {0, 0xFFFFFF, 0x0000FF, 0x00FF00, 0xFF0000, 0x123456}) {
    EXPECT_EQ(ToColour(ToQColor(colour)), colour);
  }
  EXPECT_EQ(ToQColor(0x0000FF), QColor(Qt::red));
}

TEST(Colours, SystemColoursAreThoseOfThePalette) {
  EXPECT_EQ(ToQColor(kWindowBackground), QGuiApplication::palette().color(QPalette::Base));
  EXPECT_EQ(ToQColor(kFormBackground), QGuiApplication::palette().color(QPalette::Window));
  EXPECT_TRUE(ToQColor(static_cast<Colour>(0x800000FF)).isValid()) << "an unknown number";
}

}  // namespace
}  // namespace tarnlink
