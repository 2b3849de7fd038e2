// A serial port whose far end is the test: it records what the program does to it and delivers
// bytes, line errors and losses at virtual times.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/port_settings.h"
#include "platform/serial_port.h"
#include "support/virtual_time.h"

namespace tarnlink {

class FakeSerialPort;

// The sockets that all ports of one world share, by port number.
struct PortRack {
  std::map<int, const FakeSerialPort*> open;
  std::set<int> busy;     // held by another program
  std::set<int> missing;  // not plugged in
};

class FakeSerialPort final : public SerialPort {
 public:
  // The pause before an unread receive event fires again.
  static constexpr Micros kRepeat = std::chrono::milliseconds(1);

  struct Frame {
    Micros time;
    std::string bytes;
  };

  FakeSerialPort(VirtualTime& time, PortRack& rack) : time_(time), rack_(rack) {}

  int CommPort() const override { return number_; }
  void SetCommPort(int number) override { number_ = number; }
  const std::string& Settings() const override { return settings_; }
  void SetSettings(const std::string& settings) override;
  bool PortOpen() const override { return open_; }
  void SetPortOpen(bool open) override;
  void Output(std::string_view bytes) override;
  std::string Input() override;
  int InBufferCount() const override { return static_cast<int>(in_buffer_.size()); }
  void ClearInBuffer() override { TakeAll(); }
  int RThreshold() const override { return threshold_; }
  void SetRThreshold(int bytes) override;
  void SetOnComm(std::function<void(int)> handler) override;
  void SetWatcher(LineWatcher* watcher) override { watcher_ = watcher; }
  std::string LossReason() const override { return loss_reason_; }

  // The far end sends. Bytes for a closed port are lost. The receive event comes with the next
  // `Advance` or `Settle` of the world.
  void Receive(std::string_view bytes);
  void ReceiveIn(Micros delay, std::string_view bytes);
  // kCommFrame, kCommOverrun, kCommReceiveOver or kCommTransmitFull; nothing on a closed port.
  void RaiseLineError(int event);

  // The device is pulled out: an open port closes itself and tells once. It cannot be opened again
  // before `PlugIn`.
  void Unplug();
  void PlugIn() { rack_.missing.erase(number_); }
  // Another program holds the device, or lets go of it.
  void MakeBusy(bool busy = true);

  // Called inside each `Output`; the far end answers through `ReceiveIn`.
  std::function<void(Micros time, std::string_view bytes)> on_output;

  // Called with what each `Input` takes; bytes that are thrown away do not count.
  std::function<void(std::string_view bytes)> on_input;

  // All that was sent, and since the last `TakeSent` only.
  const std::vector<Frame>& frames() const { return frames_; }
  std::vector<std::string> TakeSent();
  // The same as hexadecimal text, one frame a line.
  std::string TakeSentHex();

  int opens() const { return opens_; }
  int closes() const { return closes_; }
  // What the port was opened with last.
  const PortSettings& opened_with() const { return opened_with_; }
  // How long `count` bytes take on the wire at those settings.
  Micros WireTime(std::size_t count) const;
  bool has_handler() const { return static_cast<bool>(handler_); }

  // Everything that happened, one line each: "0.020000 output 04 05 30 31".
  const std::vector<std::string>& history() const { return history_; }
  std::string Describe() const;
  // Drops frames and history, so that a long run does not fill the memory.
  void Forget();

  // The program has destroyed its port: it closes and nobody is told of anything any more.
  void LetGo();

 private:
  bool ReceiveDue() const;
  std::string TakeAll();
  void Arm(Micros delay);
  void FireReceive();
  void Fire(int event);
  void Close(std::string_view why);
  void Note(const std::string& what);

  VirtualTime& time_;
  PortRack& rack_;
  int number_ = 1;
  int open_number_ = 0;
  std::string settings_ = "9600,n,8,1";
  PortSettings opened_with_;
  bool open_ = false;
  int opens_ = 0;
  int closes_ = 0;
  int threshold_ = 0;
  std::string in_buffer_;
  std::string loss_reason_;
  std::function<void(int)> handler_;
  LineWatcher* watcher_ = nullptr;
  bool armed_ = false;
  bool unread_ = false;  // a receive handler is running that has not read yet
  VirtualTime::EventId receive_event_{};
  std::vector<Frame> frames_;
  std::size_t taken_ = 0;
  std::vector<std::string> history_;
};

}  // namespace tarnlink
