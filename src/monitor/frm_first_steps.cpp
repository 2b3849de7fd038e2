#include "monitor/frm_first_steps.h"

#include <algorithm>

#include "common/numbers.h"
#include "common/paths.h"

namespace tarnlink {
namespace {

constexpr int kLook = 1000;     // ms
constexpr int kLookSoon = 100;  // while the boiler is starting
constexpr const char* kStart = "Start the simulated boiler";
constexpr const char* kStop = "Stop the simulated boiler";

// What the port had before the boiler took it, as long as it has it.
constexpr const char* kBoilerSection = "SimulatedBoiler";
constexpr const char* kPort = "Port";
constexpr const char* kDevice = "Device";
constexpr const char* kFormer = "FormerDevice";

}  // namespace

frm_FirstSteps::frm_FirstSteps(frm_Main& main, frm_Options& options, FirstStepsHost host)
    : main_(main),
      options_(options),
      host_(std::move(host)),
      later_(main.platform().CreateTimer()) {
  form.Visible = false;
  cmdUse.Click = [this] { UseDevice(); };
  cmdBoiler.Click = [this] { StartOrStopBoiler(); };
  cmdSample.Click = [this] { OpenSample(); };
  RestoreFormerDevice();
  later_->SetOnTimer([this] { Look(); });
  later_->SetInterval(kLook);
  later_->SetEnabled(true);
}

frm_FirstSteps::~frm_FirstSteps() { StopBoiler(); }

void frm_FirstSteps::Look() {
  FollowBoiler();
  // A look at the devices costs something: only when there is somebody to be told.
  const bool is_empty = ScreenIsEmpty();
  if (!is_empty || options_.form.Visible) {
    is_asked_for_ = is_asked_for_ && is_empty;
    form.Visible = false;
    return;
  }
  const int number = PortNumber();
  const std::string path =
      DevicePath(number, main_.platform().settings(), main_.platform().devices());
  const std::string refusal = host_.WhyUnusable(number, path);
  is_asked_for_ = is_asked_for_ || !refusal.empty() || boiler_ != nullptr;
  cmdBoiler.Caption = boiler_ ? kStop : kStart;
  lblPort.Caption = PortText(number, path, refusal);
  OfferDevices();
  form.Visible = is_asked_for_;
}

int frm_FirstSteps::PortNumber() const {
  return ValInt(options_.ComPortNumber.Text.get(), kFirstPort, kLastPort);
}

bool frm_FirstSteps::ScreenIsEmpty() const {
  for (int i = 1; i <= main_.MaxId; ++i) {
    if (main_.IsShown(i)) return false;
  }
  for (int i = 1; i <= main_.TextInfoCount; ++i) {
    if (main_.lbl_TextInfo.Has(i) && main_.lbl_TextInfo(i).Visible) return false;
  }
  return true;
}

std::string frm_FirstSteps::PortText(int number, const std::string& path,
                                     const std::string& refusal) const {
  if (boiler_ && boiler_device_.empty()) return "The simulated boiler is starting...";
  const std::string port = "COM" + std::to_string(number);
  if (boiler_ && path == boiler_device_) {
    return "The simulated boiler answers on " + port +
           ". Open the sample project, then press \"Start Communication\".";
  }
  const std::string boiler =
      boiler_ ? "The simulated boiler is not on " + port + ". " : boiler_end_;
  if (!refusal.empty()) return boiler + refusal;
  return boiler + port + " can be used: " + path +
         ". Choose the controller's protocol under File, Options, open a screen or add Locations, "
         "then press \"Start Communication\".";
}

// --- A device ------------------------------------------------------------------------------------

void frm_FirstSteps::OfferDevices() {
  std::vector<ComboBox::Item> rows;
  std::vector<std::string> paths;
  for (const PortDevice& device : main_.platform().devices().Present()) {
    rows.push_back({Describe(device)});
    paths.push_back(device.stable_path.empty() ? device.path : device.stable_path);
  }
  if (paths != offered_ || cmbDevices.ListIndex < 0) {
    offered_ = paths;
    cmbDevices.List = rows;
    cmbDevices.Select(rows.empty() ? -1 : 0);
    if (rows.empty()) cmbDevices.Text = "No serial device is plugged in";
  }
  cmbDevices.Enabled = !rows.empty();
  cmdUse.Enabled = !rows.empty();
}

void frm_FirstSteps::UseDevice() {
  const auto row = static_cast<std::size_t>(std::max(0, cmbDevices.ListIndex.get()));
  if (row >= offered_.size()) return;
  StopBoiler();
  boiler_end_.clear();
  SaveDevicePath(PortNumber(), offered_[row], main_.platform().settings());
  main_.TellStoreFailure();
  Look();
}

// --- The simulated boiler ------------------------------------------------------------------------

void frm_FirstSteps::StartOrStopBoiler() {
  boiler_end_.clear();
  if (boiler_) {
    StopBoiler();
  } else {
    boiler_ = host_.StartBoiler();
    later_->SetInterval(kLookSoon);
  }
  Look();
}

// Takes its device for the port as soon as that is there, and notices its end.
void frm_FirstSteps::FollowBoiler() {
  if (!boiler_) return;
  if (!boiler_->IsRunning()) {
    boiler_end_ = boiler_device_.empty() ? "The simulated boiler could not be started. "
                                         : "The simulated boiler has ended. ";
    StopBoiler();
    return;
  }
  if (!boiler_device_.empty() || boiler_->Device().empty()) return;
  boiler_device_ = boiler_->Device();
  boiler_port_ = PortNumber();
  SettingsStore& settings = main_.platform().settings();
  former_device_ = settings.GetSetting("Ports", "COM" + std::to_string(boiler_port_), "");
  KeepFormer(std::to_string(boiler_port_), boiler_device_, former_device_);
  SaveDevicePath(boiler_port_, boiler_device_, settings);
  later_->SetInterval(kLook);
}

// What the user has chosen for the port meanwhile stays.
void frm_FirstSteps::StopBoiler() {
  later_->SetInterval(kLook);
  if (!boiler_) return;
  boiler_.reset();
  SettingsStore& settings = main_.platform().settings();
  const std::string key = "COM" + std::to_string(boiler_port_);
  if (!boiler_device_.empty() && settings.GetSetting("Ports", key, "") == boiler_device_)
    SaveDevicePath(boiler_port_, former_device_, settings);
  KeepFormer("", "", "");
  boiler_device_.clear();
}

// A program that was killed beside its boiler could not do so. One that is still there belongs to a
// program that runs.
void frm_FirstSteps::RestoreFormerDevice() {
  SettingsStore& settings = main_.platform().settings();
  const std::string device = settings.GetSetting(kBoilerSection, kDevice, "");
  const int number = ValInt(settings.GetSetting(kBoilerSection, kPort, ""), kFirstPort, kLastPort);
  const std::string key = "COM" + std::to_string(number);
  if (device.empty() || settings.GetSetting("Ports", key, "") != device) return;
  if (host_.WhyUnusable(number, device).empty()) return;
  SaveDevicePath(number, settings.GetSetting(kBoilerSection, kFormer, ""), settings);
  KeepFormer("", "", "");
}

void frm_FirstSteps::KeepFormer(const std::string& port, const std::string& device,
                                const std::string& former) {
  SettingsStore& settings = main_.platform().settings();
  settings.SaveSetting(kBoilerSection, kPort, port);
  settings.SaveSetting(kBoilerSection, kDevice, device);
  settings.SaveSetting(kBoilerSection, kFormer, former);
}

// --- The sample project --------------------------------------------------------------------------

void frm_FirstSteps::OpenSample() {
  const std::string folder = JoinPath(main_.platform().files().DataFolder(), "samples");
  host_.OpenFiles({JoinPath(folder, "boiler.prj"), JoinPath(folder, "zolt.wcr")});
  Look();
}

}  // namespace tarnlink
