// What an empty screen says while no controller can be reached.

#include "monitor/frm_first_steps.h"

#include <gtest/gtest.h>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

const PortDevice kAdapter = {"/dev/ttyUSB0", "/dev/serial/by-id/usb-adapter-7", "USB adapter",
                             "Acme"};
const PortDevice kBoard = {"/dev/ttyS0", "", "", ""};
constexpr const char* kLink = "/run/boiler";
constexpr const char* kRunning =
    "The simulated boiler answers on COM1. Open the sample project, then press \"Start "
    "Communication\".";

// What a test does to the boiler from outside; it outlives it.
struct BoilerState {
  std::string device;
  bool runs = true;
  int ended = 0;
};

class FakeSimulatedBoiler final : public SimulatedBoiler {
 public:
  explicit FakeSimulatedBoiler(BoilerState& state) : state_(state) {}
  ~FakeSimulatedBoiler() override { ++state_.ended; }
  std::string Device() const override { return state_.device; }
  bool IsRunning() const override { return state_.runs; }

 private:
  BoilerState& state_;
};

class FirstSteps : public DeskTest {
 protected:
  void Begin() {
    StartProgram();
    steps = std::make_unique<frm_FirstSteps>(
        main(), options(),
        FirstStepsHost{
            .WhyUnusable =
                [this](int number, const std::string& path) {
                  return path == usable ? ""
                                        : "COM" + std::to_string(number) + " is not there: " + path;
                },
            .StartBoiler = [this] { return std::make_unique<FakeSimulatedBoiler>(boiler); },
            .OpenFiles = [this](const std::vector<std::string>& files) { opened = files; }});
    steps->Look();
  }
  std::vector<std::string> Offered() {
    std::vector<std::string> lines;
    for (const ComboBox::Item& item : steps->cmbDevices.List.get()) lines.push_back(item.text);
    return lines;
  }
  bool Shown() { return steps->form.Visible; }

  std::string usable = "none";
  BoilerState boiler;
  std::vector<std::string> opened;
  std::unique_ptr<frm_FirstSteps> steps;
};

using Lines = std::vector<std::string>;

TEST_F(FirstSteps, WithoutADeviceTheEmptyScreenSaysSo) {
  Begin();
  EXPECT_TRUE(Shown());
  EXPECT_EQ(steps->lblPort.Caption.get(), "COM1 is not there: ");
  EXPECT_EQ(Offered(), Lines());
  EXPECT_EQ(steps->cmbDevices.Text.get(), "No serial device is plugged in");
  EXPECT_FALSE(steps->cmdUse.Enabled);
}

TEST_F(FirstSteps, APortThatCanBeUsedNeedsNone) {
  Store("Ports", "COM1", "/dev/ttyS7");
  usable = "/dev/ttyS7";
  Begin();
  EXPECT_FALSE(Shown());
}

TEST_F(FirstSteps, AScreenThatHoldsAnythingIsLeftAlone) {
  Begin();
  main().Toolbar1(1).Press();
  steps->Look();
  EXPECT_FALSE(Shown());
  main().RAM_LOC_TEXT(1).Visible = false;  // as one that was deleted
  steps->Look();
  EXPECT_TRUE(Shown());
  main().Toolbar1(4).Press();  // a text
  steps->Look();
  EXPECT_FALSE(Shown());
}

TEST_F(FirstSteps, ADeviceThatIsPluggedInIsOfferedWithinASecond) {
  Begin();
  world.devices().PlugIn(kBoard);
  world.devices().PlugIn(kAdapter);
  world.Advance(std::chrono::milliseconds(1000));
  EXPECT_EQ(Offered(), (Lines{"/dev/ttyS0", "/dev/ttyUSB0, USB adapter, Acme"}));
  EXPECT_TRUE(steps->cmdUse.Enabled);
}

TEST_F(FirstSteps, APickedDeviceStaysPickedWhileItIsThere) {
  Begin();
  world.devices().PlugIn(kBoard);
  world.devices().PlugIn(kAdapter);
  steps->Look();
  EXPECT_EQ(steps->cmbDevices.ListIndex, 0);
  steps->cmbDevices.Pick(1);
  steps->Look();
  EXPECT_EQ(steps->cmbDevices.ListIndex, 1);
}

