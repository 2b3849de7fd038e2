#include "monitor/frm_main.h"

#include "common/paths.h"
#include "common/run_time_error.h"

namespace tarnlink {

namespace {

// Design places of the template boxes, the anchor of a screen's first Location.
constexpr float kNameLeft = 450.0F;
constexpr float kNameWidth = 2100.0F;
constexpr float kValueLeft = kNameLeft + kNameWidth;  // where moving the name puts it, too
constexpr float kValueWidth = 1800.0F;                // sixteen binary digits
constexpr float kBoxTop = 120.0F;
constexpr float kBoxHeight = 315.0F;
constexpr float kCheckSize = 255.0F;
constexpr float kCheckLeft = kNameLeft - kCheckSize - kCheckGap;
constexpr float kLabelLeft = 135.0F;

// Moves `FileName` to the front of a history without doubling it.
// By value, since it may be one of the captions that change here.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void MoveToFront(FixedArray<MenuEntry>& history, std::string FileName) {
  std::vector<std::string> kept;
  for (int i = history.first(); i < history.last(); ++i) kept.push_back(history(i).Caption);
  for (int i = 1; i <= history.last(); ++i) {
    const std::string& older = kept[static_cast<std::size_t>(i - 1)];
    if (older == FileName) break;
    history(i).Caption = older;
    history(i).Enabled = older != kFreeHistoryEntry;
  }
  history(0).Caption = FileName;
  history(0).Enabled = true;
}

}  // namespace

frm_Main::frm_Main(Platform& platform)
    : Comm(platform.CreatePort()),
      Comm_Timer(platform.CreateTimer()),
      tmr_noresponse(platform.CreateTimer()),
      tmr_MsgTimeout(platform.CreateTimer()),
      platform_(platform) {
  constexpr int kPollTick = 20;          // ms
  constexpr int kDesignWatchdog = 3000;  // ms, until Start sets it
  Comm_Timer->SetInterval(kPollTick);
  tmr_noresponse->SetInterval(kDesignWatchdog);
  Toolbar1(1).ToolTipText = "Adds a memory location to the current sheet.";
  Toolbar1(2).ToolTipText = "Starts the communication with the microcontroller";
  Toolbar1(3).ToolTipText = "Stops the communication with the microcontroller";
  Toolbar1(4).ToolTipText = "Adds text info on the screen.";
  Toolbar1(5).ToolTipText = "Hide/Show project window";
  Toolbar1(6).ToolTipText = "Reloads the Map file and also the screen";
  ShowNotice(lbl_MapNotice, "");
  ShowNotice(lbl_IdNotice, "");
  BuildTemplates();
}

std::vector<std::string> frm_Main::FreeHistory() {
  return std::vector<std::string>(kHistoryLength, std::string(kFreeHistoryEntry));
}

void frm_Main::BuildTemplates() {
  TextBox& name = RAM_LOC_TEXT(0);
  name.Text = "Name";
  name.Left = kNameLeft;
  name.Top = kBoxTop;
  name.Width = kNameWidth;
  name.Height = kBoxHeight;
  TextBox& value = RAM_LOC_VAL(0);
  value.Text = "Value";
  value.Left = kValueLeft;
  value.Top = kBoxTop;
  value.Width = kValueWidth;
  value.Height = kBoxHeight;
  CheckBox& check = RAM_LOC_CHECK(0);
  check.Left = kCheckLeft;
  check.Top = kBoxTop + kCheckDrop;
  check.Width = kCheckSize;
  check.Height = kCheckSize;
  Label& label = lbl_TextInfo(0);
  label.Left = kLabelLeft;
  label.Top = kBoxTop;
  label.ToolTipText =
      "Double Click for Edit, Right Mouse button for Font Change, "
      "Shift-Right Mouse button for color change";
  RAM_LOC_TEXT(0).BackColor = kWhite;
  RAM_LOC_VAL(0).BackColor = kWhite;
}

void frm_Main::InitForm() {
  const bool is_new = MaxId == 0 && TextInfoCount == 0 && CurrentTarnLinkFile.empty();
  if (is_new) form.BackColor = kNewScreenColour;
}

void frm_Main::InitLocations() { Locations.InitLocations(platform_.settings()); }

void frm_Main::ShowTitle() {
  std::string title(kProgramTitle);
  title += " - ";
  title += CurrentTarnLinkFile.empty() ? "New Screen" : StripFileFromPath(CurrentTarnLinkFile);
  if (WCRChanged) title += " *";
  form.Caption = title;
}

void frm_Main::ShowLocationCount() {
  StatusBar1(kCountPanel).Text = "Locations : " + std::to_string(LocationCount);
}

void frm_Main::MarkChanged() {
  WCRChanged = true;
  ShowTitle();
}

void frm_Main::ShowNotice(Label& line, const std::string& text) {
  line.Caption = text;
  line.Visible = !text.empty();
}

void frm_Main::TellStoreFailure() {
  const std::string failure = platform_.settings().Failure();
  if (failure.empty()) return;
  platform_.dialogs().MessageBox({.text = "The settings could not be saved.",
                                  .title = std::string(kProgramTitle),
                                  .icon = Icon::kExclamation,
                                  .detail = failure});
}

void frm_Main::LoadShortCuts(const std::string& FileName) { MoveToFront(M_fileHist, FileName); }

void frm_Main::LoadShortCutsPrj(const std::string& FileName) {
  MoveToFront(M_fileHistPrj, FileName);
}

}  // namespace tarnlink
