#include "monitor/add_commands.h"

#include "common/run_time_error.h"

namespace tarnlink {

namespace {

constexpr float kValueGap = 10.0F;    // from one value box to the next below it
constexpr float kLabelStep = 300.0F;  // from the top of one label to that of the next

}  // namespace

AddCommands::AddCommands(frm_Main& main, const frm_Options& options, CommunicationRun& run,
                         EditHistory& history)
    : main_(main), options_(options), run_(run), history_(history), grid_(main, options) {
  main_.Toolbar1(1).Click = [this] { AddLocation(); };
  main_.Toolbar1(4).Click = [this] { AddText(); };
}

void AddCommands::AddLocation() {
  if (main_.MaxId > kLastLocation) {
    main_.platform().shell().Beep();
    return;
  }
  const int n = main_.MaxId + 1;
  const ScreenEdit edit = history_.Begin("adding of " + AddedNameText(n)).Location(n);
  main_.MarkChanged();
  main_.MaxId = n;
  ++main_.LocationCount;
  main_.ShowLocationCount();
  try {
    AddValueBox(n);
    AddNameBox(n);
    AddCheckBox(n);
  } catch (const RunTimeError& error) {
    // Half a Location could not be saved, and with it the whole screen.
    history_.TakeBack(edit);
    run_.FailurePath(RunTimeError(error.code(), "The screen is full: it holds at most " +
                                                    std::to_string(kLastLocation) + " Locations."));
    return;
  }
  history_.Commit(edit, Effect::kChangesFile);
  if (main_.form.SetFocus) main_.form.SetFocus(main_.RAM_LOC_TEXT(n));
}

void AddCommands::AddValueBox(int n) {
  const TextBox& last = main_.RAM_LOC_VAL(n - 1);
  TextBox& value = main_.RAM_LOC_VAL.Load(n);
  float top = last.Top + last.Height + kValueGap;
  float left = last.Left;
  grid_.SnapToGrid(top, left);
  grid_.AvoidValueOverlap(top, left);
  value.Top = top;
  value.Left = left;
  value.BackColor = kWhite;
  value.Text = AddedValueText(n);
  value.Visible = true;
}

void AddCommands::AddNameBox(int n) {
  TextBox& name = main_.RAM_LOC_TEXT.Load(n);
  const TextBox& value = main_.RAM_LOC_VAL(n);
  float top = value.Top;
  float left = value.Left - main_.RAM_LOC_VAL(n - 1).Left + main_.RAM_LOC_TEXT(n - 1).Left;
  grid_.SnapToGrid(top, left);
  grid_.AvoidNameOverlap(top, left);
  name.Top = top;
  name.Left = left;
  name.BackColor = kWhite;
  name.Text = AddedNameText(n);
  name.Visible = true;
}

void AddCommands::AddCheckBox(int n) {
  const Location& location = main_.Locations[n];
  main_.RAM_LOC_VAL(n).ToolTipText = location.ActualVariable;
  main_.RAM_LOC_TEXT(n).ToolTipText = location.ActualVariable;
  CheckBox& check = main_.RAM_LOC_CHECK.Load(n);
  const TextBox& name = main_.RAM_LOC_TEXT(n);
  check.Top = name.Top + kCheckDrop;
  check.Left = name.Left - main_.RAM_LOC_TEXT(n - 1).Left + main_.RAM_LOC_CHECK(n - 1).Left;
  check.Value = (location.ScanFlags & kScanningDisabled) == 0;
  check.Visible = options_.ScanningBox.Value.get();
}

void AddCommands::AddText() {
  const int n = main_.TextInfoCount + 1;
  const ScreenEdit edit = history_.Begin("adding of text").Label(n);
  main_.TextInfoCount = n;
  Label& label = main_.lbl_TextInfo.Load(n);
  label.Top = main_.lbl_TextInfo(n - 1).Top + kLabelStep;
  label.Left = main_.lbl_TextInfo(n - 1).Left;
  label.Caption = "Textual Information";
  label.BackColor = main_.form.BackColor;
  label.ToolTipText = main_.lbl_TextInfo(0).ToolTipText;
  label.Visible = true;
  history_.Commit(edit, Effect::kChangesFile);
  if (main_.form.SetFocus) main_.form.SetFocus(label);
}

}  // namespace tarnlink
