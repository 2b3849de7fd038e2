#include "form/graph_on_line.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "form/readable_ids.h"
#include "simulator/zolt_frames.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kFrame = boiler::kZoltLength;
constexpr Micros kWatch = 2s;
constexpr char kTestModeType = '\x81';
constexpr int kReadDone = static_cast<int>(boiler::ZoltKind::kReadDone);
constexpr int kDefaultLines = 20;
constexpr int kLines = 100;

std::string Digits(std::int32_t number) {
  return boiler::HexDigits(static_cast<unsigned>(number) & 0xFFFF, 4);
}

int KindOf(std::string_view frame) { return static_cast<unsigned char>(frame[1]) >> 4; }
std::string_view IdOf(std::string_view frame) { return frame.substr(3, 4); }

std::string Text(const MeasureSample& sample) {
  return std::to_string(sample.Value) + " at " +
         FormatDate(FromSeconds(sample.Time), "hh:nn:ss", EnglishMonthNames());
}

std::vector<MeasureSample> SamplesOf(const MeasureChannel& channel) {
  std::vector<MeasureSample> samples;
  for (std::size_t i = 0; i < channel.Times().size(); ++i) {
    samples.push_back({channel.Values()[i], channel.Times()[i]});
  }
  return samples;
}

std::vector<MeasureSample> Since(std::int64_t second, std::vector<MeasureSample> samples) {
  std::erase_if(samples, [&](const MeasureSample& one) { return one.Time < second; });
  return samples;
}

}  // namespace

// --- GraphRecord ---------------------------------------------------------------------------------

void GraphRecord::Ask(std::string_view frame) {
  ++asked_;
  const int opened = world_.port().opens() - opens_;
  opens_ += opened;
  // Begun anew, the port is tried and then opened.
  if (opened > 1) line_ = -1;
  // Lines that were given up while there was no port.
  if (opened == 1 || lost_track_) line_ = graph_.LinePointer - (frame[1] == kTestModeType ? 0 : 1);
  lost_track_ = false;
  const bool may_come = out_id_.empty() || world_.now() - asked_at_ >= kWatch;
  if (opened == 0 && !may_come) ++hurried_;
  asked_at_ = world_.now();
  Out(frame);
}

void GraphRecord::Out(std::string_view frame) {
  out_id_ = IdOf(frame);
  out_line_ = -1;
  if (frame[1] == kTestModeType) {
    ++test_commands_;
    return;
  }
  line_ = out_line_ = NextLine();
  if (IsRequestOf(line_, frame) || !first_wrong_request_.empty()) return;
  first_wrong_request_ = std::to_string(asked_) + ": " + std::string(frame.substr(2, 9)) +
                         ", the turn is of line " + std::to_string(line_);
}

int GraphRecord::NextLine() const {
  for (int line = line_ + 1; line < kStatusChannel; ++line) {
    if (graph_.Data.Attributes[static_cast<std::size_t>(line)].IsShown()) return line;
  }
  if (line_ < kStatusChannel) return kStatusChannel;
  for (int line = 0; line < kStatusChannel; ++line) {
    if (graph_.Data.Attributes[static_cast<std::size_t>(line)].IsShown()) return line;
  }
  return kStatusChannel;
}

bool GraphRecord::IsRequestOf(int line, std::string_view frame) const {
  const GraphAttribute& attribute = graph_.Data.Attributes[static_cast<std::size_t>(line)];
  const char slave = boiler::HexDigits(attribute.SlaveAddress, 1).front();
  return frame == boiler::BuildZoltFrame(static_cast<char>(attribute.Class), slave,
                                         Digits(attribute.ID), Digits(attribute.Data));
}

std::int64_t GraphRecord::Second() const {
  const Micros passed = world_.now() - clock_set_at_ + kHair;
  // On the hair itself the one second is as right as the other.
  const Micros rest = (passed + 1us) % kSecond;
  if (rest <= 2us) return ToSeconds(graph_.Now());
  return clock_ + passed / kSecond;
}

void GraphRecord::SetClock(std::int64_t second) {
  world_.clock().Set(ToCivil(FromSeconds(second)));
  clock_ = second;
  clock_set_at_ = world_.now();
}

void GraphRecord::CountOutAnew() {
  out_.clear();
  most_out_ = 0;
}

void GraphRecord::Take(const boiler::LogEntry& entry) {
  if (entry.kind == boiler::LogKind::kHeard) {
    out_.insert(entry.exchange);
    most_out_ = std::max(most_out_, out_.size());
  }
  if (entry.kind == boiler::LogKind::kFault) ++struck_;
  if (entry.kind == boiler::LogKind::kSaid) {
    out_.erase(entry.exchange);
    TakeAnswer(entry);
  }
}

