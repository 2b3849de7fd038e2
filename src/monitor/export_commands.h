// The command Export to DOC: the values that the screen shows, kept as a small report.
#pragma once

#include <string>

#include "monitor/frm_main.h"

namespace tarnlink {

class ExportCommands {
 public:
  // Binds the entry. `main` outlives it.
  explicit ExportCommands(frm_Main& main);

  // Asks for a name, and whether a file of that name may go, and exports the screen there.
  void mnuPrintToFile();

  // Asks for a header and writes the report. A file that cannot be written is told and stays as it
  // was.
  void ExportScreen(const std::string& FileName);

 private:
  bool MayOverwrite();
  std::string Report(const std::string& header) const;

  frm_Main& main_;
};

}  // namespace tarnlink
