// The graph of 100 lines and 16 lanes at 1600 by 900: drawing it against QCustomPlot, a new sample,
// the cursor, appending, and polling against a bare exchange loop.

#include <qcustomplot.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "answering_slave.h"
#include "bare_exchange.h"
#include "graph/frm_context_menu.h"
#include "graph/frm_graphic.h"
#include "graph/graph_acquisition.h"
#include "graph/graph_picture.h"
#include "measure.h"
#include "platform/qt/qt_platform.h"
#include "platform/qt/qt_surface.h"
#include "ui/graph_image.h"

namespace {

using namespace tarnlink;

constexpr QSize kSize(1600, 900);
constexpr float kUnitsPerPixel = 15;
constexpr float kLaneHeight = 180;
constexpr int kAnalogLines = 100;
constexpr int kSamples = 90'000;
constexpr int kRaw = 65'535;            // the highest raw value
constexpr float kPicturePercent = 350;  // what the whole height of the picture is
constexpr int kRounds = 9;
constexpr int kSlowRounds = 5;
const std::int64_t kEnd = ToSeconds(ToDate({2024, 3, 5, 14, 0, 0}));

// --- Data ----------------------------------------------------------------------------------------

// Up and down over the whole height, each line at its own pace: in 50 minutes to 9 hours.
int CalmValue(int line, std::int64_t second) {
  const std::int64_t pace = 2 + line * 20 / kAnalogLines;
  const std::int64_t at = (second * pace + line * 655) % (2 * kRaw);
  return static_cast<int>(at < kRaw ? at : 2 * kRaw - at);
}

class Samples {
 public:
  explicit Samples(bool is_noisy) : is_noisy_(is_noisy) {}

  int Next(int line, std::int64_t second) {
    return is_noisy_ ? static_cast<int>(random_() % (kRaw + 1)) : CalmValue(line, second);
  }
  // The bits of the lanes: each one changes every few minutes, or every other second.
  int NextLanes(std::int64_t second) {
    return static_cast<int>(is_noisy_ ? random_() % (kRaw + 1) : second / 100 * 2654435761 % kRaw);
  }

 private:
  bool is_noisy_;
  std::mt19937 random_{5};
};

// Every second a sample of each channel.
class Recorded {
 public:
  explicit Recorded(bool is_noisy) : samples_(is_noisy), now(kEnd - kSamples) {
    LineColors colours;
    data.Attributes = LoadDefaultAttributes(colours);
    for (int i = 0; i <= data.LastAttribute(); ++i) {
      GraphAttribute& line = data.Attributes[static_cast<std::size_t>(i)];
      line.ShowLine = true;
      data.AllocateChannel(i);
      if (i >= kAnalogLines) continue;
      line.Unit = kPercent;
      line.StoredAs = kStoredBoth;
      line.Factor = kPicturePercent / kRaw;
    }
    for (int i = 0; i < kSamples; ++i) Tick();
  }
  void Tick() {
    ++now;
    const Date time = FromSeconds(now);
    for (int i = 0; i < kAnalogLines; ++i) data.AddMeasurement(samples_.Next(i, now), time, i);
    data.AddMeasurement(samples_.NextLanes(now), time, data.LastChannel());
  }
  GraphView View(int minutes) const {
    return {.BaseTime = FromSeconds(now),
            .TimeScale = minutes,
            .ScaleWidth = kSize.width() * kUnitsPerPixel,
            .ScaleHeight = kSize.height() * kUnitsPerPixel};
  }

 private:
  Samples samples_;

