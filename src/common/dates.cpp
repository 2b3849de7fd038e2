#include "common/dates.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "common/text.h"

namespace tarnlink {
namespace {

constexpr std::int64_t kWholeSecondsPerDay = 86400;
constexpr std::chrono::sys_days kDayZero =
    std::chrono::year(1899) / std::chrono::month(12) / std::chrono::day(30);

// What a calendar of four-digit years can show, in days: 0100-01-01 to 9999-12-31. Dates come out
// of files too, so that any number may turn up.
constexpr std::int64_t kFirstDay = -657434;
constexpr std::int64_t kLastDay = 2958465;

// Far beyond the calendar and still exact in both a double and 64 bits.
constexpr double kMostSeconds = 1e15;

std::string Padded(int number, int digits) { return Stuff(std::to_string(number), digits); }

// Three letters, and more where another month begins with the same ones: "juin" and "juil".
std::string ShortMonth(const MonthNames& names, std::size_t month) {
  constexpr int kLetters = 3;
  const std::string& name = names[month];
  for (int letters = kLetters;; ++letters) {
    const std::string_view text = FirstCharacters(name, letters);
    const auto begin_so = std::count_if(names.begin(), names.end(), [&](const std::string& other) {
      return FirstCharacters(other, letters) == text;
    });
    if (begin_so <= 1 || text == name) return std::string(text);
  }
}

// The text of one pattern part, or the part itself where it is none.
std::string PartText(const CivilTime& time, std::string_view part, bool after_hour,
                     const MonthNames& names) {
  const auto month = static_cast<std::size_t>(time.month - 1);
  if (part == "d") return std::to_string(time.day);
  if (part == "dd") return Padded(time.day, 2);
  if (part == "mm") return Padded(after_hour ? time.minute : time.month, 2);
  if (part == "mmm") return ShortMonth(names, month);
  if (part == "mmmm") return names[month];
  if (part == "yy") return Padded(time.year % 100, 2);
  if (part == "yyyy") return Padded(time.year, 4);
  if (part == "hh") return Padded(time.hour, 2);
  if (part == "nn") return Padded(time.minute, 2);
  if (part == "ss") return Padded(time.second, 2);
  return std::string(part);
}

}  // namespace

const MonthNames& EnglishMonthNames() {
  static const MonthNames names = {"January",   "February", "March",    "April",
                                   "May",       "June",     "July",     "August",
                                   "September", "October",  "November", "December"};
  return names;
}

Date ToDate(const CivilTime& time) {
  // Months are added as a span, so that a thirteenth rolls over into the next year.
  const std::chrono::year_month month =
      std::chrono::year_month(std::chrono::year(time.year), std::chrono::January) +
      std::chrono::months(time.month - 1);
  const std::chrono::sys_days first = month / std::chrono::day(1);
  const std::int64_t days = (first - kDayZero).count() + std::int64_t{time.day} - 1;
  return FromSeconds(days * kWholeSecondsPerDay + std::int64_t{time.hour} * 3600 +
                     std::int64_t{time.minute} * 60 + time.second);
}

CivilTime ToCivil(Date date) {
  const std::int64_t seconds = std::clamp(ToSeconds(date), kFirstDay * kWholeSecondsPerDay,
                                          (kLastDay + 1) * kWholeSecondsPerDay - 1);
  std::int64_t day = seconds / kWholeSecondsPerDay;
  if (seconds % kWholeSecondsPerDay < 0) --day;
  const auto rest = static_cast<int>(seconds - day * kWholeSecondsPerDay);
  const std::chrono::year_month_day civil(kDayZero + std::chrono::days(day));
  return {static_cast<int>(civil.year()),
          static_cast<int>(static_cast<unsigned>(civil.month())),
          static_cast<int>(static_cast<unsigned>(civil.day())),
          rest / 3600,
          rest / 60 % 60,
          rest % 60};
}

std::int64_t ToSeconds(Date date) {
  const double seconds = date * kSecondsPerDay;
  if (std::isnan(seconds)) return 0;
  return std::llround(std::clamp(seconds, -kMostSeconds, kMostSeconds));
}

Date FromSeconds(std::int64_t seconds) { return static_cast<double>(seconds) / kSecondsPerDay; }

std::string FormatDate(Date date, std::string_view pattern, const MonthNames& names) {
  constexpr std::string_view kPatternLetters = "dmyhns";
  const CivilTime time = ToCivil(date);
  std::string text;
  bool after_hour = false;
  while (!pattern.empty()) {
    const char letter = pattern.front();
    std::size_t length = 1;
    if (kPatternLetters.find(letter) != std::string_view::npos) {
      length = std::min(pattern.find_first_not_of(letter), pattern.size());
      text += PartText(time, pattern.substr(0, length), after_hour, names);
      after_hour = letter == 'h';
    } else {
      text += letter;
    }
    pattern.remove_prefix(length);
  }
  return text;
}

}  // namespace tarnlink
