// The EEPROM writer and the EEPROM downloader where an answer may be another request's: slaves that
// are always late, answers too many, other masters.

#include <map>

#include "common/text.h"
#include "files/eeprom_output.h"
#include "protocols/frame_bytes.h"
#include "tools/eeprom_fixture.h"

namespace tarnlink {
namespace {

// --- A slave that is always late -----------------------------------------------------------------

constexpr int kLateTimes[] = {1050, 1200, 1600, 1900};  // ms

std::string Late(int time) { return "late_reply(" + std::to_string(time) + ")"; }

TEST_F(EepromBoilerTest, WritesAndVerifiesWithASlaveThatIsAlwaysLate) {
  const std::string image = BinBytes(ReadEepromSource(Source(2)));
  question = "Write 32 bytes, 0X8000 to 0X801F, into slave 0?";
  Choose(Source(2));
  for (const int late : kLateTimes) {
    for (int i = 0; i < 32; ++i) {
      boiler.controller().WriteByte(static_cast<std::uint16_t>(0x8000 + i), 0xEE);
    }
    boiler.line().AddFault(Late(late));
    PressWrite();
    ASSERT_TRUE(Finish(3600s)) << late;
    EXPECT_EQ(LastResult(), "32 bytes written and verified.") << late;
    EXPECT_EQ(Held(0x8000, 32), image) << late;
    boiler.Calm();
  }
}

// Not even of the last byte, behind which nothing else is asked.
TEST_F(EepromBoilerTest, FindsAWrongByteOutOfASlaveThatIsAlwaysLate) {
  const std::string image = BinBytes(ReadEepromSource(Source(2)));
  Choose(Source(2));
  for (const int late : kLateTimes) {
    for (const int wrong : {0, 16, 30, 31}) {
      for (int i = 0; i < 32; ++i) {
        const auto byte = static_cast<std::uint8_t>(image[static_cast<std::size_t>(i)]);
        boiler.controller().WriteByte(static_cast<std::uint16_t>(0x8000 + i),
                                      i == wrong ? byte ^ 1 : byte);
      }
      boiler.line().AddFault(Late(late));
      ExpectError("Verify Error on " + kDefPath);
      tool.cmd_VerifyEEPROM.Press();
      ASSERT_TRUE(Finish(3600s)) << late;
      EXPECT_NE(LastResult().find("0X80" + Stuff(Hex(wrong), 2) + ": "), std::string::npos)
          << late << LastResult();
      boiler.Calm();
    }
  }
}

TEST_F(EepromDownTest, ReadsTheTrueImageOfASlaveThatIsAlwaysLate) {
  // Bytes without a check, and none of them like its neighbour.
  for (int i = 0; i < 32; ++i) {
    boiler.controller().WriteByte(static_cast<std::uint16_t>(0x8010 + i),
                                  static_cast<std::uint8_t>(i * 7 + 1));
  }
  down.EESize.Text = "64";
  for (const int late : kLateTimes) {
    boiler.line().AddFault(Late(late));
    world.dialogs().ExpectMessageBox("Tarnlink File is generated", "File Generation Done...");
    ASSERT_TRUE(Read(3600s)) << late;
    std::vector<std::uint8_t> held;
    for (const char byte : Held(0x8000, 64)) held.push_back(static_cast<std::uint8_t>(byte));
    EXPECT_EQ(world.disk().Get(kDefPath), EepromDefText(0x8000, held)) << late;
    EXPECT_EQ(down.lblState.Caption.get(),
              "64 bytes read. The slave holds blocks whose check is wrong: 0X8010 0X8020. In the "
              "image it is right.");
    boiler.Calm();
    world.dialogs().TakeShown();
  }
}

// Of a request that went out twice, for whatever reason, each may be answered, and late.
class EepromRepeated : public EepromVerifying {
 protected:
  EepromRepeated() { SayWord("0000"); }
  void ExpectWaitBehindTheAnswer() {
    EXPECT_EQ(tool.lblTrouble.Caption->substr(0, 16), "Sent again once:");
    EXPECT_EQ(world.port().TakeSent().size(), 3U);
    SayWord("0500");
    EXPECT_EQ(tool.LastConfirmed, "0X8001");
    world.Advance(1s);
    EXPECT_TRUE(world.port().TakeSent().empty());
    // One of them: the waiting begins anew.
    SayWord("0500");
    world.Advance(1s);
    EXPECT_TRUE(world.port().TakeSent().empty());
    EXPECT_EQ(tool.LastConfirmed, "0X8001");
    world.Advance(200ms);
    EXPECT_EQ(world.port().TakeSent().size(), 1U);
  }
};

TEST_F(EepromRepeated, IsWaitedForBehindATimeOut) {
  world.Advance(1s);
  ExpectWaitBehindTheAnswer();
}

TEST_F(EepromRepeated, IsWaitedForBehindARefusal) {
  Say(zolt_frame::kUnknownDataId + zolt_frame::kMemoryClass, "FFAB", "0500");
  ExpectWaitBehindTheAnswer();
}

TEST_F(EepromRepeated, IsWaitedForBehindAnAnswerThatDoesNotFit) {
  SayWord("0600");
  world.Advance(200ms);
  ExpectWaitBehindTheAnswer();
}

// --- More answers than requests ------------------------------------------------------------------

std::string Digits(int number) { return HexDigits(number, 4); }

class EepromMoreAnswers : public EepromVerifying {
 protected:
  // Of a slave that holds the image, when the byte of this record is asked for.
  std::string WordOf(std::size_t record) const {
    const auto byte = [this](std::size_t i) { return static_cast<unsigned char>(image[i]); };
    return Digits(byte(record) << 8 | (record == 0 ? 0x77 : byte(record - 1)));
  }
  void AnswerUpTo(std::size_t record) {
    for (std::size_t i = 0; i < record; ++i) SayWord(WordOf(i));
    ASSERT_EQ(tool.Sent, record + 1);
    world.port().TakeSent();
  }
  // The answer of a slave whose byte is another one than the record's.
  std::string WrongWord(std::size_t record) const {
    std::string word = WordOf(record);
    word.replace(0, 2, "EE");
    return word;
  }
  // `first` at once and `second` so much later, 0 in the same read; then the address is asked for
  // once more.
  void ExpectAskedAgain(const std::string& first, const std::string& second, Micros later) {
    if (later == 0us) {
      world.port().Receive(Frame(first) + Frame(second));
    } else {
      world.port().Receive(Frame(first));
      world.port().ReceiveIn(later, Frame(second));
    }
    world.Advance(4s);
    const std::vector<std::string> sent = world.port().TakeSent();
    ASSERT_FALSE(sent.empty()) << later.count();
    for (const std::string& frame : sent) {
      EXPECT_EQ(zolt_frame::Text(frame, zolt_frame::kData), "800E") << later.count();
    }
    EXPECT_EQ(tool.LastConfirmed, "0X800E") << later.count();
    EXPECT_TRUE(tool.Writing);
  }
  void ExpectFoundOut(const std::string& word) {
    ExpectError("Verify Error on " + kDefPath);
    SayWord(word);
    world.Advance(500ms);
    SayWord(word);
    EXPECT_FALSE(tool.Writing);
  }

