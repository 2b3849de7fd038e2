// The lines of the graph against the same drawn segment by segment with QPainter.

#include <gtest/gtest.h>

#include <QImage>
#include <QLineF>
#include <QPainter>
#include <QPen>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "graph/graph_picture.h"
#include "platform/qt/qt_surface.h"

namespace tarnlink {
namespace {

constexpr QSize kSize(640, 400);
constexpr float kTwips = 15;  // of a pixel
constexpr QRgb kPaper = 0xFFFFFFFF;
constexpr int kSamples = 4000;
constexpr int kStyles = 5;
const std::int64_t kBase = ToSeconds(ToDate({2024, 3, 5, 14, 0, 0}));

// Nothing is clever here: each segment is a line of its own, and where its dashes begin is the
// length of all segments before it.
class SegmentSurface final : public DrawingSurface {
 public:
  explicit SegmentSurface(QImage& image) : image_(image), painter_(&image) {}

  float ScaleWidth() const override { return static_cast<float>(image_.width()) * kTwips; }
  float ScaleHeight() const override { return static_cast<float>(image_.height()) * kTwips; }
  float TwipsPerPixelX() const override { return kTwips; }
  void SetPen(Colour, DrawStyle style, int width) override {
    static constexpr std::array kPenStyles = {Qt::SolidLine, Qt::DashLine, Qt::DotLine,
                                              Qt::DashDotLine, Qt::DashDotDotLine};
    pen_ = QPen(Qt::black, width, kPenStyles.at(static_cast<std::size_t>(style)),
                style == DrawStyle::kSolid ? Qt::SquareCap : Qt::FlatCap);
  }
  void Line(Point from, Point to) override { Segment(from, to, 0); }
  void Polyline(std::span<const Point> points) override {
    double length = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
      Segment(points[i - 1], points[i], length);
      length += QLineF(PixelOf(points[i - 1]), PixelOf(points[i])).length();
    }
  }
  void NewPage() override {}
  void Cls(Colour) override {}
  void FilledBox(Point, Point) override {}
  void SetClip(Point, Point) override {}
  void SetFont(const Font&) override {}
  float TextWidth(std::string_view) const override { return 0; }
  float TextHeight(std::string_view) const override { return 0; }
  void Text(Point, std::string_view, Colour) override {}

 private:
  static QPoint PixelOf(Point point) {
    return {static_cast<int>(std::floor(point.x / kTwips)),
            static_cast<int>(std::floor(point.y / kTwips))};
  }
  void Segment(Point from, Point to, double length) {
    const QPoint begin = PixelOf(from);
    const QPoint end = PixelOf(to);
    QPen pen = pen_;
    if (length == 0 && (end - begin).manhattanLength() <= 2) {
      // Qt leaves out a line without length, and a stroke is to be seen in every style.
      pen.setStyle(Qt::SolidLine);
      pen.setCapStyle(Qt::SquareCap);
      painter_.setPen(pen);
      painter_.drawPoint(begin);
      return painter_.drawPoint(end);
    }
    if (pen_.style() != Qt::SolidLine) pen.setDashOffset(length / pen_.width());
    painter_.setPen(pen);
    painter_.drawLine(begin, end);
  }

  QImage& image_;
  QPainter painter_;
  QPen pen_;
};

bool IsDrawn(const QImage& image, int x, int y) { return image.pixel(x, y) != kPaper; }

bool HasNear(const QImage& image, int x, int y, int distance) {
  for (int row = y - distance; row <= y + distance; ++row) {
    for (int column = x - distance; column <= x + distance; ++column) {
      if (image.rect().contains(column, row) && IsDrawn(image, column, row)) return true;
    }
  }
  return false;
}

// How many pixels are drawn, and of how many the other picture has nothing near.
struct Count {
  long drawn = 0;
  long far_off = 0;

