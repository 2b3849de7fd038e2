#include "support/fake_serial_port.h"

#include <cstdio>
#include <utility>

#include "common/run_time_error.h"
#include "support/byte_text.h"

namespace tarnlink {
namespace {

std::string Name(int number) { return "COM" + std::to_string(number); }

std::string TimeText(Micros time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6f", std::chrono::duration<double>(time).count());
  return text;
}

std::string Text(const PortSettings& settings) {
  return std::to_string(settings.speed) + "," + settings.parity + "," +
         std::to_string(settings.data_bits) + "," + std::to_string(settings.stop_bits);
}

}  // namespace

void FakeSerialPort::SetSettings(const std::string& settings) {
  const PortSettings parsed = ParsePortSettings(settings);
  settings_ = settings;
  if (!open_ || parsed == opened_with_) return;
  SetPortOpen(false);
  SetPortOpen(true);
}

void FakeSerialPort::SetPortOpen(bool open) {
  if (!open) {
    if (open_) Close("close");
    return;
  }
  const std::string name = Name(number_);
  const auto refuse = [&](const std::string& reason) {
    Note("refused " + name);
    throw RunTimeError(kPortUnavailable, name + " " + reason);
  };
  if (open_) refuse("is open already.");
  if (number_ < 1 || number_ > 16) refuse("is no port number.");
  if (rack_.missing.contains(number_)) refuse("is not plugged in.");
  if (rack_.busy.contains(number_) || rack_.open.contains(number_)) {
    refuse("is in use by another program.");
  }
  opened_with_ = ParsePortSettings(settings_);
  open_ = true;
  loss_reason_.clear();
  open_number_ = number_;
  rack_.open[number_] = this;
  in_buffer_.clear();
  ++opens_;
  Note("open " + name + " " + Text(opened_with_));
}

void FakeSerialPort::Close(std::string_view why) {
  if (watcher_ != nullptr) watcher_->LineClosed();
  open_ = false;
  rack_.open.erase(open_number_);
  in_buffer_.clear();
  unread_ = false;
  if (armed_) time_.Cancel(receive_event_);
  armed_ = false;
  ++closes_;
  Note(std::string(why) + " " + Name(open_number_));
}

void FakeSerialPort::Output(std::string_view bytes) {
  if (!open_) throw RunTimeError(kDeviceIo, Name(number_) + " is not open.");
  if (watcher_ != nullptr) watcher_->BytesSent(bytes);
  frames_.push_back({time_.now(), std::string(bytes)});
  Note("output " + HexText(bytes));
  if (on_output) on_output(time_.now(), frames_.back().bytes);
}

std::string FakeSerialPort::Input() {
  std::string bytes = TakeAll();
  if (on_input) on_input(bytes);
  return bytes;
}

std::string FakeSerialPort::TakeAll() {
  unread_ = false;
  return std::exchange(in_buffer_, {});
}

void FakeSerialPort::SetRThreshold(int bytes) {
  threshold_ = bytes;
  Arm(Micros::zero());
}

void FakeSerialPort::SetOnComm(std::function<void(int)> handler) {
  handler_ = std::move(handler);
  Arm(Micros::zero());
}

void FakeSerialPort::Receive(std::string_view bytes) {
  if (!open_) {
    Note("lost " + HexText(bytes));
    return;
  }
  if (watcher_ != nullptr) watcher_->BytesReceived(bytes);
  in_buffer_ += bytes;
  Note("receive " + HexText(bytes));
  Arm(Micros::zero());
}

void FakeSerialPort::ReceiveIn(Micros delay, std::string_view bytes) {
  time_.Post(delay, [this, held = std::string(bytes)] { Receive(held); });
}

void FakeSerialPort::RaiseLineError(int event) {
  const int opening = opens_;
  time_.Post(Micros::zero(), [this, event, opening] {
    if (open_ && opens_ == opening) Fire(event);
  });
}

void FakeSerialPort::Unplug() {
  rack_.missing.insert(open_ ? open_number_ : number_);
  if (!open_) return;
  loss_reason_ = Name(open_number_) + " was unplugged.";
  Close("lost device");
  time_.Post(Micros::zero(), [this] { Fire(kCommDeviceGone); });
}

void FakeSerialPort::MakeBusy(bool busy) {
  if (busy) {
    rack_.busy.insert(number_);
  } else {
    rack_.busy.erase(number_);
  }
}

bool FakeSerialPort::ReceiveDue() const {
  return open_ && handler_ && threshold_ > 0 && InBufferCount() >= threshold_;
}

void FakeSerialPort::Arm(Micros delay) {
  if (armed_ || unread_ || !ReceiveDue()) return;
  armed_ = true;
  receive_event_ = time_.Post(delay, [this] {
    armed_ = false;
    FireReceive();
  });
}

void FakeSerialPort::FireReceive() {
  if (!ReceiveDue()) return;
  unread_ = true;
  try {
    Fire(kCommReceive);
  } catch (...) {
    unread_ = false;
    throw;
  }
  const bool still_unread = std::exchange(unread_, false);
  Arm(still_unread ? kRepeat : Micros::zero());
}

void FakeSerialPort::Fire(int event) {
  const auto handler = handler_;
  if (handler) handler(event);
}

void FakeSerialPort::LetGo() {
  handler_ = nullptr;
  if (open_) Close("close");
}

void FakeSerialPort::Forget() {
  frames_.clear();
  taken_ = 0;
  history_.clear();
}

std::vector<std::string> FakeSerialPort::TakeSent() {
  std::vector<std::string> sent;
  for (; taken_ < frames_.size(); ++taken_) sent.push_back(frames_[taken_].bytes);
  return sent;
}

std::string FakeSerialPort::TakeSentHex() {
  std::string text;
  for (const std::string& frame : TakeSent()) text += HexText(frame) + "\n";
  return text;
}

Micros FakeSerialPort::WireTime(std::size_t count) const {
  const int bits =
      1 + opened_with_.data_bits + (opened_with_.parity == 'N' ? 0 : 1) + opened_with_.stop_bits;
  return Micros(static_cast<Micros::rep>(count) * bits * 1'000'000 / opened_with_.speed);
}

std::string FakeSerialPort::Describe() const {
  std::string text;
  for (const std::string& line : history_) text += line + "\n";
  return text;
}

void FakeSerialPort::Note(const std::string& what) {
  history_.push_back(TimeText(time_.now()) + " " + what);
}

}  // namespace tarnlink
