// Bytes on their way out, each with the time at which it has crossed the line.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulator/log.h"
#include "simulator/pace.h"
#include "simulator/port_action.h"

namespace boiler {

// Bytes that go out in a row.
struct Piece {
  std::string bytes;
  std::map<std::size_t, std::int64_t> pauses_us;  // ahead of the byte at this index
  int exchange = 0;
  Check check = Check::kNone;
  std::string meaning;             // for the log
  std::optional<PortAction> port;  // once the last byte is out
};

class Outgoing {
 public:
  Outgoing(Pace pace, LogSink log) : pace_(pace), log_(std::move(log)) {}

  // Queues the piece behind all others; its first byte starts at `start_us` or when the line is
  // free.
  void Add(Piece piece, std::int64_t start_us);

  // When the next byte or port action is due.
  std::optional<std::int64_t> NextDue() const;
  // Leaves a gap behind what is queued so far.
  void KeepQuiet(std::int64_t gap_us) { free_us_ += gap_us; }
  // When the last byte that is queued so far is out, and the gap behind it over.
  std::int64_t FreeAt() const { return free_us_; }

  // All bytes due by now, but none behind a port action. A piece is logged when its last byte goes.
  std::string TakeDue(std::int64_t now_us);
  // The port action that TakeDue came to, once.
  std::optional<PortAction> TakePortAction();

  // Drops what has not gone out.
  void Cut(std::int64_t now_us);

 private:
  struct Queued {
    Piece piece;
    std::vector<std::int64_t> due_us;  // of each byte, or one time for a piece without bytes
    std::size_t gone = 0;
  };

  void LogSaid(const Queued& queued, std::int64_t time_us);

  Pace pace_;
  LogSink log_;
  std::deque<Queued> queue_;
  std::int64_t free_us_ = 0;
  std::optional<PortAction> port_action_;
};

}  // namespace boiler
