// A screen of two Locations and two labels, and the edits of it that are to be undone.
#pragma once

#include <string>

#include "form/edit_fixture.h"

namespace tarnlink {

class Undoing : public EditTest {
 protected:
  Undoing() { OpenStart(); }

  void OpenStart() {
    main().WCRChanged = false;
    OpenScreen({LocationLine("Flow", {1000, 600}, {4000, 640}),
                LocationLine("Tank", {1000, 5000}, {4000, 5040}, 2),
                LabelLine("Boiler", {500, 9000}), LabelLine("Cellar", {500, 9300})});
  }
  void ColourForm(Colour colour) {
    world.dialogs().ExpectColour().GiveColour(colour);
    main().form.MouseDown(RightPress());
  }
  void ColourLabel(int index, Colour colour) {
    world.dialogs().ExpectColour().GiveColour(colour);
    GrabLabel(index, ShiftRightPress());
  }
  void FontLabel(int index, const Font& font) {
    world.dialogs().ExpectFont().GiveFont(font);
    GrabLabel(index, RightPress());
  }
  void ToggleSize(int index) { GrabValue(index, ShiftLeftPress()); }
  void ToggleCheck(int index) {
    main().RAM_LOC_CHECK(index).Value = !main().RAM_LOC_CHECK(index).Value;
  }
  std::string File() { return world.disk().Get(kScreen); }
};

}  // namespace tarnlink
