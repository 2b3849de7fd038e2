// Boxes and labels dragged over the form with the mouse. What is dragged is hidden until it is let
// go; the view shows meanwhile where it would come to stand.
#pragma once

#include <optional>
#include <string>

#include "monitor/edit_history.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/screen_grid.h"

namespace tarnlink {

class ScreenDrag {
 public:
  // Binds the drops on the form and on the boxes, and a press on a name box. All arguments outlive
  // it.
  ScreenDrag(frm_Main& main, const frm_Options& options, EditHistory& history);

  // The user has taken hold of something. A value box and a label move by themselves, a name box
  // takes its value box and its check box with it.
  void BeginName(int index, const MousePress& press);
  void BeginValue(int index, const MousePress& press);
  void BeginLabel(int index, const MousePress& press);

 private:
  void Begin(PlacedControl& source, float x, float y);
  FormPlace HeldPlace(float X, float Y) const;
  bool Moves(const FormPlace& place) const;
  FormPlace Landing(float X, float Y) const;
  void DropOnForm(float X, float Y);
  void DropOnName(int index);
  void DropOnValue();
  void Cancel();
  void PlaceBesideName(int index);
  void End(Effect effect);

  frm_Main& main_;
  const frm_Options& options_;
  EditHistory& history_;
  ScreenGrid grid_;
  std::optional<ScreenEdit> edit_;  // while a drag is under way
};

}  // namespace tarnlink