  const std::string image = BinBytes(ReadEepromSource(Source(1)));
};

TEST_F(EepromMoreAnswers, AreFoundOutAtTheLastAddress) {
  for (const Micros later : {0us, Micros(300ms), Micros(900ms)}) {
    AnswerUpTo(15);
    ExpectAskedAgain(WordOf(15), WrongWord(15), later);
    ExpectFoundOut(WrongWord(15));
    Verify(Source(1));
  }
}

TEST_F(EepromMoreAnswers, AreFoundOutWhereTheNextAddressIsAnotherOne) {
  const std::string gap = "START\r\n" + DefBlock(0x8000, [](int offset) { return offset * 5; }) +
                          "\r\n" + DefBlock(0x8030, [](int offset) { return offset; }) + "END\r\n";
  SayWord("EE77");
  world.Advance(500ms);
  ExpectError("Verify Error on " + kDefPath);
  SayWord("EE77");
  for (const Micros later : {0us, Micros(300ms), Micros(900ms)}) {
    Verify(gap);
    AnswerUpTo(15);
    ExpectAskedAgain(WordOf(15), WrongWord(15), later);
    ExpectFoundOut(WrongWord(15));
  }
}

TEST_F(EepromMoreAnswers, HoldNobodyUpBetweenNeighbours) {
  SayWord(WordOf(0));
  EXPECT_EQ(world.port().TakeSent().size(), 2U);
}

TEST_F(EepromMoreAnswers, AreTakenWhenTheyComeEachTime) {
  AnswerUpTo(15);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(tool.LastConfirmed, "0X800E");
    if (i > 0) {
      EXPECT_EQ(tool.lblTrouble.Caption->substr(0, 11), "Sent again ");
      EXPECT_TRUE(tool.lblTrouble.Caption->ends_with(": more than one answer came."));
    }
    world.port().Receive(Frame(WordOf(15)));
    world.port().ReceiveIn(120ms, Frame(WordOf(15)));
    world.Advance(2s);
  }
  EXPECT_FALSE(tool.Writing);
  EXPECT_EQ(LastResult(), "16 bytes verified.");
}

TEST_F(EepromMoreAnswers, OfARunThatWasStoppedAreNotOfTheNext) {
  world.port().TakeSent();
  tool.cmd_Stop.Press();
  tool.cmd_VerifyEEPROM.Press();
  world.port().ReceiveIn(700ms, Frame("0077"));
  world.Advance(1500ms);
  EXPECT_TRUE(world.port().TakeSent().empty());
  EXPECT_EQ(tool.LastConfirmed, "");
  world.Advance(500ms);
  EXPECT_EQ(world.port().TakeSent().size(), 1U);
  SayWord("0077");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
  // One that has ended by itself leaves nothing behind.
  for (std::size_t i = 1; i < 16; ++i) SayWord(WordOf(i));
  ASSERT_TRUE(Finish());
  world.port().TakeSent();
  tool.cmd_VerifyEEPROM.Press();
  world.Advance(20ms);
  EXPECT_EQ(world.port().TakeSent().size(), 1U);
}

// --- Another master ------------------------------------------------------------------------------

class EepromAnotherMaster : public EepromVerifying {
 protected:
  EepromAnotherMaster() {
    SayWord("0000");
    EXPECT_EQ(tool.LastConfirmed, "0X8000");
    world.port().TakeSent();
  }
};

TEST_F(EepromAnotherMaster, MakesAReadAnswerAnybodys) {
  Say(zolt_frame::kReadMemory, "FFAB", "9000");
  SayWord("0500");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
  world.Advance(500ms);
  EXPECT_EQ(tool.lblTrouble.Caption.get(), "Sent again once: another master asks the slave too.");
  EXPECT_EQ(world.port().TakeSent().size(), 1U);
  SayWord("0500");
  EXPECT_EQ(tool.LastConfirmed, "0X8001");
}

TEST_F(EepromAnotherMaster, IsHeardInOneReadWithAnAnswer) {
  world.port().Receive(zolt_frame::Request(zolt_frame::kReadMemory, "0", "FFAB", "9000") +
                       Frame("0500"));
  world.Advance(20ms);
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
}

TEST_F(EepromAnotherMaster, DoesNoHarmWhereItAsksForSomethingElse) {
  Say(zolt_frame::kReadMemory, "FFAB", "8000");  // what an adapter sends back of ours
  Say(zolt_frame::kReadMemory, "FFAB", "9000", "3");
  Say(0x01, "0001", "0000");
  Say(zolt_frame::kWriteMemory, "FFFE", "0000");
  SayWord("0500");
  EXPECT_EQ(tool.LastConfirmed, "0X8001");
}

// An acknowledgement says which byte it is of.
TEST_F(EepromWriterTest, WritesBesideAnotherMaster) {
  Choose(Source(1));
  PressWrite();
  world.Advance(20ms);
  Say(zolt_frame::kReadMemory, "FFAB", "9000");
  Say(kRead, "FFAB", "0500");
  Say(zolt_frame::kWriteAcknowledge + 7, "FFFE", "0000");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
}

// --- The downloader ------------------------------------------------------------------------------

// With a slave whose answers the test decides on.
class EepromPlayedDown : public EepromDownTest {
 protected:
  EepromPlayedDown() {
    for (std::size_t i = 0; i < image.size(); ++i) {
      cells[static_cast<int>(i)] = static_cast<unsigned char>(image[i]);
    }
    world.on_output = [this](FakeSerialPort& port, std::string_view bytes) {
      const int address = zolt_frame::Number(bytes, zolt_frame::kData) - 0x8000;
      asked.push_back(address);
      Answer(port, address);
    };
  }
  virtual void Answer(FakeSerialPort& port, int address) { Tell(port, 20ms, WordAt(address)); }

