// The language of the tests on the running monitor: a user at the screen, a slave at the other end
// of the line, virtual time between them, and all that can be seen as text.
//
//   Screen({ByteAt("01A0")});
//   Start();
//   Advance(20);
//   EXPECT_EQ(Sent(), "20 ms: 04 05 30 31 41 30 44 37 03\n");
//   Answer(AnswerOf("01A0", "2A"));
//   EXPECT_EQ(Value(1), "2A");
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "monitor/monitor.h"
#include "support/byte_text.h"
#include "support/fake_world.h"

namespace tarnlink {

// A Location that is read as a byte, and one that is read as a word.
Location ByteAt(const std::string& address, std::int32_t representation = kHexadecimal);
Location WordAt(const std::string& address, std::int32_t representation = kHexadecimal);

// The bytes of a sound answer: two digits to a byte read, four to a word read.
std::string AnswerOf(const std::string& address, const std::string& digits);

// Writes down what the run has it record, and refuses what the test wants refused.
class NotingRecorder final : public RunRecorder {
 public:
  explicit NotingRecorder(frm_Main& main) : main_(main) {}

  void PrepareLog() override;
  void StartSpreadsheet() override;
  void LogRequest(int index) override;
  void RecordValue(int index) override;
  void LogUnreadable(int index) override;
  void EndLogRow() override;
  void CloseLogFile() override;

  // One line for each call since the last time, such as "value 1: 2A in row 2".
  std::string TakeNotes();

  // A log opens only if there is something to log.
  bool log_opens = true;
  std::optional<RunTimeError> log_refusal;
  std::optional<RunTimeError> spreadsheet_refusal;
  std::optional<RunTimeError> request_refusal;
  std::optional<RunTimeError> value_refusal;
  std::optional<RunTimeError> row_refusal;

 private:
  // Notes the call and then fails if it is to.
  void Call(const std::string& line, const std::optional<RunTimeError>& refusal);
  void Note(const std::string& line) { notes_ += line + "\n"; }

  frm_Main& main_;
  std::string notes_;
};

// How long the line has to be quiet after bytes that nobody asked for: 32 bytes of 12 bits at 9600
// baud, which are 40 ms, and 100 ms for the slave to think.
inline constexpr int kQuietAt9600 = 140;  // ms

class MonitorTest : public ::testing::Test {
 protected:
  // The program has started with an empty screen: TarnLink protocol, 9600,N,8,1 on COM1, time-out
  // 3 s, line errors told, nothing logged.
  MonitorTest();

  // --- The user ---

  // An empty screen gets these Locations, 1 and up.
  void Screen(const std::vector<Location>& locations);
  // What the deletion of a Location leaves: a record in the table whose boxes are hidden.
  void Delete(int index);
  void Start() { monitor.main.Toolbar1(2).Press(); }
  void Stop() { monitor.main.Toolbar1(3).Press(); }
  void ChooseProtocol(int index) { monitor.options.opt_Protocol.Choose(index); }
  // The whole way of a write: double click, hexadecimal or decimal text, "Write Ok".
  void Write(int index, const std::string& text);
  void WriteDecimal(int index, const std::string& text);
  void WriteBit(int index, bool value);
  void WriteBlock(int index, const std::vector<int>& registers);
  void SetTimeout(int seconds) { monitor.options.sld_MsgTimeout.SetValue(seconds); }

  // --- Time and the other end of the line ---

  void Advance(int milliseconds) { world.Advance(std::chrono::milliseconds(milliseconds)); }
  // The bytes arrive now, or in a while.
  void Answer(std::string_view bytes);
  void AnswerIn(int milliseconds, std::string_view bytes);
  // From now on a slave answers reads of the addresses that it knows, after `delay` milliseconds.
  void SlaveHolds(std::map<std::string, std::string> digits_by_address, int delay = 5);
  void SlaveIsSilent() { world.on_output = nullptr; }

  // --- What the run is made with ---

  // The run from now on notes what it records in `recorder`.
  void Record();
  // The same in a recorder of the test's own.
  void RecordIn(RunRecorder& run_recorder) { RebuildRun(run_recorder, MakeProtocols()); }
  // The run polls with this protocol when the option `index` is chosen, and chooses it.
  void PollWith(int index, std::unique_ptr<Protocol> protocol);

  // --- What can be seen ---

  // Frames since the last time, a line each: "20 ms: 04 05 30".
  std::string Sent();
  // "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout".
  std::string State() const;
  // The menu entries of Options and of the tools that cannot be chosen.
  std::string DisabledEntries() const;
  std::string Panel(int panel) const { return monitor.main.StatusBar1(panel).Text; }
  std::string Value(int index) const { return monitor.main.RAM_LOC_VAL(index).Text; }
  // Milliseconds since the world began.
  long Now() const { return static_cast<long>(world.now() / std::chrono::milliseconds(1)); }

  // The user is shown this box, with the critical icon and nothing but OK.
  ScriptedDialog& ExpectCritical(const std::string& text, const std::string& title);
  ScriptedDialog& ExpectSilentSlaveBox();
  ScriptedDialog& ExpectOccupiedBox(int port = 1);
  ScriptedDialog& ExpectDeviceGoneBox(int port = 1);

  FakeWorld world;
  Monitor monitor{world};
  NotingRecorder recorder{monitor.main};

 private:
  void RebuildRun(RunRecorder& run_recorder, ProtocolTable protocols);

  std::unique_ptr<CommunicationRun> rebuilt_run_;
  std::size_t frames_seen_ = 0;
};

inline constexpr const char* kAllRunEntries =
    "M_options M_Graphics mnuLoadParameters M_ControlPanel mnuScanSlaves M_errgen mnuCfgCheck "
    "mnuSniffer";

}  // namespace tarnlink