// A frame with a bad check, and one that says no, end the wait; one for another ID does not.
void GraphRecord::TakeAnswer(const boiler::LogEntry& entry) {
  const std::string& frame = entry.bytes;
  if (!running || !world_.port().PortOpen()) return;
  const bool is_sound = frame.size() == kFrame && entry.check == boiler::Check::kHolds;
  if (is_sound && IdOf(frame) != out_id_) {
    ++others_;
    return;
  }
  out_id_.clear();
  if (!is_sound || KindOf(frame) != kReadDone || out_line_ < 0) {
    ++others_;
    return;
  }
  ++answers_;
  auto& expected = lines_[static_cast<std::size_t>(out_line_)].expected;
  const MeasureSample sample = SampleOf(frame);
  if (!expected.empty() && expected.back().Time == sample.Time) {
    ++same_second_;
  } else {
    expected.push_back(sample);
  }
}

// Whatever the program makes of bytes that do not begin with a frame, it may not find more in them
// than there is.
void GraphRecord::TakeInput(std::string_view bytes) {
  tail_ += bytes;
  for (std::size_t at = 0; at + kFrame <= tail_.size(); ++at) {
    const std::string_view frame = std::string_view(tail_).substr(at, kFrame);
    if (KindOf(frame) != kReadDone || !boiler::ZoltCheckHolds(frame)) continue;
    if (out_line_ < 0 ||
        IdOf(frame) != Digits(graph_.Data.Attributes[static_cast<std::size_t>(out_line_)].ID)) {
      continue;
    }
    lines_[static_cast<std::size_t>(out_line_)].founded.push_back(SampleOf(frame));
  }
  tail_.erase(0, tail_.size() - std::min(tail_.size(), kFrame - 1));
}

MeasureSample GraphRecord::SampleOf(std::string_view frame) const {
  const auto word = boiler::ParseHex(frame.substr(7, 4));
  return {static_cast<std::int32_t>(word.value_or(0)), Second()};
}

std::string GraphRecord::Difference(std::int64_t since) const {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const std::vector<MeasureSample> held = Since(since, SamplesOf(Channel(i)));
    const std::vector<MeasureSample> expected = Since(since, lines_[i].expected);
    const auto [one, other] =
        std::mismatch(held.begin(), held.end(), expected.begin(), expected.end());
    if (one == held.end() && other == expected.end()) continue;
    return "Channel " + std::to_string(i) + ": sample " + std::to_string(one - held.begin()) +
           " is " + (one == held.end() ? "missing" : Text(*one)) + ", said " +
           (other == expected.end() ? "nothing" : Text(*other));
  }
  return "";
}

std::string GraphRecord::Unfounded() const {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const auto& founded = lines_[i].founded;
    auto next = founded.begin();
    for (const MeasureSample& held : SamplesOf(Channel(i))) {
      next = std::find(next, founded.end(), held);
      if (next == founded.end()) {
        return "Channel " + std::to_string(i) + ": " + Text(held) + " not asked for or not said";
      }
      ++next;
    }
  }
  return "";
}

long GraphRecord::samples() const {
  long count = 0;
  for (const MeasureChannel& channel : graph_.Data.Channels) count += channel.Count();
  return count;
}

// --- GraphOnLine -----------------------------------------------------------------------------

GraphOnLine::GraphOnLine(const boiler::LineOptions& line, std::uint64_t seed)
    : boiler(world, {.protocol = "zolt", .line = line, .seed = seed},
             [this](const boiler::LogEntry& entry) {
               record.Take(entry);
               if (on_log) on_log(entry);
             }) {
  const int baud = line.pace.baud == 0 ? 38'400 : line.pace.baud;
  while (baud > 1200 << baudrate) ++baudrate;
  LineColors colors;
  graph.Data.Attributes = LoadDefaultAttributes(colors);
  graph.Data.FirstTime = graph.Data.LastTime = graph.Now();
  graph.ScreenRefreshTimer->SetInterval(5000);
  world.on_output = [this, hears = world.on_output](FakeSerialPort& port, std::string_view bytes) {
    record.Ask(bytes);
    hears(port, bytes);
  };
  world.port().on_input = [this](std::string_view bytes) { record.TakeInput(bytes); };
}

GraphOnLine::~GraphOnLine() { world.port().on_input = nullptr; }

