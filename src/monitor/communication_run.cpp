#include "monitor/communication_run.h"

#include <algorithm>
#include <initializer_list>

#include "common/numbers.h"
#include "protocols/modbus_protocol.h"
#include "protocols/tarnlink_protocol.h"
#include "protocols/zolt_protocol.h"

namespace tarnlink {

namespace {

// Adapters on USB hand bytes on every 16 ms, whatever the speed of the line.
constexpr int kAdapterGap = 20;  // ms

void Enable(std::initializer_list<MenuEntry*> entries, bool enabled) {
  for (MenuEntry* entry : entries) entry->Enabled = enabled;
}

void Restart(Timer& timer) {
  timer.SetEnabled(false);
  timer.SetEnabled(true);
}

}  // namespace

ProtocolTable MakeProtocols() {
  ProtocolTable protocols;
  protocols[kTarnlinkProtocol] = std::make_unique<TarnlinkProtocol>();
  protocols[kZoltProtocol] = std::make_unique<ZoltProtocol>();
  protocols[kModbusProtocol] = std::make_unique<ModbusProtocol>();
  return protocols;
}

CommunicationRun::CommunicationRun(frm_Main& main, frm_Options& options, RunRecorder& recorder,
                                   ProtocolTable protocols)
    : main_(main),
      options_(options),
      recorder_(recorder),
      protocols_(std::move(protocols)),
      receive_pause_(main.platform().CreateTimer()) {
  main_.Toolbar1(2).Click = [this] { StartCommunication(); };
  main_.Toolbar1(3).Click = [this] { StopCommunication(); };
  main_.Comm->SetOnComm([this](int event) { CommEventHandler(event); });
  main_.Comm_Timer->SetOnTimer([this] { PollTick(); });
  main_.tmr_noresponse->SetOnTimer([this] { NoResponse(); });
  main_.tmr_MsgTimeout->SetOnTimer([this] { MessageTimedOut(); });
  receive_pause_->SetOnTimer([this] { WaitForTheRest(); });
}

int CommunicationRun::MessageTimeout() const { return options_.sld_MsgTimeout.Value * 1000; }

bool CommunicationRun::NameVisible(int index) const {
  return main_.RAM_LOC_TEXT.Has(index) && main_.RAM_LOC_TEXT(index).Visible;
}

std::string CommunicationRun::NameText(int index) const { return main_.RAM_LOC_TEXT(index).Text; }

void CommunicationRun::ShowValue(int index, const std::string& text) {
  // The user may have undone the Location between request and answer.
  if (main_.RAM_LOC_VAL.Has(index)) main_.RAM_LOC_VAL(index).Text = text;
}

void CommunicationRun::ShowPanel(StatusPanelIndex panel, const std::string& text) {
  main_.StatusBar1(panel).Text = text;
}

Protocol* CommunicationRun::SelectedProtocol() const {
  return protocols_[static_cast<std::size_t>(options_.SelectedProtocol())].get();
}

void CommunicationRun::StartCommunication() {
  main_.tmr_noresponse->SetInterval(MessageTimeout());
  if (main_.CommRunning || main_.LocationCount < 1) return;
  try {
    if (options_.chkClearAllValues.Value) ClearAllValues();
    main_.Comm->SetPortOpen(true);
    ShowPanel(kConnectionPanel, "Local Connection Active");
    ShowPanel(kStatusPanel, "Communication Running");
    DisableToolsDuringRun();
    main_.MsgPointer = 0;
    main_.DDERowCounter = 2;
    if (options_.chk_GeneralLogging(0).Value) recorder_.PrepareLog();
    if (options_.chk_GeneralLogging(1).Value) recorder_.StartSpreadsheet();
    doubt_.Clear();
    main_.SendSecondByte = false;
    main_.CommRunning = true;
    main_.Comm_Timer->SetEnabled(true);
    main_.message_received = true;
  } catch (const RunTimeError& error) {
    FailurePath(error);
  }
}

void CommunicationRun::ClearAllValues() {
  for (int i = 1; i <= main_.MaxId; ++i) ShowValue(i, "");
}

void CommunicationRun::DisableToolsDuringRun() {
  Enable({&main_.M_options, &main_.M_Graphics, &main_.mnuLoadParameters, &main_.M_ControlPanel,
          &main_.mnuScanSlaves, &main_.M_errgen, &main_.mnuCfgCheck, &main_.mnuSniffer},
         false);
}

void CommunicationRun::StopCommunication() {
  main_.DDERowCounter = 2;
  StopZOLTCommunication();
}

void CommunicationRun::FailurePath(const RunTimeError& error) {
  ReportError(error);
  StopCommunication();
}

void CommunicationRun::ReportError(const RunTimeError& error) {
  if (error.code() == kDialogCancelled) return;
  MessageBoxRequest box;
  box.icon = Icon::kCritical;
  box.detail = error.what();
  if (error.code() == kPortUnavailable) {
    box.text = "Communication port " + std::to_string(main_.Comm->CommPort()) +
               " occupied.\r\nStop communication and try again.";
    box.title = "Communication Error";
  } else {
    box.text = SystemErrorText(error.code()) + " Communication is stopped";
    box.title = "Internal System Error";
  }
  main_.platform().dialogs().MessageBox(box);
}

void CommunicationRun::StopZOLTCommunication() {
  const bool was_open = main_.Comm->PortOpen();
  EndRun();
  // On a port that is closed already the watchdog goes on as it was.
  if (was_open) {
    main_.tmr_noresponse->SetEnabled(false);
    ShowPanel(kConnectionPanel, "No Connection Active");
  }
  Enable({&main_.mnuCfgCheck, &main_.mnuSniffer}, options_.ToolsFitProtocol());
}

// What the two ways of stopping have in common.
void CommunicationRun::EndRun() {
  main_.CommRunning = false;
  EndPause();
  if (main_.Comm->PortOpen()) main_.Comm->SetPortOpen(false);
  main_.Comm_Timer->SetEnabled(false);
  main_.tmr_MsgTimeout->SetEnabled(false);
  ShowPanel(kStatusPanel, "Communication Stopped");
  recorder_.CloseLogFile();
  main_.M_options.Enabled = true;
  Enable({&main_.M_Graphics, &main_.mnuLoadParameters, &main_.M_ControlPanel, &main_.M_errgen,
          &main_.mnuScanSlaves},
         options_.ToolsFitProtocol());
}

// The port is closed and cannot be had again, so the watchdog must not go on trying.
void CommunicationRun::StopWithoutPort() {
  main_.tmr_noresponse->SetEnabled(false);
  StopCommunication();
  ShowPanel(kConnectionPanel, "No Connection Active");
}

void CommunicationRun::PollTick() {
  if (!main_.message_received || LossIsAboutToBeTold()) return;
  if (!LineIsClear()) return;
  main_.message_received = false;
  try {
    if (Protocol* protocol = SelectedProtocol()) protocol->SendNextPoll(*this);
  } catch (const RunTimeError& error) {
    FailurePath(error);
    return;
  }
  // Also after a poll that stopped the run for want of anything to poll.
  Restart(*main_.tmr_noresponse);
}

// Whether the next request may go out. Bytes that nobody asked for would be taken for its answer;
// those that are too few for an event would stand ahead of that and shift all that follow.
bool CommunicationRun::LineIsClear() {
  const bool is_receiving = receive_pause_->Enabled();
  const bool has_bytes = main_.Comm->InBufferCount() > 0;
  if (has_bytes) doubt_.Raise();
  if (has_bytes && !is_receiving) main_.Comm->ClearInBuffer();
  if (!doubt_.AllowsRequest(main_.Comm_Timer->Interval(), TimeOfExchange())) return false;
  if (is_receiving) {
    // It has gone on for too long.
    EndPause();
    main_.Comm->ClearInBuffer();
  }
  return true;
}

void CommunicationRun::CommEventHandler(int event) {
  switch (event) {
    case kCommReceive:
      return Receive();
    case kCommFrame:
      return LineError("Framing Error");
    case kCommOverrun:
      return LineError("Data Lost");
    case kCommReceiveOver:
      return LineError("Receive Buffer Overflow");
    case kCommTransmitFull:
      return LineError("Transmit Buffer Overflow");
    case kCommDeviceGone:
      return DeviceGone();
    default:
      return;
  }
}

void CommunicationRun::Receive() {
  Protocol* protocol = SelectedProtocol();
  if (protocol == nullptr) {
    main_.Comm->ClearInBuffer();
    return;
  }
  if (main_.message_received) doubt_.Raise();  // no request is out
  const int pause = protocol->ReceivePause(options_.opt_Baudrate.Selected());
  if (pause == 0) return TakeResponse();
  // A speed that has no button counts as the fastest, and is it from now on.
  if (options_.opt_Baudrate.Selected() < 0) {
    options_.opt_Baudrate.Select(options_.opt_Baudrate.count() - 1);
  }
  // The threshold is below the frame's length: the rest arrives during the pause. The answer has
  // begun in time, so the watchdog waits too; no further event comes meanwhile.
  main_.tmr_noresponse->SetEnabled(false);
  threshold_ = main_.Comm->RThreshold();
  main_.Comm->SetRThreshold(0);
  received_ = main_.Comm->InBufferCount();
  quiet_ = 0;
  receive_pause_->SetInterval(pause);
  receive_pause_->SetEnabled(true);
}

// A long block takes several pauses on a slow line, and on a fast one the pause may fall between
// two handfuls of an adapter: what is too short is not all there before the line has been quiet.
void CommunicationRun::WaitForTheRest() {
  const int pause = receive_pause_->Interval();
  const int waiting = main_.Comm->InBufferCount();
  if (waiting == 0 && main_.write_message) {
    // A write has begun meanwhile and dropped what had come. Its answer raises an event of its own.
    EndPause();
    main_.tmr_noresponse->SetEnabled(true);
    return;
  }
  const Protocol* protocol = SelectedProtocol();
  quiet_ = waiting > received_ ? 0 : quiet_ + pause;
  received_ = waiting;
  const bool is_short = protocol != nullptr && waiting < protocol->ResponseLength(main_);
  if (is_short && quiet_ < std::max(pause, kAdapterGap)) return;
  EndPause();
  TakeResponse();
}

// A request and the longest answer to it, in milliseconds.
int CommunicationRun::TimeOfExchange() const {
  constexpr int kLongestRequest = 16;  // bytes
  constexpr int kShortestAnswer = 16;  // at least as much is waited for
  constexpr int kLongestByte = 12;     // bits, with parity and two stop bits
  constexpr int kMsPerSecond = 1'000;
  const Protocol* protocol = SelectedProtocol();
  const int answer = protocol == nullptr ? 0 : protocol->ResponseLength(main_);
  const int bytes = kLongestRequest + std::max(answer, kShortestAnswer);
  const int baud = BaudrateOfIndex(std::max(options_.opt_Baudrate.Selected(), 0));
  return bytes * kLongestByte * kMsPerSecond / baud;
}

// Receive events come again.
void CommunicationRun::EndPause() {
  if (!receive_pause_->Enabled()) return;
  receive_pause_->SetEnabled(false);
  main_.Comm->SetRThreshold(threshold_);
}

void CommunicationRun::TellProtectedArea() {
  main_.platform().dialogs().MessageBox({.text = "Write attempt to protected area !",
                                         .title = "Write Error",
                                         .icon = Icon::kCritical});
}

void CommunicationRun::TakeResponse() {
  try {
    if (Protocol* protocol = SelectedProtocol()) protocol->TakeResponse(*this);
  } catch (const RunTimeError&) {
    // The exchange stays open and the watchdog ends it, which the routine may have stopped already.
    if (main_.CommRunning) main_.tmr_noresponse->SetEnabled(true);
    // Bytes that it left unread would raise the event again and again until then.
    main_.Comm->ClearInBuffer();
  }
}

void CommunicationRun::LineError(const std::string& text) {
  if (options_.chk_DisableCommErrors.Value) {
    main_.Comm->ClearInBuffer();
    return;
  }
  if (line_error_shown_) return;
  line_error_shown_ = true;
  main_.platform().dialogs().MessageBox({.text = text,
                                         .title = "Communication Error",
                                         .icon = Icon::kCritical,
                                         .buttons = Buttons::kYesNo,
                                         .second_is_default = true});
  line_error_shown_ = false;
}

// A vanished device closes its port at once; the event that tells of it comes through the event
// loop and may find a timer ahead of it, which must not meet the closed port.
bool CommunicationRun::LossIsAboutToBeTold() const {
  return !main_.Comm->PortOpen() && !main_.Comm->LossReason().empty();
}

void CommunicationRun::DeviceGone() {
  const std::string reason = main_.Comm->LossReason();
  StopWithoutPort();
  main_.platform().dialogs().MessageBox({.text = "Communication port " +
                                                 std::to_string(main_.Comm->CommPort()) +
                                                 " is gone. Communication is stopped.",
                                         .title = "Communication Error",
                                         .icon = Icon::kCritical,
                                         .detail = reason});
}

void CommunicationRun::NoResponse() {
  if (LossIsAboutToBeTold()) return;
  EndPause();
  try {
    if (main_.Comm->PortOpen()) main_.Comm->SetPortOpen(false);
    main_.Comm->SetPortOpen(true);
  } catch (const RunTimeError& error) {
    // Told once: the run has ended before the box is up.
    StopWithoutPort();
    ReportError(error);
    return;
  }
  main_.message_received = true;
  main_.Comm->ClearInBuffer();
  doubt_.Clear();
  // The first half of a word that nobody acknowledged has no second half: the next acknowledge is
  // for something else, and the byte would go to an address that nobody meant.
  main_.SendSecondByte = false;
}

// Leaves `tmr_noresponse` running and the port's panel alone, and keeps two tools disabled. The
// watchdog opens the port once more; Stop then closes it and puts all of it right.
void CommunicationRun::MessageTimedOut() {
  main_.platform().dialogs().MessageBox(
      {.text = "Slave is not responding", .title = "Message Timeout", .icon = Icon::kCritical});
  EndRun();
}

}  // namespace tarnlink
