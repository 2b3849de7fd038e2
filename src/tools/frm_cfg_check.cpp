#include "tools/frm_cfg_check.h"

#include <algorithm>
#include <utility>

#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "common/text_file.h"
#include "platform/path_resolver.h"
#include "protocols/zolt_frame.h"
#include "protocols/zolt_message.h"
#include "tools/cfg_stages.h"
#include "tools/list_file.h"
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

constexpr int kPause = 100;       // ms ahead of each message
constexpr int kAnswerTime = 300;  // ms
// That an answer may be before what seems to be one to an older message is taken for what it is.
constexpr int kMostLate = 2000;  // ms
constexpr int kSlaves = 16;

// Why a message goes out once more.
constexpr const char* kNoAnswer = "no answer";
constexpr const char* kMessageDamaged = "the message was damaged";
constexpr const char* kAnswerDamaged = "the answer was damaged";
constexpr const char* kOldAnswer = "an old answer came";

constexpr const char* kHeading =
    "ID\tMinimum\tMaximum\tDefault\tDescription\tTest type\tRead\tResult";

std::string RowOf(const ConfigItem& item) {
  const std::string row = Stuff(Hex(item.ID), 4) + "\t" + std::to_string(item.Minimum) + "\t" +
                          std::to_string(item.Maximum) + "\t" + item.DefaultText + "\t" +
                          item.Description + "\t" + std::to_string(item.TestType);
  if (item.Result == ConfigItem::kNoResult) return row + item.Result;
  const std::string read = item.ReadValue ? std::to_string(*item.ReadValue) : "";
  return row + "\t" + read + "\t" + item.Result;
}

}  // namespace

frm_CfgCheck::frm_CfgCheck(ToolHost& host)
    : CfgCom(host.platform.CreatePort()),
      tim_cfgread(host.platform.CreateTimer()),
      tim_cfgread_timeout(host.platform.CreateTimer()),
      host_(host),
      late_(host.platform.CreateTimer()),
      quiet_watch_(host.platform, host.line, [this](bool) { LineIsQuiet(); }) {
  form.Visible = false;
  txt_ConfigurationFile.Text = kNoFile;
  txt_ConfigurationFile.Locked = true;
  lblHeading.Caption = kHeading;
  std::vector<ComboBox::Item> slaves;
  for (int i = 0; i < kSlaves; ++i) slaves.push_back({Hex(i), i});
  cmb_Slave.List = slaves;
  cmb_Slave.Select(0);
  tim_cfgread->SetInterval(kPause);
  tim_cfgread_timeout->SetInterval(kAnswerTime);
  BindControls();
  ShowButtons();
}

void frm_CfgCheck::BindControls() {
  cmd_Open.Click = [this] { OpenFile(); };
  cmd_Check.Click = [this] { Check(); };
  cmd_Stop.Click = [this] { Stop(); };
  cmd_Save.Click = [this] { Save(); };
  cmd_Copy.Click = [this] {
    if (CopyText) CopyText(ListText());
  };
  CfgCom->SetOnComm([this](int event) { CommEvent(event); });
  tim_cfgread->SetOnTimer([this] { SendMessage(); });
  tim_cfgread_timeout->SetOnTimer([this] { TimedOut(); });
  late_->SetOnTimer([this] { late_->SetEnabled(false); });
}

// --- Beginning and end ---------------------------------------------------------------------------

// A file may have been edited since the form was closed.
void frm_CfgCheck::Show() {
  if (form.Visible) return;
  Empty();
  cmb_Slave.Select(0);
  form.Visible = true;
}

void frm_CfgCheck::Empty() {
  txt_ConfigurationFile.Text = kNoFile;
  txt_ConfigurationFile.ToolTipText = "";
  ConfigItems.clear();
  writes_.clear();
  left_out_ = CfgIndex = CfgStage = 0;
  lblState.Caption = "";
  ShowRows();
  ProgressBar1.Max = Count() + 1;
  ShowCount();
  ShowButtons();
}

