// Long histories of edits that a random user makes: undone to the start, redone to the end, and
// gone through in any order, the screen is at each place what it was there.

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "form/edit_fixture.h"

namespace tarnlink {
namespace {

class RandomEdits : public EditTest {
 protected:
  RandomEdits() {
    SetScanningBox(true);
    std::vector<std::string> lines;
    for (int i = 0; i < 6; ++i) {
      const auto top = static_cast<float>(400 * i);
      lines.push_back(
          LocationLine("Loc & " + std::to_string(i), {1000, top}, {4000.5F, top}, i % 4));
    }
    for (int j = 0; j < 4; ++j) {
      lines.push_back(LabelLine("Text " + std::to_string(j), {500, static_cast<float>(300 * j)}));
    }
    OpenScreen(lines);
  }

  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  bool OneIn(int count) { return Below(count) == 0; }

  // Does one of all kinds of edits, or now and then something that the user breaks off.
  void Edit() { edits_[static_cast<std::size_t>(Below(static_cast<int>(edits_.size())))](); }

  // Undoes everything; the states on the way, from the start on.
  std::vector<std::string> UndoAll() {
    std::vector<std::string> states = {Everything()};
    while (main().mnuUndo.Enabled) {
      Undo();
      states.insert(states.begin(), Everything());
    }
    return states;
  }

 private:
  using Edits = std::vector<std::function<void()>>;

  FormPlace SomePlace() {
    return {static_cast<float>(Below(80000)) / 4 - 500, static_cast<float>(Below(40000)) / 4 - 500};
  }
  ArrowStep SomeStep() {
    const bool sideways = OneIn(2);
    const int way = OneIn(2) ? 1 : -1;
    return {.right = sideways ? way : 0, .down = sideways ? 0 : way, .other = OneIn(4)};
  }
  // One of those that are visible, 0 if there is none.
  template <class T>
  int Some(const ControlArray<T>& array) {
    std::vector<int> visible;
    for (int i = 1; array.Has(i); ++i) {
      if (array(i).Visible) visible.push_back(i);
    }
    if (visible.empty()) return 0;
    return visible[static_cast<std::size_t>(Below(static_cast<int>(visible.size())))];
  }
  // The edit of one object, if there is one.
  template <class T>
  std::function<void()> On(const ControlArray<T>& array, std::function<void(int)> edit) {
    return [this, &array, edit = std::move(edit)] {
      if (const int index = Some(array)) edit(index);
    };
  }
  void DropOnABox() {
    if (OneIn(2)) {
      if (const int name = Some(main().RAM_LOC_TEXT)) return main().RAM_LOC_TEXT.DragDrop(name);
    }
    if (const int value = Some(main().RAM_LOC_VAL)) return main().RAM_LOC_VAL.DragDrop(value);
    main().form.DragCancel();
  }
  void EndDrag() {
    if (OneIn(5)) return DropOnABox();
    if (OneIn(8)) return main().form.DragCancel();
    const FormPlace place = SomePlace();
    Drop(place.Left, place.Top);
  }
  void SomeColour() {
    ScriptedDialog& dialog = world.dialogs().ExpectColour();
    if (!OneIn(8)) dialog.GiveColour(Below(0x1000000));
  }
  void SomeFont() {
    ScriptedDialog& dialog = world.dialogs().ExpectFont();
    if (OneIn(8)) return;
    dialog.GiveFont({.name = OneIn(2) ? "Courier" : "Arial",
                     .size = static_cast<float>(6 + Below(100)) / 4,
                     .bold = OneIn(2),
                     .italic = OneIn(2)});
  }
  void SomeText() {
    ScriptedDialog& dialog = ExpectLabelText();
    if (OneIn(8)) return;
    dialog.Give(OneIn(8) ? " \" " : "Wärme & \"" + std::to_string(Below(50)) + "\" ");
  }

