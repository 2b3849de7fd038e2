// What the user changes of the looks of the screen: a label's font, colour and text, the form's
// colour, the size of a value box.
#pragma once

#include "monitor/edit_history.h"
#include "monitor/frm_main.h"
#include "monitor/screen_drag.h"

namespace tarnlink {

class LookCommands {
 public:
  // Binds the mouse on the form, on value boxes and on labels. All arguments outlive it.
  LookCommands(frm_Main& main, ScreenDrag& drag, EditHistory& history);

  // Twice the template's size, with letters four times as large, or back to the template's.
  void ToggleSize(int index);

  void ChangeLabelFont(int index);
  void ChangeLabelColour(int index);
  // An empty text hides the label, which deletes it: a hidden label is not saved.
  void EditLabelText(int index);

  // The form's, and that of all labels on it.
  void ChangeFormColour();

 private:
  void PressValue(int index, const MousePress& press);
  void PressLabel(int index, const MousePress& press);

  frm_Main& main_;
  ScreenDrag& drag_;
  EditHistory& history_;
};

}  // namespace tarnlink
