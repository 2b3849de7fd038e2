#include "files/nec_listing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "common/numbers.h"
#include "common/text.h"
#include "support/pieces.h"
#include "support/prefixes.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

// A line of a symbol: the label in its field, and what stands behind the blank in column 35.
std::string Symbol(const std::string& label, const std::string& rest) {
  return std::string(11, ' ') + label + std::string(23 - label.size(), ' ') + " " + rest + "\n";
}

// Four hexadecimal digits.
std::string Stuffed(int number) { return Stuff(Hex(number), 4); }

// "flow=FE20 fan=FE21.3 (1 skipped)": bytes, then bits, each in its order.
std::string Text(const NecListing& listing) {
  std::string text;
  for (const NecByte& one : listing.bytes) text += one.Label + "=" + Hex(one.address) + " ";
  for (const NecBit& one : listing.bits) {
    text += one.Label + "=" + Hex(one.address) + "." + std::to_string(one.BitAddress) + " ";
  }
  return text + "(" + std::to_string(listing.skipped_lines) + " skipped)";
}

// What is read, which must be the same whatever pieces the listing comes in.
std::string Read(std::string_view text) {
  const std::string read = Text(ReadInPieces(NecListingReader(), text, text.size()));
  for (const std::size_t size : PieceSizes(text)) {
    EXPECT_EQ(Text(ReadInPieces(NecListingReader(), text, size)), read) << "pieces of " << size;
  }
  return read;
}

constexpr const char* kNothing = "(0 skipped)";

TEST(NecListing, ReadsBytesAndBitsOfTheirSections) {
  EXPECT_EQ(Read("BITS\n" + Symbol("fan", "FE20.3") + Symbol("pump", "FE20.4") + "\nSHRTDAT\n" +
                 Symbol("flow", "FE21") + "DATA\n" + Symbol("back", "F000")),
            "flow=FE21 back=F000 fan=FE20.3 pump=FE20.4 (0 skipped)");
}

TEST(NecListing, EndsLinesAtCrLfAndAtLf) {
  for (const std::string end : {"\r\n", "\n"}) {
    for (const std::string& last : {end, std::string()}) {
      EXPECT_EQ(
          Read("DATA" + end + std::string(11, ' ') + "flow" + std::string(20, ' ') + "FE21" + last),
          "flow=FE21 (0 skipped)");
    }
  }
}

TEST(NecListing, PassesOverSymbolsBeforeAnySection) {
  EXPECT_EQ(Read(Symbol("flow", "FE21") + "x\n" + Symbol("back", "FE22")), kNothing);
}

TEST(NecListing, PassesOverSymbolsOfEveryOtherSection) {
  for (const std::string section :
       {"STKSPAC", "RESTART", "INTVEC", "IFLIST", "SWSTART", "CODE", "SAFCODE", "UPDATA2",
        "BITVARS", "RCODE", "?FILL1", "?FILL2", "?FILL3", "?FILL4", "CHECKSUM", "SEGMENT"}) {
    EXPECT_EQ(Read("DATA\n" + section + "\n" + Symbol("flow", "FE21")), kNothing) << section;
    EXPECT_EQ(Read("BITS\n" + section + "\n" + Symbol("flow", "FE21.1")), kNothing) << section;
  }
}

TEST(NecListing, OnlyALineThatIsWhollyTheNameBeginsASection) {
  for (const std::string line :
       {"CODE ", " CODE", "code", "Code", "CODES", "COD", "?FILL5", "?FILL", "CODE\t", "CODE\r\r",
        "", " ", "SEGMENT CODE", "CHECKSUM ", "CHECKSUMS", "BITS ", " BITS", "bits", "DATA2"}) {
    EXPECT_EQ(Read("DATA\n" + line + "\n" + Symbol("flow", "FE21")), "flow=FE21 (0 skipped)")
        << line;
  }
  for (const std::string line :
       {"DATA ", " DATA", "data", "SHRTDAT ", "SHRTDATA", "BITS ", "BIT"}) {
    EXPECT_EQ(Read(line + "\n" + Symbol("flow", "FE21.1")), kNothing) << line;
  }
}

