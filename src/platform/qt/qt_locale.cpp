#include "platform/qt/qt_locale.h"

#include <QDate>
#include <QTime>

#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

QDate DayOf(Date date) {
  const CivilTime time = ToCivil(date);
  return QDate(time.year, time.month, time.day);
}

}  // namespace

QtLocale::QtLocale(const QLocale& locale)
    : locale_(locale), long_time_(WithoutTimeZone(locale.timeFormat(QLocale::LongFormat))) {
  for (std::size_t i = 0; i < months_.size(); ++i) {
    months_[i] = FromQt(locale_.monthName(static_cast<int>(i) + 1, QLocale::LongFormat));
  }
}

std::string QtLocale::LongTime(Date date) const {
  const CivilTime time = ToCivil(date);
  return FromQt(locale_.toString(QTime(time.hour, time.minute, time.second), long_time_));
}

std::string QtLocale::ShortDate(Date date) const {
  return FromQt(locale_.toString(DayOf(date), QLocale::ShortFormat));
}

std::string QtLocale::LongDate(Date date) const {
  return FromQt(locale_.toString(DayOf(date), QLocale::LongFormat));
}

std::string QtLocale::DecimalSeparator() const {
  return locale_.decimalPoint() == QStringLiteral(",") ? "," : ".";
}

QString WithoutTimeZone(const QString& format) {
  QString kept;
  bool quoted = false;
  for (const QChar character : format) {
    if (character == u'\'') quoted = !quoted;
    if (quoted || character != u't') kept += character;
  }
  kept.remove(QStringLiteral("()")).remove(QStringLiteral("[]"));
  kept.replace(QStringLiteral("  "), QStringLiteral(" "));
  return kept.trimmed();
}

}  // namespace tarnlink
