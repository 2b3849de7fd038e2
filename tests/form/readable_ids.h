// The boiler's data IDs that can be read without further ado.
#pragma once

#include <vector>

#include "simulator/data_ids.h"

namespace tarnlink {

inline std::vector<const boiler::DataId*> ReadableIds() {
  std::vector<const boiler::DataId*> ids;
  for (const boiler::DataId& id : boiler::DataIds()) {
    if (id.read && id.positions == 0) ids.push_back(&id);
  }
  return ids;
}

}  // namespace tarnlink