  double Share() const { return static_cast<double>(far_off) / static_cast<double>(drawn); }
};

// The outermost pixels are left out: what they are near to may lie outside.
void AddFarOff(const QImage& image, const QImage& other, int distance, Count& count) {
  for (int y = distance; y < image.height() - distance; ++y) {
    for (int x = distance; x < image.width() - distance; ++x) {
      if (!IsDrawn(image, x, y)) continue;
      ++count.drawn;
      if (!IsDrawn(other, x, y) && !HasNear(other, x, y, distance)) ++count.far_off;
    }
  }
}

struct Shape {
  const char* name;
  std::function<int(int second, std::mt19937& random)> value;  // 0 to 255
  bool is_crowded = false;  // columns that are covered high and low
  bool is_set_back = false;
};

std::vector<Shape> Shapes() {
  const auto noise = [](int, std::mt19937& random) { return static_cast<int>(random() % 256); };
  const auto calm = [](int second, std::mt19937&) {
    return static_cast<int>(127 + 120 * std::sin(second / 90.0));
  };
  return {
      {"calm", calm},
      {"noisy", noise, true},
      {"mixed",
       [=](int second, std::mt19937& random) {
         if (second / 100 % 3 == 0) return noise(second, random);
         return second / 40 % 2 == 0 ? 30 : calm(second, random);
       },
       true},
      {"set back", calm, false, true},
  };
}

class GraphLinesTest : public ::testing::Test {
 protected:
  // A line that is sampled each second; the clock may be set back by five minutes on the way.
  static Graphic Record(const Shape& shape, int style) {
    Graphic data;
    data.Attributes.resize(1);
    GraphAttribute& line = data.Attributes.front();
    line.ShowLine = true;
    line.StoredAs = kStoredLsb;
    line.Factor = 0.5F;
    line.LineStyle = static_cast<std::int16_t>(style);
    data.Channels[0].Dimension(MeasureChannel::kUpperBound);
    std::mt19937 random(3);
    for (int i = kSamples; i > 0; --i) {
      const int back = shape.is_set_back && i > 120 ? 300 : 0;
      data.Channels[0].Append({shape.value(i, random), kBase - i + back});
    }
    return data;
  }
  static GraphView ViewOf(int scale) {
    return {.BaseTime = FromSeconds(kBase),
            .TimeScale = scale,
            .ScaleWidth = kSize.width() * kTwips,
            .ScaleHeight = kSize.height() * kTwips};
  }
  void Draw(DrawingSurface& surface, const Graphic& data, int scale, int width) const {
    const GraphView view = ViewOf(scale);
    GraphPicture picture(surface, data, view, 100, meas_only, {.solid = width, .broken = width});
    picture.DrawLines();
  }
  QImage Drawn(const Graphic& data, int scale, int width) const {
    QImage image = Paper();
    QtSurface surface(image);
    surface.GatherLines();
    Draw(surface, data, scale, width);
    surface.PaintLines();
    return image;
  }
  QImage Expected(const Graphic& data, int scale, int width) const {
    QImage image = Paper();
    SegmentSurface surface(image);
    Draw(surface, data, scale, width);
    return image;
  }
  static QImage Paper() {
    QImage image(kSize, QImage::Format_RGB32);
    image.fill(kPaper);
    return image;
  }
  // Both ways, in three views.
  Count Compare(const Shape& shape, int style, int width) const {
    const Graphic data = Record(shape, style);
    Count count;
    for (const int scale : {1, 10, 60}) {
      const QImage drawn = Drawn(data, scale, width);
      const QImage expected = Expected(data, scale, width);
      AddFarOff(drawn, expected, 1, count);
      AddFarOff(expected, drawn, 1, count);
    }
    EXPECT_GT(count.drawn, 3000);
    return count;
  }

  bool meas_only = false;
};

std::string Case(const Shape& shape, int style, int width) {
  return std::string(shape.name) + ", style " + std::to_string(style) + ", width " +
         std::to_string(width);
}

TEST_F(GraphLinesTest, SolidLinesAreThoseOfTheirSegmentsWithinOnePixel) {
  for (const Shape& shape : Shapes()) {
    for (const int width : {1, 2, 3}) {
      EXPECT_EQ(Compare(shape, 0, width).far_off, 0) << Case(shape, 0, width);
    }
  }
}

TEST_F(GraphLinesTest, EveryMeasuredStrokeIsThereInEveryStyle) {
  meas_only = true;
  for (const Shape& shape : Shapes()) {
    for (int style = 0; style < kStyles; ++style) {
      for (const int width : {1, 2}) {
        EXPECT_EQ(Compare(shape, style, width).far_off, 0) << Case(shape, style, width);
      }
    }
  }
}

// The gaps of ours keep to their places on the picture, those of the segments to the length of the
// line before them: where both fall on one another a longer gap comes about, on either side.
TEST_F(GraphLinesTest, DashedLinesAreWithinOnePixelButForAFewThatMeetAGap) {
  constexpr double kCrowded = 0.003;
  constexpr double kLone = 0.04;
  for (const Shape& shape : Shapes()) {
    for (int style = 1; style < kStyles; ++style) {
      const Count count = Compare(shape, style, 1);
      EXPECT_LT(count.Share(), shape.is_crowded ? kCrowded : kLone) << Case(shape, style, 1);
    }
  }
}

// Of a wider pen the gaps are wider than the pixel that two pictures may differ by.
TEST_F(GraphLinesTest, DashedLinesLieOnTheSolidOneAndHaveNoGapLongerThanTold) {
  constexpr std::array kInked = {1.0, 4.0 / 6, 1.0 / 3, 5.0 / 9, 6.0 / 12};
  for (const Shape& shape : Shapes()) {
    for (int style = 1; style < kStyles; ++style) {
      for (const int width : {1, 2, 4}) {
        Count outside;
        Count gaps;
        for (const int scale : {1, 10, 60}) {
          const QImage solid = Drawn(Record(shape, 0), scale, width);
          const QImage dashed = Drawn(Record(shape, style), scale, width);
          AddFarOff(dashed, solid, 0, outside);
          AddFarOff(solid, dashed, width, gaps);
        }
        EXPECT_EQ(outside.far_off, 0) << Case(shape, style, width);
        EXPECT_LT(gaps.Share(), 0.01) << Case(shape, style, width);
        const double inked = static_cast<double>(outside.drawn) / static_cast<double>(gaps.drawn);
        if (!shape.is_crowded) {
          EXPECT_NEAR(inked, kInked.at(static_cast<std::size_t>(style)), 0.1)
              << Case(shape, style, width);
        }
      }
    }
  }
}

}  // namespace
}  // namespace tarnlink
