// A log of the simulated boiler under any protocol: two Locations that show the low bytes of the
// first two words of its free memory.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>

#include "form/boiler_on_line.h"
#include "form/log_fixture.h"

namespace tarnlink {

inline constexpr int k9600 = 3;  // index of opt_Baudrate

struct BoilerProtocol {
  int index;  // of opt_Protocol
  const char* name;
  const char* addresses;
};

inline constexpr BoilerProtocol kTarnlinkBoiler = {kTarnlinkProtocol, "tarnlink", ""};
inline constexpr BoilerProtocol kZoltBoiler = {kZoltProtocol, "zolt", "0"};
inline constexpr BoilerProtocol kModbusBoiler = {kModbusProtocol, "modbus", "1"};

inline void PrintTo(const BoilerProtocol& protocol, std::ostream* out) { *out << protocol.name; }
std::string NameOfProtocol(const ::testing::TestParamInfo<BoilerProtocol>& info);

class TwoLogged : public LogTest, public ::testing::WithParamInterface<BoilerProtocol> {
 protected:
  TwoLogged();

  void BoilerHolds(std::uint16_t first, std::uint16_t second);
  // Goes on until the row's last value is there.
  void FinishRow();

  BoilerOnLine boiler;
};

}  // namespace tarnlink
