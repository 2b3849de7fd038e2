#include "simulator/memory_layout.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace boiler {
namespace {

using State = BoilerState;
using Show = int (*)(const State&);
using enum ItemType;

int Whole(double value) { return static_cast<int>(std::lround(value)); }
int Tenths(double value) { return Whole(value * 10); }
// A counter of the controller has 16 bits and starts again behind its end.
int Counter(double value) { return static_cast<int>(static_cast<std::int64_t>(value) & 0xFFFF); }
int Hours(double seconds) { return Counter(seconds / 3600); }
// Sensors are read through a divider: 1023 at -20 degrees, 0 at 120.
int SensorAd(double degrees) { return Whole(1023 - (degrees + 20) * 1023 / 140); }

MemoryItem Live(std::string_view name, std::uint16_t address, ItemType type, int lowest,
                int highest, std::string_view meaning, Show show) {
  return {name, address, type, ItemRole::kLive, lowest, highest, meaning, show};
}

MemoryItem Setting(std::string_view name, std::uint16_t address, int lowest, int highest,
                   int BoilerSettings::*setting, std::uint16_t stored_at,
                   std::string_view meaning) {
  return {name,    address, kByte, ItemRole::kSetting, lowest, highest, meaning,
          nullptr, setting, 0,     stored_at};
}

MemoryItem Command(std::string_view name, std::uint16_t address, std::string_view meaning) {
  return {name, address, kByte, ItemRole::kCommand, 0, 255, meaning};
}

MemoryItem Constant(std::string_view name, std::uint16_t address, ItemType type, int value,
                    std::string_view meaning) {
  return {name, address, type, ItemRole::kConstant, value, value, meaning, nullptr, nullptr, value};
}

MemoryItem Eeprom(std::string_view name, std::uint16_t address, int lowest, int highest,
                  int factory, std::string_view meaning, int BoilerSettings::*setting = nullptr) {
  return {name,    address, kByte,   ItemRole::kEeprom, lowest,
          highest, meaning, nullptr, setting,           factory};
}

// The other way round from power to fan speed.
double LoadOf(double rpm) { return (rpm - 1500) / 45; }

int StatusHigh(const State& s) {
  const bool burns = s.phase == Phase::kBurn;
  return (s.ch_demand && !s.dhw_demand) | s.dhw_demand << 1 | s.test_mode << 2 | burns << 3;
}

int StatusLow(const State& s) {
  const bool valves = s.phase == Phase::kIgnition || s.phase == Phase::kBurn;
  const bool fan = s.fan_rpm > 100;
  return (s.phase == Phase::kLockout) | valves << 1 | (s.phase == Phase::kBurn) << 2 | fan << 3 |
         fan << 4 | s.pump << 5;
}

std::vector<MemoryItem> LowRam() {
  return {
      Live("phase", 0x0060, kByte, 0, 6,
           "0 standby, 1 prepurge, 2 ignition, 3 burn, 4 postpurge, 5 wait, 6 lockout",
           [](const State& s) { return static_cast<int>(s.phase); }),
      Live("status_high", 0x0061, kBits, 0, 15, "bit 0 heating, 1 hot water, 2 test mode, 3 flame",
           StatusHigh),
      Live("status_low", 0x0062, kBits, 0, 63,
           "bit 0 fault, 1 valve 1, 2 valve 2, 3 air pressure switch, 4 fan, 5 pump", StatusLow),
      Live("life", 0x0064, kByte, 0, 255, "one more each tenth of a second, over and over",
           [](const State& s) { return s.steps & 0xFF; }),
      Live("flow_degrees", 0x01A0, kByte, 0, 115, "flow temperature in degrees",
           [](const State& s) { return Whole(s.flow); }),
      Live("return_degrees", 0x01A1, kByte, 0, 115, "return temperature in degrees",
           [](const State& s) { return Whole(s.back); }),
      Live("dhw_degrees", 0x01A2, kByte, 5, 70, "hot water temperature in degrees",
           [](const State& s) { return Whole(s.dhw); }),
      Live("outside_degrees", 0x01A3, kSignedByte, -20, 40, "outside temperature in degrees",
           [](const State& s) { return Whole(s.outside); }),
      Live("power", 0x01A4, kByte, 0, 100, "burner power in percent",
           [](const State& s) { return Whole(s.power); }),
  };
}

std::vector<MemoryItem> Measurements() {
  return {
      Live("flow_temperature", 0xF000, kSignedWord, 0, 1150, "tenths of a degree",
           [](const State& s) { return Tenths(s.flow); }),
      Live("return_temperature", 0xF002, kSignedWord, 0, 1150, "tenths of a degree",
           [](const State& s) { return Tenths(s.back); }),
      Live("dhw_temperature", 0xF004, kSignedWord, 50, 700, "tenths of a degree",
           [](const State& s) { return Tenths(s.dhw); }),
      Live("exhaust_temperature", 0xF006, kSignedWord, 0, 1600, "tenths of a degree",
           [](const State& s) { return Tenths(s.exhaust); }),
      Live("outside_temperature", 0xF008, kSignedWord, -200, 400, "tenths of a degree",
           [](const State& s) { return Tenths(s.outside); }),
      Live("fan_speed", 0xF00A, kWord, 0, 6500, "turns per minute",
           [](const State& s) { return Whole(s.fan_rpm); }),
      Live("fan_target", 0xF00C, kWord, 0, 6500, "turns per minute",
           [](const State& s) { return Whole(s.fan_target); }),
      Live("water_pressure", 0xF00E, kWord, 0, 300, "hundredths of a bar",
           [](const State& s) { return Whole(s.pressure * 100); }),
      Live("flame_current", 0xF010, kWord, 0, 100, "tenths of a microampere",
           [](const State& s) { return Tenths(s.flame_current); }),
      Live("flame_ad", 0xF012, kWord, 0, 1023, "flame current as converted, 10 bits",
           [](const State& s) { return Whole(s.flame_current * 90); }),
      Live("tap_flow", 0xF014, kByte, 0, 255, "hot water drawn, tenths of a litre per minute",
           [](const State& s) { return Tenths(s.tap_flow); }),
      Live("demand", 0xF015, kBits, 0, 3, "bit 0 heating, 1 hot water",
           [](const State& s) { return s.ch_demand | s.dhw_demand << 1; }),
      Live("error_code", 0xF016, kByte, 0, 255, "present error, 0 none",
           [](const State& s) { return s.error_code; }),
      Live("phase_seconds", 0xF018, kWord, 0, 65535, "seconds in the present phase",
           [](const State& s) { return Counter(s.phase_seconds); }),
      Live("uptime_seconds", 0xF01A, kWord, 0, 65535, "seconds since power on",
           [](const State& s) { return Counter(s.uptime_seconds); }),
      Live("flow_ad", 0xF020, kWord, 0, 1023, "flow sensor as converted, 10 bits",
           [](const State& s) { return SensorAd(s.flow); }),
      Live("return_ad", 0xF022, kWord, 0, 1023, "return sensor as converted, 10 bits",
           [](const State& s) { return SensorAd(s.back); }),
      Live("dhw_ad", 0xF024, kWord, 0, 1023, "hot water sensor as converted, 10 bits",
           [](const State& s) { return SensorAd(s.dhw); }),
      Live("outside_ad", 0xF026, kWord, 0, 1023, "outside sensor as converted, 10 bits",
           [](const State& s) { return SensorAd(s.outside); }),
  };
}

std::vector<MemoryItem> FurtherMeasurements() {
  return {
      Live("noise", 0xF028, kSignedByte, -128, 127, "a new random number each tenth of a second",
           [](const State& s) { return static_cast<int>(s.noise & 0xFF) - 128; }),
      Live("exchanger_temperature", 0xF02A, kSignedWord, 0, 1150, "tenths of a degree",
           [](const State& s) { return Tenths((s.flow + s.back) / 2); }),
      Live("air_temperature", 0xF02C, kSignedWord, -50, 600, "intake air, tenths of a degree",
           [](const State& s) { return Tenths(s.outside + 15 + s.power / 20); }),
      Live("flow_target", 0xF02E, kByte, 30, 85, "present target of the flow temperature, degrees",
           [](const State& s) { return Whole(s.target); }),
      Live("wait_seconds", 0xF02F, kByte, 0, 15, "left of the wait between two burner starts",
           [](const State& s) {
             return s.phase == Phase::kWait ? Whole(kWaitSeconds - s.phase_seconds) : 0;
           }),
      Live("valve_current", 0xF030, kByte, 0, 160, "gas valve, milliampere",
           [](const State& s) { return s.power > 0 ? Whole(60 + s.power) : 0; }),
      Live("measured_load", 0xF031, kByte, 0, 100, "burner load by the fan speed, percent",
           [](const State& s) {
             return s.phase == Phase::kBurn ? std::clamp(Whole(LoadOf(s.fan_rpm)), 0, 100) : 0;
           }),
  };
}

std::vector<MemoryItem> Counters() {
  return {
      Live("burner_starts", 0xF040, kWord, 0, 65535, "count",
           [](const State& s) { return Counter(s.counters.burner_starts); }),
      Live("lockouts", 0xF042, kWord, 0, 65535, "count",
           [](const State& s) { return Counter(s.counters.lockouts); }),
      Live("burner_starts_dhw", 0xF044, kWord, 0, 65535, "count",
           [](const State& s) { return Counter(s.counters.burner_starts_dhw); }),
      Live("hours_burner", 0xF046, kWord, 0, 65535, "hours",
           [](const State& s) { return Hours(s.counters.burner_seconds); }),
      Live("hours_burner_dhw", 0xF048, kWord, 0, 65535, "hours",
           [](const State& s) { return Hours(s.counters.burner_seconds_dhw); }),
      Live("hours_on", 0xF04A, kWord, 0, 65535, "hours",
           [](const State& s) { return Hours(s.counters.on_seconds); }),
      Live("dhw_volume", 0xF04C, kWord, 0, 65535, "cubic metres of hot water",
           [](const State& s) { return Counter(s.counters.dhw_litres / 1000); }),
      Live("hours_ch_pump", 0xF04E, kWord, 0, 65535, "hours",
           [](const State& s) { return Hours(s.counters.ch_pump_seconds); }),
      Live("hours_dhw_pump", 0xF050, kWord, 0, 65535, "hours",
           [](const State& s) { return Hours(s.counters.dhw_pump_seconds); }),
  };
}

template <int I>
MemoryItem ErrorCode(std::string_view name) {
  return Live(name, 0xF060 + I, kByte, 0, 255,
              I == 0 ? "newest entry of the error history" : "older entry of the error history",
              [](const State& s) { return s.errors[I].code; });
}

template <int I>
MemoryItem ErrorHours(std::string_view name) {
  return Live(name, 0xF068 + 2 * I, kWord, 0, 65535, "hours of operation when that error came",
              [](const State& s) { return Counter(s.errors[I].hours); });
}

std::vector<MemoryItem> ErrorHistory() {
  return {
      ErrorCode<0>("error_code_0"),   ErrorCode<1>("error_code_1"),
      ErrorCode<2>("error_code_2"),   ErrorCode<3>("error_code_3"),
      ErrorCode<4>("error_code_4"),   ErrorCode<5>("error_code_5"),
      ErrorCode<6>("error_code_6"),   ErrorCode<7>("error_code_7"),
      ErrorHours<0>("error_hours_0"), ErrorHours<1>("error_hours_1"),
      ErrorHours<2>("error_hours_2"), ErrorHours<3>("error_hours_3"),
      ErrorHours<4>("error_hours_4"), ErrorHours<5>("error_hours_5"),
      ErrorHours<6>("error_hours_6"), ErrorHours<7>("error_hours_7"),
  };
}

std::vector<MemoryItem> SettingsAndCommands() {
  using S = BoilerSettings;
  return {
      Setting("flow_setpoint", 0xF090, 30, 85, &S::flow_setpoint, 0x8000, "degrees"),
      Setting("dhw_setpoint", 0xF091, 35, 65, &S::dhw_setpoint, 0x8001, "degrees"),
      Setting("heat_demand", 0xF092, 0, 255, &S::heat_demand, 0x8002,
              "0 by the room thermostat, 255 always, others never"),
      Setting("tap", 0xF093, 0, 150, &S::tap_flow, 0x8003,
              "hot water drawn, tenths of a litre per minute; 0 by the household"),
      Setting("test_power", 0xF094, 0, 100, &S::test_power, 0,
              "test mode: burner power in percent, at least 25; 0 no test"),
      Command("reset", 0xF0A0, "any value but 0 ends a lockout"),
      Command("lock_out", 0xF0A1, "any value but 0 locks out with this error code"),
      Constant("version_major", 0xF0F0, kByte, 3, "software version, before the point"),
      Constant("version_minor", 0xF0F1, kByte, 7, "software version, behind the point"),
      Constant("software_number", 0xF0F2, kWord, 2040, "number of the software"),
  };
}

std::vector<MemoryItem> EepromItems() {
  using S = BoilerSettings;
  return {
      Eeprom("stored_flow_setpoint", 0x8000, 30, 85, 60, "degrees; to flow_setpoint at power on"),
      Eeprom("stored_dhw_setpoint", 0x8001, 35, 65, 50, "degrees; to dhw_setpoint at power on"),
      Eeprom("stored_heat_demand", 0x8002, 0, 255, 0, "to heat_demand at power on"),
      Eeprom("stored_tap", 0x8003, 0, 150, 0, "to tap at power on"),
      Eeprom("prepurge_time", 0x8010, 5, 150, 25, "fifths of a second", &S::prepurge),
      Eeprom("ignition_time", 0x8011, 5, 50, 15, "fifths of a second", &S::ignition),
      Eeprom("postpurge_time", 0x8012, 5, 250, 40, "fifths of a second", &S::postpurge),
      Eeprom("retries", 0x8013, 1, 10, 3, "failed ignitions that make a lockout", &S::retries),
      Eeprom("storage_setpoint", 0x8014, 40, 70, 60, "degrees; kept for a store that is not there"),
      Eeprom("eeprom_major", 0x8020, 0, 255, 2, "version of the EEPROM, before the point"),
      Eeprom("eeprom_minor", 0x8021, 0, 255, 14, "version of the EEPROM, behind the point"),
  };
}

std::vector<MemoryItem> MakeLayout() {
  std::vector<MemoryItem> all;
  for (const auto& part : {LowRam(), EepromItems(), Measurements(), FurtherMeasurements(),
                           Counters(), ErrorHistory(), SettingsAndCommands()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace

const std::vector<MemoryItem>& MemoryLayout() {
  static const std::vector<MemoryItem> layout = MakeLayout();
  return layout;
}

const MemoryItem& Item(std::string_view name) {
  const auto& layout = MemoryLayout();
  const auto found = std::find_if(layout.begin(), layout.end(),
                                  [&](const MemoryItem& item) { return item.name == name; });
  assert(found != layout.end());
  return *found;
}

bool IsWord(ItemType type) { return type == kWord || type == kSignedWord; }

std::string_view TypeName(ItemType type) {
  switch (type) {
    case kByte:
      return "byte";
    case kSignedByte:
      return "signed byte";
    case kBits:
      return "bits";
    case kWord:
      return "word";
    case kSignedWord:
      return "signed word";
  }
  return "";
}

}  // namespace boiler
