// One target a reader of files, of settings or of typed texts.
#pragma once

#include "fuzz/target.h"

namespace tarnlink {

FuzzTarget ParameterFileTarget();
FuzzTarget ConfigFileTarget();
FuzzTarget EepromSourceTarget();
FuzzTarget SnifferFileTarget();
FuzzTarget ScreenFileTarget();
FuzzTarget ProjectFileTarget();
FuzzTarget ProjectTreeTarget();
FuzzTarget IdFileTarget();
FuzzTarget ErrorTextsTarget();
FuzzTarget AvrMapTarget();
FuzzTarget NecListingTarget();
FuzzTarget MapFileTypeTarget();
FuzzTarget TextFileTarget();
FuzzTarget FieldStreamTarget();
FuzzTarget LineFieldsTarget();
FuzzTarget LogFileTarget();
FuzzTarget DatesTarget();
FuzzTarget NumbersTarget();
FuzzTarget LocalDecimalTarget();
FuzzTarget PathsTarget();
FuzzTarget PortSettingsTarget();
FuzzTarget WriteTextsTarget();
FuzzTarget LocationValuesTarget();
FuzzTarget ShownTextTarget();
FuzzTarget ScreenExportTarget();
FuzzTarget SnifferTextTarget();
FuzzTarget MeasureFileTarget();
FuzzTarget GraphLinesTarget();
FuzzTarget MeasureExportTarget();
FuzzTarget SettingsTarget();
FuzzTarget MemoryMapTarget();

}  // namespace tarnlink
