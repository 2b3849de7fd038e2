#include "graph/measure_stamps.h"

#include <algorithm>
#include <chrono>
#include <cstring>

#include "common/dates.h"

namespace tarnlink {

namespace {

constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;

constexpr char kZero = '0';

void PutDigits(int number, int digits, char* to) {
  for (int i = digits - 1; i >= 0; --i) {
    to[i] = static_cast<char>(kZero + number % 10);
    number /= 10;
  }
}

// -1 where there is something else.
int TakeDigits(const char* from, int digits) {
  int number = 0;
  for (int i = 0; i < digits; ++i) {
    if (from[i] < '0' || from[i] > '9') return -1;
    number = number * 10 + (from[i] - kZero);
  }
  return number;
}

}  // namespace

void SampleStamps::BeginMinute(std::int64_t time) {
  const CivilTime civil = ToCivil(FromSeconds(time));
  PutDigits(civil.year, 4, text_.data());
  PutDigits(civil.month, 2, text_.data() + 4);
  PutDigits(civil.day, 2, text_.data() + 6);
  PutDigits(civil.hour, 2, text_.data() + 8);
  PutDigits(civil.minute, 2, text_.data() + 10);
  minute_ = time - civil.second;
}

std::optional<std::int64_t> StampReader::Read(const char* digits) {
  if (!has_minute_ || std::memcmp(digits, text_.data(), kMinuteDigits) != 0) {
    const std::optional<std::int64_t> minute =
        SecondsOf(TakeDigits(digits, 4), TakeDigits(digits + 4, 2), TakeDigits(digits + 6, 2),
                  TakeDigits(digits + 8, 2), TakeDigits(digits + 10, 2), 0);
    if (!minute) return std::nullopt;
    minute_ = *minute;
    has_minute_ = true;
    std::memcpy(text_.data(), digits, kMinuteDigits);
  }
  const int second = TakeDigits(digits + kMinuteDigits, 2);
  if (second < 0 || second >= kSecondsPerMinute) return std::nullopt;
  return minute_ + second;
}

std::optional<std::int64_t> SecondsOf(int year, int month, int day, int hour, int minute,
                                      int second) {
  const auto is_within = [](int number, int last) { return number >= 0 && number <= last; };
  if (year < kFirstYear || year > kLastYear) return std::nullopt;
  if (!is_within(month, 12) || !is_within(day, 31)) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok() || !is_within(hour, 23) || !is_within(minute, 59) || !is_within(second, 59)) {
    return std::nullopt;
  }
  return ToSeconds(ToDate({year, month, day, hour, minute, second}));
}

SampleRange::SampleRange(const MeasureChannel& channel, int lowest_index)
    : filling_(channel.Filling()) {
  behind = channel.Appended();
  first = std::min(behind, channel.NumberAt(std::max(lowest_index, channel.FirstIndex())));
}

}  // namespace tarnlink
