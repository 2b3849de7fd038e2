#include "disk/bytes_of_file.h"

#include <zlib.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace tarnlink::disk {
namespace {

constexpr std::string_view kSheet = "xl/worksheets/sheet1.xml";

// A number of so many bytes, the lowest first; 0 beyond the end.
std::size_t NumberAt(const std::string& bytes, std::size_t at, std::size_t count) {
  std::size_t number = 0;
  for (std::size_t i = count; i > 0; --i) {
    if (at + i > bytes.size()) return 0;
    number = number << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
  }
  return number;
}

std::optional<std::string> Inflated(const std::string& packed, std::size_t size) {
  std::string plain(size, '\0');
  z_stream stream{};
  if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) return {};
  std::string from = packed;
  stream.next_in = reinterpret_cast<Bytef*>(from.data());
  stream.avail_in = static_cast<uInt>(from.size());
  stream.next_out = reinterpret_cast<Bytef*>(plain.data());
  stream.avail_out = static_cast<uInt>(plain.size());
  const int result = inflate(&stream, Z_FINISH);
  const bool whole = result == Z_STREAM_END && stream.total_out == size;
  inflateEnd(&stream);
  if (!whole) return {};
  return plain;
}

// The part whose entry of the directory begins there; nothing if it is damaged.
std::optional<std::string> PartAt(const std::string& zip, std::size_t entry) {
  constexpr std::size_t kDeflated = 8;
  const std::size_t header = NumberAt(zip, entry + 42, 4);
  if (NumberAt(zip, header, 4) != 0x04034b50) return {};
  const std::size_t begin =
      header + 30 + NumberAt(zip, header + 26, 2) + NumberAt(zip, header + 28, 2);
  const std::size_t packed_size = NumberAt(zip, entry + 20, 4);
  if (begin + packed_size > zip.size()) return {};
  const std::string packed = zip.substr(begin, packed_size);
  std::optional<std::string> part = packed;
  if (NumberAt(zip, entry + 10, 2) == kDeflated) {
    part = Inflated(packed, NumberAt(zip, entry + 24, 4));
  }
  if (!part) return {};
  const auto* bytes = reinterpret_cast<const Bytef*>(part->data());
  if (crc32(0, bytes, static_cast<uInt>(part->size())) != NumberAt(zip, entry + 16, 4)) return {};
  return part;
}

std::string SheetOf(const std::string& zip) {
  const std::size_t end = zip.rfind(std::string("PK\x05\x06", 4));
  if (end == std::string::npos) return {};
  std::string sheet;
  std::size_t entry = NumberAt(zip, end + 16, 4);
  for (std::size_t left = NumberAt(zip, end + 10, 2); left > 0; --left) {
    const std::size_t name_size = NumberAt(zip, entry + 28, 2);
    if (NumberAt(zip, entry, 4) != 0x02014b50 || entry + 46 + name_size > zip.size()) return {};
    const auto part = PartAt(zip, entry);
    if (!part) return {};
    if (zip.compare(entry + 46, name_size, kSheet) == 0) sheet = *part;
    entry += 46 + name_size + NumberAt(zip, entry + 30, 2) + NumberAt(zip, entry + 32, 2);
  }
  return sheet;
}

}  // namespace

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::optional<std::string> ContentOf(const std::string& path) {
  if (!std::filesystem::exists(path)) return {};
  const std::string bytes = ReadFile(path);
  return path.ends_with(".xlsx") ? SheetOf(bytes) : bytes;
}

}  // namespace tarnlink::disk
