#include "fuzz/readers/readers.h"

namespace tarnlink {

std::vector<FuzzTarget> ReaderTargets() {
  return {
      ParameterFileTarget(), ConfigFileTarget(),  EepromSourceTarget(),   SnifferFileTarget(),
      ScreenFileTarget(),    ProjectFileTarget(), ProjectTreeTarget(),    IdFileTarget(),
      ErrorTextsTarget(),    AvrMapTarget(),      NecListingTarget(),     MapFileTypeTarget(),
      TextFileTarget(),      FieldStreamTarget(), LineFieldsTarget(),     LogFileTarget(),
      DatesTarget(),         NumbersTarget(),     LocalDecimalTarget(),   PathsTarget(),
      PortSettingsTarget(),  WriteTextsTarget(),  LocationValuesTarget(), ShownTextTarget(),
      ScreenExportTarget(),  SnifferTextTarget(), MeasureFileTarget(),    GraphLinesTarget(),
      MeasureExportTarget(), SettingsTarget(),    MemoryMapTarget(),
  };
}

}  // namespace tarnlink
