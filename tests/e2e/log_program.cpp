#include "log_program.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace e2e {

namespace {

constexpr int kPatience = 10000;  // ms
constexpr std::size_t kRequest = 9;
constexpr std::size_t kTimeLength = 8;  // "14:07:09"

std::string Word(int number, const std::string& alias) {
  const std::string place = std::to_string(600 + 400 * number);
  return "\"L\",0,3,\"F00" + std::to_string(2 * number) + "\",0,\"" + alias +
         "\",\"name\",0,1,0,0,\"0\",0," + place + ",2400," + place + ",240,\"0\"\r\n";
}

}  // namespace

LogProgram::LogProgram(const std::vector<std::string>& names,
                       const std::function<void(const std::string& logs)>& prepare,
                       const Starter& starter) {
  // A folder without a file would not be proposed.
  folder_.Write("logs/older.txt", "");
  if (prepare) prepare(folder_.Path("logs"));
  std::string screen = "16744576\r\n";
  for (int i = 0; i < kColumns; ++i) screen += Word(i, names[static_cast<std::size_t>(i)]);
  program_ = std::make_unique<DrivenProgram>(
      folder_, Settings(), std::vector<std::string>{folder_.Write("boiler.wcr", screen)},
      starter ? starter(LogPath()) : std::vector<std::string>{});
}

std::string LogProgram::Settings() const {
  return "[Communication]\nProtocol=0\nBaudrate=3\nCommport=1\nStopBits=0\nParity=0\n"
         "IgnoreErrors=1\nMsgTimeout=5\nFileLogging=1\n\n[Paths]\nLogPath=" +
         folder_.Path("logs") + "\n\n[Ports]\nCOM1=" + line_.path() + "\n";
}

void LogProgram::StartLog() {
  program_->Press("Toolbar1(2)");
  ASSERT_TRUE(program_->Becomes("modal", "Save log file as|SaveFile", kPatience));
  program_->Click("Save");
}

void LogProgram::Answer(int count) {
  for (int i = 0; i < count; ++i) {
    const std::string request = line_.Receive(kRequest, kPatience);
    ASSERT_EQ(request.size(), kRequest) << "The program asks for nothing.";
    std::string digits = "0000";
    std::snprintf(digits.data(), digits.size() + 1, "%04X", static_cast<unsigned>(++answers_));
    line_.Send("\x04\x01" + request.substr(2, 4) + digits + "00\x03");
  }
}

std::vector<std::string> Split(const std::string& text, const std::string& mark) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (auto end = text.find(mark); end != std::string::npos; end = text.find(mark, begin)) {
    parts.push_back(text.substr(begin, end - begin));
    begin = end + mark.size();
  }
  parts.push_back(text.substr(begin));
  return parts;
}

std::string FaultOfLog(const std::string& log, int answers) {
  const std::vector<std::string> lines = Split(log, "\r\n");
  if (lines.size() < 3 || Split(lines[1], "\t").size() != LogProgram::kColumns + 2) {
    return "The heading is torn.";
  }
  int values = 0;
  for (std::size_t l = 2; l < lines.size(); ++l) {
    const std::vector<std::string> fields = Split(lines[l], "\t");
    const bool is_last = l + 1 == lines.size();
    // Between a line end and the time behind it the next row has not begun.
    if (fields[0].size() != kTimeLength && !(is_last && lines[l].empty())) {
      return "A time is torn: " + lines[l];
    }
    if (!is_last && fields.size() != LogProgram::kColumns + 1) return "A row is torn: " + lines[l];
    for (std::size_t f = 1; f < fields.size(); ++f) {
      const bool is_open = is_last && f + 1 == fields.size();
      if (is_open && fields[f].empty()) continue;
      if (fields[f] != std::to_string(++values)) return "A value is torn or lost: " + lines[l];
    }
  }
  if (values >= answers - 1 && values <= answers) return "";
  return std::to_string(values) + " values of " + std::to_string(answers) + " are there.";
}

}  // namespace e2e
