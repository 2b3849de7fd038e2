#include "monitor/scan_mark.h"

namespace tarnlink {

void ShowScanMark(frm_Main& main, int index) {
  const bool is_special = main.Locations[index].ScanFlags != 0;
  TextBox& name = main.RAM_LOC_TEXT(index);
  Font font = name.TextFont;
  font.italic = is_special;
  name.TextFont = font;
  name.Locked = is_special;
}

}  // namespace tarnlink
