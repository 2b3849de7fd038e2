// What the controller holds in Modbus registers: the one table that the Modbus slave answers by and
// that docs/simulator.md shows. All values stand in the controller's memory.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "simulator/controller.h"

namespace boiler {

struct ModbusRegister {
  std::uint16_t number;
  std::string_view item;            // of the memory: the word, or its low byte
  std::string_view high_item = {};  // the high byte; empty where the item is the whole word
};

// In the order of numbers. Those below kFirstHoldingOnly are input registers as well.
std::span<const ModbusRegister> ModbusRegisters();
constexpr std::uint16_t kFirstHoldingOnly = 0x0100;

// Holding registers that nothing but a write changes, both ends included; they lie in the free RAM
// from its beginning.
constexpr std::uint16_t kFirstFreeRegister = 0x0200;
constexpr std::uint16_t kLastFreeRegister = 0x02FF;

// The register's value; nothing where there is no such register.
std::optional<std::uint16_t> HoldingRegister(const Controller& controller, std::uint16_t number);
std::optional<std::uint16_t> InputRegister(const Controller& controller, std::uint16_t number);

// Whether there is a holding register of this number that can be written.
bool CanWriteRegister(std::uint16_t number);
// Whether the value is within the range of that register.
bool RegisterTakes(std::uint16_t number, std::uint16_t value);
// Stores the value in a register that takes it.
void WriteRegister(Controller& controller, std::uint16_t number, std::uint16_t value);

// Whether the item of a register can be written.
bool CanWriteItem(const MemoryItem& item);

}  // namespace boiler
