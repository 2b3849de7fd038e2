#include "tools/frm_sniffer.h"

#include <algorithm>
#include <utility>

#include "common/paths.h"
#include "common/shown_text.h"
#include "common/text.h"
#include "common/text_file.h"
#include "platform/path_resolver.h"
#include "protocols/frame_bytes.h"
#include "protocols/zolt_frame.h"
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

constexpr int kReopenInterval = 1000;  // ms
constexpr int kTellSoon = 1;           // ms
constexpr const char* kTitle = "Sniffer";

// Of the sniffer text file, which stands beside the ID file.
std::string SnifferFilePath(std::string path) {
  constexpr std::size_t kExtensionLength = 3;
  path.resize(path.size() - std::min(path.size(), kExtensionLength));
  return path + "snf";
}

}  // namespace

frmSniffer::frmSniffer(ToolHost& host)
    : Comm(host.platform.CreatePort()),
      tim_Reopen(host.platform.CreateTimer()),
      host_(host),
      log_(host.platform),
      tell_(host.platform.CreateTimer()) {
  form.Visible = false;
  txt_Messages.Locked = true;
  Comm->SetOnComm([this](int event) { OnComm(event); });
  tim_Reopen->SetInterval(kReopenInterval);
  tim_Reopen->SetOnTimer([this] { OpenByOptions(); });
  tell_->SetInterval(kTellSoon);
  tell_->SetOnTimer([this] {
    tell_->SetEnabled(false);
    if (const auto failure = std::exchange(log_failure_, std::nullopt)) log_.Tell(*failure);
  });
  BindText();
  BindItems();
  Reset();
}

void frmSniffer::BindText() {
  Command1.Click = [this] { SetSniffing(true); };
  Command2.Click = [this] { SetSniffing(false); };
  cmd_Clear.Click = [this] {
    text_.Clear();
    ShowText();
    lbl_Find.Caption = "";
  };
  cmd_Find.Click = [this] { Find(); };
  txt_Find.Change = [this] { lbl_Find.Caption = ""; };
  LogCheck.Click = [this] { LogClicked(); };
}

void frmSniffer::BindItems() {
  RAM_TEXT.MouseDown = [this](int index, const MousePress& press) {
    if (press.button == MouseButton::kLeft) hold_ = Hold{index, press.X, press.Y};
  };
  RAM_TEXT.DblClick = [this](int index) {
    hold_.reset();
    if (HasItem(index) && ShowSettings) ShowSettings(index);
  };
  RAM_TEXT.Arrow = [this](int index, const ArrowStep& step) {
    layout_.Step(index, step.right, step.down);
    LayOut();
    BringIntoView(index);
  };
  Items.DragDrop = [this](float X, float Y) {
    const auto hold = std::exchange(hold_, std::nullopt);
    if (!hold) return;
    layout_.MoveTo(hold->index, {X - hold->X, Y - hold->Y});
    LayOut();
  };
  Items.DragCancel = [this] { hold_.reset(); };
  Items.Resized = [this](float width) {
    layout_.SetWidth(width);
    LayOut();
  };
  List_DisplayDetectedID.DblClick = [this](int row) { PlaceDetected(row); };
}

// --- Opening and leaving -------------------------------------------------------------------------

void frmSniffer::Show() {
  if (form.Visible) return;
  Reset();
  form.Visible = true;
  ReadIDItems();
  if (!form.Visible) return;  // left with the program while the box was up
  if (host_.LoadErrorTexts) host_.LoadErrorTexts();
  if (!OpenByOptions()) TellBusy();
}

void frmSniffer::Reset() {
  InitSniffLocations();
  for (ControlArray<TextBox>* const boxes : Boxes()) {
    for (int i = 1; i <= kLastItem; ++i) boxes->Unload(i);
  }
  layout_.Clear();
  LayOut();
  hold_.reset();
  detected_.clear();
  placed_.clear();
  last_answers_.clear();
  last_item_ = 0;
  from_master_ = false;
  List_DetectedID.List = {};
  List_DisplayDetectedID.List = {};
  frames_ = {};
  ShowCounts();
  lbl_Port.Caption = "";
  text_.Clear();
  txt_Find.Text = "";
  SetSniffing(true);
}

void frmSniffer::Unload() {
  if (!form.Visible) return;
  tim_Reopen->SetEnabled(false);
  LogCheck.Value = false;
  CloseQuietly(*Comm);
  if (CloseSettings) CloseSettings();
  form.Visible = false;
  if (Unloaded) Unloaded();
}

