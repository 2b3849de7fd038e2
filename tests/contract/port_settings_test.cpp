#include <gtest/gtest.h>

#include "common/run_time_error.h"
#include "contract/loops.h"
#include "platform/port_devices.h"
#include "platform/port_settings.h"
#include "support/fake_port_devices.h"
#include "support/fake_settings_store.h"

namespace tarnlink {
namespace {

TEST(ParsePortSettings, TakesTheFormsOfTheOptionsAndOfTheTools) {
  const std::vector<std::pair<const char*, PortSettings>> cases{
      {" 9600,N,8, 1", {9600, 'N', 8, 1}}, {" 2400n,8,1", {2400, 'N', 8, 1}},
      {"9600,n,8,1", {9600, 'N', 8, 1}},   {" 1200,E,8, 2", {1200, 'E', 8, 2}},
      {"38400,o,7,2", {38400, 'O', 7, 2}}, {"  19200 , E , 8 , 1 ", {19200, 'E', 8, 1}},
      {"50,N,5,1", {50, 'N', 5, 1}},       {"4000000,N,8,1", {4'000'000, 'N', 8, 1}},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(ParsePortSettings(text), expected) << text;
  }
}

TEST(ParsePortSettings, RefusesEverythingElse) {
  for (const char* text : {"",
                           " ",
                           "9600",
                           "9600,",
                           "9600,N",
                           "9600,N,",
                           "9600,N,8",
                           "9600,N,8,",
                           ",N,8,1",
                           "9600,,8,1",
                           "9600,N,,1",
                           "9600,N,8,1,",
                           "9600,N,8,1x",
                           "9600,N,8,1.5",
                           "9600,N,8,0",
                           "9600,N,8,3",
                           "9600,N,4,1",
                           "9600,N,9,1",
                           "9600,M,8,1",
                           "9600,S,8,1",
                           "9600,NN,8,1",
                           "9600,.,8,1",
                           "0,N,8,1",
                           "-9600,N,8,1",
                           "+9600,N,8,1",
                           "49,N,8,1",
                           "4000001,N,8,1",
                           "99999999999,N,8,1",
                           "9600.0,N,8,1",
                           "9600;N;8;1",
                           "N,9600,8,1",
                           "COM1: 9600,N,8,1",
                           "9600,,N,8,1",
                           "9 600,N,8,1",
                           "9600\tN,8,1"}) {
    EXPECT_EQ(ErrorOf([&] { ParsePortSettings(text); }), kTypeMismatch) << text;
  }
}

TEST(ParsePortSettings, NamesTheTextThatItRefuses) {
  EXPECT_EQ(ReasonOf([] { ParsePortSettings("9600,X,8,1"); }),
            "\"9600,X,8,1\" are no settings of a serial port.");
  EXPECT_LT(ReasonOf([] { ParsePortSettings(std::string(100'000, 'x')); }).size(), 300U);
}

class DevicePathTest : public testing::Test {
 protected:
  std::string PathOf(int number) { return DevicePath(number, settings, devices); }

  VirtualTime time;
  FakeSettingsStore settings;
  FakePortDevices devices{time};
};

TEST_F(DevicePathTest, WithoutAnEntryCountsThroughThePresentDevices) {
  EXPECT_EQ(PathOf(1), "");
  devices.PlugIn({"/dev/ttyS0", "", "", ""});
  devices.PlugIn({"/dev/ttyUSB0", "/dev/serial/by-id/usb", "Adapter", "Maker"});
  EXPECT_EQ(PathOf(1), "/dev/ttyS0");
  EXPECT_EQ(PathOf(2), "/dev/ttyUSB0");
  EXPECT_EQ(PathOf(3), "");
}

TEST_F(DevicePathTest, AnEntryOfTheStoreWins) {
  devices.PlugIn({"/dev/ttyS0", "", "", ""});
  SaveDevicePath(1, "/dev/pts/4", settings);
  SaveDevicePath(16, "/dev/ttyACM0", settings);
  EXPECT_EQ(PathOf(1), "/dev/pts/4");
  EXPECT_EQ(PathOf(16), "/dev/ttyACM0");
  EXPECT_EQ(settings.Describe(), "Ports/COM1=/dev/pts/4\nPorts/COM16=/dev/ttyACM0\n");
}

TEST_F(DevicePathTest, AnEmptyEntryLetsTheNumberCountAgain) {
  devices.PlugIn({"/dev/ttyS0", "", "", ""});
  SaveDevicePath(1, "/dev/pts/4", settings);
  SaveDevicePath(1, "", settings);
  EXPECT_EQ(PathOf(1), "/dev/ttyS0");
}

TEST_F(DevicePathTest, OtherNumbersHaveNoDevice) {
  devices.PlugIn({"/dev/ttyS0", "", "", ""});
  settings.SaveSetting("Ports", "COM17", "/dev/ttyS1");
  settings.SaveSetting("Ports", "COM0", "/dev/ttyS1");
  for (const int number : {-1, 0, 17, 1000}) EXPECT_EQ(PathOf(number), "") << number;
}

TEST(DescribeDevice, IsPathDescriptionAndMakerAsFarAsKnown) {
  EXPECT_EQ(Describe({"/dev/ttyUSB0", "/x", "Adapter", "Maker"}), "/dev/ttyUSB0, Adapter, Maker");
  EXPECT_EQ(Describe({"/dev/ttyUSB0", "", "", "Maker"}), "/dev/ttyUSB0, Maker");
  EXPECT_EQ(Describe({"/dev/ttyS0", "", "", ""}), "/dev/ttyS0");
}

}  // namespace
}  // namespace tarnlink
