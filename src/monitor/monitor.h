// The live monitor put together: the forms with what happens on them.
#pragma once

#include "monitor/communication_run.h"
#include "monitor/frm_about.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/project_commands.h"
#include "monitor/run_recorder.h"
#include "monitor/screen_commands.h"
#include "monitor/start_and_leave.h"

namespace tarnlink {

// `platform` outlives it. The program begins with `start.Form_Load()`.
struct Monitor {
  explicit Monitor(Platform& platform) : main(platform), options(platform, main) {}

  frm_Main main;
  frm_Options options;
  frmAbout about{main};
  NoRecorder recorder;
  CommunicationRun run{main, options, recorder, MakeProtocols()};
  ScreenCommands screen{main, options, run, recorder};
  ProjectCommands project{main};
  StartAndLeave start{main, options, screen};
};

}  // namespace tarnlink
