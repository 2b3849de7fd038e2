// What a controller says of itself, as the service tools show it.
#pragma once

#include <cstdint>
#include <string>

#include "common/text.h"
#include "protocols/product_names.h"

namespace tarnlink {

inline std::string ProductText(std::uint8_t type, std::uint8_t product) {
  return std::string(GetProductName(product)).append(GetTypeName(type));
}

// "3.07".
inline std::string VersionText(int major, int minor) {
  return std::to_string(major) + "." + Right("00" + std::to_string(minor), 2);
}

}  // namespace tarnlink
