// The form of the control panel: its controls, tab by tab, and the fields that its parts share.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "common/control_array.h"
#include "common/controls.h"
#include "common/dialog_controls.h"
#include "files/error_texts.h"
#include "tools/panel_requests.h"

namespace tarnlink {

// A row of tabs of which one is in view.
class TabControl final : public Control {
 public:
  TabControl(std::string name, std::vector<std::string> captions)
      : Control(std::move(name)), Captions(std::move(captions)) {}

  const std::vector<std::string> Captions;
  Property<int> Tab{this, 0};
  std::function<void()> Click;  // after another tab has come into view

 protected:
  void Changed(const PropertyBase& which) override;
};

// A text that is only looked at, with what stands beside it.
class PanelText final : public TextBox {
 public:
  explicit PanelText(std::string name, std::string label = {})
      : TextBox(std::move(name)), Caption(std::move(label)) {
    Locked = true;
  }

  const std::string Caption;
};

class PointerForm final : public Control {
 public:
  using Control::Control;

  static constexpr int kDefaultPointer = 0;
  Property<int> MousePointer{this, kDefaultPointer};
};

using BitBoxes = FixedArray<CheckBox>;
using PanelTexts = FixedArray<PanelText>;
using PanelLabels = FixedArray<Label>;

// One row of the grid on the tab of the sensors.
struct SensorBoxes {
  explicit SensorBoxes(int number);

  Label label;
  PanelText txt_8bit;
  PanelText txt_16bit;
  PanelText txt_temp;
};

struct PanelForm {
  static constexpr int kSensors = static_cast<int>(kSensorIds.size());
  static constexpr Colour kRed = 255;

  PanelForm();

  PointerForm form{"frm_ContPanel"};
  Label caption{"frm_ContPanel.Caption"};
  TabControl SSTab1{"SSTab1", PanelTabCaptions()};
  CheckBox chkContinuousUpdate{"chkContinuousUpdate", "Continuous update"};
  // Why nothing can be sent, while that is so.
  Label lblLine{"lblLine"};

  // --- Status and Controll ---
  Label lblSlave{"lblSlave"};  // a heading
  BitBoxes chk_StatusH;
  BitBoxes chk_StatusL;
  GroupBox fraFlameCurrent{"fraFlameCurrent", "Flame Current"};
  Label lblFlameCurrentADCs{"lblFlameCurrentADCs", "Flame Current ADC's"};
  PanelText txt_FlameAD10bit{"txt_FlameAD10bit", "10-bit AD"};
  PanelText txt_FlameCurrentADC{"txt_FlameCurrentADC", "8-bit AD"};
  PanelText txt_FlameCurrentuA{"txt_FlameCurrentuA", "Flame Current uA"};
  GroupBox fraSoftwareVersion{"fraSoftwareVersion", "Software Version"};
  PanelText txt_softwareversionROMHUP{"txt_softwareversionROMHUP", "ROM HuP/Platform version"};
  PanelText txt_softwareversionROMLUP{"txt_softwareversionROMLUP", "ROM LuP/Custom version"};
  PanelText txt_softwareversion_EEPROM{"txt_softwareversion_EEPROM", "EEPROM version"};
  PanelText txt_OSNumber{"txt_OSNumber", "OS number"};
  // Beside the versions of the same memory.
  PanelText txt_HUPCRC{"txt_HUPCRC", "CRC"};
  PanelText txt_LUPCRC{"txt_LUPCRC", "CRC"};
  GroupBox fraAcknowledge{"fraAcknowledge", "Acknowledge"};
  CheckBox chk_HeatDemand{"chk_HeatDemand", "Heat Demand Accepted"};
  CheckBox chk_Reset{"chk_Reset", "Reset Acknowledge"};
  CommandButton cmdHeadDemand{"cmdHeadDemand", "Heat Demand"};
  CommandButton cmdResetError{"cmdResetError", "Reset Error"};
  CommandButton cmdUpdateStatus{"cmdUpdateStatus", "Update"};

  // --- Configuration ---
  BitBoxes chk_configL;
  BitBoxes chk_configH;
  GroupBox fraSafety{"fraSafety", "Safety parameters"};
  PanelTexts txtSafety;
  CommandButton cmdUpdateConfig{"cmdUpdateConfig", "Update"};

  // --- Sensors: a row for each, from sensor 1, and the captions of the columns in their order ---
  std::array<SensorBoxes, kSensors> sensors;
  PanelLabels lblSensorColumn;  // 8 bits, 16 bits, degrees
  CommandButton cmdUpdateSensors{"cmdUpdateSensors", "Update"};

  // --- Error and History: two columns of four rows ---
  GroupBox fraErrorCodes{"fraErrorCodes", "Error Codes"};
  PanelText txt_Error{"txt_Error", "Error Code"};
  PanelText txt_ErrorDescription{"txt_ErrorDescription", "Description"};
  GroupBox fraErrorHistory{"fraErrorHistory", "Error History"};
  PanelTexts txt_ErrBufCode;
  PanelTexts txt_ErrBuffTime;
  CommandButton cmdUpdateError{"cmdUpdateError", "Update"};

  // --- Statistics ---
  GroupBox fraBurnerHistory{"fraBurnerHistory", "Burner History"};
  PanelText txt_BurnerSwitchings{"txt_BurnerSwitchings", "Number of Burner Switchings"};
  PanelText txt_Lockouts{"txt_Lockouts", "Number of Lockouts"};
  PanelText txt_BurnerSwitchingsDHW{"txt_BurnerSwitchingsDHW", "Number of Burner Switchings DHW"};
  PanelText txt_HoursBurnerOn{"txt_HoursBurnerOn", "Total Hours Burner On"};
  PanelText txt_HoursBurnerOnDHW{"txt_HoursBurnerOnDHW", "Total Hours Burner On DHW"};
  PanelText txt_HoursKEM3On{"txt_HoursKEM3On", "Total Hours KEM-3 On"};
  PanelText txt_DHWM3{"txt_DHWM3", "Domestic hot water used (m3)"};
  PanelText txt_HoursCHPump{"txt_HoursCHPump", "Total hours CH pump"};
  PanelText txt_HoursDHWPump{"txt_HoursDHWPump", "Total hours DHW pump"};
  CommandButton cmdUpdateStatistics{"cmdUpdateStatistics", "Update"};

  // --- Fields ---
  std::array<bool, kPendingFlags> Pending{};
  std::int16_t ErrorHistoryIndex = 0;  // of the entry that is asked for
  // The data bytes that came last.
  std::uint8_t StatusHigh = 0;
  std::uint8_t StatusLow = 0;
  std::uint8_t ConfigHigh = 0;
  std::uint8_t ConfigLow = 0;
  // The two halves of `txt_OSNumber`.
  std::string OSName;
  std::string OSNumber;
  ErrorTexts error_texts;

  // Each as its own byte is.
  void ShowStatus();
  void ShowConfig();
  // That of a tab.
  CommandButton& UpdateButton(PanelTabName tab);
  // In the order of their requests.
  std::vector<PanelText*> Statistics();
  // As the form is before the first answer.
  void Clear();

 private:
  std::vector<PanelText*> Texts();
};

}  // namespace tarnlink
