#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "contract/loops.h"
#include "contract/machine.h"
#include "platform/qt/qt_port_devices.h"
#include "platform/qt/qt_shell.h"
#include "support/temporary_folder.h"

namespace tarnlink {
namespace {

namespace fs = std::filesystem;

class FakeDevicesBench : public VirtualLoop {
 public:
  PortDevices& devices() { return world().devices(); }
  void PlugIn(const std::string& name) { devices_().PlugIn({name, "", "Adapter", "Maker"}); }
  void PullOut(const std::string& name) { devices_().PullOut(name); }

 private:
  FakePortDevices& devices_() { return world().devices(); }
};

// The real class over a folder that stands for /dev.
class QtDevicesBench : public QtLoop {
 public:
  PortDevices& devices() { return devices_; }
  void PlugIn(const std::string& name) {
    present_.push_back({name, "", "Adapter", "Maker"});
    std::ofstream(folder_ / name) << "x";
  }
  void PullOut(const std::string& name) {
    std::erase_if(present_, [&](const PortDevice& device) { return device.path == name; });
    fs::remove(folder_ / name);
  }
  std::vector<PortDevice>& present() { return present_; }
  const TemporaryFolder& folder() const { return folder_; }

 private:
  TemporaryFolder folder_;
  std::vector<PortDevice> present_;
  QtPortDevices devices_{[this] { return present_; }, QString::fromStdString(folder_.path())};
};

template <class Bench>
class PortDevicesContract : public testing::Test {
 protected:
  void Watch() {
    bench.devices().Watch([this] { ++changes; });
  }
  std::vector<std::string> Paths() {
    std::vector<std::string> paths;
    for (const PortDevice& device : bench.devices().Present()) paths.push_back(device.path);
    return paths;
  }

