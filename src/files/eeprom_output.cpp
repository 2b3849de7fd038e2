#include "files/eeprom_output.h"

#include <algorithm>

#include "common/text_file.h"

namespace tarnlink {

std::string TlkText(const EepromSource& source) {
  std::string text;
  const auto add_line = [&](std::string_view line) { text.append(line).append(kLineEnd); };
  for (const std::string& line : source.preamble) add_line(" " + line);
  bool is_first = true;
  for (const EepromBlock& block : source.blocks) {
    if (!is_first) add_line("");
    is_first = false;
    for (const EepromRecord& record : block) {
      add_line(record.HexValue + " " + std::to_string(record.DecValue) + " " + record.Address +
               record.Comment);
    }
  }
  return text;
}

std::string BinBytes(const EepromSource& source) {
  std::string bytes;
  for (const EepromBlock& block : source.blocks) {
    for (const EepromRecord& record : block) bytes += static_cast<char>(record.DecValue);
  }
  return bytes;
}

std::string OutputPath(std::string_view source_path, std::string_view extension) {
  constexpr std::size_t kExtension = 3;
  source_path.remove_suffix(std::min(source_path.size(), kExtension));
  return std::string(source_path) + std::string(extension);
}

std::int64_t FileChecksum(std::string_view bytes) {
  std::int64_t sum = 0;
  LineReader lines(bytes);
  for (std::string_view line; lines.Next(line);) {
    for (const char character : line) sum += static_cast<unsigned char>(character);
  }
  return sum;
}

}  // namespace tarnlink