void frm_CfgCheck::Unload() {
  if (!form.Visible || is_asking_) return;
  if (is_running_) {
    is_asking_ = true;
    const Answer answer = host_.platform.dialogs().MessageBox(
        {.text = "The check is running. Stop it and close the window?",
         .title = caption.Caption,
         .icon = Icon::kQuestion,
         .buttons = Buttons::kYesNo,
         .second_is_default = true});
    is_asking_ = false;
    if (answer != Answer::kYes) return;
  }
  if (is_running_) Stop();
  form.Visible = false;
  if (Unloaded) Unloaded();
}

void frm_CfgCheck::Check() {
  if (is_running_) return;
  if (txt_ConfigurationFile.Text.get() == kNoFile) {
    host_.platform.dialogs().MessageBox({.text = "The configuration file is not specified.",
                                         .title = caption.Caption,
                                         .icon = Icon::kInformation});
    return;
  }
  if (ConfigItems.empty()) return Finish();
  if (!Begin()) return;
  ClearResults();
  CfgIndex = CfgStage = 0;
  is_begun_ = false;
  is_running_ = true;
  is_doubtful_ = late_->Enabled();
  repeats_ = 0;
  ShowCount();
  ShowButtons();
  ShowState();
  GoOn();
}

bool frm_CfgCheck::Begin() {
  try {
    if (!CfgCom->PortOpen()) {
      SetServiceLine(*CfgCom, host_.line);
      CfgCom->SetPortOpen(true);
    }
  } catch (const RunTimeError& error) {
    ErrorHandler(PortTrouble(error));
    return false;
  }
  // At the lowest speed an exchange alone takes nearly as long as a slave is waited for.
  const int exchange = TimeOfExchange(host_.line) + kThinkingTime;
  tim_cfgread_timeout->SetInterval(std::max(kAnswerTime, exchange));
  late_->SetInterval(tim_cfgread_timeout->Interval() + exchange);
  return true;
}

void frm_CfgCheck::Stop() {
  if (!is_running_) return;
  ShutDownCom();
  MarkUnreached();
  lblState.Caption = StoppedText() + ".";
}

void frm_CfgCheck::ShutDownCom() {
  if (is_doubtful_ || quiet_watch_.IsOn() || tim_cfgread_timeout->Enabled()) Restart(*late_);
  is_running_ = is_doubtful_ = asks_again_ = false;
  tim_cfgread->SetEnabled(false);
  tim_cfgread_timeout->SetEnabled(false);
  quiet_watch_.End();
  frames_.Clear();
  CloseQuietly(*CfgCom);
  ShowButtons();
}

// The port first: in the box the timers go on.
void frm_CfgCheck::ErrorHandler(const std::string& text) {
  const bool was_running = is_running_;
  ShutDownCom();
  if (was_running) MarkUnreached();
  const std::string stop = text.ends_with('.') ? " " : ". ";
  lblState.Caption = was_running ? text + stop + StoppedText() + "." : text;
  host_.platform.dialogs().MessageBox({.text = text, .title = "Error", .icon = Icon::kCritical});
}

void frm_CfgCheck::Finish() {
  ShutDownCom();
  ProgressBar1.Value = ProgressBar1.Max;
  const auto is_good = [](const ConfigItem& item) { return VerdictOf(item) == CfgVerdict::kGood; };
  const auto good = std::count_if(ConfigItems.begin(), ConfigItems.end(), is_good);
  const std::string result = ConfigItems.empty()
                                 ? "no items"
                                 : std::to_string(good) + " of " + std::to_string(Count()) + " OK";
  lblState.Caption = "Finished: " + result + LeftOutText();
}

// The one in work has been reached.
void frm_CfgCheck::MarkUnreached() {
  const int first = CfgIndex + (is_begun_ ? 1 : 0);
  for (auto i = static_cast<std::size_t>(first); i < ConfigItems.size(); ++i) {
    if (ConfigItems[i].HasDefault()) ConfigItems[i].Result = kCfgNotChecked;
  }
  ShowRows();
}

// --- The file ------------------------------------------------------------------------------------

