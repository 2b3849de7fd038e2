#include "platform/qt/qt_clock.h"

#include <QDateTime>

namespace tarnlink {

Date QtClock::Now() const {
  const QDateTime now = QDateTime::currentDateTime();
  static const QDate kDayZero(1899, 12, 30);
  constexpr double kMillisecondsPerDay = kSecondsPerDay * 1000.0;
  return static_cast<double>(kDayZero.daysTo(now.date())) +
         now.time().msecsSinceStartOfDay() / kMillisecondsPerDay;
}

std::chrono::microseconds QtClock::Elapsed() const {
  return std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace tarnlink
