#include "simulator/modbus_frames.h"

#include "simulator/bytes.h"
#include "simulator/crc.h"

namespace boiler {
namespace {

constexpr std::size_t kFunctionAt = 1;
constexpr std::size_t kFirstAt = 2;
constexpr std::size_t kCountAt = 4;  // or the value of function 6
constexpr std::size_t kBytesAt = 6;
constexpr std::size_t kValuesAt = 7;
constexpr std::size_t kCheckBytes = 2;
constexpr std::size_t kShortRequest = 8;

std::uint8_t ByteAt(std::string_view frame, std::size_t at) {
  return static_cast<std::uint8_t>(frame[at]);
}

std::uint16_t WordAt(std::string_view frame, std::size_t at) {
  return static_cast<std::uint16_t>(ByteAt(frame, at) << 8 | ByteAt(frame, at + 1));
}

std::string_view FunctionName(const ModbusRequest& request) {
  return request.function == kReadInput ? "input" : "holding";
}

}  // namespace

bool IsModbusFunction(std::uint8_t function) {
  return function == kReadHolding || function == kReadInput || function == kWriteOne ||
         function == kWriteSeveral;
}

std::optional<std::size_t> ModbusRequestLength(std::string_view begun) {
  if (begun.size() <= kFunctionAt) return std::nullopt;
  const std::uint8_t function = ByteAt(begun, kFunctionAt);
  if (!IsModbusFunction(function)) return std::nullopt;
  if (function != kWriteSeveral) return kShortRequest;
  if (begun.size() <= kBytesAt) return std::nullopt;
  return kValuesAt + ByteAt(begun, kBytesAt) + kCheckBytes;
}

ModbusRequest ParseModbusRequest(std::string_view frame) {
  ModbusRequest request;
  request.slave = ByteAt(frame, 0);
  request.function = ByteAt(frame, kFunctionAt);
  if (!IsModbusFunction(request.function)) return request;
  request.first = WordAt(frame, kFirstAt);
  request.count = WordAt(frame, kCountAt);
  if (request.function == kWriteOne) {
    request.values = {request.count};
    request.count = 1;
  }
  if (request.function == kWriteSeveral) {
    const int bytes = ByteAt(frame, kBytesAt);
    request.counts_agree = bytes == 2 * request.count;
    const std::size_t end = kValuesAt + static_cast<std::size_t>(bytes);
    for (std::size_t at = kValuesAt; at + 1 < end; at += 2) {
      request.values.push_back(WordAt(frame, at));
    }
  }
  return request;
}

std::string ModbusMeaning(const ModbusRequest& request) {
  const std::string slave =
      request.slave == kBroadcast ? ", to all slaves" : ", slave " + std::to_string(request.slave);
  if (!IsModbusFunction(request.function)) {
    return "function " + std::to_string(request.function) + slave;
  }
  std::string meaning = request.Write() ? "write " : "read ";
  meaning += std::to_string(request.count);
  meaning += ' ';
  meaning += FunctionName(request);
  meaning += request.count == 1 ? " register " : " registers from ";
  meaning += HexDigits(request.first, 4);
  for (const std::uint16_t value : request.values) meaning += ' ' + HexDigits(value, 4);
  return meaning + slave;
}

std::string WithModbusCheck(std::string body) {
  body += ModbusCheck(body);
  return body;
}

std::string ModbusCheck(std::string_view body) {
  const std::uint16_t crc = CrcModbus(body);
  return {static_cast<char>(crc & 0xFF), static_cast<char>(crc >> 8)};
}

bool ModbusCheckHolds(std::string_view frame) {
  if (frame.size() < kModbusShortest) return false;
  const std::size_t check_at = frame.size() - kCheckBytes;
  return frame.substr(check_at) == ModbusCheck(frame.substr(0, check_at));
}

std::string ModbusWord(std::uint16_t word) {
  return {static_cast<char>(word >> 8), static_cast<char>(word & 0xFF)};
}

}  // namespace boiler
