#include "bare_exchange.h"

#include "measure.h"

namespace bench {

BareExchange::BareExchange(const std::string& device, int tick) {
  constexpr int kAnswerLength = 11;
  port_.setPortName(QString::fromStdString(device));
  port_.setBaudRate(QSerialPort::Baud9600);
  port_.open(QIODevice::ReadWrite);
  QObject::connect(&port_, &QSerialPort::readyRead, &port_, [this, tick] {
    if (port_.bytesAvailable() < kAnswerLength) return;
    port_.readAll();
    waited_ += WallSeconds() - sent_at_;
    ++exchanges_;
    answered_ = true;
    if (tick == 0) Send();
  });
  QObject::connect(&tick_, &QTimer::timeout, &tick_, [this] {
    if (answered_) Send();
  });
  if (tick > 0) {
    tick_.setTimerType(Qt::PreciseTimer);
    tick_.start(tick);
  } else {
    Send();
  }
}

void BareExchange::Send() {
  answered_ = false;
  sent_at_ = WallSeconds();
  port_.write(
      "\x04\x05"
      "01A0D7\x03",
      9);
}

}  // namespace bench
