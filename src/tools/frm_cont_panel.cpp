#include "tools/frm_cont_panel.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "common/dates.h"
#include "common/run_time_error.h"
#include "protocols/zolt_frame.h"
#include "protocols/zolt_message.h"
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

constexpr int kTimeout = 3000;  // ms
constexpr const char* kTitle = "Customer Control Panel";
constexpr const char* kSilent = "The slave does not answer. It is asked again.";

}  // namespace

frm_ContPanel::frm_ContPanel(ToolHost& host)
    : comm_CtrlPanel(host.platform.CreatePort()),
      tim_CommTimeout(host.platform.CreateTimer()),
      host_(host),
      answers_(*this),
      quiet_watch_(host.platform, host.line, [this](bool is_quiet) { DoubtIsOver(is_quiet); }) {
  caption.Caption = kTitle;
  tim_CommTimeout->SetInterval(kTimeout);
  BindEvents();
}

void frm_ContPanel::BindEvents() {
  tim_CommTimeout->SetOnTimer([this] { TimedOut(); });
  comm_CtrlPanel->SetOnComm([this](int event) { Received(event); });
  frames_.HeardRequest = [this](std::string_view frame) { HearRequest(frame); };
  SSTab1.Click = [this] { UpdateCurrentTab(); };
  chkContinuousUpdate.Click = [this] { UpdateCurrentTab(); };
  for (int tab = 0; tab < static_cast<int>(PanelTabs().size()); ++tab) {
    UpdateButton(PanelTabs()[static_cast<std::size_t>(tab)].name).Click = [this, tab] {
      Update(tab);
    };
  }
  cmdHeadDemand.Click = [this] { SetPending(kHeatDemandIndex); };
  cmdResetError.Click = [this] { SetPending(kResetErrorIndex); };
}

// --- Opening and leaving -------------------------------------------------------------------------

void frm_ContPanel::Show() {
  if (form.Visible) return;
  Clear();
  caption.Caption = kTitle;
  error_texts = host_.LoadErrorTexts();
  // Nothing that another slave was asked or said.
  open_ = {};
  request_ = {};
  last_answer_.clear();
  is_repeated_ = is_fast_ = is_shared_ = is_silent_ = false;
  ShowSlave();
  try {
    SetServiceLine(*comm_CtrlPanel, host_.line);
  } catch (const RunTimeError& error) {
    lblLine.Caption = PortTrouble(error);
  }
  form.Visible = true;
}

void frm_ContPanel::ShowSlave() {
  const bool is_first = host_.SlaveAddress == "0";
  lblSlave.Caption = is_first ? "Slave 0" : "N.B.  Reading slave " + host_.SlaveAddress;
  lblSlave.ForeColor = is_first ? kBlack : kRed;
}

void frm_ContPanel::Unload() {
  if (!form.Visible) return;
  form.Visible = false;
  Pending.fill(false);
  is_out_ = false;
  tim_CommTimeout->SetEnabled(false);
  quiet_watch_.End();
  CloseQuietly(*comm_CtrlPanel);
  if (Unloaded) Unloaded();
}

// --- What the user asks for ----------------------------------------------------------------------

void frm_ContPanel::Update(int tab) {
  if (!form.Visible) return;
  RequestTab(tab);
  Ask();
}

void frm_ContPanel::UpdateCurrentTab() { Update(SSTab1.Tab); }

void frm_ContPanel::SetPending(int index) {
  if (!form.Visible) return;
  Pending.at(static_cast<std::size_t>(index)) = true;
  Ask();
}

// What the user asks for has its own time, and so has what goes out behind a time-out.
void frm_ContPanel::Ask() {
  tim_CommTimeout->SetEnabled(false);
  SendNextRequest();
}

void frm_ContPanel::RequestTab(int Tab) {
  std::fill(Pending.begin() + kNoRequestIndex, Pending.begin() + kNothingPending, false);
  for (const int index : PanelTabs().at(static_cast<std::size_t>(Tab)).indices) {
    Pending.at(static_cast<std::size_t>(index)) = true;
  }
}

void frm_ContPanel::RequestCurrentTab() { RequestTab(SSTab1.Tab); }

// --- Requests ------------------------------------------------------------------------------------

int frm_ContPanel::FirstPending() const {
  return static_cast<int>(std::find(Pending.begin(), Pending.begin() + kNothingPending, true) -
                          Pending.begin());
}

// While an answer may come that would pass for an entry of the history, the error code is asked for
// before the entry: its answer comes behind.
PanelRequest frm_ContPanel::NextRequest() {
  const PanelRequest request = RequestOf(FirstPending(), chk_HeatDemand.Value);
  if (!request.IsOfHistory() || !open_.HasOther(request)) return request;
  Pending[kErrorCodeIndex] = true;
  return RequestOf(kErrorCodeIndex, chk_HeatDemand.Value);
}

