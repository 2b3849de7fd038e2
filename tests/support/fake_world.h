// The outside world of a test: every fake in one place, and the time that they share. It has to
// outlive the form models that were given it.
//
//   FakeWorld world;
//   CommunicationRun run(world, ...);
//   world.port().ReceiveIn(12ms, Bytes("06 41"));
//   world.dialogs().ExpectMessageBox("Slave is not responding", "Message Timeout");
//   world.Advance(3s);
//   EXPECT_EQ(world.port().TakeSentHex(), "04 05 30 31\n");
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "support/breaking.h"
#include "support/fake_clock.h"
#include "support/fake_dialogs.h"
#include "support/fake_files.h"
#include "support/fake_locale.h"
#include "support/fake_port_devices.h"
#include "support/fake_serial_port.h"
#include "support/fake_settings_store.h"
#include "support/fake_shell.h"
#include "support/fake_timer.h"
#include "support/fake_workbook.h"
#include "support/fault_plan.h"
#include "support/recording_surface.h"
#include "support/virtual_time.h"

namespace tarnlink {

class FakeWorld final : public Platform {
 public:
  // Moves virtual time on; timers, port events and the far end run as they fall due.
  void Advance(Micros span) { time_.Advance(span); }
  // Runs what is due now.
  void Settle() { time_.Settle(); }
  // Moves on until `condition` holds, at most by `bound`. Returns whether it holds.
  bool RunUntil(const std::function<bool()>& condition, Micros bound) {
    return time_.RunUntil(condition, bound);
  }
  Micros now() const { return time_.now(); }
  VirtualTime& time() { return time_; }

  // The ports that the program has created, in that order; they can be asked after the program has
  // destroyed them. `port()` is the one that is open, or else the one created last.
  FakeSerialPort& port(int index) { return *ports_.at(static_cast<std::size_t>(index)); }
  FakeSerialPort& port();
  int port_count() const { return static_cast<int>(ports_.size()); }
  // The far end of every port, also of those to come: called inside each Output.
  std::function<void(FakeSerialPort& port, std::string_view bytes)> on_output;

  // Pages that were printed or are being printed: the operations of each.
  const std::vector<std::shared_ptr<RecordingSurface::Log>>& pages() const { return pages_; }
  const std::vector<PageSetup>& page_setups() const { return page_setups_; }

  // Breaks calls of files and ports; see FaultPlan for the names.
  FaultPlan& faults() { return faults_; }
  // The disk behind `files()`.
  FakeFiles& disk() { return disk_; }
  const FakeFiles& disk() const { return disk_; }

  std::unique_ptr<SerialPort> CreatePort() override;
  std::unique_ptr<Timer> CreateTimer() override { return std::make_unique<FakeTimer>(time_); }
  std::unique_ptr<DrawingSurface> CreatePage(const PageSetup& setup) override;
  std::unique_ptr<Workbook> CreateWorkbook(const std::string& path) override {
    return std::make_unique<FakeWorkbook>(path, files_, time_);
  }
  FakeClock& clock() override { return clock_; }
  FakeLocale& locale() override { return locale_; }
  FakeSettingsStore& settings() override { return settings_; }
  FakeDialogs& dialogs() override { return dialogs_; }
  FakeShell& shell() override { return shell_; }
  BreakingFiles& files() override { return files_; }
  FakePortDevices& devices() override { return devices_; }

 private:
  FaultPlan faults_;
  VirtualTime time_;
  FakeClock clock_{time_};
  FakeLocale locale_;
  FakeSettingsStore settings_;
  FakeDialogs dialogs_{time_};
  FakeShell shell_;
  FakeFiles disk_;
  BreakingFiles files_{disk_, faults_};
  FakePortDevices devices_{time_};
  PortRack rack_;
  std::vector<std::unique_ptr<FakeSerialPort>> ports_;
  std::vector<std::shared_ptr<RecordingSurface::Log>> pages_;
  std::vector<PageSetup> page_setups_;
};

}  // namespace tarnlink
