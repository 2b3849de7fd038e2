// Which build output a memory map file is.
#pragma once

#include <cstdint>
#include <string_view>

namespace tarnlink {

inline constexpr std::int16_t kAtmegaMap = 0;
inline constexpr std::int16_t kXmegaMap = 1;
inline constexpr std::int16_t kNecListing = 2;
inline constexpr std::int16_t kUnknownMap = 255;

// Goes by the last three characters of the name ("map" or "lst", exact case) and by the signature
// in the text.
std::int16_t CheckMapFileType(std::string_view FileName, std::string_view text);

}  // namespace tarnlink
