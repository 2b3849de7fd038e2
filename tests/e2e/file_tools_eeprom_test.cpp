// The EEPROM writer and the EEPROM downloader in the real program: output files, an image that is
// written, verified and read back byte for byte, and a cable that is pulled in the middle.

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <sstream>

#include "tools_line.h"

namespace e2e {
namespace {

const std::string kWriter = "frm_EEPROM";
const std::string kDownloader = "frm_EEPROM_Down";
const std::string kReading = "frm_EEPROMRead_Progress";
constexpr int kBytes = 512;
constexpr int kRunTime = 120'000;  // ms, at most
constexpr int kEnd = 10'000;       // likewise

std::uint16_t Check(const std::string& data) {
  unsigned check = 0;
  for (const char byte : data) {
    check ^= static_cast<unsigned>(static_cast<unsigned char>(byte)) << 8;
    for (int bit = 0; bit < 8; ++bit)
      check = (check << 1) ^ ((check & 0x8000U) != 0 ? 0x1021U : 0U);
  }
  return static_cast<std::uint16_t>(check);
}

// The image that a definition file stands for: its decimal column, and the check of each block.
std::string ImageOf(const std::string& definition) {
  std::string image;
  std::string block;
  std::istringstream lines(definition);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t comma = line.find(',');
    if (comma != 2 || line.find(",0X") == std::string::npos) continue;
    block += static_cast<char>(std::stoi(line.substr(comma + 1)));
    if (block.size() < 16) continue;
    block.resize(14);
    const std::uint16_t check = Check(block);
    image += block + static_cast<char>(check & 0xFF) + static_cast<char>(check >> 8);
    block.clear();
  }
  return image;
}

class EepromOnALine : public ToolsOnALine {
 protected:
  void StartWithSample(const std::vector<std::string>& options = {"--at-once", "--delay", "1"}) {
    std::filesystem::copy_file(std::filesystem::path(TARNLINK_SAMPLES) / "boiler.def",
                               folder.Path("boiler.def"));
    Start(options);
  }
  void Choose(const std::string& name) {
    program->Mouse("cmd_Browse");
    ASSERT_TRUE(program->Becomes("modal", "Open|OpenFile"));
    ASSERT_TRUE(program->Becomes("type " + folder.Path(name), "ok"));
    program->Click("Open");
    ASSERT_TRUE(ComesToFront(kWriter));
    EXPECT_EQ(program->Text("txt_eepromsourcefile"), folder.Path(name));
  }
  void MakeOutputFiles() {
    program->Mouse("cmd_TarnlinkFile");
    ASSERT_TRUE(ComesToFront("Tarnlink File is generated"));
    program->Click("OK");
    ASSERT_TRUE(ComesToFront(kWriter));
  }
  void AnswerQuestion(const std::string& answer = "Yes") {
    ASSERT_TRUE(ComesToFront("Write 512 bytes, 0X8000 to 0X81FF, into slave 0?"));
    program->Click(answer);
    ASSERT_TRUE(ComesToFront(kWriter));
  }
  void Write() {
    program->Mouse("cmd_WriteEEPROM");
    AnswerQuestion();
    EXPECT_TRUE(program->Becomes("text lblLeft", "512 bytes written and verified.", kRunTime));
  }
  // What the slave holds.
  std::string Held() {
    std::string image;
    std::istringstream pairs(Tell("get 8000 " + std::to_string(kBytes)));
    std::string address;
    pairs >> address;
    for (std::string pair; pairs >> pair;) {
      image += static_cast<char>(std::stoi(pair, nullptr, 16));
    }
    return image;
  }
  void ReadBack(const std::string& name) {
    Open("M_EE_DOWN", kDownloader);
    program->Mouse("cmdBrowse");
    program->SaveAs("Save As", folder.Path(name));
    ASSERT_TRUE(ComesToFront(kDownloader));
    program->Mouse("cmd_read_EEPROM");
    ASSERT_TRUE(ComesToFront(kReading));
    ASSERT_TRUE(
        program->Becomes("modal", "File Generation Done...|Tarnlink File is generated", kRunTime));
    program->Click("OK");
    ASSERT_TRUE(ComesToFront(kDownloader));
    EXPECT_TRUE(Says("text lblState", "512 bytes read."));
    Leave();
  }
};

TEST_F(EepromOnALine, MakesWritesAndReadsBackTheSameImage) {
  StartWithSample();
  const std::string image = ImageOf(folder.Read("boiler.def"));
  ASSERT_EQ(image.size(), static_cast<std::size_t>(kBytes));
  Open("M_EEPROM", kWriter);
  Choose("boiler.def");
  EXPECT_EQ(program->Text("lblSource"), "512 bytes, 0X8000 to 0X81FF");
  MakeOutputFiles();
  EXPECT_EQ(folder.Read("boiler.bin"), image);
  const std::string text = folder.Read("boiler.tlk");
  EXPECT_EQ(text.substr(text.find(" START")).substr(0, 44),
            " START\r\n3C 60 0X8000flow setpoint in degrees");
  EXPECT_TRUE(Record("heard").empty()) << "Nothing goes out for output files.";

  EXPECT_NE(Held(), image);
  Write();
  EXPECT_EQ(Held(), image);
  Leave();

  ReadBack("back.def");
  EXPECT_EQ(folder.Read("back.bin"), image);
  EXPECT_EQ(ImageOf(folder.Read("back.def")), image);

  // Into another slave, which holds other bytes.
  for (int page : {0x8000, 0x8100}) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += "A5";
    ASSERT_EQ(Tell("set " + Digits(page) + " " + bytes), "ok");
  }
  EXPECT_EQ(Held(), std::string(kBytes, '\xA5'));
  Open("M_EEPROM", kWriter);
  Choose("back.def");
  Write();
  EXPECT_EQ(Held(), image);
  Leave();
}

