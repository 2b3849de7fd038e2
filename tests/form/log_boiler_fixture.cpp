#include "form/log_boiler_fixture.h"

#include "form/locations.h"
#include "simulator/memory_layout.h"

namespace tarnlink {
namespace {

Location LowByteOf(int word, int protocol) {
  Location location = protocol == kModbusProtocol
                          ? Selected(kLsb, RegisterAt(word == 1 ? "0200" : "0201"))
                          : ByteAt(word == 1 ? "F400" : "F402");
  location.Alias = word == 1 ? "first" : "second";
  return Logged(location);
}

}  // namespace

std::string NameOfProtocol(const ::testing::TestParamInfo<BoilerProtocol>& info) {
  return info.param.name;
}

TwoLogged::TwoLogged()
    : boiler(world, {.protocol = GetParam().name,
                     .slave = {.addresses = GetParam().addresses},
                     .line = {.answer_delay_us = 5'000}}) {
  const int protocol = GetParam().index;
  ChooseProtocol(protocol);
  monitor.options.opt_Baudrate.Select(k9600);
  Screen({LowByteOf(1, protocol), LowByteOf(2, protocol)});
}

void TwoLogged::BoilerHolds(std::uint16_t first, std::uint16_t second) {
  boiler.controller().WriteWord(boiler::kFreeRamFirst, first);
  boiler.controller().WriteWord(boiler::kFreeRamFirst + 2, second);
}

void TwoLogged::FinishRow() {
  const int row = monitor.main.DDERowCounter;
  EXPECT_TRUE(
      world.RunUntil([&] { return monitor.main.DDERowCounter > row; }, std::chrono::seconds(1)));
}

}  // namespace tarnlink
