// What is made of an EEPROM definition file: the text file ".tlk", the image ".bin", and the sum by
// which two files can be compared. The formats are told in docs/formats/tlk.md.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "files/eeprom_source.h"

namespace tarnlink {

// Preamble and records, with their computed check bytes.
std::string TlkText(const EepromSource& source);

// All bytes of all blocks, one behind the other.
std::string BinBytes(const EepromSource& source);

// The path without its last three characters, and `extension` behind it.
std::string OutputPath(std::string_view source_path, std::string_view extension);

// The sum of the codes of all characters of all lines, without the line ends.
std::int64_t FileChecksum(std::string_view bytes);

}  // namespace tarnlink
