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

LogEncoding::LogEncoding(std::string_view sample) : is_utf8_(EncodeText(sample) == sample) {}

std::string LogEncoding::Bytes(std::string_view piece) const {
  return is_utf8_ ? std::string(piece) : EncodeText(piece);
}

}  // namespace tarnlink
