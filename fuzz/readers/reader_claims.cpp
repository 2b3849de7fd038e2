#include "fuzz/readers/reader_claims.h"

#include <algorithm>

#include "common/text_file.h"
#include "fuzz/claim.h"

namespace tarnlink {

bool IsText(std::string_view text) {
  const auto is_ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  if (std::all_of(text.begin(), text.end(), is_ascii)) return true;
  // A letter in front, so that a byte order mark stays where it is.
  const std::string whole = "a" + std::string(text);
  return DecodeText(whole) == whole;
}

void ClaimReason(std::string_view reason) {
  constexpr std::size_t kLongest = 4'000;  // bytes, of a few quoted texts
  Claim(!reason.empty(), "a refused file is refused for a reason");
  Claim(reason.size() <= kLongest, "a reason quotes no more than the beginning of a text");
  Claim(IsText(reason), "a reason is a text");
  const auto is_control = [](char c) { return c >= '\0' && c < ' ' && c != '\t'; };
  Claim(std::none_of(reason.begin(), reason.end(), is_control), "a reason is one line");
}

void ClaimError(const RunTimeError& error) {
  const std::string_view reason = error.what();
  ClaimReason(reason);
  Claim(error.code() == kOverflow || error.code() == kSubscript || error.code() == kTypeMismatch ||
            error.code() == kPastEndOfFile,
        "an error of a reader is one of four");
}

void ClaimBadLine(const std::optional<BadLine>& bad, std::string_view text) {
  if (!bad) return;
  ClaimReason(bad->reason);
  Claim(bad->line >= 0 && static_cast<std::size_t>(bad->line) <= LineCount(text),
        "a bad line is a line of the text");
}

std::size_t LineCount(std::string_view text) {
  const auto ends = std::count(text.begin(), text.end(), '\n');
  const bool is_open = !text.empty() && text.back() != '\n';
  return static_cast<std::size_t>(ends) + (is_open ? 1 : 0);
}

std::vector<std::string_view> Characters(std::string_view utf8) {
  std::vector<std::string_view> characters;
  while (!utf8.empty()) {
    std::size_t length = 1;
    while (length < utf8.size() && (static_cast<unsigned char>(utf8[length]) & 0xC0) == 0x80) {
      ++length;
    }
    characters.push_back(utf8.substr(0, length));
    utf8.remove_prefix(length);
  }
  return characters;
}

}  // namespace tarnlink
