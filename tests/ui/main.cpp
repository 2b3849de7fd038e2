// The tests of the widgets, on Qt's platform without a display.

#include <gtest/gtest.h>

#include <cstdio>

#include "ui/event_watch.h"

namespace {

// What Qt complains about is a mistake of the widgets, but for what the platform without a display
// cannot do.
void TakeQtMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtDebugMsg || type == QtInfoMsg) return;
  if (text.startsWith("This plugin does not support")) return;
  ADD_FAILURE() << "Qt: " << text.toStdString();
}

// Fails a test in which an event kept the others waiting for too long; tells in the end which one
// did so longest.
class GapReport final : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { tarnlink::EventWatch::Instance().Forget(); }

  void OnTestEnd(const testing::TestInfo& info) override {
    const auto& watch = tarnlink::EventWatch::Instance();
    constexpr double kLongest = tarnlink::kLongestWait.count();
    // At a greater density only pictures for people are made.
    const bool counts = tarnlink::kWaitingCounts && !qEnvironmentVariableIsSet("QT_SCALE_FACTOR");
    if (counts && watch.longest() > kLongest) {
      ADD_FAILURE() << "The window did not answer for " << watch.longest()
                    << " ms: " << watch.what();
    }
    if (watch.longest() <= longest_) return;
    longest_ = watch.longest();
    where_ = std::string(info.test_suite_name()) + "." + info.name() + ", " + watch.what();
  }

  void OnTestProgramEnd(const testing::UnitTest&) override {
    std::printf("Longest event: %.1f ms (%s)\n", longest_, where_.c_str());
  }

  double longest_ = 0;
  std::string where_;
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  tarnlink::EventWatch application(argc, argv);
  QApplication::setApplicationDisplayName("TarnLink");
  qInstallMessageHandler(TakeQtMessage);
  testing::UnitTest::GetInstance()->listeners().Append(new GapReport);
  return RUN_ALL_TESTS();
}
