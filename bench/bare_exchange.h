// The least that an exchange costs with Qt: a timer tick, a write, a read, nothing else.
#pragma once

#include <QSerialPort>
#include <QTimer>
#include <string>

namespace bench {

class BareExchange {
 public:
  // One exchange per tick; with `tick` 0 the next goes out as soon as the answer is there.
  BareExchange(const std::string& device, int tick);

  long exchanges() const { return exchanges_; }
  // The sum over all exchanges of the time from the request to the whole answer, in seconds.
  double waited() const { return waited_; }

 private:
  void Send();

  QSerialPort port_;
  QTimer tick_;
  bool answered_ = true;
  long exchanges_ = 0;
  double sent_at_ = 0;
  double waited_ = 0;
};

}  // namespace bench
