#include "tools/frm_scan_slaves.h"

#include <algorithm>

#include "common/numbers.h"
#include "protocols/zolt_frame.h"
#include "protocols/zolt_message.h"
#include "tools/product_text.h"
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

constexpr int kAnswerTime = 2500;  // ms
constexpr int kMostTimeouts = 2;   // after which a known slave is given up

constexpr int kNameStep = 0;
constexpr int kNumberStep = 1;

}  // namespace

const std::array<frm_ScanSlaves::Step, frm_ScanSlaves::kSteps> frm_ScanSlaves::kRequests = {{
    {1, 61},
    {1, 5337},
    {2, 152},
    {2, 1284},
    {2, 164},
}};

frm_ScanSlaves::frm_ScanSlaves(ToolHost& host)
    : ScanSlavesCom(host.platform.CreatePort()),
      ScanSlavesTimer(host.platform.CreateTimer()),
      host_(host),
      quiet_watch_(host.platform, host.line, [this](bool) { ScanSendRequest(); }) {
  form.Visible = false;
  for (int i = 0; i < kAddresses; ++i) {
    txtAddress(i).Text = Hex(i);
    txtAddress(i).Locked = true;
    for (ArrayText* field : Fields(i)) field->Locked = true;
    cmdControlPanel(i).ToolTipText = "Control Panel Slave " + Hex(i);
    cmdControlPanel(i).Click = [this, i] { OpenPanel(i); };
  }
  cmdStart.Click = [this] { Start(); };
  cmdStop.Click = [this] { Stop(); };
  cmdCopy.Click = [this] {
    if (CopyText) CopyText(TableText());
  };
  ScanSlavesCom->SetOnComm([this](int event) { CommEvent(event); });
  ScanSlavesTimer->SetOnTimer([this] { TimerExpired(); });
}

// --- Beginning and end ---------------------------------------------------------------------------

void frm_ScanSlaves::Show() {
  if (form.Visible) return;
  for (int i = 0; i < kAddresses; ++i) {
    for (ArrayText* field : Fields(i)) {
      field->Text = "";
      field->BackColor = kWindowBackground;
    }
  }
  SlavePresent = {};
  ScanOSName = {};
  ScanOSNumber = {};
  ScanAddress = ScanStep = 0;
  form.Visible = true;
  Begin();
}

void frm_ScanSlaves::Unload() {
  if (!form.Visible) return;
  Halt();
  form.Visible = false;
  if (Unloaded) Unloaded();
}

void frm_ScanSlaves::Start() {
  if (form.Visible && !is_running_) Begin();
}

void frm_ScanSlaves::Stop() {
  Halt();
  ShowState();
}

void frm_ScanSlaves::Begin() {
  is_running_ = true;
  ScanRetries = 0;
  try {
    SetServiceLine(*ScanSlavesCom, host_.line);
  } catch (const RunTimeError&) {
    // What no port has is told when it is opened.
  }
  ScanSlavesCom->SetRThreshold(zolt_frame::kLength);
  if (!is_in_panel_) return ScanSendRequest();
  Restart(*ScanSlavesTimer);
  ShowState();
}

void frm_ScanSlaves::Halt() {
  is_running_ = false;
  is_out_ = false;
  trouble_.clear();
  ScanSlavesTimer->SetEnabled(false);
  quiet_watch_.End();
  CloseQuietly(*ScanSlavesCom);
}

void frm_ScanSlaves::ShowState() {
  // The one that can be pressed now first: where both are greyed for a moment, the focus is lost.
  (is_running_ ? cmdStop : cmdStart).Enabled = true;
  (is_running_ ? cmdStart : cmdStop).Enabled = false;
  const std::string address = "address " + Hex(ScanAddress);
  if (!is_running_) {
    lblState.Caption = "Stopped at " + address;
  } else if (!trouble_.empty()) {
    lblState.Caption = "Waiting at " + address + ": " + trouble_;
  } else {
    lblState.Caption = "Scanning " + address;
  }
}

