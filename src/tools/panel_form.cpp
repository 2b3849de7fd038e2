#include "tools/panel_form.h"

namespace tarnlink {

namespace {

constexpr int kBits = 8;

const std::vector<std::string> kStatusHigh = {
    "CH Mode", "DHW Mode",      "Test Mode",         "Flame ",
    "Exhaust", "Water filling", "Calibration start", "Calibration min."};
const std::vector<std::string> kStatusLow = {
    "Fault",       "Valve 1 open", "Valve 2 open",   "Air pressure switch",
    "Fan running", "Pump running", "Water Pressure", "Frost"};
const std::vector<std::string> kConfigLow = {
    "0=European/ 1=Australian",
    "KEM-m Configured",
    "Burner Power Control Configured",
    "Air Pressure Switch",
    "Exhaust Tempeature Protection",
    "0=Continuous HL sensing/        1=HL Sensing only during burner on",
    "Check APS during modulation",
    "Break Postpurge by Heat Demand"};
const std::vector<std::string> kConfigHigh = {"0=Remaining Safety Time / 1=Fixed Stab",
                                              "Spark during stabilisation",
                                              "0=Direct Burner Ignition/ 1=Intermittent Pilot",
                                              "Free",
                                              "Free",
                                              "Free",
                                              "Free",
                                              "Free"};
const std::vector<std::string> kSafety = {
    "Prepurge time (s)",  "Preignition time (s)",   "Safety time (s)", "Post Ignition Time (s)",
    "Postpurge Time (s)", "Max. number of retries", "APS On Time (s)", "APS Off Time (s)"};
const std::vector<std::string> kSensorColumns = {"8 bit AD", "Converted value x 10",
                                                 "Converted value"};

std::vector<std::string> OfEachEntry(const std::string& caption) {
  return std::vector<std::string>(kHistoryEntries, caption);
}

void ShowBits(const BitBoxes& boxes, std::uint8_t byte) {
  for (int bit = 0; bit < kBits; ++bit) boxes(bit).Value = (byte >> bit & 1) != 0;
}

std::string SensorName(int number, const std::string& kind) {
  return "txt_sensor" + std::to_string(number) + "_" + kind;
}

}  // namespace

void TabControl::Changed(const PropertyBase& which) {
  Control::Changed(which);
  if (&which == &Tab && Click) Click();
}

SensorBoxes::SensorBoxes(int number)
    : label("lblSensor(" + std::to_string(number) + ")", "Sensor " + std::to_string(number)),
      txt_8bit(SensorName(number, "8bit"), kSensorColumns[0]),
      txt_16bit(SensorName(number, "16bit"), kSensorColumns[1]),
      txt_temp(SensorName(number, "temp"), kSensorColumns[2]) {}

PanelForm::PanelForm()
    : chk_StatusH("chk_StatusH", 0, kStatusHigh),
      chk_StatusL("chk_StatusL", 0, kStatusLow),
      chk_configL("chk_configL", 0, kConfigLow),
      chk_configH("chk_configH", 0, kConfigHigh),
      txtSafety("txtSafety", 0, kSafety),
      sensors{SensorBoxes(1), SensorBoxes(2), SensorBoxes(3), SensorBoxes(4),
              SensorBoxes(5), SensorBoxes(6), SensorBoxes(7)},
      lblSensorColumn("lblSensorColumn", 0, kSensorColumns),
      txt_ErrBufCode("txt_ErrBufCode", 0, OfEachEntry("error number")),
      txt_ErrBuffTime("txt_ErrBuffTime", 0, OfEachEntry("time (h)")) {
  form.Visible = false;
  for (const BitBoxes* status : {&chk_StatusH, &chk_StatusL}) {
    for (int bit = 0; bit < kBits; ++bit) (*status)(bit).Click = [this] { ShowStatus(); };
  }
  for (const BitBoxes* config : {&chk_configL, &chk_configH}) {
    for (int bit = 0; bit < kBits; ++bit) (*config)(bit).Click = [this] { ShowConfig(); };
  }
}

void PanelForm::ShowStatus() {
  ShowBits(chk_StatusH, StatusHigh);
  ShowBits(chk_StatusL, StatusLow);
}

void PanelForm::ShowConfig() {
  ShowBits(chk_configL, ConfigLow);
  ShowBits(chk_configH, ConfigHigh);
}

CommandButton& PanelForm::UpdateButton(PanelTabName tab) {
  switch (tab) {
    case PanelTabName::kStatus:
      return cmdUpdateStatus;
    case PanelTabName::kConfig:
      return cmdUpdateConfig;
    case PanelTabName::kSensors:
      return cmdUpdateSensors;
    case PanelTabName::kErrors:
      return cmdUpdateError;
    default:
      return cmdUpdateStatistics;
  }
}

std::vector<PanelText*> PanelForm::Statistics() {
  return {&txt_BurnerSwitchings,
          &txt_Lockouts,
          &txt_BurnerSwitchingsDHW,
          &txt_HoursBurnerOn,
          &txt_HoursBurnerOnDHW,
          &txt_HoursKEM3On,
          &txt_DHWM3,
          &txt_HoursCHPump,
          &txt_HoursDHWPump};
}

std::vector<PanelText*> PanelForm::Texts() {
  std::vector<PanelText*> texts = {&txt_FlameAD10bit,
                                   &txt_FlameCurrentADC,
                                   &txt_FlameCurrentuA,
                                   &txt_softwareversionROMHUP,
                                   &txt_softwareversionROMLUP,
                                   &txt_softwareversion_EEPROM,
                                   &txt_OSNumber,
                                   &txt_HUPCRC,
                                   &txt_LUPCRC,
                                   &txt_Error,
                                   &txt_ErrorDescription};
  for (const PanelTexts* array : {&txtSafety, &txt_ErrBufCode, &txt_ErrBuffTime}) {
    for (int i = array->first(); i <= array->last(); ++i) texts.push_back(&(*array)(i));
  }
  for (SensorBoxes& sensor : sensors) {
    texts.insert(texts.end(), {&sensor.txt_8bit, &sensor.txt_16bit, &sensor.txt_temp});
  }
  for (PanelText* text : Statistics()) texts.push_back(text);
  return texts;
}

void PanelForm::Clear() {
  Pending.fill(false);
  ErrorHistoryIndex = 0;
  StatusHigh = StatusLow = ConfigHigh = ConfigLow = 0;
  ShowStatus();
  ShowConfig();
  OSName.clear();
  OSNumber.clear();
  for (PanelText* text : Texts()) {
    text->Text = "";
    text->ToolTipText = "";
  }
  chk_HeatDemand.Value = false;
  chk_Reset.Value = false;
  chkContinuousUpdate.Value = false;
  SSTab1.Tab = 0;
  lblLine.Caption = "";
}

}  // namespace tarnlink
