#include "common/text.h"

#include <algorithm>

namespace tarnlink {
namespace {

std::size_t Length(int length) { return static_cast<std::size_t>(std::max(length, 0)); }

std::string Pad(std::string_view value, int length, char filler) {
  const std::size_t wanted = Length(length);
  std::string padded(wanted > value.size() ? wanted - value.size() : 0, filler);
  return padded.append(value);
}

}  // namespace

std::string Stuff(std::string_view value, int length) { return Pad(value, length, '0'); }

std::string RightAlign(std::string_view value, int length) { return Pad(value, length, ' '); }

std::string Right(std::string_view text, int length) {
  const std::size_t kept = std::min(Length(length), text.size());
  return std::string(text.substr(text.size() - kept));
}

std::string Mid(std::string_view text, int position, int length) {
  const auto start = static_cast<std::size_t>(std::max(position, 1)) - 1;
  if (start >= text.size()) return {};
  return std::string(text.substr(start, Length(length)));
}

std::string Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string ToUpper(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

std::string ToLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string WithoutQuotes(std::string_view text) {
  std::string blanked(text);
  std::replace(blanked.begin(), blanked.end(), '"', ' ');
  return Trim(blanked);
}

int CharacterCount(std::string_view utf8) {
  const auto count = std::count_if(utf8.begin(), utf8.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  });
  return static_cast<int>(count);
}

namespace {

bool BeginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

}  // namespace

std::string_view FirstCharacters(std::string_view utf8, int count) {
  std::size_t end = 0;
  for (const char byte : utf8) {
    if (BeginsCharacter(byte) && count-- == 0) break;
    ++end;
  }
  return utf8.substr(0, end);
}

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(" \t") == std::string_view::npos;
}

std::string TimesText(int count) { return count == 1 ? "once" : std::to_string(count) + " times"; }

}  // namespace tarnlink
