#include "graph/frm_test_mode.h"

#include <algorithm>
#include <cmath>

#include "common/numbers.h"

namespace tarnlink {

namespace {

constexpr int kOn = 0;  // of `optTestMode`
constexpr int kOff = 1;

}  // namespace

frmTestMode::frmTestMode(frmGraphic& graph) : graph_(graph) {
  form.Visible = false;
  txtTestPower.Text = "100";
  optTestMode.Click = [this](int Index) { EnablePower(Index == kOn); };
  sldTestPower.Change = [this] {
    if (!is_typing_) txtTestPower.Text = std::to_string(sldTestPower.Value.get());
  };
  txtTestPower.Change = [this] { TakeText(); };
  txtTestPower.LostFocus = [this] { txtTestPower.Text = std::to_string(sldTestPower.Value.get()); };
}

// What is no number counts as 0, and the slider holds what is too great at its end.
void frmTestMode::TakeText() {
  const double power =
      std::clamp(Val(txtTestPower.Text.get()), static_cast<double>(sldTestPower.minimum),
                 static_cast<double>(sldTestPower.maximum));
  is_typing_ = true;
  sldTestPower.SetValue(static_cast<int>(std::nearbyint(power)));
  is_typing_ = false;
}

void frmTestMode::Show() {
  optTestMode.Select(graph_.TestModeOn ? kOn : kOff);
  txtTestPower.Text = std::to_string(graph_.TestModePower);
  sldTestPower.SetValue(graph_.TestModePower);
  form.Visible = true;
}

void frmTestMode::Close() {
  if (!form.Visible) return;
  graph_.TestModeOn = optTestMode.Selected() == kOn;
  graph_.TestModePower = static_cast<std::uint8_t>(sldTestPower.Value.get());
  form.Visible = false;
}

void frmTestMode::EnablePower(bool on) {
  sldTestPower.Enabled = on;
  txtTestPower.Enabled = on;
}

}  // namespace tarnlink