 public:
  Graphic data;
  std::int64_t now;
};

// --- QCustomPlot ---------------------------------------------------------------------------------

// The same lines and lanes, the latter without their filling, under the settings that its manual
// calls the fast ones.
class Plot {
 public:
  explicit Plot(bool is_noisy) {
    plot_.setNotAntialiasedElements(QCP::aeAll);
    plot_.setPlottingHints(QCP::phFastPolylines | QCP::phCacheLabels);
    plot_.axisRect()->setAutoMargins(QCP::msNone);
    plot_.axisRect()->setMargins({});
    plot_.xAxis->setTickLabels(false);
    plot_.yAxis->setTickLabels(false);
    plot_.yAxis->setRange(0, kRaw);
    plot_.resize(kSize);
    plot_.show();
    AddLines(is_noisy);
  }
  // Into its own buffers; the widget is not painted.
  void Show(int minutes) {
    const auto end = static_cast<double>(kEnd);
    plot_.xAxis->setRange(end - minutes * 60, end);
  }
  void Replot() { plot_.replot(QCustomPlot::rpQueuedRefresh); }

 private:
  void AddLines(bool is_noisy) {
    constexpr int kAll = kAnalogLines + kLanes;
    Samples samples(is_noisy);
    std::vector<QVector<double>> values(kAll, QVector<double>(kSamples));
    QVector<double> times(kSamples);
    for (int at = 0; at < kSamples; ++at) {
      const std::int64_t now = kEnd - kSamples + 1 + at;
      times[at] = static_cast<double>(now);
      for (int i = 0; i < kAnalogLines; ++i) {
        values[static_cast<std::size_t>(i)][at] = samples.Next(i, now);
      }
      const int bits = samples.NextLanes(now);
      for (int i = 0; i < kLanes; ++i) {
        const int bit = bits >> i & 1;
        values[static_cast<std::size_t>(kAnalogLines + i)][at] =
            kLaneBottom - kLane * (i - 0.6 * bit);
      }
    }
    for (int i = 0; i < kAll; ++i) {
      QCPGraph* line = plot_.addGraph();
      line->setLineStyle(i < kAnalogLines ? QCPGraph::lsLine : QCPGraph::lsStepLeft);
      line->setScatterStyle(QCPScatterStyle::ssNone);
      line->setAdaptiveSampling(true);
      line->setAntialiased(false);
      line->setPen(QPen(QColor::fromHsv(i * 3, 255, 200), 2));
      line->setData(times, values[static_cast<std::size_t>(i)], true);
    }
  }

  // Where the lanes stand, on a scale that is `kRaw` high.
  static constexpr double kLane = kRaw * 0.0135;
  static constexpr double kLaneBottom = kRaw * 0.54;

  QCustomPlot plot_;
};

// --- Drawing -------------------------------------------------------------------------------------

// Milliseconds of processor time, which other programs on the machine change least.
double Cost(const std::function<void()>& work) {
  const double before = bench::ThreadProcessorSeconds();
  work();
  return (bench::ThreadProcessorSeconds() - before) * 1e3;
}

double MedianCost(int rounds, const std::function<void()>& work) {
  std::vector<double> costs;
  for (int i = 0; i < rounds; ++i) costs.push_back(Cost(work));
  return bench::Median(costs);
}

// All of the picture, as after a change of the scale.
class FullRedraw {
 public:
  FullRedraw(const Recorded& recorded, int minutes) : recorded_(recorded), minutes_(minutes) {}

  void operator()() {
    lane_height_ += 1;
    image_.Update(recorded_.data, recorded_.View(minutes_), lane_height_, false, kSize);
  }

 private:
  const Recorded& recorded_;
  int minutes_;
  float lane_height_ = kLaneHeight;
  GraphImage image_;
};

void CompareWithPlot(const Recorded& recorded, Plot& plot, int minutes, const std::string& of) {
  plot.Show(minutes);
  plot.Replot();
  FullRedraw redraw(recorded, minutes);
  redraw();
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int i = 0; i < kSlowRounds; ++i) {
    for (int k = 0; k < kSlowRounds; ++k) ours.push_back(Cost(redraw));
    theirs.push_back(Cost([&] { plot.Replot(); }));
  }
  const double cost = bench::Median(ours);
  const double plotted = bench::Median(theirs);
  std::printf("%s: QCustomPlot %.1f ms, ours %.2f ms\n", of.c_str(), plotted, cost);
  bench::Report("full redraw, QCustomPlot / ours" + of, plotted / cost, 8, true);
  bench::Report("full redraw, ms" + of, cost, 20, false);
}

