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
constexpr int kLowestSpeed = 1200;
constexpr int kLastSpeed = 10;  // doublings, far beyond every port

// The test mode command: a write of class 1, to slave "0" whatever the lines' slaves are.
constexpr std::uint8_t kTestModeType = zolt_frame::kWrite + 1;
constexpr std::int32_t kTestModeId = 14;
constexpr std::uint8_t kTestModeOn = 255;

constexpr const char* kTitle = "ZOLT Communication";

// Midnights from `from` to `to`.
std::int64_t DaysBetween(Date from, Date to) {
  return static_cast<std::int64_t>(std::floor(to)) - static_cast<std::int64_t>(std::floor(from));
}

}  // namespace

GraphAcquisition::GraphAcquisition(frmGraphic& graph, frmContextMenu& menu, GraphPort options)
    : graph_(graph), menu_(menu), options_(std::move(options)) {
  graph_.Comm->SetOnComm([this](int event) { Received(event); });
  graph_.CommWatch->SetOnTimer([this] { WatchExpired(); });
  menu_.InitCom = [this] { InitCom(); };
  menu_.mnuZOLTCom.Click = [this] { mnuZOLTCom(); };
}

// --- Starting and stopping -----------------------------------------------------------------------

void GraphAcquisition::InitCom() {
  SerialPort& port = *graph_.Comm;
  if (port.PortOpen()) port.SetPortOpen(false);
  const int doublings = std::clamp(options_.Baudrate(), 0, kLastSpeed);
  bool is_free = false;
  try {
    port.SetCommPort(options_.ComPortNumber());
    port.SetRThreshold(zolt_frame::kLength);
    port.SetSettings(Str(kLowestSpeed << doublings) + "n,8,1");
    graph_.LinePointer = -1;
    graph_.CommWatch->SetInterval(kWatch);
    is_free = IsPortFree();
  } catch (const RunTimeError&) {
    // A number or speed that no port has.
  }
  if (!is_free) return SayBusy();
  graph_.CommWatch->SetEnabled(true);
  graph_.ZOLTCommunication = true;
  SendOrRetry();
}

void GraphAcquisition::SayBusy() {
  graph_.CommWatch->SetEnabled(false);
  graph_.ZOLTCommunication = false;
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
  menu_.SetTimeScroll(false);
  menu_.SetCommunication(false);
}

void GraphAcquisition::AskAndSwitch() {
  const bool runs = menu_.mnuZOLTCom.Checked;
  const Answer answer =
      graph_.platform().dialogs().MessageBox({.text = std::string("Are you sure you want to ") +
                                                      (runs ? "stop" : "start") + " communication",
                                              .title = kTitle,
                                              .icon = Icon::kExclamation,
                                              .buttons = Buttons::kYesNo});
  if (answer != Answer::kYes) return;
  menu_.SetTimeScroll(!runs);
  menu_.SetCommunication(!runs);
}

// --- Requests ------------------------------------------------------------------------------------

void GraphAcquisition::SendMsgToZOLT() {
  const std::string frame = NextFrame();
  if (!graph_.Comm->PortOpen()) graph_.Comm->SetPortOpen(true);
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
    request_id_ = kTestModeId;
    const bool on = graph_.TestModeOn;
    return BuildZoltMessage(kTestModeType, "0", kTestModeId, on ? kTestModeOn : std::uint8_t{0},
                            on ? graph_.TestModePower : std::uint8_t{0});
  }
  do {
    ++graph_.LinePointer;
    if (graph_.LinePointer > graph_.Data.LastChannel()) graph_.LinePointer = 0;
  } while (!IsPolled(graph_.LinePointer));
  const GraphAttribute& line = graph_.Data.Attributes.at(Index());
  request_id_ = line.ID & 0xFFFF;  // as it goes over the line
  constexpr std::int32_t kHighByte = 0xFF00;
  return BuildZoltMessage(line.Class, Hex(line.SlaveAddress), line.ID,
                          static_cast<std::uint8_t>((line.Data & kHighByte) / 256),
                          static_cast<std::uint8_t>(line.Data));
}

// The lanes' answer is always wanted.
bool GraphAcquisition::IsPolled(int index) const {
  return index == graph_.Data.LastChannel() ||
         graph_.Data.Attributes.at(static_cast<std::size_t>(index)).IsShown();
}

// --- Answers -------------------------------------------------------------------------------------

void GraphAcquisition::Received(int event) {
  if (event != kCommReceive) return;
  if (!graph_.ZOLTCommunication) {
    // What nobody waits for would raise the event again and again.
    graph_.Comm->ClearInBuffer();
    return;
  }
  graph_.CommWatch->SetEnabled(false);
  if (TakeAnswer()) {
    SendOrRetry();
  } else {
    graph_.CommWatch->SetEnabled(true);
  }
}

// False if the answer belongs to another request than the one that is out: it came late, and the
// right one is still to come.
bool GraphAcquisition::TakeAnswer() {
  const ZoltMessage answer = ParseZoltMessage(graph_.Comm->Input());
  if (answer.Ack == zolt_frame::kReadAcknowledge) {
    graph_.lblCommunicationError.Visible = false;
    graph_.lblCommunicationError.Caption = kCommunicationError;
    graph_.RetryCount = 0;
  }
  const bool is_sound = answer.Ack != 0;
  if (is_sound && answer.Id != request_id_) return false;
  // No line has been asked yet where the test mode command went out first.
  if (answer.Ack == zolt_frame::kReadAcknowledge && graph_.LinePointer >= 0 &&
      answer.Id == graph_.Data.Attributes.at(Index()).ID) {
    graph_.Data.AddMeasurement(answer.DataHi * 256 + answer.DataLo, graph_.Now(),
                               graph_.LinePointer);
  }
  return true;
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
