// What an empty screen says while no controller can be reached: why not, and the ways on - a
// device that is there, the simulated boiler, the sample project.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/controls.h"
#include "common/dialog_controls.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "platform/simulated_boiler.h"

namespace tarnlink {

// What it needs of the program.
struct FirstStepsHost {
  // Why a port with this device cannot be used; empty if it can. Opens nothing.
  std::function<std::string(int number, const std::string& path)> WhyUnusable;
  std::function<std::unique_ptr<SimulatedBoiler>()> StartBoiler;
  // As the files on the command line.
  std::function<void(const std::vector<std::string>& files)> OpenFiles;
};

class frm_FirstSteps {
 public:
  // Outlived by both. Looks by itself, every second. What a program that was killed beside its
  // boiler left in the settings is put right first.
  frm_FirstSteps(frm_Main& main, frm_Options& options, FirstStepsHost host);
  // Ends the simulated boiler, and gives the port number its former device back.
  ~frm_FirstSteps();

  // Visible while the screen is empty and the port of the options cannot be used, or is the
  // simulated boiler's. Then it stays for the step behind that, until there is something on the
  // screen.
  Control form{"frm_FirstSteps"};
  Label lblPort{"lblPort"};  // why not; or what to do next
  PickBox cmbDevices{"cmbDevices"};
  CommandButton cmdUse{"cmdUse", "Use this device"};
  CommandButton cmdBoiler{"cmdBoiler", "Start the simulated boiler"};
  CommandButton cmdSample{"cmdSample", "Open the sample project"};

  // Looks at screen, port and devices.
  void Look();

 private:
  int PortNumber() const;
  bool ScreenIsEmpty() const;
  void OfferDevices();
  void UseDevice();
  void StartOrStopBoiler();
  void FollowBoiler();
  void StopBoiler();
  std::string PortText(int number, const std::string& path, const std::string& refusal) const;
  // In the settings.
  void KeepFormer(const std::string& port, const std::string& device, const std::string& former);
  void RestoreFormerDevice();
  void OpenSample();

  frm_Main& main_;
  frm_Options& options_;
  FirstStepsHost host_;
  std::vector<std::string> offered_;  // a path for each row
  std::unique_ptr<SimulatedBoiler> boiler_;
  std::string boiler_device_;  // as the port has it; empty while it has another one
  int boiler_port_ = 0;
  std::string former_device_;
  std::string boiler_end_;     // what became of it by itself, for the text; empty if nothing
  bool is_asked_for_ = false;  // since the screen became empty
  std::unique_ptr<Timer> later_;
};

}  // namespace tarnlink
