// The desktop's locale.
#pragma once

#include <QLocale>
#include <QString>
#include <string>

#include "platform/locale.h"

namespace tarnlink {

class QtLocale final : public Locale {
 public:
  explicit QtLocale(const QLocale& locale = QLocale::system());

  std::string LongTime(Date date) const override;
  std::string ShortDate(Date date) const override;
  std::string LongDate(Date date) const override;
  const MonthNames& Months() const override { return months_; }
  std::string DecimalSeparator() const override;

 private:
  QLocale locale_;
  QString long_time_;
  MonthNames months_;
};

// A time format without its time zone: "HH:mm:ss (t)" becomes "HH:mm:ss".
QString WithoutTimeZone(const QString& format);

}  // namespace tarnlink
