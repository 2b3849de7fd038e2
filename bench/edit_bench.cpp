// Editing a screen of 512 Locations: how long the window is busy with one event of the user, all
// that the event sets off and the painting included.

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QScrollArea>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>

#include "app/program.h"
#include "files/screen_file.h"
#include "measure.h"

namespace {

constexpr int kLocations = 512;
constexpr double kMedianBound = 16.0;  // ms
constexpr double kTailBound = 50.0;    // ms, at the 99th percentile

std::vector<tarnlink::ScreenRecord> Records() {
  constexpr int kRows = 32;
  std::vector<tarnlink::ScreenRecord> records;
  for (int i = 0; i < kLocations; ++i) {
    tarnlink::LocationRecord record;
    record.location.Specification = 0;
    record.location.Alias = "Location " + std::to_string(i + 1);
    record.name_top = record.value_top = static_cast<float>(i % kRows) * 420.0F + 120.0F;
    record.name_left = static_cast<float>(i / kRows) * 4500.0F + 450.0F;
    record.value_left = record.name_left + 2100.0F;
    records.emplace_back(record);
  }
  return records;
}

// What every event took, in milliseconds.
class Stopwatch {
 public:
  explicit Stopwatch(QWidget& window) : window_(window) {}

  void Take(const std::function<void()>& event) {
    QElapsedTimer timer;
    timer.start();
    event();
    QEventLoop rest;
    QTimer::singleShot(0, &rest, &QEventLoop::quit);
    rest.exec();
    // Painting would wait for the display's next frame.
    QEvent paint(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(&window_, &paint);
    times_.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
  }

  void Report(const std::string& what) {
    std::sort(times_.begin(), times_.end());
    const double tail = times_[times_.size() * 99 / 100];
    std::printf("%s: %zu events, longest %.1f ms\n", what.c_str(), times_.size(), times_.back());
    bench::Report(what + ", ms in the median", bench::Median(times_), kMedianBound, false);
    bench::Report(what + ", ms at the 99th percentile", tail, kTailBound, false);
    times_.clear();
  }

 private:
  QWidget& window_;
  std::vector<double> times_;
};

class Desk {
 public:
  explicit Desk(tarnlink::Program& program)
      : window_(program.window()), screen_(*window_.findChild<QWidget*>("screen")) {}

  // Takes a box through the window, round and round.
  void Drag(const char* box, Stopwatch& watch) {
    constexpr int kMoves = 400;
    QWidget& widget = *screen_.findChild<QWidget*>(box);
    QWindow* window = window_.windowHandle();
    const QPoint start = widget.mapTo(&window_, QPoint(6, 6));
    const QRect area(window_.width() / 3, window_.height() / 4, window_.width() / 2,
                     window_.height() / 2);
    watch.Take([&] { QTest::mousePress(window, Qt::LeftButton, {}, start); });
    for (int i = 0; i < kMoves; ++i) {
      const QPoint place = area.topLeft() + QPoint(i * 7 % area.width(), i * 5 % area.height());
      watch.Take([&] { QTest::mouseMove(window, place); });
    }
    const QPoint end = area.bottomRight();
    watch.Take([&] { QTest::mouseRelease(window, Qt::LeftButton, {}, end); });
  }

  void Scroll(Stopwatch& watch) {
    constexpr int kTurns = 400;
    constexpr int kNotch = 120;
    QWidget& area = *screen_.parentWidget();
    for (int i = 0; i < kTurns; ++i) {
      const bool across = i % 2 == 1;
      const int notch = i / 40 % 2 == 0 ? -kNotch : kNotch;
      const QPoint turn = across ? QPoint(notch, 0) : QPoint(0, notch);
      const QPointF place = area.rect().center();
      QWheelEvent event(place, area.mapToGlobal(place), {}, turn, {}, {}, Qt::NoScrollPhase, false);
      watch.Take([&] { QApplication::sendEvent(&area, &event); });
    }
  }

  void ArrowKeys(const char* box, Stopwatch& watch) {
    constexpr int kStrokes = 400;
    QWidget& widget = *screen_.findChild<QWidget*>(box);
    widget.setFocus();
    for (int i = 0; i < kStrokes; ++i) {
      const Qt::Key key = i % 3 == 0 ? Qt::Key_Down : Qt::Key_Right;
      watch.Take([&] { QTest::keyClick(&widget, key); });
    }
  }

  void Tab(Stopwatch& watch) {
    constexpr int kStrokes = 400;
    for (int i = 0; i < kStrokes; ++i) {
      watch.Take([&] { QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); });
    }
  }

 private:
  QWidget& window_;
  QWidget& screen_;
};

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QTemporaryDir folder;
  qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
  QApplication application(argc, argv);
  const std::string file = (std::filesystem::path(folder.path().toStdString()) / "s.wcr").string();
  std::ofstream(file, std::ios::binary) << tarnlink::WriteScreenFile(0xE0E0E0, Records());

  tarnlink::Program program;
  program.Start({file});
  program.window().resize(1600, 900);
  Desk desk(program);
  Stopwatch watch(program.window());
  desk.Drag("RAM_LOC_TEXT(1)", watch);
  desk.Drag("RAM_LOC_VAL(70)", watch);
  watch.Report("dragging a box among 512 Locations");
  desk.Scroll(watch);
  watch.Report("scrolling 512 Locations");
  desk.ArrowKeys("RAM_LOC_TEXT(40)", watch);
  desk.Tab(watch);
  watch.Report("keys on a screen of 512 Locations");
  return bench::AllHeld() ? 0 : 1;
}
