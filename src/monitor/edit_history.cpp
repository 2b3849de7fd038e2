#include "monitor/edit_history.h"

#include <algorithm>

#include "common/text.h"

namespace tarnlink {

namespace {

// In a menu "&" marks the mnemonic; the user's own stands doubled.
std::string AsCaption(const std::string& text) {
  std::string caption;
  for (const char letter : text) {
    caption += letter;
    if (letter == '&') caption += letter;
  }
  return caption;
}

}  // namespace

std::string EditName(const std::string& text) {
  if (text.empty()) return "a box without a name";
  constexpr int kLongest = 30;  // characters
  if (CharacterCount(text) <= kLongest) return text;
  return std::string(FirstCharacters(text, kLongest)) + "...";
}

EditHistory::EditHistory(frm_Main& main) : main_(main) {
  main_.ForgetEdits = [this] { Forget(); };
  main_.mnuUndo.Click = [this] { Undo(); };
  main_.mnuRedo.Click = [this] { Redo(); };
  ShowEntries();
}

ScreenEdit EditHistory::Begin(const std::string& what) {
  CancelDrag();
  return {main_, what};
}

void EditHistory::Commit(const ScreenEdit& edit, Effect effect, bool joins) {
  if (effect == Effect::kChangesFile) main_.MarkChanged();
  ScreenState after = edit.before_.Now(main_);
  if (after == edit.before_) return;
  if (joins && Join(edit, after)) return;
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position_), entries_.end());
  if (saved_ && *saved_ > position_) saved_.reset();
  entries_.push_back({edit.what_, edit.before_, std::move(after), effect, joins});
  ++position_;
  ShowEntries();
}

// Into the entry before it, unless that one is what the file holds.
bool EditHistory::Join(const ScreenEdit& edit, const ScreenState& after) {
  if (position_ == 0 || position_ != entries_.size() || saved_ == position_) return false;
  Entry& last = entries_.back();
  if (!last.joins || last.what != edit.what_ || last.after != edit.before_) return false;
  last.after = after;
  if (last.after == last.before) {  // all the way back
    entries_.pop_back();
    --position_;
    ShowEntries();
  }
  return true;
}

void EditHistory::TakeBack(const ScreenEdit& edit) { edit.before_.Restore(main_); }

void EditHistory::Clear() {
  CancelDrag();
  entries_.clear();
  position_ = 0;
  saved_ = 0;
  ShowEntries();
}

void EditHistory::Forget() {
  Clear();
  if (main_.WCRChanged) saved_.reset();
}

void EditHistory::MarkSaved() { saved_ = position_; }

void EditHistory::ForgetSaved() {
  saved_.reset();
  main_.WCRChanged = true;
}

void EditHistory::Undo() {
  CancelDrag();
  if (position_ == 0) return;
  const Entry& entry = entries_[position_ - 1];
  Go(entry.after, entry.before, position_ - 1);
}

void EditHistory::Redo() {
  CancelDrag();
  if (position_ == entries_.size()) return;
  const Entry& entry = entries_[position_];
  Go(entry.before, entry.after, position_ + 1);
}

void EditHistory::Go(const ScreenState& from, const ScreenState& to, std::size_t position) {
  to.Restore(main_);
  position_ = position;
  const auto changes_file = [](const Entry& entry) { return entry.effect != Effect::kOnlyLook; };
  const auto at = [this](std::size_t place) {
    return entries_.begin() + static_cast<std::ptrdiff_t>(place);
  };
  main_.WCRChanged = !saved_ || std::any_of(at(std::min(position_, *saved_)),
                                            at(std::max(position_, *saved_)), changes_file);
  main_.ShowTitle();
  ShowEntries();
  const PlacedControl* changed = to.Changed(from, main_);
  if (changed != nullptr && main_.form.SetFocus) main_.form.SetFocus(*changed);
}

void EditHistory::CancelDrag() {
  if (main_.DragSource != nullptr && main_.form.DragCancel) main_.form.DragCancel();
}

void EditHistory::ShowEntries() {
  const bool can_undo = position_ > 0;
  const bool can_redo = position_ < entries_.size();
  main_.mnuUndo.Enabled = can_undo;
  main_.mnuRedo.Enabled = can_redo;
  main_.mnuUndo.Caption =
      can_undo ? "&Undo " + AsCaption(entries_[position_ - 1].what) : std::string("&Undo");
  main_.mnuRedo.Caption =
      can_redo ? "&Redo " + AsCaption(entries_[position_].what) : std::string("&Redo");
}

}  // namespace tarnlink
