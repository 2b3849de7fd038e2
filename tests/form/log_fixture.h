// The language of the tests on the log: a screen whose Locations are logged, and the file as text.
//
//   Screen({Logged(ByteAt("0001"))});
//   StartLog();
//   Advance(1000);
//   EXPECT_EQ(Rows(), "14:07:09|2A\n14:07:09");
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/monitor_fixture.h"

namespace tarnlink {

Location Logged(Location location);

// Tabs as "|", line ends as "\n"; a line end of another kind is told.
std::string ReadableLog(const std::string& bytes);

// The fields of a row, split at its tabs or another mark.
std::vector<std::string> FieldsOf(const std::string& row, char mark = '\t');

class LogTest : public MonitorTest {
 protected:
  // "File Logging" is on.
  LogTest();

  static constexpr const char* kLog = "/home/user/Documents/run.log";

  ScriptedDialog& ExpectLogDialog() { return world.dialogs().ExpectSaveFile("Save log file as"); }
  // Starts, and gives the log this name in its dialog.
  void StartLog(const std::string& path = kLog);

  // What the file holds now, as ReadableLog has it; of `Rows` all behind the heading.
  std::string Text(const std::string& path = kLog) const;
  std::string Rows() const;
  bool LogExists() const { return world.disk().Exists(kLog); }

  // The box of a log that cannot be written any more.
  ScriptedDialog& ExpectLogFailure(int code, const std::string& path = kLog);
};

}  // namespace tarnlink
