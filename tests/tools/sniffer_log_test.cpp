// The log file of the sniffer.

#include "common/numbers.h"
#include "tools/sniffer_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kAsk = "Save log file as";
constexpr const char* kPath = "/logs/Sniffer.log";
const std::string kHeading =
    "5-Mar-2024 14:07:09\r\n"
    "    Date    .Time         .Received message .ID      .MSB   .LSB   .Message type\r\n";
const std::string kReadRow =
    "5-Mar-2024 .14:07:09 .  000F10000DDA2  .0x00F1 .0 .0 .4 M->S Read\r\n";

class SnifferLogTest : public OpenSnifferTest {
 protected:
  SnifferLogTest() { world.disk().MakeFolder("/logs"); }

  void Tick(const std::string& path = kPath) {
    ExpectQuestion(path);
    sniffer.LogCheck.Value = true;
  }
  void ExpectQuestion(const std::string& path = kPath) {
    world.dialogs().ExpectSaveFile(kAsk).Give(path);
  }
  void ExpectFailure(int code, const std::string& detail) {
    world.dialogs().ExpectMessageBox(
        {.text = "Internal System Error # " + std::to_string(code) +
                 " occured, please contact distributor.\r\nDuring writing log file " + kPath,
         .title = "Internal System Error",
         .icon = Icon::kCritical,
         .detail = detail});
  }
  void HearRead() { HearBytes(Frame(0x04, "000F10000DDA2")); }
  std::string Log() { return world.disk().Get(kPath); }
};

TEST_F(SnifferLogTest, IsAskedForAndBegunWhenItIsTicked) {
  Tick();
  const FileDialogRequest& asked = world.dialogs().last_file_request();
  EXPECT_EQ(asked.title, "Save log file as");
  EXPECT_EQ(asked.filter, "Log File (*.log)|*.log");
  EXPECT_EQ(asked.file_name, kPath);
  EXPECT_EQ(asked.folder, "/logs");
  EXPECT_EQ(asked.extension, "log");
  EXPECT_FALSE(asked.confirm_overwrite);  // the log goes on behind what is there
  EXPECT_TRUE(sniffer.LogCheck.Value);
  EXPECT_EQ(Log(), kHeading);
}

TEST_F(SnifferLogTest, IsProposedInTheDocumentsWhereItsFolderIsNotThere) {
  for (const std::string folder : {"/nowhere", "C:\\", ""}) {
    log_path = folder;
    world.dialogs().ExpectSaveFile(kAsk).Cancel();
    sniffer.LogCheck.Value = true;
    EXPECT_EQ(world.dialogs().last_file_request().file_name, "/home/user/Documents/Sniffer.log")
        << folder;
  }
}

TEST_F(SnifferLogTest, IsNotBegunWithoutAName) {
  world.dialogs().ExpectSaveFile(kAsk).Cancel();
  sniffer.LogCheck.Value = true;
  EXPECT_FALSE(sniffer.LogCheck.Value);
  Tick("");
  EXPECT_FALSE(sniffer.LogCheck.Value);
  HearRead();
  EXPECT_EQ(world.faults().CountOf("Files.OpenRows"), 0);
}

TEST_F(SnifferLogTest, HasARowForEachFrame) {
  Tick();
  HearRead();
  world.Advance(1s);
  HearBytes(Frame(0x14, "000F12D1AFD13"));
  HearBytes(Frame(0x44, "000F1FF01B0DD"));
  HearBytes(Frame(0x34, "000F10102674B"));
  EXPECT_EQ(Log(),
            kHeading + kReadRow +
                "5-Mar-2024 .14:07:10 .  000F12D1AFD13  .0x00F1 .45 .26 .14 S->M Read ACK\r\n"
                "5-Mar-2024 .14:07:10 . D000F1FF01B0DD  .0x00F1 .255 .1 .44 *->* Limits\r\n"
                "5-Mar-2024 .14:07:10 . 4000F10102674B  .0x00F1 .1 .2 .34 \r\n");
}

// Whatever bytes a frame has, its row is one line of the same columns, and so is its line of text.
TEST_F(SnifferLogTest, HasABlankForEachByteThatIsNoCharacter) {
  Tick();
  for (const int type : {0x00, 0x0A, 0x0D, 0x1A, 0x7F, 0xFF}) {
    sniffer.cmd_Clear.Press();
    Hear(static_cast<std::uint8_t>(type), 0xF1, 1, 2);
    const std::string row = Log().substr(Log().rfind("5-Mar"));
    const std::string body = FrameOf(static_cast<std::uint8_t>(type), 0xF1, 1, 2).substr(2, 13);
    const std::string fields =
        "5-Mar-2024 .14:07:09 .  " + body + "  .0x00F1 .1 .2 ." + Hex(type) + " ";
    EXPECT_EQ(row.substr(0, fields.size()), fields);
    const std::string characters = "5 March 2024 14:07:09   " + body + "  ";
    EXPECT_EQ(Shown().substr(0, characters.size()), characters) << type;
    for (const std::string& text : {row, Shown()}) {
      EXPECT_EQ(text.find_first_of(std::string("\0\x1A\x7F\xFF", 4)), std::string::npos) << type;
      EXPECT_EQ(text.find_first_of("\r\n"), text.size() - 2) << type;
    }
  }
}

