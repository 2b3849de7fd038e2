// What the three protocols need of the communication run, and what each protocol gives it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "monitor/location_table.h"
#include "platform/serial_port.h"
#include "platform/timer.h"

namespace tarnlink {

// The panels of `StatusBar1`, from left to right.
enum StatusPanelIndex : int {
  kSettingsPanel = 1,
  kCountPanel = 2,
  kProtocolPanel = 3,
  kStatusPanel = 4,
  kLocationPanel = 5,
  kConnectionPanel = 6,
};

// Whether the run is under way. Tells of each change.
class RunningFlag {
 public:
  RunningFlag& operator=(bool is_running) {
    if (is_running == is_running_) return *this;
    is_running_ = is_running;
    if (Changed) Changed();
    return *this;
  }
  operator bool() const { return is_running_; }

  std::function<void()> Changed;

 private:
  bool is_running_ = false;
};

// The run's shared fields, under the names that all parts of the monitor know.
struct RunFields {
  RunningFlag CommRunning;
  bool message_received = false;  // the last exchange has ended: the next poll may go out
  bool write_message = false;     // the message under way is a write
  bool filelogging = false;       // the log file is open
  int MsgPointer = 0;             // the Location being polled, 0 between rounds
  int MaxId = 0;                  // highest Location index in use
  int LocationCount = 0;
  std::int32_t DDERowCounter = 2;  // spreadsheet row of the current round
  std::string SlaveAddress = "0";

  // The pending second half of a two-step write.
  std::string SecondByteValue;
  bool SendSecondByte = false;
  int SecondByteIndex = 0;
  bool ChangeVariableToSecondByteValues = false;

  // The bit of the last value that had one: what a Bit Location shows that reads whole words.
  bool BitState = false;

  // The Modbus message under way: the function that was asked for, then the one of the answer.
  std::uint8_t Function_code = 0;
  std::int16_t Nreg = 1;
  // The registers of a write, four hexadecimal digits each.
  std::vector<std::string> StoredRegisters;

  bool building = false;  // a screen is being built, or a Modbus message has been since
};

// The run as a protocol sees it. `CommunicationRun` is the real one.
class ProtocolRun {
 public:
  virtual ~ProtocolRun() = default;

  virtual RunFields& fields() = 0;
  virtual LocationTable& locations() = 0;

  virtual SerialPort& Comm() = 0;
  virtual Timer& Comm_Timer() = 0;
  virtual Timer& tmr_noresponse() = 0;
  virtual Timer& tmr_MsgTimeout() = 0;
  // `sld_MsgTimeout` in milliseconds; 0 is no time-out at all.
  virtual int MessageTimeout() const = 0;

  // Whether Location `index` exists: its name box is visible.
  virtual bool NameVisible(int index) const = 0;
  // What the name box says.
  virtual std::string NameText(int index) const = 0;
  virtual void ShowValue(int index, const std::string& text) = 0;
  virtual void ShowPanel(StatusPanelIndex panel, const std::string& text) = 0;

  // Logging hooks. Each looks for itself whether the Location is logged and the log is open.
  virtual void LogRequest(int index) = 0;     // at the request: opens the Location's field
  virtual void RecordValue(int index) = 0;    // after ShowValue: log field and spreadsheet cell
  virtual void LogUnreadable(int index) = 0;  // in place of a value: the slave does not have it
  virtual void EndRound() {}                  // the scan begins again
  virtual void EndLogRow() = 0;               // ends the row and begins the next with the time

  // Tells the user that a page may not be written.
  virtual void TellProtectedArea() = 0;

  virtual void StopZOLTCommunication() = 0;

  // What came is no answer to the request: the real one may still be on its way.
  virtual void DoubtTheLine() = 0;
};

// One protocol of the main run.
class Protocol {
 public:
  virtual ~Protocol() = default;

  // Moves on to the next Location and sends its request, or sets `message_received` when there is
  // nothing to send for it.
  virtual void SendNextPoll(ProtocolRun& run) = 0;

  // Takes the bytes that wait on the port as the response, and sets `message_received` when the
  // exchange has ended. A RunTimeError leaves the exchange to the watchdog.
  virtual void TakeResponse(ProtocolRun& run) = 0;

  // Sends a write of `value`, prepared hexadecimal text, to Location `index`. A protocol that
  // writes less than all of it cuts `value` to what went out.
  virtual void SendWrite(ProtocolRun& run, int index, std::string& value) = 0;

  // How long to wait after a receive event before the response is taken, in milliseconds. Only a
  // protocol whose threshold lies below its frame length needs one. `baud_index` is -1 while no
  // speed is selected.
  virtual int ReceivePause(int /*baud_index*/) const { return 0; }

  // How long the response is that is coming in, by the message under way. One that is shorter after
  // the pause is waited for. 0 where each event brings a whole response.
  virtual int ResponseLength(const RunFields& /*fields*/) const { return 0; }
};

}  // namespace tarnlink
