#include "tools/eeprom_line.h"

#include <utility>

#include "common/text.h"
#include "protocols/zolt_frame.h"
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

// What the slave says of a request that it does not carry out.
std::string RefusalOf(std::string_view frame) {
  switch (zolt_frame::KindOf(zolt_frame::TypeOf(frame))) {
    case zolt_frame::kCorruptedMessage:
      return "the slave heard it damaged";
    case zolt_frame::kOutsideRange:
      return "the slave refuses it";
    case zolt_frame::kUnknownDataId:
      return "the slave does not know the address";
    default:
      return "the slave answers something else";
  }
}

}  // namespace

EepromLine::EepromLine(ToolHost& host, SerialPort& port, Timer& timeout)
    : host_(host),
      port_(port),
      timeout_(timeout),
      quiet_watch_(host.platform, host.line, [this](bool) { Quiet(); }) {
  timeout_.SetInterval(kAnswerTime);
  timeout_.SetOnTimer([this] { TimeOut(); });
  port_.SetOnComm([this](int event) { CommEvent(event); });
  frames_.HeardRequest = [this](std::string_view frame) { HearMaster(frame); };
}

void EepromLine::Open() {
  Close();
  SetServiceLine(port_, host_.line);
  port_.SetPortOpen(true);
  is_open_ = true;
  // Nothing that the run before has asked for may be taken for an answer in this one.
  if (std::exchange(is_unsettled_, false)) AwaitQuiet(kAnswerTime);
}

void EepromLine::Close() {
  if (is_out_ || quiet_watch_.IsOn()) is_unsettled_ = true;
  timeout_.SetEnabled(false);
  quiet_watch_.End();
  is_open_ = is_out_ = is_doubtful_ = heard_more_ = false;
  CloseQuietly(port_);
}

// --- Requests ------------------------------------------------------------------------------------

void EepromLine::Send(const std::string& message, const std::string& slave, const std::string& id) {
  LastMessage = message;
  slave_ = slave;
  id_ = id;
  repeats_ = 0;
  is_doubtful_ = false;
  Put();
}

void EepromLine::ResendMsg() {
  ++repeats_;
  if (Repeated) Repeated("Sent again " + TimesText(repeats_) + ": " + why_ + ".");
  Put();
}

void EepromLine::Put() {
  quiet_watch_.End();
  frames_.Clear();
  heard_more_ = is_contested_ = false;
  is_out_ = true;
  try {
    port_.ClearInBuffer();
    port_.SetRThreshold(zolt_frame::kLength);
    port_.Output(LastMessage);
  } catch (const RunTimeError& error) {
    const std::string reason = port_.LossReason();
    return Lose(reason.empty() ? PortTrouble(error) : reason);
  }
  Restart(timeout_);
}

void EepromLine::AskAgain(const std::string& why) {
  why_ = why;
  is_out_ = true;
  AwaitQuiet();
}

void EepromLine::AwaitQuiet(int late) {
  timeout_.SetEnabled(false);
  port_.SetRThreshold(1);
  quiet_watch_.Settle(late);
}

void EepromLine::Quiet() {
  if (is_out_) ResendMsg();
}

// Each request that went out may be answered yet.
void EepromLine::TimeOut() {
  timeout_.SetEnabled(false);
  is_doubtful_ = true;
  why_ = "no answer";
  ResendMsg();
}

// --- Answers -------------------------------------------------------------------------------------

void EepromLine::CommEvent(int event) {
  if (event == kCommDeviceGone) {
    const std::string reason = port_.LossReason();
    if (!reason.empty()) Lose(reason);
    return;
  }
  if (event != kCommReceive) return;
  try {
    Received();
  } catch (const RunTimeError&) {
    // The timer goes on from here.
  }
}

void EepromLine::Received() {
  const std::string bytes = port_.Input();
  if (!is_out_) heard_more_ = true;
  if (quiet_watch_.IsOn()) return quiet_watch_.Raise();
  if (!is_out_) return;
  for (auto kind = frames_.Take(bytes); kind != AnswerKind::kNone; kind = frames_.Take({})) {
    if (kind != AnswerKind::kGood) return AskAgain("a damaged answer");
    const std::string frame = frames_.frame();
    if (IsForUs(frame)) return Take(frame);
  }
  port_.SetRThreshold(frames_.Missing());
}

void EepromLine::Take(std::string_view frame) {
  const bool is_read =
      zolt_frame::KindOf(zolt_frame::TypeOf(frame)) == zolt_frame::kReadAcknowledge;
  // It does not say which address it is of.
  if (is_read && is_contested_) return AskAgain("another master asks the slave too");
  timeout_.SetEnabled(false);
  const bool is_doubtful = is_doubtful_ || frames_.IsDoubtful();
  heard_more_ = frames_.IsDoubtful();
  is_out_ = false;
  if (!Answered || Answered(frame)) {
    if (!port_.PortOpen() || is_out_) return;
    // Of a request that went out more than once each may be answered, and as late as the first.
    if (repeats_ > 0) return AwaitQuiet(kAnswerTime);
    if (is_doubtful) AwaitQuiet();
    return;
  }
  if (!port_.PortOpen() || is_out_) return;
  why_ = RefusalOf(frame);
  is_doubtful || !BearsId(frame) ? AskAgain(why_) : ResendMsg();
}

void EepromLine::HearMaster(std::string_view frame) {
  if (frame != LastMessage && zolt_frame::TypeOf(frame) == zolt_frame::kReadMemory &&
      IsFrom(frame, slave_)) {
    is_contested_ = true;
  }
}

// One that says that the request was damaged need not know what it was.
bool EepromLine::BearsId(std::string_view frame) const {
  return zolt_frame::KindOf(zolt_frame::TypeOf(frame)) == zolt_frame::kCorruptedMessage ||
         zolt_frame::Text(frame, zolt_frame::kId) == id_;
}

// An answer that came late, or another slave's, is not: the right one is still to come. A refusal
// may bear any ID.
bool EepromLine::IsForUs(std::string_view frame) const {
  if (!IsFrom(frame, slave_)) return false;
  const std::uint8_t type = zolt_frame::TypeOf(frame);
  const bool is_of_memory = zolt_frame::ClassOf(type) == zolt_frame::kMemoryClass;
  switch (zolt_frame::KindOf(type)) {
    case zolt_frame::kCorruptedMessage:
      return true;
    case zolt_frame::kOutsideRange:
    case zolt_frame::kUnknownDataId:
      return is_of_memory;
    case zolt_frame::kWriteAcknowledge:
      if (zolt_frame::TypeOf(LastMessage) == zolt_frame::kWriteMemory) return is_of_memory;
      [[fallthrough]];
    default:
      return is_of_memory && BearsId(frame);
  }
}

// Port and request may both find it out.
void EepromLine::Lose(const std::string& reason) {
  if (!is_open_) return;
  Close();
  if (Lost) Lost(reason);
}

}  // namespace tarnlink
