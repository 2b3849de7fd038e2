// The control panel in the real program: its five tabs against the boiler's own record, and what
// its commands do to the boiler.

#include <map>

#include "tools_line.h"

namespace e2e {
namespace {

const std::string kForm = "frm_ContPanel";

using Requests = std::vector<std::string>;

Requests Reads(int data_class, const std::vector<int>& ids) {
  Requests all;
  for (const int id : ids) all.push_back(RequestText(data_class, "0", id));
  return all;
}

Requests Joined(const std::vector<Requests>& parts) {
  Requests all;
  for (const Requests& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Requests StatusRequests() {
  return Joined({Reads(1, {1}), Reads(4, {868, 6015}), Reads(1, {61, 5337}),
                 Reads(2, {152, 1284, 164}), Reads(6, {5349, 5354})});
}

Requests ErrorRequests() {
  Requests all = Reads(1, {50});
  for (const int id : {875, 916}) {
    for (int entry = 0; entry < 8; ++entry) all.push_back(RequestText(6, "0", id, entry));
  }
  return all;
}

const std::vector<int> kSensors = {241, 770, 817, 855, 856, 5930, 5964};
const std::vector<int> kSensorWords = {254, 781, 830, 5913, 5925, 5955, 6000};
const std::vector<int> kStatistics = {923, 935, 936, 961, 974, 1010, 1021, 3943, 4004};
const std::vector<std::string> kStatisticsBoxes = {"txt_BurnerSwitchings",
                                                   "txt_Lockouts",
                                                   "txt_BurnerSwitchingsDHW",
                                                   "txt_HoursBurnerOn",
                                                   "txt_HoursBurnerOnDHW",
                                                   "txt_HoursKEM3On",
                                                   "txt_DHWM3",
                                                   "txt_HoursCHPump",
                                                   "txt_HoursDHWPump"};

std::string Fifths(int number) {
  const std::string whole = std::to_string(number / 5);
  const int tenths = number % 5 * 2;
  if (tenths == 0) return whole;
  return whole + "." + std::to_string(tenths);
}

class PanelOnALine : public ToolsOnALine {
 protected:
  void OpenPanel(const std::vector<std::string>& options = {"--at-once"}) {
    Start(options);
    Open("M_ControlPanel", kForm);
  }
  // Does it and waits until the boiler has heard these requests, no more and no less, in this
  // order, and the answer to the last one has come.
  void Asks(const Requests& expected, const std::string& command) {
    const std::size_t from = Record("heard").size();
    program->Mouse(command);
    const auto is_said = [&] { return Record("said").size() == Record("heard").size(); };
    EXPECT_TRUE(HasHeard(from + expected.size()));
    EXPECT_TRUE(Eventually(is_said));
    EXPECT_EQ(Heard(from), expected);
  }
  int High(int id) const { return std::stoi(LastData(Digits(id)).substr(0, 2), nullptr, 16); }
  int Low(int id) const { return std::stoi(LastData(Digits(id)).substr(2, 2), nullptr, 16); }
  int Word(int id) const { return High(id) * 256 + Low(id); }
  // Of the answer to this entry of a list.
  std::string EntryData(int id, int entry) const {
    std::string data;
    bool is_next = false;
    for (const RecordedFrame& frame : Record()) {
      if (frame.kind == "heard") is_next = frame.Text() == RequestText(6, "0", id, entry);
      if (frame.kind == "said" && is_next) data = frame.data();
    }
    return data;
  }

  void Shows(const std::string& box, const std::string& text) {
    EXPECT_TRUE(program->Becomes("text " + box, text, 2000)) << box;
  }
  bool IsLit(const std::string& lamp) {
    return program->Ask("get " + lamp + " accessibleDescription") == "on";
  }
  void LampsShow(const std::string& lamps, int byte) {
    for (int bit = 0; bit < 8; ++bit) {
      const std::string lamp = lamps + "(" + std::to_string(bit) + ")";
      EXPECT_EQ(IsLit(lamp), (byte >> bit & 1) != 0) << lamp;
    }
  }
  int Byte(const std::string& address) {
    return std::stoi(Tell("get " + address).substr(5), nullptr, 16);
  }
  bool ByteBecomes(const std::string& address, int wanted, int milliseconds = 10'000) {
    return Eventually([&] { return Byte(address) == wanted; }, milliseconds);
  }
};

TEST_F(PanelOnALine, AsksForEachTabRowByRowAndShowsWhatTheBoilerSays) {
  OpenPanel();
  EXPECT_EQ(program->Text("lblSlave"), "Slave 0");
  EXPECT_EQ(Record("heard").size(), 0u) << "Nothing is asked for until the user does.";

  Asks(StatusRequests(), "cmdUpdateStatus");
  Shows("txt_HUPCRC", "C51E");
  Shows("txt_LUPCRC", "3A7C");
  Shows("txt_OSNumber", "R1865CM2040");
  Shows("txt_softwareversionROMLUP", " 3.07");
  Shows("txt_softwareversionROMHUP", " 4.12");
  Shows("txt_softwareversion_EEPROM", " 2.14");
  Shows("txt_FlameAD10bit", std::to_string(Word(6015)));
  Shows("txt_FlameCurrentADC", std::to_string(Low(868)));
  Shows("txt_FlameCurrentuA", std::to_string(High(868)));
  LampsShow("chk_StatusH", High(1));
  LampsShow("chk_StatusL", Low(1));

  Asks(Reads(2, {84, 91, 103, 104, 151}), "SSTab1/Configuration");
  const std::vector<std::string> safety = {
      Fifths(High(91)),  Fifths(Low(91)),          Fifths(High(103)), Fifths(Low(103)),
      Fifths(High(104)), std::to_string(Low(104)), Fifths(High(151)), Fifths(Low(151))};
  for (std::size_t i = safety.size(); i-- > 0;) {
    Shows("txtSafety(" + std::to_string(i) + ")", safety[i]);
  }
  LampsShow("chk_configH", 0x02);
  LampsShow("chk_configL", 0x0C);

  Asks(Joined({Reads(4, kSensors), Reads(4, kSensorWords)}), "SSTab1/Sensors");
  for (std::size_t i = kSensors.size(); i-- > 0;) {
    const std::string box = "txt_sensor" + std::to_string(i + 1);
    Shows(box + "_16bit", std::to_string(Word(kSensorWords[i])));
    Shows(box + "_8bit", std::to_string(Low(kSensors[i])));
    Shows(box + "_temp", std::to_string(High(kSensors[i])));
  }

  Asks(ErrorRequests(), "SSTab1/Error and History");
  for (int i = 7; i >= 0; --i) {
    const std::string index = "(" + std::to_string(i) + ")";
    const std::string hours = EntryData(916, i);
    const int code = std::stoi(EntryData(875, i).substr(2), nullptr, 16);
    EXPECT_GT(code, 0) << "The boiler has a history.";
    Shows("txt_ErrBuffTime" + index, " " + std::to_string(std::stoi(hours, nullptr, 16)));
    Shows("txt_ErrBufCode" + index, " " + std::to_string(code));
  }
  Shows("txt_Error", "0");
  EXPECT_NE(program->Ask("get txt_ErrBufCode(0) toolTip"), "");

  Asks(Reads(6, kStatistics), "SSTab1/Statistics");
  for (std::size_t i = kStatistics.size(); i-- > 0;) {
    Shows(kStatisticsBoxes[i], " " + std::to_string(Word(kStatistics[i])));
  }
  Leave();
}

TEST_F(PanelOnALine, HeatDemandStartsABurnerCycleAndEndsItAgain) {
  OpenPanel();
  // Nobody calls for heat, purge and ignition are as short as can be.
  ASSERT_EQ(Tell("set F092 01"), "ok");
  ASSERT_EQ(Tell("set 8010 05 05"), "ok");
  constexpr int kStandby = 0;
  constexpr int kPrepurge = 1;
  constexpr int kBurn = 3;
  ASSERT_EQ(Byte("0060"), kStandby);
  EXPECT_FALSE(IsLit("chk_HeatDemand"));

  Asks({"81 0 000E FFFF"}, "cmdHeadDemand");
  EXPECT_TRUE(Eventually([&] { return IsLit("chk_HeatDemand"); }));
  EXPECT_EQ(Tell("get F092"), "F092 FF");
  EXPECT_TRUE(ByteBecomes("0060", kPrepurge, 1000));
  EXPECT_TRUE(ByteBecomes("0060", kBurn));
  Asks(StatusRequests(), "cmdUpdateStatus");
  Shows("txt_HUPCRC", "C51E");
  EXPECT_TRUE(IsLit("chk_StatusH(0)")) << "CH mode";
  EXPECT_TRUE(IsLit("chk_StatusH(3)")) << "flame";
  EXPECT_TRUE(IsLit("chk_StatusL(2)")) << "valve 2";
  EXPECT_GT(std::stoi(program->Text("txt_FlameAD10bit")), 0);

  Asks({"81 0 000E 0000"}, "cmdHeadDemand");
  EXPECT_TRUE(Eventually([&] { return !IsLit("chk_HeatDemand"); }));
  EXPECT_EQ(Tell("get F092"), "F092 00");
  Leave();
}

TEST_F(PanelOnALine, ResetErrorEndsALockout) {
  OpenPanel();
  ASSERT_EQ(Tell("set F0A1 11"), "ok");
  constexpr int kLockout = 6;
  ASSERT_TRUE(ByteBecomes("0060", kLockout));
  Asks(ErrorRequests(), "SSTab1/Error and History");
  Shows("txt_ErrBuffTime(7)", " " + std::to_string(std::stoi(EntryData(916, 7), nullptr, 16)));
  Shows("txt_Error", "17");
  Shows("txt_ErrBufCode(0)", " 17");
  EXPECT_NE(program->Text("txt_ErrorDescription"), "");
  Asks(StatusRequests(), "SSTab1/Status and Controll");
  Shows("txt_HUPCRC", "C51E");
  EXPECT_TRUE(IsLit("chk_StatusL(0)")) << "fault";
  EXPECT_FALSE(IsLit("chk_Reset"));

  Asks({"83 0 00AB AA55"}, "cmdResetError");
  EXPECT_TRUE(Eventually([&] { return IsLit("chk_Reset"); }));
  EXPECT_TRUE(Eventually([&] { return Byte("0060") != kLockout; }));
  Asks(StatusRequests(), "cmdUpdateStatus");
  EXPECT_TRUE(Eventually([&] { return !IsLit("chk_StatusL(0)"); }));
  Leave();
}

}  // namespace
}  // namespace e2e
