#include "simulator/line_simulator.h"

#include <algorithm>
#include <utility>

#include "simulator/problem.h"
#include "simulator/random.h"

namespace boiler {
namespace {

// What the one seed is used for; each use has its own numbers.
enum Purpose : std::uint64_t { kWhichFault = 200, kShapeOfFault, kBabble };

// A late answer and the one that it was taken for come apart in two reads.
constexpr std::int64_t kLateGapUs = 5'000;
// Above 19200 baud a silence of 3.5 characters is held to be this long.
constexpr std::int64_t kShortestSilenceUs = 1'750;
// So long the second master waits for an answer to begin.
constexpr std::int64_t kPollPatienceUs = 200'000;

}  // namespace

LineSimulator::LineSimulator(Controller& controller, Slave& slave, const LineOptions& options,
                             std::uint64_t seed, LogSink log)
    : controller_(controller),
      slave_(slave),
      options_(options),
      log_(std::move(log)),
      injector_(Mix(seed, kWhichFault)),
      maker_(controller, slave, Mix(seed, kShapeOfFault)),
      outgoing_(options.pace, log_),
      endless_(options.pace, Mix(seed, kBabble)) {}

void LineSimulator::Hear(std::int64_t now_us, std::string_view bytes) {
  EndSilence(now_us);
  const std::int64_t start_us = std::max(now_us, heard_until_us_);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    heard_until_us_ = start_us + options_.pace.TimeOf(i + 1);
    if (const auto heard = slave_.Hear(bytes[i])) Handle(*heard, heard_until_us_);
  }
}

std::optional<std::int64_t> LineSimulator::NextDue() const {
  std::optional<std::int64_t> next = outgoing_.NextDue();
  const auto consider = [&](std::optional<std::int64_t> time_us) {
    if (time_us) next = next ? std::min(*next, *time_us) : *time_us;
  };
  consider(endless_.NextDue());
  if (polling_) consider(polling_->due_us);
  if (slave_.Waiting()) consider(SilentAt());
  return next;
}

std::string LineSimulator::TakeDue(std::int64_t now_us) {
  EndSilence(now_us);
  std::string bytes;
  while (polling_ && polling_->due_us <= now_us && !port_action_) {
    bytes += TakeOutgoing(polling_->due_us);
    if (!port_action_) Poll();
  }
  bytes += TakeOutgoing(now_us);
  bytes += endless_.TakeDue(now_us);
  return bytes;
}

std::string LineSimulator::TakeOutgoing(std::int64_t now_us) {
  std::string bytes = outgoing_.TakeDue(now_us);
  if (const auto action = outgoing_.TakePortAction()) {
    port_action_ = action;
    Cut(now_us);
  }
  return bytes;
}

std::optional<PortAction> LineSimulator::TakePortAction() {
  return std::exchange(port_action_, std::nullopt);
}

void LineSimulator::AddFault(std::string_view text) {
  const FaultPlan plan = ParseFaultPlan(text);
  const auto refuse = [&](std::string_view reason) {
    return Problem("Fault \"" + std::string(text) + "\": " + std::string(reason) + '.');
  };
  if (BlocksOpening(plan.fault.kind)) throw refuse("there is no port here to be opened");
  const std::string_view misfit = slave_.Misfit(plan.fault.kind);
  if (!misfit.empty()) throw refuse(misfit);
  injector_.Add(plan);
}

void LineSimulator::ClearFaults() {
  injector_.Clear();
  endless_.Stop();
  held_.clear();
}

void LineSimulator::Reboot(std::int64_t now_us, std::int64_t deaf_us) {
  Cut(now_us);
  controller_.AdvanceTo(now_us);
  controller_.Reboot();
  deaf_until_us_ = now_us + deaf_us;
  log_({now_us, LogKind::kNote, 0, Check::kNone, "",
        "reboot, deaf for " + std::to_string(deaf_us / 1000) + " ms"});
}

void LineSimulator::Cut(std::int64_t now_us) {
  outgoing_.Cut(now_us);
  endless_.Stop();
  held_.clear();
  slave_.Forget();
  heard_until_us_ = now_us;
  if (polling_) {
    polling_->asked.clear();
    polling_->due_us = now_us + polling_->master.gap_us();
  }
}

void LineSimulator::Join(SecondMaster master) {
  const std::int64_t first_us = outgoing_.FreeAt() + master.gap_us();
  polling_ = Polling{std::move(master), first_us, ""};
}