void frm_CfgCheck::OpenFile() {
  if (is_running_) return;
  const auto path =
      host_.platform.dialogs().OpenFile({.filter = "Configuration default files (*.cfg)|*.cfg",
                                         .file_name = "*.cfg",
                                         .folder = UsableFolder(folder_, host_.platform.files())});
  // While the box was up.
  if (is_running_) return;
  Empty();
  if (!path) return;
  folder_ = FolderOfPath(*path);
  const auto file = ReadFile(*path);
  if (!file) return;
  txt_ConfigurationFile.Text = *path;
  txt_ConfigurationFile.ToolTipText = *path;
  ConfigItems = file->items;
  left_out_ = file->left_out;
  ShowRows();
  ProgressBar1.Max = Count() + 1;
  ShowCount();
  ShowButtons();
  if (file->failure) TellBadLine(*file->failure);
  if (file->too_many) TellBadLine(*file->too_many);
}

std::optional<ConfigFile> frm_CfgCheck::ReadFile(const std::string& path) {
  try {
    return ReadConfigFile(DecodeText(host_.platform.files().ReadWhole(path)));
  } catch (const RunTimeError& error) {
    host_.platform.dialogs().MessageBox({.text = "The configuration file can not be read.",
                                         .title = "Error",
                                         .icon = Icon::kCritical,
                                         .detail = error.what()});
    return std::nullopt;
  }
}

void frm_CfgCheck::TellBadLine(const BadLine& line) {
  host_.platform.dialogs().MessageBox(
      {.text = "Line " + std::to_string(line.line) + " of the configuration file is wrong.",
       .title = caption.Caption,
       .icon = Icon::kExclamation,
       .detail = line.reason + " What the list shows is what will be checked."});
}

void frm_CfgCheck::ClearResults() {
  for (ConfigItem& item : ConfigItems) {
    item.ReadValue.reset();
    item.Result = ConfigItem::kNoResult;
  }
  ShowRows();
}

// --- Messages ------------------------------------------------------------------------------------

void frm_CfgCheck::SendMessage() {
  tim_cfgread->SetEnabled(false);
  if (!is_running_) return;
  // While the user is asked nothing goes out.
  if (is_asking_) {
    ShowState();
    return Restart(*tim_cfgread);
  }
  // Somebody is in the middle of a frame.
  if (frames_.Missing() < zolt_frame::kLength) return AwaitQuiet();
  is_doubtful_ = false;
  repeats_ = 0;
  heard_ = kNoAnswer;
  old_answer_.clear();
  is_behind_quiet_ = false;
  message_ = CfgMessage(Item(), CfgStage, cmb_Slave.Text);
  Output();
  ShowState();
}

void frm_CfgCheck::ResendMsg() {
  // Its answer may come twice.
  is_doubtful_ = true;
  trouble_ = std::exchange(heard_, kNoAnswer);
  ++repeats_;
  Output();
}

void frm_CfgCheck::TimedOut() {
  if (!is_running_) return;
  if (is_asking_) return Restart(*tim_cfgread_timeout);
  // Its answer is on its way: sent again now, it would be cut, and so would be the next one.
  const bool is_arriving = CfgCom->InBufferCount() > 0 || frames_.Missing() < zolt_frame::kLength;
  if (is_arriving && !std::exchange(is_prolonged_, true)) return Restart(*tim_cfgread_timeout);
  if (!old_answer_.empty() && !is_behind_quiet_) {
    tim_cfgread_timeout->SetEnabled(false);
    asks_again_ = true;
    AwaitQuiet();
    return quiet_watch_.Settle(kMostLate);
  }
  ResendMsg();
  ShowState();
}

void frm_CfgCheck::LineIsQuiet() {
  if (!std::exchange(asks_again_, false)) return SendMessage();
  if (!is_running_) return;
  if (is_asking_) {
    asks_again_ = true;
    return quiet_watch_.Raise();
  }
  is_behind_quiet_ = true;
  ResendMsg();
  ShowState();
}

