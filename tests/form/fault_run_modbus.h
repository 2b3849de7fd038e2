// The screen and the boiler of the runs under Modbus, what its frames mean, and its faults.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "form/fault_run_polled.h"
#include "form/locations.h"
#include "simulator/bytes.h"
#include "simulator/crc.h"
#include "simulator/modbus_registers.h"

namespace tarnlink::modbus_faults {

inline constexpr std::size_t kHead = 3;   // slave, function and byte count of an answer to a read
inline constexpr std::size_t kCheck = 2;  // bytes of a check
inline constexpr std::size_t kWriteAnswer = 8;
inline constexpr int k9600 = 3;   // index of opt_Baudrate
inline constexpr int kBlock = 2;  // the Locations of which the first reads all three

inline Location InputAt(const std::string& address, const std::string& slave) {
  Location location = RegisterAt(address, slave);
  location.FunctionCode = "&H04";
  return location;
}

inline const std::vector<Location>& Locations() {
  static const std::vector<Location> locations = {
      RegisterAt("0200", "1"),
      HeadOf(3, RegisterAt("0201", "1")),
      Follower(RegisterAt("0202", "1")),
      Follower(RegisterAt("0203", "1")),
      HeadOf(2, InputAt("0021", "0A")),
      Follower(InputAt("0022", "0A")),
      Selected(kMsb, RegisterAt("0210", "1")),
      Selected(kLsb, RegisterAt("0211", "1")),
      RegisterAt("0212", "0A"),
  };
  return locations;
}
inline constexpr std::size_t kPollsPerRound = 6;
inline constexpr int kLast = 9;

inline const Location& At(int index) { return Locations()[static_cast<std::size_t>(index - 1)]; }

inline int Number(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]) << 8 | static_cast<unsigned char>(bytes[at + 1]);
}

inline std::string TextOfRegister(int number, const Location& location) {
  if (location.SelectByte == kMsb) return boiler::HexDigits(number >> 8, 2);
  if (location.SelectByte == kLsb) return boiler::HexDigits(number & 0xFF, 2);
  return boiler::HexDigits(number, 4);
}

// Whether the last two bytes are the check of so many from the first on. They are the last ones
// wherever they stand, so that a byte that is gone from between two of its kind is not missed.
inline bool CheckHolds(std::string_view bytes, std::size_t covered) {
  if (bytes.size() < covered || bytes.size() < kCheck) return false;
  const std::uint16_t check = boiler::CrcModbus(bytes.substr(0, covered));
  return bytes.substr(bytes.size() - kCheck) ==
         std::string{static_cast<char>(check & 0xFF), static_cast<char>(check >> 8)};
}

class ModbusReader final : public FrameReader {
 public:
  std::vector<int> Shows(std::string_view request) const override {
    std::vector<int> shows;
    const int registers = RegistersOf(request);
    for (int i = 1; i <= kLast; ++i) {
      if (NumberOf(At(i)) != Number(request, 2)) continue;
      for (int r = 0; r < registers; ++r) shows.push_back(i + r);
      break;
    }
    return shows;
  }

  // How long the answer is follows from the request, and only the check has to agree.
  std::string_view Sound(std::string_view bytes, std::string_view request) const override {
    const std::size_t covered = kHead + 2 * static_cast<std::size_t>(RegistersOf(request));
    return CheckHolds(bytes, covered) ? bytes.substr(0, covered + kCheck) : std::string_view();
  }

  bool Fits(std::string_view bytes, int) const override { return bytes[1] == 3 || bytes[1] == 4; }

  std::string TextOf(std::string_view bytes, int place, int index) const override {
    return TextOfRegister(Number(bytes, kHead + 2 * static_cast<std::size_t>(place)), At(index));
  }

  bool IsWord(std::string_view bytes, std::string_view, const std::string& word) const override {
    return word == "-" && (bytes[1] == 6 || bytes[1] == 16) &&
           CheckHolds(bytes, kWriteAnswer - kCheck);
  }

  std::string Held(const boiler::Controller& controller, int index) const override {
    const Location& location = At(index);
    return TextOfRegister(boiler::HoldingRegister(controller, NumberOf(location)).value_or(0),
                          location);
  }

 private:
  // That an answer is taken to have; none where one register is written.
  static int RegistersOf(std::string_view request) {
    return request[1] == 6 ? 0 : static_cast<unsigned char>(request[5]);
  }
};

inline const ModbusReader kReader;

class ModbusFaultRun : public PolledFaultRun {
 protected:
  explicit ModbusFaultRun(std::uint64_t seed, const LineSpeed& speed = kAtOnce)
      : PolledFaultRun(kReader, {.protocol = "modbus",
                                 .slave = {.addresses = "1,10"},
                                 .line = speed.line,
                                 .seed = seed}) {
    for (int i = 1; i <= kLast; ++i) {
      if (!boiler::CanWriteRegister(NumberOf(At(i)))) continue;
      boiler::WriteRegister(boiler.controller(), NumberOf(At(i)),
                            static_cast<std::uint16_t>(0x1234 + 0x1011 * i));
    }
    // A second acknowledgement of a write to the first Location steps back once more; the next
    // poll step makes good for it.
    lowest_pointer = -1;
    monitor.options.opt_Baudrate.Select(k9600);
    Begin(kModbusProtocol, Locations(), kPollsPerRound, speed.poll_time);
  }

  const std::vector<std::string>& RunningStates() const override {
    static const std::vector<std::string> states = {
        "Ready, port open, timers Comm_Timer",
        "Ready, port open, timers Comm_Timer tmr_noresponse",
        "Waiting, port open, timers Comm_Timer tmr_noresponse",
        // An answer has begun, and the rest of it is waited for.
        "Waiting, port open, timers Comm_Timer",
    };
    return states;
  }

  void WriteSomething(std::size_t turn) override {
    const int number = static_cast<int>((0x2000 + turn) % 0xF000);
    if (write_turn_++ % 2 == 0) {
      Write(write_turn_ % 4 == 1 ? 1 : kLast, boiler::HexDigits(number, 4));
    } else {
      WriteBlock(kBlock, {number, number + 1});
    }
  }

 private:
  int write_turn_ = 0;
};

inline std::vector<FaultOfRun> Faults() {
  std::vector<FaultOfRun> faults = CommonFaults();
  for (FaultOfRun more : std::initializer_list<FaultOfRun>{
           {"self_echo", Harm::kNone},
           {"foreign_traffic", Harm::kNone},
           {"noise_idle(300)", Harm::kByChance},
           {"pause_midframe(3500)", Harm::kNone},
           {"slow_bytes(400)", Harm::kNone},
           {"long_count", Harm::kByChance},
           {"refused(6)", Harm::kNone},
       }) {
    faults.push_back(more);
  }
  return faults;
}

}  // namespace tarnlink::modbus_faults
