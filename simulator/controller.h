// The controller: the boiler, and the memory in which it can be seen and set.
#pragma once

#include <cstdint>
#include <string_view>

#include "simulator/boiler_model.h"
#include "simulator/memory.h"
#include "simulator/memory_layout.h"

namespace boiler {

class Controller {
 public:
  // Powered on at time 0.
  explicit Controller(std::uint64_t seed);

  // Lets the boiler live up to this time. What the memory holds then depends on the seed, the time
  // and what was written when, not on how often this is called. An earlier time does nothing.
  void AdvanceTo(std::int64_t now_us);

  const Memory& memory() const { return memory_; }
  const BoilerState& boiler() const { return model_.Now(); }

  void WriteByte(std::uint16_t address, std::uint8_t value) { memory_.SetByte(address, value); }
  void WriteWord(std::uint16_t address, std::uint16_t value) { memory_.SetWord(address, value); }

  // The item's value as a number with its sign.
  int Value(const MemoryItem& item) const;
  // What a master with an ID or a register for the item does: unlike a write to memory it brings
  // the check of an EEPROM block up to date.
  void Set(const MemoryItem& item, int value);

  // Power off and on: RAM starts anew, EEPROM, counters and error history stay.
  void Reboot();

 private:
  void FillEeprom(std::uint64_t seed);
  void PowerOn();
  BoilerSettings Settings() const;
  void CarryOutCommands();
  void Publish();
  void Store(const MemoryItem& item, int value);

  Memory memory_;
  BoilerModel model_;
  std::int64_t steps_ = 0;
};

}  // namespace boiler