// The request that is cut off is sent once more when the timer expires next, behind the panel.
void frm_ScanSlaves::OpenPanel(int index) {
  if (is_in_panel_ || !host_.GoControlPanel) return;
  CloseQuietly(*ScanSlavesCom);
  is_out_ = false;
  if (quiet_watch_.IsOn()) {
    quiet_watch_.End();
    Restart(*ScanSlavesTimer);
  }
  is_in_panel_ = true;
  try {
    host_.GoControlPanel(index, [this] { is_in_panel_ = false; });
  } catch (...) {
    is_in_panel_ = false;
    throw;
  }
}

// --- Requests ------------------------------------------------------------------------------------

void frm_ScanSlaves::ScanSendRequest() {
  quiet_watch_.End();
  frames_.Clear();
  is_out_ = false;
  trouble_.clear();
  try {
    const std::string frame =
        BuildZoltMessage(Request().data_class, Hex(ScanAddress), Request().id, 0, 0);
    ScanSlavesCom->ClearInBuffer();
    if (ScanSlavesCom->PortOpen()) ScanSlavesCom->SetPortOpen(false);
    ScanSlavesCom->SetPortOpen(true);
    ScanSlavesCom->SetRThreshold(zolt_frame::kLength);
    ScanSlavesCom->Output(frame);
    is_out_ = true;
  } catch (const RunTimeError& error) {
    trouble_ = PortTrouble(error);
  }
  ScanSlavesTimer->SetEnabled(false);
  ScanSlavesTimer->SetInterval(kAnswerTime);
  ScanSlavesTimer->SetEnabled(true);
  ShowState();
}

void frm_ScanSlaves::ScanNextStep() {
  ScanRetries = 0;
  for (ArrayText* field : Fields(ScanAddress)) field->BackColor = kWhite;
  if (SlavePresent[Row()] && ScanStep + 1 < kSteps) {
    ++ScanStep;
  } else {
    ScanStep = 0;
    ScanAddress = (ScanAddress + 1) % kAddresses;
  }
  FieldInWork().BackColor = kFieldInWork;
}

std::array<ArrayText*, frm_ScanSlaves::kFields> frm_ScanSlaves::Fields(int row) const {
  return {&txtType(row), &txtLuP(row), &txtHuP(row), &txtEEPROM(row)};
}

// The first two steps share a field.
ArrayText& frm_ScanSlaves::FieldInWork() {
  const auto step = static_cast<std::size_t>(std::max(ScanStep - kNumberStep, 0));
  ArrayText* const field = Fields(ScanAddress)[step];
  return *field;
}

// Only a request that was out all the time counts as one without an answer.
void frm_ScanSlaves::TimerExpired() {
  if (is_in_panel_) return;
  ScanSlavesTimer->SetEnabled(false);
  if (!is_out_) return ScanSendRequest();
  ++ScanRetries;
  CloseQuietly(*ScanSlavesCom);
  if (SlavePresent[Row()] && ScanRetries < kMostTimeouts) return ScanSendRequest();
  SlavePresent[Row()] = false;
  txtType(ScanAddress).Text = "-";
  EmptyVersions();
  ScanNextStep();
  ScanSendRequest();
}

// --- Answers -------------------------------------------------------------------------------------

void frm_ScanSlaves::CommEvent(int event) {
  // On a port that could not be closed what nobody waits for would come again and again.
  if (!is_running_ || is_in_panel_) return ScanSlavesCom->ClearInBuffer();
  try {
    if (event == kCommReceive) Received();
  } catch (const RunTimeError&) {
    // The timer goes on from here.
  }
  if (event == kCommDeviceGone) DeviceGone();
}