void frm_ContPanel::SendNextRequest() {
  // It goes out when the line is quiet.
  if (quiet_watch_.IsOn()) return;
  if (FirstPending() == kNothingPending && chkContinuousUpdate.Value) RequestCurrentTab();
  const PanelRequest request = NextRequest();
  if (request.Class == 0) {
    // Nothing is waited for, such as behind a late answer to what was given up.
    tim_CommTimeout->SetEnabled(false);
    return;
  }
  is_repeated_ = is_out_ && request == request_;
  request_ = request;
  if (request.IsOfHistory()) ErrorHistoryIndex = request.DataHi;
  caption.Caption = "Slave " + host_.SlaveAddress + ", Reading ID " + std::to_string(request.Id);
  SendKEM3Message(request.Class, request.Id, request.DataHi, request.DataLo);
}

void frm_ContPanel::SendKEM3Message(std::uint8_t Class, std::int32_t Id, std::uint8_t DataHi,
                                    std::uint8_t DataLo) {
  SerialPort& port = *comm_CtrlPanel;
  frames_.Clear();
  try {
    if (!port.PortOpen()) {
      SetServiceLine(port, host_.line);
      port.SetPortOpen(true);
    }
    port.SetRThreshold(zolt_frame::kLength);
    port.ClearInBuffer();
    open_.Add({.Class = Class, .Id = Id, .DataHi = DataHi, .DataLo = DataLo}, Milliseconds());
    port.Output(BuildZoltMessage(Class, host_.SlaveAddress, Id, DataHi, DataLo));
    is_out_ = true;
    lblLine.Caption = is_silent_ ? kSilent : "";
  } catch (const RunTimeError& error) {
    lblLine.Caption = PortTrouble(error);
  }
  // A port that cannot be had counts as silent, and is tried anew.
  tim_CommTimeout->SetEnabled(true);
}

// --- Answers -------------------------------------------------------------------------------------

void frm_ContPanel::Received(int event) {
  if (event == kCommDeviceGone) lblLine.Caption = comm_CtrlPanel->LossReason();
  if (event != kCommReceive) return;
  try {
    const std::string bytes = comm_CtrlPanel->Input();
    if (quiet_watch_.IsOn()) quiet_watch_.Raise();
    if (quiet_watch_.IsOn() && !is_open_) return;
    AnswerKind kind = frames_.Take(bytes);
    while (kind == AnswerKind::kGood && IsAnswerToOther(frames_.frame())) kind = frames_.Take({});
    TakeAnswer(kind);
  } catch (const RunTimeError&) {
    // The time-out follows.
  }
}

void frm_ContPanel::TakeAnswer(AnswerKind kind) {
  if (kind == AnswerKind::kNone) {
    return comm_CtrlPanel->SetRThreshold(quiet_watch_.IsOn() ? 1 : frames_.Missing());
  }
  if (kind != AnswerKind::kTorn && std::exchange(is_silent_, false)) lblLine.Caption = "";
  if (kind == AnswerKind::kGood) return TakeGood();
  if (kind == AnswerKind::kTorn || quiet_watch_.IsOn()) return AwaitQuiet(false);
  is_out_ = false;
  SendNextRequest();
}

// Beside another master the answers to its requests come in too.
void frm_ContPanel::HearRequest(std::string_view frame) {
  if (zolt_frame::Text(frame, zolt_frame::kSlave) != host_.SlaveAddress) return;
  const PanelRequest heard{
      .Class = zolt_frame::TypeOf(frame),
      .Id = zolt_frame::Number(frame, zolt_frame::kId),
      .DataHi = static_cast<std::uint8_t>(zolt_frame::Number(frame, zolt_frame::kDataHigh)),
      .DataLo = static_cast<std::uint8_t>(zolt_frame::Number(frame, zolt_frame::kDataLow))};
  // Some adapters send back what they are given.
  if (heard == request_) return;
  is_shared_ = true;
  open_.AddForeign(heard);
}

// That of another slave, or, beside another master, a read acknowledge for what this panel writes:
// the right one is still to come.
bool frm_ContPanel::IsAnswerToOther(std::string_view frame) const {
  if (!IsFrom(frame, host_.SlaveAddress)) return true;
  return is_shared_ && is_out_ && !IsCompletion(frame) &&
         zolt_frame::Number(frame, zolt_frame::kId) == request_.Id;
}

// Only a write is acknowledged as one.
bool frm_ContPanel::IsCompletion(std::string_view frame) const {
  const bool is_write = zolt_frame::KindOf(request_.Class) == zolt_frame::kWrite;
  const std::uint8_t kind = zolt_frame::KindOf(zolt_frame::TypeOf(frame));
  return kind != (is_write ? zolt_frame::kReadAcknowledge : zolt_frame::kWriteAcknowledge);
}

