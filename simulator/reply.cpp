#include "simulator/reply.h"

#include <algorithm>

#include "simulator/damage.h"

namespace boiler {
namespace {

using enum FaultKind;

// Long enough to come apart in two reads, short beside any time-out.
constexpr std::int64_t kSplitGapUs = 10'000;
// Idle noise comes this long behind an answer, between two polls.
constexpr int kIdleNoiseFirstUs = 2'000;
constexpr int kIdleNoiseSpanUs = 8'000;

std::int64_t Microseconds(int milliseconds) { return std::int64_t{milliseconds} * 1000; }

// The slave never comes to carry the request out.
bool NotCarriedOut(FaultKind kind) {
  return kind == kNoReply || kind == kBusyThenOk || kind == kRebootMidsession ||
         kind == kUnplugWhileWriting;
}

WriteEffect EffectOf(const std::optional<Fault>& fault) {
  if (fault && fault->kind == kWriteOkNotStored) return WriteEffect::kForgotten;
  if (fault && (fault->kind == kRangeRejected || fault->kind == kRefused)) {
    return WriteEffect::kRejected;
  }
  return WriteEffect::kStored;
}

}  // namespace

Reply ReplyMaker::Make(const Request& request, const std::optional<Fault>& fault) {
  Reply reply;
  if (fault && NotCarriedOut(fault->kind)) {
    reply = Unanswered(request, *fault);
  } else {
    reply.frame = slave_.Answer(request, controller_, EffectOf(fault));
    const std::string sound = reply.frame;
    if (fault && !sound.empty()) Shape(request, *fault, reply);
    if (!sound.empty()) previous_answer_ = sound;
  }
  if (!reply.frame.empty()) {
    reply.check = slave_.CheckHolds(reply.frame) ? Check::kHolds : Check::kBroken;
  }
  return reply;
}

Reply ReplyMaker::Unanswered(const Request& request, const Fault& fault) {
  Reply reply;
  if (fault.kind == kBusyThenOk) reply.frame = slave_.BusyAnswer(request);
  if (fault.kind == kRebootMidsession) reply.reboot_us = Microseconds(fault.number);
  if (fault.kind == kUnplugWhileWriting) reply.port = PortAction{};
  return reply;
}

void ReplyMaker::Shape(const Request& request, const Fault& fault, Reply& reply) {
  switch (fault.group()) {
    case FaultGroup::kTime:
      ShapeTime(fault, reply);
      break;
    case FaultGroup::kContent:
      ShapeContent(request, fault, reply);
      break;
    case FaultGroup::kDamage:
      ShapeDamage(fault, reply);
      break;
    case FaultGroup::kStream:
      ShapeStream(request, fault, reply);
      break;
    case FaultGroup::kPort:
      ShapePort(fault, reply);
      break;
    case FaultGroup::kDevice:
      if (fault.kind == kWriteSlow) reply.late_us = Microseconds(fault.number);
      if (fault.kind == kWriteStoredAnswerLost) reply.frame.clear();
      break;
  }
}

void ReplyMaker::ShapeTime(const Fault& fault, Reply& reply) {
  const std::int64_t time_us = Microseconds(fault.number);
  if (fault.kind == kLateReply) reply.late_us = time_us;
  if (fault.kind == kLateReplyAfterNext) reply.hold = Hold::kUntilNextRequest;
  if (fault.kind == kPauseMidframe) reply.pauses_us[reply.frame.size() / 2] = time_us;
  if (fault.kind == kSlowBytes) {
    for (std::size_t at = 1; at < reply.frame.size(); ++at) reply.pauses_us[at] = time_us;
  }
}

void ReplyMaker::ShapeContent(const Request& request, const Fault& fault, Reply& reply) {
  if (fault.kind == kStaleDuplicate) {
    reply.frame = previous_answer_;
  } else {
    reply.frame = slave_.WrongAnswer(fault, request, reply.frame, controller_, random_);
  }
}

void ReplyMaker::ShapeDamage(const Fault& fault, Reply& reply) {
  if (fault.kind == kCheckWrong) {
    reply.frame = slave_.WithWrongCheck(reply.frame, random_);
  } else {
    reply.frame = Damaged(fault, std::move(reply.frame), random_);
  }
}

void ReplyMaker::ShapeStream(const Request& request, const Fault& fault, Reply& reply) {
  switch (fault.kind) {
    case kSplit:
      Split(fault.number, reply);
      break;
    case kMergeTwo:
      reply.hold = Hold::kIntoNextAnswer;
      break;
    case kNoiseBefore:
      reply.before = NoiseBytes(fault.number, random_);
      break;
    case kNoiseAfter:
      reply.after = NoiseBytes(fault.number, random_);
      break;
    case kNoiseIdle:
      reply.tail = NoiseBytes(fault.number, random_);
      reply.tail_gap_us = kIdleNoiseFirstUs + random_.Below(kIdleNoiseSpanUs);
      break;
    case kSelfEcho:
      reply.lead = request.bytes;
      break;
    case kForeignTraffic:
      reply.lead = slave_.ForeignTraffic(random_);
      break;
    case kOversize:
      reply.frame = slave_.WrongAnswer(fault, request, reply.frame, controller_, random_);
      break;
    case kEndlessStream:
      reply.endless = true;
      reply.endless_us = Microseconds(fault.number);
      break;
    default:
      break;
  }
}

void ReplyMaker::ShapePort(const Fault& fault, Reply& reply) {
  using Then = PortAction::Then;
  PortAction action;
  if (fault.kind == kReplugSameName) action = {Then::kSameName, Microseconds(fault.number)};
  if (fault.kind == kReplugOtherName) action = {Then::kOtherName, Microseconds(fault.number)};
  if (fault.kind == kUnplugMidframe) reply.frame.resize(reply.frame.size() / 2);
  reply.port = action;
}

// Cuts the frame at places by chance; no piece is empty.
void ReplyMaker::Split(int pieces, Reply& reply) {
  const std::size_t length = reply.frame.size();
  const std::size_t cuts = std::min(static_cast<std::size_t>(pieces), length) - 1;
  while (reply.pauses_us.size() < cuts) {
    const int place = 1 + random_.Below(static_cast<int>(length) - 1);
    reply.pauses_us[static_cast<std::size_t>(place)] = kSplitGapUs;
  }
}

}  // namespace boiler
