// The one rule of every line: a message goes out only when the one before is no longer under way.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "platform/line_watcher.h"
#include "support/fake_world.h"

namespace tarnlink {

// What ends a message: an answer from the line, or the program's own time for one. That the port is
// closed or opened anew does not, as some tools do for each message: the slave answers all the
// same.
struct EndOfMessage {
  // The bytes that an answer to this message has. When so many have come since it went out, it is
  // answered, whatever they are; fewer end nothing, nor does what had come before it.
  std::function<std::size_t(std::string_view message)> length;
  // How long the program waits for them.
  std::function<std::chrono::milliseconds()> wait;
  // Where the program takes a quiet line for the end of an answer that is too short: so long behind
  // its last byte, if it has at least so many. Elsewhere there is no such end.
  std::chrono::milliseconds pause{0};
  std::size_t shortest = 0;
  // Where the user stops and starts while a message is under way: it ends with the port's closing.
  bool ends_with_port = false;
};

// Of each protocol. `wait` is what the program's timer is set to.
EndOfMessage EndOfZolt(std::function<std::chrono::milliseconds()> wait);
EndOfMessage EndOfTarnlink(std::function<std::chrono::milliseconds()> wait);
EndOfMessage EndOfModbus(std::function<std::chrono::milliseconds()> wait);

// Hears the line itself, so that what the program reads, or how often, makes no difference.
class LineGuard final : public LineWatcher {
 public:
  // Goes before the world does.
  LineGuard(FakeWorld& world, FakeSerialPort& port, EndOfMessage end);
  ~LineGuard() override;
  LineGuard(const LineGuard&) = delete;
  LineGuard& operator=(const LineGuard&) = delete;

  long asked() const { return asked_; }
  // Messages that went out while the one before was under way, and what there is to say of the
  // first.
  long hurried() const { return hurried_; }
  const std::string& first_hurried() const { return first_hurried_; }

 private:
  void BytesSent(std::string_view bytes) override;
  void BytesReceived(std::string_view bytes) override;
  void LineClosed() override;
  bool IsUnderWay() const;

  FakeWorld& world_;
  FakeSerialPort& port_;
  EndOfMessage end_;
  std::string message_;  // sent last
  Micros sent_at_{};
  std::size_t came_ = 0;  // bytes, since then
  Micros came_at_{};      // the last of them
  long asked_ = 0;
  long hurried_ = 0;
  std::string first_hurried_;
};

}  // namespace tarnlink
