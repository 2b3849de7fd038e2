// The simulated boiler at the other end of the program's port, in virtual time.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>
#include <utility>

#include "simulator/simulated_boiler.h"
#include "support/fake_world.h"

namespace tarnlink {

class BoilerOnLine {
 public:
  // Without a sink the boiler's log is thrown away.
  BoilerOnLine(
      FakeWorld& world, const boiler::SimulatedBoiler::Options& options,
      boiler::LogSink log = [](const boiler::LogEntry&) {})
      : world_(world), boiler_(options, std::move(log)) {
    world_.on_output = [this](FakeSerialPort&, std::string_view bytes) {
      boiler_.line().Hear(Now(), bytes);
      Schedule();
    };
  }
  ~BoilerOnLine() {
    world_.on_output = nullptr;
    if (due_) world_.time().Cancel(*due_);
  }
  BoilerOnLine(const BoilerOnLine&) = delete;
  BoilerOnLine& operator=(const BoilerOnLine&) = delete;

  boiler::LineSimulator& line() { return boiler_.line(); }
  boiler::Controller& controller() { return boiler_.controller(); }

  // Nothing under way is left: the boiler is as it is after a new cable.
  void Calm() {
    line().ClearFaults();
    line().Cut(Now());
    Schedule();
  }

 private:
  std::int64_t Now() const { return world_.now().count(); }

  void Schedule() {
    if (due_) world_.time().Cancel(*due_);
    due_.reset();
    const auto next = line().NextDue();
    if (!next) return;
    due_ = world_.time().Post(Micros(*next - Now()), [this] {
      due_.reset();
      Deliver();
    });
  }

  void Deliver() {
    const std::string bytes = line().TakeDue(Now());
    if (!bytes.empty()) world_.port().Receive(bytes);
    if (const auto action = line().TakePortAction()) Pull(*action);
    Schedule();
  }

  void Pull(const boiler::PortAction& action) {
    world_.port().Unplug();
    if (action.then == boiler::PortAction::Then::kStayOut) return;
    world_.time().Post(Micros(action.after_us), [this] { world_.port().PlugIn(); });
  }

  FakeWorld& world_;
  boiler::SimulatedBoiler boiler_;
  std::optional<VirtualTime::EventId> due_;
};

}  // namespace tarnlink
