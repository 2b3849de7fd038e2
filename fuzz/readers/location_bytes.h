// A Location out of an input.
#pragma once

#include "fuzz/fuzz_input.h"
#include "monitor/location_table.h"

namespace tarnlink {

// One byte for each of the numbers, a little beyond what they may be.
inline Location LocationOf(FuzzInput& bytes) {
  Location location;
  location.Specification = bytes.Below(3);
  location.StorageType = bytes.Below(7) - 1;
  location.Representation = bytes.Below(6) - 1;
  location.SelectByte = static_cast<std::uint8_t>(bytes.Below(4));
  location.BitAddress = bytes.Byte();
  location.RawValue = bytes.Word();
  return location;
}

}  // namespace tarnlink