void GraphOnLine::Show(int index) {
  Line(index).ShowLine = true;
  graph.Data.AllocateChannel(index);
}

void GraphOnLine::ShowDefaultLines() {
  for (int i = 0; i < kDefaultLines; ++i) Show(i);
}

void GraphOnLine::ShowAllLines() {
  const auto ids = ReadableIds();
  for (int i = 0; i < kLines; ++i) {
    const boiler::DataId& id = *ids[static_cast<std::size_t>(i) % ids.size()];
    Line(i).Class = static_cast<std::uint8_t>(id.data_class);
    Line(i).ID = id.id;
    Show(i);
  }
}

void GraphOnLine::Start() {
  record.running = true;
  menu.SetTimeScroll(true);
  menu.SetCommunication(true);
}

void GraphOnLine::SwitchByMenu(const std::string& verb, bool on) {
  world.dialogs()
      .ExpectMessageBox({.text = "Are you sure you want to " + verb + " communication",
                         .title = "ZOLT Communication",
                         .icon = Icon::kExclamation,
                         .buttons = Buttons::kYesNo})
      .Press(Answer::kYes);
  record.running = on;
  menu.mnuZOLTCom.Press();
}

ScriptedDialog& GraphOnLine::ExpectBusy() {
  return world.dialogs().ExpectMessageBox(
      {.text = "Com port busy.", .title = "Communication port", .icon = Icon::kCritical});
}

void GraphOnLine::SendTestMode() {
  acquisition.TestMouseDown(MouseButton::kLeft);
  acquisition.TestMouseUp();
}

void GraphOnLine::SetClock(int hours) {
  constexpr int kSecondsPerHour = 3600;
  record.SetClock(record.Second() + hours * kSecondsPerHour);
}

// What the port notes of itself would fill the memory.
void GraphOnLine::Advance(Micros span) {
  for (; span > 10min; span -= 10min) {
    world.Advance(10min);
    world.port().Forget();
  }
  world.Advance(span);
}

std::string GraphOnLine::State() {
  std::string text = graph.ZOLTCommunication ? "running" : "stopped";
  EXPECT_EQ(menu.mnuZOLTCom.Checked.get(), graph.ZOLTCommunication);
  if (graph.lblCommunicationError.Visible) text += ": " + graph.lblCommunicationError.Caption.get();
  return text;
}

bool GraphOnLine::AllHaveSamplesSince(std::int64_t second) {
  for (int i = 0; i <= kStatusChannel; ++i) {
    const bool is_polled = Line(i).IsShown() || i == kStatusChannel;
    if (is_polled && Channel(i)[MeasureChannel::kUpperBound].Time < second) return false;
  }
  return true;
}

void GraphOnLine::ExpectRecovery(const std::string& what) {
  const std::int64_t second = record.Second() + 1;
  EXPECT_TRUE(world.RunUntil([&] { return AllHaveSamplesSince(second); }, 3s)) << what;
  Advance(2s);
  record.CountOutAnew();
  const std::int64_t since = record.Second() + 1;
  Advance(5s);
  EXPECT_EQ(record.Difference(since), "") << what;
  EXPECT_EQ(record.most_out(), 1U) << what;
  EXPECT_EQ(State(), "running") << what;
}

// --- OnScreen ------------------------------------------------------------------------------------

const std::vector<Screen>& Screens() {
  static const std::vector<Screen> screens = {
      {"lanes only", {}, {.pace = {.baud = 2400}, .answer_delay_us = 20'000}},
      {"one ID twice", {10, 11}, {.pace = {.baud = 9600}, .answer_delay_us = 20'000}},
      {"many lines", {0, 1, 7, 10, 11, 15}, {.pace = {.baud = 38400}, .answer_delay_us = 5'000}},
      {"at once", {0, 10, 11}, {.answer_delay_us = 20'000}},
  };
  return screens;
}

OnScreen::OnScreen(const Screen& screen, std::uint64_t seed) : GraphOnLine(screen.line, seed) {
  for (const int line : screen.lines) Show(line);
}

void OnScreen::Exchange(std::size_t count) {
  constexpr Micros kLongestGap = 3200ms;
  constexpr std::size_t kTestModeEvery = 9;
  const std::size_t goal = record.asked() + count;
  while (record.asked() < goal) {
    const std::size_t asked = record.asked();
    ASSERT_TRUE(world.RunUntil([&] { return record.asked() > asked; }, kLongestGap))
        << "no request after " << asked;
    if (asked % kTestModeEvery == 0) SendTestMode();
  }
}

}  // namespace tarnlink