TEST_F(FirstSteps, TheChosenDeviceIsTakenByItsStableName) {
  Store("Ports", "COM1", "/dev/gone");
  Begin();
  world.devices().PlugIn(kBoard);
  world.devices().PlugIn(kAdapter);
  steps->Look();
  steps->cmbDevices.Pick(1);
  usable = kAdapter.stable_path;
  steps->cmdUse.Press();
  EXPECT_EQ(Stored("Ports", "COM1"), kAdapter.stable_path);
}

TEST_F(FirstSteps, BehindTheDeviceComesTheScreen) {
  Begin();
  usable = "/dev/ttyS7";
  Store("Ports", "COM1", "/dev/ttyS7");
  steps->Look();
  EXPECT_TRUE(Shown());
  EXPECT_EQ(steps->lblPort.Caption.get(),
            "COM1 can be used: /dev/ttyS7. Choose the controller's protocol under File, Options, "
            "open a screen or add Locations, then press \"Start Communication\".");
  main().Toolbar1(1).Press();
  steps->Look();
  EXPECT_FALSE(Shown());
  main().RAM_LOC_TEXT(1).Visible = false;  // as one that was deleted
  steps->Look();
  EXPECT_FALSE(Shown()) << "Who has come so far knows the way.";
}

TEST_F(FirstSteps, ADeviceThatMayNotBeUsedSaysWhy) {
  Begin();
  world.devices().PlugIn(kBoard);
  steps->Look();
  steps->cmdUse.Press();
  EXPECT_TRUE(Shown());
  EXPECT_EQ(steps->lblPort.Caption.get(), "COM1 is not there: /dev/ttyS0");
}

TEST_F(FirstSteps, TheSimulatedBoilerTakesThePort) {
  Begin();
  steps->cmdBoiler.Press();
  EXPECT_EQ(steps->lblPort.Caption.get(), "The simulated boiler is starting...");
  EXPECT_EQ(steps->cmdBoiler.Caption.get(), "Stop the simulated boiler");
  boiler.device = kLink;
  usable = kLink;
  world.Advance(std::chrono::milliseconds(100));
  EXPECT_EQ(steps->lblPort.Caption.get(), kRunning);
  EXPECT_EQ(Stored("Ports", "COM1"), kLink);
  EXPECT_TRUE(Shown());
}

TEST_F(FirstSteps, StoppedItGivesTheFormerDeviceBack) {
  Store("Ports", "COM1", "/dev/gone");
  Begin();
  boiler.device = kLink;
  steps->cmdBoiler.Press();
  EXPECT_EQ(Stored("Ports", "COM1"), kLink);
  steps->cmdBoiler.Press();
  EXPECT_EQ(boiler.ended, 1);
  EXPECT_EQ(Stored("Ports", "COM1"), "/dev/gone");
  EXPECT_EQ(steps->lblPort.Caption.get(), "COM1 is not there: /dev/gone");
  EXPECT_EQ(steps->cmdBoiler.Caption.get(), "Start the simulated boiler");
}

TEST_F(FirstSteps, TheEndOfTheProgramGivesItBackToo) {
  Begin();
  boiler.device = kLink;
  steps->cmdBoiler.Press();
  EXPECT_EQ(Stored("Ports", "COM1"), kLink);
  steps.reset();
  EXPECT_EQ(boiler.ended, 1);
  EXPECT_EQ(Stored("Ports", "COM1"), "");
}

TEST_F(FirstSteps, AnotherDeviceThatWasChosenMeanwhileStays) {
  Begin();
  boiler.device = kLink;
  steps->cmdBoiler.Press();
  Store("Ports", "COM1", "/dev/ttyS3");
  steps.reset();
  EXPECT_EQ(Stored("Ports", "COM1"), "/dev/ttyS3");
}

TEST_F(FirstSteps, ABoilerThatEndsByItselfIsTold) {
  Begin();
  boiler.runs = false;
  steps->cmdBoiler.Press();
  EXPECT_EQ(steps->lblPort.Caption.get(),
            "The simulated boiler could not be started. COM1 is not there: ");
  EXPECT_EQ(boiler.ended, 1);
  boiler.runs = true;
  boiler.device = kLink;
  usable = kLink;
  steps->cmdBoiler.Press();
  EXPECT_EQ(steps->lblPort.Caption.get(), kRunning);
}

