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
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

constexpr int kPause = 100;       // ms ahead of each message
constexpr int kAnswerTime = 300;  // ms
// What a slave may take beside the time on the line.
constexpr int kThinkingTime = 100;  // ms
constexpr int kSlaves = 16;

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
      quiet_(host.platform.CreateTimer()) {
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
  quiet_->SetOnTimer([this] { SendMessage(); });
}

// --- Beginning and end ---------------------------------------------------------------------------

void frm_CfgCheck::Show() { form.Visible = true; }

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
  ClearResults();
  CfgIndex = CfgStage = 0;
  ShowCount();
  if (ConfigItems.empty()) return Finish();
  if (!Begin()) return;
  is_running_ = true;
  is_doubtful_ = false;
  repeats_ = 0;
  Restart(*tim_cfgread);
  ShowButtons();
  ShowState();
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
  // The answers to a message and to the same one once more come as far apart as they went out.
  quiet_->SetInterval(tim_cfgread_timeout->Interval() + exchange);
  return true;
}

void frm_CfgCheck::Stop() {
  if (!is_running_) return;
  ShutDownCom();
  MarkUnreached();
  lblState.Caption = "Stopped";
}

void frm_CfgCheck::ShutDownCom() {
  is_running_ = false;
  tim_cfgread->SetEnabled(false);
  tim_cfgread_timeout->SetEnabled(false);
  quiet_->SetEnabled(false);
  frames_.Clear();
  CloseQuietly(*CfgCom);
  ShowButtons();
}

// The port first: in the box the timers go on.
void frm_CfgCheck::ErrorHandler(const std::string& text) {
  const bool was_running = is_running_;
  ShutDownCom();
  if (was_running) MarkUnreached();
  lblState.Caption = text;
  host_.platform.dialogs().MessageBox({.text = text, .title = "Error", .icon = Icon::kCritical});
}

void frm_CfgCheck::Finish() {
  ShutDownCom();
  MarkUnreached();
  ProgressBar1.Value = ProgressBar1.Max;
  const auto is_good = [](const ConfigItem& item) { return VerdictOf(item) == CfgVerdict::kGood; };
  const auto good = std::count_if(ConfigItems.begin(), ConfigItems.end(), is_good);
  lblState.Caption = "Finished: " + std::to_string(good) + " of " + std::to_string(Count()) + " OK";
}

void frm_CfgCheck::MarkUnreached() {
  for (std::size_t i = 0; i < ConfigItems.size(); ++i) {
    ConfigItem& item = ConfigItems[i];
    if (item.Result != ConfigItem::kNoResult || !item.HasDefault()) continue;
    item.Result = kCfgNotChecked;
    ShowRow(i);
  }
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
  txt_ConfigurationFile.Text = path.value_or(kNoFile);
  txt_ConfigurationFile.ToolTipText = path.value_or("");
  if (path) folder_ = FolderOfPath(*path);
  ConfigFile file = path ? ReadFile(*path) : ConfigFile{};
  ConfigItems = std::move(file.items);
  CfgIndex = CfgStage = 0;
  lblState.Caption = "";
  ShowRows();
  ProgressBar1.Max = Count() + 1;
  ShowCount();
  ShowButtons();
  if (file.failure) TellBadLine(*file.failure);
}

