// What the targets of the monitor's forms have in common: the monitor as the program starts it, and
// a user of those of its parts that a target names.
#pragma once

#include <string>
#include <vector>

#include "fuzz/claim.h"
#include "fuzz/forms/answers.h"
#include "fuzz/forms/form_driver.h"
#include "monitor/monitor.h"
#include "support/fake_world.h"

namespace tarnlink {

class MonitorUser {
 public:
  // Ends with a time-out of one second, so that it is met.
  MonitorUser(FuzzInput& input, int protocol, FormDriver::Answerer slave = AnySlave);

  // An empty screen gets 1 to `most` Locations of the protocol.
  void Screen(int most);
  // A Location of the screen; 0 if there is none.
  int AnyLocation();

  // --- What is within reach ---

  void AddRun();
  void AddWriteDialogs();
  void AddMultipleRegisters();
  void AddOptions();
  void AddSettings();
  void AddEditing();

  void Run();

  FakeWorld world;
  Monitor monitor;
  FormDriver driver;

 private:
  void Check();
  void Leave();

  FuzzInput& input_;
  int protocol_;
};

}  // namespace tarnlink
