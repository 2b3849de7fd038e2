// The cable is pulled out of the tools that write a file into the boiler, or read one out of it:
// each ends what it does, with one box, and begins anew when it is told to.

#include "plug_line.h"

namespace e2e {
namespace {

const std::string kParameters = "frmWriteParameters";
const std::string kEeprom = "frm_EEPROM";
const std::string kDownloader = "frm_EEPROM_Down";
const std::string kReading = "frm_EEPROMRead_Progress";
const std::string kCheck = "frm_CfgCheck";

class PlugFileTools : public PlugLine {
 protected:
  void Choose(const std::string& button, const std::string& path, const std::string& form) {
    program->Mouse(button);
    ASSERT_TRUE(ComesToFront("OpenFile"));
    ASSERT_TRUE(program->Becomes("type " + path, "ok"));
    // While the dialog is still reading its folder it may take no notice of the button.
    EXPECT_TRUE(Eventually([&] {
      if (Front() == "OpenFile") program->Ask("click Open");
      return Front() == form;
    }));
    Rest();
  }
  std::string Sample(const std::string& name) {
    std::filesystem::copy_file(std::filesystem::path(TARNLINK_SAMPLES) / name, folder.Path(name));
    return folder.Path(name);
  }
  // The one box names the port.
  std::string TakeLoss(const std::string& form) {
    TakeBox("COM1 (", "OK", form);
    EXPECT_TRUE(HasLetGo());
    return form;
  }
};

TEST_F(PlugFileTools, OutOfTheParameterWriter) {
  StartOn("zolt");
  std::string text;
  for (int i = 0; i < 200; ++i) text += "7 &HF410 " + std::to_string(i) + "\r\n";
  Open("mnuLoadParameters", kParameters);
  Choose("cmdBrowse", folder.Write("some.par", text), kParameters);
  const auto start = [this](int) {
    program->Mouse("cmdWriteZOLT");
    EXPECT_TRUE(IsBusy());
  };
  const auto told = [this](int, Pull) { return TakeLoss(kParameters); };
  Endure({.name = "parameter writer", .start = start, .told = told});
}

TEST_F(PlugFileTools, OutOfTheEepromWriter) {
  StartOn("zolt");
  Open("M_EEPROM", kEeprom);
  Choose("cmd_Browse", Sample("boiler.def"), kEeprom);
  const auto start = [this](int) {
    program->Mouse("cmd_WriteEEPROM");
    TakeBox("Write 512 bytes, 0X8000 to 0X81FF, into slave 0?", "Yes", kEeprom);
    EXPECT_TRUE(IsBusy());
  };
  const auto told = [this](int, Pull) { return TakeLoss(kEeprom); };
  Endure({.name = "EEPROM writer", .start = start, .told = told});
}

TEST_F(PlugFileTools, OutOfTheDownloader) {
  StartOn("zolt");
  Open("M_EE_DOWN", kDownloader);
  program->Mouse("cmdBrowse");
  program->SaveAs("Save As", folder.Path("back.def"));
  ASSERT_TRUE(ComesToFront(kDownloader));
  Rest();
  const auto start = [this](int) {
    program->Mouse("cmd_read_EEPROM");
    ASSERT_TRUE(ComesToFront(kReading));
    EXPECT_TRUE(IsBusy());
  };
  const auto told = [this](int, Pull) { return TakeLoss(kDownloader); };
  Endure({.name = "downloader", .start = start, .told = told});
  EXPECT_FALSE(std::filesystem::exists(folder.Path("back.def"))) << "It has never read all.";
}

TEST_F(PlugFileTools, OutOfTheConfigurationCheck) {
  StartOn("zolt");
  Open("mnuCfgCheck", kCheck);
  Choose("cmd_Open", Sample("boiler.cfg"), kCheck);
  const auto start = [this](int) {
    program->Mouse("cmd_Check");
    EXPECT_TRUE(IsBusy(300));
  };
  const auto told = [this](int, Pull) { return TakeLoss(kCheck); };
  Endure({.name = "configuration check", .start = start, .told = told});
}

}  // namespace
}  // namespace e2e
