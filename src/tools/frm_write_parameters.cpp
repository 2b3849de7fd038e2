#include "tools/frm_write_parameters.h"

#include <algorithm>
#include <utility>

#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/shown_text.h"
#include "common/text.h"
#include "common/text_file.h"
#include "platform/path_resolver.h"
#include "protocols/frame_bytes.h"
#include "protocols/zolt_frame.h"
#include "tools/list_file.h"
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

constexpr const char* kTitle = "Write Parameters";
constexpr const char* kWriteTitle = "Write settings";
constexpr const char* kVerifyTitle = "Write & verify settings";

constexpr int kDesignWatch = 3000;  // ms
constexpr int kSecond = 1000;       // ms
constexpr int kMostTries = 3;
constexpr int kGivenUp = 10;
constexpr int kDigits = 4;
constexpr int kMostPassed = 50;  // items that are given up in one go

std::string ItemText(const ParameterItem& item) {
  const auto digits = [](std::int32_t number) { return HexDigits(number, kDigits); };
  return "Class " + std::to_string(item.Class) + "   ID  &H" + digits(item.ID) + "   Value   &H" +
         digits(item.Value);
}

}  // namespace

std::string ShortnPath(const std::string& Path) {
  constexpr int kShort = 12;  // characters
  if (CharacterCount(Path) < kShort) return Path;
  const auto first = std::find_if(Path.begin(), Path.end(), IsSeparator);
  const auto last = std::find_if(Path.rbegin(), Path.rend(), IsSeparator);
  if (first == Path.end() || first + 1 == last.base()) return Path;
  return std::string(Path.begin(), first + 1) + "..." + std::string(last.base() - 1, Path.end());
}

frmWriteParameters::frmWriteParameters(ToolHost& host)
    : Comm(host.platform.CreatePort()),
      CommWatch(host.platform.CreateTimer()),
      host_(host),
      quiet_watch_(host.platform, host.line, [this](bool is_quiet) { LineIsQuiet(is_quiet); }) {
  form.Visible = false;
  txtFilename.Locked = true;
  // What was written is proved, unless the user does not want it.
  chkVerify.Value = true;
  ProgressBar1.Visible = false;
  cmdBrowse.Click = [this] { Browse(); };
  cmdWriteZOLT.Click = [this] { Write(); };
  cmdCancel.Click = [this] { Unload(); };
  cmdCopy.Click = [this] {
    if (CopyText) CopyText(txtScrollStatus.Text());
  };
  cmdSaveList.Click = [this] { SaveList(); };
  Comm->SetOnComm([this](int event) { CommEvent(event); });
  frames_.HeardRequest = [this](std::string_view frame) { HeardRequest(frame); };
  CommWatch->SetInterval(kDesignWatch);
  CommWatch->SetOnTimer([this] { WatchExpired(); });
}

// --- Beginning and end ---------------------------------------------------------------------------

void frmWriteParameters::Show() {
  if (form.Visible) return;
  txtSlave.Text = "0";
  txtFilename.Text = "";
  txtFilename.ToolTipText = "";
  txtScrollStatus.Begin({});
  ParameterPath.clear();
  items_.clear();
  ShowIdle();
  const std::string file = host_.ParameterFile ? host_.ParameterFile() : std::string();
  if (!file.empty()) TakeFile(file);
  form.Visible = true;
}

void frmWriteParameters::Unload() {
  if (!form.Visible || is_asked_ || !MayStop()) return;
  Halt();
  ShowIdle();
  form.Visible = false;
  if (Unloaded) Unloaded();
}

bool frmWriteParameters::MayStop() {
  if (!is_running_) return true;
  is_asked_ = true;
  const Answer answer = host_.platform.dialogs().MessageBox(
      {.text = "Parameters are still being sent. Those sent so far stay in the controller.\r\n"
               "Do you want to stop?",
       .title = kTitle,
       .icon = Icon::kQuestion,
       .buttons = Buttons::kYesNo,
       .second_is_default = true});
  is_asked_ = false;
  if (answer == Answer::kYes) return true;
  if (std::exchange(is_held_, false) && is_running_) SendNextParameter();
  return false;
}

void frmWriteParameters::Halt() {
  is_running_ = false;
  is_out_ = false;
  is_pausing_ = false;
  is_held_ = false;
  verdict_.reset();
  CommWatch->SetEnabled(false);
  quiet_watch_.End();
  CloseQuietly(*Comm);
}

