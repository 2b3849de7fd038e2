// A spreadsheet file with one sheet, "Sheet1", that grows cell by cell. Real class: `XlsxWorkbook`;
// fake: `FakeWorkbook`.
#pragma once

#include <functional>
#include <string>

#include "common/run_time_error.h"

namespace tarnlink {

// Rows and columns count from 1.
struct SheetCell {
  int row = 0;
  int column = 0;

  auto operator<=>(const SheetCell&) const = default;
};

// What the sheet of an .xlsx file has room for.
inline constexpr SheetCell kLastCell = {1'048'576, 16'384};

// Whoever made it has it on the disk, still empty, and may fill it. No call waits for the disk;
// only the destructor does, to save what is not saved yet.
class Workbook {
 public:
  virtual ~Workbook() = default;

  virtual const std::string& path() const = 0;

  // Puts a text or a number into a cell, in place of what was there. It is saved by itself within
  // seconds, and later the longer a save takes. A cell that the sheet has no room for is a failure.
  virtual void Poke(SheetCell cell, const std::string& text) = 0;
  virtual void Poke(SheetCell cell, double number) = 0;

  // Saves as soon as can be.
  virtual void Save() = 0;
  // Whether the disk has all that was poked.
  virtual bool Saved() const = 0;

  // Called through the event loop for every save that failed, with RunTimeError 61, 70, 76 or 57,
  // and once with 9 when a cell found no room. The file keeps what the last good save gave it; all
  // cells are kept and the save is tried again. The handler must not destroy the workbook.
  virtual void SetOnFailure(std::function<void(const RunTimeError&)> handler) = 0;
};

// The failure of a cell that the sheet has no room for.
inline RunTimeError SheetIsFull(const std::string& path) {
  return RunTimeError(kSubscript,
                      "\"" + path + "\" has no room for more; further cells are left out.");
}

}  // namespace tarnlink
