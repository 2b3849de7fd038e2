// The keyboard on the screen: Tab leads through boxes and labels in reading order, arrow keys move
// the focused one, Enter is its double click, Delete deletes it, the Menu key is the right button.
#pragma once

#include <QKeyEvent>

#include "monitor/frm_main.h"
#include "ui/screen_item.h"

namespace tarnlink {

class ScreenSurface;

class ScreenKeys final {
 public:
  // Both outlive it.
  ScreenKeys(frm_Main& main, ScreenSurface& surface) : main_(main), surface_(surface) {}

  // False if the key means nothing here.
  bool Press(const QKeyEvent& event);

  // Gives the keyboard to the object that follows the focused one, or goes before it; to the first
  // or last one if none has it. False at the end of the screen.
  bool Step(bool forward);

 private:
  bool PressArrow(const ScreenItem& item, int key, bool other);
  bool PressEnter(const ScreenItem& item, bool shift);
  bool PressDelete(const ScreenItem& item);
  bool PressMenu(const ScreenItem& item, bool shift);

  frm_Main& main_;
  ScreenSurface& surface_;
};

}  // namespace tarnlink
