// The controller's memory: 64 KiB by address. A word lies with its low byte at the address and its
// high byte at the address plus one; behind FFFF comes 0000.
#pragma once

#include <array>
#include <cstdint>

namespace boiler {

class Memory {
 public:
  std::uint8_t Byte(std::uint16_t address) const { return cells_[address]; }
  void SetByte(std::uint16_t address, std::uint8_t value) { cells_[address] = value; }

  std::uint16_t Word(std::uint16_t address) const {
    return static_cast<std::uint16_t>(Byte(address) | Byte(Next(address)) << 8);
  }
  void SetWord(std::uint16_t address, std::uint16_t value) {
    SetByte(address, static_cast<std::uint8_t>(value & 0xFF));
    SetByte(Next(address), static_cast<std::uint8_t>(value >> 8));
  }

  // Sets the bytes `first` to `last`, both included, to 0.
  void Erase(std::uint16_t first, std::uint16_t last) {
    for (unsigned at = first; at <= last; ++at) cells_[at] = 0;
  }

 private:
  static std::uint16_t Next(std::uint16_t address) {
    return static_cast<std::uint16_t>(address + 1);
  }

  std::array<std::uint8_t, 0x10000> cells_{};
};

}  // namespace boiler
