// The two 16-bit checks that frames and memory carry, each worked out bit by bit.
#pragma once

#include <cstdint>
#include <string_view>

namespace boiler {

// CRC-16/XMODEM: polynomial 0x1021 from 0, high bit first.
std::uint16_t CrcXmodem(std::string_view bytes);

// CRC-16/MODBUS: polynomial 0x8005 from 0xFFFF, low bit first.
std::uint16_t CrcModbus(std::string_view bytes);

}  // namespace boiler
