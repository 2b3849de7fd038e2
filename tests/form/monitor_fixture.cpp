#include "form/monitor_fixture.h"

#include <array>
#include <cstdio>
#include <utility>

#include "form/user_writes.h"
#include "monitor/screen_builder.h"
#include "monitor/setting_keys.h"

namespace tarnlink {
namespace {

Location MemoryAt(const std::string& address, std::int32_t storage, std::int32_t representation) {
  Location location;
  location.Specification = 0;
  location.StorageType = storage;
  location.Representation = representation;
  location.Address = address;
  location.Alias = "at " + address;
  return location;
}

std::string TwoDigits(unsigned value) {
  std::array<char, 3> text;
  std::snprintf(text.data(), text.size(), "%02X", value & 0xFFU);
  return text.data();
}

}  // namespace

Location ByteAt(const std::string& address, std::int32_t representation) {
  return MemoryAt(address, kUnsignedByte, representation);
}

Location WordAt(const std::string& address, std::int32_t representation) {
  return MemoryAt(address, kUnsignedWord, representation);
}

std::string AnswerOf(const std::string& address, const std::string& digits) {
  const char command = digits.size() == 2 ? '\x05' : '\x01';
  const std::string body = command + address + digits;
  unsigned sum = 0;
  for (const char byte : body) sum += static_cast<unsigned char>(byte);
  return '\x04' + body + TwoDigits(sum) + '\x03';
}

// --- NotingRecorder ---

void NotingRecorder::Call(const std::string& line, const std::optional<RunTimeError>& refusal) {
  Note(line);
  if (refusal) throw RunTimeError(*refusal);
}

void NotingRecorder::PrepareLog() {
  Call("prepare log", log_refusal);
  main_.filelogging = log_opens;
}

void NotingRecorder::StartSpreadsheet() { Call("start spreadsheet", spreadsheet_refusal); }

void NotingRecorder::LogRequest(int index) {
  Call("request " + std::to_string(index), request_refusal);
}

void NotingRecorder::RecordValue(int index) {
  Call("value " + std::to_string(index) + ": " + main_.RAM_LOC_VAL(index).Text.get() + " in row " +
           std::to_string(main_.DDERowCounter),
       value_refusal);
}

void NotingRecorder::LogUnreadable(int index) {
  Call("unreadable " + std::to_string(index), value_refusal);
}

void NotingRecorder::EndLogRow() { Call("end of row", row_refusal); }

void NotingRecorder::CloseLogFile() {
  if (!std::exchange(main_.filelogging, false)) return;
  Note("close log");
}

std::string NotingRecorder::TakeNotes() { return std::exchange(notes_, {}); }

// --- MonitorTest ---

MonitorTest::MonitorTest() {
  WriteSetting(world.settings(), setting::kProtocol, "0");
  WriteSetting(world.settings(), setting::kBaudrate, "3");
  WriteSetting(world.settings(), setting::kParity, "0");
  WriteSetting(world.settings(), setting::kStopBits, "0");
  WriteSetting(world.settings(), setting::kIgnoreErrors, "0");
  monitor.start.Form_Load();
}

void MonitorTest::Screen(const std::vector<Location>& locations) {
  for (const Location& location : locations) {
    const int index = ++monitor.main.MaxId;
    BuildLocation(monitor.main, monitor.options, index,
                  {.tag = location.Specification == 0 ? kMemoryTag : kIdTag, .location = location});
  }
  monitor.main.LocationCount = monitor.main.MaxId;
  monitor.main.ShowLocationCount();
}

void MonitorTest::Delete(int index) {
  monitor.main.RAM_LOC_TEXT(index).Visible = false;
  monitor.main.RAM_LOC_VAL(index).Visible = false;
  monitor.main.RAM_LOC_CHECK(index).Visible = false;
  --monitor.main.LocationCount;
}

void MonitorTest::Write(int index, const std::string& text) {
  TypeAndWrite(monitor, index, kHexadecimal, text);
}

void MonitorTest::WriteDecimal(int index, const std::string& text) {
  TypeAndWrite(monitor, index, kDecimal, text);
}

void MonitorTest::WriteBit(int index, bool value) { ChooseAndWriteBit(monitor, index, value); }

void MonitorTest::WriteBlock(int index, const std::vector<int>& registers) {
  TypeAndWriteBlock(monitor, index, registers);
}

void MonitorTest::Answer(std::string_view bytes) {
  world.port().Receive(bytes);
  world.Settle();
}

void MonitorTest::AnswerIn(int milliseconds, std::string_view bytes) {
  world.port().ReceiveIn(std::chrono::milliseconds(milliseconds), bytes);
}

void MonitorTest::SlaveHolds(std::map<std::string, std::string> digits_by_address, int delay) {
  world.on_output = [known = std::move(digits_by_address), delay](FakeSerialPort& port,
                                                                  std::string_view request) {
    const std::string address(request.substr(2, 4));
    const auto found = known.find(address);
    if (found == known.end()) return;
    port.ReceiveIn(std::chrono::milliseconds(delay), AnswerOf(address, found->second));
  };
}

void MonitorTest::RebuildRun(RunRecorder& run_recorder, ProtocolTable protocols) {
  rebuilt_run_ = std::make_unique<CommunicationRun>(monitor.main, monitor.options, run_recorder,
                                                    std::move(protocols));
}

void MonitorTest::Record() { RebuildRun(recorder, MakeProtocols()); }

void MonitorTest::PollWith(int index, std::unique_ptr<Protocol> protocol) {
  ProtocolTable protocols = MakeProtocols();
  protocols[static_cast<std::size_t>(index)] = std::move(protocol);
  RebuildRun(recorder, std::move(protocols));
  ChooseProtocol(index);
}

std::string MonitorTest::Sent() {
  std::string text;
  const auto& frames = world.port().frames();
  for (; frames_seen_ < frames.size(); ++frames_seen_) {
    const auto& frame = frames[frames_seen_];
    text += std::to_string(frame.time / std::chrono::milliseconds(1)) +
            " ms: " + HexText(frame.bytes) + "\n";
  }
  return text;
}

std::string MonitorTest::State() const {
  const frm_Main& main = monitor.main;
  std::string text = main.CommRunning ? (main.message_received ? "Ready" : "Waiting") : "Stopped";
  text += main.Comm->PortOpen() ? ", port open" : ", port closed";
  std::string timers;
  if (main.Comm_Timer->Enabled()) timers += " Comm_Timer";
  if (main.tmr_noresponse->Enabled()) timers += " tmr_noresponse";
  if (main.tmr_MsgTimeout->Enabled()) timers += " tmr_MsgTimeout";
  return text + (timers.empty() ? ", no timers" : ", timers" + timers);
}

std::string MonitorTest::DisabledEntries() const {
  const frm_Main& main = monitor.main;
  std::string names;
  for (const MenuEntry* entry :
       {&main.M_options, &main.M_Graphics, &main.mnuLoadParameters, &main.M_ControlPanel,
        &main.mnuScanSlaves, &main.M_errgen, &main.mnuCfgCheck, &main.mnuSniffer}) {
    if (entry->Enabled) continue;
    if (!names.empty()) names += ' ';
    names += entry->name();
  }
  return names;
}

ScriptedDialog& MonitorTest::ExpectCritical(const std::string& text, const std::string& title) {
  return world.dialogs().ExpectMessageBox(
      {.text = text, .title = title, .icon = Icon::kCritical, .buttons = Buttons::kOk});
}

ScriptedDialog& MonitorTest::ExpectSilentSlaveBox() {
  return ExpectCritical("Slave is not responding", "Message Timeout");
}

ScriptedDialog& MonitorTest::ExpectOccupiedBox(int port) {
  return ExpectCritical("Communication port " + std::to_string(port) +
                            " occupied.\r\nStop communication and try again.",
                        "Communication Error");
}

ScriptedDialog& MonitorTest::ExpectDeviceGoneBox(int port) {
  return ExpectCritical(
      "Communication port " + std::to_string(port) + " is gone. Communication is stopped.",
      "Communication Error");
}

}  // namespace tarnlink
