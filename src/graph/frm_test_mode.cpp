#include "graph/frm_test_mode.h"

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
  sldTestPower.Change = [this] { txtTestPower.Text = std::to_string(sldTestPower.Value.get()); };
  // What is no number counts as 0, and the slider holds what is too great at its end.
  txtTestPower.Change = [this] {
    sldTestPower.SetValue(
        ValInt(txtTestPower.Text.get(), sldTestPower.minimum, sldTestPower.maximum));
  };
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
