// The live monitor put together: the forms with what happens on them.
#pragma once

#include "monitor/add_commands.h"
#include "monitor/communication_run.h"
#include "monitor/edit_history.h"
#include "monitor/export_commands.h"
#include "monitor/frm_about.h"
#include "monitor/frm_gen_par_file.h"
#include "monitor/frm_main.h"
#include "monitor/frm_multiple_reg.h"
#include "monitor/frm_options.h"
#include "monitor/frm_settings.h"
#include "monitor/frm_write_bit_value.h"
#include "monitor/frm_write_value.h"
#include "monitor/help_topics.h"
#include "monitor/id_names.h"
#include "monitor/location_settings.h"
#include "monitor/look_commands.h"
#include "monitor/memory_map.h"
#include "monitor/object_commands.h"
#include "monitor/print_commands.h"
#include "monitor/project_commands.h"
#include "monitor/project_files.h"
#include "monitor/run_records.h"
#include "monitor/screen_commands.h"
#include "monitor/screen_drag.h"
#include "monitor/start_and_leave.h"
#include "monitor/tool_commands.h"
#include "monitor/write_commands.h"

namespace tarnlink {

// `platform` outlives it. The program begins with `start.Form_Load()`.
struct Monitor {
  explicit Monitor(Platform& platform) : main(platform), options(platform, main) {}

  frm_Main main;
  frm_Options options;
  frmAbout about{main};
  RunRecords recorder{main, options};
  CommunicationRun run{main, options, recorder, MakeProtocols()};
  EditHistory history{main};
  MemoryMap map{main, options};
  IdNames ids{main, options};
  AddressCheck addresses{main, map};
  ScreenCommands screen{main, options, run, recorder, history, addresses};
  AddCommands add{main, options, run, history};
  ScreenDrag drag{main, options, history};
  LookCommands look{main, drag, history};
  ObjectCommands objects{main, options, history};
  frm_Settings settings{main, options, map, ids};
  LocationSettings location_settings{main, settings, objects, history};
  ProjectCommands project{main, options, map};
  ProjectFiles project_files{main, project, screen, map};
  frm_WriteValue write_value;
  frm_WriteBitValue write_bit;
  frm_multiple_reg write_registers{main};
  WriteCommands write{main, options, run, write_value, write_bit, write_registers};
  ExportCommands doc_export{main};
  PrintCommands print{main};
  HelpTopics help{main};
  ToolCommands tools{main};
  frmGenParFile gen_par_file{main};
  StartAndLeave start{main, options, screen};
};

}  // namespace tarnlink
