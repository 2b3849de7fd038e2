// What each answer does to the control panel: with read ack, with an unknown ID, with anything
// else.

#include "tools/control_panel_fixture.h"

namespace tarnlink {
namespace {

struct Shown {
  const TextBox* box;
  std::string text;
};

struct Case {
  int id;
  int pending;
  std::string data;
  std::vector<Shown> shown;
};

class ControlPanelAnswers : public ControlPanelTest {
 protected:
  ControlPanelAnswers() { panel.Show(); }

  std::vector<Case> Cases();

  void Process(int type, int id, const std::string& data) {
    panel.ProcessKEM3Message(PanelFrame(type, id, data));
  }
  // Bit 0 first.
  static std::string Bits(const BitBoxes& boxes) {
    std::string text;
    for (int bit = 0; bit < 8; ++bit) text += boxes(bit).Value ? '1' : '0';
    return text;
  }
  std::string StatusBits() { return Bits(panel.chk_StatusH) + " " + Bits(panel.chk_StatusL); }
  std::string ConfigBits() { return Bits(panel.chk_configH) + " " + Bits(panel.chk_configL); }
};

std::vector<Case> ControlPanelAnswers::Cases() {
  frm_ContPanel& p = panel;
  std::vector<Case> cases = {
      {50, 4, "2A99", {{&p.txt_Error, "42"}, {&p.txt_ErrorDescription, "text of 42"}}},
      {868, 6, "0DC8", {{&p.txt_FlameCurrentADC, "200"}, {&p.txt_FlameCurrentuA, "13"}}},
      {6015, 7, "03FF", {{&p.txt_FlameAD10bit, "1023"}}},
      {91, 8, "0719", {{&p.txtSafety(0), "1.4"}, {&p.txtSafety(1), "5"}}},
      {103, 9, "0104", {{&p.txtSafety(2), "0.2"}, {&p.txtSafety(3), "0.8"}}},
      {104, 10, "FF07", {{&p.txtSafety(4), "51"}, {&p.txtSafety(5), "7"}}},
      {151, 11, "32FE", {{&p.txtSafety(6), "10"}, {&p.txtSafety(7), "50.8"}}},
      {152, 28, "0307", {{&p.txt_softwareversionROMLUP, " 3.07"}}},
      {1284, 29, "047B", {{&p.txt_softwareversionROMHUP, " 4.23"}}},
      {164, 30, "FF0C", {{&p.txt_softwareversion_EEPROM, " 255.12"}}},
      {5349, 31, "3A7C", {{&p.txt_LUPCRC, "3A7C"}}},
      {5354, 32, "00e1", {{&p.txt_HUPCRC, "00e1"}}},
      {923, 49, "0001", {{&p.txt_BurnerSwitchings, " 1"}}},
      {935, 50, "0203", {{&p.txt_Lockouts, " 515"}}},
      {936, 51, "FFFF", {{&p.txt_BurnerSwitchingsDHW, " 65535"}}},
      {961, 52, "8000", {{&p.txt_HoursBurnerOn, " 32768"}}},
      {974, 53, "0000", {{&p.txt_HoursBurnerOnDHW, " 0"}}},
      {1010, 54, "7FFF", {{&p.txt_HoursKEM3On, " 32767"}}},
      {1021, 55, "0100", {{&p.txt_DHWM3, " 256"}}},
      {3943, 56, "00FF", {{&p.txt_HoursCHPump, " 255"}}},
      {4004, 57, "1234", {{&p.txt_HoursDHWPump, " 4660"}}}};
  const std::vector<int> ids = {241, 770, 817, 855, 856, 5930, 5964};
  const std::vector<int> words = {254, 781, 830, 5913, 5925, 5955, 6000};
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const SensorBoxes& sensor = p.sensors[i];
    const std::string number = std::to_string(i + 1);
    cases.push_back({ids[i],
                     12 + static_cast<int>(i),
                     "F" + number + "0" + number,
                     {{&sensor.txt_8bit, number},
                      {&sensor.txt_temp, std::to_string(0xF1 + static_cast<int>(i))}}});
    cases.push_back({words[i],
                     19 + static_cast<int>(i),
                     "010" + number,
                     {{&sensor.txt_16bit, std::to_string(257 + static_cast<int>(i))}}});
  }
  return cases;
}

// --- Texts ---------------------------------------------------------------------------------------

TEST_F(ControlPanelAnswers, ReadAckFillsTheBoxesOfItsId) {
  for (const Case& one : Cases()) {
    SetPending({0, 2, one.pending, 58});
    for (const int data_class : {0, 1, 2, 4, 6, 7})
      Process(kReadDone + data_class, one.id, one.data);
    for (const Shown& shown : one.shown) EXPECT_EQ(shown.box->Text.get(), shown.text) << one.id;
    EXPECT_EQ(Pending(), (std::vector<int>{0, 2, 58})) << one.id;
  }
}

TEST_F(ControlPanelAnswers, UnknownIdBlanksTheBoxesOfItsId) {
  for (const Case& one : Cases()) {
    Process(kReadDone, one.id, one.data);
    SetPending({one.pending});
    Process(kUnknown + 1, one.id, one.data);
    for (const Shown& shown : one.shown) EXPECT_EQ(shown.box->Text.get(), "") << one.id;
    EXPECT_EQ(Pending(), std::vector<int>{}) << one.id;
  }
}

TEST_F(ControlPanelAnswers, AnyOtherKindLeavesTheBoxesAndClearsTheFlag) {
  for (const Case& one : Cases()) {
    Process(kReadDone, one.id, one.data);
    for (const int kind :
         {kRead, kCorrupted, 0x30, kOutOfRange, 0x50, 0x70, 0x80, kWriteDone, 0xA0, 0xF0}) {
      SetPending({one.pending});
      Process(kind + 2, one.id, "0000");
      for (const Shown& shown : one.shown) EXPECT_EQ(shown.box->Text.get(), shown.text) << one.id;
      EXPECT_EQ(Pending(), std::vector<int>{}) << one.id;
    }
  }
}

TEST_F(ControlPanelAnswers, FillNothingButTheirOwnBoxes) {
  for (const Case& one : Cases()) {
    for (const Case& other : Cases()) {
      for (const Shown& shown : other.shown) const_cast<TextBox*>(shown.box)->Text = "as it was";
    }
    Process(kReadDone, one.id, one.data);
    std::size_t changed = 0;
    for (const Case& other : Cases()) {
      for (const Shown& shown : other.shown) {
        if (shown.box->Text.get() != "as it was") ++changed;
      }
    }
    EXPECT_EQ(changed, one.shown.size()) << one.id;
  }
}

TEST_F(ControlPanelAnswers, AnIdOutsideTheTableChangesNothing) {
  std::vector<int> all;
  for (int i = 0; i < kPendingFlags; ++i) all.push_back(i);
  SetPending(all);
  for (const int id : {0, 2, 13, 172, 874, 0xFFAB, 65535}) Process(kReadDone, id, "FFFF");
  EXPECT_EQ(Pending(), all);
  EXPECT_EQ(StatusBits(), "00000000 00000000");
}

TEST_F(ControlPanelAnswers, WithoutTheStartByteNothingHappens) {
  panel.cmdUpdateStatus.Press();
  panel.form.MousePointer = 11;
  std::string frame = PanelFrame(kReadDone + 1, 1, "FFFF");
  frame[0] = '\n';
  panel.ProcessKEM3Message(frame);
  panel.ProcessKEM3Message("");
  EXPECT_EQ(StatusBits(), "00000000 00000000");
  EXPECT_EQ(Pending(), PanelTabs()[0].indices);
  EXPECT_TRUE(panel.tim_CommTimeout->Enabled());
  EXPECT_EQ(panel.form.MousePointer, 11);
}

TEST_F(ControlPanelAnswers, DigitsThatAreNoneAreShownAsText) {
  Process(kReadDone, 5349, std::string("1\0\n\x80", 4));
  EXPECT_EQ(panel.txt_LUPCRC.Text.get(), "1  \xE2\x82\xAC");
}

TEST_F(ControlPanelAnswers, StopTheTimeoutAndGiveThePointerBack) {
  panel.cmdUpdateStatus.Press();
  panel.form.MousePointer = 11;
  Process(kReadDone, 9999, "0000");
  EXPECT_FALSE(panel.tim_CommTimeout->Enabled());
  EXPECT_EQ(panel.form.MousePointer, 0);
}

TEST_F(ControlPanelAnswers, ThatEndTooEarlyEndSilently) {
  const std::string frame = PanelFrame(kReadDone + 1, 1, "FFFF");
  for (std::size_t length = 0; length <= 3; ++length) {
    SetPending({3});
    panel.ProcessKEM3Message(frame.substr(0, length));
    EXPECT_EQ(Pending(), std::vector<int>{3}) << length;
  }
  EXPECT_EQ(StatusBits(), "00000000 00000000");
}

// --- Bits ----------------------------------------------------------------------------------------

TEST_F(ControlPanelAnswers, ShowEachBitOfTheStatus) {
  SetPending({3, 5});
  Process(kReadDone + 1, 1, "8134");
  EXPECT_EQ(StatusBits(), "10000001 00101100");
  EXPECT_EQ(panel.StatusHigh, 0x81);
  EXPECT_EQ(panel.StatusLow, 0x34);
  EXPECT_EQ(Pending(), std::vector<int>{5});
  EXPECT_EQ(ConfigBits(), "00000000 00000000");
  for (int bit = 0; bit < 8; ++bit) {
    Process(kReadDone + 1, 1, boiler::HexDigits(0x101U << bit, 4));
    std::string one = "00000000";
    one[static_cast<std::size_t>(bit)] = '1';
    EXPECT_EQ(StatusBits(), one + " " + one);
  }
}

TEST_F(ControlPanelAnswers, ShowEachBitOfTheConfiguration) {
  SetPending({3, 5});
  Process(kReadDone + 2, 84, "020C");
  EXPECT_EQ(ConfigBits(), "01000000 00110000");
  EXPECT_EQ(panel.ConfigHigh, 0x02);
  EXPECT_EQ(panel.ConfigLow, 0x0C);
  EXPECT_EQ(Pending(), std::vector<int>{3});
  EXPECT_EQ(StatusBits(), "00000000 00000000");
}

TEST_F(ControlPanelAnswers, UnticksTheBitsOfAnUnknownId) {
  for (const int id : {1, 84}) {
    SetPending({3, 5});
    Process(kReadDone, id, "FFFF");
    Process(kUnknown, id, "FFFF");
  }
  EXPECT_EQ(StatusBits() + ConfigBits(), "00000000 0000000000000000 00000000");
  panel.chk_StatusH(3).Value = true;
  panel.chk_configL(3).Value = true;
  EXPECT_EQ(StatusBits() + ConfigBits(), "00000000 0000000000000000 00000000")
      << "A click does not bring them back.";
}

TEST_F(ControlPanelAnswers, BitsStayWithAnyOtherKind) {
  for (const int id : {1, 84}) Process(kReadDone, id, "5AA5");
  for (const int id : {1, 84}) {
    SetPending({3, 5});
    Process(kOutOfRange, id, "FFFF");
    EXPECT_EQ(Pending().size(), 1U);
  }
  EXPECT_EQ(StatusBits(), "01011010 10100101");
  EXPECT_EQ(ConfigBits(), "01011010 10100101");
}

TEST_F(ControlPanelAnswers, AClickOnABitSetsAllOfThemAgain) {
  Process(kReadDone, 1, "5AA5");
  Process(kReadDone, 84, "0FF0");
  for (const BitBoxes* boxes :
       {&panel.chk_StatusH, &panel.chk_StatusL, &panel.chk_configH, &panel.chk_configL}) {
    for (int bit = 0; bit < 8; ++bit) {
      (*boxes)(bit).Value = !(*boxes)(bit).Value;
      EXPECT_EQ(StatusBits(), "01011010 10100101");
      EXPECT_EQ(ConfigBits(), "11110000 00001111");
    }
  }
}

// --- Commands ------------------------------------------------------------------------------------

TEST_F(ControlPanelAnswers, HeatDemandIsAcceptedByItsHighDigitsWhateverTheKind) {
  for (const int kind : {kWriteDone, kReadDone, kUnknown, kOutOfRange}) {
    for (const auto& [data, ticked] : std::vector<std::pair<std::string, bool>>{{"FF00", true},
                                                                                {"00FF", false},
                                                                                {"FFFF", true},
                                                                                {"ff00", false},
                                                                                {"FF12", true},
                                                                                {"0000", false},
                                                                                {"Ff00", false}}) {
      SetPending({1, 0});
      Process(kind + 1, 14, data);
      EXPECT_EQ(panel.chk_HeatDemand.Value, ticked) << data;
      EXPECT_EQ(Pending(), std::vector<int>{0});
    }
  }
}

TEST_F(ControlPanelAnswers, ResetIsAcknowledgedByItsDataWhateverTheKind) {
  for (const int kind : {kWriteDone, kReadDone, kUnknown, kOutOfRange}) {
    for (const auto& [data, ticked] : std::vector<std::pair<std::string, bool>>{
             {"AA55", true}, {"55AA", false}, {"aa55", true}, {"AA54", false}, {"AB55", false}}) {
      SetPending({1, 0});
      Process(kind + 3, 171, data);
      EXPECT_EQ(panel.chk_Reset.Value, ticked) << data;
      EXPECT_EQ(Pending(), std::vector<int>{1});
    }
  }
}

// --- The OS number -------------------------------------------------------------------------------

TEST_F(ControlPanelAnswers, TheOsNumberHasTwoHalves) {
  SetPending({26, 27});
  Process(kReadDone + 1, 61, "0502");
  EXPECT_EQ(panel.txt_OSNumber.Text.get(), "R1865CM");
  EXPECT_EQ(Pending(), std::vector<int>{27});
  Process(kReadDone + 1, 5337, "07F8");
  EXPECT_EQ(panel.txt_OSNumber.Text.get(), "R1865CM2040");
  EXPECT_EQ(Pending(), std::vector<int>{});
  EXPECT_EQ(panel.OSName, "R1865CM");
  EXPECT_EQ(panel.OSNumber, "2040");
  Process(kReadDone + 1, 61, "6300");
  EXPECT_EQ(panel.txt_OSNumber.Text.get(), "modem2040");
  Process(kReadDone + 1, 61, "FFFF");
  EXPECT_EQ(panel.txt_OSNumber.Text.get(), "unknown2040");
}

TEST_F(ControlPanelAnswers, AnUnknownHalfOfTheOsNumberLeavesTheOther) {
  Process(kReadDone + 1, 61, "0502");
  Process(kReadDone + 1, 5337, "07F8");
  SetPending({26, 27});
  Process(kOutOfRange, 61, "0000");
  EXPECT_EQ(panel.txt_OSNumber.Text.get(), "R1865CM2040");
  Process(kUnknown + 1, 61, "0502");
  EXPECT_EQ(panel.txt_OSNumber.Text.get(), "2040");
  Process(kReadDone + 1, 61, "0001");
  Process(kUnknown + 1, 5337, "07F8");
  EXPECT_EQ(panel.txt_OSNumber.Text.get(), "R1862unknown");
  EXPECT_EQ(Pending(), std::vector<int>{});
}

// --- The error history ---------------------------------------------------------------------------

TEST_F(ControlPanelAnswers, TheHistoryGoesToTheEntryThatIsAskedFor) {
  for (int entry = 0; entry < 8; ++entry) {
    panel.ErrorHistoryIndex = static_cast<std::int16_t>(entry);
    SetPending({33 + entry, 41 + entry, 57});
    Process(kReadDone + 6, 875, "FF0" + std::to_string(entry));
    EXPECT_EQ(panel.txt_ErrBufCode(entry).Text.get(), " " + std::to_string(entry));
    EXPECT_EQ(panel.txt_ErrBufCode(entry).ToolTipText.get(), "text of " + std::to_string(entry));
    EXPECT_EQ(Pending(), (std::vector<int>{41 + entry, 57}));
    Process(kReadDone + 6, 916, "010" + std::to_string(entry));
    EXPECT_EQ(panel.txt_ErrBuffTime(entry).Text.get(), " " + std::to_string(256 + entry));
    EXPECT_EQ(Pending(), std::vector<int>{57});
  }
  for (int entry = 0; entry < 8; ++entry) {
    EXPECT_EQ(panel.txt_ErrBufCode(entry).Text.get(), " " + std::to_string(entry));
  }
}

TEST_F(ControlPanelAnswers, AnEntryOfTheHistoryThatIsUnknownIsBlanked) {
  panel.ErrorHistoryIndex = 6;
  Process(kReadDone, 875, "0005");
  Process(kReadDone, 916, "0005");
  Process(kOutOfRange, 875, "0000");
  Process(kOutOfRange, 916, "0000");
  EXPECT_EQ(panel.txt_ErrBufCode(6).Text.get(), " 5");
  EXPECT_EQ(panel.txt_ErrBuffTime(6).Text.get(), " 5");
  SetPending({39, 47});
  Process(kUnknown, 875, "0006");
  EXPECT_EQ(panel.txt_ErrBufCode(6).Text.get(), "");
  EXPECT_EQ(panel.txt_ErrBufCode(6).ToolTipText.get(), "");
  EXPECT_EQ(Pending(), std::vector<int>{47});
  Process(kUnknown, 916, "0006");
  EXPECT_EQ(panel.txt_ErrBuffTime(6).Text.get(), "");
  EXPECT_EQ(Pending(), std::vector<int>{});
}

// --- What stands on the form ---------------------------------------------------------------------

std::vector<std::string> Captions(const BitBoxes& boxes) {
  std::vector<std::string> captions;
  for (int bit = 0; bit < 8; ++bit) captions.push_back(boxes(bit).Caption);
  return captions;
}

TEST_F(ControlPanelAnswers, BitsHaveTheirCaptions) {
  using List = std::vector<std::string>;
  EXPECT_EQ(Captions(panel.chk_StatusH),
            (List{"CH Mode", "DHW Mode", "Test Mode", "Flame ", "Exhaust", "Water filling",
                  "Calibration start", "Calibration min."}));
  EXPECT_EQ(Captions(panel.chk_StatusL),
            (List{"Fault", "Valve 1 open", "Valve 2 open", "Air pressure switch", "Fan running",
                  "Pump running", "Water Pressure", "Frost"}));
  EXPECT_EQ(Captions(panel.chk_configL),
            (List{"0=European/ 1=Australian", "KEM-m Configured", "Burner Power Control Configured",
                  "Air Pressure Switch", "Exhaust Tempeature Protection",
                  "0=Continuous HL sensing/        1=HL Sensing only during burner on",
                  "Check APS during modulation", "Break Postpurge by Heat Demand"}));
  EXPECT_EQ(Captions(panel.chk_configH),
            (List{"0=Remaining Safety Time / 1=Fixed Stab", "Spark during stabilisation",
                  "0=Direct Burner Ignition/ 1=Intermittent Pilot", "Free", "Free", "Free", "Free",
                  "Free"}));
}

TEST_F(ControlPanelAnswers, BoxesHaveTheirNamesAndLabels) {
  const std::vector<std::string> safety = {
      "Prepurge time (s)",  "Preignition time (s)",   "Safety time (s)", "Post Ignition Time (s)",
      "Postpurge Time (s)", "Max. number of retries", "APS On Time (s)", "APS Off Time (s)"};
  for (int i = 0; i < 8; ++i) {
    const std::string index = "(" + std::to_string(i) + ")";
    EXPECT_EQ(panel.txtSafety(i).Caption, safety[static_cast<std::size_t>(i)]);
    EXPECT_EQ(panel.txtSafety(i).name(), "txtSafety" + index);
    EXPECT_EQ(panel.txt_ErrBufCode(i).Caption, "error number");
    EXPECT_EQ(panel.txt_ErrBufCode(i).name(), "txt_ErrBufCode" + index);
    EXPECT_EQ(panel.txt_ErrBuffTime(i).Caption, "time (h)");
    EXPECT_EQ(panel.chk_StatusH(i).name(), "chk_StatusH" + index);
    EXPECT_TRUE(panel.txtSafety(i).Locked);
  }
  for (int i = 0; i < 7; ++i) {
    const SensorBoxes& sensor = panel.sensors[static_cast<std::size_t>(i)];
    const std::string number = std::to_string(i + 1);
    EXPECT_EQ(sensor.label.Caption.get(), "Sensor " + number);
    EXPECT_EQ(sensor.txt_8bit.name(), "txt_sensor" + number + "_8bit");
    EXPECT_EQ(sensor.txt_16bit.name(), "txt_sensor" + number + "_16bit");
    EXPECT_EQ(sensor.txt_temp.name(), "txt_sensor" + number + "_temp");
  }
  EXPECT_EQ(panel.lblSensorColumn(0).Caption.get(), "8 bit AD");
  EXPECT_EQ(panel.lblSensorColumn(1).Caption.get(), "Converted value x 10");
  EXPECT_EQ(panel.lblSensorColumn(2).Caption.get(), "Converted value");
}

TEST_F(ControlPanelAnswers, GroupsAndButtonsHaveTheirCaptions) {
  EXPECT_EQ(panel.fraFlameCurrent.Caption.get(), "Flame Current");
  EXPECT_EQ(panel.fraSoftwareVersion.Caption.get(), "Software Version");
  EXPECT_EQ(panel.fraAcknowledge.Caption.get(), "Acknowledge");
  EXPECT_EQ(panel.fraSafety.Caption.get(), "Safety parameters");
  EXPECT_EQ(panel.fraErrorCodes.Caption.get(), "Error Codes");
  EXPECT_EQ(panel.fraErrorHistory.Caption.get(), "Error History");
  EXPECT_EQ(panel.fraBurnerHistory.Caption.get(), "Burner History");
  EXPECT_EQ(panel.cmdHeadDemand.Caption.get(), "Heat Demand");
  EXPECT_EQ(panel.cmdResetError.Caption.get(), "Reset Error");
  EXPECT_EQ(panel.chk_HeatDemand.Caption.get(), "Heat Demand Accepted");
  EXPECT_EQ(panel.chk_Reset.Caption.get(), "Reset Acknowledge");
  EXPECT_EQ(panel.chkContinuousUpdate.Caption.get(), "Continuous update");
}

TEST_F(ControlPanelAnswers, TextsHaveTheirLabels) {
  EXPECT_EQ(panel.txt_FlameAD10bit.Caption, "10-bit AD");
  EXPECT_EQ(panel.txt_FlameCurrentADC.Caption, "8-bit AD");
  EXPECT_EQ(panel.lblFlameCurrentADCs.Caption.get(), "Flame Current ADC's");
  EXPECT_EQ(panel.txt_FlameCurrentuA.Caption, "Flame Current uA");
  EXPECT_EQ(panel.txt_softwareversionROMHUP.Caption, "ROM HuP/Platform version");
  EXPECT_EQ(panel.txt_softwareversionROMLUP.Caption, "ROM LuP/Custom version");
  EXPECT_EQ(panel.txt_softwareversion_EEPROM.Caption, "EEPROM version");
  EXPECT_EQ(panel.txt_OSNumber.Caption, "OS number");
  EXPECT_EQ(panel.txt_HUPCRC.Caption, "CRC");
  EXPECT_EQ(panel.txt_LUPCRC.Caption, "CRC");
  EXPECT_EQ(panel.txt_Error.Caption, "Error Code");
  EXPECT_EQ(panel.txt_ErrorDescription.Caption, "Description");
  std::vector<std::string> statistics;
  for (const PanelText* text : panel.Statistics()) statistics.push_back(text->Caption);
  EXPECT_EQ(
      statistics,
      (std::vector<std::string>{
          "Number of Burner Switchings", "Number of Lockouts", "Number of Burner Switchings DHW",
          "Total Hours Burner On", "Total Hours Burner On DHW", "Total Hours KEM-3 On",
          "Domestic hot water used (m3)", "Total hours CH pump", "Total hours DHW pump"}));
}

TEST_F(ControlPanelAnswers, AChangedTextIsToldToItsView) {
  int told = 0;
  panel.txt_Lockouts.SetView([&] { ++told; });
  Process(kReadDone, 935, "0001");
  Process(kReadDone, 935, "0001");
  EXPECT_EQ(told, 1);
}

}  // namespace
}  // namespace tarnlink