void frm_ScanSlaves::Received() {
  const std::string bytes = ScanSlavesCom->Input();
  if (quiet_watch_.IsOn()) return quiet_watch_.Raise();
  // What comes when nothing has gone out is no answer.
  if (!is_out_) return;
  for (auto kind = frames_.Take(bytes); kind != AnswerKind::kNone; kind = frames_.Take({})) {
    if (kind == AnswerKind::kGood && !IsForUs(frames_.frame())) continue;
    ScanProcessResponse(frames_.frame());
    ScanNextStep();
    return frames_.IsDoubtful() ? AwaitQuiet() : ScanSendRequest();
  }
  ScanSlavesCom->SetRThreshold(frames_.Missing());
}

// False for an answer that came late, or another slave's: the right one is still to come. One that
// says that the request was damaged need not know what it was.
bool frm_ScanSlaves::IsForUs(std::string_view frame) const {
  if (!IsFrom(frame, Hex(ScanAddress))) return false;
  const ZoltMessage message = ParseZoltMessage(frame);
  return message.Ack == zolt_frame::kCorruptedMessage || message.Id == Request().id;
}

// What is still on its way would shift every answer from the next one on.
void frm_ScanSlaves::AwaitQuiet() {
  ScanSlavesTimer->SetEnabled(false);
  ScanSlavesCom->SetRThreshold(1);
  quiet_watch_.Raise();
  ShowState();
}

void frm_ScanSlaves::DeviceGone() {
  const std::string reason = ScanSlavesCom->LossReason();
  if (reason.empty()) return;  // it is open again already
  is_out_ = false;
  trouble_ = reason;
  ShowState();
}

void frm_ScanSlaves::ScanProcessResponse(std::string_view Raw) {
  const ZoltMessage answer = ParseZoltMessage(Raw);
  SlavePresent[Row()] = false;
  if (answer.Ack == 0) {
    if (ScanStep == kNameStep) txtType(ScanAddress).Text = "err";
    EmptyVersions();
  } else if (answer.Ack == zolt_frame::kReadAcknowledge) {
    SlavePresent[Row()] = true;
    StoreAnswer(answer.DataHi, answer.DataLo);
  } else if (answer.Ack == zolt_frame::kUnknownDataId) {
    SlavePresent[Row()] = true;
    StoreUnknown();
  }
}

void frm_ScanSlaves::StoreAnswer(std::uint8_t high, std::uint8_t low) {
  if (ScanStep == kNameStep) {
    ScanOSName[Row()] = ProductText(high, low);
    ShowType();
  } else if (ScanStep == kNumberStep) {
    ScanOSNumber[Row()] = std::to_string(high * 256 + low);
    ShowType();
  } else {
    FieldInWork().Text = VersionText(high, low);
  }
}

void frm_ScanSlaves::StoreUnknown() {
  if (ScanStep == kNameStep) {
    ScanOSName[Row()].clear();
    ShowType();
  } else if (ScanStep == kNumberStep) {
    ScanOSNumber[Row()].clear();
    ShowType();
  } else {
    FieldInWork().Text = "";
  }
}

void frm_ScanSlaves::ShowType() {
  txtType(ScanAddress).Text = ScanOSName[Row()] + ScanOSNumber[Row()];
}

void frm_ScanSlaves::EmptyVersions() {
  for (ArrayText* field : Fields(ScanAddress)) {
    if (field != &txtType(ScanAddress)) field->Text = "";
  }
}

// --- The table as text ---------------------------------------------------------------------------

std::string frm_ScanSlaves::TableText() const {
  std::string text;
  for (int i = lblHeading.first(); i <= lblHeading.last(); ++i) {
    text += lblHeading(i).Caption.get() + (i < lblHeading.last() ? "\t" : "\n");
  }
  for (int i = 0; i < kAddresses; ++i) {
    text += txtAddress(i).Text.get();
    for (const ArrayText* field : Fields(i)) text += "\t" + field->Text.get();
    text += "\n";
  }
  return text;
}

}  // namespace tarnlink
