// How this user writes dates and numbers. Real class: `QtLocale`; fake: `FakeLocale`.
#pragma once

#include <string>

#include "common/dates.h"

namespace tarnlink {

class Locale {
 public:
  virtual ~Locale() = default;

  // The time of day in the system's long form.
  virtual std::string LongTime(Date date) const = 0;
  // The date in the system's short form.
  virtual std::string ShortDate(Date date) const = 0;
  virtual std::string LongDate(Date date) const = 0;
  virtual const MonthNames& Months() const = 0;
  // One character, "." or ",".
  virtual std::string DecimalSeparator() const = 0;
};

}  // namespace tarnlink
