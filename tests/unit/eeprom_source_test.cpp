#include "files/eeprom_source.h"

#include <gtest/gtest.h>

#include "common/run_time_error.h"
#include "files/eeprom_output.h"
#include "support/eeprom_text.h"

namespace tarnlink {
namespace {

std::string Counting(int first) {
  return DefBlock(first, [](int offset) { return offset; });
}

// "13: the reason", or "sound".
std::string Failure(const std::string& text) {
  try {
    ReadEepromSource(text);
  } catch (const RunTimeError& error) {
    return std::to_string(error.code()) + ": " + error.what();
  }
  return "sound";
}

// A source whose first record is this line.
std::string WithFirst(const std::string& line) {
  std::string block = Counting(0x8000);
  block.replace(0, block.find("\r\n"), line);
  return "START\r\n" + block + "END\r\n";
}

TEST(EepromSource, KeepsPreambleAndRecords) {
  const EepromSource source =
      ReadEepromSource("one\r\n\r\nSTART here\r\n" + Counting(0x8000) + "END\r\nbehind\r\n");
  EXPECT_EQ(source.preamble, (std::vector<std::string>{"one", "", "START here"}));
  ASSERT_EQ(source.blocks.size(), 1U);
  EXPECT_EQ(source.blocks[0][13], (EepromRecord{"0D", 13, "0X800D", "cell 13"}));
}

TEST(EepromSource, ComputesTheCheckWhateverItsPlaceHoldersSay) {
  std::string text = WithFirst("00,0,0X8000,a");
  text.replace(text.find("0E,14"), 5, "??,xx");
  const EepromBlock block = ReadEepromSource(text).blocks.at(0);
  // CRC-16/XMODEM of the bytes 0 to 13.
  EXPECT_EQ(block[14], (EepromRecord{"A1", 0xA1, "0X800E", "cell 14"}));
  EXPECT_EQ(block[15], (EepromRecord{"D1", 0xD1, "0X800F", "cell 15"}));
}

TEST(EepromSource, ChecksFourteenBytesAndTwoZeroBytes) {
  std::array<std::uint8_t, kEepromBlock> block{};
  block[14] = block[15] = 0xFF;
  EXPECT_EQ(EepromCheck(block), 0);
  for (std::size_t i = 0; i < 14; ++i) block[i] = static_cast<std::uint8_t>('1' + i % 9);
  block[15] = 0x12;
  const std::uint16_t check = EepromCheck(block);
  // CRC-16/XMODEM of the 14 bytes; the table's way comes to it by the two zero bytes.
  EXPECT_EQ(check, 0xDAAB);
  block[15] = 0x13;
  EXPECT_EQ(EepromCheck(block), check);
  block[13] ^= 1;
  EXPECT_NE(EepromCheck(block), check);
}

TEST(EepromSource, RefusesValuesThatDiffer) {
  EXPECT_EQ(Failure(WithFirst("0A,10,0X8000,first")), "sound");
  EXPECT_EQ(Failure(WithFirst("A,10,0X8000,first")), "sound");
  EXPECT_EQ(Failure(WithFirst("0a,10,0X8000,first")), "sound");
  const std::string kError = "13: Value Error in EEPROM source file on line : 0X8000 first";
  for (const char* values : {"0A,11", "0G,0", "00A,10", ",0", "-1,255", "0x0A,10"}) {
    EXPECT_EQ(Failure(WithFirst(std::string(values) + ",0X8000,first")), kError) << values;
  }
}

TEST(EepromSource, RefusesLinesThatAreNoRecord) {
  EXPECT_EQ(Failure(WithFirst("0A,10,0X8000")), "13: Line 2: the comment is missing.");
  EXPECT_EQ(Failure(WithFirst("0A,10,0X8000,")), "sound");
  EXPECT_EQ(Failure(WithFirst("0A,10,0X8000,a,b")), "13: Line 2: more than four fields.");
  EXPECT_EQ(Failure(WithFirst("0A,10,0X8000,\"a,b\"")), "sound");
  EXPECT_EQ(Failure(WithFirst("0A,256,0X8000,a")).substr(0, 31), "13: Line 2: the decimal value: ");
  EXPECT_EQ(Failure(WithFirst("0A,ten,0X8000,a")).substr(0, 31), "13: Line 2: the decimal value: ");
}

TEST(EepromSource, RefusesAShortBlock) {
  const std::string block = Counting(0x8000);
  EXPECT_EQ(Failure("START\n" + block.substr(0, block.find("0F,15"))),
            "62: Line 16: the file ends behind record 15 of a block of 16.");
  EXPECT_EQ(Failure("START\n" + block.substr(0, block.find("0F,15")) + "END\n"),
            "13: Line 17: the decimal value is missing.");
  EXPECT_EQ(Failure("START\n" + block.substr(0, block.find("08,8")) + "\n" + block),
            "13: Line 10: the decimal value is missing.");
}

TEST(EepromSource, EndsWithOrWithoutAnEndLine) {
  const auto count = [](const std::string& text) { return ReadEepromSource(text).blocks.size(); };
  const std::string block = Counting(0x8000);
  EXPECT_EQ(count("START\n" + block), 1U);
  EXPECT_EQ(count("START\n" + block.substr(0, block.size() - 2)), 1U);
  EXPECT_EQ(count("START\n" + block + " \r\n"), 1U);
  EXPECT_EQ(count("START\n \n\n" + block + "\n\n \n" + block + "END\n" + block), 2U);
  EXPECT_EQ(count("START\n" + block + "; the second\n" + block), 2U);
  EXPECT_EQ(count("START\nEND\n" + block), 0U);
  EXPECT_EQ(count(block), 0U);
  EXPECT_EQ(count(""), 0U);
}

TEST(EepromSource, RefusesARecordBetweenTwoBlocks) {
  const std::string block = Counting(0x8000);
  const std::string kError =
      "13: Line 18: a record where the line between two blocks of 16 should stand.";
  EXPECT_EQ(Failure("START\n" + block + "10,16,0X8010,one too many\n\n" + block + "END\n"), kError);
  EXPECT_EQ(Failure("START\n" + block + "10,16,0X8010,\n"), kError);
  // The line is missing.
  EXPECT_EQ(Failure("START\n" + block + block), kError);
  // No records, whatever else they are.
  for (const char* line : {"11,16,0X8010,differs", "10,16,8010,no address", "10,16,0X8010",
                           "10,16,0X8010,a,b", "; 10,16,0X8010,", "\"10,16,0X8010,a\""}) {
    EXPECT_EQ(Failure("START\n" + block + line + "\n" + block + "END\n"), "sound") << line;
  }
}

TEST(EepromSource, TellsWhereARecordLies) {
  EXPECT_EQ(AddressOf({"00", 0, "0X8012", ""}), 0x8012);
  EXPECT_EQ(AddressOf({"00", 0, "0xfFfE", ""}), 0xFFFE);
  for (const char* address : {"", "8012", "0X801", "0X80123", "0X80G2", "&H8012"}) {
    EXPECT_THROW(AddressOf({"00", 0, address, ""}), RunTimeError) << address;
  }
}

TEST(EepromSource, ReadsBackWhatItWrites) {
  const std::vector<std::uint8_t> bytes(32, 0x5A);
  const std::string low = EepromDefText(0x8000, bytes);
  EXPECT_EQ(low.substr(0, 32), "START\r\n5A,90,0X8000, \r\n5A,90,0X8");
  EXPECT_NE(low.find("0X800F, \r\n \r\n5A,90,0X8010, \r\n"), std::string::npos);
  const std::string high = EepromDefText(0x9000, bytes);
  EXPECT_EQ(high.substr(0, 26), "START\r\n \r\n5A,90,0X9000, \r\n");
  for (const std::string& text : {low, high}) {
    const EepromSource source = ReadEepromSource(text);
    ASSERT_EQ(source.blocks.size(), 2U);
    EXPECT_EQ(source.blocks[1][3].DecValue, 0x5A);
    EXPECT_EQ(source.blocks[1][3].Comment, "");
  }
}

TEST(EepromOutput, WritesTheFieldsOneAfterAnother) {
  const EepromSource source =
      ReadEepromSource("head\nSTART\n" + Counting(0x8000) + "\n" + Counting(0x8010) + "END\n");
  const std::string text = TlkText(source);
  EXPECT_EQ(text.substr(0, 38), " head\r\n START\r\n00 0 0X8000cell 0\r\n01 1");
  EXPECT_NE(text.find("\r\nA1 161 0X800Ecell 14\r\nD1 209 0X800Fcell 15\r\n\r\n00 0 0X8010"),
            std::string::npos);
  EXPECT_TRUE(text.ends_with("D1 209 0X801Fcell 15\r\n"));
}

TEST(EepromOutput, HoldsSixteenBytesForEachBlock) {
  const std::string block = Counting(0x8000);
  const std::string bytes =
      BinBytes(ReadEepromSource("START\n" + block + "\n" + block + "\n" + block));
  ASSERT_EQ(bytes.size(), 48U);
  EXPECT_EQ(bytes.substr(16, 16), std::string("\0\1\2\3\4\5\6\7\x8\x9\xA\xB\xC\xD\xA1\xD1", 16));
}

TEST(EepromOutput, NamesItsFilesByTheSource) {
  EXPECT_EQ(OutputPath("/a/b.def", "tlk"), "/a/b.tlk");
  EXPECT_EQ(OutputPath("/a/b.DEF", "bin"), "/a/b.bin");
  EXPECT_EQ(OutputPath("f", "bin"), "bin");
}

TEST(EepromOutput, SumsCharactersWithoutLineEnds) {
  EXPECT_EQ(FileChecksum(""), 0);
  EXPECT_EQ(FileChecksum("AB\r\nC\n"), 65 + 66 + 67);
  EXPECT_EQ(FileChecksum("\xFF\xFF"), 510);
}

TEST(EepromSource, ShowsOnlyTheBeginningOfWhatIsWrong) {
  const std::string comment(100'000, 'c');
  for (const std::string& record : {"01,2,0X8000," + comment, "01,2,0X80" + comment + ",c"}) {
    try {
      ReadEepromSource("START\n" + record + "\n");
      ADD_FAILURE() << "It was taken.";
    } catch (const RunTimeError& error) {
      EXPECT_TRUE(std::string(error.what()).starts_with(std::string(kValueError) + "0X80"));
      EXPECT_LT(std::string(error.what()).size(), 600U);
    }
  }
  EepromRecord record;
  record.Address = record.Comment = comment;
  try {
    AddressOf(record);
    ADD_FAILURE() << "It was taken.";
  } catch (const RunTimeError& error) {
    EXPECT_LT(std::string(error.what()).size(), 600U);
  }
}

}  // namespace
}  // namespace tarnlink
