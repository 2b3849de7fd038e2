// Dates and times of rows that follow each other second by second, as the user's locale has them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/locale.h"

namespace tarnlink {

// The locale is asked for an hour at a time, where that does.
class RowTimes {
 public:
  explicit RowTimes(const Locale& locale) : locale_(locale) {}

  // Short date, a blank and long time of a second; valid until the next call.
  std::string_view Text(std::int64_t second);

 private:
  void BeginHour(std::int64_t hour);
  std::string Ask(std::int64_t second) const;

  const Locale& locale_;
  std::optional<std::int64_t> hour_;  // the second that it begins with
  std::string text_;
  // Where in it the two digits of minute and second stand; nothing where there are no such ones.
  std::optional<std::size_t> minute_;
  std::optional<std::size_t> second_;
};

}  // namespace tarnlink
