#include "monitor/screen_builder.h"

#include "monitor/scan_mark.h"

namespace tarnlink {

namespace {

void BuildBoxes(frm_Main& main, const frm_Options& options, int index,
                const LocationRecord& record) {
  const Location& location = main.Locations[index];

  TextBox& value = main.RAM_LOC_VAL.Load(index);
  value.Top = record.value_top;
  value.Left = record.value_left;
  value.Text = "Value " + std::to_string(index);
  value.ToolTipText = location.ActualVariable;

  TextBox& name = main.RAM_LOC_TEXT.Load(index);
  name.Text = location.Alias;
  name.ToolTipText = location.ActualVariable;
  name.Top = record.name_top;
  name.Left = record.name_left;
  ShowScanMark(main, index);

  const bool in_block = location.NumReg > 1 || location.RegisterFollower;
  if (record.tag != kMemoryTag && in_block) {
    value.BackColor = kBlockColour;
    name.BackColor = kBlockColour;
  }
  value.Visible = true;
  name.Visible = true;

  // The check box keeps the distance from its name box that the template, and the one before it,
  // have.
  CheckBox& check = main.RAM_LOC_CHECK.Load(index);
  check.Top = name.Top + main.RAM_LOC_CHECK(0).Top - main.RAM_LOC_TEXT(0).Top;
  check.Left = main.RAM_LOC_CHECK(index - 1).Left + name.Left - main.RAM_LOC_TEXT(index - 1).Left;
  check.Value = (location.ScanFlags & kScanningDisabled) == 0;
  check.Visible = options.ScanningBox.Value.get();
}

}  // namespace

void BuildLocation(frm_Main& main, const frm_Options& options, int index,
                   const LocationRecord& record) {
  Location& location = main.Locations[index];
  location = record.location;
  if (record.tag != kMemoryTag) MakeWordIfBothBytes(location);
  BuildBoxes(main, options, index, record);
}

void BuildLabel(frm_Main& main, int index, const LabelRecord& record) {
  Label& label = main.lbl_TextInfo.Load(index);
  label.Caption = record.caption;
  label.Top = record.top;
  label.Left = record.left;
  label.TextFont = record.font;
  label.ForeColor = record.colour;
  label.BackColor = main.form.BackColor;
  label.ToolTipText = main.lbl_TextInfo(0).ToolTipText;
  label.Visible = true;
}

std::vector<ScreenRecord> ScreenRecords(const frm_Main& main, const frm_Options& options) {
  const bool modbus = options.opt_Protocol.Selected() == kModbusProtocol;
  std::vector<ScreenRecord> records;
  for (int i = 1; i <= main.MaxId; ++i) {
    const TextBox& name = main.RAM_LOC_TEXT(i);
    const TextBox& value = main.RAM_LOC_VAL(i);
    if (!name.Visible) continue;
    const Location& location = main.Locations[i];
    records.emplace_back(LocationRecord{.tag = LocationTag(location, modbus),
                                        .location = location,
                                        .value_top = value.Top,
                                        .value_left = value.Left,
                                        .name_top = name.Top,
                                        .name_left = name.Left});
  }
  for (int j = 1; j <= main.TextInfoCount; ++j) {
    const Label& label = main.lbl_TextInfo(j);
    if (!label.Visible) continue;
    records.emplace_back(LabelRecord{.caption = label.Caption,
                                     .top = label.Top,
                                     .left = label.Left,
                                     .font = label.TextFont,
                                     .colour = label.ForeColor});
  }
  return records;
}

}  // namespace tarnlink