TEST_F(FirstSteps, WhatBecameOfTheBoilerIsNotSaidOfADeviceThatIsChosenThen) {
  Begin();
  world.devices().PlugIn(kBoard);
  boiler.device = kLink;
  usable = kLink;
  steps->cmdBoiler.Press();
  boiler.runs = false;
  steps->Look();
  EXPECT_EQ(steps->lblPort.Caption.get(),
            "The simulated boiler has ended. COM1 is not there: /dev/ttyS0");
  usable = kBoard.path;
  steps->cmdUse.Press();
  EXPECT_EQ(steps->lblPort.Caption.get().substr(0, 30), "COM1 can be used: /dev/ttyS0. ");
}

TEST_F(FirstSteps, ABoilerOnAnotherPortThanTheOptionsIsToldToBeThere) {
  Begin();
  boiler.device = kLink;
  usable = kLink;
  steps->cmdBoiler.Press();
  options().ComPortNumber.Text = "2";
  steps->Look();
  EXPECT_EQ(steps->lblPort.Caption.get(),
            "The simulated boiler is not on COM2. COM2 is not there: ");
  options().ComPortNumber.Text = "1";
  Store("Ports", "COM1", "/dev/ttyS7");
  usable = "/dev/ttyS7";
  steps->Look();
  EXPECT_EQ(steps->lblPort.Caption.get().substr(0, 67),
            "The simulated boiler is not on COM1. COM1 can be used: /dev/ttyS7. ");
}

class FirstStepsBehindAKill : public FirstSteps {
 protected:
  // What stands in the settings when the program is killed beside its boiler.
  void LeaveSettings() {
    Store("Ports", "COM1", kLink);
    Store("SimulatedBoiler", "Port", "1");
    Store("SimulatedBoiler", "Device", kLink);
    Store("SimulatedBoiler", "FormerDevice", "/dev/ttyS7");
  }
};

TEST_F(FirstSteps, WhatThePortHadBeforeIsKeptForTheCaseOfAKill) {
  Store("Ports", "COM1", "/dev/ttyS7");
  Begin();
  boiler.device = kLink;
  steps->cmdBoiler.Press();
  EXPECT_EQ(Stored("SimulatedBoiler", "Port"), "1");
  EXPECT_EQ(Stored("SimulatedBoiler", "Device"), kLink);
  EXPECT_EQ(Stored("SimulatedBoiler", "FormerDevice"), "/dev/ttyS7");
  steps.reset();
  EXPECT_EQ(Stored("SimulatedBoiler", "Device"), "");
}

TEST_F(FirstStepsBehindAKill, TheFormerDeviceComesBack) {
  LeaveSettings();
  usable = "/dev/ttyS7";
  Begin();
  EXPECT_EQ(Stored("Ports", "COM1"), "/dev/ttyS7");
  EXPECT_EQ(Stored("SimulatedBoiler", "Device"), "");
  EXPECT_FALSE(Shown());
}

TEST_F(FirstStepsBehindAKill, ABoilerThatIsStillThereIsSomebodyElses) {
  LeaveSettings();
  usable = kLink;
  Begin();
  EXPECT_EQ(Stored("Ports", "COM1"), kLink);
}

TEST_F(FirstStepsBehindAKill, ADeviceThatWasChosenSinceStays) {
  LeaveSettings();
  Store("Ports", "COM1", "/dev/ttyS3");
  Begin();
  EXPECT_EQ(Stored("Ports", "COM1"), "/dev/ttyS3");
}

TEST_F(FirstSteps, TheSampleProjectIsOpenedWithAScreen) {
  Begin();
  steps->cmdSample.Press();
  const std::string folder = world.files().DataFolder() + "/samples/";
  EXPECT_EQ(opened, (Lines{folder + "boiler.prj", folder + "zolt.wcr"}));
}

// The dialog shows a number that is not the port's yet.
TEST_F(FirstSteps, WhileTheOptionsAreOpenItKeepsQuiet) {
  Begin();
  ShowOptions();
  steps->Look();
  EXPECT_FALSE(Shown());
}

}  // namespace
}  // namespace tarnlink
