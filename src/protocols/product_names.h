// The names that a controller's product bytes stand for.
#pragma once

#include <cstdint>
#include <string_view>

namespace tarnlink {

// The short name of a controller's type, as it stands in its software number; "unknown" for a code
// without one.
std::string_view GetTypeName(std::uint8_t code);

// The controller's model, empty for a code without one.
std::string_view GetProductName(std::uint8_t code);

}  // namespace tarnlink
