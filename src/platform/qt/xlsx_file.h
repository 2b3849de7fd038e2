// Saving all cells of a workbook as an .xlsx file.
#pragma once

#include <string>

#include "platform/qt/sheet_cells.h"

namespace tarnlink {

// Writes the cells as "Sheet1" of an .xlsx file and saves it at `path`, so that the disk holds the
// old file or the new one. Throws RunTimeError 61, 70, 76 or 57. Any thread may call it.
void SaveXlsx(const std::string& path, const SheetCells& cells);

}  // namespace tarnlink