  std::string WordAt(int address) { return Digits(cells[address + 1] << 8 | cells[address]); }
  static std::string Frame(const std::string& digits) {
    return zolt_frame::Request(kRead, "0", "FFAB", digits);
  }
  static void Tell(FakeSerialPort& port, Micros later, const std::string& digits) {
    port.ReceiveIn(later, Frame(digits));
  }
  std::string RecordAt(int address) { return DefRecord(0x8000 + address, cells[address]); }

  const std::string image = BinBytes(ReadEepromSource(Source(2)));
  std::map<int, int> cells;
  std::vector<int> asked;
};

class EepromSurplusDown : public EepromPlayedDown {
 protected:
  // The answer to the last request comes behind that of another one, the first time.
  void Answer(FakeSerialPort& port, int address) override {
    if (address != last || is_done) return EepromPlayedDown::Answer(port, address);
    is_done = true;
    if (later == 0us) {
      port.ReceiveIn(20ms, Frame(first) + Frame(WordAt(address)));
    } else {
      Tell(port, 20ms, first);
      Tell(port, 20ms + later, WordAt(address));
    }
  }
  void Begin(int at, const std::string& digits, Micros behind) {
    last = at;
    first = digits;
    later = behind;
    is_done = false;
    asked.clear();
    down.EESize.Text = std::to_string(at + 2);
  }

