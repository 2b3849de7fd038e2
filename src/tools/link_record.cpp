#include "tools/link_record.h"

#include <utility>

#include "tools/link_meaning.h"

namespace tarnlink {
namespace {

// Far beyond the longest frame: what has not become one by then never will.
constexpr std::size_t kMostWaiting = 300;

// A port that is closed sooner leaves an exchange unfinished: it may still have been answered.
constexpr std::chrono::seconds kSilence(1);

}  // namespace

void LinkRecord::BytesSent(std::string_view bytes) {
  EndExchange(false);
  const LinkProtocol protocol = ProtocolOfRequest(bytes);
  exchange_ = Exchange{.protocol = protocol,
                       .request = std::string(bytes),
                       .slave = SlaveOfFrame(protocol, bytes),
                       .sent = clock_.Elapsed()};
  ++AccountOut().exchanges;
  Add(TraceKind::kRequest, Now(), bytes, RequestMeaning(protocol, bytes));
}

void LinkRecord::BytesReceived(std::string_view bytes) {
  waiting_ += bytes;
  arrived_ = Now();
  TakeFrames();
  TakeLost();
  if (waiting_.size() > kMostWaiting) TakeBad(std::exchange(waiting_, {}));
}

void LinkRecord::LineClosed() {
  if (!exchange_ && waiting_.empty()) return;
  EndExchange(true);
  exchange_.reset();
  Add(TraceKind::kClosed, Now(), {}, "the port was closed");
}

// Somebody who only listens hears the controllers' own protocol.
LinkProtocol LinkRecord::HeardProtocol() const {
  return exchange_ && exchange_->protocol != LinkProtocol::kNone ? exchange_->protocol
                                                                 : LinkProtocol::kZolt;
}

SlaveAccount& LinkRecord::AccountOut() {
  return account_.Of(exchange_->protocol, exchange_->slave);
}

void LinkRecord::TakeFrames() {
  while (const auto place = FindFrame(HeardProtocol(), waiting_)) {
    if (place->begin > 0) TakeBad(waiting_.substr(0, place->begin));
    TakeFrame(waiting_.substr(place->begin, place->length));
    waiting_.erase(0, place->begin + place->length);
  }
}

void LinkRecord::TakeFrame(std::string_view frame) {
  const LinkProtocol protocol = HeardProtocol();
  const std::string_view request = exchange_ ? std::string_view(exchange_->request) : "";
  const FrameRole role =
      exchange_ && !exchange_->is_answered ? RoleOf(protocol, request, frame) : FrameRole::kOther;
  std::string meaning = AnswerMeaning(protocol, request, frame);
  if (role == FrameRole::kEcho) meaning += " (echo)";
  if (role == FrameRole::kEcho || role == FrameRole::kOther)
    return Add(TraceKind::kOther, arrived_, frame, std::move(meaning));
  exchange_->is_answered = true;
  SlaveAccount& account = AccountOut();
  ++account.answers;
  account.times.Add(arrived_.elapsed - exchange_->sent);
  if (role == FrameRole::kRefusal) ++account.refusals;
  Add(role == FrameRole::kRefusal ? TraceKind::kRefusal : TraceKind::kAnswer, arrived_, frame,
      std::move(meaning));
}

void LinkRecord::TakeLost() {
  const auto lost = [this] { return LostBytes(HeardProtocol(), waiting_); };
  for (std::size_t count = lost(); count > 0; count = lost()) {
    TakeBad(waiting_.substr(0, count));
    waiting_.erase(0, count);
  }
}

void LinkRecord::AddBad(std::string_view bytes) {
  Add(TraceKind::kBad, arrived_, bytes, BadBytesMeaning(HeardProtocol(), bytes));
}

void LinkRecord::TakeBad(std::string_view bytes) {
  AddBad(bytes);
  if (!exchange_) return;
  exchange_->was_bad = true;
  account_.Bad(AccountOut(), bytes);
}

void LinkRecord::EndExchange(bool is_closed) {
  const bool is_cut = is_closed && (!exchange_ || clock_.Elapsed() - exchange_->sent < kSilence);
  if (!waiting_.empty() && is_cut) AddBad(std::exchange(waiting_, {}));
  if (!waiting_.empty()) TakeBad(std::exchange(waiting_, {}));
  if (!exchange_ || exchange_->is_answered) return;
  SlaveAccount& account = AccountOut();
  if (exchange_->was_bad) {
    ++account.bad_checks;
  } else if (!is_cut) {
    ++account.timeouts;
    Add(TraceKind::kTimeOut, Now(), {}, "no answer");
  }
}

void LinkRecord::Add(TraceKind kind, const Moment& when, std::string_view bytes,
                     std::string meaning) {
  if (trace_.size() == kMostEntries) trace_.pop_front();
  trace_.push_back(
      {.number = ++entry_count_,
       .kind = kind,
       .date = when.date,
       .since = exchange_ ? when.elapsed - exchange_->sent : std::chrono::microseconds(0),
       .bytes = std::string(bytes),
       .meaning = std::move(meaning)});
}

void LinkRecord::Clear() {
  account_.Clear();
  trace_.clear();
  exchange_.reset();
  waiting_.clear();
}

}  // namespace tarnlink
