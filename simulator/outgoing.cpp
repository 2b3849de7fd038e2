#include "simulator/outgoing.h"

#include <algorithm>
#include <utility>

namespace boiler {

void Outgoing::Add(Piece piece, std::int64_t start_us) {
  if (piece.bytes.empty() && !piece.port) return;
  Queued queued{std::move(piece), {}, 0};
  std::int64_t start = std::max(start_us, free_us_);
  if (queued.piece.bytes.empty()) queued.due_us.push_back(start);
  for (std::size_t i = 0; i < queued.piece.bytes.size(); ++i) {
    const auto pause = queued.piece.pauses_us.find(i);
    if (pause != queued.piece.pauses_us.end()) start += pause->second;
    queued.due_us.push_back(start + pace_.TimeOf(i + 1));
  }
  free_us_ = queued.due_us.back();
  queue_.push_back(std::move(queued));
}

std::optional<std::int64_t> Outgoing::NextDue() const {
  if (queue_.empty()) return std::nullopt;
  return queue_.front().due_us[queue_.front().gone];
}

std::string Outgoing::TakeDue(std::int64_t now_us) {
  std::string bytes;
  while (!queue_.empty() && !port_action_) {
    Queued& queued = queue_.front();
    const std::string& all = queued.piece.bytes;
    while (queued.gone < all.size() && queued.due_us[queued.gone] <= now_us) {
      bytes += all[queued.gone++];
    }
    if (queued.gone < all.size() || queued.due_us.back() > now_us) break;
    LogSaid(queued, queued.due_us.back());
    port_action_ = queued.piece.port;
    queue_.pop_front();
  }
  return bytes;
}

std::optional<PortAction> Outgoing::TakePortAction() { return std::exchange(port_action_, {}); }

void Outgoing::Cut(std::int64_t now_us) {
  if (!queue_.empty()) LogSaid(queue_.front(), now_us);
  queue_.clear();
  free_us_ = now_us;
}

void Outgoing::LogSaid(const Queued& queued, std::int64_t time_us) {
  const Piece& piece = queued.piece;
  if (queued.gone == 0) return;
  const bool whole = queued.gone == piece.bytes.size();
  log_({time_us, LogKind::kSaid, piece.exchange, whole ? piece.check : Check::kBroken,
        piece.bytes.substr(0, queued.gone), whole ? piece.meaning : piece.meaning + ", cut off"});
}

}  // namespace boiler
