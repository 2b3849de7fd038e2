// What the user does to a single object of the screen without the mouse's drag: moving it with the
// arrow keys, deleting it, taking a Location out of the scan.
#pragma once

#include <initializer_list>

#include "monitor/edit_history.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/screen_grid.h"

namespace tarnlink {

class ObjectCommands {
 public:
  // Binds the keys on boxes and labels, and the check boxes. All arguments outlive it.
  ObjectCommands(frm_Main& main, const frm_Options& options, EditHistory& history);

  // One step: the grid's size while the grid is on, else a pixel; `step.other` takes the other one.
  // A name box takes its value box and its check box along, at their distance. Nothing goes over
  // the form's upper or left edge.
  void MoveName(int index, const ArrowStep& step);
  void MoveValue(int index, const ArrowStep& step);
  void MoveLabel(int index, const ArrowStep& step);

  // Asks first. The record stays in the table with its boxes hidden; its number is not used again.
  // Not during a run.
  void DeleteLocation(int index);
  void DeleteLabel(int index);

  // The check box says whether the Location is scanned. A slanted name says that it is not, or that
  // it is written continuously.
  void ScanCheckClicked(int index);

 private:
  FormPlace Stepped(const PlacedControl& control, const ArrowStep& step) const;
  // The first of `controls` takes the step, the others go with it.
  void Move(const ScreenEdit& edit, std::initializer_list<PlacedControl*> controls,
            const ArrowStep& step);

  frm_Main& main_;
  EditHistory& history_;
  const frm_Options& options_;
  ScreenGrid grid_;
};

}  // namespace tarnlink