void frm_CfgCheck::Output() {
  frames_.Clear();
  is_prolonged_ = false;
  try {
    CfgCom->ClearInBuffer();
    CfgCom->SetRThreshold(zolt_frame::kLength);
    CfgCom->Output(message_);
    is_begun_ = true;
    Restart(*tim_cfgread_timeout);
  } catch (const RunTimeError& error) {
    ErrorHandler(PortTrouble(error));
  }
}

// --- Answers -------------------------------------------------------------------------------------

void frm_CfgCheck::CommEvent(int event) {
  if (event == kCommDeviceGone) {
    const std::string reason = CfgCom->LossReason();
    if (is_running_ && !reason.empty()) ErrorHandler(reason);
    return;
  }
  if (event != kCommReceive) return;
  try {
    Received();
  } catch (const RunTimeError&) {
    // The message goes out once more.
  }
}

void frm_CfgCheck::Received() {
  const std::string bytes = CfgCom->Input();
  if (!is_running_) return;
  if (quiet_watch_.IsOn()) return quiet_watch_.Raise();
  const bool is_awaited = tim_cfgread_timeout->Enabled();
  for (auto kind = frames_.Take(bytes); kind != AnswerKind::kNone; kind = frames_.Take({})) {
    const bool is_good = kind == AnswerKind::kGood;
    if (is_good && !IsForUs(frames_.frame())) continue;
    // In the pause: what follows may be out of step.
    if (!is_awaited) return AwaitQuiet();
    if (!is_good || frames_.IsDoubtful()) is_doubtful_ = true;
    if (!is_good) heard_ = kAnswerDamaged;
    if (is_good && IsAnswer(frames_.frame())) return ProcessAnswer(frames_.frame());
    if (kind == AnswerKind::kTorn) frames_.Clear();
  }
  CfgCom->SetRThreshold(is_awaited ? frames_.Missing() : 1);
}

// False for another slave's and for another ID's.
bool frm_CfgCheck::IsForUs(std::string_view frame) const {
  const ZoltMessage answer = ParseZoltMessage(frame);
  if (answer.Ack == zolt_frame::kCorruptedMessage) return IsFrom(frame, cmb_Slave.Text.get());
  return zolt_frame::Text(frame, zolt_frame::kSlave) == cmb_Slave.Text.get() &&
         answer.Class == kParameterClass && answer.Id == Item().ID;
}

// Behind one that says that the message was damaged, it goes out once more: nothing has been tried
// by it. Behind an old one, the right one is still to come.
bool frm_CfgCheck::IsAnswer(std::string_view frame) {
  const ZoltMessage answer = ParseZoltMessage(frame);
  if (answer.Ack == zolt_frame::kCorruptedMessage) {
    heard_ = kMessageDamaged;
    return false;
  }
  if (!IsStale(Item(), CfgStage, answer, writes_)) return true;
  // What comes again behind a quiet line is what the slave has to say.
  if (is_behind_quiet_ && frame == old_answer_) return true;
  if (frame != old_answer_) is_behind_quiet_ = false;
  old_answer_ = frame;
  heard_ = kOldAnswer;
  is_doubtful_ = true;
  return false;
}

void frm_CfgCheck::ProcessAnswer(std::string_view frame) {
  tim_cfgread_timeout->SetEnabled(false);
  repeats_ = 0;
  const ZoltMessage answer = ParseZoltMessage(frame);
  KeepWrite(answer);
  if (CfgStage == kReadDefault && answer.Ack == zolt_frame::kReadAcknowledge) {
    Item().ReadValue = answer.DataHi;
  }
  const std::string failure = CfgFailure(Item(), CfgStage, answer);
  const auto next = NextStage(Item(), CfgStage);
  if (failure.empty() && next) {
    CfgStage = *next;
    return GoOn();
  }
  EndItem(failure.empty() ? kCfgGood : failure);
}

