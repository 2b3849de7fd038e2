// An outside world with somebody who hears what goes over all of its serial lines.
#pragma once

#include "platform/forwarding_platform.h"
#include "platform/line_watcher.h"

namespace tarnlink {

class WatchedPlatform final : public ForwardingPlatform {
 public:
  // Both outlive this and the ports that it makes.
  WatchedPlatform(Platform& world, LineWatcher& watcher)
      : ForwardingPlatform(world), watcher_(watcher) {}

  std::unique_ptr<SerialPort> CreatePort() override {
    auto port = world().CreatePort();
    port->SetWatcher(&watcher_);
    return port;
  }

 private:
  LineWatcher& watcher_;
};

}  // namespace tarnlink
