// A user's hands on the window of the parameter writer.
#pragma once

#include <string>

#include "support/samples.h"
#include "ui/service_tools_fixture.h"

namespace tarnlink {

inline const std::string kParameterPath = "/home/user/work/boiler.par";

class ParameterWindowTest : public ServiceToolsTest {
 protected:
  ParameterWindowTest() {
    host.ParameterFile = [this] { return file; };
    host.MsgTimeout = [] { return 1; };
  }

  // With a file of this text in the project, or without any.
  QWidget& OpenWriter(const std::string& text) {
    world.disk().Put(kParameterPath, text);
    file = kParameterPath;
    return OpenWriter();
  }
  QWidget& OpenWriter() {
    file_tools->parameters.Show();
    return Activated("frmWriteParameters");
  }
  ScriptedDialog& ExpectReport(const std::string& text) {
    return world.dialogs().ExpectMessageBox(text, "Write & verify settings");
  }
  // So many parameters; those of memory that can not be written are given up at once.
  static std::string Parameters(int count, const std::string& first = "7 4096 ") {
    std::string text;
    for (int i = 0; i < count; ++i) text += first + std::to_string(i % 10) + "\r\n";
    return text;
  }

  std::string file;
};

}  // namespace tarnlink
