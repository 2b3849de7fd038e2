#include "fuzz/forms/forms.h"

namespace tarnlink {

std::vector<FuzzTarget> FormTargets() {
  return {
      CfgCheckFormTarget(),
      ControlPanelFormTarget(),
      EepromDownloaderFormTarget(),
      EepromWriterFormTarget(),
      LinkFormTarget(),
      ParameterWriterFormTarget(),
      ScanSlavesFormTarget(),
      SnifferFormTarget(),
      SnifferSettingsFormTarget(),
      WpConversionFormTarget(),
      WrongMessageFormTarget(),
      GraphFormTarget(),
      GraphFilesFormTarget(),
      GraphSettingsFormTarget(),
      GraphTestModeFormTarget(),
      GenParFileFormTarget(),
      LocationSettingsFormTarget(),
      MultipleRegistersFormTarget(),
      OptionsFormTarget(),
      ProjectFormTarget(),
      RunModbusFormTarget(),
      RunTarnlinkFormTarget(),
      RunZoltFormTarget(),
      ScreenEditingFormTarget(),
      WriteDialogsFormTarget(),
  };
}

}  // namespace tarnlink