void frmWriteParameters::ShowIdle() {
  ProgressBar1.Visible = false;
  StatusBar1.Text = "";
  lblProgress.Caption = "";
  cmdWriteZOLT.Enabled = !items_.empty();
  cmdBrowse.Enabled = true;
  txtFilename.Enabled = true;
  txtSlave.Enabled = true;
  chkVerify.Enabled = true;
}

// --- The file ------------------------------------------------------------------------------------

void frmWriteParameters::Browse() {
  const std::string folder = host_.ParFolder ? host_.ParFolder() : std::string();
  const auto path =
      host_.platform.dialogs().OpenFile({.title = "Open",
                                         .filter = "Parameter Files (*.par)|*.par",
                                         .folder = UsableFolder(folder, host_.platform.files()),
                                         .extension = "par"});
  if (!path || path->empty()) return;
  if (host_.KeepParFolder) host_.KeepParFolder(FolderOfPath(*path));
  TakeFile(*path);
}

void frmWriteParameters::TakeFile(const std::string& path) {
  ParameterPath = path;
  txtFilename.Text = ShortnPath(path);
  txtFilename.ToolTipText = path;
  lblProgress.Caption = "";
  // A box that comes up must not leave the button to the file before.
  cmdWriteZOLT.Enabled = false;
  ReadParameters();
  cmdWriteZOLT.Enabled = !items_.empty();
}

void frmWriteParameters::ReadParameters() {
  txtScrollStatus.Begin({});
  items_.clear();
  ParameterFile file;
  try {
    file = ReadParameterFile(DecodeText(host_.platform.files().ReadWhole(ParameterPath)));
  } catch (const RunTimeError& error) {
    StatusBar1.Text = "0 parameters";
    host_.platform.dialogs().MessageBox({.text = SystemErrorText(error.code()) +
                                                 "\r\nDuring reading par file " +
                                                 std::exchange(ParameterPath, {}),
                                         .title = "Internal System Error",
                                         .icon = Icon::kCritical,
                                         .detail = error.what()});
    return;
  }
  items_ = std::move(file.items);
  StatusBar1.Text = std::to_string(file.count) + " parameters";
  if (!file.failure) {
    std::string list;
    for (const std::string& comment : file.comments)
      list.append(ShownText(comment, static_cast<int>(comment.size()))).append(kLineEnd);
    for (const ParameterItem& item : items_) list.append(ItemText(item)).append(kLineEnd);
    txtScrollStatus.Begin(std::move(list));
    return;
  }
  const std::string path = std::exchange(ParameterPath, {});
  host_.platform.dialogs().MessageBox(
      {.text = "Error in file " + ShortnPath(path) + " line " + std::to_string(file.failure->line),
       .title = kTitle,
       .icon = Icon::kCritical,
       .detail = file.failure->reason});
}

// --- Sending -------------------------------------------------------------------------------------

void frmWriteParameters::AddMonitorText(const std::string& Text, bool AddNewLine) {
  txtScrollStatus.Append(AddNewLine ? Text + std::string(kLineEnd) : Text);
}

void frmWriteParameters::Write() {
  if (is_running_ || items_.empty()) return;
  if (!zolt_frame::IsSlave(Slave())) {
    host_.platform.dialogs().MessageBox({.text = "A slave has an address from 0 to F.",
                                         .title = kTitle,
                                         .icon = Icon::kExclamation});
    return;
  }
  WritePhase = 1;
  ParameterIndex = RetryCount = NotSentCount = VerifiedCount = acknowledged_ = 0;
  requests_ = 0;
  ProgressBar1.Max = Count();
  ProgressBar1.Visible = true;
  txtScrollStatus.Begin({});
  StatusBar1.Text = "Writing to ZOLT";
  AddMonitorText("Writing parameters", true);
  cmdWriteZOLT.Enabled = false;
  cmdBrowse.Enabled = false;
  txtFilename.Enabled = false;
  txtSlave.Enabled = false;
  chkVerify.Enabled = false;
  is_running_ = true;
  try {
    SetServiceLine(*Comm, host_.line);
  } catch (const RunTimeError& error) {
    return Fail(PortTrouble(error));
  }
  SendNextParameter();
}

bool frmWriteParameters::BeginVerify() {
  if (!chkVerify.Value || WritePhase != 1) return false;
  WritePhase = 0;
  ParameterIndex = RetryCount = requests_ = 0;
  StatusBar1.Text = "Verifing parameters";
  AddMonitorText("Verifing parameters", true);
  return true;
}

