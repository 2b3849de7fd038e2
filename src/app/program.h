// The program put together: the outside world, the forms and their windows.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "monitor/frm_first_steps.h"
#include "monitor/monitor.h"
#include "platform/qt/qt_platform.h"
#include "platform/watched_platform.h"
#include "ui/about_dialog.h"
#include "ui/file_tools.h"
#include "ui/first_steps_panel.h"
#include "ui/gen_par_file_dialog.h"
#include "ui/graph_tool.h"
#include "ui/help_key.h"
#include "ui/link_tool.h"
#include "ui/main_window.h"
#include "ui/multiple_registers_dialog.h"
#include "ui/options_dialog.h"
#include "ui/service_tools.h"
#include "ui/settings_dialog.h"
#include "ui/write_bit_dialog.h"
#include "ui/write_value_dialog.h"

namespace tarnlink {

class Program {
 public:
  // Needs a QApplication. Ends its event loop when the user leaves.
  Program();

  // Loads the main form, shows it, and takes `files` in their order: a screen is opened, any other
  // file counts as dropped, so that a project is opened.
  void Start(const std::vector<std::string>& files);

  // As closing the main window by its frame, with whatever stands in front of it closed first. What
  // has to ask before it goes does so; the program stays if the user wants to.
  void Leave();

  Monitor& monitor() { return monitor_; }
  MainWindow& window() { return window_; }

 private:
  void MakeTools();
  FirstStepsHost HostOfFirstSteps();
  void OpenFiles(const std::vector<std::string>& files);

  QtPlatform outside_;
  LinkRecord link_record_{outside_.clock()};
  WatchedPlatform platform_{outside_, link_record_};
  Monitor monitor_{platform_};
  MainWindow window_{monitor_.main};
  LinkTool link_{monitor_.main, link_record_, window_};
  frm_FirstSteps first_steps_{monitor_.main, monitor_.options, HostOfFirstSteps()};
  FirstStepsPanel first_steps_panel_{first_steps_, window_.ScreenArea()};
  std::unique_ptr<OptionsDialog> options_;
  std::unique_ptr<AboutDialog> about_;
  std::unique_ptr<SettingsDialog> settings_;
  std::unique_ptr<WriteValueDialog> write_value_;
  std::unique_ptr<WriteBitDialog> write_bit_;
  std::unique_ptr<MultipleRegistersDialog> write_registers_;
  std::unique_ptr<GenParFileDialog> gen_par_file_;
  std::unique_ptr<GraphTool> graph_;
  ToolHost tool_host_;
  std::unique_ptr<ServiceTools> tools_;
  std::unique_ptr<FileTools> file_tools_;
  HelpKey help_key_{[this](std::string_view page) { monitor_.help.Open(page); }};
};

}  // namespace tarnlink
