// The control panel beside another master that asks the same slave all the time.

#include <gtest/gtest.h>

#include "tools/panel_on_line.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr boiler::LineOptions kLine = {.pace = {.baud = 9600}, .answer_delay_us = 20'000};

class ControlPanelSecondMaster : public ::testing::TestWithParam<int> {
 protected:
  PanelOnLine one{kLine, 1, "0", {.addresses = "0", .gap_us = GetParam() * 1'000}};
};

TEST_P(ControlPanelSecondMaster, HeatDemandIsAcknowledgedSoon) {
  for (int i = 0; i < 20; ++i) {
    one.panel.cmdHeadDemand.Press();
    EXPECT_TRUE(one.Finish(5s)) << i;
    EXPECT_EQ(one.panel.chk_HeatDemand.Value, i % 2 == 0) << i;
    EXPECT_EQ(one.Held("heat_demand"), i % 2 == 0 ? 255 : 0) << i;
    one.world.Advance(37ms * i);
  }
}

TEST_P(ControlPanelSecondMaster, AResetIsAcknowledgedSoon) {
  one.panel.cmdResetError.Press();
  EXPECT_TRUE(one.Finish(5s));
  EXPECT_TRUE(one.panel.chk_Reset.Value);
}

TEST_P(ControlPanelSecondMaster, NothingStaysPendingAndNothingIsInAnothersPlace) {
  for (int round = 0; round < 3; ++round) {
    for (int tab = 0; tab < 5; ++tab) {
      one.Update(tab);
      EXPECT_TRUE(one.Finish(60s)) << tab;
      EXPECT_EQ(one.Unfounded(), "") << tab;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Gap, ControlPanelSecondMaster,
                         ::testing::Values(1, 5, 20, 35, 60, 100, 200, 350, 1000));

}  // namespace
}  // namespace tarnlink
