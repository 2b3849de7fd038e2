// Faults that pull the cable: what has gone out by then, and what the port is asked to do.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "line_fixture.h"

namespace boiler {
namespace {

using ::testing::ElementsAre;
using Then = PortAction::Then;

class LinePortFaults : public ::testing::Test {
 protected:
  LinePortFaults() : line_(NineSixHundred()) {}

  static SimulatedBoiler::Options NineSixHundred() {
    SimulatedBoiler::Options options;
    options.line.pace = {9600, 10};
    return options;
  }

  // Plays until the port is asked for something.
  std::optional<PortAction> ActionAfter(std::string_view fault) {
    line_.Fault(fault);
    line_.Send(kReadByteF400);
    said_ = line_.Rest();
    const auto action = line_.line().TakePortAction();
    EXPECT_EQ(line_.line().TakePortAction(), std::nullopt);
    return action;
  }

  BoilerOnLine line_;
  std::string said_;
};

bool operator==(const PortAction& one, const PortAction& other) {
  return one.then == other.then && one.after_us == other.after_us;
}

TEST_F(LinePortFaults, UnplugComesBehindTheAnswer) {
  const auto action = ActionAfter("unplug#1");
  ASSERT_TRUE(action);
  EXPECT_EQ(action->then, Then::kStayOut);
  EXPECT_EQ(said_, "04 05 46 34 30 30 30 30 33 46 03");
}

TEST_F(LinePortFaults, UnplugMidframeComesBehindHalfOfIt) {
  const auto action = ActionAfter("unplug_midframe#1");
  ASSERT_TRUE(action);
  EXPECT_EQ(action->then, Then::kStayOut);
  EXPECT_EQ(said_, "04 05 46 34 30");
  EXPECT_EQ(line_.LastFault().check, Check::kBroken);
  EXPECT_EQ(HexText(line_.LastFault().bytes), "04 05 46 34 30");
}

TEST_F(LinePortFaults, UnplugWhileWritingComesInTheMiddleOfTheRequest) {
  line_.Fault("unplug_while_writing#1");
  line_.Send(kReadByteF400);
  // 9 bytes take 9375 us.
  ASSERT_TRUE(line_.line().NextDue());
  EXPECT_EQ(*line_.line().NextDue(), 9'375 - 9'375 / 2);
  EXPECT_EQ(line_.Rest(), "");
  EXPECT_TRUE(line_.line().TakePortAction());
}

TEST_F(LinePortFaults, ReplugTellsTheTimeAndTheName) {
  const auto same = ActionAfter("replug_same_name(250)#1");
  ASSERT_TRUE(same);
  EXPECT_TRUE(*same == (PortAction{Then::kSameName, 250'000}));
  const auto other = ActionAfter("replug_other_name#1");
  ASSERT_TRUE(other);
  EXPECT_TRUE(*other == (PortAction{Then::kOtherName, 500'000}));
}

TEST_F(LinePortFaults, LoseWhatIsStillUnderWay) {
  line_.Fault("unplug_midframe#1");
  line_.Send(std::string(kReadByteF400) + " " + std::string(kReadByteF400));
  EXPECT_EQ(line_.Rest(), "04 05 46 34 30");
  EXPECT_TRUE(line_.line().TakePortAction());
  EXPECT_EQ(line_.line().NextDue(), std::nullopt);
}

TEST_F(LinePortFaults, DoNotWedgeALineWithoutAPort) {
  line_.Fault("unplug#1");
  line_.Ask(kReadByteF400);
  EXPECT_EQ(line_.Ask(kReadByteF400), "04 05 46 34 30 30 30 30 33 46 03");
}

}  // namespace
}  // namespace boiler
