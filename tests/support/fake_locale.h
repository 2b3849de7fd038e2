// An English locale that is the same on every machine.
#pragma once

#include <string>

#include "platform/locale.h"

namespace tarnlink {

class FakeLocale final : public Locale {
 public:
  // "14:07:09"
  std::string LongTime(Date date) const override { return FormatDate(date, "hh:nn:ss", months_); }
  // "05/03/2024"
  std::string ShortDate(Date date) const override {
    return FormatDate(date, "dd/mm/yyyy", months_);
  }
  // "5 March 2024"
  std::string LongDate(Date date) const override {
    return FormatDate(date, "d mmmm yyyy", months_);
  }
  const MonthNames& Months() const override { return months_; }
  std::string DecimalSeparator() const override { return decimal_separator_; }

  void SetDecimalSeparator(const std::string& separator) { decimal_separator_ = separator; }
  void SetMonths(const MonthNames& months) { months_ = months; }

 private:
  MonthNames months_ = EnglishMonthNames();
  std::string decimal_separator_ = ".";
};

}  // namespace tarnlink
