#include "simulator/crc.h"

namespace boiler {
namespace {

constexpr unsigned kXmodemPolynomial = 0x1021;
constexpr unsigned kModbusPolynomial = 0xA001;  // 0x8005 read from its low end

}  // namespace

std::uint16_t CrcXmodem(std::string_view bytes) {
  unsigned crc = 0;
  for (const char byte : bytes) {
    for (int bit = 7; bit >= 0; --bit) {
      const bool differs = ((crc >> 15 ^ static_cast<unsigned>(byte) >> bit) & 1) != 0;
      crc = crc << 1 & 0xFFFF;
      if (differs) crc ^= kXmodemPolynomial;
    }
  }
  return static_cast<std::uint16_t>(crc);
}

std::uint16_t CrcModbus(std::string_view bytes) {
  unsigned crc = 0xFFFF;
  for (const char byte : bytes) {
    for (int bit = 0; bit < 8; ++bit) {
      const bool differs = ((crc ^ static_cast<unsigned>(byte) >> bit) & 1) != 0;
      crc >>= 1;
      if (differs) crc ^= kModbusPolynomial;
    }
  }
  return static_cast<std::uint16_t>(crc);
}

}  // namespace boiler