void frm_CfgCheck::KeepWrite(const ZoltMessage& answer) {
  if (!IsWrite(CfgStage)) return;
  const CfgWrite one{Item().ID, WrittenValue(Item(), CfgStage), answer.Ack};
  if (std::find(writes_.begin(), writes_.end(), one) == writes_.end()) writes_.push_back(one);
}

void frm_CfgCheck::EndItem(const std::string& result) {
  Item().Result = result;
  ShowRow(static_cast<std::size_t>(CfgIndex));
  ++CfgIndex;
  CfgStage = 0;
  is_begun_ = false;
  ShowCount();
  if (CfgIndex == Count()) return Finish();
  GoOn();
}

void frm_CfgCheck::GoOn() {
  if (is_doubtful_) return AwaitQuiet();
  frames_.Clear();
  Restart(*tim_cfgread);
  CfgCom->SetRThreshold(1);
}

// The answers to a message and to the same one once more come as far apart as they went out.
void frm_CfgCheck::AwaitQuiet() {
  tim_cfgread->SetEnabled(false);
  frames_.Clear();
  quiet_watch_.Settle(tim_cfgread_timeout->Interval());
  ShowState();
  CfgCom->SetRThreshold(1);
}

// --- What is shown -------------------------------------------------------------------------------

void frm_CfgCheck::ShowRows() {
  std::vector<std::string> rows;
  for (const ConfigItem& item : ConfigItems) rows.push_back(RowOf(item));
  ParametersList.List = rows;
}

void frm_CfgCheck::ShowRow(std::size_t index) {
  std::vector<std::string> rows = ParametersList.List;
  rows.at(index) = RowOf(ConfigItems[index]);
  ParametersList.List = rows;
}

void frm_CfgCheck::ShowCount() {
  Label6.Caption = std::to_string(CfgIndex) + " / " + std::to_string(Count());
  ProgressBar1.Value = CfgIndex;
  ShowRowInWork();
}

void frm_CfgCheck::ShowRowInWork() {
  ParametersList.InWork = is_running_ && CfgIndex < Count() ? CfgIndex : -1;
}

void frm_CfgCheck::ShowState() {
  if (!is_running_) return;
  std::string text = NameOfItem() + ": " + CfgStageText(Item(), CfgStage);
  if (quiet_watch_.IsOn()) {
    text += ", waiting for a quiet line";
  } else if (repeats_ > 0) {
    text += ", " + trouble_ + ", repeated " + TimesText(repeats_);
  }
  lblState.Caption = text + "; " + std::to_string(Count() - CfgIndex) + " left";
}

std::string frm_CfgCheck::NameOfItem() const {
  const std::string name = Item().Description.empty() ? "" : " (" + Item().Description + ")";
  return "ID " + Stuff(Hex(Item().ID), 4) + name;
}

std::string frm_CfgCheck::StoppedText() const { return "Stopped at " + NameOfItem(); }

std::string frm_CfgCheck::LeftOutText() const {
  if (left_out_ == 0) return "";
  const std::string lines = left_out_ == 1 ? "1 line" : std::to_string(left_out_) + " lines";
  return "; " + lines + " of the file " + (left_out_ == 1 ? "was" : "were") + " left out";
}

void frm_CfgCheck::ShowButtons() {
  // The one that can be pressed now first: where both are greyed for a moment, the focus is lost.
  (is_running_ ? cmd_Stop : cmd_Check).Enabled = true;
  (is_running_ ? cmd_Check : cmd_Stop).Enabled = false;
  cmd_Open.Enabled = !is_running_;
  cmb_Slave.Enabled = !is_running_;
  cmd_Copy.Enabled = cmd_Save.Enabled = !ConfigItems.empty();
  ShowRowInWork();
}

std::string frm_CfgCheck::ListText() const {
  std::string text = lblHeading.Caption.get() + "\n";
  for (const std::string& row : ParametersList.List.get()) text += row + "\n";
  return text;
}

void frm_CfgCheck::Save() {
  SaveListFile(host_.platform, {.title = caption.Caption,
                                .file_name = "Configuration.txt",
                                .folder = folder_,
                                .text = ListText()});
}

}  // namespace tarnlink
