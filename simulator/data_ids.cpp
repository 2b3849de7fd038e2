#include "simulator/data_ids.h"

#include <algorithm>
#include <string>
#include <utility>

namespace boiler {
namespace {

using Query = DataIdQuery;

constexpr int kErrorEntries = 8;
// The names of the controllers, of which each slave address has another: so many types and
// products, and those of address 0.
constexpr int kTypes = 14;
constexpr int kProducts = 3;
constexpr int kFirstType = 5;
constexpr int kFirstProduct = 2;
// What a master must write to reset, so that no stray write does it.
constexpr int kResetHigh = 0xAA;
constexpr int kResetLow = 0x55;
// The low byte of a heat demand that is no test.
constexpr int kNoTest = 255;
constexpr int kFullTestPower = 100;  // percent
// The unit in which a byte tells the fan's speed.
constexpr int kFanStep = 30;  // turns per minute

std::uint16_t Bytes(int high, int low) {
  return static_cast<std::uint16_t>((high & 0xFF) << 8 | (low & 0xFF));
}

// One of the codes 1 to `count`, from `first` on and round again.
int CodeAt(int slave, int first, int count) { return 1 + (first - 1 + slave) % count; }

// The sensor's divider, converted with 8 bits: 255 at -20 degrees, 0 at 120.
int SensorAd8(int tenths) { return std::clamp(255 - (tenths + 200) * 255 / 1400, 0, 255); }

int WholeDegrees(int tenths) { return (tenths + (tenths < 0 ? -5 : 5)) / 10; }

DataId Value(int data_class, std::uint16_t id, std::string_view name, std::string_view meaning,
             std::function<std::uint16_t(const Query&)> read) {
  return {data_class, id, name, meaning, 0, std::move(read), "", nullptr, nullptr};
}

// A version, behind whose point the slave address is added.
DataId Version(std::uint16_t id, std::string_view name, std::string_view major,
               std::string_view minor) {
  return Value(2, id, name, "high: before the point; low: behind it and the slave address together",
               [=](const Query& q) { return Bytes(q.Value(major), q.Value(minor) + q.slave); });
}

// The memory item of the same name as a word.
DataId Word(int data_class, std::uint16_t id, std::string_view name, std::string_view meaning) {
  return Value(data_class, id, name, meaning,
               [name](const Query& q) { return static_cast<std::uint16_t>(q.Value(name)); });
}

DataId Constant(int data_class, std::uint16_t id, std::string_view name, std::string_view meaning,
                std::uint16_t value) {
  return Value(data_class, id, name, meaning, [=](const Query&) { return value; });
}

DataId Sensor(std::uint16_t id, std::string_view name, std::string_view item,
              std::string_view meaning) {
  return Value(4, id, name, meaning, [=](const Query& q) {
    const int tenths = q.Value(item);
    return Bytes(WholeDegrees(tenths), SensorAd8(tenths));
  });
}

DataId SensorWord(std::uint16_t id, std::string_view name, std::string_view item,
                  std::string_view meaning) {
  return Value(4, id, name, meaning,
               [=](const Query& q) { return static_cast<std::uint16_t>(q.Value(item)); });
}

// The item as the high byte.
DataId High(int data_class, std::uint16_t id, std::string_view name, std::string_view item,
            std::string_view meaning) {
  return Value(data_class, id, name, meaning,
               [=](const Query& q) { return Bytes(q.Value(item), 0); });
}

DataId Pair(int data_class, std::uint16_t id, std::string_view name, std::string_view high_item,
            std::string_view low_item, std::string_view meaning) {
  return Value(data_class, id, name, meaning,
               [=](const Query& q) { return Bytes(q.Value(high_item), q.Value(low_item)); });
}

DataId ErrorList(std::uint16_t id, std::string_view name, std::string_view meaning,
                 std::function<std::uint16_t(const Query&)> read) {
  return {6, id, name, meaning, kErrorEntries, std::move(read), "", nullptr, nullptr};
}

// The newest errors of the boiler are unknown to slaves behind the first: one more to each. An
// entry that a slave does not have is 0.
int Entry(const Query& q, const char* list) {
  const int entry = q.position + q.slave;
  return entry < kErrorEntries ? q.Value(list + std::to_string(entry)) : 0;
}

// A parameter in the high byte, within the range of its item. It takes effect at once and is
// stored.
DataId Parameter(std::uint16_t id, std::string_view name, std::string_view item,
                 std::string_view stored_item, std::string_view meaning, std::string_view written) {
  DataId parameter = High(5, id, name, item, meaning);
  parameter.written = written;
  parameter.takes = [item](int high, int) {
    return high >= Item(item).lowest && high <= Item(item).highest;
  };
  parameter.store = [=](Controller& controller, int high, int) {
    controller.Set(Item(item), high);
    controller.Set(Item(stored_item), high);
  };
  return parameter;
}

// The same in a controller whose limits can be wrong: a limit that is too wide, or too narrow.
DataId WithWrongLimits(DataId parameter, const Limits& wrong_limits) {
  parameter.wrong_limits = wrong_limits;
  return parameter;
}

DataId HeatDemand() {
  DataId id = Pair(1, 14, "heat_demand", "heat_demand", "test_power",
                   "high: 0 by the room thermostat, 255 always, others never; low: test power in "
                   "percent");
  id.written = "low: 0 to 100, 255 no test";
  id.takes = [](int, int low) { return low <= kFullTestPower || low == kNoTest; };
  id.store = [](Controller& controller, int high, int low) {
    controller.Set(Item("heat_demand"), high);
    controller.Set(Item("test_power"), low == kNoTest ? 0 : low);
  };
  return id;
}

std::vector<DataId> Status() {
  return {
      Pair(1, 1, "status", "status_high", "status_low", "high: status_high; low: status_low"),
      HeatDemand(),
      High(1, 50, "error_code", "error_code", "high: present error, 0 none"),
      Value(1, 61, "os_name",
            "high: code of the type, 5 at slave address 0; low: code of the product, 2 there",
            [](const Query& q) {
              return Bytes(CodeAt(q.slave, kFirstType, kTypes),
                           CodeAt(q.slave, kFirstProduct, kProducts));
            }),
      High(1, 4011, "control_setpoint", "flow_target",
           "high: present target of the flow temperature, degrees"),
      Value(1, 5337, "os_number", "word: number of the software and the slave address together",
            [](const Query& q) {
              return static_cast<std::uint16_t>(q.Value("software_number") + q.slave);
            }),
  };
}

DataId Reset() {
  DataId id = Value(3, 171, "reset", "ends a lockout; cannot be read", nullptr);
  id.written = "AA55";
  id.takes = [](int high, int low) { return high == kResetHigh && low == kResetLow; };
  id.store = [](Controller& controller, int, int) { controller.Set(Item("reset"), 1); };
  return id;
}

std::vector<DataId> Configuration() {
  return {
      Constant(
          2, 84, "configuration",
          "high: bit 1 spark during stabilisation; low: bit 2 power control, 3 air pressure switch",
          Bytes(0x02, 0x0C)),
      Value(2, 91, "prepurge_and_preignition",
            "high: prepurge_time; low: preignition, fifths of a second",
            [](const Query& q) { return Bytes(q.Value("prepurge_time"), 5); }),
      Value(2, 103, "safety_and_postignition",
            "high: ignition_time; low: post ignition, fifths of a second",
            [](const Query& q) { return Bytes(q.Value("ignition_time"), 10); }),
      Pair(2, 104, "postpurge_and_retries", "postpurge_time", "retries",
           "high: postpurge_time, fifths of a second; low: retries"),
      Constant(2, 151, "air_switch_times", "high: on; low: off, fifths of a second", Bytes(50, 25)),
      Version(152, "version_rom_low", "version_major", "version_minor"),
      Version(164, "version_eeprom", "eeprom_major", "eeprom_minor"),
      Value(2, 1284, "version_rom_high",
            "high: before the point; low: behind it and the slave address together",
            [](const Query& q) { return Bytes(4, 12 + q.slave); }),
      Reset(),
  };
}

std::vector<DataId> Sensors() {
  return {
      Sensor(241, "sensor_1", "flow_temperature", "high: flow, degrees; low: as converted, 8 bits"),
      SensorWord(254, "sensor_1_tenths", "flow_temperature", "word: flow, tenths of a degree"),
      Sensor(770, "sensor_2", "return_temperature",
             "high: return, degrees; low: as converted, 8 bits"),
      SensorWord(781, "sensor_2_tenths", "return_temperature", "word: return, tenths of a degree"),
      Sensor(817, "sensor_3", "dhw_temperature",
             "high: hot water, degrees; low: as converted, 8 bits"),
      SensorWord(830, "sensor_3_tenths", "dhw_temperature", "word: hot water, tenths of a degree"),
      Sensor(855, "sensor_4", "outside_temperature",
             "high: outside, degrees, signed; low: as converted, 8 bits"),
      Sensor(856, "sensor_5", "exhaust_temperature",
             "high: exhaust, degrees; low: as converted, 8 bits"),
      SensorWord(5913, "sensor_4_tenths", "outside_temperature",
                 "word: outside, tenths of a degree, signed"),
      SensorWord(5925, "sensor_5_tenths", "exhaust_temperature",
                 "word: exhaust, tenths of a degree"),
      Sensor(5930, "sensor_6", "exchanger_temperature",
             "high: heat exchanger, degrees; low: as converted, 8 bits"),
      SensorWord(5955, "sensor_6_tenths", "exchanger_temperature",
                 "word: heat exchanger, tenths of a degree"),
      Sensor(5964, "sensor_7", "air_temperature",
             "high: intake air, degrees, signed; low: as converted, 8 bits"),
      SensorWord(6000, "sensor_7_tenths", "air_temperature",
                 "word: intake air, tenths of a degree, signed"),
  };
}

std::vector<DataId> Measurements() {
  return {
      Value(4, 868, "flame_current", "high: microampere; low: as converted, 8 bits",
            [](const Query& q) {
              return Bytes(q.Value("flame_current") / 10, q.Value("flame_ad") / 4);
            }),
      High(4, 3854, "flow_sensor", "tap_flow", "high: tenths of a litre per minute"),
      High(4, 4034, "valve_current", "valve_current", "high: milliampere"),
      High(4, 4045, "output_level", "power", "high: percent"),
      Value(4, 4368, "water_pressure", "high: tenths of a bar",
            [](const Query& q) { return Bytes(q.Value("water_pressure") / 10, 0); }),
      High(4, 4383, "measured_load", "measured_load", "high: percent"),
      Value(4, 4572, "fan", "high: target; low: speed, 30 turns per minute each",
            [](const Query& q) {
              return Bytes(q.Value("fan_target") / kFanStep, q.Value("fan_speed") / kFanStep);
            }),
      Value(4, 4576, "anti_cycle", "high: wait_seconds; low: the same while hot water is drawn",
            [](const Query& q) {
              const int left = q.Value("wait_seconds");
              return Bytes(left, (q.Value("demand") & 2) != 0 ? left : 0);
            }),
      Value(4, 4627, "trip_temperature", "high: the burner goes off above, degrees",
            [](const Query& q) {
              return Bytes(q.Value("flow_target") + static_cast<int>(kBurnerOffAbove), 0);
            }),
      Word(4, 6015, "flame_ad", "word: flame current as converted, 10 bits"),
  };
}

std::vector<DataId> Parameters() {
  constexpr std::string_view kDegrees = "high: degrees";
  constexpr std::string_view kFifths = "high: fifths of a second";
  return {
      WithWrongLimits(Parameter(1389, "ch_setpoint", "flow_setpoint", "stored_flow_setpoint",
                                kDegrees, "high: 30 to 85"),
                      {29, 85}),
      WithWrongLimits(Parameter(1524, "dhw_setpoint", "dhw_setpoint", "stored_dhw_setpoint",
                                kDegrees, "high: 35 to 65"),
                      {35, 66}),
      WithWrongLimits(Parameter(2311, "storage_setpoint", "storage_setpoint", "storage_setpoint",
                                kDegrees, "high: 40 to 70"),
                      {40, 69}),
      Parameter(2352, "prepurge_parameter", "prepurge_time", "prepurge_time", kFifths,
                "high: 5 to 150"),
      Parameter(2363, "ignition_parameter", "ignition_time", "ignition_time", kFifths,
                "high: 5 to 50"),
      Parameter(2374, "postpurge_parameter", "postpurge_time", "postpurge_time", kFifths,
                "high: 5 to 250"),
      Parameter(2385, "retries_parameter", "retries", "retries",
                "high: failed ignitions that make a lockout", "high: 1 to 10"),
      Parameter(2396, "heat_demand_parameter", "heat_demand", "stored_heat_demand",
                "high: 0 by the room thermostat, 255 always, others never", "high: 0 to 255"),
      Parameter(2408, "tap_parameter", "tap", "stored_tap",
                "high: hot water drawn, tenths of a litre per minute; 0 by the household",
                "high: 0 to 150"),
  };
}

std::vector<DataId> Counters() {
  return {
      ErrorList(875, "error_history", "high: position; low: error, newest at position 0",
                [](const Query& q) { return Bytes(q.position, Entry(q, "error_code_")); }),
      ErrorList(
          916, "error_hours", "word: hours of operation when that error came",
          [](const Query& q) { return static_cast<std::uint16_t>(Entry(q, "error_hours_")); }),
      Word(6, 923, "burner_starts", "word: count"),
      Word(6, 935, "lockouts", "word: count"),
      Word(6, 936, "burner_starts_dhw", "word: count"),
      Word(6, 961, "hours_burner", "word: hours"),
      Word(6, 974, "hours_burner_dhw", "word: hours"),
      Word(6, 1010, "hours_on", "word: hours"),
      Word(6, 1021, "dhw_volume", "word: cubic metres of hot water"),
      Word(6, 3943, "hours_ch_pump", "word: hours"),
      Word(6, 4004, "hours_dhw_pump", "word: hours"),
      Constant(6, 5349, "crc_rom_low", "word: check of the program memory", 0x3A7C),
      Constant(6, 5354, "crc_rom_high", "word: check of the program memory", 0xC51E),
  };
}

std::vector<DataId> MakeDataIds() {
  std::vector<DataId> all;
  for (const auto& part :
       {Status(), Configuration(), Sensors(), Measurements(), Parameters(), Counters()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  std::sort(all.begin(), all.end(), [](const DataId& one, const DataId& other) {
    return std::pair(one.data_class, one.id) < std::pair(other.data_class, other.id);
  });
  return all;
}

}  // namespace

const std::vector<DataId>& DataIds() {
  static const std::vector<DataId> ids = MakeDataIds();
  return ids;
}

const DataId* FindDataId(int data_class, std::uint16_t id) {
  const auto& ids = DataIds();
  const auto found = std::find_if(ids.begin(), ids.end(), [&](const DataId& one) {
    return one.data_class == data_class && one.id == id;
  });
  return found == ids.end() ? nullptr : &*found;
}

}  // namespace boiler
