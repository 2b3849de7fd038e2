// Dates: days with a fraction of a day, local time; day 0 is 1899-12-30.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnlink {

using Date = double;

inline constexpr double kSecondsPerDay = 86400.0;
inline constexpr double kMinutesPerDay = 1440.0;
inline constexpr int kSecondsPerMinute = 60;

struct CivilTime {
  int year = 1899;
  int month = 12;  // 1 to 12
  int day = 30;    // 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// The twelve month names, January first, each in full; patterns cut them to three letters.
using MonthNames = std::array<std::string, 12>;
const MonthNames& EnglishMonthNames();

// Both directions work in whole seconds, so that no second is lost to a truncated fraction.
Date ToDate(const CivilTime& time);
CivilTime ToCivil(Date date);  // beyond the years 100 to 9999 the nearest time inside
std::int64_t ToSeconds(Date date);
Date FromSeconds(std::int64_t seconds);

// `pattern` is made of d dd mmm mmmm yy yyyy hh nn ss; "mm" is the minute behind "hh" and the month
// elsewhere. Every other character stands for itself.
std::string FormatDate(Date date, std::string_view pattern, const MonthNames& names);

}  // namespace tarnlink
