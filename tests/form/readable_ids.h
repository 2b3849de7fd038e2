// The boiler's data IDs that can be read without further ado, as many as a screen needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "monitor/location_table.h"
#include "simulator/bytes.h"
#include "simulator/data_ids.h"

namespace tarnlink {

// One that no boiler has.
inline constexpr const char* kUnknownId = "EEEE";

inline std::vector<const boiler::DataId*> ReadableIds() {
  std::vector<const boiler::DataId*> ids;
  for (const boiler::DataId& id : boiler::DataIds()) {
    if (id.read && id.positions == 0) ids.push_back(&id);
  }
  return ids;
}

// The Location shows the ID of that number; after the last one the first comes again.
inline void ShowReadableId(Location& location, int number) {
  static const std::vector<const boiler::DataId*> ids = ReadableIds();
  const boiler::DataId& id = *ids[static_cast<std::size_t>(number) % ids.size()];
  location.Address = boiler::HexDigits(id.id, 4);
  location.Class = static_cast<std::uint8_t>(id.data_class);
}

}  // namespace tarnlink
