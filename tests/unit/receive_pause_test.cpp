#include "monitor/receive_pause.h"

#include <gtest/gtest.h>

#include "support/fake_world.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr int kLength = 8;

class ReceivePauseTest : public ::testing::Test {
 protected:
  ReceivePauseTest() {
    comm_->SetPortOpen(true);
    comm_->SetRThreshold(5);
    comm_->SetOnComm([this](int) { ++events_; });
  }

  void Receive(const std::string& bytes) { world_.port().Receive(bytes); }
  void Pass(int milliseconds) { world_.Advance(std::chrono::milliseconds(milliseconds)); }

  FakeWorld world_;
  std::unique_ptr<SerialPort> comm_ = world_.CreatePort();
  int events_ = 0;
  int expiries_ = 0;
  bool over_ = false;
  ReceivePause pause_{*comm_, world_.CreateTimer(), [this] {
                        ++expiries_;
                        over_ = pause_.IsOver(kLength);
                        if (over_) pause_.End();
                      }};
};

TEST_F(ReceivePauseTest, IsOverOnceTheLengthIsThere) {
  Receive("12345");
  pause_.Begin(10);
  EXPECT_TRUE(pause_.IsUnderWay());
  Receive("678");
  Pass(9);
  EXPECT_FALSE(over_);
  Pass(1);
  EXPECT_TRUE(over_);
  EXPECT_FALSE(pause_.IsUnderWay());
}

TEST_F(ReceivePauseTest, TooFewBytesAreWaitedForUntilNoneHasComeForTwentyMilliseconds) {
  Receive("12345");
  pause_.Begin(10);
  Pass(5);
  Receive("6");
  Pass(24);
  EXPECT_FALSE(over_);
  Pass(1);
  EXPECT_TRUE(over_);
  EXPECT_EQ(expiries_, 3);
}

TEST_F(ReceivePauseTest, ALongPauseIsTheQuietThatItTakes) {
  Receive("12345");
  pause_.Begin(80);
  Pass(79);
  EXPECT_FALSE(over_);
  Pass(1);
  EXPECT_TRUE(over_);
}

TEST_F(ReceivePauseTest, HoldsTheReceiveEventsBack) {
  pause_.Begin(10);
  Receive("12345");
  Pass(9);
  EXPECT_EQ(events_, 0);
  pause_.End();
  Pass(1);
  EXPECT_GT(events_, 0);
  EXPECT_EQ(comm_->RThreshold(), 5);
}

TEST_F(ReceivePauseTest, EndedTwiceLeavesTheThresholdThatWasSetSince) {
  pause_.Begin(10);
  pause_.End();
  comm_->SetRThreshold(16);
  pause_.End();
  EXPECT_EQ(comm_->RThreshold(), 16);
}

}  // namespace
}  // namespace tarnlink
