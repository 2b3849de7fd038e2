// A user's hands on the windows of the EEPROM writer and the EEPROM downloader.
#pragma once

#include <string>

#include "support/eeprom_text.h"
#include "support/samples.h"
#include "ui/service_tools_fixture.h"

namespace tarnlink {

inline const std::string kImagePath = "/home/user/work/boiler.def";

class EepromWindowsTest : public ServiceToolsTest {
 protected:
  QWidget& OpenWriter() {
    file_tools->eeprom.Show();
    return Activated("frm_EEPROM");
  }
  QWidget& OpenDownloader() {
    file_tools->eeprom_down.Show();
    return Activated("frm_EEPROM_Down");
  }
  // A source of so many blocks, or the sample.
  void Choose(QWidget& writer, int blocks = 0) {
    std::string text = SampleBytes("boiler.def");
    if (blocks > 0) {
      text = "START\r\n";
      for (int i = 0; i < blocks; ++i) {
        text += DefBlock(0x8000 + 16 * i, [&](int offset) { return (i * 37 + offset) & 0xFF; });
        text += "\r\n";
      }
    }
    world.disk().Put(kImagePath, text);
    world.dialogs().ExpectOpenFile().Give(kImagePath);
    Click(writer, "cmd_Browse");
  }
  void PressWrite(QWidget& writer, const std::string& question) {
    world.dialogs().ExpectMessageBox(question, "Write EEPROM").Press(Answer::kYes);
    Click(writer, "cmd_WriteEEPROM");
  }
  void StartReading(QWidget& downloader, const std::string& size = "512") {
    auto& field = In<QLineEdit>(downloader, "EESize");
    field.setFocus();
    field.selectAll();
    Type(downloader, size);
    world.dialogs().ExpectSaveFile().Give(kImagePath);
    Click(downloader, "txt_eepromsourcefile");
    Click(downloader, "cmd_read_EEPROM");
  }
};

}  // namespace tarnlink
