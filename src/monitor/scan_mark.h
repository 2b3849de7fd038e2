// How the screen marks a Location that is not simply read: its name is slanted and locked.
#pragma once

#include "monitor/frm_main.h"

namespace tarnlink {

// Makes the name box of Location `index` say what its `ScanFlags` say.
void ShowScanMark(frm_Main& main, int index);

}  // namespace tarnlink
