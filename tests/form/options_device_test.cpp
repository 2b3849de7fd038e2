// The device beside the port number in the options dialog.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

const PortDevice kAdapter = {"/dev/ttyUSB0", "/dev/serial/by-id/usb-adapter-7", "USB adapter",
                             "Acme"};
const PortDevice kBoard = {"/dev/ttyS0", "", "", ""};
constexpr const char* kAdapterLine = "/dev/ttyUSB0, USB adapter, Acme";

class OptionsDevice : public DeskTest {
 protected:
  OptionsDevice() {
    // As the dialog's window does while it is shown.
    world.devices().Watch([this] { options().RefreshPortDevices(); });
  }

  void PlugIn(const PortDevice& device) {
    world.devices().PlugIn(device);
    world.Settle();
  }
  void PullOut(const PortDevice& device) {
    world.devices().PullOut(device.path);
    world.Settle();
  }
  // Starts with the adapter as the first device and the board as the second.
  void StartWithTwo() {
    StartProgram();
    PlugIn(kAdapter);
    PlugIn(kBoard);
  }
  std::string Shown() { return options().cmbPortDevice.Text; }
  std::vector<std::string> Offered() {
    std::vector<std::string> lines;
    for (const ComboBox::Item& item : options().cmbPortDevice.List.get())
      lines.push_back(item.text);
    return lines;
  }
  // The entries of section "Ports", one line each.
  std::string Ports() {
    std::string text;
    for (int number = 1; number <= 16; ++number) {
      const std::string key = "COM" + std::to_string(number);
      if (world.settings().Has("Ports", key)) text += key + "=" + Stored("Ports", key) + "\n";
    }
    return text;
  }
};

using Lines = std::vector<std::string>;

TEST_F(OptionsDevice, ANumberWithoutAnEntryShowsTheDeviceInThatPlace) {
  StartWithTwo();
  ShowOptions();
  EXPECT_EQ(Shown(), "/dev/ttyUSB0");
  options().opt_CommPort.Choose(1);
  EXPECT_EQ(Shown(), "/dev/ttyS0");
  options().opt_CommPort.Choose(2);
  EXPECT_EQ(Shown(), "");
  options().opt_CommPort.Choose(0);
  EXPECT_EQ(Shown(), "/dev/ttyUSB0");
}

TEST_F(OptionsDevice, ANumberWithAnEntryShowsThat) {
  Store("Ports", "COM1", "/dev/pts/4");
  Store("Ports", "COM9", "/dev/rfcomm0");
  StartWithTwo();
  ShowOptions();
  EXPECT_EQ(Shown(), "/dev/pts/4");
  options().opt_CommPort.Choose(4);
  options().ComPortNumber.Text = "9";
  EXPECT_EQ(Shown(), "/dev/rfcomm0");
  options().ComPortNumber.Text = "2";
  EXPECT_EQ(Shown(), "/dev/ttyS0");
  for (const std::string none : {"0", "17", "abc", ""}) {
    options().ComPortNumber.Text = none;
    EXPECT_EQ(Shown(), "") << none;
  }
}

TEST_F(OptionsDevice, OffersThePresentOnesWithDescriptionAndMaker) {
  StartWithTwo();
  ShowOptions();
  EXPECT_EQ(Offered(), (Lines{kAdapterLine, "/dev/ttyS0"}));
}

TEST_F(OptionsDevice, FollowsPluggingInAndOutWhileItIsShown) {
  StartProgram();
  ShowOptions();
  EXPECT_EQ(Offered(), Lines{});
  EXPECT_EQ(Shown(), "");
  PlugIn(kBoard);
  EXPECT_EQ(Offered(), Lines{"/dev/ttyS0"});
  EXPECT_EQ(Shown(), "/dev/ttyS0");
  PlugIn(kAdapter);
  EXPECT_EQ(Offered(), (Lines{"/dev/ttyS0", kAdapterLine}));
  PullOut(kBoard);
  EXPECT_EQ(Offered(), Lines{kAdapterLine});
  EXPECT_EQ(Shown(), "/dev/ttyUSB0");
  PullOut(kAdapter);
  EXPECT_EQ(Shown(), "");
}

TEST_F(OptionsDevice, KeepsTheEntryOfANumberWhoseDeviceIsPulledOut) {
  Store("Ports", "COM1", "/dev/serial/by-id/usb-adapter-7");
  StartWithTwo();
  ShowOptions();
  PullOut(kAdapter);
  EXPECT_EQ(Shown(), "/dev/serial/by-id/usb-adapter-7");
  Ok();
  EXPECT_EQ(Ports(), "COM1=/dev/serial/by-id/usb-adapter-7\n");
}

TEST_F(OptionsDevice, KeepsWhatTheUserTypesWhileDevicesComeAndGo) {
  StartProgram();
  ShowOptions();
  options().cmbPortDevice.Text = "/dev/pts/";
  PlugIn(kAdapter);
  EXPECT_EQ(Shown(), "/dev/pts/");
  PullOut(kAdapter);
  EXPECT_EQ(Shown(), "/dev/pts/");
}

TEST_F(OptionsDevice, APickedLineIsStoredAsThePathThatSurvivesReplugging) {
  StartWithTwo();
  ShowOptions();
  options().opt_CommPort.Choose(2);
  options().cmbPortDevice.Text = kAdapterLine;
  Ok();
  EXPECT_EQ(Ports(), "COM3=/dev/serial/by-id/usb-adapter-7\n");
  ShowOptions();
  EXPECT_EQ(Shown(), "/dev/serial/by-id/usb-adapter-7");
}

