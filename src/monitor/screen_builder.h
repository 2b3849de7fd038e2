// The controls of one object of the screen, made from its record and turned back into it.
#pragma once

#include "files/screen_file.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"

namespace tarnlink {

// Makes Location `index` of the table and its three boxes. An index above 512 throws RunTimeError 9
// before anything is made.
void BuildLocation(frm_Main& main, const frm_Options& options, int index,
                   const LocationRecord& record);

// Makes label `index`.
void BuildLabel(frm_Main& main, int index, const LabelRecord& record);

// The records of everything that is visible, Locations first, as a screen file holds them.
std::vector<ScreenRecord> ScreenRecords(const frm_Main& main, const frm_Options& options);

}  // namespace tarnlink
