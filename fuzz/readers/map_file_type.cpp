#include "files/map_file_type.h"

#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/readers.h"
#include "support/pieces.h"

namespace tarnlink {
namespace {

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const std::size_t piece = 1 + std::size_t{bytes.Byte()};
  const std::string_view name = bytes.Field();
  const std::string_view text = bytes.Rest();
  const std::int16_t type = ReadInPieces(MapFileType(name), text, text.size());
  Claim(type == kUnknownMap || type == kNecListing || IsAvr(type), "the type exists");
  Claim(type != kNecListing || name.ends_with("lst"), "a listing is named so");
  Claim(!IsAvr(type) || name.ends_with("map"), "a map is named so");
  Claim(ReadInPieces(MapFileType(name), text, piece) == type, "pieces make no difference");
}

std::vector<std::string> Seeds() {
  return {std::string("\3a.map\0x\n__cpu_name = ATmega64\n", 31),
          std::string("\1b.map\0__cpu_name ATxmega\r\n", 28),
          std::string("\x10"
                      "c.lst\0 Target CPU \n",
                      20),
          std::string("\2d.txt\0__cpu_name", 17), std::string("\2d.txt\0Target CPU\n", 18)};
}

}  // namespace

FuzzTarget MapFileTypeTarget() { return {"map_file_type", Run, Seeds}; }

}  // namespace tarnlink
