// What the long runs under faults have in common, whatever the protocol: a boiler that makes the
// faults, a user who writes now and then and plugs the cable in again, and the look at the run's
// state after every few milliseconds.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "form/boiler_on_line.h"
#include "form/monitor_fixture.h"

namespace tarnlink {

// Of each protocol.
inline constexpr std::size_t kAllExchanges = 100'000;

// How often each of so many runs exchanges for all of them together to come to that number.
constexpr std::size_t ExchangesPerRun(std::size_t runs) { return kAllExchanges / runs + 1; }

// The number of a Location's address or register.
std::uint16_t NumberOf(const Location& location);

// What is allowed in the name of a test, of any text.
std::string TestNameOf(std::string_view text);

// Each fault that the protocol can have must be in one of the lists.
void ExpectAllThatFit(std::string_view protocol,
                      const std::vector<std::vector<std::string>>& lists);

class FaultRunTest : public MonitorTest {
 protected:
  explicit FaultRunTest(
      const boiler::SimulatedBoiler::Options& options,
      boiler::LogSink log = [](const boiler::LogEntry&) {})
      : boiler(world, options, std::move(log)) {}

  // As many requests as asked for go out; the user writes a value now and then.
  void Exchange(std::size_t count);

  // Whether this is a moment at which the user writes, and what is then written. `turn` grows.
  virtual bool MayWrite() const { return monitor.main.CommRunning; }
  virtual void WriteSomething(std::size_t turn) = 0;

  // Fails the test unless the run stands in one of its states.
  void CheckState();
  virtual const std::vector<std::string>& RunningStates() const = 0;
  virtual const std::vector<std::string>& StoppedStates() const = 0;
  // Whether a value box can say this.
  virtual bool IsShown(const std::string& text) const;

  std::size_t Requests() { return world.port().frames().size(); }

  void Restart();
  // From now on the user closes each box about a lost port, by turns at once and after a while,
  // plugs the cable in and starts anew.
  void RestartAfterEachLoss();
  // The box that is expected still comes, and that is the end.
  void EndInLoss();
  Micros BoxTime() const;

  static constexpr std::size_t kUsualWritePeriod = 7;
  std::size_t write_period = kUsualWritePeriod;  // requests from one write of the user to the next
  int longest_gap = 20'000;                      // milliseconds from one request to the next
  int lowest_pointer = 0;                        // that `MsgPointer` may come to
  int silences = 0;
  int losses = 0;
  bool ending = false;  // no box is expected any more
  BoilerOnLine boiler;

 private:
  void ExpectProgress();
  int Step() const;

  std::size_t requests_seen_ = 0;
  long progress_at_ = 0;
};

}  // namespace tarnlink
