#include "tools/panel_on_line.h"

#include <algorithm>
#include <cstdio>

#include "protocols/product_names.h"
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
bool IsCommand(int id) { return id == 14 || id == 171; }
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
std::string OsName(int word) {
  return std::string(GetProductName(static_cast<std::uint8_t>(word % 256)))
      .append(GetTypeName(static_cast<std::uint8_t>(word / 256)));
}
std::string Bits(int byte) {
  std::string text;
  for (int bit = 0; bit < 8; ++bit) text += (byte >> bit & 1) != 0 ? '1' : '0';
  return text;
}
std::string BitsOfBoth(int word) { return Bits(word / 256) + Bits(word % 256); }
std::string BitsOf(const BitBoxes& high, const BitBoxes& low) {
  std::string text;
  for (const BitBoxes* boxes : {&high, &low}) {
    for (int bit = 0; bit < 8; ++bit) text += (*boxes)(bit).Value ? '1' : '0';
  }
  return text;
}
std::string Mark(bool is_ticked) { return is_ticked ? "ticked" : ""; }

struct SoundFrame {
  char slave;
  int id;
  int word;
};

// Wherever they begin. The check is a value: damage that makes a small letter of a digit leaves it.
std::vector<SoundFrame> SoundFrames(std::string_view bytes) {
  std::vector<SoundFrame> found;
  for (std::size_t at = 0; at + kFrame <= bytes.size(); ++at) {
    std::string frame(bytes.substr(at, kFrame));
    for (std::size_t digit = 11; digit < 15; ++digit) {
      if (frame[digit] >= 'a' && frame[digit] <= 'f') frame[digit] -= 'a' - 'A';
    }
    if (boiler::ZoltCheckHolds(frame)) found.push_back({frame[2], IdOf(frame), WordOf(frame)});
  }
  return found;
}

PanelValue Box(int id, const TextBox& box, std::string (*text)(int word), int entry = 0) {
  return {id, entry, box.name(), [&box] { return box.Text.get(); }, text, ""};
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
                         const std::string& slave, const boiler::SecondMasterOptions& other)
    : host{.platform = world,
           .line = {.ComPortNumber = [] { return 1; }, .Baudrate = [this] { return baudrate; }},
           .IgnoresErrors = [this] { return ignores_errors; },
           .LoadErrorTexts = [this]() -> const ErrorTexts& { return texts; },
           .IdFile = {},
           .LogPath = {},
           .GoControlPanel = {},
           .SlaveAddress = slave},
      boiler(world,
             {.protocol = "zolt",
              .slave = {.addresses = "0,3,A"},
              .line = line,
              .second_master = other,
              .seed = seed},
             [this](const boiler::LogEntry& entry) { Take(entry); }) {
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = "text of " + std::to_string(i);
  world.on_output = [this, hears = world.on_output](FakeSerialPort& port, std::string_view bytes) {
    ++asked;
    hears(port, bytes);
    if (on_asked) on_asked();
  };
  world.port(0).on_input = [this](std::string_view bytes) { TakeInput(bytes); };
  panel.Show();
}

PanelOnLine::~PanelOnLine() { world.port(0).on_input = nullptr; }

std::vector<PanelValue> PanelOnLine::MakeValues() const {
  const frm_ContPanel& p = panel;
  std::vector<PanelValue> values = {
      Box(50, p.txt_Error, HighByte),
      Box(50, p.txt_ErrorDescription, [](int word) { return "text of " + HighByte(word); }),
      Box(868, p.txt_FlameCurrentADC, LowByte),
      Box(868, p.txt_FlameCurrentuA, HighByte),
      Box(6015, p.txt_FlameAD10bit, Word),
      Box(91, p.txtSafety(0), HighFifths),
      Box(91, p.txtSafety(1), LowFifths),
      Box(103, p.txtSafety(2), HighFifths),
      Box(103, p.txtSafety(3), LowFifths),
      Box(104, p.txtSafety(4), HighFifths),
      Box(104, p.txtSafety(5), LowByte),
      Box(151, p.txtSafety(6), HighFifths),
      Box(151, p.txtSafety(7), LowFifths),
      Box(152, p.txt_softwareversionROMLUP, Version),
      Box(1284, p.txt_softwareversionROMHUP, Version),
      Box(164, p.txt_softwareversion_EEPROM, Version),
      Box(5349, p.txt_LUPCRC, Check),
      Box(5354, p.txt_HUPCRC, Check),
      Box(923, p.txt_BurnerSwitchings, Count),
      Box(935, p.txt_Lockouts, Count),
      Box(936, p.txt_BurnerSwitchingsDHW, Count),
      Box(961, p.txt_HoursBurnerOn, Count),
      Box(974, p.txt_HoursBurnerOnDHW, Count),
      Box(1010, p.txt_HoursKEM3On, Count),
      Box(1021, p.txt_DHWM3, Count),
      Box(3943, p.txt_HoursCHPump, Count),
      Box(4004, p.txt_HoursDHWPump, Count)};
  for (int entry = 0; entry < 8; ++entry) {
    values.push_back(Box(kHistoryIds[0], p.txt_ErrBufCode(entry), CountLow, entry));
    values.push_back(Box(kHistoryIds[1], p.txt_ErrBuffTime(entry), Count, entry));
  }
  const int bytes[] = {241, 770, 817, 855, 856, 5930, 5964};
  const int words[] = {254, 781, 830, 5913, 5925, 5955, 6000};
  for (std::size_t i = 0; i < p.sensors.size(); ++i) {
    values.push_back(Box(bytes[i], p.sensors[i].txt_8bit, LowByte));
    values.push_back(Box(bytes[i], p.sensors[i].txt_temp, HighByte));
    values.push_back(Box(words[i], p.sensors[i].txt_16bit, Word));
  }
  AddMarks(values);
  return values;
}

