// The tests of the widgets, on Qt's platform without a display.

#include <gtest/gtest.h>

#include <cstdio>

#include "support/virtual_time.h"
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
  void OnTestStart(const testing::TestInfo&) override {
    tarnlink::EventWatch::Instance().BeginTest();
  }

  void OnTestEnd(const testing::TestInfo& info) override {
    const auto& longest = tarnlink::EventWatch::Instance().longest_of_test();
    constexpr double kLongest = tarnlink::kLongestWait.count();
    // At a greater density only pictures for people are made.
    const bool counts = tarnlink::kWaitingCounts && !qEnvironmentVariableIsSet("QT_SCALE_FACTOR");
    if (counts && longest.milliseconds > kLongest) {
      ADD_FAILURE() << "The window did not answer for " << longest.milliseconds
                    << " ms: " << longest.what;
    }
    if (longest.milliseconds <= longest_) return;
    longest_ = longest.milliseconds;
    where_ = std::string(info.test_suite_name()) + "." + info.name() + ", " + longest.what;
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
  tarnlink::VirtualTime::Around = [&application](const std::function<void()>& call) {
    application.RunDue(call);
  };
  QApplication::setApplicationDisplayName("TarnLink");
  qInstallMessageHandler(TakeQtMessage);
  testing::UnitTest::GetInstance()->listeners().Append(new GapReport);
  return RUN_ALL_TESTS();
}
