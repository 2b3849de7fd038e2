// The simulator's log: one line per event, written so that a test can read it back.
//
// A line has six columns with a tab between them: time in microseconds, kind, number of the
// exchange
// ("-" where there is none), check of the frame ("holds", "broken" or "-"), bytes in hexadecimal
// ("-" for none), meaning.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace boiler {

enum class LogKind {
  kHeard,    // a request that the slave understood
  kIgnored,  // bytes that are no request, and why
  kSaid,     // bytes that went out
  kFault,    // a fault struck: all bytes that it makes go out for the exchange
  kPort,     // the port was plugged, unplugged or made unusable
  kNote,     // anything else worth knowing
};

enum class Check { kNone, kHolds, kBroken };

struct LogEntry {
  std::int64_t time_us = 0;
  LogKind kind = LogKind::kNote;
  int exchange = 0;  // from 1; 0: of no exchange
  Check check = Check::kNone;
  std::string bytes;
  std::string meaning;

  bool operator==(const LogEntry&) const = default;
};

using LogSink = std::function<void(const LogEntry&)>;

// One line without its end.
std::string LogLine(const LogEntry& entry);

// Nothing when the text is no line of a log.
std::optional<LogEntry> ParseLogLine(std::string_view line);

// All entries of a log's text. An unfinished last line is left out; any other line that is none of
// a log throws Problem with its number.
std::vector<LogEntry> ReadLog(std::string_view text);

}  // namespace boiler
