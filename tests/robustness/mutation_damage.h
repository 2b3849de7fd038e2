// Damage to a file, as disks, cables, editors and people do it: one fault at a time, each in a copy
// of its own.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnlink {

struct Damage {
  const char* kind;   // "prefix", "line removed"
  std::size_t place;  // byte, line or number, counted from 0
  std::string bytes;  // the whole damaged file
  std::string detail = {};

  // "line removed at 7"
  std::string Describe() const;
};

// Gets each damaged file. False ends the generator.
using TakeDamage = std::function<bool(const Damage& damage)>;

// Which of `count` bytes, lines or numbers are damaged: the first `head`, of those behind them
// every `stride`th, and the last one.
struct Places {
  std::size_t head = static_cast<std::size_t>(-1);
  std::size_t stride = 1;

  std::vector<std::size_t> Of(std::size_t count) const;
};

// Cut off in front of each place, and once not at all.
bool Prefixes(std::string_view file, const Places& places, const TakeDamage& take);

// Which of some values each place gets: one in `step` of them. The next place gets the next ones,
// so that all values come to places of all kinds.
struct Turns {
  std::size_t step = 1;

  bool Has(std::size_t place, std::size_t value) const { return (place + value) % step == 0; }
};

// The byte at each place xored with each mask that is its turn.
bool Flips(std::string_view file, const Places& places, std::span<const unsigned char> masks,
           const Turns& turns, const TakeDamage& take);

// A line is there twice, not at all, or behind the next one; lines with their ends.
bool LineFaults(std::string_view file, const Places& places, const TakeDamage& take);

// A NUL in front of each place and in place of it, the end of the file overwritten with NULs as a
// crash leaves it, and nothing but NULs.
bool NulBytes(std::string_view file, const Places& places, const TakeDamage& take);

// Each text of `values` whose turn it is in the place of each number. A number begins with a digit
// behind anything but a letter, a digit or a point; the letters behind it belong to it ("01A0",
// "8.25", "056Dh"), and so does a sign in front.
bool Numbers(std::string_view file, const Places& places, std::span<const std::string> values,
             const Turns& turns, const TakeDamage& take);

// A line of so many bytes: letters behind the first line, digits behind the one in the middle,
// bytes that are no UTF-8 in front of it, and blanks behind the end of the file.
bool LongLines(std::string_view file, std::size_t bytes, const TakeDamage& take);

// Numbers at the edges of every type that a file may hold, one beyond, and what is none.
const std::vector<std::string>& EdgeNumbers();

// The lines, each with its end.
std::vector<std::string_view> LinesOf(std::string_view file);

}  // namespace tarnlink
