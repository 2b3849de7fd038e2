// A hundred thousand exchanges under the ZOLT protocol, under every fault.

#include "form/fault_run_zolt.h"

#include <gtest/gtest.h>

namespace tarnlink {
namespace {

using namespace zolt_faults;

std::size_t ExchangesEach() { return ExchangesPerRun(Faults()); }

class ZoltFaults : public ZoltFaultRun, public ::testing::WithParamInterface<FaultAndRate> {
 protected:
  ZoltFaults() : ZoltFaultRun(SeedOf(GetParam())) {}
};

TEST_P(ZoltFaults, ShowOnlyWhatSoundFramesSayAndPass) { RunUnder(GetParam(), ExchangesEach()); }

INSTANTIATE_TEST_SUITE_P(EachFault, ZoltFaults,
                         ::testing::Combine(::testing::ValuesIn(Faults()),
                                            ::testing::ValuesIn(kRates)),
                         NameOfRun);

class ZoltLosses : public ZoltFaultRun, public ::testing::WithParamInterface<FaultAndRate> {
 protected:
  ZoltLosses() : ZoltFaultRun(SeedOf(GetParam())) {}
};

TEST_P(ZoltLosses, EndTheRunAndTheNextIsSound) { RunUnderLosses(GetParam(), ExchangesEach()); }

INSTANTIATE_TEST_SUITE_P(EachFault, ZoltLosses,
                         ::testing::Combine(::testing::ValuesIn(kCableFaults),
                                            ::testing::ValuesIn(kCableRates)),
                         NameOfRun);

class ZoltFaultRunOfOne : public ZoltFaultRun {
 protected:
  ZoltFaultRunOfOne() : ZoltFaultRun(20240306) {}
};

TEST_F(ZoltFaultRunOfOne, AStreamWithoutEndIsReadForAsLongAsItLasts) { RunUnderAnEndlessStream(); }

TEST_F(ZoltFaultRunOfOne, APortThatCanNotBeOpenedIsToldOnce) { RunUnderBusyPort(); }

TEST_F(ZoltFaultRunOfOne, RandomFramesPassByChanceOnly) { RunUnderRandomFrames(); }

TEST_F(ZoltFaultRunOfOne, ASoundLineShowsTheMemoryAllTheTime) { RunUnderNone(ExchangesEach()); }

// At the speed of the line, with a slave that takes its time.
class ZoltSlowLine : public ZoltFaultRun, public ::testing::WithParamInterface<FaultOfRun> {
 protected:
  ZoltSlowLine() : ZoltFaultRun(20240307, kSlowLine) {}
};

TEST_P(ZoltSlowLine, IsAsGoodAsNewAfterOneFault) { RunUnderOne(GetParam()); }

INSTANTIATE_TEST_SUITE_P(EachFault, ZoltSlowLine, ::testing::ValuesIn(Faults()), NameOfFault);

// Where nothing but memory is polled no answer says what it is one to.
class ZoltSlowLineOfMemory : public ZoltSlowLine {
 protected:
  ZoltSlowLineOfMemory() {
    for (int i = 1; i <= monitor.main.MaxId; ++i) {
      const bool memory = At(i).Specification == 0;
      monitor.main.Locations[i].ScanFlags = memory ? 0 : kScanningDisabled;
    }
  }
};

TEST_P(ZoltSlowLineOfMemory, IsAsGoodAsNewAfterOneFault) { RunUnderOne(GetParam()); }

INSTANTIATE_TEST_SUITE_P(EachFault, ZoltSlowLineOfMemory, ::testing::ValuesIn(Faults()),
                         NameOfFault);

class ZoltSlowLineOfAll : public ZoltFaultRun {
 protected:
  ZoltSlowLineOfAll() : ZoltFaultRun(20240308, kSlowLine) {}
};

TEST_F(ZoltSlowLineOfAll, StandsAllFaultsTogether) { RunUnderAll(Faults(), 20'000); }

TEST(FaultsOfTheZoltRun, AreAllThatFitTheProtocol) {
  ExpectAllThatFit("zolt", {NamesOf(Faults()), NamesOf(kCableFaults)});
}

}  // namespace
}  // namespace tarnlink
