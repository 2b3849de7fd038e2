// What the files of the graph have in common: the times of samples as 14 digits, and the samples
// that a channel has at one moment.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

#include "common/dates.h"
#include "graph/measure_channel.h"

#include "common/dates.h"

namespace tarnlink {

inline constexpr std::size_t kStampDigits = 14;   // "yyyymmddhhnnss"
inline constexpr std::size_t kMinuteDigits = 12;  // without the seconds

// Seconds of samples as text, and back. Samples mostly lie in the minute of the one before, whose
// text is kept.
class SampleStamps {
 public:
  // Puts the 14 digits of `time` at `to`.
  void Put(std::int64_t time, char* to) {
    if (time < minute_ || time >= minute_ + kSecondsPerMinute) BeginMinute(time);
    std::memcpy(to, text_.data(), kMinuteDigits);
    const std::int64_t second = time - minute_;
    to[kMinuteDigits] = static_cast<char>('0' + second / 10);
    to[kMinuteDigits + 1] = static_cast<char>('0' + second % 10);
  }

 private:
  void BeginMinute(std::int64_t time);

  // The second that it begins with; at first one that nothing has.
  std::int64_t minute_ = std::numeric_limits<std::int64_t>::min();
  std::array<char, kMinuteDigits> text_{};
};

// And back. Nothing but 14 digits of a time that a calendar of the years 100 to 9999 has.
class StampReader {
 public:
  std::optional<std::int64_t> Read(const char* digits);

 private:
  std::int64_t minute_ = 0;
  bool has_minute_ = false;
  std::array<char, kMinuteDigits> text_{};
};

// The whole seconds of a date and time, nothing if there is no such one.
std::optional<std::int64_t> SecondsOf(int year, int month, int day, int hour, int minute,
                                      int second);

// The samples that a channel had when this was made, by the numbers of their arrival. Later ones do
// not belong to it, and those that have fallen out since are gone.
class SampleRange {
 public:
  // From element `lowest_index` up.
  SampleRange(const MeasureChannel& channel, int lowest_index);

  std::int64_t first = 0;
  std::int64_t behind = 0;  // one behind the last; equal to `first` where there is none

  // Whether the channel is still the one that it was, and has not been emptied since.
  bool IsOf(const MeasureChannel& channel) const { return channel.Filling() == filling_; }

 private:
  std::int64_t filling_ = 0;
};

}  // namespace tarnlink
