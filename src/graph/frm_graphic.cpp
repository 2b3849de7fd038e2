#include "graph/frm_graphic.h"

namespace tarnlink {

namespace {

constexpr int kRefresh = 5000;  // ms, of the scale that the form begins with

constexpr float kLabelHeight = 195;  // until the view says how high its letters are

}  // namespace

frmGraphic::frmGraphic(Platform& platform)
    : Comm(platform.CreatePort()),
      CommWatch(platform.CreateTimer()),
      AutoSaveTimer(platform.CreateTimer()),
      ScreenRefreshTimer(platform.CreateTimer()),
      platform_(platform) {
  form.Visible = false;
  lblCommunicationError.Visible = false;
  lblTest.ToolTipText = "Send testmode command to ZOLT";
  lblExit.ToolTipText = "Click to exit ";
  ScreenRefreshTimer->SetInterval(kRefresh);
  lblYL(0).Visible = false;
  lblYR(0).Visible = false;
  lblYL(0).Enabled = false;
  lblYR(0).Enabled = false;
  for (int i = 0; i <= kCaptionLabels; ++i) {
    lblVal(i).Visible = false;
    lblVal(i).Height = kLabelHeight;
  }
  for (int i = 0; i < kTimeLines; ++i) lblX(i).Visible = false;
}

// Degrees, then turns per minute.
std::vector<std::string> frmGraphic::LeftScale() {
  return {"120", "110", "100", "90",   "80",   "70",   "60",   "50",   "40",   "30",   "20",
          "10",  "0",   "-10", "7000", "6000", "5000", "4000", "3000", "2000", "1000", "0"};
}

// Bar, then percent.
std::vector<std::string> frmGraphic::RightScale() {
  return {"6.5", "6.0", "5.5", "5.0", "4.5", "4.0", "3.5", "3.0", "2.5", "2.0", "1.5",
          "1.0", "0.5", "0.0", "140", "120", "100", "80",  "60",  "40",  "20",  "0"};
}

}  // namespace tarnlink
