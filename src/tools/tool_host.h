// What a service tool has of the program around it.
#pragma once

#include <functional>
#include <string>

#include "files/error_texts.h"
#include "platform/platform.h"
#include "protocols/service_line.h"

namespace tarnlink {

// Outlives the tools.
struct ToolHost {
  Platform& platform;
  ServiceLine line;
  // The option that keeps errors of communication from being told in boxes.
  std::function<bool()> IgnoresErrors;
  // Reads the error description anew.
  std::function<const ErrorTexts&()> LoadErrorTexts;
  std::function<std::string()> IdFile;   // the ID file of the options, with its path
  std::function<std::string()> LogPath;  // the folder of the options for logs
  // Shows the control panel on the slave of this number, 0 to 15; `closed` comes when it has been.
  std::function<void(int Index, std::function<void()> closed)> GoControlPanel;
  // The main window lets the port go if it only holds it; false while it communicates.
  std::function<bool()> GivePort = {};
  std::string SlaveAddress = "0";        // of the slave that the control panel shows
  std::function<int()> MsgTimeout = {};  // of the options, in seconds; 0 waits for ever
  // The parameter file that was opened last from the project; empty without one.
  std::function<std::string()> ParameterFile = {};
  // Where the dialog for parameter files opens, and where it was left.
  std::function<std::string()> ParFolder = {};
  std::function<void(const std::string& folder)> KeepParFolder = {};
};

}  // namespace tarnlink
