#include "monitor/frm_multiple_reg.h"

#include <algorithm>

#include "monitor/write_texts.h"

namespace tarnlink {

namespace {

constexpr std::int16_t kFirstTop = 1800;
constexpr std::int16_t kLineHeight = 400;
constexpr std::int16_t kNameLeft = 300;
constexpr std::int16_t kValueLeft = 2100;
constexpr int kHexadecimalButton = 1;

}  // namespace

frm_multiple_reg::frm_multiple_reg(frm_Main& main) : main_(main) {
  form.Visible = false;
  Command1.Click = [this] { StoreValues(); };
}

void frm_multiple_reg::Show() {
  NumReg_frm = std::clamp(NumReg_frm, 1, kRegisterLines);
  if (!is_loaded_) Load();
  for (int k = 1; k <= kRegisterLines; ++k) {
    if (k <= NumReg_frm) {
      LoadLine(k);
    } else {
      Space.Unload(k);
      value.Unload(k);
    }
  }
  form.Visible = true;
}

void frm_multiple_reg::Load() {
  Option_multiplereg.Select(kHexadecimalButton);
  std::int16_t top = kFirstTop;
  for (int k = 1; k <= kRegisterLines; ++k) {
    show_location[static_cast<std::size_t>(k)] = {
        .NameTop = top, .NameLeft = kNameLeft, .ValueTop = top, .ValueLeft = kValueLeft};
    top = static_cast<std::int16_t>(top + kLineHeight);
  }
  is_loaded_ = true;
}

void frm_multiple_reg::LoadLine(int k) {
  if (value.Has(k)) return;
  const RegisterLine& line = show_location[static_cast<std::size_t>(k)];
  const int location = main_.SelectedLocation + k - 1;
  Label& name = Space.Load(k);
  if (location <= kLastLocation) name.Caption = main_.Locations[location].Alias;
  name.Top = line.NameTop;
  name.Left = line.NameLeft;
  name.Visible = true;
  TextBox& box = value.Load(k);
  box.Text = "value" + std::to_string(k);
  box.Top = line.ValueTop;
  box.Left = line.ValueLeft;
  box.Visible = true;
}

void frm_multiple_reg::StoreValues() {
  main_.StoredRegisters.clear();
  for (int k = 1; k <= NumReg_frm; ++k) {
    std::string& stored = show_location[static_cast<std::size_t>(k)].value;
    stored = MakeRegisterText(value(k).Text.get());
    main_.StoredRegisters.push_back(stored);
  }
  Hide();
}

void frm_multiple_reg::Dismiss() {
  main_.StoredRegisters.clear();
  Hide();
}

void frm_multiple_reg::Hide() {
  if (!form.Visible) return;
  form.Visible = false;
  if (Closed) Closed();
}

void frm_multiple_reg::Unload() {
  form.Visible = false;
  for (int k = 1; k <= kRegisterLines; ++k) {
    Space.Unload(k);
    value.Unload(k);
  }
  main_.StoredRegisters.clear();
  is_loaded_ = false;
}

}  // namespace tarnlink
