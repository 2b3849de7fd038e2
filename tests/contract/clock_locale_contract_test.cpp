#include <gtest/gtest.h>

#include <QDateTime>
#include <cmath>
#include <set>

#include "contract/loops.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_locale.h"

namespace tarnlink {
namespace {

class FakeTimeBench : public VirtualLoop {
 public:
  Clock& clock() { return world().clock(); }
  Locale& locale() { return world().locale(); }
};

class QtTimeBench : public QtLoop {
 public:
  Clock& clock() { return clock_; }
  Locale& locale() { return locale_; }

 private:
  QtClock clock_;
  QtLocale locale_;
};

template <class Bench>
class TimeContract : public testing::Test {
 protected:
  Bench bench;
};

using Benches = testing::Types<FakeTimeBench, QtTimeBench>;
TYPED_TEST_SUITE(TimeContract, Benches, BenchNames);

constexpr CivilTime kMoment{2024, 3, 5, 14, 7, 9};

TYPED_TEST(TimeContract, TheClockGoesOnWithTheTime) {
  const Date before = this->bench.clock().Now();
  this->bench.RunFor(50ms);
  const double seconds = (this->bench.clock().Now() - before) * kSecondsPerDay;
  EXPECT_GE(seconds, 0.045);
  EXPECT_LT(seconds, 5.0);
}

TYPED_TEST(TimeContract, ElapsedTimeGoesOnWithTheTime) {
  const auto before = this->bench.clock().Elapsed();
  this->bench.RunFor(50ms);
  const auto passed = this->bench.clock().Elapsed() - before;
  EXPECT_GE(passed, 45ms);
  EXPECT_LT(passed, 5s);
}

TYPED_TEST(TimeContract, TheClockIsInOurCentury) {
  const CivilTime now = ToCivil(this->bench.clock().Now());
  EXPECT_GE(now.year, 2020);
  EXPECT_LT(now.year, 2100);
}

TYPED_TEST(TimeContract, TheLongTimeTellsEverySecondApart) {
  std::set<std::string> texts;
  for (int second = 0; second < 60; ++second) {
    CivilTime time = kMoment;
    time.second = second;
    texts.insert(this->bench.locale().LongTime(ToDate(time)));
  }
  EXPECT_EQ(texts.size(), 60U);
  EXPECT_FALSE(texts.contains(""));
}

TYPED_TEST(TimeContract, TheDatesTellEveryDayApart) {
  std::set<std::string> shorts;
  std::set<std::string> longs;
  for (int day = 0; day < 366; ++day) {
    shorts.insert(this->bench.locale().ShortDate(ToDate(kMoment) + day));
    longs.insert(this->bench.locale().LongDate(ToDate(kMoment) + day));
  }
  EXPECT_EQ(shorts.size(), 366U);
  EXPECT_EQ(longs.size(), 366U);
}

TYPED_TEST(TimeContract, HasTwelveMonthNames) {
  const MonthNames& months = this->bench.locale().Months();
  EXPECT_EQ(std::set<std::string>(months.begin(), months.end()).size(), 12U);
}

TYPED_TEST(TimeContract, TheDecimalSeparatorIsAPointOrAComma) {
  const std::string separator = this->bench.locale().DecimalSeparator();
  EXPECT_TRUE(separator == "." || separator == ",") << separator;
}

TEST(QtClock, GivesTheLocalTime) {
  const QDateTime before = QDateTime::currentDateTime();
  const CivilTime now = ToCivil(QtClock().Now());
  const QDateTime shown(QDate(now.year, now.month, now.day),
                        QTime(now.hour, now.minute, now.second));
  EXPECT_LE(std::abs(before.secsTo(shown)), 2);
}

struct LocaleCase {
  const char* name;
  const char* long_time;
  const char* short_date;
  const char* long_date;
  const char* march;
  const char* separator;
};

class QtLocaleOf : public testing::TestWithParam<LocaleCase> {};

TEST_P(QtLocaleOf, WritesDatesAndNumbersAsThatCountryDoes) {
  const LocaleCase& expected = GetParam();
  const QtLocale locale{QLocale(QLatin1String(expected.name))};
  const Date date = ToDate(kMoment);
  EXPECT_EQ(locale.LongTime(date), expected.long_time);
  EXPECT_EQ(locale.ShortDate(date), expected.short_date);
  EXPECT_EQ(locale.LongDate(date), expected.long_date);
  EXPECT_EQ(locale.Months()[2], expected.march);
  EXPECT_EQ(locale.DecimalSeparator(), expected.separator);
}

INSTANTIATE_TEST_SUITE_P(
    Countries, QtLocaleOf,
    testing::Values(
        LocaleCase{"C", "14:07:09", "5 Mar 2024", "Tuesday, 5 March 2024", "March", "."},
        LocaleCase{"en_GB", "14:07:09", "05/03/2024", "Tuesday, 5 March 2024", "March", "."},
        LocaleCase{"en_US", "2:07:09 PM", "3/5/24", "Tuesday, March 5, 2024", "March", "."},
        LocaleCase{"de_DE", "14:07:09", "05.03.24", "Dienstag, 5. März 2024", "März", ","},
        LocaleCase{"nl_NL", "14:07:09", "05-03-2024", "dinsdag 5 maart 2024", "maart", ","}),
    [](const auto& country) { return std::string(country.param.name); });

TEST(QtLocale, TakesTheTimeZoneOutOfATimeFormat) {
  const std::vector<std::pair<QString, QString>> cases{
      {"HH:mm:ss t", "HH:mm:ss"},     {"h:mm:ss AP t", "h:mm:ss AP"},
      {"HH:mm:ss (t)", "HH:mm:ss"},   {"t HH:mm:ss", "HH:mm:ss"},
      {"HH 'tt' mm t", "HH 'tt' mm"}, {"HH:mm:ss [tttt]", "HH:mm:ss"},
      {"HH:mm:ss", "HH:mm:ss"},       {"AP h:mm:ss tttt", "AP h:mm:ss"},
  };
  for (const auto& [format, expected] : cases) {
    EXPECT_EQ(WithoutTimeZone(format).toStdString(), expected.toStdString());
  }
}

}  // namespace
}  // namespace tarnlink
