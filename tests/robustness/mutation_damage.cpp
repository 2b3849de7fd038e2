#include "robustness/mutation_damage.h"

#include <algorithm>
#include <utility>

namespace tarnlink {
namespace {

struct Piece {
  std::size_t at;
  std::size_t size;
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsPart(char c) {
  return IsDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '.';
}

std::vector<Piece> NumbersIn(std::string_view file) {
  std::vector<Piece> numbers;
  std::size_t at = 0;
  while (at < file.size()) {
    std::size_t end = at;
    while (end < file.size() && IsPart(file[end])) ++end;
    if (end > at && IsDigit(file[at])) {
      const bool has_sign = at > 0 && (file[at - 1] == '-' || file[at - 1] == '+') &&
                            (at == 1 || !IsPart(file[at - 2]));
      const std::size_t begin = has_sign ? at - 1 : at;
      numbers.push_back({begin, end - begin});
    }
    at = end + 1;
  }
  return numbers;
}

// The file with `text` in place of a piece of it.
std::string With(std::string_view file, const Piece& piece, std::string_view text) {
  std::string damaged;
  damaged.reserve(file.size() + text.size());
  damaged.append(file.substr(0, piece.at)).append(text).append(file.substr(piece.at + piece.size));
  return damaged;
}

Piece PieceOf(std::string_view file, std::string_view part) {
  return {static_cast<std::size_t>(part.data() - file.data()), part.size()};
}

}  // namespace

std::string Damage::Describe() const {
  std::string text = std::string(kind) + " at " + std::to_string(place);
  return detail.empty() ? text : text + ": " + detail;
}

std::vector<std::size_t> Places::Of(std::size_t count) const {
  std::vector<std::size_t> places;
  std::size_t place = 0;
  while (place < count) {
    places.push_back(place);
    place += place + 1 < head ? 1 : stride;
  }
  if (count > 0 && places.back() != count - 1) places.push_back(count - 1);
  return places;
}

std::vector<std::string_view> LinesOf(std::string_view file) {
  std::vector<std::string_view> lines;
  while (!file.empty()) {
    const std::size_t end = file.find('\n');
    const std::size_t size = end == std::string_view::npos ? file.size() : end + 1;
    lines.push_back(file.substr(0, size));
    file.remove_prefix(size);
  }
  return lines;
}

bool Prefixes(std::string_view file, const Places& places, const TakeDamage& take) {
  for (const std::size_t place : places.Of(file.size() + 1)) {
    if (!take({"prefix", place, std::string(file.substr(0, place))})) return false;
  }
  return true;
}

bool Flips(std::string_view file, const Places& places, std::span<const unsigned char> masks,
           const Turns& turns, const TakeDamage& take) {
  for (const std::size_t place : places.Of(file.size())) {
    for (std::size_t i = 0; i < masks.size(); ++i) {
      if (!turns.Has(place, i)) continue;
      const unsigned char mask = masks[i];
      std::string damaged(file);
      damaged[place] = static_cast<char>(static_cast<unsigned char>(damaged[place]) ^ mask);
      if (!take({"flip", place, std::move(damaged), "mask " + std::to_string(mask)})) return false;
    }
  }
  return true;
}

bool LineFaults(std::string_view file, const Places& places, const TakeDamage& take) {
  const std::vector<std::string_view> lines = LinesOf(file);
  for (const std::size_t place : places.Of(lines.size())) {
    const std::string line(lines[place]);
    const Piece piece = PieceOf(file, lines[place]);
    if (!take({"line doubled", place, With(file, piece, line + line)})) return false;
    if (!take({"line removed", place, With(file, piece, {})})) return false;
    if (place + 1 == lines.size()) break;
    const std::string next(lines[place + 1]);
    const Piece both = {piece.at, piece.size + next.size()};
    if (!take({"lines swapped", place, With(file, both, next + line)})) return false;
  }
  return true;
}

bool NulBytes(std::string_view file, const Places& places, const TakeDamage& take) {
  const std::string nul(1, '\0');
  for (const std::size_t place : places.Of(file.size())) {
    if (!take({"NUL put in", place, With(file, {place, 0}, nul)})) return false;
    if (!take({"NUL instead", place, With(file, {place, 1}, nul)})) return false;
  }
  for (const std::size_t parts : {1, 2, 8}) {
    const std::size_t lost = file.size() / parts;
    const std::size_t kept = file.size() - lost;
    const std::string end(lost, '\0');
    if (!take({"NULs to the end", kept, With(file, {kept, lost}, end)})) return false;
  }
  return true;
}

bool Numbers(std::string_view file, const Places& places, std::span<const std::string> values,
             const Turns& turns, const TakeDamage& take) {
  const std::vector<Piece> numbers = NumbersIn(file);
  for (const std::size_t place : places.Of(numbers.size())) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (!turns.Has(place, i)) continue;
      if (!take({"number", place, With(file, numbers[place], values[i]), values[i]})) return false;
    }
  }
  return true;
}

bool LongLines(std::string_view file, std::size_t bytes, const TakeDamage& take) {
  const std::vector<std::string_view> lines = LinesOf(file);
  if (lines.empty()) return true;
  const auto behind = [&](std::size_t line, char letter) {
    const Piece piece = PieceOf(file, lines[line]);
    const std::size_t end = lines[line].find_last_not_of("\r\n") + 1;
    return With(file, {piece.at + end, 0}, std::string(bytes, letter));
  };
  const std::size_t middle = lines.size() / 2;
  const Piece front = {PieceOf(file, lines[middle]).at, 0};
  return take({"long line", 0, behind(0, 'A')}) &&
         take({"long line", middle, behind(middle, '7')}) &&
         take({"long line", middle, With(file, front, std::string(bytes, '\xE4'))}) &&
         take({"long line", lines.size(), std::string(file) + std::string(bytes, ' ')});
}

const std::vector<std::string>& EdgeNumbers() {
  static const std::vector<std::string> numbers = {
      "",
      "0",
      "-0",
      "1",
      "-1",
      "0.5",
      "127",
      "128",
      "-128",
      "-129",
      "255",
      "256",
      "32767",
      "32768",
      "-32768",
      "-32769",
      "65535",
      "65536",
      "90000",
      "2147483647",
      "2147483648",
      "-2147483648",
      "-2147483649",
      "4294967295",
      "4294967296",
      "9223372036854775807",
      "9223372036854775808",
      "18446744073709551616",
      "1e9",
      "1e-400",
      "3.5e38",
      "1e308",
      "1e309",
      "-1e309",
      "NaN",
      "inf",
      "-inf",
      "7FFFFFFF",
      "80000000",
      "FFFFFFFF",
      "0x7f",
  };
  return numbers;
}

}  // namespace tarnlink
