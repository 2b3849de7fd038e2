#include "platform/qt/xlsx_check.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace tarnlink {
namespace {

constexpr std::string_view kSheet = "xl/worksheets/sheet1.xml";
constexpr std::string_view kBeginOfRows = "<sheetData>";
constexpr std::string_view kEndOfRows = "</sheetData>";

// Both ends of a part, in which all is that stands beside the rows, and its length.
struct Ends {
  static constexpr std::size_t kLength = 4096;

  std::string begin;
  std::string end;
  std::size_t size = 0;

  void Add(std::string_view piece) {
    begin += piece.substr(0, kLength - begin.size());
    end += piece;
    if (end.size() > kLength) end.erase(0, end.size() - kLength);
    size += piece.size();
  }
};

// A number of so many bytes, the lowest first; 0 beyond the end.
std::size_t NumberAt(std::string_view bytes, std::size_t at, std::size_t count) {
  if (at > bytes.size() || bytes.size() - at < count) return 0;
  std::size_t number = 0;
  for (std::size_t i = count; i > 0; --i) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
  }
  return number;
}

// Nothing if the packed bytes have no end, or another check than they should.
std::optional<Ends> Unpack(std::string_view packed, std::size_t check) {
  z_stream stream{};
  if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) return {};
  Ends ends;
  std::array<char, 1 << 16> piece{};
  uLong sum = 0;
  int result = Z_OK;
  while (result == Z_OK) {
    if (stream.avail_in == 0) {
      constexpr std::size_t kStep = std::size_t{1} << 20;
      // The library never writes to it.
      stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
      stream.avail_in = static_cast<uInt>(std::min(kStep, packed.size()));
      packed.remove_prefix(stream.avail_in);
    }
    stream.next_out = reinterpret_cast<Bytef*>(piece.data());
    stream.avail_out = static_cast<uInt>(piece.size());
    result = inflate(&stream, Z_NO_FLUSH);
    const std::size_t got = piece.size() - stream.avail_out;
    sum = crc32(sum, reinterpret_cast<const Bytef*>(piece.data()), static_cast<uInt>(got));
    ends.Add({piece.data(), got});
  }
  inflateEnd(&stream);
  if (result != Z_STREAM_END || sum != check) return {};
  return ends;
}

// "<?xml ...?>", an element and nothing behind it but an end of line.
bool IsWholeDocument(const Ends& ends) {
  if (!ends.begin.starts_with("<?xml")) return false;
  const std::size_t declared = ends.begin.find("?>");
  const std::size_t element = ends.begin.find('<', declared);
  if (element == std::string::npos) return false;
  const std::size_t name_end = ends.begin.find_first_of(" >/", element);
  if (name_end == std::string::npos) return false;
  const std::string end = "</" + ends.begin.substr(element + 1, name_end - element - 1) + ">";
  return ends.end.ends_with(end) || ends.end.ends_with(end + "\n");
}

bool HasAllRows(const Ends& ends, std::size_t row_bytes) {
  const std::size_t begin = ends.begin.find(kBeginOfRows);
  const std::size_t end = ends.end.rfind(kEndOfRows);
  if (begin == std::string::npos || end == std::string::npos) return row_bytes == 0;
  return ends.size - (ends.end.size() - end) - (begin + kBeginOfRows.size()) == row_bytes;
}

// The part whose entry of the zip's directory begins there.
bool IsWholePart(std::string_view zip, std::size_t entry, std::size_t row_bytes) {
  const std::string_view name = zip.substr(entry + 46).substr(0, NumberAt(zip, entry + 28, 2));
  const std::size_t header = NumberAt(zip, entry + 42, 4);
  const std::size_t begin =
      header + 30 + NumberAt(zip, header + 26, 2) + NumberAt(zip, header + 28, 2);
  if (begin >= zip.size()) return false;
  const std::optional<Ends> ends = Unpack(zip.substr(begin), NumberAt(zip, entry + 16, 4));
  return ends && IsWholeDocument(*ends) && (name != kSheet || HasAllRows(*ends, row_bytes));
}

}  // namespace

bool IsWholeWorkbook(std::string_view zip, std::size_t row_bytes) {
  constexpr std::size_t kDirectoryEntry = 0x02014b50;
  const std::size_t end = zip.rfind(std::string_view("PK\x05\x06", 4));
  if (end == std::string_view::npos) return false;
  std::size_t entry = NumberAt(zip, end + 16, 4);
  const std::size_t parts = NumberAt(zip, end + 10, 2);
  for (std::size_t i = 0; i < parts; ++i) {
    if (NumberAt(zip, entry, 4) != kDirectoryEntry || entry + 46 > zip.size()) return false;
    if (!IsWholePart(zip, entry, row_bytes)) return false;
    entry += 46 + NumberAt(zip, entry + 28, 2) + NumberAt(zip, entry + 30, 2) +
             NumberAt(zip, entry + 32, 2);
  }
  return parts > 0;
}

}  // namespace tarnlink
