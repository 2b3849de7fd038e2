#include "graph/frm_graphic.h"

#include <cmath>

namespace tarnlink {

namespace {

constexpr int kRefresh = 5000;  // ms, of the scale that the form begins with

constexpr float kLeftWidth = 390;  // of the template of the left scale
constexpr float kRightWidth = 400;
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
  lblYL(0).Width = kLeftWidth;
  lblYR(0).Width = kRightWidth;
  for (Label* label : {&lblDate, &lblExit, &lblTest}) label->Height = kLabelHeight;
  for (int i = 0; i <= lblYL.last(); ++i) {
    lblYL(i).Height = kLabelHeight;
    lblYR(i).Height = kLabelHeight;
  }
  for (int i = 0; i <= kCaptionLabels; ++i) {
    lblVal(i).Visible = false;
    lblVal(i).Height = kLabelHeight;
  }
  for (int i = 0; i < kTimeLines; ++i) {
    lblX(i).Visible = false;
    lblX(i).Height = kLabelHeight;
  }
}

Date frmGraphic::Now() const {
  constexpr double kHair = 1e-4;  // of a second: what a date in days is exact to
  const double seconds = platform_.clock().Now() * kSecondsPerDay;
  return FromSeconds(static_cast<std::int64_t>(std::floor(seconds + kHair)));
}

// Degrees, then turns per minute.
const std::vector<std::string>& LeftScale() {
  static const std::vector<std::string> kTexts = {
      "120", "110", "100", "90",   "80",   "70",   "60",   "50",   "40",   "30",   "20",
      "10",  "0",   "-10", "7000", "6000", "5000", "4000", "3000", "2000", "1000", "0"};
  return kTexts;
}

// Bar, then percent.
const std::vector<std::string>& RightScale() {
  static const std::vector<std::string> kTexts = {
      "6.5", "6.0", "5.5", "5.0", "4.5", "4.0", "3.5", "3.0", "2.5", "2.0", "1.5",
      "1.0", "0.5", "0.0", "140", "120", "100", "80",  "60",  "40",  "20",  "0"};
  return kTexts;
}

}  // namespace tarnlink