  Bench bench;
  int changes = 0;
};

using Benches = testing::Types<FakeDevicesBench, QtDevicesBench>;
TYPED_TEST_SUITE(PortDevicesContract, Benches, BenchNames);

TYPED_TEST(PortDevicesContract, ListsTheDevicesInTheSystemsOrder) {
  EXPECT_TRUE(this->Paths().empty());
  this->bench.PlugIn("ttyUSB1");
  this->bench.PlugIn("ttyUSB0");
  EXPECT_EQ(this->Paths(), (std::vector<std::string>{"ttyUSB1", "ttyUSB0"}));
}

TYPED_TEST(PortDevicesContract, TellsOfPluggingInAndOut) {
  this->Watch();
  this->bench.PlugIn("ttyUSB0");
  EXPECT_EQ(this->changes, 0) << "only through the event loop";
  EXPECT_TRUE(this->bench.RunUntil([&] { return this->changes == 1; }));
  this->bench.PullOut("ttyUSB0");
  EXPECT_TRUE(this->bench.RunUntil([&] { return this->changes == 2; }));
}

TYPED_TEST(PortDevicesContract, IsSilentWithoutAHandler) {
  this->Watch();
  this->bench.devices().Watch({});
  this->bench.PlugIn("ttyUSB0");
  this->bench.RunFor(50ms);
  EXPECT_EQ(this->changes, 0);
}

TYPED_TEST(PortDevicesContract, AHandlerMayStopTheWatch) {
  this->bench.devices().Watch([this] {
    ++this->changes;
    this->bench.devices().Watch({});
  });
  this->bench.PlugIn("ttyUSB0");
  EXPECT_TRUE(this->bench.RunUntil([&] { return this->changes == 1; }));
  this->bench.PullOut("ttyUSB0");
  this->bench.RunFor(50ms);
  EXPECT_EQ(this->changes, 1);
}

TYPED_TEST(PortDevicesContract, TheWatchCanBeTakenUpAgain) {
  this->Watch();
  this->bench.devices().Watch({});
  this->bench.PlugIn("ttyUSB0");
  this->bench.RunFor(50ms);
  this->Watch();
  this->bench.PlugIn("ttyUSB1");
  EXPECT_TRUE(this->bench.RunUntil([&] { return this->changes == 1; }));
}

TEST(QtPortDevices, GivesTheStableLinkOfADevice) {
  QtDevicesBench bench;
  fs::create_directories(bench.folder() / "serial/by-id");
  bench.PlugIn(bench.folder() / "ttyUSB0");
  std::ofstream(bench.folder() / "ttyUSB0") << "x";
  fs::create_symlink("../../ttyUSB0", bench.folder() / "serial/by-id/usb-Maker_Adapter");
  const std::vector<PortDevice> expected{{bench.folder() / "ttyUSB0",
                                          bench.folder() / "serial/by-id/usb-Maker_Adapter",
                                          "Adapter", "Maker"}};
  EXPECT_EQ(bench.devices().Present(), expected);
}

TEST(QtPortDevices, NoticesAStableLinkThatComesAfterTheDevice) {
  QtDevicesBench bench;
  bench.PlugIn(bench.folder() / "ttyUSB0");
  std::ofstream(bench.folder() / "ttyUSB0") << "x";
  int changes = 0;
  bench.devices().Watch([&] { ++changes; });
  fs::create_directories(bench.folder() / "serial");
  bench.RunFor(30ms);
  fs::create_directories(bench.folder() / "serial/by-id");
  bench.RunFor(30ms);
  EXPECT_EQ(changes, 0);
  fs::create_symlink("../../ttyUSB0", bench.folder() / "serial/by-id/usb");
  EXPECT_TRUE(bench.RunUntil([&] { return changes == 1; }));
}

TEST(QtPortDevices, SaysNothingOfOtherChangesInTheFolder) {
  QtDevicesBench bench;
  int changes = 0;
  bench.devices().Watch([&] { ++changes; });
  std::ofstream(bench.folder() / "loop0") << "x";
  bench.RunFor(50ms);
  EXPECT_EQ(changes, 0);
}

TEST(QtPortDevices, NeverListsPseudoTerminals) {
  const PtyPair pty;
  for (const PortDevice& device : QtPortDevices().Present()) {
    EXPECT_FALSE(device.path.starts_with("/dev/pts/")) << device.path;
    EXPECT_TRUE(device.path.starts_with("/dev/")) << device.path;
  }
}

class FakeShellBench : public VirtualLoop {
 public:
  Shell& shell() { return world().shell(); }
  void NothingStarts() { world().shell().programs_start = false; }
  void NothingOpens() { world().shell().files_open = false; }
};

class QtShellBench : public QtLoop {
 public:
  Shell& shell() { return shell_; }
  void NothingStarts() {}
  void NothingOpens() {}

 private:
  QtShell shell_;
};

template <class Bench>
class ShellContract : public testing::Test {
 protected:
  Bench bench;
};

using ShellBenches = testing::Types<FakeShellBench, QtShellBench>;
TYPED_TEST_SUITE(ShellContract, ShellBenches, BenchNames);

TYPED_TEST(ShellContract, SaysWhetherAProgramCouldBeStarted) {
  EXPECT_TRUE(this->bench.shell().StartProgram("/bin/true", ""));
  this->bench.NothingStarts();
  EXPECT_FALSE(this->bench.shell().StartProgram("/no/such/program", ""));
}

TYPED_TEST(ShellContract, SaysThatAFileWasNotOpened) {
  this->bench.NothingOpens();
  EXPECT_FALSE(this->bench.shell().OpenFile("/no/such/file.html"));
}

TYPED_TEST(ShellContract, Beeps) { EXPECT_NO_THROW(this->bench.shell().Beep()); }

TEST(QtShell, HandsTheArgumentOverInOnePiece) {
  QtLoop loop;
  const TemporaryFolder folder;
  const std::string file = folder / "a file; with $signs";
  EXPECT_TRUE(QtShell().StartProgram("touch", file));
  EXPECT_TRUE(loop.RunUntil([&] { return fs::exists(file); }));
}

}  // namespace
}  // namespace tarnlink
