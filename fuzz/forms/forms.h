// One target a form model.
#pragma once

#include "fuzz/target.h"

namespace tarnlink {

FuzzTarget CfgCheckFormTarget();
FuzzTarget ControlPanelFormTarget();
FuzzTarget EepromDownloaderFormTarget();
FuzzTarget EepromWriterFormTarget();
FuzzTarget LinkFormTarget();
FuzzTarget ParameterWriterFormTarget();
FuzzTarget ScanSlavesFormTarget();
FuzzTarget SnifferFormTarget();
FuzzTarget SnifferSettingsFormTarget();
FuzzTarget WpConversionFormTarget();
FuzzTarget WrongMessageFormTarget();

FuzzTarget GraphFormTarget();
FuzzTarget GraphFilesFormTarget();
FuzzTarget GraphSettingsFormTarget();
FuzzTarget GraphTestModeFormTarget();

FuzzTarget GenParFileFormTarget();
FuzzTarget LocationSettingsFormTarget();
FuzzTarget MultipleRegistersFormTarget();
FuzzTarget OptionsFormTarget();
FuzzTarget ProjectFormTarget();
FuzzTarget RunModbusFormTarget();
FuzzTarget RunTarnlinkFormTarget();
FuzzTarget RunZoltFormTarget();
FuzzTarget ScreenEditingFormTarget();
FuzzTarget WriteDialogsFormTarget();

}  // namespace tarnlink
