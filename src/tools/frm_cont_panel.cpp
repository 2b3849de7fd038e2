#include "tools/frm_cont_panel.h"

#include <algorithm>
#include <utility>

#include "common/dates.h"
#include "common/run_time_error.h"
#include "protocols/zolt_frame.h"
#include "protocols/zolt_message.h"
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

constexpr int kTimeout = 3000;  // ms
constexpr int kQuietTick = 20;  // ms
constexpr const char* kTitle = "Customer Control Panel";

}  // namespace

frm_ContPanel::frm_ContPanel(ToolHost& host)
    : comm_CtrlPanel(host.platform.CreatePort()),
      tim_CommTimeout(host.platform.CreateTimer()),
      host_(host),
      answers_(*this),
      quiet_watch_(host.platform.CreateTimer()) {
  caption.Caption = kTitle;
  tim_CommTimeout->SetInterval(kTimeout);
  quiet_watch_->SetInterval(kQuietTick);
  BindEvents();
}

void frm_ContPanel::BindEvents() {
  tim_CommTimeout->SetOnTimer([this] { TimedOut(); });
  quiet_watch_->SetOnTimer([this] { QuietTick(); });
  comm_CtrlPanel->SetOnComm([this](int event) { Received(event); });
  SSTab1.Click = [this] { UpdateCurrentTab(); };
  chkContinuousUpdate.Click = [this] { UpdateCurrentTab(); };
  int tab = 0;
  for (CommandButton* update : {&cmdUpdateStatus, &cmdUpdateConfig, &cmdUpdateSensors,
                                &cmdUpdateError, &cmdUpdateStatistics}) {
    update->Click = [this, tab] { Update(tab); };
    ++tab;
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
  is_fast_ = false;
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
  EndQuiet();
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

// What the user asks for has its own time.
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
  if (quiet_watch_->Enabled()) return;
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
    lblLine.Caption = "";
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
    if (quiet_watch_->Enabled()) return doubt_.Raise();
    AnswerKind kind = frames_.Take(bytes);
    while (kind == AnswerKind::kGood && !IsOurs(frames_.frame())) kind = frames_.Take({});
    TakeAnswer(kind);
  } catch (const RunTimeError&) {
    // The time-out follows.
  }
}

void frm_ContPanel::TakeAnswer(AnswerKind kind) {
  switch (kind) {
    case AnswerKind::kNone:
      return comm_CtrlPanel->SetRThreshold(frames_.Missing());
    case AnswerKind::kGood:
      return TakeGood();
    case AnswerKind::kCorrupt:
      is_out_ = false;
      return SendNextRequest();
    case AnswerKind::kTorn:
      return AwaitQuiet();
  }
}

// The answer of another slave is not for this panel: its own is still to come.
bool frm_ContPanel::IsOurs(std::string_view frame) const {
  return zolt_frame::Text(frame, zolt_frame::kSlave) == host_.SlaveAddress;
}

double frm_ContPanel::Milliseconds() const {
  return host_.platform.clock().Now() * kSecondsPerDay * 1000;
}

// Sooner than the line can bring it.
bool frm_ContPanel::IsEarly(int id) const {
  return open_.IsEarly(id, Milliseconds(), TimeOfExchange(host_.line));
}

// After an answer to something else, or to the first of two equal requests, another one may be on
// its way. An entry of the error history counts only when it is asked for, and not when it is early
// and the same as the answer before: that one has come twice.
void frm_ContPanel::TakeGood() {
  const std::string& frame = frames_.frame();
  const PanelRequest answered{.Id = zolt_frame::Number(frame, zolt_frame::kId)};
  const bool is_asked = is_out_ && answered.Id == request_.Id;
  const bool is_early = is_asked && IsEarly(answered.Id);
  const bool is_same = std::exchange(last_answer_, frame) == frame;
  if (answered.IsOfHistory() && is_early && is_same && !is_fast_) {
    Pending[kErrorCodeIndex] = true;
    return AwaitQuiet();
  }
  // Some adapters bring every answer as soon as that.
  is_fast_ = is_fast_ || (is_early && !is_same);
  open_.Answered(answered.Id);
  if (is_asked || !answered.IsOfHistory()) ProcessKEM3Message(frame);
  if (is_asked) is_out_ = false;
  if (!is_asked || is_repeated_ || frames_.IsDoubtful()) return AwaitQuiet();
  SendNextRequest();
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

void frm_ContPanel::AwaitQuiet() {
  comm_CtrlPanel->SetRThreshold(zolt_frame::kLength);
  doubt_.Raise();
  quiet_watch_->SetEnabled(true);
}

void frm_ContPanel::QuietTick() {
  if (comm_CtrlPanel->InBufferCount() > 0) {
    comm_CtrlPanel->ClearInBuffer();
    doubt_.Raise();
  }
  if (!doubt_.AllowsRequest(kQuietTick, TimeOfExchange(host_.line))) return;
  EndQuiet();
  is_out_ = false;  // what was to come has come by now
  SendNextRequest();
}

void frm_ContPanel::EndQuiet() {
  quiet_watch_->SetEnabled(false);
  doubt_.Clear();
}

// --- Silence -------------------------------------------------------------------------------------

void frm_ContPanel::TimedOut() {
  tim_CommTimeout->SetEnabled(false);
  EndQuiet();
  form.MousePointer = PointerForm::kDefaultPointer;
  if (!host_.IgnoresErrors()) {
    host_.platform.dialogs().MessageBox({.text = "No communication with slave",
                                         .title = "Communication Timeout",
                                         .icon = Icon::kExclamation});
    // Left meanwhile.
    if (!form.Visible) return;
  }
  CloseQuietly(*comm_CtrlPanel);
  EndQuiet();
  Restart(*tim_CommTimeout);
  SendNextRequest();
}

}  // namespace tarnlink