TEST(NecListing, ASectionLastsUntilTheNextOne) {
  EXPECT_EQ(
      Read("DATA\n" + Symbol("a", "0001") + "CODE\n" + Symbol("b", "0002") + "SHRTDAT\n" +
           Symbol("c", "0003") + "BITS\n" + Symbol("d", "0004.1") + "DATA\n" + Symbol("e", "0005")),
      "a=1 c=3 e=5 d=4.1 (0 skipped)");
}

TEST(NecListing, TheLabelBeginsInColumnTwelve) {
  const std::string rest = std::string(20, ' ') + "FE21";
  EXPECT_EQ(Read("DATA\n           flow" + rest), "flow=FE21 (0 skipped)");
  for (const std::string& line :
       {"          flow" + rest, "          flow " + rest, "            flow" + rest,
        "            flow" + rest.substr(1), "flow" + rest, "\t          flow" + rest,
        "x          flow" + rest, "          xflow" + rest, std::string(40, ' '), std::string()}) {
    EXPECT_EQ(Read("DATA\n" + line), kNothing) << line;
  }
}

TEST(NecListing, ABlankStandsInColumn35) {
  const std::string front(11, ' ');
  const std::string label23(23, 'x');
  EXPECT_EQ(Read("DATA\n" + front + label23 + " FE21"), label23 + "=FE21 (0 skipped)");
  for (const std::string& line : {front + label23 + "xFE21", front + label23 + "x FE21",
                                  front + "flow" + std::string(19, ' ') + "FE21",
                                  front + "flow" + std::string(19, ' ') + "\tFE21", front + label23,
                                  front + "flow", front + "f"}) {
    EXPECT_EQ(Read("DATA\n" + line), kNothing) << line;
  }
}

TEST(NecListing, TheLabelEndsAtItsFirstBlank) {
  EXPECT_EQ(Read("DATA\n" + Symbol("a b", "0001") + Symbol("a\tb", "0002")),
            "a=1 a\tb=2 (0 skipped)");
}

TEST(NecListing, AnAddressIsFourDigitsWithoutASign) {
  EXPECT_EQ(Read("DATA\n" + Symbol("a", "0000") + Symbol("b", "7FFF") + Symbol("c", "8000") +
                 Symbol("d", "FFFF") + Symbol("e", "fe2a") + Symbol("f", "12345") +
                 Symbol("g", "0012H bytes")),
            "a=0 b=7FFF c=8000 d=FFFF e=FE2A f=1234 g=12 (0 skipped)");
  EXPECT_EQ(ReadInPieces(NecListingReader(), "DATA\n" + Symbol("d", "FFFF"), 99).bytes[0].address,
            65535);
}

TEST(NecListing, CountsSymbolsWithoutAnAddress) {
  for (const std::string rest :
       {"", "F", "FE2", "FE2G", "FE2 ", " FE21", "-FE2", "+FE2", "0x12", "&HFE", "FE.2",
        "\xC3\x84"
        "FE2"}) {
    EXPECT_EQ(Read("DATA\n" + Symbol("a", rest) + Symbol("b", "0001")), "b=1 (1 skipped)") << rest;
  }
}

TEST(NecListing, ABitsNumberIsTheSixthCharacter) {
  EXPECT_EQ(Read("BITS\n" + Symbol("a", "FE20.0") + Symbol("b", "FE20:7") + Symbol("c", "FE2099") +
                 Symbol("d", "FE20.12")),
            "a=FE20.0 b=FE20.7 c=FE20.9 d=FE20.1 (0 skipped)");
  for (const std::string rest : {"FE20", "FE20.", "FE20.x", "FE20. 1", "FE20.-1", "FE2.1", ".1"}) {
    EXPECT_EQ(Read("BITS\n" + Symbol("a", rest) + Symbol("b", "0001.2")), "b=1.2 (1 skipped)")
        << rest;
  }
}

