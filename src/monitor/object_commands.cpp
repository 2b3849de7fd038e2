#include "monitor/object_commands.h"

#include <algorithm>

#include "monitor/scan_mark.h"

namespace tarnlink {

namespace {

constexpr float kPixel = 15.0F;  // units

// A step up or left ends at the edge; what lies beyond it stays there.
float WithinForm(float place, float before) { return std::max(place, std::min(before, 0.0F)); }

}  // namespace

ObjectCommands::ObjectCommands(frm_Main& main, const frm_Options& options, EditHistory& history)
    : main_(main), history_(history), options_(options), grid_(main, options) {
  main_.RAM_LOC_TEXT.Arrow = [this](int i, const ArrowStep& step) { MoveName(i, step); };
  main_.RAM_LOC_VAL.Arrow = [this](int i, const ArrowStep& step) { MoveValue(i, step); };
  main_.lbl_TextInfo.Arrow = [this](int i, const ArrowStep& step) { MoveLabel(i, step); };
  main_.RAM_LOC_TEXT.DeleteKey = [this](int i) { DeleteLocation(i); };
  main_.RAM_LOC_VAL.DeleteKey = [this](int i) { DeleteLocation(i); };
  main_.lbl_TextInfo.DeleteKey = [this](int i) { DeleteLabel(i); };
  main_.RAM_LOC_CHECK.GiveEvents = [this](int i) {
    main_.RAM_LOC_CHECK(i).Click = [this, i] { ScanCheckClicked(i); };
  };
}

FormPlace ObjectCommands::Stepped(const PlacedControl& control, const ArrowStep& step) const {
  const bool by_grid = options_.chkGridOn.Value != step.other;
  const float size = by_grid ? kGridSize : kPixel;
  FormPlace place{.Left = control.Left + static_cast<float>(step.right) * size,
                  .Top = control.Top + static_cast<float>(step.down) * size};
  if (by_grid) grid_.SnapToGrid(place.Left, place.Top);
  // The direction that is not moved in stays as it was, on the grid or off it.
  if (step.right == 0) place.Left = control.Left;
  if (step.down == 0) place.Top = control.Top;
  place.Left = WithinForm(place.Left, control.Left);
  place.Top = WithinForm(place.Top, control.Top);
  return place;
}

void ObjectCommands::Move(const ScreenEdit& edit, std::initializer_list<PlacedControl*> controls,
                          const ArrowStep& step) {
  const PlacedControl& first = **controls.begin();
  const FormPlace place = Stepped(first, step);
  float right = place.Left - first.Left;
  float down = place.Top - first.Top;
  // They keep their distances, so the one that comes to the edge first stops them all.
  for (const PlacedControl* control : controls) {
    if (!control->Visible) continue;
    right = std::max(right, -std::max(control->Left.get(), 0.0F));
    down = std::max(down, -std::max(control->Top.get(), 0.0F));
  }
  if (right == 0 && down == 0) return;
  for (PlacedControl* control : controls) {
    control->Left = control->Left + right;
    control->Top = control->Top + down;
  }
  history_.Commit(edit, Effect::kChangesFile, true);
}

void ObjectCommands::MoveName(int index, const ArrowStep& step) {
  TextBox& name = main_.RAM_LOC_TEXT(index);
  const ScreenEdit edit = history_.Begin("move of " + EditName(name.Text)).Location(index);
  Move(edit, {&name, &main_.RAM_LOC_VAL(index), &main_.RAM_LOC_CHECK(index)}, step);
}

void ObjectCommands::MoveValue(int index, const ArrowStep& step) {
  const ScreenEdit edit =
      history_.Begin("move of the value of " + EditName(main_.RAM_LOC_TEXT(index).Text))
          .Location(index);
  Move(edit, {&main_.RAM_LOC_VAL(index)}, step);
}

void ObjectCommands::MoveLabel(int index, const ArrowStep& step) {
  Label& label = main_.lbl_TextInfo(index);
  const ScreenEdit edit = history_.Begin("move of " + EditName(label.Caption)).Label(index);
  Move(edit, {&label}, step);
}

void ObjectCommands::DeleteLocation(int index) {
  if (main_.CommRunning || main_.LocationCount < 1) {
    main_.platform().shell().Beep();
    main_.ShowTitle();
    return;
  }
  const Answer answer = main_.platform().dialogs().MessageBox(
      {.text = "Are you sure you want to delete the selected location ?",
       .title = "Delete Location",
       .icon = Icon::kExclamation,
       .buttons = Buttons::kYesNo});
  if (answer == Answer::kYes) {
    const ScreenEdit edit =
        history_.Begin("deletion of " + EditName(main_.RAM_LOC_TEXT(index).Text)).Location(index);
    main_.RAM_LOC_VAL(index).Visible = false;
    main_.RAM_LOC_TEXT(index).Visible = false;
    main_.RAM_LOC_CHECK(index).Visible = false;
    --main_.LocationCount;
    main_.ShowLocationCount();
    history_.Commit(edit, Effect::kChangesFile);
  }
  main_.ShowTitle();
}

// Without a question, as an emptied text goes; undo brings it back.
void ObjectCommands::DeleteLabel(int index) {
  Label& label = main_.lbl_TextInfo(index);
  const ScreenEdit edit = history_.Begin("deletion of " + EditName(label.Caption)).Label(index);
  label.Visible = false;
  history_.Commit(edit, Effect::kChangesFile);
}

void ObjectCommands::ScanCheckClicked(int index) {
  Location& location = main_.Locations[index];
  const bool is_scanned = main_.RAM_LOC_CHECK(index).Value;
  const auto other_flags = static_cast<std::uint8_t>(location.ScanFlags & ~kScanningDisabled);
  const auto flags = static_cast<std::uint8_t>(other_flags | (is_scanned ? 0 : kScanningDisabled));
  // A box that is made, or set with its record, has nothing to tell.
  if (flags == location.ScanFlags) return;
  const ScreenEdit edit =
      history_.Begin("scanning of " + EditName(main_.RAM_LOC_TEXT(index).Text)).Location(index);
  location.ScanFlags = flags;
  ShowScanMark(main_, index);
  history_.Commit(edit, Effect::kChangesQuietly);
}

}  // namespace tarnlink
