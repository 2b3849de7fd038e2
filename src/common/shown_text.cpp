#include "common/shown_text.h"

#include <algorithm>
#include <cstddef>

#include "common/text.h"
#include "common/text_file.h"

namespace tarnlink {
namespace {

constexpr std::size_t kLongestCharacter = 4;  // bytes

unsigned Byte(char c) { return static_cast<unsigned char>(c); }

bool IsControl(char c) { return (Byte(c) < 0x20 && c != '\t') || Byte(c) == 0x7F; }

// More than `most` characters, if there are so many, and not much more. Ends between characters.
std::string_view Beginning(std::string_view text, int most) {
  const std::size_t enough = kLongestCharacter * (static_cast<std::size_t>(most) + 1);
  if (text.size() <= enough) return text;
  std::size_t end = enough;
  while (end > enough - kLongestCharacter && (Byte(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end);
}

// The control characters of two bytes, C2 80 to C2 9F, become one blank each.
std::string WithoutControls(std::string_view utf8) {
  std::string shown;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const bool is_high = Byte(utf8[i]) == 0xC2 && i + 1 < utf8.size() && Byte(utf8[i + 1]) < 0xA0;
    if (is_high) ++i;
    shown += is_high || IsControl(utf8[i]) ? ' ' : utf8[i];
  }
  return shown;
}

}  // namespace

std::string ShownText(std::string_view text, int most) {
  const std::string shown = WithoutControls(DecodeText(Beginning(text, most)));
  const std::string_view first = FirstCharacters(shown, most);
  std::string cut(first);
  if (first.size() < shown.size()) cut += "...";
  return cut;
}

std::string ShownCell(std::string_view text) {
  std::string cell = ShownText(text);
  std::replace(cell.begin(), cell.end(), '\t', ' ');
  return cell;
}

}  // namespace tarnlink
