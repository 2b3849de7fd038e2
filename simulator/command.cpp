#include "simulator/command.h"

#include <charconv>

#include "simulator/bytes.h"
#include "simulator/problem.h"

namespace boiler {
namespace {

constexpr int kMostBytes = 1024;

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return "";
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The text up to the next blank, which is taken off `line` with the blanks behind it.
std::string_view TakeWord(std::string_view& line) {
  const std::size_t end = line.find(' ');
  const std::string_view word = line.substr(0, end);
  line = end == std::string_view::npos ? "" : Trimmed(line.substr(end));
  return word;
}

std::uint16_t TakeAddress(std::string_view& line) {
  const std::string_view word = TakeWord(line);
  const auto address = ParseAddress(word);
  if (!address) throw Problem("\"" + std::string(word) + "\" is no address of 1 to 4 digits.");
  return *address;
}

Command ParseSet(std::string_view rest) {
  Command command{CommandKind::kSet, "", TakeAddress(rest), "", 1};
  const auto bytes = ParseHexBytes(rest);
  if (!bytes) throw Problem("set takes an address and bytes of two hexadecimal digits each.");
  command.bytes = *bytes;
  return command;
}

Command ParseGet(std::string_view rest) {
  Command command{CommandKind::kGet, "", TakeAddress(rest), "", 1};
  if (rest.empty()) return command;
  const char* end = rest.data() + rest.size();
  const auto [stop, error] = std::from_chars(rest.data(), end, command.count);
  if (error != std::errc() || stop != end || command.count < 1 || command.count > kMostBytes) {
    throw Problem("get takes an address and a count of 1 to " + std::to_string(kMostBytes) + ".");
  }
  return command;
}

Command Plain(CommandKind kind) { return {kind, "", 0, "", 1}; }

}  // namespace

Command ParseCommand(std::string_view line) {
  std::string_view rest = Trimmed(line);
  if (rest.empty()) return {};
  const std::string_view word = TakeWord(rest);
  if (word == "fault" && !rest.empty()) return {CommandKind::kFault, std::string(rest), 0, "", 1};
  if (word == "set") return ParseSet(rest);
  if (word == "get") return ParseGet(rest);
  if (word == "replug" && rest == "other") return Plain(CommandKind::kReplugOther);
  if (rest.empty()) {
    if (word == "clear") return Plain(CommandKind::kClear);
    if (word == "unplug") return Plain(CommandKind::kUnplug);
    if (word == "replug") return Plain(CommandKind::kReplug);
    if (word == "reboot") return Plain(CommandKind::kReboot);
    if (word == "quit") return Plain(CommandKind::kQuit);
  }
  throw Problem("\"" + std::string(Trimmed(line)) + "\" is no command.");
}

}  // namespace boiler
