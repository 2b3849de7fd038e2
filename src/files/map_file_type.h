// Which build output a memory map file is.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/text_file.h"

namespace tarnlink {

inline constexpr std::int16_t kAtmegaMap = 0;
inline constexpr std::int16_t kXmegaMap = 1;
inline constexpr std::int16_t kNecListing = 2;
inline constexpr std::int16_t kUnknownMap = 255;

constexpr bool IsAvr(std::int16_t type) { return type == kAtmegaMap || type == kXmegaMap; }

// Goes by the last three characters of the name ("map" or "lst", exact case) and by the signature
// in the text, which comes in pieces.
class MapFileType {
 public:
  explicit MapFileType(std::string_view FileName);

  // False once the type is known.
  bool Take(std::string_view piece);
  std::int16_t Finish();

 private:
  bool TakeLine(std::string_view line);

  bool is_listing_;
  bool is_map_;
  PieceLines lines_;
  std::int16_t type_ = kUnknownMap;
};

}  // namespace tarnlink
