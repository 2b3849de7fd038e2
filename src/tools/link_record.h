// What went over the line: each frame with its time and its meaning, the newest of them, and how
// the exchanges with each slave went. It watches, whichever form speaks.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "common/dates.h"
#include "platform/clock.h"
#include "platform/line_watcher.h"
#include "tools/link_account.h"
#include "tools/link_frame.h"

namespace tarnlink {

enum class TraceKind {
  kRequest,
  kAnswer,
  kRefusal,
  kBad,      // came in, and is no whole frame
  kOther,    // a whole frame that is no answer to what is out
  kTimeOut,  // no bytes: the request before had no answer
  kClosed,   // no bytes: the port was closed
};

struct TraceEntry {
  std::int64_t number = 0;  // from 1, of all since the beginning
  TraceKind kind = TraceKind::kRequest;
  Date date = 0;                       // of its last byte
  std::chrono::microseconds since{0};  // behind the request that it belongs to
  std::string bytes;
  std::string meaning;
};

class LinkRecord final : public LineWatcher {
 public:
  static constexpr std::size_t kMostEntries = 20'000;

  // `clock` outlives it.
  explicit LinkRecord(const Clock& clock) : clock_(clock) {}

  void BytesSent(std::string_view bytes) override;
  void BytesReceived(std::string_view bytes) override;
  void LineClosed() override;

  // The oldest first.
  const std::deque<TraceEntry>& trace() const { return trace_; }
  const LinkAccount& account() const { return account_; }
  // How many entries there have been: whether there is anything new.
  std::int64_t EntryCount() const { return entry_count_; }

  // Forgets both. An exchange that is under way counts no more.
  void Clear();

 private:
  struct Exchange {
    LinkProtocol protocol;
    std::string request;
    std::string slave;
    std::chrono::microseconds sent;
    bool is_answered = false;
    bool was_bad = false;
  };

  void TakeFrames();
  void TakeFrame(std::string_view frame);
  void TakeBad(std::string_view bytes);
  // In the trace only.
  void AddBad(std::string_view bytes);
  void TakeLost();
  // Whatever still waits is no frame, and the exchange has ended. One that a closed port cut short
  // counts as nothing, and so does the beginning of its answer.
  void EndExchange(bool is_closed);
  struct Moment {
    Date date = 0;
    std::chrono::microseconds elapsed{0};
  };
  Moment Now() const { return {clock_.Now(), clock_.Elapsed()}; }
  void Add(TraceKind kind, const Moment& when, std::string_view bytes, std::string meaning);
  LinkProtocol HeardProtocol() const;
  SlaveAccount& AccountOut();  // of the exchange, which there is

  const Clock& clock_;
  LinkAccount account_;
  std::deque<TraceEntry> trace_;
  std::int64_t entry_count_ = 0;
  std::optional<Exchange> exchange_;  // the last that was begun
  std::string waiting_;               // came in, and is no frame yet
  Moment arrived_;                    // of its last byte
};

}  // namespace tarnlink
