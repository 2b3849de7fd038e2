#include "graph/graph_acquisition.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "protocols/zolt_frame.h"
#include "protocols/zolt_message.h"

namespace tarnlink {

namespace {

constexpr int kWatch = 2000;  // ms
constexpr int kSilentExpiries = 5;
constexpr int kQuietTick = 20;  // ms

// The test mode command: a write of class 1, to slave "0" whatever the lines' slaves are.
constexpr std::uint8_t kTestModeType = zolt_frame::kWrite + 1;
constexpr std::int32_t kTestModeId = 14;
constexpr std::uint8_t kTestModeOn = 255;

constexpr const char* kTitle = "ZOLT Communication";

// Whether it begins and ends as a frame does, damaged in between or not.
bool IsWhole(std::string_view frame) {
  return frame.front() == zolt_frame::kStart && frame.back() == zolt_frame::kEnd;
}

// Midnights from `from` to `to`.
std::int64_t DaysBetween(Date from, Date to) {
  return static_cast<std::int64_t>(std::floor(to)) - static_cast<std::int64_t>(std::floor(from));
}

}  // namespace

GraphAcquisition::GraphAcquisition(frmGraphic& graph, frmContextMenu& menu, ServiceLine options)
    : graph_(graph),
      menu_(menu),
      options_(std::move(options)),
      quiet_watch_(graph.platform().CreateTimer()) {
  quiet_watch_->SetInterval(kQuietTick);
  quiet_watch_->SetOnTimer([this] { QuietTick(); });
  graph_.Comm->SetOnComm([this](int event) { Received(event); });
  graph_.CommWatch->SetOnTimer([this] { WatchExpired(); });
  menu_.InitCom = [this] { InitCom(); };
  menu_.mnuZOLTCom.Click = [this] { mnuZOLTCom(); };
}

// --- Starting and stopping -----------------------------------------------------------------------

void GraphAcquisition::InitCom() {
  SerialPort& port = *graph_.Comm;
  quiet_watch_->SetEnabled(false);
  doubt_.Clear();
  trusted_ = 0;
  GiveUpRequest();
  bool is_free = false;
  try {
    if (port.PortOpen()) port.SetPortOpen(false);
    SetServiceLine(port, options_);
    port.SetRThreshold(zolt_frame::kLength);
    graph_.LinePointer = -1;
    graph_.CommWatch->SetInterval(kWatch);
    is_free = IsPortFree();
  } catch (const RunTimeError&) {
    // A number or speed that no port has.
  }
  if (!is_free) return SayBusy();
  graph_.CommWatch->SetEnabled(true);
  graph_.ZOLTCommunication = true;
  menu_.mnuZOLTCom.Checked = true;
  SendOrRetry();
}

void GraphAcquisition::SayBusy() {
  graph_.CommWatch->SetEnabled(false);
  graph_.ZOLTCommunication = false;
  menu_.mnuZOLTCom.Checked = false;
  graph_.platform().dialogs().MessageBox(
      {.text = "Com port busy.", .title = "Communication port", .icon = Icon::kCritical});
  menu_.SetCommunication(false);
}

bool GraphAcquisition::IsPortFree() {
  SerialPort& port = *graph_.Comm;
  try {
    if (port.PortOpen()) port.SetPortOpen(false);
    port.SetPortOpen(true);
    port.SetPortOpen(false);
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

// Samples are kept by their count, not by their time: a live stream must not carry on an old file.
void GraphAcquisition::mnuZOLTCom() {
  const std::int64_t days = DaysBetween(graph_.Data.LastTime, graph_.Now());
  if (days == 0 || days == 1) return AskAndSwitch();
  if (!menu_.mnuZOLTCom.Checked) {
    graph_.platform().dialogs().MessageBox(
        {.text = "Last measurement more than 24 hours ago. Can not start.",
         .title = kTitle,
         .icon = Icon::kExclamation});
  }
  Switch(false);
}

// The cursor may have gone to the right edge, or with it all that shows its moment.
void GraphAcquisition::Switch(bool on) {
  menu_.SetTimeScroll(on);
  menu_.SetCommunication(on);
  if (menu_.DrawAgain) menu_.DrawAgain();
}

void GraphAcquisition::AskAndSwitch() {
  const bool runs = menu_.mnuZOLTCom.Checked;
  const Answer answer =
      graph_.platform().dialogs().MessageBox({.text = std::string("Are you sure you want to ") +
                                                      (runs ? "stop" : "start") + " communication",
                                              .title = kTitle,
                                              .icon = Icon::kExclamation,
                                              .buttons = Buttons::kYesNo});
  if (answer == Answer::kYes) Switch(!runs);
}

// --- Requests ------------------------------------------------------------------------------------

void GraphAcquisition::SendMsgToZOLT() {
  const std::string frame = NextFrame();
  if (!graph_.Comm->PortOpen()) graph_.Comm->SetPortOpen(true);
  // What waits now is no answer to this request, and would shift those that follow.
  graph_.Comm->ClearInBuffer();
  rest_.clear();
  graph_.Comm->SetRThreshold(zolt_frame::kLength);
  const Key key = KeyOf(frame);
  repeated_ = request_ == key ? repeated_ + 1 : 0;
  request_ = key;
  sent_ = Milliseconds();
  graph_.Comm->Output(frame);
  // Its time begins anew with each request.
  graph_.CommWatch->SetEnabled(false);
  graph_.CommWatch->SetEnabled(true);
}

// A device that was unplugged counts as silent, until the port is tried anew.
void GraphAcquisition::SendOrRetry() {
  try {
    SendMsgToZOLT();
  } catch (const RunTimeError&) {
    graph_.CommWatch->SetEnabled(true);
  }
}

std::string GraphAcquisition::NextFrame() {
  if (std::exchange(graph_.SendTestMode, false)) {
    const bool on = graph_.TestModeOn;
    return BuildZoltMessage(kTestModeType, "0", kTestModeId, on ? kTestModeOn : std::uint8_t{0},
                            on ? graph_.TestModePower : std::uint8_t{0});
  }
  const std::int32_t before = graph_.LinePointer;
  do {
    ++graph_.LinePointer;
    if (graph_.LinePointer > graph_.Data.LastChannel()) graph_.LinePointer = 0;
  } while (!IsPolled(graph_.LinePointer));
  if (before < 0 || graph_.LinePointer <= before) graph_.Ages.BeginCycle();
  graph_.Ages.Asked(graph_.LinePointer);
  const GraphAttribute& line = graph_.Data.LineAt(graph_.LinePointer);
  return BuildZoltMessage(line.Class, Hex(line.SlaveAddress), line.ID,
                          static_cast<std::uint8_t>(HighByte(line.Data)),
                          static_cast<std::uint8_t>(LowByte(line.Data)));
}

// The lanes' answer is always wanted.
bool GraphAcquisition::IsPolled(int index) const {
  return index == graph_.Data.LastChannel() || graph_.Data.LineAt(index).IsShown();
}

// --- Answers -------------------------------------------------------------------------------------

void GraphAcquisition::Received(int event) {
  if (event != kCommReceive) return;
  if (!graph_.ZOLTCommunication) {
    // What nobody waits for would raise the event again and again.
    graph_.Comm->ClearInBuffer();
    return;
  }
  if (quiet_watch_->Enabled()) return DropWhatComes();
  std::string bytes = std::exchange(rest_, {}) + graph_.Comm->Input();
  bool is_answered = false;
  while (!is_answered && bytes.size() >= zolt_frame::kLength) {
    const std::string frame = bytes.substr(0, zolt_frame::kLength);
    bytes.erase(0, zolt_frame::kLength);
    // Where a byte is lost or too many, what follows would be torn for ever.
    if (!IsWhole(frame)) return AwaitQuiet();
    is_answered = !zolt_frame::IsGood(frame) || TakeFrame(frame);
  }
  if (!is_answered) return AwaitRest(std::move(bytes));
  const bool is_early = IsTooEarly();
  const bool is_doubtful = !bytes.empty() || MayBeOneTooMany() || (is_early && trusted_ == 0);
  if (is_early && trusted_ > 0) --trusted_;
  if (is_doubtful) return AwaitQuiet();
  SendOrRetry();
}

// False if the answer belongs to another request than the one that is out: it came late, and the
// right one is still to come.
bool GraphAcquisition::TakeFrame(std::string_view frame) {
  const ZoltMessage answer = ParseZoltMessage(frame);
  if (answer.Ack == zolt_frame::kReadAcknowledge) {
    graph_.lblCommunicationError.Visible = false;
    graph_.lblCommunicationError.Caption = kCommunicationError;
    graph_.RetryCount = 0;
  }
  // A request is no answer: some adapters send back what they were given.
  if (answer.Ack == zolt_frame::kRead || answer.Ack == zolt_frame::kWrite) return false;
  // One that says that the request was damaged need not know its ID.
  if (answer.Ack == zolt_frame::kCorruptedMessage) return true;
  if (IsLate(KeyOf(frame))) return false;
  if (answer.Ack == zolt_frame::kReadAcknowledge) Store(answer);
  return true;
}

// The watch timer runs on: answers that nobody asked for do not keep the polling up.
void GraphAcquisition::AwaitRest(std::string rest) {
  rest_ = std::move(rest);
  graph_.Comm->SetRThreshold(zolt_frame::kLength - static_cast<int>(rest_.size()));
}

// No line has been asked yet where the test mode command went out first.
void GraphAcquisition::Store(const ZoltMessage& answer) {
  const int index = graph_.LinePointer;
  if (index < 0 || answer.Id != graph_.Data.LineAt(index).ID) return;
  graph_.Ages.Answered(index);
  graph_.Data.AddMeasurement(answer.DataHi * 256 + answer.DataLo, graph_.Now(), index);
}

// An answer is told by its ID alone, since not every slave repeats what else was asked; of two
// lines with one ID, class and slave say for which of them a late one is.
bool GraphAcquisition::IsLate(const Key& answer) {
  if (request_ == answer) return false;
  const auto known = std::find(given_up_.begin(), given_up_.end(), answer);
  const bool is_known = known != given_up_.end();
  if (is_known) given_up_.erase(known);
  return !request_ || answer.id != request_->id || is_known;
}

// Of two requests for the same nobody can tell whose answer it is, and one of them could stay out
// for ever.
bool GraphAcquisition::MayBeOneTooMany() const {
  return std::find(given_up_.begin(), given_up_.end(), *request_) != given_up_.end();
}

// Where only one line is asked for, an answer that comes sooner than the line can bring it belongs
// to an earlier request. Behind some adapters every answer does: where nothing more came, they are
// trusted for a while.
bool GraphAcquisition::IsTooEarly() const {
  constexpr int kTwoLines = 1;  // may share an ID
  return repeated_ > kTwoLines && Milliseconds() - sent_ < TimeOfExchange(options_);
}

void GraphAcquisition::GiveUpRequest() {
  constexpr std::size_t kMost = 100;  // whose answers can be on their way
  if (!request_) return;
  if (given_up_.size() == kMost) given_up_.erase(given_up_.begin());
  given_up_.push_back(*request_);
}

double GraphAcquisition::Milliseconds() const {
  return graph_.platform().clock().Now() * kSecondsPerDay * 1000;
}

GraphAcquisition::Key GraphAcquisition::KeyOf(std::string_view frame) {
  return {.id = ParseZoltMessage(frame).Id,
          .data_class = zolt_frame::ClassOf(zolt_frame::TypeOf(frame)),
          .slave = frame[zolt_frame::kSlave.offset]};
}

// What is still on its way would pass for the answer to the next request.
void GraphAcquisition::AwaitQuiet() {
  graph_.CommWatch->SetEnabled(false);
  graph_.Comm->SetRThreshold(zolt_frame::kLength);
  doubt_.Raise();
  is_heard_ = false;
  quiet_watch_->SetEnabled(true);
}

void GraphAcquisition::DropWhatComes() {
  graph_.Comm->ClearInBuffer();
  is_heard_ = true;
  doubt_.Raise();
}

void GraphAcquisition::QuietTick() {
  if (!graph_.ZOLTCommunication) {
    quiet_watch_->SetEnabled(false);
    return;
  }
  if (graph_.Comm->InBufferCount() > 0) DropWhatComes();
  if (!doubt_.AllowsRequest(kQuietTick, TimeOfExchange(options_))) return;
  quiet_watch_->SetEnabled(false);
  given_up_.clear();
  constexpr int kTrusted = 200;  // answers: less than a minute on a usual line
  trusted_ = is_heard_ ? 0 : kTrusted;
  SendOrRetry();
}

void GraphAcquisition::WatchExpired() {
  graph_.CommWatch->SetEnabled(false);
  if (!graph_.ZOLTCommunication) return;
  if (graph_.RetryCount > kSilentExpiries) {
    graph_.lblCommunicationError.Visible = true;
    graph_.lblCommunicationError.Caption = kCommunicationError;
    return InitCom();
  }
  ++graph_.RetryCount;
  GiveUpRequest();
  SendOrRetry();
}

// --- Test mode -----------------------------------------------------------------------------------

void GraphAcquisition::TestMouseDown(MouseButton button) {
  if (button == MouseButton::kLeft) {
    graph_.SendTestMode = true;
    graph_.lblTest.ForeColor = kWhite;
  } else if (ShowTestMode) {
    ShowTestMode();
  }
}

void GraphAcquisition::TestMouseUp() { graph_.lblTest.ForeColor = graph_.Data.Colors.CaptionColor; }

}  // namespace tarnlink