TEST(NecListing, AByteNeedsNoBit) {
  EXPECT_EQ(Read("DATA\n" + Symbol("a", "FE20.3") + Symbol("b", "FE20.x")),
            "a=FE20 b=FE20 (0 skipped)");
}

TEST(NecListing, KeepsWhatItHasWithoutBitsOrWithoutBytes) {
  EXPECT_EQ(Read("DATA\n" + Symbol("a", "0001")), "a=1 (0 skipped)");
  EXPECT_EQ(Read("BITS\n" + Symbol("a", "0001.2")), "a=1.2 (0 skipped)");
  EXPECT_EQ(Read(""), kNothing);
}

// Each damage under each kind of section; a sound symbol stands behind.
TEST(NecListing, ADamagedSymbolIsNone) {
  const std::string sound = Symbol("z", "0010.3");
  for (const std::string section : {"BITS", "DATA", "SHRTDAT"}) {
    const std::vector<std::string> symbols = {
        std::string("a"),
        std::string(10, ' ') + "a" + std::string(23, ' ') + "0001.1",
        std::string(12, ' ') + "a" + std::string(22, ' ') + "0001.1",
        "x" + Symbol("a", "0001.1").substr(1),
        "\t" + Symbol("a", "0001.1").substr(1),
        Symbol("a", "000G.1"),
        Symbol("a", "-001.1"),
        Symbol("a", " 001.1"),
        Symbol("a", "001"),
        Symbol("a", ""),
        std::string(11, ' ') + std::string(24, 'a') + "0001.1"};
    for (const std::string& damaged : symbols) {
      const std::string line = damaged.substr(0, damaged.find_first_of("\r\n"));
      const std::string alone = Read(section + "\n" + sound);
      const std::string read = Read(section + "\n" + line + "\n" + sound);
      EXPECT_EQ(read.substr(0, read.find(" (")), alone.substr(0, alone.find(" ("))) << line;
    }
  }
}

TEST(NecListing, GrowsWithItsSymbols) {
  std::string text = "DATA\n";
  for (int i = 0; i < 3000; ++i) text += Symbol("v" + std::to_string(i), Stuffed(i));
  text += "BITS\n";
  for (int i = 0; i < 3000; ++i) text += Symbol("b" + std::to_string(i), Stuffed(i) + ".5");
  const NecListing listing = ReadInPieces(NecListingReader(), text, 1000);
  ASSERT_EQ(listing.bytes.size(), 3000U);
  ASSERT_EQ(listing.bits.size(), 3000U);
  for (int i = 0; i < 3000; ++i) {
    EXPECT_EQ(listing.bytes[static_cast<std::size_t>(i)], (NecByte{"v" + std::to_string(i), i}));
    EXPECT_EQ(listing.bits[static_cast<std::size_t>(i)], (NecBit{"b" + std::to_string(i), i, 5}));
  }
}

TEST(NecListing, LeavesOutTheLineInWhichAReadingBrokeOff) {
  const auto read = [](const std::string& last, bool is_whole) {
    NecListingReader reader;
    reader.Take("DATA\n" + Symbol("flow", "FE21") + last);
    return Text(reader.Finish(is_whole));
  };
  std::string broken_off = Symbol("back", "F000");
  broken_off.pop_back();
  EXPECT_EQ(read(broken_off, true), "flow=FE21 back=F000 (0 skipped)");
  EXPECT_EQ(read(broken_off, false), "flow=FE21 (0 skipped)");
  EXPECT_EQ(read("", false), "flow=FE21 (0 skipped)");
}

TEST(NecListing, ReadsLabelsInUtf8AndInWindows1252) {
  EXPECT_EQ(Read("DATA\n" + Symbol("K\xFChl", "0001") + Symbol("K\xC3\xBChl", "0002")),
            "K\xC3\xBChl=1 K\xC3\xBChl=2 (0 skipped)");
}