ConfigFile frm_CfgCheck::ReadFile(const std::string& path) {
  try {
    return ReadConfigFile(DecodeText(host_.platform.files().ReadWhole(path)));
  } catch (const RunTimeError& error) {
    txt_ConfigurationFile.Text = kNoFile;
    txt_ConfigurationFile.ToolTipText = "";
    host_.platform.dialogs().MessageBox({.text = "The configuration file can not be read.",
                                         .title = "Error",
                                         .icon = Icon::kCritical,
                                         .detail = error.what()});
    return {};
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
  quiet_->SetEnabled(false);
  if (!is_running_) return;
  is_doubtful_ = false;
  repeats_ = 0;
  message_ = CfgMessage(Item(), CfgStage, cmb_Slave.Text);
  Output();
  ShowState();
}

void frm_CfgCheck::ResendMsg() {
  // Its answer may come twice.
  is_doubtful_ = true;
  ++repeats_;
  Output();
}

void frm_CfgCheck::TimedOut() {
  if (!is_running_) return;
  ResendMsg();
  ShowState();
}

void frm_CfgCheck::Output() {
  frames_.Clear();
  try {
    CfgCom->ClearInBuffer();
    CfgCom->SetRThreshold(zolt_frame::kLength);
    CfgCom->Output(message_);
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
  for (auto kind = frames_.Take(bytes); kind != AnswerKind::kNone; kind = frames_.Take({})) {
    if (kind == AnswerKind::kGood && !IsForUs(frames_.frame())) continue;
    const bool is_awaited = tim_cfgread_timeout->Enabled();
    if (!is_awaited && quiet_->Enabled()) Restart(*quiet_);
    if (kind != AnswerKind::kGood || frames_.IsDoubtful()) is_doubtful_ = true;
    if (kind == AnswerKind::kGood && is_awaited) return ProcessAnswer(frames_.frame());
    if (kind == AnswerKind::kTorn) frames_.Clear();
  }
  CfgCom->SetRThreshold(frames_.Missing());
}

// False for another slave's, for another ID's, and for one that says that the message was damaged:
// nothing has been tried by it, and it goes out once more.
bool frm_CfgCheck::IsForUs(std::string_view frame) const {
  const ZoltMessage answer = ParseZoltMessage(frame);
  return zolt_frame::Text(frame, zolt_frame::kSlave) == cmb_Slave.Text.get() &&
         answer.Class == kParameterClass && answer.Id == Item().ID &&
         answer.Ack != zolt_frame::kCorruptedMessage;
}

void frm_CfgCheck::ProcessAnswer(std::string_view frame) {
  tim_cfgread_timeout->SetEnabled(false);
  const ZoltMessage answer = ParseZoltMessage(frame);
  frames_.Clear();
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

void frm_CfgCheck::EndItem(const std::string& result) {
  Item().Result = result;
  ShowRow(static_cast<std::size_t>(CfgIndex));
  ++CfgIndex;
  CfgStage = 0;
  ShowCount();
  if (CfgIndex == Count()) return Finish();
  GoOn();
}

void frm_CfgCheck::GoOn() {
  CfgCom->SetRThreshold(zolt_frame::kLength);
  Restart(is_doubtful_ ? *quiet_ : *tim_cfgread);
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
  const std::string name = Item().Description.empty() ? "" : " (" + Item().Description + ")";
  std::string text =
      "ID " + Stuff(Hex(Item().ID), 4) + name + ": " + CfgStageText(Item(), CfgStage);
  if (repeats_ > 0) text += ", no answer, repeated " + std::to_string(repeats_) + " times";
  lblState.Caption = text + "; " + std::to_string(Count() - CfgIndex) + " left";
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
  const auto path =
      host_.platform.dialogs().SaveFile({.title = "Save list",
                                         .filter = "Text files (*.txt)|*.txt",
                                         .folder = UsableFolder(folder_, host_.platform.files()),
                                         .extension = "txt",
                                         .confirm_overwrite = true});
  if (!path) return;
  std::string text;
  const std::string list = ListText();
  LineReader lines(list);
  for (std::string_view line; lines.Next(line);) text.append(line).append(kLineEnd);
  try {
    host_.platform.files().WriteWhole(*path, EncodeText(text));
  } catch (const RunTimeError& error) {
    host_.platform.dialogs().MessageBox({.text = "Error saving file",
                                         .title = "Error",
                                         .icon = Icon::kCritical,
                                         .detail = error.what()});
  }
}

}  // namespace tarnlink
