#include "monitor/screen_state.h"

#include "monitor/scan_mark.h"

namespace tarnlink {

namespace {

ControlLook LookOf(const PlacedControl& control) {
  return {.Top = control.Top,
          .Left = control.Left,
          .Width = control.Width,
          .Height = control.Height,
          .Visible = control.Visible,
          .BackColor = control.BackColor,
          .ForeColor = control.ForeColor,
          .TextFont = control.TextFont,
          .ToolTipText = control.ToolTipText};
}

void SetLook(PlacedControl& control, const ControlLook& look) {
  control.Top = look.Top;
  control.Left = look.Left;
  control.Width = look.Width;
  control.Height = look.Height;
  control.BackColor = look.BackColor;
  control.ForeColor = look.ForeColor;
  control.TextFont = look.TextFont;
  control.ToolTipText = look.ToolTipText;
  control.Visible = look.Visible;
}

LocationState StateOfLocation(const frm_Main& main, int index) {
  LocationState state;
  // Beyond the table's end there may be boxes for a moment, but no record.
  if (index <= kLastLocation) state.location = main.Locations[index];
  state.location.RawValue = 0;  // the run's
  state.exists = main.RAM_LOC_TEXT.Has(index);
  if (!state.exists) return state;
  state.name = LookOf(main.RAM_LOC_TEXT(index));
  state.name_text = main.RAM_LOC_TEXT(index).Text;
  state.value = LookOf(main.RAM_LOC_VAL(index));
  state.check = LookOf(main.RAM_LOC_CHECK(index));
  return state;
}

LabelState StateOfLabel(const frm_Main& main, int index) {
  LabelState state;
  state.exists = main.lbl_TextInfo.Has(index);
  if (!state.exists) return state;
  state.look = LookOf(main.lbl_TextInfo(index));
  state.caption = main.lbl_TextInfo(index).Caption;
  return state;
}

void RestoreRecord(frm_Main& main, int index, const Location& record) {
  if (index > kLastLocation) return;
  Location& location = main.Locations[index];
  const std::int32_t raw_value = location.RawValue;
  location = record;
  location.RawValue = raw_value;
}

void RestoreLocation(frm_Main& main, int index, const LocationState& state) {
  // The record goes first: a check box that is set anew looks at it.
  RestoreRecord(main, index, state.location);
  if (!state.exists) {
    main.RAM_LOC_TEXT.Unload(index);
    main.RAM_LOC_VAL.Unload(index);
    main.RAM_LOC_CHECK.Unload(index);
    return;
  }
  const bool is_new = !main.RAM_LOC_VAL.Has(index);
  TextBox& value = main.RAM_LOC_VAL.Load(index);
  if (is_new) value.Text = AddedValueText(index);
  SetLook(value, state.value);
  TextBox& name = main.RAM_LOC_TEXT.Load(index);
  name.Text = state.name_text;
  SetLook(name, state.name);
  ShowScanMark(main, index);
  CheckBox& check = main.RAM_LOC_CHECK.Load(index);
  check.Value = (state.location.ScanFlags & kScanningDisabled) == 0;
  SetLook(check, state.check);
}

void RestoreLabel(frm_Main& main, int index, const LabelState& state) {
  if (!state.exists) {
    main.lbl_TextInfo.Unload(index);
    return;
  }
  Label& label = main.lbl_TextInfo.Load(index);
  label.Caption = state.caption;
  SetLook(label, state.look);
}

}  // namespace

std::string AddedNameText(int index) { return "Name " + std::to_string(index - 1); }

std::string AddedValueText(int index) { return "Value " + std::to_string(index - 1); }

ScreenState::ScreenState(const frm_Main& main)
    : form_colour_(main.form.BackColor),
      max_id_(main.MaxId),
      location_count_(main.LocationCount),
      text_info_count_(main.TextInfoCount) {}

void ScreenState::AddLocation(const frm_Main& main, int index) {
  if (!locations_.contains(index)) locations_[index] = StateOfLocation(main, index);
}

void ScreenState::AddLabel(const frm_Main& main, int index) {
  if (!labels_.contains(index)) labels_[index] = StateOfLabel(main, index);
}

ScreenState ScreenState::Now(const frm_Main& main) const {
  ScreenState now(main);
  for (const auto& [index, state] : locations_) now.AddLocation(main, index);
  for (const auto& [index, state] : labels_) now.AddLabel(main, index);
  return now;
}

const PlacedControl* ScreenState::Changed(const ScreenState& other, const frm_Main& main) const {
  for (const auto& [index, state] : locations_) {
    const auto then = other.locations_.find(index);
    if (then == other.locations_.end() || then->second == state) continue;
    if (!main.RAM_LOC_TEXT.Has(index)) continue;
    const bool name_moved = then->second.name != state.name;
    const PlacedControl& value = main.RAM_LOC_VAL(index);
    if (!name_moved && value.Visible) return &value;
    if (main.RAM_LOC_TEXT(index).Visible) return &main.RAM_LOC_TEXT(index);
  }
  for (const auto& [index, state] : labels_) {
    const auto then = other.labels_.find(index);
    if (then == other.labels_.end() || then->second == state) continue;
    if (main.lbl_TextInfo.Has(index) && main.lbl_TextInfo(index).Visible) {
      return &main.lbl_TextInfo(index);
    }
  }
  return nullptr;
}

void ScreenState::Restore(frm_Main& main) const {
  for (const auto& [index, state] : locations_) RestoreLocation(main, index, state);
  for (const auto& [index, state] : labels_) RestoreLabel(main, index, state);
  main.form.BackColor = form_colour_;
  main.MaxId = max_id_;
  main.LocationCount = location_count_;
  main.TextInfoCount = text_info_count_;
  main.ShowLocationCount();
}

}  // namespace tarnlink