// With pens of this width for solid lines and dashed ones.
double CostOfPens(const Recorded& recorded, int minutes, int width, bool meas_only) {
  QImage image(kSize, QImage::Format_RGB32);
  const GraphView view = recorded.View(minutes);
  return MedianCost(kRounds, [&] {
    QtSurface surface(image);
    surface.Cls(kWhite);
    surface.GatherLines();
    GraphPicture picture(surface, recorded.data, view, kLaneHeight, meas_only,
                         {.solid = width, .broken = width});
    picture.DrawGrid();
    picture.DrawLines();
  });
}

void SetStyle(Graphic& data, int style) {
  for (GraphAttribute& line : data.Attributes) line.LineStyle = static_cast<std::int16_t>(style);
}

void ComparePens(Recorded& recorded, int minutes, const std::string& of) {
  constexpr int kStyles = 5;
  const double plain = CostOfPens(recorded, minutes, 1, false);
  double worst = 0;
  std::string which;
  for (int style = 0; style < kStyles; ++style) {
    SetStyle(recorded.data, style);
    for (const int width : {1, 2, 3}) {
      for (const bool meas_only : {false, true}) {
        const double cost = CostOfPens(recorded, minutes, width, meas_only);
        if (cost <= worst) continue;
        worst = cost;
        which = "style " + std::to_string(style) + ", width " + std::to_string(width) +
                (meas_only ? ", strokes" : "");
      }
    }
  }
  SetStyle(recorded.data, 0);
  std::printf("%s: solid of width 1 %.2f ms, the slowest (%s) %.2f ms\n", of.c_str(), plain,
              which.c_str(), worst);
  bench::Report("slowest pen / solid of width 1" + of, worst / plain, 3, false);
}

void MeasureNewSamples(Recorded& recorded, int minutes, const std::string& of) {
  constexpr int kSeconds = 61;
  GraphImage image;
  const auto update = [&] {
    image.Update(recorded.data, recorded.View(minutes), kLaneHeight, false, kSize);
  };
  update();
  std::vector<double> costs;
  for (int i = 0; i < kSeconds; ++i) {
    recorded.Tick();
    costs.push_back(Cost(update));
  }
  if (image.shift() == 0) bench::Report("the picture moves" + of, 0, 1, true);
  bench::Report("a new sample of each line, ms" + of, bench::Median(costs), 2, false);
  std::sort(costs.begin(), costs.end());
  std::printf("%s: the slowest of %d new samples %.2f ms\n", of.c_str(), kSeconds, costs.back());
  QImage window(kSize, QImage::Format_RGB32);
  int x = 0;
  const double cursor = MedianCost(kRounds, [&] {
    update();
    QPainter painter(&window);
    painter.drawImage(0, 0, image.image());
    painter.drawLine(x, 0, x, kSize.height());
    ++x;
  });
  bench::Report("a moved cursor, ms" + of, cursor, 2, false);
}

void MeasureDrawing(bool is_noisy) {
  Recorded recorded(is_noisy);
  Plot plot(is_noisy);
  for (const int minutes : {10, 60}) {
    const std::string of =
        std::string(is_noisy ? ", noisy" : ", calm") + ", " + std::to_string(minutes) + " min";
    CompareWithPlot(recorded, plot, minutes, of);
    ComparePens(recorded, minutes, of);
    MeasureNewSamples(recorded, minutes, of);
  }
}

// --- Appending -----------------------------------------------------------------------------------

// Nanoseconds of a sample, all channels by turns.
double AppendCost(Graphic& data, std::int64_t& now, int seconds) {
  const double cost = Cost([&] {
    for (int i = 0; i < seconds; ++i) {
      const Date time = FromSeconds(++now);
      for (int k = 0; k < kAnalogLines; ++k) data.AddMeasurement(i, time, k);
    }
  });
  return cost * 1e6 / (seconds * static_cast<double>(kAnalogLines));
}

