// What slaves and broken lines say, made of an input. The checks are reckoned here once more, bit
// by bit, so that a mistake of the program's own cannot hide.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/fuzz_input.h"

namespace tarnlink {

// CRC-16/XMODEM and CRC-16/MODBUS.
std::uint16_t BitwiseXmodem(std::string_view bytes);
std::uint16_t BitwiseModbus(std::string_view bytes);

// A ZOLT frame around these ten bytes.
std::string SoundZolt(std::string_view body);
// Whether the frame's check is the value of its digits, of either case.
bool IsSoundZolt(std::string_view frame);
// A body of ten bytes: type, slave, ID and data, digits or not.
std::string ZoltBody(FuzzInput& input);

// `bytes` with their check behind them.
std::string SoundModbus(std::string bytes);

// A frame as `frame` on a bad day: as it is, one bit turned, cut, twice, or behind or before noise.
std::string OnTheLine(FuzzInput& input, std::string frame);

}  // namespace tarnlink
