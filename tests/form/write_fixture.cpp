#include "form/write_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kProtocolNames[] = {"tarnlink", "zolt", "modbus"};
constexpr const char* kAddresses[] = {"", "0", "1"};
constexpr int k9600 = 3;  // index of opt_Baudrate

}  // namespace

WriteTest::WriteTest(int protocol)
    : boiler(world, {.protocol = kProtocolNames[protocol],
                     .slave = {.addresses = kAddresses[protocol]},
                     .line = {.answer_delay_us = 5'000}}) {
  ChooseProtocol(protocol);
  monitor.options.opt_Baudrate.Select(k9600);
}

void WriteTest::Run(const std::vector<Location>& locations) {
  Screen(locations);
  Start();
  Advance(38);
  Sent();
}

}  // namespace tarnlink
