// A hundred thousand exchanges with the simulated boiler, under every fault that fits the protocol:
// whatever the line does, the run stands in one of its states, and is as good as new when the line
// is sound again.

#include "form/fault_run_tarnlink.h"

#include <gtest/gtest.h>

namespace tarnlink {
namespace {

using namespace tarnlink_faults;

using FaultRun = TarnlinkFaultRun;

std::string TestName(const ::testing::TestParamInfo<std::string>& info) {
  return TestNameOf(info.param);
}

class SilenceRun : public FaultRun, public ::testing::WithParamInterface<std::string> {};

TEST_P(SilenceRun, StopsAtEachSilenceAndRunsSoundlyAfterwards) {
  boiler.line().AddFault(GetParam());
  RestartAfterEachSilence();
  Exchange(ExchangesPerFault());
  EXPECT_GT(silences, 0);
  const int during_the_run = silences;
  ExpectSoundRun();
  EXPECT_EQ(silences, during_the_run);
  EndInSilence();
}

INSTANTIATE_TEST_SUITE_P(EachFault, SilenceRun, ::testing::ValuesIn(kSilences), TestName);

class NuisanceRun : public FaultRun, public ::testing::WithParamInterface<std::string> {};

TEST_P(NuisanceRun, GoesOnWithoutAWord) {
  boiler.line().AddFault(GetParam());
  Exchange(ExchangesPerFault());
  EXPECT_EQ(Panel(4), "Communication Running");
  EXPECT_EQ(world.port().opens(), 1);
  ExpectSoundRun();
}

INSTANTIATE_TEST_SUITE_P(EachFault, NuisanceRun, ::testing::ValuesIn(kNuisances), TestName);

class LossRun : public FaultRun, public ::testing::WithParamInterface<std::string> {};

TEST_P(LossRun, EndsAtEachLossAndRunsSoundlyAfterwards) {
  boiler.line().AddFault(GetParam());
  RestartAfterEachLoss();
  Exchange(ExchangesPerFault());
  EXPECT_GT(losses, 0);
  const int during_the_run = losses;
  Advance(5000);
  boiler.Calm();
  ExpectSoundRun();
  EXPECT_EQ(losses, during_the_run);
  EndInLoss();
}

INSTANTIATE_TEST_SUITE_P(EachFault, LossRun, ::testing::ValuesIn(kLosses), TestName);

TEST_F(FaultRun, AStreamWithoutEndIsReadForAsLongAsItLasts) {
  boiler.line().AddFault("endless_stream(0)#1");
  Exchange(500);
  EXPECT_EQ(Panel(4), "Communication Running");
  ExpectSoundRun();
}

TEST_F(FaultRun, ASoundLineShowsTheMemoryAllTheTime) {
  Exchange(ExchangesPerFault());
  EXPECT_EQ(world.port().opens(), 1);
  ExpectSoundRun();
}

// At the speed of the line, with a slave that takes its time.
class SlowLineRun : public FaultRun {
 protected:
  SlowLineRun()
      : FaultRun({.pace = {.baud = 9600}, .answer_delay_us = 12'000, .idle_gap_us = 50'000}) {}
};

class SlowNuisanceRun : public SlowLineRun, public ::testing::WithParamInterface<std::string> {};

// Nothing is checked under this protocol, so what a fault leaves on the line must not stay there.
TEST_P(SlowNuisanceRun, IsAsGoodAsNewAfterOneFault) {
  for (std::size_t before = 1; before <= 6; ++before) {
    Exchange(before);
    boiler.line().AddFault(GetParam().substr(0, GetParam().find('@')) + "#1");
    Exchange(3);
    Advance(30'000);  // the longest answer is under way for 21 seconds
    ExpectMemoryShown();
  }
  EXPECT_EQ(world.port().opens(), 1);
}

INSTANTIATE_TEST_SUITE_P(EachFault, SlowNuisanceRun, ::testing::ValuesIn(kNuisances), TestName);

TEST_F(SlowLineRun, StandsAllFaultsTogether) {
  for (const auto* faults : {&kSilences, &kNuisances}) {
    for (const std::string& text : *faults) {
      boiler.line().AddFault(text.substr(0, text.find('@')) + "@0.01");
    }
  }
  RestartAfterEachSilence();
  Exchange(20'000);
  EXPECT_GT(silences, 0);
  ExpectSoundRun();
  EndInSilence();
}

TEST(FaultsOfTheRun, AreAllThatFitTheProtocol) {
  ExpectAllThatFit("tarnlink", {kSilences, kNuisances, kLosses});
}

}  // namespace
}  // namespace tarnlink