TEST_F(OptionsDevice, ThePathOfAPickedLineIsShownFromThenOn) {
  Store("Ports", "COM1", "/dev/ttyS0");
  StartWithTwo();
  ShowOptions();
  options().cmbPortDevice.Text = kAdapterLine;
  Ok();
  ShowOptions();
  EXPECT_EQ(Shown(), "/dev/serial/by-id/usb-adapter-7");
}

TEST_F(OptionsDevice, APickedLineWithoutAStablePathIsStoredAsItsPath) {
  StartWithTwo();
  ShowOptions();
  options().cmbPortDevice.Text = "/dev/ttyS0";
  Ok();
  EXPECT_EQ(Ports(), "COM1=/dev/ttyS0\n");
}

TEST_F(OptionsDevice, ATypedPathIsStoredForTheChosenNumber) {
  StartWithTwo();
  ShowOptions();
  options().opt_CommPort.Choose(4);
  options().ComPortNumber.Text = "11";
  options().cmbPortDevice.Text = "/tmp/boiler";
  Ok();
  EXPECT_EQ(Ports(), "COM11=/tmp/boiler\n");
}

TEST_F(OptionsDevice, AnUntouchedBoxStoresNothing) {
  StartWithTwo();
  for (const int button : {0, 1, 2}) {
    ShowOptions();
    options().opt_CommPort.Choose(button);
    Ok();
  }
  EXPECT_EQ(Ports(), "");
}

TEST_F(OptionsDevice, AnUntouchedBoxStoresNothingForADeviceThatHasOnlyItsPaths) {
  StartProgram();
  PlugIn({"/dev/ttyACM0", "/dev/serial/by-id/usb-bare-1", "", ""});
  ShowOptions();
  EXPECT_EQ(Shown(), "/dev/ttyACM0");
  Ok();
  EXPECT_EQ(Ports(), "");
}

TEST_F(OptionsDevice, TheSameOkTwiceStoresOnce) {
  StartWithTwo();
  ShowOptions();
  options().cmbPortDevice.Text = "/tmp/boiler";
  Ok();
  TakeNotes();
  Ok();
  EXPECT_EQ(TakeNotes().find("save Ports/"), std::string::npos);
}

TEST_F(OptionsDevice, AnEmptiedBoxLetsTheNumberCountAgain) {
  Store("Ports", "COM1", "/tmp/boiler");
  StartWithTwo();
  ShowOptions();
  options().cmbPortDevice.Text = "";
  Ok();
  ShowOptions();
  EXPECT_EQ(Shown(), "/dev/ttyUSB0");
}

TEST_F(OptionsDevice, ARefusedNumberStoresNoDeviceAndShowsThatOfSixteen) {
  Store("Ports", "COM16", "/tmp/sixteen");
  StartWithTwo();
  ShowOptions();
  options().opt_CommPort.Choose(4);
  options().ComPortNumber.Text = "17";
  options().cmbPortDevice.Text = "/tmp/boiler";
  ExpectPortError();
  Ok();
  EXPECT_EQ(Ports(), "COM16=/tmp/sixteen\n");
  EXPECT_EQ(Shown(), "/tmp/sixteen");
}

TEST_F(OptionsDevice, ATypedDeviceBelongsToItsNumberOnly) {
  StartWithTwo();
  ShowOptions();
  options().cmbPortDevice.Text = "/tmp/boiler";
  options().opt_CommPort.Choose(1);
  EXPECT_EQ(Shown(), "/dev/ttyS0");
  Ok();
  EXPECT_EQ(Ports(), "");
}

TEST_F(OptionsDevice, TypedAndCancelledTextIsNotStoredByOpeningAScreen) {
  StartWithTwo();
  ShowOptions();
  options().cmbPortDevice.Text = "/tmp/half typ";
  Cancel();
  OpenText(FileText({"255"}));
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(Ports(), "");
  ShowOptions();
  EXPECT_EQ(Shown(), "/dev/ttyUSB0");
}

TEST_F(OptionsDevice, TypedAndCancelledTextIsThereWhenTheDialogOpensAgain) {
  StartWithTwo();
  ShowOptions();
  options().cmbPortDevice.Text = "/tmp/boiler";
  Cancel();
  EXPECT_EQ(Ports(), "");
  ShowOptions();
  EXPECT_EQ(Shown(), "/tmp/boiler");
  Ok();
  EXPECT_EQ(Ports(), "COM1=/tmp/boiler\n");
}

TEST_F(OptionsDevice, TheLineOfTheDeviceThatTheNumberHasAlreadyStoresNothing) {
  Store("Ports", "COM1", "/dev/serial/by-id/usb-adapter-7");
  StartWithTwo();
  ShowOptions();
  options().cmbPortDevice.Text = kAdapterLine;
  TakeNotes();
  Ok();
  EXPECT_EQ(TakeNotes().find("save Ports/"), std::string::npos);
}

TEST_F(OptionsDevice, StartingAndOpeningScreensStoreNoDevice) {
  world.devices().PlugIn(kAdapter);
  StartProgram();
  world.Settle();
  OpenText(FileText({"255"}));
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(Ports(), "");
}

TEST_F(OptionsDevice, LeavingStoresNoTypedDevice) {
  StartWithTwo();
  ShowOptions();
  options().cmbPortDevice.Text = "/tmp/half typ";
  Exit();
  EXPECT_EQ(Ports(), "");
}

}  // namespace
}  // namespace tarnlink