  int last = 0;
  std::string first;
  Micros later{};
  bool is_done = false;
};

// Where no check finds it out.
TEST_F(EepromSurplusDown, ReadsTheEndOfAnImageAgain) {
  for (const Micros behind : {0us, Micros(300ms), Micros(900ms)}) {
    Begin(2, WordAt(0), behind);
    ExpectError("Line 5: the file ends behind record 4 of a block of 16.");
    ASSERT_TRUE(Read());
    EXPECT_EQ(asked, (std::vector<int>{0, 2, 0, 0, 2, 2})) << behind.count();
    EXPECT_EQ(world.disk().Get(kDefPath),
              "START\r\n" + RecordAt(0) + RecordAt(1) + RecordAt(2) + RecordAt(3));
    world.dialogs().TakeShown();
  }
}

TEST_F(EepromSurplusDown, ReadsTheLastBlockAgain) {
  for (const Micros behind : {0us, Micros(300ms), Micros(900ms)}) {
    Begin(30, WordAt(30), behind);
    down.cmd_read_EEPROM.Press();
    ASSERT_TRUE(world.RunUntil([this] { return asked.size() > 16; }, 60s)) << behind.count();
    EXPECT_EQ(down.progress.lblTrouble.Caption.get(),
              "The block at 0X8010 is read again: more than one answer came.");
    ExpectDone();
    ASSERT_TRUE(world.RunUntil([this] { return !down.progress.form.Visible; }, 60s));
    EXPECT_EQ(asked.size(), 32U);
    EXPECT_EQ(asked[16], 16);
    EXPECT_EQ(Image(), image);
    EXPECT_EQ(down.lblState.Caption.get(), "32 bytes read. ");
    world.dialogs().TakeShown();
  }
}

// Once: behind a block that is sound again nothing is doubted any more.
class EepromOneTwinDown : public EepromPlayedDown {
 protected:
  void Answer(FakeSerialPort& port, int address) override {
    EepromPlayedDown::Answer(port, address);
    if (asked.size() == 1) Tell(port, 90ms, WordAt(address));
    times.push_back(world.now());
  }

