// The kept picture of the graph: what moves to the left with time against what is drawn anew.

#include "ui/graph_image.h"

#include <gtest/gtest.h>

#include <QImage>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "platform/qt/qt_surface.h"

namespace tarnlink {
namespace {

const std::int64_t kBegin = ToSeconds(ToDate({2024, 3, 5, 14, 0, 0}));

constexpr int kAnalog = 10;      // lines that are drawn
constexpr int kFirstLane = 100;  // lines of bits
constexpr std::uint32_t kSeed = 7;

// A graph of lines that are sampled at different paces, on a clock of its own.
class Recording {
 public:
  explicit Recording(std::uint32_t seed) : random_(seed) {
    LineColors colours;
    data.Attributes = LoadDefaultAttributes(colours);
    for (int i = 0; i < kAnalog; ++i) {
      GraphAttribute& line = Line(i);
      line.ShowLine = true;
      line.LineStyle = static_cast<std::int16_t>(i % 5);
      line.Unit = i % 5;
      line.StoredAs = kStoredLsb;
      line.Factor = i % 5 == kRpm ? 30.0F : (i % 5 == kBar ? 0.03F : 0.5F);
      data.AllocateChannel(i);
    }
    for (int i = kFirstLane; i < kFirstLane + 4; ++i) {
      Line(i).ShowLine = true;
      Line(i).LineStyle = static_cast<std::int16_t>(i % 3);
    }
  }

  GraphAttribute& Line(int index) { return data.Attributes.at(static_cast<std::size_t>(index)); }
  int Below(int bound) { return static_cast<int>(random_() % static_cast<std::uint32_t>(bound)); }

  // One second goes by.
  void Tick() {
    static constexpr std::array kEvery = {1, 1, 2, 3, 7, 20, 61, 300, 1, 1000};
    ++now;
    for (int i = 0; i < kAnalog; ++i) {
      const bool is_noise = i % 2 == 0;
      const auto calm = static_cast<int>((now / (3 + i)) % 256);
      if (now % kEvery.at(static_cast<std::size_t>(i)) == 0)
        Sample(i, is_noise ? Below(256) : calm);
    }
    if (Below(3) == 0) Sample(kFirstLane, Below(4) == 0 ? Below(65536) : 0x0F0F);
  }
  void Run(int seconds) {
    for (int i = 0; i < seconds; ++i) Tick();
  }
  void Sample(int index, int value) { data.AddMeasurement(value, FromSeconds(now), index); }

  Graphic data;
  std::int64_t now = kBegin;

 private:
  std::mt19937 random_;
};

struct Setting {
  int scale = 10;
  QSize size{400, 300};
  double ratio = 1;
  bool meas_only = false;
};

class GraphImageTest : public ::testing::Test {
 protected:
  GraphView ViewAt(double seconds) const {
    return {.BaseTime = seconds / kSecondsPerDay,
            .TimeScale = setting.scale,
            .ScaleWidth = static_cast<float>(setting.size.width()) * 15 - 7,
            .ScaleHeight = static_cast<float>(setting.size.height()) * 15};
  }
  void Update(double seconds) {
    image.Update(recording.data, ViewAt(seconds), lane_height, setting.meas_only, setting.size,
                 setting.ratio);
  }
  void UpdateNow() { Update(static_cast<double>(recording.now)); }
  // Where the picture differs from one that is drawn anew at the same places.
  std::string Difference() const {
    GraphImage anew = image;
    anew.Redraw(recording.data);
    const QImage& one = image.image();
    const QImage& other = anew.image();
    if (one == other) return "";
    for (int y = 0; y < one.height(); ++y) {
      for (int x = 0; x < one.width(); ++x) {
        if (one.pixel(x, y) != other.pixel(x, y)) {
          return "column " + std::to_string(x) + " row " + std::to_string(y) + " after " +
                 std::to_string(image.shift()) + " columns";
        }
      }
    }
    return "";
  }
  // How often the picture was moved of so many steps, each held against a new drawing.
  int Follow(int steps) {
    int moved = 0;
    for (int i = 0; i < steps && !HasFailure(); ++i) {
      recording.Run(recording.Below(3) == 0 ? recording.Below(40) : recording.Below(3));
      const int before = image.shift();
      UpdateNow();
      if (image.shift() > before) ++moved;
      EXPECT_EQ(Difference(), "") << "step " << i;
    }
    return moved;
  }

