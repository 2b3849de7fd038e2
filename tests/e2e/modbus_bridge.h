// A serial line between two programs that each open a device: two pseudo terminals, and the bytes
// passed on between them.
#pragma once

#include <atomic>
#include <string>
#include <thread>

#include "line_end.h"

namespace e2e {

class LineBridge {
 public:
  // At `baud`, a byte takes the time of ten bits in either direction; 0 passes bytes on at once.
  explicit LineBridge(int baud);
  LineBridge(const LineBridge&) = delete;
  LineBridge& operator=(const LineBridge&) = delete;

  // The devices.
  const std::string& master_path() const { return master_.path(); }
  const std::string& slave_path() const { return slave_.path(); }

  // Bytes that master and slave have sent so far.
  int asked() const { return asked_; }
  int answered() const { return answered_; }

 private:
  LineEnd master_;
  LineEnd slave_;
  std::atomic<int> asked_ = 0;
  std::atomic<int> answered_ = 0;
  // They end before what they use.
  std::jthread requests_;
  std::jthread answers_;
};

}  // namespace e2e
