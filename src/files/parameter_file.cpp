#include "files/parameter_file.h"

#include <array>
#include <charconv>

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/shown_text.h"
#include "common/text.h"
#include "common/text_file.h"

namespace tarnlink {
namespace {

constexpr char kComment = '*';
constexpr char kBlank = ' ';
constexpr std::int64_t kHighestWord = 0xFFFF;  // more does not fit a message

// Takes the next token off `line`; empty if there is none.
std::string_view TakeToken(std::string_view& line) {
  const std::size_t begin = line.find_first_not_of(kBlank);
  if (begin == std::string_view::npos) return {};
  line.remove_prefix(begin);
  const std::string_view token = line.substr(0, line.find(kBlank));
  line.remove_prefix(token.size());
  return token;
}

std::string Quoted(std::string_view token) {
  constexpr int kShown = 20;  // characters
  return "\"" + ShownText(token, kShown) + "\"";
}

// Decimal digits, or "&H" and hexadecimal ones.
std::int64_t NumberOf(std::string_view token, std::int64_t highest, const std::string& name) {
  constexpr int kDecimal = 10;
  constexpr int kSixteen = 16;
  const bool is_hexadecimal = ToUpper(token.substr(0, 2)) == "&H";
  const std::string_view digits = is_hexadecimal ? token.substr(2) : token;
  std::uint64_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [last, error] =
      std::from_chars(digits.data(), end, number, is_hexadecimal ? kSixteen : kDecimal);
  if (last != end || error == std::errc::invalid_argument) {
    throw RunTimeError(kTypeMismatch, name + " " + Quoted(token) + " is no number.");
  }
  if (error != std::errc() || number > static_cast<std::uint64_t>(highest)) {
    throw RunTimeError(
        kOverflow, name + " " + Quoted(token) + " is not 0 to " + std::to_string(highest) + ".");
  }
  return static_cast<std::int64_t>(number);
}

void ReadFields(std::string_view line, ParameterItem& item) {
  struct Field {
    const char* name;
    std::int32_t& number;
    std::int64_t highest;
  };
  const std::array<Field, 3> fields = {{{"The class", item.Class, kHighestParameterClass},
                                        {"The ID", item.ID, kHighestWord},
                                        {"The value", item.Value, kHighestWord}}};
  for (const Field& field : fields) {
    const std::string_view token = TakeToken(line);
    if (token.empty()) {
      throw RunTimeError(kSubscript, std::string(field.name) + " is missing.");
    }
    field.number = static_cast<std::int32_t>(NumberOf(token, field.highest, field.name));
  }
}

void TakeLine(std::string_view line, ParameterFile& file) {
  if (line.starts_with(kComment)) {
    file.comments.emplace_back(line);
    return;
  }
  ++file.count;
  if (file.count > kMostParameters) {
    throw RunTimeError(
        kSubscript, "The file holds more than " + std::to_string(kMostParameters) + " parameters.");
  }
  const ParsedParameter parsed = ParseLine(line);
  if (!parsed.Ok) throw RunTimeError(kTypeMismatch, parsed.reason);
  file.items.push_back(parsed.item);
}

}  // namespace

ParsedParameter ParseLine(std::string_view Line) {
  ParsedParameter parsed;
  try {
    ReadFields(Line, parsed.item);
    parsed.Ok = true;
  } catch (const RunTimeError& error) {
    parsed.reason = error.what();
  }
  return parsed;
}

ParameterFile ReadParameterFile(std::string_view text) {
  ParameterFile file;
  file.failure = TakeLines(text, [&file](std::string_view line) { TakeLine(line, file); });
  if (file.failure) file.items.clear();
  return file;
}

std::string ParameterComment(std::string_view text) {
  std::string line = "* " + std::string(text);
  for (char& letter : line) {
    if (letter == '\r' || letter == '\n') letter = kBlank;
  }
  return line.append(kLineEnd);
}

std::string ParameterLine(std::int32_t Class, std::string_view Address, std::int64_t Value) {
  std::string line = std::to_string(Class) + " &H";
  line.append(Address).append(" &H").append(Hex(Value)).append(kLineEnd);
  return line;
}

}  // namespace tarnlink
