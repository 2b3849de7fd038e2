#include "simulator/controller.h"

#include <algorithm>

#include "simulator/random.h"

namespace boiler {
namespace {

constexpr std::uint64_t kEepromPattern = 100;  // its own numbers of the seed

// Polynomial 0x1021 from 0, bit by bit.
std::uint16_t BlockCheck(const Memory& memory, std::uint16_t first, int count) {
  unsigned check = 0;
  for (int i = 0; i < count; ++i) {
    check ^= static_cast<unsigned>(memory.Byte(static_cast<std::uint16_t>(first + i))) << 8;
    for (int bit = 0; bit < 8; ++bit) {
      check = (check & 0x8000) != 0 ? check << 1 ^ 0x1021 : check << 1;
    }
  }
  return static_cast<std::uint16_t>(check);
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
    const auto first = static_cast<std::uint16_t>(block);
    memory_.SetWord(static_cast<std::uint16_t>(block + kEepromBlockData),
                    BlockCheck(memory_, first, kEepromBlockData));
  }
}

void Controller::PowerOn() {
  memory_.Erase(0x0000, kEepromFirst - 1);
  memory_.Erase(kEepromLast + 1, 0xFFFF);
  for (const MemoryItem& item : MemoryLayout()) {
    if (item.role == ItemRole::kSetting) Store(item, memory_.Byte(item.stored_at));
    if (item.role == ItemRole::kConstant) Store(item, item.power_on);
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