// --- The sniffer text file -----------------------------------------------------------------------

void frmSniffer::ReadIDItems() {
  const Files& files = host_.platform.files();
  const std::string path = UsableFile(SnifferFilePath(host_.IdFile()), files);
  MessageBoxRequest box{.text = "", .title = kTitle, .icon = Icon::kExclamation};
  file_ = {};
  try {
    file_ = ReadSnifferFile(DecodeText(host_.platform.files().ReadWhole(path)));
    if (file_.failure) {
      box.text = StripFileFromPath(path) + ", line " + std::to_string(file_.failure->line) + ": " +
                 file_.failure->reason;
      box.detail = "The rest of the file has been read.";
    }
  } catch (const RunTimeError& error) {
    box.text = "Sniffer text file not found.";
    box.detail = error.what();
  }
  lbl_Revision.Caption = ShownText(file_.Revision);
  if (!box.text.empty()) host_.platform.dialogs().MessageBox(box);
}

void frmSniffer::InitSniffLocations() { SniffItems.fill(InitialSniffLocation()); }

void frmSniffer::CheckNameAndValueWithFile(const std::string& Id, std::int32_t Value, int Index) {
  SniffLocation& item = SniffItems.at(static_cast<std::size_t>(Index));
  item.Address = Id;
  item.RawValue = Value;
  const SnifferRecord* const record = FindRecord(file_, HexNumber(Id));
  item.Alias = record != nullptr ? record->Name : " No name ";
  item.Representation = record != nullptr ? record->Representation : std::int32_t{kHexadecimal};
  item.SnifferType = record != nullptr ? record->Type : std::int32_t{kSniffUnsignedWord};
  ShowItem(Index, record != nullptr ? record->Name : std::to_string(Index) + " Name ");
}

// --- The port ------------------------------------------------------------------------------------

// The options may name another port by now.
bool frmSniffer::OpenByOptions() {
  try {
    if (!Comm->PortOpen()) SetServiceLine(*Comm, host_.line);
  } catch (const RunTimeError& error) {
    AwaitPort(PortTrouble(error));
    return false;
  }
  return OpenPort();
}

bool frmSniffer::OpenPort() {
  try {
    if (!Comm->PortOpen()) Comm->SetPortOpen(true);
  } catch (const RunTimeError& error) {
    AwaitPort(PortTrouble(error));
    return false;
  }
  Comm->SetRThreshold(zolt_frame::kLength);
  frames_.DropRest();
  lbl_Port.Caption = "";
  tim_Reopen->SetEnabled(false);
  return true;
}

void frmSniffer::AwaitPort(const std::string& reason) {
  lbl_Port.Caption = reason;
  tim_Reopen->SetEnabled(true);
}

void frmSniffer::TellBusy() {
  host_.platform.dialogs().MessageBox({.text = "Com port busy.",
                                       .title = "Communication port",
                                       .icon = Icon::kCritical,
                                       .detail = lbl_Port.Caption});
}

// What was on its way when the form was left says nothing any more.
void frmSniffer::OnComm(int event) {
  if (!form.Visible) return;
  // Without a reason it is open again already.
  const bool is_gone = event == kCommDeviceGone && !Comm->LossReason().empty();
  if (is_gone) AwaitPort(Comm->LossReason());
  if (event != kCommReceive) return;
  try {
    TakeInput();
  } catch (const RunTimeError&) {
    // The next event goes on with what it finds.
  }
}

void frmSniffer::TakeInput() {
  frames_.Add(Comm->Input());
  while (true) {
    const SnifferFrames::Found found = frames_.Next();
    ShowCounts();
    if (found == SnifferFrames::Found::kNothing) break;
    if (found == SnifferFrames::Found::kLost) {
      Comm->SetPortOpen(false);  // what waits is dropped with it
      OpenPort();
      return;
    }
    ProcessSnifferMessage(frames_.frame());
  }
  Comm->SetRThreshold(frames_.Missing());
}

void frmSniffer::ShowCounts() {
  lbl_Frames.Caption =
      "Frames: " + std::to_string(frames()) + ", bad: " + std::to_string(bad_frames());
}

// --- Frames --------------------------------------------------------------------------------------