TEST_F(SnifferLogTest, HasNoRowForABadFrame) {
  Tick();
  HearBytes(Frame(0x04, "000F10000DDA3"));
  EXPECT_EQ(Log(), kHeading);
}

TEST_F(SnifferLogTest, GoesOnWhileTheTextIsPaused) {
  Tick();
  sniffer.Command2.Press();
  HearRead();
  EXPECT_EQ(Log(), kHeading + kReadRow);
}

TEST_F(SnifferLogTest, EndsWhenItIsUntickedAndGoesOnBehindWhatIsThere) {
  Tick();
  HearRead();
  sniffer.LogCheck.Value = false;
  HearRead();
  EXPECT_EQ(Log(), kHeading + kReadRow);
  Tick();
  HearRead();
  EXPECT_EQ(Log(), kHeading + kReadRow + kHeading + kReadRow);
}

TEST_F(SnifferLogTest, EndsWithTheSniffer) {
  Tick();
  sniffer.Unload();
  EXPECT_FALSE(sniffer.LogCheck.Value);
  sniffer.Show();
  HearRead();
  EXPECT_EQ(Log(), kHeading);
}

TEST_F(SnifferLogTest, IsNotBegunWhenTheSnifferIsLeftBehindTheQuestion) {
  world.dialogs().ExpectSaveFile(kAsk).Give(kPath).While([this] { sniffer.Unload(); });
  sniffer.LogCheck.Value = true;
  EXPECT_FALSE(sniffer.LogCheck.Value);
  EXPECT_FALSE(world.disk().Exists(kPath));
}

TEST_F(SnifferLogTest, MissesTheFramesThatComeWhileItIsAskedFor) {
  world.dialogs().ExpectSaveFile(kAsk).Give(kPath).While([this] { HearRead(); });
  sniffer.LogCheck.Value = true;
  EXPECT_EQ(Log(), kHeading);
  EXPECT_EQ(Items(), "1 Flow 00F1 \n");
}

TEST_F(SnifferLogTest, IsUntickedWhenItCannotBeHad) {
  world.disk().Forbid("/logs");
  ExpectQuestion();
  ExpectFailure(70, "");
  sniffer.LogCheck.Value = true;
  EXPECT_FALSE(sniffer.LogCheck.Value);
}

TEST_F(SnifferLogTest, IsUntickedWhenTheDiskHasNoRoomForItsHeading) {
  world.disk().SetFreeSpace(10);
  ExpectQuestion();
  ExpectFailure(61, "");
  sniffer.LogCheck.Value = true;
  EXPECT_FALSE(sniffer.LogCheck.Value);
}

TEST_F(SnifferLogTest, IsClosedAndToldOnceWhenItCanNoLongerBeWritten) {
  Tick();
  world.disk().SetFreeSpace(kReadRow.size() + 5);
  ExpectFailure(61, "");
  for (int i = 0; i < 5; ++i) HearRead();
  EXPECT_FALSE(sniffer.LogCheck.Value);
  world.Advance(1s);
  world.dialogs().Verify();
  EXPECT_EQ(Log(), kHeading + kReadRow);
  EXPECT_EQ(Counts(), "Frames: 5, bad: 0");  // the sniffer goes on
}

TEST_F(SnifferLogTest, IsToldOfBehindThePortEvent) {
  Tick();
  world.faults().Break("Rows.Append", RunTimeError(kDeviceIo, "The stick is gone."));
  ExpectFailure(57, "The stick is gone.");
  HearBytes(Frame(0x04, "000F10000DDA2") + Frame(0x14, "000F12D1AFD13"));
  EXPECT_EQ(Items(), "1 Flow 00F1 45\n");
  EXPECT_TRUE(world.dialogs().shown().size() == 1);  // the question for the name
  world.Advance(1ms);
  EXPECT_EQ(world.dialogs().shown().size(), 2U);
}

TEST_F(SnifferLogTest, WritesMonthsInTheUsersLanguage) {
  MonthNames months = EnglishMonthNames();
  months[2] = "M\xC3\xA4rz";
  world.locale().SetMonths(months);
  Tick();
  HearRead();
  EXPECT_EQ(Log().substr(0, 11), "5-M\xE4r-2024 ");  // Windows-1252
  EXPECT_EQ(Log().find("\xC3"), std::string::npos);
  EXPECT_EQ(Shown().substr(0, 12), "5 M\xC3\xA4rz 2024");
}

}  // namespace
}  // namespace tarnlink
