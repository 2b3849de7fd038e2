// A hundred thousand exchanges under Modbus, under every fault.

#include "form/fault_run_modbus.h"

#include <gtest/gtest.h>

namespace tarnlink {
namespace {

using namespace modbus_faults;

std::size_t ExchangesEach() { return ExchangesPerRun(Faults()); }

class ModbusFaults : public ModbusFaultRun, public ::testing::WithParamInterface<FaultAndRate> {
 protected:
  ModbusFaults() : ModbusFaultRun(SeedOf(GetParam())) {}
};

TEST_P(ModbusFaults, ShowOnlyWhatSoundFramesSayAndPass) { RunUnder(GetParam(), ExchangesEach()); }

INSTANTIATE_TEST_SUITE_P(EachFault, ModbusFaults,
                         ::testing::Combine(::testing::ValuesIn(Faults()),
                                            ::testing::ValuesIn(kRates)),
                         NameOfRun);

class ModbusLosses : public ModbusFaultRun, public ::testing::WithParamInterface<FaultAndRate> {
 protected:
  ModbusLosses() : ModbusFaultRun(SeedOf(GetParam())) {}
};

TEST_P(ModbusLosses, EndTheRunAndTheNextIsSound) { RunUnderLosses(GetParam(), ExchangesEach()); }

INSTANTIATE_TEST_SUITE_P(EachFault, ModbusLosses,
                         ::testing::Combine(::testing::ValuesIn(kCableFaults),
                                            ::testing::ValuesIn(kCableRates)),
                         NameOfRun);

class ModbusFaultRunOfOne : public ModbusFaultRun {
 protected:
  ModbusFaultRunOfOne() : ModbusFaultRun(20240306) {}
};

TEST_F(ModbusFaultRunOfOne, AStreamWithoutEndIsReadForAsLongAsItLasts) {
  RunUnderAnEndlessStream();
}

TEST_F(ModbusFaultRunOfOne, APortThatCanNotBeOpenedIsToldOnce) { RunUnderBusyPort(); }

TEST_F(ModbusFaultRunOfOne, RandomFramesPassByChanceOnly) { RunUnderRandomFrames(); }

TEST_F(ModbusFaultRunOfOne, ASoundLineShowsTheMemoryAllTheTime) { RunUnderNone(ExchangesEach()); }

// At the speed of the line, with a slave that takes its time.
class ModbusSlowLine : public ModbusFaultRun, public ::testing::WithParamInterface<FaultOfRun> {
 protected:
  ModbusSlowLine() : ModbusFaultRun(20240307, kSlowLine) {}
};

TEST_P(ModbusSlowLine, IsAsGoodAsNewAfterOneFault) { RunUnderOne(GetParam()); }

INSTANTIATE_TEST_SUITE_P(EachFault, ModbusSlowLine, ::testing::ValuesIn(Faults()), NameOfFault);

class ModbusSlowLineOfAll : public ModbusFaultRun {
 protected:
  ModbusSlowLineOfAll() : ModbusFaultRun(20240308, kSlowLine) {}
};

TEST_F(ModbusSlowLineOfAll, StandsAllFaultsTogether) { RunUnderAll(Faults(), 20'000); }

TEST(FaultsOfTheModbusRun, AreAllThatFitTheProtocol) {
  ExpectAllThatFit("modbus", {NamesOf(Faults()), NamesOf(kCableFaults)});
}

}  // namespace
}  // namespace tarnlink