TEST_F(EepromOnALine, SendsNothingBeforeTheAnswerAndNothingBehindAStop) {
  StartWithSample();
  Open("M_EEPROM", kWriter);
  Choose("boiler.def");
  program->Mouse("cmd_WriteEEPROM");
  AnswerQuestion("No");
  EXPECT_TRUE(Record("heard").empty());

  program->Mouse("cmd_WriteEEPROM");
  AnswerQuestion();
  EXPECT_TRUE(HasHeard(20));
  EXPECT_EQ(program->Ask("close"), "ok");
  ASSERT_TRUE(ComesToFront("The EEPROM is being written. Stop and close the window?"));
  program->Click("No");
  ASSERT_TRUE(ComesToFront(kWriter));
  program->Mouse("cmd_Stop");
  EXPECT_TRUE(Says("text lblLeft", "Stopped. The last address that was confirmed is 0X80"));
  const std::vector<std::string> heard = Heard();
  EXPECT_EQ(heard.front(), "87 0 FFFE 003C");
  EXPECT_EQ(heard.at(1), "87 0 FFFE 0132");
  Leave();
  EXPECT_EQ(Heard(), heard);
}

TEST_F(EepromOnALine, NamesTheLastConfirmedAddressWhenItIsPulledOut) {
  StartWithSample();
  Open("M_EEPROM", kWriter);
  Choose("boiler.def");
  program->Mouse("cmd_WriteEEPROM");
  AnswerQuestion();
  ASSERT_TRUE(HasHeard(40));
  ASSERT_EQ(Tell("unplug"), "ok");
  ASSERT_TRUE(Eventually([&] { return program->Ask("modal").rfind("Error|", 0) == 0; }));
  const std::string phrase = "The last address that was confirmed is 0X";
  const std::string box = program->Text("qt_msgbox_informativelabel");
  EXPECT_EQ(box.rfind(phrase, 0), 0U) << box;
  program->Click("OK");
  ASSERT_TRUE(ComesToFront(kWriter));

  const std::string told = program->Text("lblLeft");
  EXPECT_NE(told.find(box), std::string::npos) << told;
  ASSERT_EQ(box.substr(phrase.size() + 4), ". Write the whole image again.");
  const int address = std::stoi(box.substr(phrase.size(), 4), nullptr, 16);
  int acknowledged = 0;
  for (const RecordedFrame& frame : Record("said")) {
    if (frame.IsAnswer()) ++acknowledged;
  }
  // An acknowledgement that was on its way is lost with the cable.
  const int count = address - 0x8000 + 1;
  EXPECT_LE(count, acknowledged);
  EXPECT_GE(count + 1, acknowledged);

  // Put back, it goes through.
  ASSERT_EQ(Tell("replug"), "ok");
  Write();
  EXPECT_EQ(Held(), ImageOf(folder.Read("boiler.def")));
  Leave();
}

TEST_F(EepromOnALine, MakesOutputFilesBesideARunAndSaysThatThePortIsInUse) {
  StartWithSample();
  const std::string settings = folder.Read("config/TarnLink2/TarnLink2.ini");
  const std::string screen = folder.Path("zolt.wcr");
  std::filesystem::copy_file(std::filesystem::path(TARNLINK_SAMPLES) / "zolt.wcr", screen);
  program.reset();
  program = std::make_unique<DrivenProgram>(folder, settings, screen);
  program->Press("Toolbar1(2)");
  ASSERT_TRUE(HasHeard(5));
  Open("M_EEPROM", kWriter);
  Choose("boiler.def");
  MakeOutputFiles();
  EXPECT_EQ(folder.Read("boiler.bin"), ImageOf(folder.Read("boiler.def")));
  program->Mouse("cmd_WriteEEPROM");
  ASSERT_TRUE(ComesToFront("Write 512 bytes, 0X8000 to 0X81FF, into slave 0?"));
  program->Click("Yes");
  ASSERT_TRUE(Says("modal", "Stop Communication First"));
  program->Click("OK");
  ASSERT_TRUE(ComesToFront(kWriter));
  for (const RecordedFrame& frame : Record("heard")) EXPECT_NE(frame.type(), 0x87);
  Leave();
}

// The system tells the program to end, as when the user leaves the session: an image is not left
// half written without a question.
TEST_F(EepromOnALine, TheEndOfTheSessionAsksWhileAnImageIsWritten) {
  const std::string question = "The EEPROM is being written. Stop and close the window?";
  StartWithSample({"--at-once", "--delay", "3"});
  Open("M_EEPROM", kWriter);
  Choose("boiler.def");
  program->Mouse("cmd_WriteEEPROM");
  AnswerQuestion();
  program->process().Signal(SIGTERM);
  ASSERT_TRUE(ComesToFront(question));
  program->Click("No");
  ASSERT_TRUE(ComesToFront(kWriter));
  EXPECT_TRUE(program->Becomes("text lblLeft", "512 bytes written and verified.", kRunTime));
  EXPECT_EQ(Held(), ImageOf(folder.Read("boiler.def")));

  program->Mouse("cmd_WriteEEPROM");
  AnswerQuestion();
  program->process().Signal(SIGTERM);
  ASSERT_TRUE(ComesToFront(question));
  program->Click("Yes");
  EXPECT_EQ(program->process().WaitForEnd(kEnd), 0);
}

}  // namespace
}  // namespace e2e
