#include "monitor/communication_run.h"

#include <algorithm>
#include <initializer_list>

#include "common/numbers.h"
#include "monitor/file_error_box.h"
#include "protocols/modbus_protocol.h"
#include "protocols/tarnlink_protocol.h"
#include "protocols/zolt_protocol.h"

namespace tarnlink {

namespace {

// Why an entry is grey.
constexpr const char* kPortInUse = "The port is in use: press \"Stop Communication\" first";
constexpr const char* kNotWithModbus = "There is no such tool for the ModBus protocol";

// A grey entry says why it is.
void Enable(std::initializer_list<MenuEntry*> entries, bool enabled, const char* why_not = "") {
  for (MenuEntry* entry : entries) {
    entry->Enabled = enabled;
    entry->ToolTipText = enabled ? "" : why_not;
  }
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
      receive_pause_(*main.Comm, main.platform().CreateTimer(), [this] { TakeGathered(); }) {
  main_.Toolbar1(2).Click = [this] { StartCommunication(); };
  main_.Toolbar1(3).Click = [this] { StopCommunication(); };
  main_.Comm->SetOnComm([this](int event) { CommEventHandler(event); });
  main_.Comm_Timer->SetOnTimer([this] { PollTick(); });
  main_.tmr_noresponse->SetOnTimer([this] { NoResponse(); });
  main_.tmr_MsgTimeout->SetOnTimer([this] { MessageTimedOut(); });
}

int CommunicationRun::MessageTimeout() const { return options_.sld_MsgTimeout.Value * 1000; }

bool CommunicationRun::NameVisible(int index) const { return main_.IsShown(index); }

std::string CommunicationRun::NameText(int index) const { return main_.RAM_LOC_TEXT(index).Text; }

void CommunicationRun::ShowValue(int index, const std::string& text) {
  // The user may have undone the Location between request and answer.
  if (!main_.RAM_LOC_VAL.Has(index)) return;
  TextBox& box = main_.RAM_LOC_VAL(index);
  box.AnsweredAt = main_.platform().clock().Elapsed();
  box.IsOld = false;
  box.Text = text;
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
    round_began_ = main_.platform().clock().Elapsed();
    main_.DDERowCounter = 2;
    if (options_.chk_GeneralLogging(0).Value) recorder_.PrepareLog();
    if (options_.chk_GeneralLogging(1).Value) recorder_.StartSpreadsheet();
    // A device that vanished behind their dialogs has been told.
    if (!main_.Comm->PortOpen()) return StopCommunication();
    doubt_.Clear();
    main_.SendSecondByte = false;
    main_.CommRunning = true;
    main_.Comm_Timer->SetEnabled(true);
    main_.message_received = true;
  } catch (const RunTimeError& error) {
    FailurePath(error);
  }
}

void CommunicationRun::RecordValue(int index) {
  if (main_.RAM_LOC_VAL.Has(index)) {
    main_.Reads.Note(index, main_.Locations[index], main_.RAM_LOC_VAL(index).Text);
  }
  recorder_.RecordValue(index);
}

void CommunicationRun::ClearAllValues() {
  for (int i = 1; i <= main_.MaxId; ++i) {
    if (main_.RAM_LOC_VAL.Has(i)) main_.RAM_LOC_VAL(i).Text = "";
  }
}

void CommunicationRun::EndRound() {
  recorder_.EndRound();
  ShowWhichAreOld();
  round_began_ = main_.platform().clock().Elapsed();
}

// Also those that nobody asks for any more: what stands in their boxes may long be something else.
void CommunicationRun::ShowWhichAreOld() {
  for (int i = 1; i <= main_.MaxId; ++i) {
    if (!main_.RAM_LOC_VAL.Has(i)) continue;
    TextBox& box = main_.RAM_LOC_VAL(i);
    box.IsOld = !box.AnsweredAt || *box.AnsweredAt <= round_began_;
  }
}

void CommunicationRun::DisableToolsDuringRun() {
  Enable({&main_.M_options, &main_.M_Graphics, &main_.mnuLoadParameters, &main_.M_ControlPanel,
          &main_.mnuScanSlaves, &main_.M_errgen, &main_.mnuCfgCheck, &main_.mnuSniffer},
         false, kPortInUse);
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
  Enable({&main_.mnuCfgCheck, &main_.mnuSniffer}, options_.ToolsFitProtocol(), kNotWithModbus);
}

// What the two ways of stopping have in common.
void CommunicationRun::EndRun() {
  main_.CommRunning = false;
  receive_pause_.End();
  if (main_.Comm->PortOpen()) main_.Comm->SetPortOpen(false);
  main_.Comm_Timer->SetEnabled(false);
  main_.tmr_MsgTimeout->SetEnabled(false);
  ShowPanel(kStatusPanel, "Communication Stopped");
  recorder_.CloseLogFile();
  Enable({&main_.M_options}, true);
  Enable({&main_.M_Graphics, &main_.mnuLoadParameters, &main_.M_ControlPanel, &main_.M_errgen,
          &main_.mnuScanSlaves},
         options_.ToolsFitProtocol(), kNotWithModbus);
}

// The port is closed and cannot be had again, so the watchdog must not go on trying.
void CommunicationRun::StopWithoutPort() {
  main_.tmr_noresponse->SetEnabled(false);
  StopCommunication();
  ShowPanel(kConnectionPanel, "No Connection Active");
}

void CommunicationRun::PollTick() {
  if (!main_.message_received || LossIsAboutToBeTold()) return;
  NoteUnaskedBytes();
  if (!doubt_.AllowsRequest(main_.Comm_Timer->Interval(), TimeOfExchange())) return;
  if (receive_pause_.IsUnderWay()) {
    // Bytes that go on coming have been waited for long enough.
    receive_pause_.End();
    main_.Comm->ClearInBuffer();
  }
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

// What waits when the next request is to go out is no answer to it. Too few for an event, the bytes
// would stand ahead of the answer and shift all that follow.
void CommunicationRun::NoteUnaskedBytes() {
  if (main_.Comm->InBufferCount() == 0) return;
  doubt_.Raise();
  if (!receive_pause_.IsUnderWay()) main_.Comm->ClearInBuffer();
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
  options_.opt_Baudrate.Select(SpeedIndex());
  // The answer has begun in time, so the watchdog waits too.
  main_.tmr_noresponse->SetEnabled(false);
  receive_pause_.Begin(pause);
}

void CommunicationRun::TakeGathered() {
  if (main_.Comm->InBufferCount() == 0 && main_.write_message) {
    // A write has begun meanwhile and dropped what had come. Its answer raises an event of its own.
    receive_pause_.End();
    main_.tmr_noresponse->SetEnabled(true);
    return;
  }
  const Protocol* protocol = SelectedProtocol();
  if (!receive_pause_.IsOver(protocol == nullptr ? 0 : protocol->ResponseLength(main_))) return;
  receive_pause_.End();
  TakeResponse();
}

// A request and its answer on the line, in milliseconds. A longer answer goes on being heard.
int CommunicationRun::TimeOfExchange() const {
  constexpr int kBytes = 32;  // twice the longest frame of a fixed length
  constexpr int kBits = 12;   // of a byte, with parity and two stop bits
  return kBytes * kBits * 1'000 / BaudrateOfIndex(SpeedIndex());
}

// A speed that has no button counts as the fastest.
int CommunicationRun::SpeedIndex() const {
  const int chosen = options_.opt_Baudrate.Selected();
  return chosen >= 0 ? chosen : options_.opt_Baudrate.count() - 1;
}

bool CommunicationRun::SendWrite(int index, std::string& value) {
  if (LossIsAboutToBeTold()) return false;
  // An answer that is still awaited would pass for that of the write.
  if (!main_.message_received) doubt_.Raise();
  main_.message_received = false;
  recorder_.WriteSent();
  try {
    if (Protocol* protocol = SelectedProtocol()) protocol->SendWrite(*this, index, value);
    return true;
  } catch (const RunTimeError& error) {
    ReportFileError(main_.platform().dialogs(), error, "During writing a value to ",
                    NameText(index));
    return false;
  }
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
  receive_pause_.End();
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