void frmWriteParameters::SendNextParameter() {
  if (is_asked_) {
    is_held_ = true;
    return;
  }
  for (int passed = 0; is_running_; ++passed) {
    ProgressBar1.Value = ParameterIndex;
    // Those that can not be sent must not keep the user waiting.
    if (passed >= kMostPassed) return Pause(1);
    if (RetryCount >= kMostTries) {
      AddMonitorText("Continue with next parameter", true);
      ++NotSentCount;
      NextItem();
    }
    if (ParameterIndex < Count()) {
      if (SendItem()) return;
    } else if (!BeginVerify()) {
      return EndOfPhases();
    }
  }
}

// False if there is nothing to wait for.
bool frmWriteParameters::SendItem() {
  ShowProgress();
  AddMonitorText((RetryCount == 0 ? "Sending  " : "Retry  ") + ItemText(Item()) + ".. ", false);
  request_ = MakeParameterRequest(Item(), WritePhase == 1, Slave(), messages_);
  if (request_.frame.empty()) {
    AddMonitorText("protected area", true);
    RetryCount = kGivenUp;
    return false;
  }
  frames_.Clear();
  hears_master_ = false;
  ++requests_;
  try {
    Comm->ClearInBuffer();
    if (Comm->PortOpen()) Comm->SetPortOpen(false);
    Comm->SetPortOpen(true);
    Comm->SetRThreshold(zolt_frame::kLength);
    Comm->Output(request_.frame);
  } catch (const RunTimeError& error) {
    Fail(PortTrouble(error));
    return true;
  }
  is_out_ = true;
  Watch(AnswerTime());
  return true;
}

void frmWriteParameters::ShowProgress() {
  lblProgress.Caption = std::string(WritePhase == 1 ? "Writing" : "Verifying") + " parameter " +
                        std::to_string(ParameterIndex + 1) + " of " + std::to_string(Count()) +
                        ", " + std::to_string(Count() - ParameterIndex - 1) + " left";
}

int frmWriteParameters::AnswerTime() const {
  return host_.MsgTimeout ? host_.MsgTimeout() * kSecond : kDesignWatch;
}

void frmWriteParameters::Watch(int milliseconds) {
  CommWatch->SetInterval(milliseconds);
  Restart(*CommWatch);
}

// Before the next item, or the rest of many.
void frmWriteParameters::Pause(int milliseconds) {
  is_pausing_ = true;
  Watch(milliseconds);
}

void frmWriteParameters::WatchExpired() {
  CommWatch->SetEnabled(false);
  if (!is_running_) return;
  is_out_ = false;
  if (std::exchange(is_pausing_, false)) return SendNextParameter();
  ++RetryCount;
  AddMonitorText("TimeOut", true);
  GoOn(false, requests_ > 1);
}

// --- Answers -------------------------------------------------------------------------------------

void frmWriteParameters::CommEvent(int event) {
  // On a port that could not be closed what nobody waits for would come again and again.
  if (!is_running_) return Comm->ClearInBuffer();
  if (event == kCommDeviceGone && !Comm->LossReason().empty()) return Fail(Comm->LossReason());
  try {
    if (event == kCommReceive) Received();
  } catch (const RunTimeError&) {
    // The timer goes on from here.
  }
}

void frmWriteParameters::Received() {
  const std::string bytes = Comm->Input();
  if (quiet_watch_.IsOn()) {
    quiet_watch_.Raise();
    return Overhear(bytes);
  }
  if (!is_out_) return;
  for (auto kind = frames_.Take(bytes); kind != AnswerKind::kNone; kind = frames_.Take({})) {
    const std::string answer = frames_.frame();
    if (kind != AnswerKind::kGood) return Answered(kUnusableAnswer, true);
    if (IsForAnother(answer)) continue;
    // Of two answers at once nobody knows which one is to the read.
    const bool is_doubtful = frames_.IsDoubtful() || (hears_master_ && IsMemoryRead());
    if (is_doubtful && !request_.is_write) return Answered(kUnusableAnswer, true);
    const ParameterVerdict verdict = JudgeAnswer(answer, request_, messages_);
    const bool is_unusable = verdict.outcome == ParameterOutcome::kUnusable;
    if (IsMemoryRead() && !is_unusable) return Hold(verdict, answer);
    return Answered(verdict, is_doubtful || is_unusable);
  }
  Comm->SetRThreshold(frames_.Missing());
}

