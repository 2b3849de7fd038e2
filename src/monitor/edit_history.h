// Undo and redo of what the user does to the screen. Every edit runs through here and is kept as
// the state of the objects that it touched, before and after it.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "monitor/frm_main.h"
#include "monitor/screen_state.h"

namespace tarnlink {

// An edit that has begun. Name every object before it is changed.
class ScreenEdit {
 public:
  ScreenEdit(const frm_Main& main, std::string what)
      : main_(&main), what_(std::move(what)), before_(main) {}

  ScreenEdit& Location(int index) {
    before_.AddLocation(*main_, index);
    return *this;
  }
  ScreenEdit& Label(int index) {
    before_.AddLabel(*main_, index);
    return *this;
  }

 private:
  friend class EditHistory;
  const frm_Main* main_;
  std::string what_;
  ScreenState before_;
};

// What an edit means for the file of the screen.
enum class Effect {
  kChangesFile,     // the screen counts as changed
  kChangesQuietly,  // it changes what the file holds, but does not count when it is made
  kOnlyLook,        // the file does not hold what changes
};

class EditHistory {
 public:
  // Binds Undo and Redo. `main` outlives it.
  explicit EditHistory(frm_Main& main);

  // `what` completes "Undo ", such as "move of Flow". A drag that is under way is cancelled first.
  ScreenEdit Begin(const std::string& what);

  // Keeps the edit, and marks the screen as changed if that is its effect. An edit that has changed
  // nothing is not kept. Edits of one kind that follow each other on the same objects, such as the
  // strokes of an arrow key, become one if `joins` is set.
  void Commit(const ScreenEdit& edit, Effect effect, bool joins = false);

  // Makes everything as it was when the edit began.
  void TakeBack(const ScreenEdit& edit);

  // Another screen: nothing can be undone. It agrees with its file.
  void Clear();
  // The same screen begins anew, changed or not: nothing can be undone.
  void Forget();
  // The screen has been saved as it is.
  void MarkSaved();
  // No file holds any state of the screen: it counts as changed until it is saved.
  void ForgetSaved();

  void Undo();
  void Redo();

 private:
  struct Entry {
    std::string what;
    ScreenState before;
    ScreenState after;
    Effect effect = Effect::kChangesFile;
    bool joins = false;
  };

  void CancelDrag();
  bool Join(const ScreenEdit& edit, const ScreenState& after);
  void Go(const ScreenState& from, const ScreenState& to, std::size_t position);
  void ShowEntries();

  frm_Main& main_;
  std::vector<Entry> entries_;
  std::size_t position_ = 0;              // so many of the entries are done
  std::optional<std::size_t> saved_ = 0;  // the position that agrees with the file, if there is one
};

// A name for an edit's text: what the user reads on the object, cut to a readable length.
std::string EditName(const std::string& text);

}  // namespace tarnlink
