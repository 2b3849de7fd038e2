#include "simulator/zolt_frames.h"

#include <map>

#include <gtest/gtest.h>

#include "simulator/bytes.h"

namespace boiler {
namespace {

std::string Frame(int type, char slave, std::string_view id, std::string_view data) {
  return BuildZoltFrame(static_cast<char>(type), slave, id, data);
}

// Class, direction, slave and data of a request, or why it is none.
std::string Told(const ZoltParsed& parsed) {
  if (!parsed.request) return parsed.refusal + (parsed.corrupted ? " (corrupted)" : "");
  const ZoltRequest& request = *parsed.request;
  std::string told = std::to_string(request.data_class) + (request.write ? " write " : " read ");
  told += request.slave;
  if (!request.data) return told + " no digits";
  return told + ' ' + HexDigits(request.data->id, 4) + ' ' + HexDigits(request.data->Word(), 4);
}

std::string Parsed(const std::string& frame) { return Told(ParseZoltRequest(frame)); }

TEST(BuildZoltFrame, MakesTheFramesOfAnExchangeByteByByte) {
  EXPECT_EQ(HexText(Frame(0x01, '0', "0001", "0000")),
            "0D 01 30 30 30 30 31 30 30 30 30 44 37 41 46 0A");
  EXPECT_EQ(HexText(Frame(0x17, '0', "FFAB", "125A")),
            "0D 17 30 46 46 41 42 31 32 35 41 35 46 46 41 0A");
  EXPECT_EQ(HexText(Frame(0x97, '0', "FCFD", "005A")),
            "0D 97 30 46 43 46 44 30 30 35 41 44 46 37 39 0A");
}

TEST(ParseZoltRequest, ReadsReadsAndWritesOfAllClasses) {
  for (int data_class = 1; data_class <= 7; ++data_class) {
    const std::string number = std::to_string(data_class);
    EXPECT_EQ(Parsed(Frame(data_class, 'F', "12AB", "C0DE")), number + " read F 12AB C0DE");
    EXPECT_EQ(Parsed(Frame(0x80 + data_class, '0', "FFFF", "0000")), number + " write 0 FFFF 0000");
  }
}

TEST(ParseZoltRequest, TakesNoOtherTypeForARequest) {
  for (int type = 0; type < 256; ++type) {
    const bool request = (type & 0x78) == 0 && (type & 0x07) != 0;
    const std::string told = Parsed(Frame(type, '0', "0001", "0000"));
    EXPECT_EQ(told == "not the type of a request", !request) << type << ": " << told;
  }
}

TEST(ParseZoltRequest, TakesABlankForTheFirstDigitOfADataByte) {
  EXPECT_EQ(Parsed(Frame(0x87, '0', "FCFD", "12 5")), "7 write 0 FCFD 1205");
  EXPECT_EQ(Parsed(Frame(0x87, '0', "FCFD", " 1 5")), "7 write 0 FCFD 0105");
}

TEST(ParseZoltRequest, SeesWhatIsNoDigit) {
  for (const std::string& frame : {
           Frame(1, '0', "000 ", "0000"),
           Frame(1, '0', "????", "0000"),
           Frame(1, '0', "00a1", "0000"),
           Frame(1, '0', "0001", "5 00"),
           Frame(1, '0', "0001", "  00"),
           Frame(1, '0', "0001", "00-1"),
           Frame(1, '0', "0001", "0x00"),
           Frame(1, '0', "0001", "00ff"),
           Frame(1, '0', "0001", "\x01\x02\x03\x04"),
       }) {
    EXPECT_EQ(Parsed(frame), "1 read 0 no digits");
  }
}

TEST(ParseZoltRequest, RefusesAWrongCheckAsCorrupted) {
  const std::string frame = Frame(1, '0', "0001", "0000");
  const std::string why = "the check should be D7AF (corrupted)";
  for (std::size_t at = 11; at < 15; ++at) {
    std::string wrong = frame;
    wrong[at] = 'x';
    EXPECT_EQ(Parsed(wrong), why);
  }
  std::string lower = frame;
  lower[11] = 'd';
  EXPECT_EQ(Parsed(lower), why);
  std::string data = frame;
  data[10] = '1';
  EXPECT_EQ(Parsed(data), "the check should be C78E (corrupted)");
}

TEST(ParseZoltRequest, WantsALineFeedAtTheEnd) {
  std::string frame = Frame(1, '0', "0001", "0000");
  frame.back() = '\r';
  EXPECT_EQ(Parsed(frame), "no line feed at the end");
}

TEST(ZoltFrameAs, KeepsAllButTheKind) {
  const std::string request = Frame(0x85, 'A', "056D", "3C 1");
  EXPECT_EQ(ZoltFrameAs(9, request), Frame(0x95, 'A', "056D", "3C 1"));
  EXPECT_EQ(ZoltFrameAs(2, request), Frame(0x25, 'A', "056D", "3C 1"));
  EXPECT_EQ(ZoltFrameAs(0x14, request), Frame(0x45, 'A', "056D", "3C 1"));
}

TEST(ZoltCheckHolds, LooksAtTheCheckAlone) {
  const std::string frame = Frame(0x11, '0', "0001", "1234");
  EXPECT_TRUE(ZoltCheckHolds(frame));
  EXPECT_TRUE(ZoltCheckHolds('x' + frame.substr(1, 14) + 'x'));
  EXPECT_TRUE(ZoltCheckHolds(frame.substr(0, 15)));
  EXPECT_TRUE(ZoltCheckHolds(frame + "noise"));
  EXPECT_FALSE(ZoltCheckHolds(frame.substr(0, 14)));
  EXPECT_FALSE(ZoltCheckHolds(frame.substr(1)));
  EXPECT_FALSE(ZoltCheckHolds(""));
  EXPECT_FALSE(ZoltCheckHolds("\r\n"));
  for (std::size_t at = 1; at < 15; ++at) {
    std::string wrong = frame;
    wrong[at] = static_cast<char>(wrong[at] ^ 0x01);
    EXPECT_FALSE(ZoltCheckHolds(wrong)) << at;
  }
}

TEST(ZoltCheckHolds, FindsTheCheckOfAShorterAndALongerFrame) {
  EXPECT_TRUE(ZoltCheckHolds(Frame(0x11, '0', "0001", "34")));
  EXPECT_TRUE(ZoltCheckHolds(Frame(0x11, '0', "0001", "123456")));
  EXPECT_TRUE(ZoltCheckHolds(Frame(0x11, '0', "0001", std::string(1000, 'A'))));
}

TEST(ZoltPage, NamesEachPageThatCanBeWritten) {
  std::map<int, int> names;
  for (int id = 0; id <= 0xFFFF; ++id) {
    if (const auto page = ZoltPage(static_cast<std::uint16_t>(id))) ++names[*page];
  }
  std::map<int, int> expected;
  for (const int page :
       {0x80, 0x81, 0x82, 0x83, 0x90, 0x91, 0x92, 0x93, 0xD0, 0xD1, 0xD2, 0xD3, 0xD4, 0xD5, 0xD6,
        0xD7, 0xD8, 0xE0, 0xF1, 0xF2, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xFB, 0xFC, 0xFD, 0xFE}) {
    expected[page] = 1;
  }
  expected[0xF3] = 2;
  EXPECT_EQ(names, expected);
  EXPECT_EQ(ZoltPage(0xFFFE), 0x80);
  EXPECT_EQ(ZoltPage(0xFF3D), 0x81);
  EXPECT_EQ(ZoltPage(0xFCFD), 0xF4);
  EXPECT_EQ(ZoltPage(0xFF01), 0xF3);
  EXPECT_EQ(ZoltPage(0x0F01), 0xF3);
}

}  // namespace
}  // namespace boiler
