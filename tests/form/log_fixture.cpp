#include "form/log_fixture.h"

namespace tarnlink {

Location Logged(Location location) {
  location.LogEnable = 1;
  return location;
}

std::string ReadableLog(const std::string& bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes.compare(i, 2, "\r\n") == 0) {
      text += '\n';
      ++i;
    } else if (bytes[i] == '\r' || bytes[i] == '\n') {
      text += "<half a line end>";
    } else {
      text += bytes[i] == '\t' ? '|' : bytes[i];
    }
  }
  return text;
}

std::vector<std::string> FieldsOf(const std::string& row, char mark) {
  std::vector<std::string> fields{""};
  for (const char letter : row) {
    if (letter == mark) {
      fields.emplace_back();
    } else {
      fields.back() += letter;
    }
  }
  return fields;
}

LogTest::LogTest() { monitor.options.chk_GeneralLogging(0).Value = true; }

void LogTest::StartLog(const std::string& path) {
  ExpectLogDialog().Give(path);
  Start();
}

std::string LogTest::Text(const std::string& path) const {
  return ReadableLog(world.disk().Get(path));
}

std::string LogTest::Rows() const {
  const std::string text = Text();
  const auto names = text.find('\n');
  return text.substr(text.find('\n', names + 1) + 1);
}

ScriptedDialog& LogTest::ExpectLogFailure(int code, const std::string& path) {
  return ExpectCritical("Internal System Error # " + std::to_string(code) +
                            " occured, please contact distributor.\r\nDuring writing log file " +
                            path,
                        "Internal System Error");
}

}  // namespace tarnlink
