// A serial port of the machine, over QSerialPort.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/port_settings.h"
#include "platform/qt/line_errors.h"
#include "platform/serial_port.h"

class QSerialPort;

namespace tarnlink {

class PortGuard;

class QtSerialPort final : public SerialPort {
 public:
  // `device_of` gives the device path of a port number, empty for none; asked at each opening.
  explicit QtSerialPort(std::function<std::string(int number)> device_of);
  ~QtSerialPort() override;
  QtSerialPort(const QtSerialPort&) = delete;
  QtSerialPort& operator=(const QtSerialPort&) = delete;

  int CommPort() const override { return number_; }
  void SetCommPort(int number) override { number_ = number; }
  const std::string& Settings() const override { return settings_; }
  void SetSettings(const std::string& settings) override;
  bool PortOpen() const override { return port_ != nullptr; }
  void SetPortOpen(bool open) override;
  void Output(std::string_view bytes) override;
  std::string Input() override;
  int InBufferCount() const override;
  void ClearInBuffer() override;
  int RThreshold() const override { return threshold_; }
  void SetRThreshold(int bytes) override;
  void SetOnComm(std::function<void(int)> handler) override;
  void SetWatcher(LineWatcher* watcher) override { watcher_ = watcher; }
  std::string LossReason() const override { return loss_reason_; }

 private:
  void Open();
  void Close();
  void Lose();

  void BytesArrived();
  void TellArrived();
  void DropDiscarded();
  bool ReceiveDue() const;
  void Arm();
  void ArmLater();
  void FireReceive();
  void Fire(int event);
  void PostLineErrors();

  std::function<std::string(int)> device_of_;
  int number_ = 1;
  std::string settings_ = "9600,n,8,1";
  PortSettings opened_with_;
  int threshold_ = 0;
  std::function<void(int)> handler_;
  std::string loss_reason_;

  std::unique_ptr<PortGuard> guard_;
  QSerialPort* port_ = nullptr;  // null while closed; let go with deleteLater
  LineWatcher* watcher_ = nullptr;
  qint64 told_ = 0;      // bytes that wait and that the watcher has heard of
  int opening_ = 0;      // tells the events of one opening from those of the next
  qint64 discard_ = 0;   // bytes to come that ClearInBuffer has thrown away already
  bool armed_ = false;   // a receive event is on its way
  bool unread_ = false;  // a receive handler is running that has not read yet
  std::optional<LineCounters> counters_;
  QObject context_;  // calls through the event loop end with this
};

}  // namespace tarnlink