  Edits MakeEdits() {
    Edits edits = LocationEdits();
    for (const auto& edit : OtherEdits()) edits.push_back(edit);
    return edits;
  }
  Edits LocationEdits() {
    frm_Main& form = main();
    return {
        [this] {
          if (main().MaxId < 40) AddLocation();
        },
        On(form.RAM_LOC_TEXT,
           [this](int i) {
             GrabName(i);
             EndDrag();
           }),
        On(form.RAM_LOC_TEXT,
           [this](int i) {
             GrabName(i);
             EndDrag();
           }),
        On(form.RAM_LOC_VAL,
           [this](int i) {
             GrabValue(i);
             EndDrag();
           }),
        On(form.RAM_LOC_TEXT, [&form, this](int i) { form.RAM_LOC_TEXT.Arrow(i, SomeStep()); }),
        On(form.RAM_LOC_VAL, [&form, this](int i) { form.RAM_LOC_VAL.Arrow(i, SomeStep()); }),
        On(form.RAM_LOC_VAL, [this](int i) { GrabValue(i, ShiftLeftPress()); }),
        On(form.RAM_LOC_CHECK,
           [&form](int i) { form.RAM_LOC_CHECK(i).Value = !form.RAM_LOC_CHECK(i).Value; }),
        On(form.RAM_LOC_TEXT,
           [&form, this](int i) {
             if (OneIn(2)) return;
             ExpectDeleteQuestion().Press(OneIn(4) ? Answer::kNo : Answer::kYes);
             form.RAM_LOC_TEXT.DeleteKey(i);
           }),
    };
  }
  Edits OtherEdits() {
    frm_Main& form = main();
    return {
        [this] {
          if (main().TextInfoCount < 30) AddText();
        },
        On(form.lbl_TextInfo,
           [this](int i) {
             GrabLabel(i);
             EndDrag();
           }),
        On(form.lbl_TextInfo, [&form, this](int i) { form.lbl_TextInfo.Arrow(i, SomeStep()); }),
        On(form.lbl_TextInfo,
           [this](int i) {
             SomeFont();
             GrabLabel(i, RightPress());
           }),
        On(form.lbl_TextInfo,
           [this](int i) {
             SomeColour();
             GrabLabel(i, ShiftRightPress());
           }),
        On(form.lbl_TextInfo,
           [&form, this](int i) {
             SomeText();
             form.lbl_TextInfo.DblClick(i);
           }),
        On(form.lbl_TextInfo,
           [&form, this](int i) {
             if (OneIn(4)) form.lbl_TextInfo.DeleteKey(i);
           }),
        [&form, this] {
          SomeColour();
          form.form.MouseDown(RightPress());
        },
        [this] { SetGrid(OneIn(2)); },
        [this] { SetScanningBox(!OneIn(4)); },
    };
  }

  std::mt19937 random_{4711};
  Edits edits_ = MakeEdits();
};

TEST_F(RandomEdits, AThousandAreUndoneToTheStartAndRedoneToTheEnd) {
  const std::string file = world.disk().Get(kScreen);
  const std::string start = Everything();
  std::vector<std::string> seen = {start};
  // Some change nothing, or join the one before.
  for (int kept = 0; kept < 1000;) {
    Edit();
    if (Everything() == seen.back()) continue;
    seen.push_back(Everything());
    ++kept;
  }
  const std::vector<std::string> states = UndoAll();
  EXPECT_GT(states.size(), 900U);
  EXPECT_EQ(Everything(), start);
  EXPECT_EQ(FileNow(), file);
  EXPECT_FALSE(Changed());
  // Every state on the way back is one of the way there, in order.
  std::size_t at = 0;
  for (const std::string& state : states) {
    while (at < seen.size() && seen[at] != state) ++at;
    ASSERT_LT(at, seen.size());
  }
  for (std::size_t i = 1; i < states.size(); ++i) {
    Redo();
    ASSERT_EQ(Everything(), states[i]) << i;
  }
  EXPECT_EQ(Everything(), seen.back());
  EXPECT_FALSE(main().mnuRedo.Enabled);
  UndoAll();
  world.disk().Put(kScreen, "");
  Save();
  EXPECT_EQ(world.disk().Get(kScreen), file);
}

TEST_F(RandomEdits, AWalkThroughTheHistoryMeetsEachStateAtItsPlace) {
  for (int i = 0; i < 400; ++i) Edit();
  const std::vector<std::string> states = UndoAll();
  const int last = static_cast<int>(states.size()) - 1;
  int at = 0;
  for (int walk = 0; walk < 30; ++walk) {
    const int target = Below(last + 1);
    for (; at < target; ++at) Redo();
    for (; at > target; --at) Undo();
    ASSERT_EQ(Everything(), states[static_cast<std::size_t>(at)]) << at;
    EXPECT_EQ(main().mnuUndo.Enabled, at > 0);
    EXPECT_EQ(main().mnuRedo.Enabled, at < last);
  }
}

TEST_F(RandomEdits, MixedWithUndoRedoAndSavesEachStateCanBeHadBack) {
  const std::string start = Everything();
  std::string before = start;
  for (int i = 0; i < 1500; ++i) {
    const int kind = Below(10);
    if (kind == 0) {
      Save();
      EXPECT_FALSE(Changed());
    } else if (kind < 4 && main().mnuUndo.Enabled) {
      const std::string undone = Everything();
      Undo();
      const std::string now = Everything();
      Redo();
      ASSERT_EQ(Everything(), undone) << i;
      Undo();
      ASSERT_EQ(Everything(), now) << i;
    } else if (kind < 6 && main().mnuRedo.Enabled) {
      Redo();
    } else {
      Edit();
    }
  }
  UndoAll();
  EXPECT_EQ(Everything(), start);
}

}  // namespace
}  // namespace tarnlink
