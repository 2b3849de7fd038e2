// The language of the tests on editing the screen: a user with mouse and keys, and all that an edit
// can change as text.
//
//   OpenScreen({LocationLine("Flow", {240, 600}, {2400, 640}), LabelLine("Boiler", {135, 120})});
//   DragName(1, {1000, 2000});
//   EXPECT_EQ(PlaceOf(main().RAM_LOC_VAL(1)), "3100,2000");
//   Undo();
#pragma once

#include <string>
#include <vector>

#include "form/desk_fixture.h"

namespace tarnlink {

// A memory Location of a screen file, by the places of its name box and its value box.
std::string LocationLine(const std::string& alias, FormPlace name, FormPlace value,
                         int scan_flags = 0);
std::string LabelLine(const std::string& caption, FormPlace place);

MousePress LeftPress(float X = 0, float Y = 0);
MousePress ShiftLeftPress();
MousePress RightPress();
MousePress ShiftRightPress();

inline constexpr ArrowStep kRight{.right = 1};
inline constexpr ArrowStep kLeft{.right = -1};
inline constexpr ArrowStep kDown{.down = 1};
inline constexpr ArrowStep kUp{.down = -1};

// "240,600": left and top.
std::string PlaceOf(const PlacedControl& control);

class EditTest : public DeskTest {
 protected:
  EditTest() { StartProgram(); }

  // --- The user ---

  // Opens a screen with these lines below that of its colour, which is 255.
  void OpenScreen(const std::vector<std::string>& lines);
  void SetGrid(bool on) { options().chkGridOn.Value = on; }
  // As the dialog does, so that the next screen has it too.
  void SetScanningBox(bool on);
  void AddLocation() { main().Toolbar1(1).Press(); }
  void AddText() { main().Toolbar1(4).Press(); }

  void GrabName(int index, const MousePress& press = LeftPress());
  void GrabValue(int index, const MousePress& press = LeftPress());
  void GrabLabel(int index, const MousePress& press = LeftPress());
  // Lets go over the free area of the form.
  void Drop(float X, float Y) { main().form.DragDrop(X, Y); }
  // Whole drags that leave the box at this place, were there no grid.
  void DragName(int index, FormPlace place);
  void DragValue(int index, FormPlace place);
  void DragLabel(int index, FormPlace place);

  // Deletes a Location with its key, and says Yes.
  void DeleteLocation(int index);
  ScriptedDialog& ExpectDeleteQuestion();
  ScriptedDialog& ExpectLabelText();
  // A double click on the label, and this text into the box.
  void TypeLabel(int index, const std::string& text);

  void Undo() { main().mnuUndo.Press(); }
  void Redo() { main().mnuRedo.Press(); }

  // --- What can be seen ---

  // Whether the screen counts as changed; the title agrees.
  bool Changed();
  // "&Undo move of Flow | &Redo"; a disabled entry stands in brackets.
  std::string Entries();
  // What a save would write now.
  std::string FileNow();
  // All that an edit can change.
  std::string Everything();
};

}  // namespace tarnlink
