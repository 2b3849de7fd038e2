#include "simulator/log.h"

#include <array>
#include <charconv>

#include "simulator/bytes.h"
#include "simulator/problem.h"

namespace boiler {
namespace {

constexpr std::array<std::string_view, 6> kKinds = {"heard", "ignored", "said",
                                                    "fault", "port",    "note"};
constexpr std::array<std::string_view, 3> kChecks = {"-", "holds", "broken"};

template <typename Words>
std::optional<std::size_t> Find(const Words& words, std::string_view word) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (words[i] == word) return i;
  }
  return std::nullopt;
}

template <typename Number>
bool ParseNumber(std::string_view text, Number* number) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, *number);
  return error == std::errc() && stop == end;
}

// The text up to the next tab, which is taken off `line` with it.
std::string_view TakeColumn(std::string_view& line) {
  const std::size_t tab = line.find('\t');
  const std::string_view column = line.substr(0, tab);
  line.remove_prefix(tab == std::string_view::npos ? line.size() : tab + 1);
  return column;
}

}  // namespace

std::string LogLine(const LogEntry& entry) {
  std::string line = std::to_string(entry.time_us);
  line += '\t';
  line += kKinds[static_cast<std::size_t>(entry.kind)];
  line += '\t';
  line += entry.exchange == 0 ? "-" : std::to_string(entry.exchange);
  line += '\t';
  line += kChecks[static_cast<std::size_t>(entry.check)];
  line += '\t';
  line += entry.bytes.empty() ? "-" : HexText(entry.bytes);
  line += '\t';
  line += entry.meaning;
  return line;
}

std::optional<LogEntry> ParseLogLine(std::string_view line) {
  LogEntry entry;
  if (!ParseNumber(TakeColumn(line), &entry.time_us)) return std::nullopt;
  const auto kind = Find(kKinds, TakeColumn(line));
  if (!kind) return std::nullopt;
  entry.kind = static_cast<LogKind>(*kind);
  const std::string_view exchange = TakeColumn(line);
  if (exchange != "-" && (!ParseNumber(exchange, &entry.exchange) || entry.exchange < 1)) {
    return std::nullopt;
  }
  const auto check = Find(kChecks, TakeColumn(line));
  if (!check) return std::nullopt;
  entry.check = static_cast<Check>(*check);
  const std::string_view bytes = TakeColumn(line);
  if (bytes != "-") {
    const auto parsed = ParseHexBytes(bytes);
    if (!parsed) return std::nullopt;
    entry.bytes = *parsed;
  }
  entry.meaning = line;
  return entry;
}

std::vector<LogEntry> ReadLog(std::string_view text) {
  std::vector<LogEntry> entries;
  int number = 0;
  for (std::size_t end; (end = text.find('\n')) != std::string_view::npos;) {
    ++number;
    const auto entry = ParseLogLine(text.substr(0, end));
    if (!entry) throw Problem("Line " + std::to_string(number) + " is no line of a log.");
    entries.push_back(*entry);
    text.remove_prefix(end + 1);
  }
  return entries;
}

}  // namespace boiler
