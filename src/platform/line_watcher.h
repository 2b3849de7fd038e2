// Hears what goes over the serial lines of the program, and does nothing to it.
#pragma once

#include <string_view>

namespace tarnlink {

class LineWatcher {
 public:
  virtual ~LineWatcher() = default;

  // None of these throws, closes a port or destroys one: they are called in the middle of a port's
  // own work.

  // A port has been handed these bytes for sending.
  virtual void BytesSent(std::string_view bytes) = 0;
  // These have come in on an open port, read by the program or not, in pieces of any length.
  virtual void BytesReceived(std::string_view bytes) = 0;
  // A port was closed, or has lost its device: nothing of what was under way comes any more.
  virtual void LineClosed() = 0;
};

}  // namespace tarnlink