// What is no text box.
void PanelOnLine::AddMarks(std::vector<PanelValue>& values) const {
  const frm_ContPanel& p = panel;
  const std::string none(16, '0');
  values.push_back(
      {1, 0, "status", [&p] { return BitsOf(p.chk_StatusH, p.chk_StatusL); }, BitsOfBoth, none});
  values.push_back({84, 0, "configuration", [&p] { return BitsOf(p.chk_configH, p.chk_configL); },
                    BitsOfBoth, none});
  values.push_back({61, 0, "OS name", [&p] { return p.OSName; }, OsName, ""});
  values.push_back({5337, 0, "OS number", [&p] { return p.OSNumber; }, Word, ""});
  values.push_back({14, 0, p.chk_HeatDemand.name(), [&p] { return Mark(p.chk_HeatDemand.Value); },
                    [](int word) { return Mark(word / 256 == 0xFF); }, ""});
  values.push_back({171, 0, p.chk_Reset.name(), [&p] { return Mark(p.chk_Reset.Value); },
                    [](int word) { return Mark(word == 0xAA55); }, ""});
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
  // A fault's bytes are known before they go out.
  if (entry.kind == boiler::LogKind::kSaid || entry.kind == boiler::LogKind::kFault) {
    for (const SoundFrame& one : SoundFrames(frame)) {
      words_for_[{one.id, entry_of_exchange_[entry.exchange]}].insert(one.word);
    }
  }
}

// Whatever the panel makes of bytes that do not begin with a frame, it may not find more in them
// than there is.
void PanelOnLine::TakeInput(std::string_view bytes) {
  tail_ += bytes;
  for (const SoundFrame& one : SoundFrames(tail_)) {
    if (std::string(1, one.slave) == host.SlaveAddress) came_in_.insert({one.id, one.word});
  }
  tail_.erase(0, tail_.size() - std::min(tail_.size(), kFrame - 1));
}

bool PanelOnLine::IsFounded(const PanelValue& value, const std::string& text) const {
  const auto words = words_for_.find({value.id, value.entry});
  return std::any_of(came_in_.begin(), came_in_.end(), [&](const auto& one) {
    if (one.first != value.id || value.text(one.second) != text) return false;
    if (!IsHistory(value.id)) return true;
    return words != words_for_.end() && words->second.contains(one.second);
  });
}

std::string PanelOnLine::Unfounded() const {
  if (panel.txt_OSNumber.Text.get() != panel.OSName + panel.OSNumber) return "Not both halves.";
  for (const PanelValue& value : values_) {
    const std::string text = value.shown();
    if (text == value.blank || IsFounded(value, text)) continue;
    return value.name + ": \"" + text + "\" was not said for it";
  }
  return "";
}

int PanelOnLine::ShownValues() const {
  return static_cast<int>(
      std::count_if(values_.begin(), values_.end(),
                    [](const PanelValue& value) { return value.shown() != value.blank; }));
}

std::string PanelOnLine::Difference() const {
  for (const PanelValue& value : values_) {
    if (IsCommand(value.id)) continue;
    const auto said = said_.find({value.id, value.entry});
    if (said == said_.end()) return value.name + ": nothing was said";
    const std::string expected = value.text(said->second);
    const std::string shown = value.shown();
    if (shown != expected) {
      return value.name + ": shows \"" + shown + "\", said was \"" + expected + "\"";
    }
  }
  return "";
}

}  // namespace tarnlink