// The answer to a read of memory does not bear its address: one to an earlier read would pass for
// it, and it for that to the next. So it counts only if nothing else comes behind it.
void frmWriteParameters::Hold(const ParameterVerdict& verdict, const std::string& answer) {
  CommWatch->SetEnabled(false);
  is_out_ = false;
  verdict_ = verdict;
  held_answer_ = answer;
  is_contradicted_ = false;
  AwaitQuiet(requests_ > 1);
}

// What comes while the line is to be quiet. The same answer once more says nothing new.
void frmWriteParameters::Overhear(const std::string& bytes) {
  for (auto kind = frames_.Take(bytes); kind != AnswerKind::kNone; kind = frames_.Take({})) {
    const bool is_same = kind == AnswerKind::kGood && frames_.frame() == held_answer_;
    const bool is_foreign = kind == AnswerKind::kGood && !IsFrom(frames_.frame(), Slave());
    if (!is_same && !is_foreign) is_contradicted_ = true;
  }
}

void frmWriteParameters::LineIsQuiet(bool is_quiet) {
  if (!verdict_) return SendNextParameter();
  const ParameterVerdict verdict = *std::exchange(verdict_, std::nullopt);
  // A part of a frame may be what is left of the true answer.
  const bool is_rest = frames_.Missing() < zolt_frame::kLength;
  const bool is_proved = is_quiet && !is_rest && !is_contradicted_ && !hears_master_;
  Take(is_proved ? verdict : kUnusableAnswer);
  SendNextParameter();
}

// Another master's read of memory of our slave: nobody knows whom its answer is for.
void frmWriteParameters::HeardRequest(std::string_view frame) {
  const bool is_ours = frame == request_.frame;
  const bool is_memory = zolt_frame::ClassOf(zolt_frame::TypeOf(frame)) == zolt_frame::kMemoryClass;
  if (!is_ours && is_memory && IsFrom(frame, Slave())) hears_master_ = true;
}

std::string frmWriteParameters::Slave() const {
  const std::string slave = ToUpper(txtSlave.Text->substr(0, 1));
  return slave.empty() ? "0" : slave;
}

// Another slave's, or that to an earlier message which came late: the right one is still to come.
bool frmWriteParameters::IsForAnother(std::string_view answer) const {
  if (!IsFrom(answer, Slave())) return true;
  if (IsAbout(answer, request_, messages_)) return false;
  // Where nothing times out, there is nothing that would ask again.
  if (AnswerTime() == 0) return false;
  const ParameterItem about = ItemOf(answer, messages_);
  if (request_.is_write && IsSameItem(about, request_.item)) return false;
  return std::any_of(items_.begin(), items_.end(),
                     [&](const ParameterItem& item) { return IsSameItem(item, about); });
}

void frmWriteParameters::Answered(const ParameterVerdict& verdict, bool is_doubtful) {
  CommWatch->SetEnabled(false);
  is_out_ = false;
  const bool was_repeated = requests_ > 1;
  Take(verdict);
  GoOn(is_doubtful, was_repeated);
}

void frmWriteParameters::Take(const ParameterVerdict& verdict) {
  AddMonitorText(verdict.word, true);
  switch (verdict.outcome) {
    case ParameterOutcome::kRetry:
    case ParameterOutcome::kUnusable:
      ++RetryCount;
      break;
    case ParameterOutcome::kGiveUp:
      RetryCount = kGivenUp;
      break;
    case ParameterOutcome::kVerified:
    case ParameterOutcome::kNext:
      VerifiedCount += verdict.outcome == ParameterOutcome::kVerified ? 1 : 0;
      acknowledged_ += WritePhase == 1 ? 1 : 0;
      NextItem();
  }
}

void frmWriteParameters::NextItem() {
  ++ParameterIndex;
  RetryCount = 0;
  requests_ = 0;
}

void frmWriteParameters::GoOn(bool is_doubtful, bool was_repeated) {
  const bool is_confusable =
      IsNextConfusable() || (was_repeated && (IsNextOnSamePage() || IsSameItemReadNext()));
  if (is_doubtful || is_confusable) return AwaitQuiet(is_confusable && was_repeated);
  SendNextParameter();
}

bool frmWriteParameters::IsMemoryRead() const {
  return !request_.is_write && request_.item.Class == kMemoryParameterClass;
}

