#include "files/log_file.h"

#include "common/text_file.h"

namespace tarnlink {

std::string LogName(int MaxId) { return "log " + std::to_string(MaxId) + ".log"; }

std::string LogField(std::string_view text) {
  std::string field(text);
  for (char& letter : field) {
    if (letter == '\t' || letter == '\r' || letter == '\n') letter = ' ';
  }
  return field;
}

std::string LogHeading(std::string_view date, std::string_view screen_file,
                       const std::vector<LogColumn>& columns) {
  std::string text = LogField(date) + "\t" + LogField(screen_file);
  text += kLineEnd;
  text += '\t';
  for (const LogColumn& column : columns) {
    text += "\t" + LogField(column.Alias) + "(" + LogField(column.Address) + ")";
  }
  text += kLineEnd;
  return text;
}

namespace {

bool IsPlain(std::string_view text) { return EncodeText(text) == text; }

}  // namespace

LogEncoding::LogEncoding(std::string_view heading, std::string_view may_come)
    : is_utf8_(IsPlain(heading) || IsPlain(std::string(heading).append(may_come))) {}

std::string LogEncoding::Bytes(std::string_view piece) const {
  return is_utf8_ ? std::string(piece) : EncodeWindows1252(piece);
}

}  // namespace tarnlink