// What another master reads or writes of it does not say that this panel's was carried out.
bool frm_ContPanel::IsOfPendingCommand(std::string_view frame) const {
  const int index = IndexOf(zolt_frame::Number(frame, zolt_frame::kId));
  return index < kNoRequestIndex && Pending.at(static_cast<std::size_t>(index));
}

double frm_ContPanel::Milliseconds() const {
  return host_.platform.clock().Now() * kSecondsPerDay * 1000;
}

// After an answer to the first of two equal requests another one may be on its way. An entry of the
// error history counts only when it is asked for, not while another one's may come, and not when it
// is early and the same as the answer before: that one has come twice.
void frm_ContPanel::TakeGood() {
  const std::string& frame = frames_.frame();
  const PanelRequest answered{.Id = zolt_frame::Number(frame, zolt_frame::kId)};
  if (!is_out_ || answered.Id != request_.Id) return TakeUnasked();
  // Sooner than the line can bring it. A clock that was set back proves nothing.
  const std::optional<double> age = open_.Age(answered.Id, Milliseconds());
  const bool is_early = age && *age < TimeOfExchange(host_.line);
  const bool is_same = std::exchange(last_answer_, frame) == frame;
  const bool is_twice = is_early && is_same && !is_fast_;
  if (answered.IsOfHistory() && (is_twice || open_.HasOther(request_))) {
    Pending[kErrorCodeIndex] = true;
    return AwaitQuiet(false);
  }
  // Some adapters bring every answer as soon as that.
  is_fast_ = is_fast_ || (is_early && *age >= 0 && !is_same);
  open_.Answered(answered.Id);
  ProcessKEM3Message(frame);
  is_out_ = false;
  if (is_repeated_ || frames_.IsDoubtful()) return AwaitQuiet(false);
  quiet_watch_.End();
  SendNextRequest();
}

// Behind a late answer to a request of this panel each further one may be late too. Behind one that
// this panel has not asked for the right one is as good as ever.
void frm_ContPanel::TakeUnasked() {
  const std::string& frame = frames_.frame();
  const PanelRequest answered{.Id = zolt_frame::Number(frame, zolt_frame::kId)};
  last_answer_ = frame;
  // It says that the request was damaged, and need not know which it was.
  if (zolt_frame::Text(frame, zolt_frame::kSlave) != host_.SlaveAddress) {
    return TakeAnswer(AnswerKind::kCorrupt);
  }
  const bool is_open = is_out_ && !open_.IsOurs(answered.Id) && !frames_.IsDoubtful();
  open_.Answered(answered.Id);
  if (!answered.IsOfHistory() && !IsOfPendingCommand(frame)) ProcessKEM3Message(frame);
  AwaitQuiet(is_open);
}

void frm_ContPanel::ProcessKEM3Message(std::string_view Raw) {
  if (Raw.empty() || Raw.front() != zolt_frame::kStart) return;
  tim_CommTimeout->SetEnabled(false);
  form.MousePointer = PointerForm::kDefaultPointer;
  try {
    answers_.Apply(Raw);
  } catch (const RunTimeError&) {
    // An answer that ends too early: what it was about stays pending.
  }
}

// --- A line in doubt -----------------------------------------------------------------------------

// `is_open`: the answer to the request that is out still counts if it comes now.
void frm_ContPanel::AwaitQuiet(bool is_open) {
  is_open_ = is_open;
  comm_CtrlPanel->SetRThreshold(1);
  quiet_watch_.Raise();
}

// On a line that stays busy another master may have asked for any entry of the history meanwhile.
void frm_ContPanel::DoubtIsOver(bool is_quiet) {
  constexpr std::uint8_t kAnyEntry = 0xFF;
  if (!is_quiet) {
    for (const int id : {kErrorCodesId, kErrorTimesId}) {
      open_.AddForeign({.Id = id, .DataHi = kAnyEntry});
    }
  }
  is_out_ = false;  // what was to come has come by now
  SendNextRequest();
}

// --- Silence -------------------------------------------------------------------------------------

void frm_ContPanel::TimedOut() {
  tim_CommTimeout->SetEnabled(false);
  quiet_watch_.End();
  form.MousePointer = PointerForm::kDefaultPointer;
  if (!host_.IgnoresErrors()) {
    host_.platform.dialogs().MessageBox({.text = "No communication with slave",
                                         .title = "Communication Timeout",
                                         .icon = Icon::kExclamation});
    // Left meanwhile.
    if (!form.Visible) return;
  }
  // Without the box nothing else says that the values are old.
  is_silent_ = host_.IgnoresErrors() && comm_CtrlPanel->PortOpen();
  CloseQuietly(*comm_CtrlPanel);
  quiet_watch_.End();  // that which began behind the box
  Ask();
}

}  // namespace tarnlink
