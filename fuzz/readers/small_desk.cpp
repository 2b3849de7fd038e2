#include "fuzz/readers/small_desk.h"

namespace tarnlink {

// The options of an empty store set every control that a store can set.
SmallDesk& CleanDesk() {
  static SmallDesk desk;
  desk.world.settings() = FakeSettingsStore();
  desk.options.frmMicro.Enabled = true;
  LoadOptions(desk.main, desk.options);
  desk.main.lbl_MapNotice.Caption = "";
  return desk;
}

}  // namespace tarnlink