  std::vector<Micros> times;
};

TEST_F(EepromOneTwinDown, ReadsTheNextDoubtfulBlockAsFastAsEver) {
  cells[21] = 0xEE;
  down.EESize.Text = "32";
  world.dialogs().ExpectMessageBox("Tarnlink File is generated", "File Generation Done...");
  down.cmd_read_EEPROM.Press();
  EXPECT_EQ(down.progress.lblItem.Caption.get(), "0X8000, 32 bytes left");
  ASSERT_TRUE(world.RunUntil([this] { return !down.progress.form.Visible; }, 60s));
  ASSERT_EQ(asked.size(), 32U);
  EXPECT_LT(times[20] - times[17], 1500ms);
}

class EepromTwinsDown : public EepromPlayedDown {
 protected:
  void Answer(FakeSerialPort& port, int address) override {
    Tell(port, 20ms, WordAt(address));
    Tell(port, 20ms + twin, WordAt(address));
  }

  Micros twin = 120ms;
};

TEST_F(EepromTwinsDown, ReadsTheTrueImageAndComesToAnEnd) {
  cells[5] = 0xEE;
  cells[21] = 0xEE;
  down.EESize.Text = "32";
  std::vector<std::uint8_t> held;
  for (int i = 0; i < 32; ++i) held.push_back(static_cast<std::uint8_t>(cells[i]));
  // Some of them fall into step with the requests.
  for (twin = 10ms; twin <= 1s; twin += 10ms) {
    world.dialogs().ExpectMessageBox("Tarnlink File is generated", "File Generation Done...");
    ASSERT_TRUE(Read(600s)) << twin.count();
    EXPECT_EQ(world.disk().Get(kDefPath), EepromDefText(0x8000, held)) << twin.count();
    world.Advance(1s);
    world.dialogs().TakeShown();
  }
}

class EepromChangingDown : public EepromPlayedDown {
 protected:
  void Answer(FakeSerialPort& port, int address) override {
    if (address == 4) ++cells[5];
    EepromPlayedDown::Answer(port, address);
  }
};

TEST_F(EepromChangingDown, TakesTheFifthReading) {
  cells[5] = 0;
  down.EESize.Text = "32";
  down.cmd_read_EEPROM.Press();
  ASSERT_TRUE(world.RunUntil([this] { return asked.size() == 12; }, 60s));
  EXPECT_EQ(down.progress.lblTrouble.Caption.get(),
            "The block at 0X8000 is read again: its check is wrong.");
  world.dialogs().ExpectMessageBox(
      {.text = "Tarnlink File is generated",
       .title = "File Generation Done...",
       .icon = Icon::kInformation,
       .detail = "The slave holds blocks whose check is wrong: 0X8000. In the image it is right. "
                 "Blocks that were read otherwise each time: 0X8000."});
  // Once, and four times with two to five answers for an address.
  constexpr std::size_t kAsked = 8 + 4 * (7 * 2 + 5);
  ASSERT_TRUE(world.RunUntil([this] { return asked.size() > kAsked + 1; }, 60s));
  EXPECT_EQ(down.progress.lblTrouble.Caption.get(), "");
  ASSERT_TRUE(world.RunUntil([this] { return !down.progress.form.Visible; }, 60s));
  EXPECT_EQ(asked.size(), kAsked + 8);
  EXPECT_EQ(cells[5], 21);
  EXPECT_NE(world.disk().Get(kDefPath).find("15,21,0X8005, "), std::string::npos);
}

}  // namespace
}  // namespace tarnlink
