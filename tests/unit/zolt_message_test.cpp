#include "protocols/zolt_message.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "protocols/zolt_frame.h"
#include "support/byte_text.h"
#include "support/prefixes.h"
#include "support/zolt_text.h"

namespace tarnlink {

void PrintTo(const ZoltMessage& message, std::ostream* out) {
  *out << "{Ack " << int{message.Ack} << ", Class " << int{message.Class} << ", Id " << message.Id
       << ", " << int{message.DataHi} << ' ' << int{message.DataLo} << '}';
}

void PrintTo(const ZoltAddressMessage& message, std::ostream* out) {
  *out << "{Ack " << int{message.Ack} << ", Class " << int{message.Class} << ", Address "
       << message.Address << ", " << int{message.DataHi} << ' ' << int{message.DataLo} << '}';
}

namespace {

const ZoltMessage kRefused;

const std::map<int, int> kToolAliases = {
    {0xFB, 0xFFA4}, {0xFC, 0xFFC2}, {0xFD, 0xFFCD}, {0xFE, 0xFF98}, {0xE0, 0xFFF1}, {0x80, 0xFFFE},
    {0x81, 0xFF3D}, {0x82, 0xFCA7}, {0x83, 0xFC9B}, {0xF1, 0xFF32}, {0xF2, 0xFF0E}, {0xF3, 0x0F01},
    {0xF4, 0xFCFD}, {0xF5, 0xFCF2}, {0xF6, 0xFCCE}, {0xF7, 0xFCC1}, {0xF8, 0xFCA8}};

// A slave's answer to class 7.
std::string MemoryAnswer(std::uint8_t type, int id, std::uint8_t high, std::uint8_t low) {
  return BuildZoltMessage(type, "0", id, high, low);
}

// --- Building ----------------------------------------------------------------------------------

TEST(BuildZoltMessage, GivesTheDefaultMessage) {
  EXPECT_EQ(Readable(BuildZoltMessage(1, "", 1, 0, 0)), "<0D><01>000010000D7AF<0A>");
}

TEST(BuildZoltMessage, PadsAndOrdersTheFields) {
  EXPECT_EQ(Readable(BuildZoltMessage(0x91, "F", 0x0A0B, 0x0C, 0x0D)), "<0D><91>F0A0B0C0D2641<0A>");
  EXPECT_EQ(Readable(BuildZoltMessage(0x85, "0", 0xC80, 0x5A, 0)), "<0D><85>00C805A003623<0A>");
  EXPECT_EQ(Readable(BuildZoltMessage(1, "0", 0xFFFF, 0xFF, 0xFF)), "<0D><01>0FFFFFFFFC3E9<0A>");
}

TEST(BuildZoltMessage, PadsTheCrc) {
  EXPECT_EQ(Readable(BuildZoltMessage(0x11, "0", 0x1A, 0x0C, 0x8F)), "<0D><11>0001A0C8F0DBF<0A>");
}

TEST(BuildZoltMessage, SendsTheFirstCharacterOfTheSlave) {
  EXPECT_EQ(Readable(BuildZoltMessage(1, "12", 0, 0, 0)), "<0D><01>10000000096DD<0A>");
  EXPECT_EQ(BuildZoltMessage(1, " 1", 0, 0, 0)[2], ' ');
  EXPECT_EQ(BuildZoltMessage(1, "x", 0, 0, 0)[2], 'x');
}

TEST(BuildZoltMessage, SendsTheLastFourDigitsOfTheId) {
  EXPECT_EQ(BuildZoltMessage(1, "0", 0x12345, 0, 0), BuildZoltMessage(1, "0", 0x2345, 0, 0));
  EXPECT_EQ(BuildZoltMessage(1, "0", -1, 0, 0), BuildZoltMessage(1, "0", 0xFFFF, 0, 0));
  EXPECT_EQ(BuildZoltMessage(1, "0", -32768, 0, 0), BuildZoltMessage(1, "0", 0x8000, 0, 0));
}

TEST(BuildZoltMessage, AgreesWithTheFramesOfTheRun) {
  for (const int id : {0, 1, 0xFF, 0x100, 0xABCD}) {
    for (const int type : {1, 7, 129, 135}) {
      const std::string frame =
          BuildZoltMessage(static_cast<std::uint8_t>(type), "5", id, 0xA, 0xB);
      const auto text = [&](zolt_frame::Field field) { return zolt_frame::Text(frame, field); };
      EXPECT_EQ(frame, zolt_frame::Request(static_cast<std::uint8_t>(type), "5",
                                           text(zolt_frame::kId), "0A0B"));
    }
  }
}

// --- Taking apart ------------------------------------------------------------------------------

TEST(ParseZoltMessage, SplitsAFrame) {
  EXPECT_EQ(ParseZoltMessage(Frame(0x01, "000010000D7AF")), (ZoltMessage{0, 1, 1, 0, 0}));
  EXPECT_EQ(ParseZoltMessage(Frame(0x91, "F0A0B0C0D2641")),
            (ZoltMessage{144, 1, 0x0A0B, 0x0C, 0x0D}));
  EXPECT_EQ(ParseZoltMessage(Frame(0x17, "0FFABA55A981F")),
            (ZoltMessage{16, 7, 65451, 0xA5, 0x5A}));
  EXPECT_EQ(ParseZoltMessage(Frame(0x25, "00C800000B867")), (ZoltMessage{32, 5, 3200, 0, 0}));
  EXPECT_EQ(ParseZoltMessage(Frame(0x45, "00C80FFFF409A")), (ZoltMessage{64, 5, 3200, 255, 255}));
  EXPECT_EQ(ParseZoltMessage(Frame(0x61, "0FFFF00003B14")), (ZoltMessage{96, 1, 65535, 0, 0}));
}

TEST(ParseZoltMessage, TakesBackWhatWasBuilt) {
  for (int type = 0; type < 256; ++type) {
    const auto byte = static_cast<std::uint8_t>(type);
    const ZoltMessage expected{static_cast<std::uint8_t>(type & 0xF0),
                               static_cast<std::uint8_t>(type & 0x07), type * 257, byte,
                               static_cast<std::uint8_t>(255 - type)};
    EXPECT_EQ(ParseZoltMessage(
                  BuildZoltMessage(byte, "9", expected.Id, expected.DataHi, expected.DataLo)),
              expected);
  }
}

TEST(ParseZoltMessage, LooksAtTheFirstFifteenBytesOnly) {
  const ZoltMessage expected{144, 1, 0x0A0B, 0x0C, 0x0D};
  const std::string frame = Frame(0x91, "F0A0B0C0D2641");
  EXPECT_EQ(ParseZoltMessage(frame.substr(0, 15)), expected);
  EXPECT_EQ(ParseZoltMessage(frame + frame), expected);
  EXPECT_EQ(ParseZoltMessage("?" + frame.substr(1, 14) + "?"), expected);
}

TEST(ParseZoltMessage, ReadsLowerCaseDigitsUnderAGoodCrc) {
  const std::string frame = zolt_frame::Request(0x11, "0", "abcd", "efaf");
  EXPECT_EQ(ParseZoltMessage(frame), (ZoltMessage{16, 1, 0xABCD, 0xEF, 0xAF}));
}

TEST(ParseZoltMessage, ReadsDigitsThatAreNoneUnderAGoodCrcAsFarAsTheyAreDigits) {
  struct Case {
    std::string id;
    std::string data;
    ZoltMessage expected;
  };
  const std::vector<Case> cases = {
      {"GGGG", "GGGG", {16, 1, 0, 0, 0}},
      {"1G00", "1GG1", {16, 1, 1, 1, 0}},
      {"12 4", "5  5", {16, 1, 0x12, 5, 0}},
      {" 123", " 1 2", {16, 1, 0, 0, 0}},
      {"FFF&", "F&&F", {16, 1, 0xFFF, 15, 0}},
      {"-001", "+1-1", {16, 1, 0, 0, 0}},
      {"8\37700", "0x1.", {16, 1, 8, 0, 1}},
      {"&H12", "\r\n\r\n", {16, 1, 0, 0, 0}},
      {"123\r", std::string(4, '\0'), {16, 1, 0x123, 0, 0}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ParseZoltMessage(zolt_frame::Request(0x11, "0", c.id, c.data)), c.expected) << c.id;
  }
}

TEST(ParseZoltMessage, GivesAllZerosForEveryFrameThatIsCutBeforeTheEndOfItsCrc) {
  for (const int type : {0x11, 0x17, 0x91, 0xFF}) {
    const std::string frame = BuildZoltMessage(static_cast<std::uint8_t>(type), "0", 7, 8, 9);
    const ZoltMessage whole{static_cast<std::uint8_t>(type & 0xF0),
                            static_cast<std::uint8_t>(type & 0x07), 7, 8, 9};
    ForEveryPrefix(frame, [&](std::string_view prefix) {
      EXPECT_EQ(ParseZoltMessage(prefix), prefix.size() < 15 ? kRefused : whole);
    });
  }
}

TEST(ParseZoltMessage, GivesAllZerosForAFrameWithOneChangedDigit) {
  const std::string frame = BuildZoltMessage(0x95, "0", 0x1234, 0x56, 0x78);
  for (std::size_t at = 1; at < 15; ++at) {
    for (const char digit : std::string("0123456789ABCDEFabcdef \r\n")) {
      std::string changed = frame;
      changed[at] = digit;
      if (changed == frame) continue;
      EXPECT_EQ(ParseZoltMessage(changed), kRefused) << Readable(changed);
    }
  }
}

TEST(ParseZoltMessage, GivesAllZerosForWhatIsNoFrame) {
  const std::string good = BuildZoltMessage(0x11, "0", 1, 2, 3);
  const std::vector<std::string> refused = {
      "",
      "\r",
      "\r\n",
      "error",
      std::string(16, '\0'),
      std::string(16, ' '),
      std::string(16, '0'),
      std::string(16, 'F'),
      std::string(16, '\xFF'),
      std::string(10000, 'D'),
      good.substr(1),
      "\n" + good,
      good.substr(8) + good.substr(0, 8),
      "\r" + Body(0x11, "00001020"),
      "\r" + Body(0x11, "000010203"),  // no CRC, and a digit less
      Bytes("01 03 02 12 34 B5 33"),
      Bytes("04 05 30 31 41 30 44 37 03")};
  for (const std::string& frame : refused) {
    EXPECT_EQ(ParseZoltMessage(frame), kRefused) << Readable(frame);
  }
}

// --- Byte addresses ----------------------------------------------------------------------------

TEST(ZoltMessages, ReadAnAddressAsData) {
  ZoltMessages messages;
  EXPECT_EQ(Readable(messages.BuildZoltAddressMessage(7, "0", 0x1234, 0)),
            "<0D><07>0FFAB12344FF8<0A>");
}

TEST(ZoltMessages, ReadIgnoresTheValue) {
  ZoltMessages messages;
  EXPECT_EQ(messages.BuildZoltAddressMessage(7, "0", 0x1234, 0x99),
            messages.BuildZoltAddressMessage(7, "0", 0x1234, 0));
}

TEST(ZoltMessages, WriteThroughTheAliasOfThePage) {
  ZoltMessages messages;
  EXPECT_EQ(Readable(messages.BuildZoltAddressMessage(135, "0", 0xF312, 0x55)),
            "<0D><87>00F011255D2E4<0A>");
  EXPECT_EQ(Readable(messages.BuildZoltAddressMessage(135, "", 0x8034, 0x56)),
            "<0D><87>0FFFE3456D175<0A>");
}

TEST(ZoltMessages, WriteToEveryPageByItsAliasOrByIdZero) {
  ZoltMessages messages;
  int with_alias = 0;
  for (int page = 0; page < 256; ++page) {
    const std::string frame = messages.BuildZoltAddressMessage(135, "3", page * 256 + 0xA1, 0x0B);
    const auto alias = kToolAliases.find(page);
    if (alias == kToolAliases.end()) {
      EXPECT_EQ(frame, BuildZoltMessage(135, "3", 0, 0, 0)) << page;
    } else {
      ++with_alias;
      EXPECT_EQ(frame, BuildZoltMessage(135, "3", alias->second, 0xA1, 0x0B)) << page;
    }
  }
  EXPECT_EQ(with_alias, 17);
}

TEST(ZoltMessages, WriteToAPageWithoutAliasGoesOutWithIdZero) {
  ZoltMessages messages;
  EXPECT_EQ(Readable(messages.BuildZoltAddressMessage(135, "0", 0xD012, 0x55)),
            "<0D><87>000000000EA75<0A>");
}

TEST(ZoltMessages, AnyTypeButAMemoryWriteCarriesTheAddressAsData) {
  ZoltMessages messages;
  for (int type = 0; type < 256; ++type) {
    if (type == 135) continue;
    const auto byte = static_cast<std::uint8_t>(type);
    EXPECT_EQ(messages.BuildZoltAddressMessage(byte, "0", 0xF312, 0x55),
              BuildZoltMessage(byte, "0", 0xFFAB, 0xF3, 0x12))
        << type;
  }
}

TEST(ZoltMessages, AnAddressBeyondSixteenBitsHasNoAliasAndReadsByItsLowBits) {
  ZoltMessages messages;
  for (const int address : {0x1F312, -0x0CEE, -1, 0x10000 + 0x80FF}) {
    EXPECT_EQ(messages.BuildZoltAddressMessage(135, "0", address, 0x55),
              BuildZoltMessage(135, "0", 0, 0, 0))
        << address;
    EXPECT_EQ(messages.BuildZoltAddressMessage(7, "0", address, 0),
              BuildZoltMessage(7, "0", 0xFFAB, static_cast<std::uint8_t>(address >> 8 & 0xFF),
                               static_cast<std::uint8_t>(address & 0xFF)))
        << address;
    EXPECT_EQ(messages.LastAddress(), address);
  }
}

TEST(ZoltMessages, RememberTheAddressOfEveryMessageThatIsBuilt) {
  ZoltMessages messages;
  EXPECT_EQ(messages.LastAddress(), 0);
  messages.BuildZoltAddressMessage(7, "0", 0x1234, 0);
  EXPECT_EQ(messages.LastAddress(), 0x1234);
  messages.BuildZoltAddressMessage(135, "0", 0xF312, 0);
  EXPECT_EQ(messages.LastAddress(), 0xF312);
  messages.BuildZoltAddressMessage(135, "0", 0x0001, 0);
  EXPECT_EQ(messages.LastAddress(), 1);
}

TEST(ZoltMessages, TieAReadAnswerToTheAddressThatWasAskedLast) {
  ZoltMessages messages;
  messages.BuildZoltAddressMessage(7, "0", 0x9999, 0);
  messages.BuildZoltAddressMessage(7, "0", 0x1234, 0);
  const std::string answer = MemoryAnswer(0x17, 0xFFAB, 0xA5, 0x5A);
  const ZoltAddressMessage expected{16, 7, 0x1234, 0xA5, 0x5A};
  EXPECT_EQ(messages.ParseZoltAddressMessage(answer), expected);
  EXPECT_EQ(messages.ParseZoltAddressMessage(answer), expected);
}

TEST(ZoltMessages, TieAReadAnswerToNothingBeforeTheFirstRequest) {
  EXPECT_EQ(ZoltMessages().ParseZoltAddressMessage(MemoryAnswer(0x17, 0xFFAB, 1, 2)),
            (ZoltAddressMessage{16, 7, 0, 1, 2}));
}

TEST(ZoltMessages, TurnEveryAliasBackIntoAnAddress) {
  ZoltMessages messages;
  messages.BuildZoltAddressMessage(7, "0", 0x7777, 0);
  for (const auto& [page, id] : kToolAliases) {
    EXPECT_EQ(messages.ParseZoltAddressMessage(MemoryAnswer(0x97, id, 0x34, 0x56)),
              (ZoltAddressMessage{144, 7, page * 256 + 0x34, 0, 0x56}))
        << page;
  }
}

TEST(ZoltMessages, GiveAddressAndDataZeroForEveryOtherId) {
  ZoltMessages messages;
  messages.BuildZoltAddressMessage(7, "0", 0x7777, 0);
  std::map<int, int> pages;
  for (const auto& [page, id] : kToolAliases) pages[id] = page;
  for (int id = 0; id < 0x10000; ++id) {
    if (id == 0xFFAB || pages.contains(id)) continue;
    ASSERT_EQ(messages.ParseZoltAddressMessage(MemoryAnswer(0x97, id, 0x34, 0x56)),
              (ZoltAddressMessage{144, 7, 0, 0, 0}))
        << id;
  }
}

TEST(ZoltMessages, DoNotKnowThePagesAndTheAliasThatOnlyTheRunWrites) {
  for (const std::string page :
       {"D0", "D1", "D2", "D3", "D4", "D5", "D6", "D7", "D8", "90", "91", "92", "93", "F3"}) {
    const std::string frame = zolt_frame::Request(0x97, "0", zolt_frame::WriteAlias(page), "3456");
    EXPECT_EQ(ZoltMessages().ParseZoltAddressMessage(frame), (ZoltAddressMessage{144, 7, 0, 0, 0}))
        << page;
  }
}

TEST(ZoltMessages, MapByTheIdWhateverTheClassAndKind) {
  EXPECT_EQ(ZoltMessages().ParseZoltAddressMessage(MemoryAnswer(0x61, 0xFFFE, 0x34, 0x56)),
            (ZoltAddressMessage{96, 1, 0x8034, 0, 0x56}));
}

TEST(ZoltMessages, GiveAllZerosForABadCrc) {
  ZoltMessages messages;
  messages.BuildZoltAddressMessage(7, "0", 0x1234, 0);
  for (const int id : {0xFFAB, 0xFFFE}) {
    const std::string answer = MemoryAnswer(0x17, id, 0xA5, 0x5A);
    ForEveryPrefix(answer.substr(0, 14), [&](std::string_view prefix) {
      EXPECT_EQ(messages.ParseZoltAddressMessage(prefix), ZoltAddressMessage());
    });
  }
}

TEST(ZoltMessages, KeepTheirAddressesApart) {
  ZoltMessages one;
  ZoltMessages other;
  one.BuildZoltAddressMessage(7, "0", 0x1234, 0);
  EXPECT_EQ(other.LastAddress(), 0);
}

}  // namespace
}  // namespace tarnlink
