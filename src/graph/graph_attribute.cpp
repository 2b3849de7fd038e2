#include "graph/graph_attribute.h"

#include <array>

namespace tarnlink {

namespace {

struct Row {
  int index;
  const char* caption;
  std::uint8_t data_class;
  std::int32_t id;
  std::int32_t unit;
  float factor;
  std::int32_t stored_as;
};

constexpr std::array kRows = {
    Row{0, "Sensor 1", 4, 241, kCelsius, 1, kStoredMsb},
    Row{1, "Sensor 2", 4, 770, kCelsius, 1, kStoredMsb},
    Row{2, "Sensor 3", 4, 817, kCelsius, 1, kStoredMsb},
    Row{3, "Sensor 4", 4, 855, kCelsius, 1, kStoredMsb},
    Row{4, "Sensor 5", 4, 856, kCelsius, 1, kStoredMsb},
    Row{5, "Contr setp", 1, 4011, kCelsius, 1, kStoredMsb},
    Row{6, "Calc TTB trip", 4, 4627, kCelsius, 1, kStoredMsb},
    Row{7, "CH setpoint", 5, 1389, kCelsius, 1, kStoredMsb},
    Row{8, "DHW setpoint", 5, 1524, kCelsius, 1, kStoredMsb},
    Row{9, "Storage setp", 5, 2311, kCelsius, 1, kStoredMsb},
    Row{10, "Req fan", 4, 4572, kRpm, 30, kStoredMsb},
    Row{11, "Fan speed", 4, 4572, kRpm, 30, kStoredLsb},
    Row{12, "Flame current", 4, 868, kNoUnit, 1, kStoredMsb},
    Row{13, "Flow sensor", 4, 3854, kNoUnit, 1, kStoredMsb},
    Row{14, "Valve current", 4, 4034, kNoUnit, 1, kStoredMsb},
    Row{15, "Output level", 4, 4045, kPercent, 1, kStoredMsb},
    Row{16, "Measured load", 4, 4383, kPercent, 1, kStoredMsb},
    Row{17, "Water pres", 4, 4368, kBar, 0.1F, kStoredMsb},
    Row{18, "CH anti cycle", 4, 4576, kNoUnit, 1, kStoredMsb},
    Row{19, "DHW anti cycle", 4, 4576, kNoUnit, 1, kStoredLsb},
    Row{100, "CH mode", 1, 1, kOnOff, 0, kStoredMsb},
    Row{101, "DHW mode", 1, 1, kOnOff, 1, kStoredMsb},
    Row{102, "TEST mode", 1, 1, kOnOff, 2, kStoredMsb},
    Row{103, "Flame status", 1, 1, kOnOff, 3, kStoredMsb},
    Row{104, "Exhaust status", 1, 1, kOnOff, 4, kStoredMsb},
    Row{105, "Water filling", 1, 1, kOnOff, 5, kStoredMsb},
    Row{106, "Cal. start", 1, 1, kOnOff, 6, kStoredMsb},
    Row{107, "Cal. min", 1, 1, kOnOff, 7, kStoredMsb},
    Row{108, "Fault", 1, 1, kOnOff, 0, kStoredLsb},
    Row{109, "Valve 1", 1, 1, kOnOff, 1, kStoredLsb},
    Row{110, "Valve 2", 1, 1, kOnOff, 2, kStoredLsb},
    Row{111, "APS", 1, 1, kOnOff, 3, kStoredLsb},
    Row{112, "Fan", 1, 1, kOnOff, 4, kStoredLsb},
    Row{113, "CH pump", 1, 1, kOnOff, 5, kStoredLsb},
    Row{114, "DHW pump", 1, 1, kOnOff, 6, kStoredLsb},
    Row{115, "Frost mode", 1, 1, kOnOff, 7, kStoredLsb},
};

constexpr std::array<Colour, 6> kLineColors = {0x0000FF, 0x00FF00, 0xFF0000,
                                               0xFF00FF, 0xFFFF00, 0x000000};

}  // namespace

Colour LineColors::GetColor() {
  const Colour colour = kLineColors.at(static_cast<std::size_t>(color_index_));
  color_index_ =
      static_cast<std::int16_t>((color_index_ + 1) % static_cast<int>(kLineColors.size()));
  return colour;
}

std::vector<GraphAttribute> LoadDefaultAttributes(LineColors& colours) {
  std::vector<GraphAttribute> table(kLastAttribute + 1);
  for (std::size_t i = 0; i < table.size(); ++i) {
    table[i].FixedCaption = "Item " + std::to_string(i);
    table[i].LineColor = colours.GetColor();
  }
  for (const Row& row : kRows) {
    GraphAttribute& line = table[static_cast<std::size_t>(row.index)];
    line.Class = row.data_class;
    line.ID = row.id;
    line.FixedCaption = row.caption;
    line.Unit = row.unit;
    line.Factor = row.factor;
    line.StoredAs = row.stored_as;
  }
  for (GraphAttribute& line : table) line.Alias = line.FixedCaption;
  return table;
}

}  // namespace tarnlink