void frmSniffer::ProcessSnifferMessage(std::string_view Raw) {
  if (Raw.size() < 2 || Raw.front() != zolt_frame::kStart) return;
  const SniffedFrame frame = TakeApart(Raw);
  if (zolt_frame::KindOf(frame.type) != zolt_frame::kOutsideRange) {
    from_master_ = KindOfFrame(frame.type).from_master.value_or(from_master_);
    Detect(frame);
    if (!from_master_) ShowAnswer(frame.id, Raw);
  }
  WriteText(frame);
}

void frmSniffer::Detect(const SniffedFrame& frame) {
  const std::string id = ToUpper(frame.id);
  if (detected_.insert(id).second) {
    for (ListBox* const list : {&List_DetectedID, &List_DisplayDetectedID}) {
      std::vector<std::string> rows = list->List;
      rows.push_back(frame.id);
      list->List = rows;
    }
  }
  // Also of an ID whose answer was heard before its first request.
  if (!from_master_ || placed_.contains(id)) return;
  PlaceItem(frame.id, static_cast<std::int32_t>(HexNumber(frame.high + frame.low)));
}

void frmSniffer::ShowAnswer(const std::string& id, std::string_view raw) {
  last_answers_[ToUpper(id)] = raw;
  for (int i = 1; i <= last_item_; ++i) {
    if (IsOn(i, id)) ShowLastAnswer(i);
  }
}

// Nothing until there has been one.
void frmSniffer::ShowLastAnswer(int index) {
  SniffLocation& item = SniffItems.at(static_cast<std::size_t>(index));
  const auto answer = last_answers_.find(ToUpper(item.Address));
  SetText(RAM_VALUE, index,
          answer == last_answers_.end() ? "" : TakeSniffedValue(item, answer->second));
}

// --- Items ---------------------------------------------------------------------------------------

int frmSniffer::PlaceItem(const std::string& id, std::int32_t value) {
  const int index = NextFreeItem();
  if (index == 0) return 0;
  placed_.insert(ToUpper(id));
  last_item_ = std::max(last_item_, index);
  layout_.Add(index);
  CheckNameAndValueWithFile(id, value, index);
  ShowLastAnswer(index);
  return index;
}

bool frmSniffer::IsOn(int index, const std::string& id) const {
  const std::string& address = SniffItems.at(static_cast<std::size_t>(index)).Address;
  return HasItem(index) && ToUpper(address) == ToUpper(id);
}

// The first; 0 without one.
int frmSniffer::ItemOf(const std::string& id) const {
  for (int i = 1; i <= last_item_; ++i) {
    if (IsOn(i, id)) return i;
  }
  return 0;
}

// The numbers of deleted items come again when all have been given. 0 if there is none.
int frmSniffer::NextFreeItem() {
  if (last_item_ < kLastItem) return last_item_ + 1;
  for (int i = 1; i <= kLastItem; ++i) {
    if (!HasItem(i)) return i;
  }
  return 0;
}

// At its place before it is seen.
void frmSniffer::ShowItem(int Index, const std::string& name) {
  const std::string& id = SniffItems.at(static_cast<std::size_t>(Index)).Address;
  const auto fill = [&](ControlArray<TextBox>& boxes, const std::string& text, float width) {
    TextBox& box = boxes.Load(Index);
    box.Locked = true;
    SetText(boxes, Index, text);
    box.Width = width;
    box.Height = kItemHeight;
  };
  fill(RAM_TEXT, name, kItemNameWidth);
  fill(RAM_ID, id, kItemIdWidth);
  fill(RAM_VALUE, RAM_VALUE.Has(Index) ? RAM_VALUE(Index).Text.get() : "", kItemValueWidth);
  LayOut();
  for (ControlArray<TextBox>* const boxes : Boxes()) (*boxes)(Index).Visible = HasItem(Index);
}

// The tool tip shows it whole where the box is too narrow.
void frmSniffer::SetText(ControlArray<TextBox>& boxes, int index, const std::string& text) {
  TextBox& box = boxes(index);
  box.Text = text;
  box.ToolTipText = text;
}

void frmSniffer::BringIntoView(int index) {
  if (Items.BringIntoView) Items.BringIntoView(index);
}

void frmSniffer::ChangeItem(int Index, const SniffLocation& item) {
  if (!HasItem(Index)) return;
  SniffLocation& known = SniffItems.at(static_cast<std::size_t>(Index));
  // An item without a name is shown under its number as long as it is given none.
  const std::string name = known.Alias == item.Alias ? RAM_TEXT(Index).Text.get() : item.Alias;
  known = item;
  ShowItem(Index, name);
  ShowLastAnswer(Index);
}