// A mark at the beginning of a text is none of its characters.
TEST(NecListing, ALabelThatIsOnlyAByteOrderMarkIsNone) {
  const std::string mark = "\xEF\xBB\xBF";
  EXPECT_EQ(Read("DATA\n" + Symbol(mark, "FE20") + Symbol("fan", "FE21") + "BITS\n" +
                 Symbol(mark, "FE22.1")),
            "fan=FE21 (2 skipped)");
}

TEST(NecListing, OutlastsALineThatNeverEnds) {
  EXPECT_EQ(Text(ReadInPieces(NecListingReader(),
                              "DATA\n" + std::string(200'000, 'x') + "\n" + Symbol("a", "0001") +
                                  std::string(200'000, ' '),
                              5000)),
            "a=1 (0 skipped)");
}

TEST(NecListing, TakesBytesThatAreNoText) {
  EXPECT_EQ(Read(std::string("DA\0TA\n", 6) + Symbol("a", "0001")), kNothing);
  EXPECT_EQ(Read("DATA\n" + Symbol(std::string("a\0b", 3), "0001")),
            std::string("a\0b=1 (0 skipped)", 17));
}

TEST(NecListing, ReadsEveryPrefixOfTheSample) {
  const std::string sample = SampleBytes("nec.lst");
  const NecListing whole = ReadInPieces(NecListingReader(), sample, sample.size());
  EXPECT_EQ(whole.skipped_lines, 0);
  ForEveryPrefix(sample, [&](std::string_view prefix) {
    const NecListing read = ReadInPieces(NecListingReader(), prefix, 1000);
    ASSERT_LE(read.bytes.size(), whole.bytes.size());
    ASSERT_LE(read.bits.size(), whole.bits.size());
    // Nothing but the line that is cut can be missed.
    EXPECT_LE(read.skipped_lines, 1);
    EXPECT_TRUE(std::equal(read.bytes.begin(), read.bytes.end(), whole.bytes.begin()));
    EXPECT_TRUE(std::equal(read.bits.begin(), read.bits.end(), whole.bits.begin()));
  });
}

class NecNames : public ::testing::Test {
 protected:
  std::string Bit(std::string_view label) {
    std::int32_t bit = 99;
    const std::string address = GetNECLstBitAddress(bits, label, bit);
    return address + "." + std::to_string(bit);
  }

  std::vector<NecByte> bytes = {{"flow", 0xFE20}, {"zero", 0}, {"flow", 0x10}, {"low", 0x0A}};
  std::vector<NecBit> bits = {{"fan", 0xFE21, 3}, {"pump", 0x7, 0}, {"fan", 0x10, 5}};
};

TEST_F(NecNames, AnAddressIsHexadecimalWithoutZerosInFront) {
  EXPECT_EQ(GetNECLstByteAddress(bytes, "flow"), "FE20");
  EXPECT_EQ(GetNECLstByteAddress(bytes, "zero"), "0");
  EXPECT_EQ(GetNECLstByteAddress(bytes, "low"), "A");
  EXPECT_EQ(Bit("fan"), "FE21.3");
  EXPECT_EQ(Bit("pump"), "7.0");
}

TEST_F(NecNames, ANameMustBeTheSameToTheLetter) {
  for (const std::string label : {"", "Flow", "FLOW", "flo", "flow ", " flow", "flow+0", "fan"}) {
    EXPECT_EQ(GetNECLstByteAddress(bytes, label), "") << label;
  }
  for (const std::string label : {"", "Fan", "fa", "fan ", "fan.3", "flow"}) {
    EXPECT_EQ(Bit(label), ".0") << label;
  }
}

TEST_F(NecNames, AnEmptyListHasNone) {
  bytes.clear();
  bits.clear();
  EXPECT_EQ(GetNECLstByteAddress(bytes, "flow"), "");
  EXPECT_EQ(Bit("fan"), ".0");
}

}  // namespace
}  // namespace tarnlink