std::unique_ptr<Graphic> Allocated() {
  auto data = std::make_unique<Graphic>();
  for (int i = 0; i < kAnalogLines; ++i) data->AllocateChannel(i);
  return data;
}

void MeasureAppending() {
  constexpr int kFew = 10;
  constexpr int kBatch = 1000;  // long enough for new memory to count on both sides
  constexpr int kBatches = 9;
  std::int64_t now = kEnd;
  const std::unique_ptr<Graphic> full = Allocated();
  AppendCost(*full, now, kSamples + 1);
  std::vector<double> few;
  std::vector<double> many;
  for (int round = 0; round < kRounds; ++round) {
    double at_few = 0;
    for (int i = 0; i < kBatches; ++i) {
      const std::unique_ptr<Graphic> fresh = Allocated();
      AppendCost(*fresh, now, kFew);
      at_few += AppendCost(*fresh, now, kBatch);
    }
    few.push_back(at_few / kBatches);
    many.push_back(AppendCost(*full, now, kBatch * kBatches));
  }
  bench::Report("an append at 10 samples, ns", bench::Median(few), 50, false);
  bench::Report("an append at 90,000 samples, ns", bench::Median(many), 50, false);
  bench::Report("an append at 90,000 samples / at 10", bench::Median(many) / bench::Median(few),
                1.3, false);
}

// --- Polling -------------------------------------------------------------------------------------

constexpr int kPollRounds = 11;  // of each side by turns, so that both meet the same machine
constexpr int kSettling = 200;   // ms
constexpr int kMeasured = 500;   // ms a round

void RunFor(int milliseconds) {
  QTimer::singleShot(milliseconds, QApplication::instance(), [] { QApplication::exit(); });
  QApplication::exec();
}

// Of what runs already; `count` tells the answers so far.
double PerSecond(const std::function<long()>& count) {
  RunFor(kSettling);
  const long first = count();
  const double begin = bench::WallSeconds();
  RunFor(kMeasured);
  return static_cast<double>(count() - first) / (bench::WallSeconds() - begin);
}

double BarePerSecond() {
  bench::AnsweringSlave slave;
  bench::BareExchange loop(slave.path(), 0);
  return PerSecond([&] { return loop.exchanges(); });
}

// Twenty lines and the lanes.
void MeasurePolling(const bench::AnsweringSlave& slave) {
  constexpr int kPolled = 20;
  QtPlatform platform;
  frmGraphic graph(platform);
  frmContextMenu menu(graph);
  GraphAcquisition acquisition(graph, menu, {[] { return 1; }, [] { return 3; }});
  LineColors colours;
  graph.Data.Attributes = LoadDefaultAttributes(colours);
  for (int i = 0; i < kPolled; ++i) {
    graph.Data.Attributes[static_cast<std::size_t>(i)].ShowLine = true;
    graph.Data.AllocateChannel(i);
  }
  std::vector<double> ratios;
  for (int i = 0; i < kPollRounds; ++i) {
    const double bare = BarePerSecond();
    menu.SetCommunication(true);
    const double ours = PerSecond([&] { return slave.answered(); });
    menu.SetCommunication(false);
    std::printf("%.0f answers a second, bare loop %.0f\n", ours, bare);
    ratios.push_back(ours / bare);
  }
  if (graph.Data.ChannelOf(0)[MeasureChannel::kUpperBound].Time == 0) {
    bench::Report("the answers are stored", 0, 1, true);
  }
  bench::Report("answers per second / bare exchange loop", bench::Median(ratios), 0.8, true);
}

}  // namespace

int main(int argc, char** argv) {
  QTemporaryDir folder;
  const std::filesystem::path root = folder.path().toStdString();
  const bench::AnsweringSlave slave;
  std::filesystem::create_directories(root / "TarnLink2");
  std::ofstream(root / "TarnLink2" / "TarnLink2.ini") << "[Ports]\nCOM1=" << slave.path() << "\n";
  qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  MeasureDrawing(false);
  MeasureDrawing(true);
  MeasureAppending();
  MeasurePolling(slave);
  return bench::AllHeld() ? 0 : 1;
}