void frmSniffer::DeleteItem(int Index) {
  if (!HasItem(Index)) return;
  layout_.Remove(Index);
  SniffItems.at(static_cast<std::size_t>(Index)) = InitialSniffLocation();
  ShowItem(Index, SniffItems.at(static_cast<std::size_t>(Index)).Alias);
  SetText(RAM_VALUE, Index, "");
}

void frmSniffer::PlaceDetected(int row) {
  const std::vector<std::string>& ids = List_DisplayDetectedID.List;
  if (row < 0 || row >= static_cast<int>(ids.size())) return;
  const std::string id = ids.at(static_cast<std::size_t>(row));
  int index = ItemOf(id);
  if (index == 0) {
    index = PlaceItem(id, 0);
    if (index == 0) return TellFull();
  }
  BringIntoView(index);
}

void frmSniffer::TellFull() {
  host_.platform.dialogs().MessageBox(
      {.text = "There is room for " + std::to_string(kLastItem) + " items. Delete one first.",
       .title = kTitle,
       .icon = Icon::kInformation});
}

std::array<ControlArray<TextBox>*, 3> frmSniffer::Boxes() {
  return {&RAM_TEXT, &RAM_ID, &RAM_VALUE};
}

void frmSniffer::LayOut() {
  for (int i = 1; i <= last_item_; ++i) {
    if (!HasItem(i) || !RAM_TEXT.Has(i)) continue;
    const ItemPlace place = layout_.PlaceOf(i);
    float left = place.Left;
    for (ControlArray<TextBox>* const boxes : Boxes()) {
      TextBox& box = (*boxes)(i);
      box.Left = left;
      box.Top = place.Top;
      left += box.Width + kItemGap;
    }
  }
  Items.ContentHeight = layout_.Height();
}

// --- The running text ----------------------------------------------------------------------------

void frmSniffer::WriteText(const SniffedFrame& frame) {
  const Date now = host_.platform.clock().Now();
  text_.Append(TextLine(frame, now, host_.platform.locale()));
  if (sniffing) ShowText();
  if (LogCheck.Value) WriteLog(frame, now);
}

// With the caret at its end. At no moment it is beyond that.
void frmSniffer::ShowText() {
  const TextPiece end{CharacterCount(text_.get()), 0};
  const TextPiece marked = txt_Messages.Marked;
  if (marked.start + marked.length > end.start) txt_Messages.Marked = end;
  txt_Messages.Text = text_.get();
  txt_Messages.Marked = end;
  if (!lbl_Find.Caption->empty() && NextPlace()) lbl_Find.Caption = "";
}

void frmSniffer::SetSniffing(bool on) {
  sniffing = on;
  Command1.Enabled = !on;
  Command2.Enabled = on;
  if (!on) return;
  lbl_Find.Caption = "";
  ShowText();
}

// In a box that runs on, what was found would be gone with the next frame.
void frmSniffer::Find() {
  if (txt_Find.Text->empty()) return;
  const auto found = NextPlace();
  lbl_Find.Caption = found ? "" : kNotFound;
  if (!found) return;
  SetSniffing(false);
  txt_Messages.Marked = *found;
}

// Behind what is marked.
std::optional<TextPiece> frmSniffer::NextPlace() const {
  const TextPiece marked = txt_Messages.Marked;
  return FindInText(txt_Messages.Text.get(), txt_Find.Text.get(), marked.start + marked.length);
}

// --- The log -------------------------------------------------------------------------------------

void frmSniffer::LogClicked() {
  if (LogCheck.Value) {
    BeginLog();
  } else {
    log_.Close();
  }
}

void frmSniffer::BeginLog() {
  const std::string path = log_.AskPath(host_.LogPath());
  try {
    // The form may have been left, or the box unticked, while the dialog was up.
    if (LogCheck.Value && !path.empty()) log_.Open(path, host_.platform.clock().Now());
  } catch (const RunTimeError& error) {
    log_.Close();
    log_.Tell(error);
  }
  if (!log_.IsOpen()) LogCheck.Value = false;
}

void frmSniffer::WriteLog(const SniffedFrame& frame, Date now) {
  try {
    log_.Write(LogRow(frame, now, host_.platform.locale()));
  } catch (const RunTimeError& error) {
    log_failure_ = error;
    tell_->SetEnabled(true);
    LogCheck.Value = false;
  }
}

}  // namespace tarnlink
