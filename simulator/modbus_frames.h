// Modbus RTU frames: bytes to request, answer to bytes. Pure functions.
//
// Every frame: slave, function, what the function needs, CRC-16/MODBUS of all that, low byte first.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace boiler {

constexpr std::uint8_t kReadHolding = 3;
constexpr std::uint8_t kReadInput = 4;
constexpr std::uint8_t kWriteOne = 6;
constexpr std::uint8_t kWriteSeveral = 16;
constexpr std::uint8_t kExceptionBit = 0x80;

constexpr std::uint8_t kBroadcast = 0;
constexpr int kModbusFirstSlave = 1;
constexpr int kModbusLastSlave = 247;

// Slave, function and check; slave, function, up to 252 bytes more and check.
constexpr std::size_t kModbusShortest = 4;
constexpr std::size_t kModbusLongest = 256;

enum class ModbusException : std::uint8_t {
  kFunction = 1,
  kAddress = 2,
  kValue = 3,
  kBusy = 6,
};

struct ModbusRequest {
  std::uint8_t slave = 0;
  std::uint8_t function = 0;
  std::uint16_t first = 0;  // register
  std::uint16_t count = 0;
  std::vector<std::uint16_t> values;  // of a write
  bool counts_agree = true;           // of function 16: registers and bytes

  bool Write() const { return function == kWriteOne || function == kWriteSeveral; }
};

bool IsModbusFunction(std::uint8_t function);

// How long a request will be that begins so; nothing while too few bytes are there, and for a
// function that the slave does not know.
std::optional<std::size_t> ModbusRequestLength(std::string_view begun);

// Reads a request whose check holds. That of a function which the slave does not know has nothing
// but its slave and its function.
ModbusRequest ParseModbusRequest(std::string_view frame);

// "read 3 holding registers from 0010, slave 1".
std::string ModbusMeaning(const ModbusRequest& request);

// The bytes with the check behind them.
std::string WithModbusCheck(std::string body);

// The two bytes of the check, as they stand in a frame.
std::string ModbusCheck(std::string_view body);

// Whether the last two bytes are the check of all ahead of them.
bool ModbusCheckHolds(std::string_view frame);

// Two bytes, high first.
std::string ModbusWord(std::uint16_t word);

}  // namespace boiler
