// The boiler's end of the serial line, as the program uses it. Real classes: `PtyPort`, which makes
// a pseudo terminal of its own, and `DevicePort`, which takes a device of the machine.
#pragma once

#include <string>

#include "simulator/fault.h"

namespace boiler {

class Port {
 public:
  virtual ~Port() = default;

  // To poll, read and write without waiting; -1 while the port is unplugged.
  virtual int File() const = 0;
  // Where the other end finds the port: the device that it opens.
  virtual const std::string& Path() const = 0;

  // Does nothing while plugged. Throws Problem when the port cannot be had.
  virtual void Plug(bool under_other_name) = 0;
  // Whoever has the other end open loses it. Does nothing while unplugged.
  virtual void Unplug() = 0;

  // Makes the port one that cannot be opened, by a fault for which BlocksOpening holds. Throws
  // Problem when this kind of port cannot be made so.
  virtual void Block(FaultKind kind) = 0;
  // Undoes all blocks; a port that was unplugged for one is plugged again.
  virtual void Unblock() = 0;
};

}  // namespace boiler
