#include "simulator/modbus_registers.h"

#include <algorithm>

namespace boiler {
namespace {

constexpr ModbusRegister kRegisters[] = {
    {0x0000, "phase"},
    {0x0001, "status_low", "status_high"},
    {0x0002, "flow_temperature"},
    {0x0003, "return_temperature"},
    {0x0004, "dhw_temperature"},
    {0x0005, "exhaust_temperature"},
    {0x0006, "outside_temperature"},
    {0x0007, "fan_speed"},
    {0x0008, "fan_target"},
    {0x0009, "water_pressure"},
    {0x000A, "flame_current"},
    {0x000B, "flame_ad"},
    {0x000C, "power"},
    {0x000D, "tap_flow"},
    {0x000E, "demand"},
    {0x000F, "error_code"},
    {0x0010, "life"},
    {0x0011, "noise"},
    {0x0012, "phase_seconds"},
    {0x0013, "uptime_seconds"},
    {0x0014, "flow_ad"},
    {0x0015, "return_ad"},
    {0x0016, "dhw_ad"},
    {0x0017, "outside_ad"},
    {0x0018, "burner_starts"},
    {0x0019, "lockouts"},
    {0x001A, "burner_starts_dhw"},
    {0x001B, "hours_burner"},
    {0x001C, "hours_burner_dhw"},
    {0x001D, "hours_on"},
    {0x001E, "dhw_volume"},
    {0x001F, "hours_ch_pump"},
    {0x0020, "hours_dhw_pump"},
    {0x0021, "version_minor", "version_major"},
    {0x0022, "software_number"},
    {0x0023, "error_code_0"},
    {0x0024, "error_code_1"},
    {0x0025, "error_code_2"},
    {0x0026, "error_code_3"},
    {0x0027, "error_code_4"},
    {0x0028, "error_code_5"},
    {0x0029, "error_code_6"},
    {0x002A, "error_code_7"},
    {0x002B, "error_hours_0"},
    {0x002C, "error_hours_1"},
    {0x002D, "error_hours_2"},
    {0x002E, "error_hours_3"},
    {0x002F, "error_hours_4"},
    {0x0030, "error_hours_5"},
    {0x0031, "error_hours_6"},
    {0x0032, "error_hours_7"},
    {0x0100, "flow_setpoint"},
    {0x0101, "dhw_setpoint"},
    {0x0102, "heat_demand"},
    {0x0103, "tap"},
    {0x0104, "test_power"},
    {0x0105, "reset"},
    {0x0106, "lock_out"},
    {0x0110, "stored_flow_setpoint"},
    {0x0111, "stored_dhw_setpoint"},
    {0x0112, "stored_heat_demand"},
    {0x0113, "stored_tap"},
    {0x0114, "prepurge_time"},
    {0x0115, "ignition_time"},
    {0x0116, "postpurge_time"},
    {0x0117, "retries"},
    {0x0118, "storage_setpoint"},
};

bool IsFree(std::uint16_t number) {
  return number >= kFirstFreeRegister && number <= kLastFreeRegister;
}

std::uint16_t FreeAddress(std::uint16_t number) {
  return static_cast<std::uint16_t>(kFreeRamFirst + 2 * (number - kFirstFreeRegister));
}

const ModbusRegister* Find(std::uint16_t number) {
  const auto found = std::find_if(std::begin(kRegisters), std::end(kRegisters),
                                  [&](const ModbusRegister& one) { return one.number == number; });
  return found == std::end(kRegisters) ? nullptr : found;
}

}  // namespace

std::span<const ModbusRegister> ModbusRegisters() { return kRegisters; }

std::optional<std::uint16_t> HoldingRegister(const Controller& controller, std::uint16_t number) {
  if (IsFree(number)) return controller.memory().Word(FreeAddress(number));
  const ModbusRegister* found = Find(number);
  if (found == nullptr) return std::nullopt;
  const int low = controller.Value(Item(found->item));
  const int high = found->high_item.empty() ? 0 : controller.Value(Item(found->high_item));
  return static_cast<std::uint16_t>(high << 8 | low);
}

std::optional<std::uint16_t> InputRegister(const Controller& controller, std::uint16_t number) {
  if (number >= kFirstHoldingOnly) return std::nullopt;
  return HoldingRegister(controller, number);
}

bool CanWriteRegister(std::uint16_t number) {
  if (IsFree(number)) return true;
  const ModbusRegister* found = Find(number);
  return found != nullptr && CanWriteItem(Item(found->item));
}

bool RegisterTakes(std::uint16_t number, std::uint16_t value) {
  if (IsFree(number)) return true;
  const MemoryItem& item = Item(Find(number)->item);
  return value >= item.lowest && value <= item.highest;
}

void WriteRegister(Controller& controller, std::uint16_t number, std::uint16_t value) {
  if (IsFree(number)) {
    controller.WriteWord(FreeAddress(number), value);
  } else {
    controller.Set(Item(Find(number)->item), value);
  }
}

bool CanWriteItem(const MemoryItem& item) {
  return item.role != ItemRole::kLive && item.role != ItemRole::kConstant;
}

}  // namespace boiler
