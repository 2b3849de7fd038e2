// One serial port, as the forms that talk to a controller use it. Real class: `QtSerialPort`; fake:
// `FakeSerialPort`. Frames are bytes, one character each.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/line_watcher.h"

namespace tarnlink {

// Why a port event fired.
enum CommEvent : int {
  kCommReceive = 2,
  kCommFrame = 1004,         // framing error on the line
  kCommOverrun = 1006,       // bytes lost in the hardware
  kCommReceiveOver = 1008,   // bytes lost in a full receive buffer
  kCommTransmitFull = 1010,  // transmit buffer full
  kCommDeviceGone = 2001,    // the device vanished; the port has closed itself
};

class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // Number 1 to 16. Which device a number means is asked when the port opens.
  virtual int CommPort() const = 0;
  virtual void SetCommPort(int number) = 0;

  // Speed, parity letter, data bits, stop bits, such as " 9600,N,8, 1", as ParsePortSettings takes
  // them; anything else throws RunTimeError 13 and changes nothing. Taken over when the port opens;
  // on an open port by closing and opening, unless they mean what is in force already.
  virtual const std::string& Settings() const = 0;
  virtual void SetSettings(const std::string& settings) = 0;

  virtual bool PortOpen() const = 0;
  // Opening an open port, or one that cannot be had, throws RunTimeError 8005 with the reason in
  // plain words; an open port stays open as it is. Opening starts with an empty receive buffer.
  // Closing a closed port does nothing.
  virtual void SetPortOpen(bool open) = 0;

  // Queues `bytes` for sending and returns at once. On a closed port throws RunTimeError 57.
  virtual void Output(std::string_view bytes) = 0;

  // All bytes that wait; the receive buffer is empty afterwards. Empty on a closed port.
  virtual std::string Input() = 0;

  virtual int InBufferCount() const = 0;
  // Throws away what waits: what setting the count to 0 means.
  virtual void ClearInBuffer() = 0;

  // The receive event fires while at least this many bytes wait and again, each time through the
  // event loop, until they are read. 0: never. While a handler of the receive event runs that has
  // not read yet, the event does not fire inside it: a box that it shows does not come twice.
  virtual int RThreshold() const = 0;
  virtual void SetRThreshold(int bytes) = 0;

  // The handler gets a CommEvent, never from inside a call to this port. kCommDeviceGone comes once
  // for each loss, after the port has closed.
  virtual void SetOnComm(std::function<void(int event)> handler) = 0;

  // Who is told what goes over this line, as soon as it does; null for nobody. It outlives the
  // port.
  virtual void SetWatcher(LineWatcher* watcher) = 0;

  // Why the device is gone, in plain words: from the moment of its loss, before kCommDeviceGone has
  // come, until the port is opened again. Otherwise empty.
  virtual std::string LossReason() const = 0;
};

}  // namespace tarnlink
