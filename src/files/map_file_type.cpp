#include "files/map_file_type.h"

#include "common/text_file.h"

namespace tarnlink {

namespace {

bool Holds(std::string_view line, std::string_view mark) {
  return line.find(mark) != std::string_view::npos;
}

std::int16_t ListingType(std::string_view text) {
  return Holds(text, "Target CPU") ? kNecListing : kUnknownMap;
}

// The first line with the CPU's name decides, whatever it says.
std::int16_t MapType(std::string_view text) {
  LineReader lines(text);
  for (std::string_view line; lines.Next(line);) {
    if (!Holds(line, "__cpu_name")) continue;
    if (Holds(line, "ATmega")) return kAtmegaMap;
    if (Holds(line, "ATxmega")) return kXmegaMap;
    return kUnknownMap;
  }
  return kUnknownMap;
}

}  // namespace

std::int16_t CheckMapFileType(std::string_view FileName, std::string_view text) {
  if (FileName.ends_with("lst")) return ListingType(text);
  if (FileName.ends_with("map")) return MapType(text);
  return kUnknownMap;
}

}  // namespace tarnlink
