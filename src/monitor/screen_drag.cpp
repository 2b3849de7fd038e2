#include "monitor/screen_drag.h"

#include <cmath>

namespace tarnlink {

namespace {

constexpr float kDropOffset = 30.0F;    // a box lands this much up and left of where it is held
constexpr float kShortestMove = 50.0F;  // no more than this is a click, not a move

}  // namespace

ScreenDrag::ScreenDrag(frm_Main& main, const frm_Options& options, EditHistory& history)
    : main_(main), options_(options), history_(history), grid_(main, options) {
  main_.RAM_LOC_TEXT.MouseDown = [this](int index, const MousePress& press) {
    if (press.button == MouseButton::kLeft) BeginName(index, press);
  };
  main_.form.DragDrop = [this](float X, float Y) { DropOnForm(X, Y); };
  main_.form.DropPlace = [this](float X, float Y) { return Landing(X, Y); };
  main_.form.DragCancel = [this] { Cancel(); };
  main_.RAM_LOC_TEXT.DragDrop = [this](int index) { DropOnName(index); };
  main_.RAM_LOC_VAL.DragDrop = [this](int) { DropOnValue(); };
}

void ScreenDrag::BeginName(int index, const MousePress& press) {
  TextBox& name = main_.RAM_LOC_TEXT(index);
  edit_ = history_.Begin("move of " + EditName(name.Text)).Location(index);
  main_.RAM_LOC_CHECK(index).Visible = false;
  main_.RAM_LOC_VAL(index).Visible = false;
  main_.DragIndex = index;
  Begin(name, press.X, press.Y);
}

void ScreenDrag::BeginValue(int index, const MousePress& press) {
  TextBox& value = main_.RAM_LOC_VAL(index);
  edit_ = history_.Begin("move of the value of " + EditName(main_.RAM_LOC_TEXT(index).Text))
              .Location(index);
  main_.DragIndex = 0;
  Begin(value, press.X, press.Y);
}

void ScreenDrag::BeginLabel(int index, const MousePress& press) {
  Label& label = main_.lbl_TextInfo(index);
  edit_ = history_.Begin("move of " + EditName(label.Caption)).Label(index);
  main_.DragIndex = 0;
  // A label lands just where it is held.
  Begin(label, press.X - kDropOffset, press.Y - kDropOffset);
}

void ScreenDrag::Begin(PlacedControl& source, float x, float y) {
  main_.DragX = x;
  main_.DragY = y;
  main_.DragSource = &source;
  source.Visible = false;
}

// Where the box is held, before threshold and grid.
FormPlace ScreenDrag::HeldPlace(float X, float Y) const {
  return {.Left = X - main_.DragX - kDropOffset, .Top = Y - main_.DragY - kDropOffset};
}

bool ScreenDrag::Moves(const FormPlace& place) const {
  const PlacedControl& source = *main_.DragSource;
  return std::abs(place.Left - source.Left) > kShortestMove ||
         std::abs(place.Top - source.Top) > kShortestMove;
}

FormPlace ScreenDrag::Landing(float X, float Y) const {
  FormPlace place = HeldPlace(X, Y);
  if (!Moves(place)) return {.Left = main_.DragSource->Left, .Top = main_.DragSource->Top};
  grid_.SnapToGrid(place.Left, place.Top);
  return place;
}

void ScreenDrag::DropOnForm(float X, float Y) {
  if (main_.DragSource == nullptr) return;
  PlacedControl& source = *main_.DragSource;
  const bool moves = Moves(HeldPlace(X, Y));
  const FormPlace place = Landing(X, Y);
  source.Left = place.Left;
  source.Top = place.Top;
  source.Visible = true;
  if (main_.DragIndex != 0) PlaceBesideName(main_.DragIndex);
  // A click may have moved a value box: the file would differ, but that is not asked about.
  End(moves ? Effect::kChangesFile : Effect::kChangesQuietly);
}

// Also after a click that moved nothing: the value box always comes back to the name's right side.
void ScreenDrag::PlaceBesideName(int index) {
  const TextBox& name = main_.RAM_LOC_TEXT(index);
  CheckBox& check = main_.RAM_LOC_CHECK(index);
  check.Top = name.Top + kCheckDrop;
  check.Left = name.Left - check.Width - kCheckGap;
  if (options_.ScanningBox.Value) check.Visible = true;
  TextBox& value = main_.RAM_LOC_VAL(index);
  value.Top = name.Top;
  value.Left = name.Left + name.Width;
  value.Visible = true;
}

// What was dragged is back where it was. A name box that was dragged leaves its value box and its
// check box hidden until it is dragged again, and the check box of the name box under it comes to
// its side: users know the screen that way. Undo brings all of it back.
void ScreenDrag::DropOnName(int index) {
  if (main_.DragSource == nullptr) return;
  PlacedControl& source = *main_.DragSource;
  edit_->Location(index);
  source.Visible = true;
  CheckBox& check = main_.RAM_LOC_CHECK(index);
  check.Top = source.Top + kCheckDrop;
  check.Left = source.Left - check.Width;
  check.Visible = options_.ScanningBox.Value.get();
  End(Effect::kOnlyLook);
}

void ScreenDrag::DropOnValue() {
  if (main_.DragSource == nullptr) return;
  main_.DragSource->Visible = true;
  End(Effect::kOnlyLook);
}

void ScreenDrag::Cancel() {
  if (main_.DragSource == nullptr) return;
  history_.TakeBack(*edit_);
  main_.DragIndex = 0;
  main_.DragSource = nullptr;
  edit_.reset();
}

void ScreenDrag::End(Effect effect) {
  main_.DragIndex = 0;
  main_.DragSource = nullptr;
  history_.Commit(*edit_, effect);
  edit_.reset();
}

}  // namespace tarnlink
