#include "common/text_file.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace tarnlink {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Windows-1252 from 0x80 to 0x9F; everywhere else a byte is its character's number. The five bytes
// without a character stand for the control characters of the same number, so that none is lost.
constexpr std::array<std::uint16_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
constexpr std::uint32_t kFirstMapped = 0x80;
constexpr std::uint32_t kFirstPlainAgain = 0xA0;

std::uint32_t Byte(char c) { return static_cast<unsigned char>(c); }

// How a UTF-8 sequence begins: its length, the bits of its first byte, and the lowest character
// that may take that length.
struct Lead {
  std::size_t length;
  std::uint32_t bits;
  std::uint32_t lowest;
};

std::optional<Lead> LeadOf(std::uint32_t byte) {
  if (byte < 0x80) return Lead{1, byte, 0};
  if (byte >= 0xC0 && byte < 0xE0) return Lead{2, byte & 0x1F, 0x80};
  if (byte >= 0xE0 && byte < 0xF0) return Lead{3, byte & 0x0F, 0x800};
  if (byte >= 0xF0 && byte < 0xF8) return Lead{4, byte & 0x07, 0x10000};
  return std::nullopt;
}

// The next character of `text`, which is not empty, cut off its front; nothing if it is not UTF-8.
std::optional<std::uint32_t> TakeCharacter(std::string_view& text) {
  const std::optional<Lead> lead = LeadOf(Byte(text[0]));
  if (!lead || lead->length > text.size()) return std::nullopt;
  std::uint32_t character = lead->bits;
  for (std::size_t i = 1; i < lead->length; ++i) {
    if ((Byte(text[i]) & 0xC0) != 0x80) return std::nullopt;
    character = character << 6 | (Byte(text[i]) & 0x3F);
  }
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < lead->lowest || character > 0x10FFFF || surrogate) return std::nullopt;
  text.remove_prefix(lead->length);
  return character;
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return Byte(c) < 0x80; });
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    if (!TakeCharacter(text)) return false;
  }
  return true;
}

// `character` is below 0x10000: no character of Windows-1252 lies above.
void AppendUtf8(std::string& text, std::uint32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6);
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | character >> 12);
    text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
}

std::string FromWindows1252(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) {
    const std::uint32_t byte = Byte(c);
    const bool mapped = byte >= kFirstMapped && byte < kFirstPlainAgain;
    AppendUtf8(text, mapped ? kWindows1252[byte - kFirstMapped] : byte);
  }
  return text;
}

std::optional<char> Windows1252Byte(std::uint32_t character) {
  if (character < kFirstMapped || (character >= kFirstPlainAgain && character <= 0xFF)) {
    return static_cast<char>(character);
  }
  const auto found = std::find(kWindows1252.begin(), kWindows1252.end(), character);
  if (found == kWindows1252.end()) return std::nullopt;
  return static_cast<char>(kFirstMapped + static_cast<std::uint32_t>(found - kWindows1252.begin()));
}

std::optional<std::string> ToWindows1252(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::optional<std::uint32_t> character = TakeCharacter(utf8);
    if (!character) return std::nullopt;
    const std::optional<char> byte = Windows1252Byte(*character);
    if (!byte) return std::nullopt;
    bytes += *byte;
  }
  return bytes;
}

}  // namespace

std::string DecodeText(std::string_view bytes) {
  if (!IsUtf8(bytes)) return FromWindows1252(bytes);
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  return std::string(bytes);
}

std::string EncodeText(std::string_view utf8) {
  if (IsAscii(utf8)) return std::string(utf8);
  const std::optional<std::string> bytes = ToWindows1252(utf8);
  if (bytes && !IsUtf8(*bytes)) return *bytes;
  // A mark of the text's own would be dropped as that of the file.
  std::string text(utf8.starts_with(kByteOrderMark) ? kByteOrderMark : "");
  return text.append(utf8);
}

std::string EncodeWindows1252(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::optional<std::uint32_t> character = TakeCharacter(utf8);
    if (!character) utf8.remove_prefix(1);
    bytes += character ? Windows1252Byte(*character).value_or('?') : '?';
  }
  return bytes;
}

namespace {

std::string_view WithoutReturn(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

bool LineReader::Next(std::string_view& line) {
  if (position_ >= text_.size()) return false;
  const std::size_t end = std::min(text_.find('\n', position_), text_.size());
  line = WithoutReturn(text_.substr(position_, end - position_));
  position_ = end + 1;
  return true;
}

bool PieceLines::Next(std::string_view& line) {
  if (begun_is_out_) begun_.clear();
  begun_is_out_ = false;
  const std::size_t end = piece_.find('\n');
  if (end == std::string_view::npos) {
    Keep(piece_);
    piece_ = {};
    return false;
  }
  line = piece_.substr(0, end);
  if (!begun_.empty()) {
    Keep(line);
    begun_is_out_ = true;
    line = begun_;
  }
  line = WithoutReturn(line.substr(0, kLongest));
  piece_.remove_prefix(end + 1);
  return true;
}

void PieceLines::Keep(std::string_view part) { begun_ += part.substr(0, kLongest - begun_.size()); }

bool PieceLines::Last(std::string_view& line) {
  if (begun_is_out_ || begun_.empty()) return false;
  line = WithoutReturn(begun_);
  return true;
}

}  // namespace tarnlink
