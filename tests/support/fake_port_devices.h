// Serial devices that a test plugs in and pulls out.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/port_devices.h"
#include "support/virtual_time.h"

namespace tarnlink {

class FakePortDevices final : public PortDevices {
 public:
  explicit FakePortDevices(VirtualTime& time) : time_(time) {}

  std::vector<PortDevice> Present() const override { return present_; }
  void Watch(std::function<void()> handler) override { handler_ = std::move(handler); }

  void PlugIn(PortDevice device) {
    present_.push_back(std::move(device));
    Tell();
  }
  void PullOut(const std::string& path) {
    std::erase_if(present_, [&](const PortDevice& device) { return device.path == path; });
    Tell();
  }
  bool watched() const { return static_cast<bool>(handler_); }

 private:
  void Tell() {
    time_.Post(Micros::zero(), [this] {
      const auto handler = handler_;
      if (handler) handler();
    });
  }

  VirtualTime& time_;
  std::vector<PortDevice> present_;
  std::function<void()> handler_;
};

}  // namespace tarnlink
