#include "files/log_file.h"

#include <algorithm>

#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"

namespace tarnlink {
namespace {

// What is left of a text in the log: all of it, or what has a place in its encoding.
std::string Kept(const LogEncoding& encoding, std::string_view text) {
  if (encoding.is_utf8()) return std::string(text);
  std::string kept;
  for (const std::string_view character : Characters(text)) {
    const std::string byte = EncodeWindows1252(character);
    kept += byte == "?" ? "?" : std::string(character);
  }
  return kept;
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const std::string screen = DecodeText(bytes.Field());
  const std::string times = DecodeText(bytes.Field());
  const int columns = bytes.Below(8);
  std::vector<LogColumn> names;
  for (int i = 0; i < columns; ++i) {
    names.push_back({DecodeText(bytes.Field()), DecodeText(bytes.Field())});
  }
  std::string log = LogHeading("5-Mar-2002", screen, names);
  Claim(LineCount(log) == 2, "a heading is two lines");
  Claim(std::count(log.begin(), log.end(), '\t') == 2 + columns, "a column has one tab");
  const LogEncoding encoding(log, times);
  std::string written = encoding.Bytes(log);
  Claim(DecodeText(written) == log, "a heading fits its own encoding");
  while (!bytes.AtEnd()) {
    const std::string field = LogField(DecodeText(bytes.Field()));
    Claim(field.find_first_of("\t\r\n") == std::string::npos, "a field is one field");
    log += Kept(encoding, field) + "\t";
    written += encoding.Bytes(field) + encoding.Bytes("\t");
  }
  Claim(DecodeText(written) == log, "a log is read as one text");
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {
      "/a.wcr\0 am\0\2Flow\0"
      "01A0\0W\xE4rme\0F00A\0"
      "12\0TRUE\0"s,
      "/\xE4.wcr\0\0\1a\0b\0\xCE\xA9\0\xC3\x83\xC2\xA9\0"s, "a\0\xCE\xBC.\0\0\xEF\xBB\xBF"s,
      "\xE2\x82\xAC\0p\xE9\0\1\t\n\0\r\0x"s};
}

}  // namespace

FuzzTarget LogFileTarget() { return {"log_file", Run, Seeds}; }

}  // namespace tarnlink