bool frmWriteParameters::IsRetryNext() const { return RetryCount > 0 && RetryCount < kMostTries; }

// The item that goes out next; nothing where the one in work is tried again, or was the last. Those
// that cannot be sent are passed over.
const ParameterItem* frmWriteParameters::NextItemToSend() const {
  if (IsRetryNext()) return nullptr;
  const bool is_writing = WritePhase == 1;
  const int next = ParameterIndex + (RetryCount >= kMostTries ? 1 : 0);
  for (auto i = static_cast<std::size_t>(next); i < items_.size(); ++i) {
    if (!is_writing || CanBeWritten(items_[i])) return &items_[i];
  }
  return nullptr;
}

// Behind the last write. A refusal bears class and ID, and not what was refused.
bool frmWriteParameters::IsSameItemReadNext() const {
  return WritePhase == 1 && chkVerify.Value && !IsRetryNext() && NextItemToSend() == nullptr &&
         IsSameItem(items_.front(), request_.item);
}

// Whether what may still come for the item before would pass for the answer to another one.
bool frmWriteParameters::IsNextConfusable() const {
  const ParameterItem* next = NextItemToSend();
  return next != nullptr && (IsMemoryRead() || IsSameItem(*next, request_.item));
}

// A refusal of a write to memory bears the alias of its page, and no more.
bool frmWriteParameters::IsNextOnSamePage() const {
  const ParameterItem* next = NextItemToSend();
  const auto page = [](const ParameterItem& item) { return item.ID >> 8; };
  return next != nullptr && next->Class == kMemoryParameterClass &&
         request_.item.Class == kMemoryParameterClass && page(*next) == page(request_.item);
}

// What is still on its way would shift every answer from the next one on. Those to a message that
// was repeated come as far apart as it went out.
void frmWriteParameters::AwaitQuiet(bool was_repeated) {
  Comm->SetRThreshold(1);
  if (!was_repeated) return quiet_watch_.Raise();
  const int answer_time = AnswerTime();
  quiet_watch_.Settle(answer_time > 0 ? answer_time : kDesignWatch);
}

// --- The end of the phases -----------------------------------------------------------------------

void frmWriteParameters::EndOfPhases() {
  Halt();
  ShowIdle();
  AddMonitorText(StatusBar1.Text, true);
  Report();
}

void frmWriteParameters::Report() {
  MessageBoxRequest box{.text = "", .title = kWriteTitle, .icon = Icon::kInformation};
  const bool is_verified = chkVerify.Value;
  if (is_verified) box.title = kVerifyTitle;
  const int not_ok = Count() - VerifiedCount;
  if (NotSentCount != 0) {
    box.text = std::to_string(NotSentCount) + " parameters NOT send.";
    if (is_verified) {
      box.text += " " + std::to_string(not_ok - NotSentCount) + " parameters NOT ok.";
    } else {
      box.icon = Icon::kCritical;
    }
  } else if (!is_verified) {
    box.text = "All parameters set.";
  } else if (not_ok == 0) {
    box.text = "All parameters set. And verified.";
  } else {
    box.text = "All parameters writen. " + std::to_string(not_ok) + " parameters NOT ok.";
  }
  box.detail = StateText();
  lblProgress.Caption = box.detail;
  host_.platform.dialogs().MessageBox(box);
}

std::string frmWriteParameters::StateText() const {
  const std::string acknowledged = std::to_string(acknowledged_) + " of " +
                                   std::to_string(Count()) + " parameters were acknowledged";
  if (!chkVerify.Value) return acknowledged + ".";
  return acknowledged + ", " + std::to_string(VerifiedCount) + " verified.";
}

// Without its port it stops where it is.
void frmWriteParameters::Fail(const std::string& reason) {
  const std::string state = StateText();
  Halt();
  ShowIdle();
  const bool is_word_missing = txtScrollStatus.Text().ends_with(". ");
  AddMonitorText((is_word_missing ? std::string(kLineEnd) : "") + reason, true);
  lblProgress.Caption = state;
  host_.platform.dialogs().MessageBox(
      {.text = reason, .title = kTitle, .icon = Icon::kCritical, .detail = state});
}

void frmWriteParameters::SaveList() {
  SaveListFile(host_.platform, {.title = kTitle,
                                .file_name = "Parameters.txt",
                                .folder = FolderOfPath(ParameterPath),
                                .text = txtScrollStatus.Text()});
}

}  // namespace tarnlink