// A request goes out when the line is free. The slave hears it when its last byte is out; the next
// one follows behind the answer, or when none has come.
void LineSimulator::Poll() {
  Polling& polling = *polling_;
  const std::int64_t time_us = polling.due_us;
  if (polling.asked.empty()) {
    const SecondRequest& request = polling.master.Next();
    polling.asked = request.bytes;
    outgoing_.Add({request.bytes, {}, 0, Check::kHolds, request.meaning, {}}, time_us);
    polling.due_us = outgoing_.FreeAt();
    return;
  }
  for (const char byte : std::exchange(polling.asked, "")) {
    if (const auto heard = slave_.Hear(byte)) Handle(*heard, time_us);
  }
  const bool is_answered = outgoing_.NextDue().has_value();
  polling.due_us = std::max(outgoing_.FreeAt(), time_us + (is_answered ? 0 : kPollPatienceUs)) +
                   polling.master.gap_us();
}

std::int64_t LineSimulator::SilentAt() const {
  if (!slave_.EndsInSilence()) return heard_until_us_ + options_.idle_gap_us;
  return heard_until_us_ + std::max(options_.pace.TimeOf(7) / 2, kShortestSilenceUs);
}

void LineSimulator::EndSilence(std::int64_t now_us) {
  const std::int64_t end_us = SilentAt();
  if (!slave_.Waiting() || now_us < end_us) return;
  if (const auto heard = slave_.Silence()) Handle(*heard, end_us);
}

void LineSimulator::Handle(const Heard& heard, std::int64_t time_us) {
  const auto ignore = [&](const std::string& bytes, const std::string& reason) {
    log_({time_us, LogKind::kIgnored, 0, Check::kNone, bytes, reason});
  };
  if (const auto* ignored = std::get_if<Ignored>(&heard)) {
    ignore(ignored->bytes, ignored->reason);
    return;
  }
  const Request& request = std::get<Request>(heard);
  if (time_us < deaf_until_us_) {
    ignore(request.bytes, "the controller is starting");
  } else if (endless_.Running()) {
    ignore(request.bytes, "an endless stream is going out");
  } else {
    Exchange(request, time_us);
  }
}

void LineSimulator::Exchange(const Request& request, std::int64_t time_us) {
  controller_.AdvanceTo(time_us);
  ++exchanges_;
  log_({time_us, LogKind::kHeard, exchanges_, Check::kNone, request.bytes, request.meaning});
  if (Release(Hold::kUntilNextRequest, time_us + options_.answer_delay_us)) {
    outgoing_.KeepQuiet(kLateGapUs);
  }

  const auto fault = injector_.Next(
      {request.write, maker_.AnsweredBefore(), !held_.empty(), slave_.NamesId(request)});
  const Reply reply = maker_.Make(request, fault);
  if (fault) {
    log_({time_us, LogKind::kFault, exchanges_, reply.check, reply.AllBytes(), FaultText(*fault)});
  }
  if (reply.reboot_us) {
    Reboot(time_us, *reply.reboot_us);
  } else {
    Send(request, reply, fault ? FaultText(*fault) : "answer", time_us);
  }
}

void LineSimulator::Send(const Request& request, const Reply& reply, const std::string& meaning,
                         std::int64_t time_us) {
  const auto piece = [&](std::string bytes) {
    return Piece{std::move(bytes), {}, exchanges_, Check::kNone, meaning, {}};
  };
  outgoing_.Add(piece(reply.lead), time_us);
  Piece answer = piece(reply.Piece());
  answer.pauses_us = reply.pauses_us;
  answer.check = reply.check;
  answer.port = reply.port;
  if (reply.hold != Hold::kNone) {
    held_.push_back({std::move(answer), reply.hold});
    return;
  }
  std::int64_t start_us = time_us + options_.answer_delay_us + reply.late_us;
  // A cable that is pulled while the master writes is pulled in the middle of its request.
  if (answer.bytes.empty()) start_us = time_us - options_.pace.TimeOf(request.bytes.size()) / 2;
  if (!answer.bytes.empty()) Release(Hold::kIntoNextAnswer, start_us);
  outgoing_.Add(std::move(answer), start_us);
  outgoing_.Add(piece(reply.tail), outgoing_.FreeAt() + reply.tail_gap_us);
  if (reply.endless) endless_.Start(outgoing_.FreeAt(), reply.endless_us);
}

bool LineSimulator::Release(Hold hold, std::int64_t start_us) {
  for (Held& held : held_) {
    if (held.hold == hold) outgoing_.Add(std::move(held.piece), start_us);
  }
  return std::erase_if(held_, [&](const Held& held) { return held.hold == hold; }) > 0;
}

}  // namespace boiler
