// Presses, reads and pictures the widgets of the program it lives in, told by lines on standard
// input. Each line gets one answer line on standard output, which begins with "@". A line that
// begins with "!" says that the program has kept its user waiting.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QStringList>

#include "watchdog.h"

namespace tarnlink_driver {

class Driver final : public QObject {
 public:
  Driver();

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Read();
  void TellWaiting(double milliseconds, const std::string& account) const;
  QString Obey(const QString& line);
  QString Press(const QString& name);
  QString Property(const QString& name, const QByteArray& property);
  QString Modal();
  QString Click(const QString& button);
  QString Close();
  QString Mouse(const QString& target, int clicks);
  QString Key(const QString& name);
  QString Keys(const QString& text);
  QString Items(const QString& name);
  QString Focus(const QString& name);
  QString Type(const QString& text);
  QString Picture(const QString& file);

  QSocketNotifier notifier_;
  QString last_command_ = "its start";
  Watchdog watchdog_;
  QByteArray pending_;
  int mouse_time_ = 0;  // ms
};

}  // namespace tarnlink_driver
