#include "graph/row_times.h"

#include "common/dates.h"

namespace tarnlink {

namespace {

constexpr std::int64_t kHour = 3600;

// A minute and a second whose digits are unlike those of the first.
constexpr int kOther = 37;
constexpr std::string_view kOtherDigits = "37";

std::int64_t HourOf(std::int64_t second) {
  const std::int64_t rest = second % kHour;
  return second - (rest < 0 ? rest + kHour : rest);
}

// The place of the only two characters in which the texts differ, if these are "00" and "37".
std::optional<std::size_t> DigitsOf(std::string_view first, std::string_view other) {
  if (first.size() != other.size()) return std::nullopt;
  std::size_t place = 0;
  while (place < first.size() && first[place] == other[place]) ++place;
  if (first.substr(place, 2) != "00" || other.substr(place, 2) != kOtherDigits) return std::nullopt;
  if (first.substr(place + 2) != other.substr(place + 2)) return std::nullopt;
  return place;
}

void PutDigits(int number, char* to) {
  constexpr int kTen = 10;
  to[0] = static_cast<char>('0' + number / kTen);
  to[1] = static_cast<char>('0' + number % kTen);
}

}  // namespace

std::string_view RowTimes::Text(std::int64_t second) {
  if (!hour_ || second < *hour_ || second >= *hour_ + kHour) BeginHour(HourOf(second));
  if (minute_ && second_) {
    const auto of_hour = static_cast<int>(second - *hour_);
    PutDigits(of_hour / kSecondsPerMinute, text_.data() + *minute_);
    PutDigits(of_hour % kSecondsPerMinute, text_.data() + *second_);
  } else {
    text_ = Ask(second);
  }
  return text_;
}

void RowTimes::BeginHour(std::int64_t hour) {
  hour_ = hour;
  text_ = Ask(hour);
  minute_ = DigitsOf(text_, Ask(hour + std::int64_t{kOther} * kSecondsPerMinute));
  second_ = DigitsOf(text_, Ask(hour + kOther));
}

std::string RowTimes::Ask(std::int64_t second) const {
  const Date time = FromSeconds(second);
  return locale_.ShortDate(time) + " " + locale_.LongTime(time);
}

}  // namespace tarnlink
