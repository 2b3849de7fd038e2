// The check sum of ZOLT frames and of parameter blocks: polynomial 0x1021, not reflected, from 0.
// Its table is a constant, so nothing has to be filled before the first frame.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tarnlink {

// The CRC after one more byte.
std::uint16_t Calc_Crc_Byte(std::uint8_t byte, std::uint16_t crc);

// The CRC of all bytes as they stand. A message needs two zero bytes behind it before its last byte
// counts in full; they are the caller's to add.
std::uint16_t CRC16(std::span<const std::uint8_t> bytes);

// The CRC of the first ten characters of `text`, a shorter text filled up with zero bytes: that of
// a frame's body, and equal to CRC-16/XMODEM of the ten.
std::uint16_t Calc_Crc(std::string_view text);

}  // namespace tarnlink
