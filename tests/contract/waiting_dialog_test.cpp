#include "platform/qt/waiting_dialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>

#include "common/run_time_error.h"
#include "contract/dialogs_benches.h"
#include "contract/loops.h"
#include "platform/qt/left_threads.h"

namespace tarnlink {
namespace {

// Work that lasts until the test says so.
class WaitingDialogTest : public testing::Test {
 protected:
  ~WaitingDialogTest() override { Finish(); }

  void Run(const std::function<void()>& at_end = [] {}) {
    RunBesideLoop(
        "Waiting for the disk with <b>a.wcr...", "No answer.",
        [this, at_end](const IsGivenUp& is_given_up) {
          finished_.wait();
          was_given_up_ = is_given_up();
          at_end();
        },
        left_);
  }

  void Finish() {
    if (!is_finished_) finish_.set_value();
    is_finished_ = true;
  }

  static QWidget* Window() {
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr && modal->objectName() == "Waiting" ? modal : nullptr;
  }

  QtUser user_;
  std::promise<void> finish_;
  std::shared_future<void> finished_ = finish_.get_future().share();
  bool is_finished_ = false;
  std::atomic<bool> was_given_up_ = false;
  LeftThreads left_;
};

TEST_F(WaitingDialogTest, ShortWorkIsDoneBeforeAnythingElseHappens) {
  Finish();
  bool ticked = false;
  QTimer timer;
  timer.callOnTimeout([&] { ticked = true; });
  timer.start(0);
  bool done = false;
  Run([&] { done = true; });
  EXPECT_TRUE(done);
  EXPECT_FALSE(ticked);
}

TEST_F(WaitingDialogTest, ManyShortWorksDoNotHoldUpTimersTogether) {
  bool ticked = false;
  QTimer::singleShot(0, qApp, [&] { ticked = true; });
  const auto last_a_millisecond = [this](const IsGivenUp&) {
    finished_.wait_for(std::chrono::milliseconds(1));
  };
  for (int works = 0; works < 100 && !ticked; ++works) {
    RunBesideLoop("Waiting...", "No answer.", last_a_millisecond, left_);
  }
  EXPECT_TRUE(ticked);
}

TEST_F(WaitingDialogTest, WhatTheWorkThrowsComesOut) {
  Finish();
  EXPECT_EQ(ErrorOf([&] { Run([] { throw RunTimeError(kDiskFull, "full"); }); }), kDiskFull);
}

TEST_F(WaitingDialogTest, TimersGoOnMeanwhileAndNoWindowFlickers) {
  int ticks = 0;
  QTimer timer;
  timer.callOnTimeout([&] {
    EXPECT_EQ(Window(), nullptr);
    EXPECT_TRUE(qApp->property(kInputKeptBack).toBool());
    if (++ticks == 5) Finish();
  });
  timer.start(1);
  Run();
  EXPECT_GE(ticks, 5) << "one more may come before the end is heard of";
  EXPECT_FALSE(qApp->property(kInputKeptBack).toBool());
}

TEST_F(WaitingDialogTest, WhatLateWorkThrowsComesOutToo) {
  QTimer::singleShot(1, qApp, [&] { Finish(); });
  EXPECT_EQ(ErrorOf([&] { Run([] { throw RunTimeError(kDiskFull, "full"); }); }), kDiskFull);
}

TEST_F(WaitingDialogTest, LongWorkIsToldInPlainTextAndTheWindowGoesWithIt) {
  user_.With("Waiting", [&](QWidget& window) {
    const auto* label = window.findChild<QLabel*>();
    EXPECT_EQ(label->text(), "Waiting for the disk with <b>a.wcr...");
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_FALSE(qApp->property(kInputKeptBack).toBool()) << "for its button";
    Finish();
  });
  Run();
  EXPECT_EQ(Window(), nullptr);
  EXPECT_FALSE(was_given_up_);
}

TEST_F(WaitingDialogTest, TheUserMayStopWaiting) {
  user_.With("Waiting", [](QWidget& window) { window.findChild<QPushButton*>()->click(); });
  EXPECT_EQ(ReasonOf([&] { Run(); }), "No answer.");
  EXPECT_FALSE(is_finished_);
  Finish();
  EXPECT_TRUE(QtLoop().RunUntil([&] { return was_given_up_.load(); }));
}

TEST_F(WaitingDialogTest, ClosingTheWindowStopsWaitingToo) {
  user_.With("Waiting", [](QWidget& window) { window.close(); });
  EXPECT_EQ(ErrorOf([&] { Run(); }), kDeviceIo);
}

TEST_F(WaitingDialogTest, AQuestionThatATimerAsksMeanwhileIsAnsweredFirst) {
  QTimer::singleShot(1, qApp, [&] {
    user_.With("MessageBox", [&](QWidget& box) {
      Finish();
      box.close();
    });
    user_.dialogs().MessageBox({"Slave is not responding", "Message Timeout"});
  });
  Run();
  EXPECT_TRUE(is_finished_);
}

TEST_F(WaitingDialogTest, AThreadWithoutAWindowSimplyWorks) {
  bool done = false;
  std::thread([&] {
    RunBesideLoop(
        "", "", [&](const IsGivenUp&) { done = true; }, left_);
  }).join();
  EXPECT_TRUE(done);
}

TEST(LeftThreads, ADiskThatNeverAnswersDoesNotKeepTheProgramFromEnding) {
  const auto release = std::make_shared<std::promise<void>>();
  {
    LeftThreads left(std::chrono::milliseconds(20));
    left.Add(std::thread([release] { release->get_future().wait(); }),
             std::make_shared<std::atomic<bool>>(false));
  }
  release->set_value();
}

}  // namespace
}  // namespace tarnlink
