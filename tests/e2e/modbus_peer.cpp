#include "modbus_peer.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "common/numbers.h"

namespace e2e {

namespace {

using tarnlink::Hex;

constexpr int kPatience = 10000;  // ms; an interpreter takes its time to start

std::vector<std::string> Command(Peer peer, const std::string& device) {
  // Debian's own interpreter is the one that sees Debian's packages.
  std::vector<std::string> command{"/usr/bin/python3", TARNLINK_PYMODBUS_SLAVE};
  if (peer == Peer::kLibmodbus) command = {TARNLINK_LIBMODBUS_SLAVE};
  command.insert(command.end(), {device, ModbusPeer::kAddress, Hex(ModbusPeer::kRegisters)});
  return command;
}

}  // namespace

std::string PeerName(Peer peer) { return peer == Peer::kLibmodbus ? "Libmodbus" : "Pymodbus"; }

ModbusPeer::ModbusPeer(Peer peer, int baud)
    : line_(baud), slave_(Command(peer, line_.slave_path()), {}) {
  if (slave_.ReadLine(kPatience) != "ready") throw std::runtime_error("The slave does not start.");
  for (const int function : {3, 4}) Set(function, 0, FirstValues(function, 0, kRegisters));
}

std::uint16_t ModbusPeer::FirstValue(int function, int index) {
  // An odd factor takes no two numbers to the same one.
  constexpr unsigned kFactor = 40503;
  constexpr unsigned kOffset = 0x1357;
  const auto number = static_cast<unsigned>(2 * index + (function == 4 ? 1 : 0));
  return static_cast<std::uint16_t>(number * kFactor + kOffset);
}

std::vector<std::uint16_t> ModbusPeer::FirstValues(int function, int first, int count) {
  std::vector<std::uint16_t> values;
  for (int i = first; i < first + count; ++i) values.push_back(FirstValue(function, i));
  return values;
}

void ModbusPeer::Set(int function, int first, const std::vector<std::uint16_t>& values) {
  std::string command = "set " + Hex(function) + " " + Hex(first);
  for (const std::uint16_t value : values) command += " " + Hex(value);
  EXPECT_EQ(Ask(command), "ok");
}

std::vector<std::uint16_t> ModbusPeer::Get(int function, int first, int count) {
  std::istringstream words(Ask("get " + Hex(function) + " " + Hex(first) + " " + Hex(count)));
  std::vector<std::uint16_t> values;
  words >> std::hex;
  for (std::uint16_t value; words >> value;) values.push_back(value);
  return values;
}

void ModbusPeer::Refuse(int first, int code) {
  EXPECT_EQ(Ask("refuse " + Hex(first) + " " + Hex(code)), "ok");
}

std::string ModbusPeer::Ask(const std::string& command) {
  slave_.Write(command);
  return slave_.ReadLine(kPatience);
}

}  // namespace e2e
