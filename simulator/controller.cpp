#include "simulator/controller.h"

#include <algorithm>
#include <string>

#include "simulator/crc.h"
#include "simulator/random.h"

namespace boiler {
namespace {

constexpr std::uint64_t kEepromPattern = 100;  // its own numbers of the seed

// Brings the check of the EEPROM block at `first` up to date.
void CheckBlock(Memory& memory, std::uint16_t first) {
  std::string data;
  for (int i = 0; i < kEepromBlockData; ++i) {
    data += static_cast<char>(memory.Byte(static_cast<std::uint16_t>(first + i)));
  }
  memory.SetWord(static_cast<std::uint16_t>(first + kEepromBlockData), CrcXmodem(data));
}

}  // namespace

Controller::Controller(std::uint64_t seed) : model_(seed) {
  FillEeprom(seed);
  PowerOn();
}

void Controller::AdvanceTo(std::int64_t now_us) {
  const std::int64_t due = now_us / kStepUs;
  if (due <= steps_) return;
  CarryOutCommands();
  const BoilerSettings settings = Settings();
  for (; steps_ < due; ++steps_) model_.Step(settings);
  Publish();
}

int Controller::Value(const MemoryItem& item) const {
  switch (item.type) {
    case ItemType::kWord:
      return memory_.Word(item.address);
    case ItemType::kSignedWord:
      return static_cast<std::int16_t>(memory_.Word(item.address));
    case ItemType::kSignedByte:
      return static_cast<std::int8_t>(memory_.Byte(item.address));
    case ItemType::kByte:
    case ItemType::kBits:
      break;
  }
  return memory_.Byte(item.address);
}

void Controller::Set(const MemoryItem& item, int value) {
  Store(item, value);
  if (item.role != ItemRole::kEeprom) return;
  CheckBlock(memory_, static_cast<std::uint16_t>(item.address / kEepromBlock * kEepromBlock));
}

void Controller::Reboot() {
  model_.Restart();
  PowerOn();
}

void Controller::FillEeprom(std::uint64_t seed) {
  for (unsigned at = kEepromFirst; at <= kEepromLast; ++at) {
    memory_.SetByte(static_cast<std::uint16_t>(at),
                    static_cast<std::uint8_t>(Mix(seed, kEepromPattern, at)));
  }
  for (const MemoryItem& item : MemoryLayout()) {
    if (item.role == ItemRole::kEeprom) Store(item, item.power_on);
  }
  for (unsigned block = kEepromFirst; block <= kEepromLast; block += kEepromBlock) {
    CheckBlock(memory_, static_cast<std::uint16_t>(block));
  }
}

void Controller::PowerOn() {
  memory_.Erase(0x0000, kEepromFirst - 1);
  memory_.Erase(kEepromLast + 1, 0xFFFF);
  for (const MemoryItem& item : MemoryLayout()) {
    const bool stored = item.stored_at != 0;
    if (stored) Store(item, memory_.Byte(item.stored_at));
    const bool fixed = item.role == ItemRole::kSetting || item.role == ItemRole::kConstant;
    if (fixed && !stored) Store(item, item.power_on);
  }
  Publish();
}

// A setting outside its range counts as the nearest end of it.
BoilerSettings Controller::Settings() const {
  BoilerSettings settings;
  for (const MemoryItem& item : MemoryLayout()) {
    if (item.setting == nullptr) continue;
    settings.*item.setting = std::clamp(Value(item), item.lowest, item.highest);
  }
  return settings;
}

void Controller::CarryOutCommands() {
  static const std::uint16_t reset = Item("reset").address;
  static const std::uint16_t lock_out = Item("lock_out").address;
  if (memory_.Byte(reset) != 0) model_.ResetLockout();
  if (memory_.Byte(lock_out) != 0) model_.LockOut(memory_.Byte(lock_out));
  memory_.SetByte(reset, 0);
  memory_.SetByte(lock_out, 0);
}

void Controller::Publish() {
  for (const MemoryItem& item : MemoryLayout()) {
    if (item.live != nullptr) Store(item, item.live(model_.Now()));
  }
}

void Controller::Store(const MemoryItem& item, int value) {
  if (IsWord(item.type)) {
    memory_.SetWord(item.address, static_cast<std::uint16_t>(value));
  } else {
    memory_.SetByte(item.address, static_cast<std::uint8_t>(value));
  }
}

}  // namespace boiler
