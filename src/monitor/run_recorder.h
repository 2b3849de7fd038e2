// What a run writes down: its log file and its spreadsheet.
#pragma once

namespace tarnlink {

// The hooks that the run calls, in the order of a run. A recorder looks for itself which Locations
// are to be recorded, and sets and clears `filelogging`. `RunRecords` is the real one.
class RunRecorder {
 public:
  virtual ~RunRecorder() = default;

  // At Start, each if its option is set. RunTimeError 32755, for a cancelled dialog or after the
  // user has been told, ends the Start without a word; any other one with the message of its code.
  virtual void PrepareLog() = 0;
  virtual void StartSpreadsheet() = 0;

  // The request for Location `index` goes out; its value has come in and stands in its box. A
  // RunTimeError of the first ends the run, one of the second leaves the exchange to the watchdog.
  virtual void LogRequest(int index) = 0;
  virtual void RecordValue(int index) = 0;
  // In place of a value: the slave does not have what was asked.
  virtual void LogUnreadable(int index) = 0;

  // A write goes out in place of what was asked for: the next answer is no value of that.
  virtual void WriteSent() {}

  // The scan begins again; with the log open EndLogRow follows.
  virtual void EndRound() {}
  virtual void EndLogRow() = 0;
  // The run has ended, or its screen goes: closes the log if it is open, and saves the spreadsheet.
  // Never throws.
  virtual void CloseLogFile() = 0;
};

}  // namespace tarnlink
