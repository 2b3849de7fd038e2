// The screen and the boiler of the runs under ZOLT, what its frames mean, and its faults.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "form/fault_run_polled.h"
#include "form/locations.h"
#include "simulator/bytes.h"
#include "simulator/crc.h"

namespace tarnlink::zolt_faults {

inline constexpr std::size_t kFrame = 16;
inline constexpr int kSetpoint = 5;  // the Location of the boiler's set point

inline const std::vector<Location>& Locations() {
  static const std::vector<Location> locations = {
      IdAt("003D", "0"),
      OfSlave("0", ByteAt("F400")),
      OfSlave("3", WordAt("F402")),
      IdAt("14D9", "3"),
      Selected(kMsb, IdAt("056D", "3", 5)),
      OfSlave("3", ByteAt("F405")),
      IdAt("0BAD", "0"),
      IdAt("14D9", "0"),
      OfSlave("0", WordAt("F410")),
  };
  return locations;
}

inline const Location& At(int index) { return Locations()[static_cast<std::size_t>(index - 1)]; }

class ZoltReader final : public FrameReader {
 public:
  std::vector<int> Shows(std::string_view request) const override {
    if (request.size() != kFrame || (request[1] & 0x80) != 0) return {};
    for (int i = 1; i <= static_cast<int>(Locations().size()); ++i) {
      const Location& location = At(i);
      const bool memory = location.Specification == 0;
      const std::string_view address = request.substr(memory ? 7 : 3, 4);
      if ((request[1] == 7) == memory && location.LocSlaveAddress == request.substr(2, 1) &&
          location.Address == address) {
        return {i};
      }
    }
    return {};
  }

  std::string_view Sound(std::string_view bytes, std::string_view) const override {
    if (bytes.size() < kFrame) return {};
    const std::string check = boiler::HexDigits(boiler::CrcXmodem(bytes.substr(1, 10)), 4);
    return bytes.substr(11, 4) == check ? bytes.substr(0, kFrame - 1) : std::string_view();
  }

  bool Fits(std::string_view bytes, int index) const override {
    const Location& location = At(index);
    const auto type = static_cast<unsigned char>(bytes[1]);
    if (location.Specification == 0) return type == 0x17 || type == 0x97;
    return (type >> 4 == 1 || type >> 4 == 9) && bytes.substr(3, 4) == location.Address &&
           bytes.substr(2, 1) == location.LocSlaveAddress;
  }

  std::string TextOf(std::string_view bytes, int, int index) const override {
    const Location& location = At(index);
    if (location.StorageType >= kUnsignedWord) return std::string(bytes.substr(7, 4));
    return std::string(bytes.substr(location.SelectByte == kMsb ? 7 : 9, 2));
  }

  // Whatever comes after a write is its answer. "Unknown ID" is believed without a check.
  bool IsWord(std::string_view bytes, std::string_view request,
              const std::string& word) const override {
    if (word == "-") return (request[1] & 0x80) != 0;
    return bytes.size() >= kFrame && static_cast<unsigned char>(bytes[1]) >> 4 == 6;
  }

  std::string Held(const boiler::Controller& controller, int index) const override {
    const Location& location = At(index);
    const auto& memory = controller.memory();
    const std::uint16_t address = NumberOf(location);
    if (location.Specification == 0) {
      const bool word = location.StorageType == kUnsignedWord;
      return word ? boiler::HexDigits(memory.Word(address), 4)
                  : boiler::HexDigits(memory.Byte(address), 2);
    }
    const auto item = [&](std::string_view name) { return controller.Value(boiler::Item(name)); };
    if (index == kSetpoint) return boiler::HexDigits(item("flow_setpoint"), 2);
    if (location.Address == "003D") return "0502";
    if (location.Address == "0BAD") return "can not read";
    return boiler::HexDigits(item("software_number") + location.LocSlaveAddress.front() - '0', 4);
  }
};

inline const ZoltReader kReader;

class ZoltFaultRun : public PolledFaultRun {
 protected:
  explicit ZoltFaultRun(std::uint64_t seed, const LineSpeed& speed = kAtOnce)
      : PolledFaultRun(
            kReader,
            {.protocol = "zolt", .slave = {.addresses = "0,3"}, .line = speed.line, .seed = seed}) {
    boiler.controller().WriteByte(0xF400, 0x5A);
    boiler.controller().WriteWord(0xF402, 0x1234);
    boiler.controller().WriteByte(0xF405, 0xC3);
    boiler.controller().WriteWord(0xF410, 0x8FED);
    Begin(kZoltProtocol, Locations(), static_cast<int>(Locations().size()), speed.poll_time);
  }

  const std::vector<std::string>& RunningStates() const override {
    static const std::vector<std::string> states = {
        "Ready, port open, timers Comm_Timer",
        "Ready, port open, timers Comm_Timer tmr_noresponse",
        "Waiting, port open, timers Comm_Timer tmr_noresponse",
    };
    return states;
  }

  // The user does not write between the halves of a word.
  bool MayWrite() const override {
    const frm_Main& main = monitor.main;
    return PolledFaultRun::MayWrite() && !(main.write_message && main.SendSecondByte);
  }

  void WriteSomething(std::size_t turn) override {
    const int number = static_cast<int>(turn);
    switch (write_turn_++ % 3) {
      case 0:
        return Write(2, boiler::HexDigits(number % 256, 2));
      case 1:
        return Write(3, boiler::HexDigits(0x2000 + number % 0x1000, 4));
      default:
        if (monitor.main.Locations[kSetpoint].ScanFlags == kScanningDisabled) {
          return Write(6, boiler::HexDigits(number % 256, 2));
        }
        return Write(kSetpoint, boiler::HexDigits(30 + number % 50, 2));
    }
  }

 private:
  int write_turn_ = 0;
};

inline std::vector<FaultOfRun> Faults() {
  std::vector<FaultOfRun> faults = CommonFaults();
  for (FaultOfRun more : std::initializer_list<FaultOfRun>{
           // The answer of a write that comes behind bytes which were taken for it is shown for the
           // Location before, if that is memory.
           {"self_echo", Harm::kAstray},
           {"foreign_traffic", Harm::kAstray},
           {"noise_idle(300)", Harm::kAstray},
           {"pause_midframe(3500)", Harm::kAstray},
           {"slow_bytes(400)", Harm::kAstray},
           {"long_count", Harm::kByChance},
           {"refused(6)", Harm::kNone},
       }) {
    faults.push_back(more);
  }
  // The check covers neither the first nor the last of the 16 bytes.
  return WithUncovered(std::move(faults), {{"bit_flip(1)", 16.0 / 128},
                                           {"bit_flip(2)", 16.0 / 128 * 15 / 127},
                                           {"bit_flip(3)", 16.0 / 128 * 15 / 127 * 14 / 126},
                                           {"burst(8)", 2.0 / 121},
                                           {"byte_replace", 2.0 / 16}});
}

}  // namespace tarnlink::zolt_faults
