#include "modbus_bridge.h"

#include <poll.h>

#include <algorithm>
#include <chrono>

namespace e2e {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int kBitsOfAByte = 10;  // with start and stop bit

// Passes bytes on from one end to the other until it is stopped.
class Pump {
 public:
  Pump(LineEnd& from, LineEnd& to, std::atomic<int>& passed, int baud)
      : from_(from), to_(to), passed_(passed) {
    if (baud > 0) byte_time_ = std::chrono::nanoseconds(std::chrono::seconds(kBitsOfAByte)) / baud;
  }

  void operator()(const std::stop_token& stop) {
    constexpr std::size_t kPiece = 4096;
    constexpr int kSlice = 10;  // ms
    while (!stop.stop_requested()) {
      const std::string bytes = from_.ReceiveSome(kPiece, kSlice);
      passed_ += static_cast<int>(bytes.size());
      PassOn(bytes, stop);
    }
  }

 private:
  void PassOn(const std::string& bytes, const std::stop_token& stop) {
    if (byte_time_ == SteadyClock::duration::zero()) return to_.Send(bytes);
    free_at_ = std::max(free_at_, SteadyClock::now());
    for (const char byte : bytes) {
      free_at_ += byte_time_;
      while (SteadyClock::now() < free_at_) {
        if (stop.stop_requested()) return;
        poll(nullptr, 0, 1);
      }
      to_.Send({byte});
    }
  }

  LineEnd& from_;
  LineEnd& to_;
  std::atomic<int>& passed_;
  SteadyClock::duration byte_time_{};
  SteadyClock::time_point free_at_{};  // when the last byte has gone over the line
};

}  // namespace

LineBridge::LineBridge(int baud)
    : requests_(Pump(master_, slave_, asked_, baud)),
      answers_(Pump(slave_, master_, answered_, baud)) {}

}  // namespace e2e
