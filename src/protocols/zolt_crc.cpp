#include "protocols/zolt_crc.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnlink {
namespace {

constexpr unsigned kPolynomial = 0x1021;
constexpr unsigned kHighestBit = 0x8000;

constexpr std::array<std::uint16_t, 256> MakeTable() {
  std::array<std::uint16_t, 256> table{};
  for (unsigned high = 0; high < table.size(); ++high) {
    unsigned crc = high << 8;
    for (int bit = 0; bit < 8; ++bit)
      crc = (crc << 1) ^ ((crc & kHighestBit) != 0 ? kPolynomial : 0);
    table[high] = static_cast<std::uint16_t>(crc);
  }
  return table;
}

constexpr std::array<std::uint16_t, 256> kTable = MakeTable();

}  // namespace

std::uint16_t Calc_Crc_Byte(std::uint8_t byte, std::uint16_t crc) {
  return static_cast<std::uint16_t>(kTable[crc >> 8] ^ (crc & 0xFF) << 8 ^ byte);
}

std::uint16_t CRC16(std::span<const std::uint8_t> bytes) {
  std::uint16_t crc = 0;
  for (const std::uint8_t byte : bytes) crc = Calc_Crc_Byte(byte, crc);
  return crc;
}

std::uint16_t Calc_Crc(std::string_view text) {
  constexpr std::size_t kCounted = 10;
  constexpr std::size_t kZerosBehind = 2;
  std::array<std::uint8_t, kCounted + kZerosBehind> bytes{};
  std::copy_n(text.begin(), std::min(text.size(), kCounted), bytes.begin());
  return CRC16(bytes);
}

}  // namespace tarnlink
