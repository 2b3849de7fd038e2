#include "tools/panel_on_line.h"

#include <algorithm>
#include <cstdio>

#include "simulator/bytes.h"
#include "simulator/zolt_frames.h"

namespace tarnlink {
namespace {

constexpr std::size_t kFrame = boiler::kZoltLength;
constexpr int kHistoryIds[] = {875, 916};

int Digits(std::string_view frame, std::size_t at, std::size_t count) {
  return static_cast<int>(boiler::ParseHex(frame.substr(at, count)).value_or(0));
}
int IdOf(std::string_view frame) { return Digits(frame, 3, 4); }
int WordOf(std::string_view frame) { return Digits(frame, 7, 4); }
bool IsHistory(int id) { return id == kHistoryIds[0] || id == kHistoryIds[1]; }

std::string HighByte(int word) { return std::to_string(word / 256); }
std::string LowByte(int word) { return std::to_string(word % 256); }
std::string Word(int word) { return std::to_string(word); }
std::string Count(int word) { return " " + std::to_string(word); }
std::string CountLow(int word) { return " " + std::to_string(word % 256); }
std::string Format(const char* format, int one, int other = 0) {
  char text[40];
  std::snprintf(text, sizeof(text), format, one, other);
  return text;
}
std::string Check(int word) { return Format("%04X", word); }
std::string Version(int word) { return Format(" %d.%02d", word / 256, word % 256); }
std::string Fifths(int count) {
  return std::to_string(count / 5) + (count % 5 == 0 ? "" : "." + std::to_string(count % 5 * 2));
}
std::string HighFifths(int word) { return Fifths(word / 256); }
std::string LowFifths(int word) { return Fifths(word % 256); }

}  // namespace

PanelOnLine::PanelOnLine(const boiler::LineOptions& line, std::uint64_t seed,
                         const std::string& slave)
    : host{.platform = world,
           .line = {.ComPortNumber = [] { return 1; }, .Baudrate = [this] { return baudrate; }},
           .IgnoresErrors = [this] { return ignores_errors; },
           .LoadErrorTexts = [this]() -> const ErrorTexts& { return texts; },
           .IdFile = {},
           .LogPath = {},
           .GoControlPanel = {},
           .SlaveAddress = slave},
      boiler(world,
             {.protocol = "zolt", .slave = {.addresses = "0,3,A"}, .line = line, .seed = seed},
             [this](const boiler::LogEntry& entry) { Take(entry); }) {
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = "text of " + std::to_string(i);
  world.on_output = [this, hears = world.on_output](FakeSerialPort& port, std::string_view bytes) {
    ++asked;
    hears(port, bytes);
  };
  world.port(0).on_input = [this](std::string_view bytes) { TakeInput(bytes); };
  panel.Show();
}

PanelOnLine::~PanelOnLine() { world.port(0).on_input = nullptr; }

std::vector<PanelValue> PanelOnLine::MakeValues() const {
  const frm_ContPanel& p = panel;
  std::vector<PanelValue> values = {
      {50, 0, &p.txt_Error, HighByte},
      {50, 0, &p.txt_ErrorDescription, [](int word) { return "text of " + HighByte(word); }},
      {868, 0, &p.txt_FlameCurrentADC, LowByte},
      {868, 0, &p.txt_FlameCurrentuA, HighByte},
      {6015, 0, &p.txt_FlameAD10bit, Word},
      {91, 0, &p.txtSafety(0), HighFifths},
      {91, 0, &p.txtSafety(1), LowFifths},
      {103, 0, &p.txtSafety(2), HighFifths},
      {103, 0, &p.txtSafety(3), LowFifths},
      {104, 0, &p.txtSafety(4), HighFifths},
      {104, 0, &p.txtSafety(5), LowByte},
      {151, 0, &p.txtSafety(6), HighFifths},
      {151, 0, &p.txtSafety(7), LowFifths},
      {152, 0, &p.txt_softwareversionROMLUP, Version},
      {1284, 0, &p.txt_softwareversionROMHUP, Version},
      {164, 0, &p.txt_softwareversion_EEPROM, Version},
      {5349, 0, &p.txt_LUPCRC, Check},
      {5354, 0, &p.txt_HUPCRC, Check},
      {923, 0, &p.txt_BurnerSwitchings, Count},
      {935, 0, &p.txt_Lockouts, Count},
      {936, 0, &p.txt_BurnerSwitchingsDHW, Count},
      {961, 0, &p.txt_HoursBurnerOn, Count},
      {974, 0, &p.txt_HoursBurnerOnDHW, Count},
      {1010, 0, &p.txt_HoursKEM3On, Count},
      {1021, 0, &p.txt_DHWM3, Count},
      {3943, 0, &p.txt_HoursCHPump, Count},
      {4004, 0, &p.txt_HoursDHWPump, Count}};
  for (int entry = 0; entry < 8; ++entry) {
    values.push_back({kHistoryIds[0], entry, &p.txt_ErrBufCode(entry), CountLow});
    values.push_back({kHistoryIds[1], entry, &p.txt_ErrBuffTime(entry), Count});
  }
  const int bytes[] = {241, 770, 817, 855, 856, 5930, 5964};
  const int words[] = {254, 781, 830, 5913, 5925, 5955, 6000};
  for (std::size_t i = 0; i < p.sensors.size(); ++i) {
    values.push_back({bytes[i], 0, &p.sensors[i].txt_8bit, LowByte});
    values.push_back({bytes[i], 0, &p.sensors[i].txt_temp, HighByte});
    values.push_back({words[i], 0, &p.sensors[i].txt_16bit, Word});
  }
  return values;
}

void PanelOnLine::Update(int tab) {
  CommandButton* buttons[] = {&panel.cmdUpdateStatus, &panel.cmdUpdateConfig,
                              &panel.cmdUpdateSensors, &panel.cmdUpdateError,
                              &panel.cmdUpdateStatistics};
  buttons[tab]->Press();
}

bool PanelOnLine::IsDone() const {
  const auto& flags = panel.Pending;
  return std::find(flags.begin(), flags.end(), true) == flags.end() &&
         !panel.tim_CommTimeout->Enabled();
}

bool PanelOnLine::Finish(Micros at_most) {
  return world.RunUntil([this] { return IsDone(); }, at_most);
}

void PanelOnLine::Take(const boiler::LogEntry& entry) {
  const std::string& frame = entry.bytes;
  if (entry.kind == boiler::LogKind::kFault) ++struck;
  if (entry.kind == boiler::LogKind::kHeard && frame.size() == kFrame) {
    heard.push_back(std::to_string(static_cast<unsigned char>(frame[1])) + " " +
                    std::to_string(IdOf(frame)) + " " + frame.substr(7, 4));
    entry_of_exchange_[entry.exchange] = IsHistory(IdOf(frame)) ? WordOf(frame) / 256 : 0;
  }
  if (entry.kind == boiler::LogKind::kSaid && frame.size() == kFrame) {
    said_[{IdOf(frame), entry_of_exchange_[entry.exchange]}] = WordOf(frame);
  }
}

// Whatever the panel makes of bytes that do not begin with a frame, it may not find more in them
// than there is.
void PanelOnLine::TakeInput(std::string_view bytes) {
  tail_ += bytes;
  for (std::size_t at = 0; at + kFrame <= tail_.size(); ++at) {
    std::string frame = tail_.substr(at, kFrame);
    // The check is a value: damage that makes a small letter of a digit leaves it.
    for (std::size_t digit = 11; digit < 15; ++digit) {
      if (frame[digit] >= 'a' && frame[digit] <= 'f') frame[digit] -= 'a' - 'A';
    }
    if (boiler::ZoltCheckHolds(frame)) came_in_.insert({IdOf(frame), WordOf(frame)});
  }
  tail_.erase(0, tail_.size() - std::min(tail_.size(), kFrame - 1));
}

std::string PanelOnLine::Unfounded() const {
  for (const PanelValue& value : values_) {
    const std::string& text = value.box->Text;
    if (text.empty()) continue;
    const bool is_founded = std::any_of(came_in_.begin(), came_in_.end(), [&](const auto& one) {
      return one.first == value.id && value.text(one.second) == text;
    });
    if (!is_founded) return value.box->name() + ": \"" + text + "\" did not come in";
  }
  return "";
}

std::string PanelOnLine::Difference() const {
  for (const PanelValue& value : values_) {
    const auto said = said_.find({value.id, value.entry});
    if (said == said_.end()) return value.box->name() + ": nothing was said";
    const std::string expected = value.text(said->second);
    if (value.box->Text.get() != expected) {
      return value.box->name() + ": shows \"" + value.box->Text.get() + "\", said was \"" +
             expected + "\"";
    }
  }
  return "";
}

}  // namespace tarnlink
