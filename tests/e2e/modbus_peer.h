// Modbus slaves in whose protocol nothing is ours, on a line of their own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "modbus_bridge.h"
#include "process.h"

namespace e2e {

// The library that the slave stands on.
enum class Peer { kLibmodbus, kPymodbus };

inline constexpr Peer kPeers[] = {Peer::kLibmodbus, Peer::kPymodbus};

std::string PeerName(Peer peer);

class ModbusPeer {
 public:
  static constexpr const char* kAddress = "1A";  // as a Location names it
  static constexpr int kRegisters = 0x300;       // of either table

  // `baud` is the line's, 0 for one that passes bytes on at once. Every register of both tables
  // holds a value of its own.
  explicit ModbusPeer(Peer peer, int baud = 0);

  LineBridge& line() { return line_; }

  // What register `index` of the table that `function` reads holds from the beginning.
  static std::uint16_t FirstValue(int function, int index);
  static std::vector<std::uint16_t> FirstValues(int function, int first, int count);

  void Set(int function, int first, const std::vector<std::uint16_t>& values);
  std::vector<std::uint16_t> Get(int function, int first, int count);
  // Requests that begin at this register get the exception; 0 ends that.
  void Refuse(int first, int code);

 private:
  std::string Ask(const std::string& command);

  LineBridge line_;
  Process slave_;
};

}  // namespace e2e
