#include "simulator/device_port.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <termios.h>

#include "simulator/problem.h"

namespace boiler {
namespace {

constexpr std::array<std::pair<int, speed_t>, 8> kSpeeds = {{{1200, B1200},
                                                             {2400, B2400},
                                                             {4800, B4800},
                                                             {9600, B9600},
                                                             {19200, B19200},
                                                             {38400, B38400},
                                                             {57600, B57600},
                                                             {115200, B115200}}};

speed_t SpeedOf(int baud) {
  for (const auto& [number, speed] : kSpeeds) {
    if (number == baud) return speed;
  }
  throw Problem("A serial device has no speed of " + std::to_string(baud) + " baud.");
}

}  // namespace

DevicePort::DevicePort(std::string path, int baud)
    : path_(std::move(path)), speed_(SpeedOf(baud)) {}

void DevicePort::Plug(bool under_other_name) {
  if (under_other_name) throw Problem("A device of the machine keeps its name.");
  if (device_.open()) return;
  const auto refuse = [&] {
    return Problem("The device \"" + path_ + "\" cannot be used: " + std::strerror(errno) + ".");
  };
  FileDescriptor device(::open(path_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  termios mode = {};
  if (!device.open() || ::tcgetattr(device.number(), &mode) != 0) throw refuse();
  ::cfmakeraw(&mode);
  mode.c_cflag |= CLOCAL | CREAD;
  ::cfsetispeed(&mode, speed_);
  ::cfsetospeed(&mode, speed_);
  if (::tcsetattr(device.number(), TCSANOW, &mode) != 0) throw refuse();
  device_ = std::move(device);
}

void DevicePort::Block(FaultKind) {
  throw Problem("Only a pseudo terminal can be made one that cannot be opened.");
}

}  // namespace boiler
