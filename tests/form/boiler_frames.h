// Frames as the other end of the line makes them, with checks that are its own work.
#pragma once

#include <string>
#include <string_view>

#include "simulator/modbus_frames.h"
#include "support/byte_text.h"
#include "support/zolt_text.h"

namespace tarnlink {

// A Modbus frame, with its check behind the bytes.
inline std::string Framed(std::string_view hexadecimal) {
  return boiler::WithModbusCheck(Bytes(hexadecimal));
}

// A line of MonitorTest::Sent.
inline std::string SentLine(int milliseconds, std::string_view frame) {
  return std::to_string(milliseconds) + " ms: " + HexText(frame) + "\n";
}

// The same of a ZOLT frame; the CRC is the last of the digits.
inline std::string At(int type, const std::string& digits, int milliseconds) {
  return SentLine(milliseconds, Frame(type, digits));
}

}  // namespace tarnlink