  Recording recording{kSeed};
  Setting setting;
  float lane_height = 180;
  GraphImage image;
};

// --- The same as drawn anew ----------------------------------------------------------------------

TEST_F(GraphImageTest, MovesWithTimeInEveryScaleAndStyleAsIfDrawnAnew) {
  for (const bool meas_only : {false, true}) {
    for (const int scale : {1, 5, 10, 20, 60}) {
      setting = {.scale = scale, .meas_only = meas_only};
      SCOPED_TRACE("scale " + std::to_string(scale) + (meas_only ? ", strokes" : ""));
      recording.Run(400);
      UpdateNow();
      EXPECT_GT(Follow(150), 30);
    }
  }
}

TEST_F(GraphImageTest, MovesWithTimeInEverySizeAndOnFinerScreens) {
  for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
    for (const QSize size : {QSize(233, 120), QSize(601, 411)}) {
      setting = {.scale = 5, .size = size, .ratio = ratio};
      SCOPED_TRACE(std::to_string(ratio) + " " + std::to_string(size.width()));
      recording.Run(300);
      UpdateNow();
      EXPECT_EQ(image.image().width(), std::ceil(size.width() * ratio));
      EXPECT_EQ(image.image().devicePixelRatio(), ratio);
      EXPECT_GT(Follow(60), 20);
    }
  }
}

TEST_F(GraphImageTest, MovesWithAClockOfFractions) {
  setting.scale = 1;
  recording.Run(100);
  UpdateNow();
  for (int i = 0; i < 300 && !HasFailure(); ++i) {
    recording.Run(recording.Below(2));
    Update(static_cast<double>(recording.now) + 0.001 * recording.Below(1000));
    EXPECT_EQ(Difference(), "") << "step " << i;
  }
}

// Samples that lie ahead come into view when the right edge moves on.
TEST_F(GraphImageTest, MovesOverWhatWasRecordedBefore) {
  recording.Run(7200);
  double base = static_cast<double>(kBegin + 1000);
  Update(base);
  int moved = 0;
  for (int i = 0; i < 300 && !HasFailure(); ++i) {
    const int before = image.shift();
    base += recording.Below(20);
    Update(base);
    if (image.shift() > before) ++moved;
    EXPECT_EQ(Difference(), "") << "step " << i;
  }
  EXPECT_GT(moved, 200);
}

TEST_F(GraphImageTest, AClockThatIsSetBackAndForwardIsDrawnAnew) {
  setting.scale = 5;
  recording.Run(600);
  UpdateNow();
  for (const int jump : {-1, -30, -3600, 3600, -100, 45, -2}) {
    recording.now += jump;
    Follow(80);
  }
  // It moves again when no line in the picture goes back any more.
  recording.Run(4000);
  UpdateNow();
  EXPECT_GT(Follow(80), 20);
}

TEST_F(GraphImageTest, SamplesThatAChannelLosesLeaveThePicture) {
  recording.data.Channels[0].Dimension(50);
  recording.data.Channels[1].Dimension(2);
  recording.data.Channels[2].Dimension(1);
  Follow(200);
}

TEST_F(GraphImageTest, EveryChangeOfTheGraphShows) {
  recording.Run(700);
  UpdateNow();
  const std::vector<std::function<void()>> changes = {
      [this] { recording.Line(3).LineColor = 0x123456; },
      [this] { recording.Line(3).LineStyle = 2; },
      [this] { recording.Line(3).Factor *= 0.5F; },
      [this] { recording.Line(3).Unit = kRpm; },
      [this] { recording.Line(3).StoredAs = kStoredBoth; },
      [this] { recording.Line(0).ShowLine = false; },
      [this] { recording.data.Colors.GridColor = 0x00FF00; },
      [this] { recording.data.Colors.GraphColor = 0xC0FFC0; },
      [this] { lane_height = 100; },
      [this] { setting.meas_only = true; },
      [this] { setting.scale = 20; },
      [this] { setting.ratio = 2; },
      [this] {
        setting.size = {300, 300};
      },
      [this] {
        setting.size = {300, 310};
      },
      [this] { recording.data.Channels[3].Dimension(MeasureChannel::kUpperBound); },
      [this] {
        recording.data.Channels[1].Fill(10, std::vector{MeasureSample{5, recording.now}});
      },
      [this] { recording.data.Channels.pop_back(); },
      [this] { recording.now -= 100; },
      [this] { recording.data.InitMeasurements(); },
  };
  for (std::size_t i = 0; i < changes.size(); ++i) {
    recording.Run(5);
    UpdateNow();
    const QImage before = image.image();
    changes[i]();
    UpdateNow();
    GraphImage fresh;
    std::swap(fresh, image);
    UpdateNow();
    EXPECT_TRUE(fresh.image() == image.image()) << "change " << i;
    EXPECT_FALSE(before == image.image()) << "change " << i;
  }
}

// --- The right places ----------------------------------------------------------------------------

// Everything but the dashes, and the pen of what lies just left of the edge.
TEST_F(GraphImageTest, IsThePictureOfTheGraphAndLagsByLessThanAPixel) {
  for (int i = 0; i <= recording.data.LastAttribute(); ++i) recording.Line(i).LineStyle = 0;
  recording.Run(700);
  UpdateNow();
  QImage expected(setting.size, QImage::Format_RGB32);
  const GraphView view = ViewAt(static_cast<double>(recording.now));
  {
    QtSurface surface(expected);
    surface.Cls(recording.data.Colors.GraphColor);
    GraphPicture picture(surface, recording.data, view, lane_height, false);
    picture.DrawGrid();
    picture.DrawLines();
  }
  const QRect inside = expected.rect().adjusted(2, 0, -1, 0);
  EXPECT_TRUE(image.image().copy(inside) == expected.copy(inside));
  // A spike that nothing else is as high as.
  for (int i = 0; i < kAnalog; ++i) recording.Line(i).ShowLine = i == 1;
  recording.Line(1).Unit = kCelsius;
  recording.Line(1).Factor = 1;
  recording.Line(1).StoredAs = kStoredBoth;
  recording.now += 1;
  recording.Sample(1, 119);
  const std::int64_t spike = recording.now;
  recording.now += 1;
  UpdateNow();
  for (int i = 0; i < 300; ++i) {
    recording.now += 1;
    recording.Sample(1, 0);
    UpdateNow();
  }
  EXPECT_GT(image.shift(), 150);
  const int row = 4;
  int column = 0;
  while (column < setting.size.width() && image.image().pixel(column, row) != 0xFF00FF00U) ++column;
  const double at = ViewAt(static_cast<double>(recording.now)).TimeToX(spike) / 15.0;
  EXPECT_GE(column, at - 3.5);
  EXPECT_LE(column, at + 1.5);
}

TEST_F(GraphImageTest, WithoutASizeThereIsNoPicture) {
  setting.size = {0, 0};
  UpdateNow();
  EXPECT_TRUE(image.image().isNull());
  setting.size = {400, 300};
  UpdateNow();
  EXPECT_EQ(image.image().size(), QSize(400, 300));
}

}  // namespace
}  // namespace tarnlink
