#include "files/map_file_type.h"

namespace tarnlink {

namespace {

bool Holds(std::string_view line, std::string_view mark) {
  return line.find(mark) != std::string_view::npos;
}

}  // namespace

MapFileType::MapFileType(std::string_view FileName)
    : is_listing_(FileName.ends_with("lst")), is_map_(FileName.ends_with("map")) {}

bool MapFileType::Take(std::string_view piece) {
  lines_.Feed(piece);
  for (std::string_view line; lines_.Next(line);) {
    if (!TakeLine(line)) return false;
  }
  return true;
}

std::int16_t MapFileType::Finish() {
  std::string_view line;
  if (type_ == kUnknownMap && lines_.Last(line)) TakeLine(line);
  return type_;
}

// Of a map the first line with the processor's name decides, whatever it says.
bool MapFileType::TakeLine(std::string_view line) {
  if (is_listing_) {
    if (!Holds(line, "Target CPU")) return true;
    type_ = kNecListing;
    return false;
  }
  if (!is_map_) return false;
  if (!Holds(line, "__cpu_name")) return true;
  if (Holds(line, "ATmega")) {
    type_ = kAtmegaMap;
  } else if (Holds(line, "ATxmega")) {
    type_ = kXmegaMap;
  }
  is_map_ = false;
  return false;
}

}  // namespace tarnlink
