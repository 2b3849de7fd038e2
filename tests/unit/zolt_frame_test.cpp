#include "protocols/zolt_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "common/run_time_error.h"
#include "support/byte_text.h"
#include "support/prefixes.h"
#include "support/zolt_text.h"

namespace tarnlink::zolt_frame {
namespace {

const std::vector<std::string> kSamples = {
    Frame(0x01, "000010000D7AF"), Frame(0x81, "000010000339B"), Frame(0x07, "0FFAB12344FF8"),
    Frame(0x17, "0FFABA55A981F"), Frame(0x97, "0FFFE345645E3"), Frame(0x85, "00C805A003623"),
    Frame(0x25, "00C800000B867"), Frame(0x45, "00C80FFFF409A"), Frame(0x61, "0FFFF00003B14"),
    Frame(0x91, "F0A0B0C0D2641"), Frame(0x11, "0001A0C8F0DBF")};

const std::map<std::string, std::string> kWritablePages = {
    {"FB", "FFA4"}, {"FC", "FFC2"}, {"FD", "FFCD"}, {"FE", "FF98"}, {"E0", "FFF1"}, {"F1", "FF32"},
    {"F2", "FF0E"}, {"F3", "FF01"}, {"F4", "FCFD"}, {"F5", "FCF2"}, {"F6", "FCCE"}, {"F7", "FCC1"},
    {"F8", "FCA8"}, {"80", "FFFE"}, {"81", "FF3D"}, {"82", "FCA7"}, {"83", "FC9B"}, {"D0", "FF97"},
    {"D1", "FF68"}, {"D2", "FF67"}, {"D3", "FF5B"}, {"D4", "FF54"}, {"D5", "FC94"}, {"D6", "FC6B"},
    {"D7", "FC64"}, {"D8", "FC58"}, {"90", "FC57"}, {"91", "FC3E"}, {"92", "FC31"}, {"93", "FC0D"}};

// --- Building ----------------------------------------------------------------------------------

TEST(ZoltFrame, IsFinishedByItsCrcAndItsEnd) {
  EXPECT_EQ(Readable(FinishFrame(Body(0x01, "000010000"))), "<0D><01>000010000D7AF<0A>");
}

TEST(ZoltFrame, PadsTheCrcToFourDigits) {
  EXPECT_EQ(Readable(FinishFrame(Body(0x11, "0001A0C8F"))), "<0D><11>0001A0C8F0DBF<0A>");
  EXPECT_EQ(Readable(FinishFrame("")), "<0D>0000<0A>");
}

TEST(ZoltFrame, OfARequestHasItsFieldsInOrder) {
  EXPECT_EQ(Readable(Request(0x01, "0", "0001", "0000")), "<0D><01>000010000D7AF<0A>");
  EXPECT_EQ(Readable(Request(0x05, "0", "0001", "1234")), "<0D><05>0000112347799<0A>");
  EXPECT_EQ(Readable(Request(0x85, "0", "0C80", "5A00")), "<0D><85>00C805A003623<0A>");
  EXPECT_EQ(Readable(Request(0x85, "0", "0C80", "005A")), "<0D><85>00C80005AF41D<0A>");
}

TEST(ZoltFrame, ReadsMemoryWithTheAddressAsData) {
  EXPECT_EQ(Readable(Request(kReadMemory, "0", kReadMemoryId, "1234")),
            "<0D><07>0FFAB12344FF8<0A>");
}

TEST(ZoltFrame, WritesMemoryThroughTheAliasOfItsPage) {
  EXPECT_EQ(Readable(Request(kWriteMemory, "0", WriteAlias("F3"), "1255")),
            "<0D><87>0FF011255E223<0A>");
}

TEST(ZoltFrame, KeepsABlankInTheDataOfAWrite) {
  EXPECT_EQ(Readable(Request(kWriteMemory, "0", "FF32", "FF 5")), "<0D><87>0FF32FF 52907<0A>");
}

TEST(ZoltFrame, SendsEveryTextAsItStands) {
  // The CRC counts ten bytes whatever the lengths.
  EXPECT_EQ(Readable(Request(0x01, "12", "0001", "0000")), "<0D><01>12000100006FCF<0A>");
  EXPECT_EQ(Request(0x01, "", "", ""), FinishFrame("\x01"));
  EXPECT_EQ(Request(0x01, "", "00g1", "ab").substr(0, 8), "\r" + Body(0x01, "00g1ab"));
}

TEST(ZoltFrame, ARequestOfAnyTypeByteIsSixteenBytesLongAndGood) {
  for (int type = 0; type < 256; ++type) {
    const std::string frame = Request(static_cast<std::uint8_t>(type), "0", "0001", "0000");
    EXPECT_EQ(frame.size(), 16U) << type;
    EXPECT_EQ(frame.size(), kLength) << type;
    EXPECT_EQ(frame.front(), '\r');
    EXPECT_EQ(frame[kEndOffset], '\n');
    EXPECT_EQ(TypeOf(frame), type);
    EXPECT_TRUE(IsGood(frame)) << type;
  }
}

// --- The CRC of what came in -------------------------------------------------------------------

TEST(ZoltFrame, WithTheRightCrcIsGood) {
  for (const std::string& sample : kSamples) EXPECT_TRUE(IsGood(sample)) << Readable(sample);
}

TEST(ZoltFrame, IsGoodFromItsLastCrcDigitOn) {
  for (const std::string& sample : kSamples) {
    ForEveryPrefix(sample,
                   [](std::string_view prefix) { EXPECT_EQ(IsGood(prefix), prefix.size() >= 15); });
  }
}

TEST(ZoltFrame, IsRefusedForEveryWrongBitThatTheCrcCovers) {
  for (const std::string& sample : kSamples) {
    for (std::size_t bit = 8; bit < 15 * 8; ++bit) {
      std::string damaged = sample;
      damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
      EXPECT_FALSE(IsGood(damaged)) << Readable(damaged);
    }
  }
}

TEST(ZoltFrame, IsGoodWhateverItsStartAndEndAndWhatFollows) {
  EXPECT_TRUE(IsGood("x" + Body(0x01, "000010000D7AFx")));
  EXPECT_TRUE(IsGood(Frame(0x01, "000010000D7AF") + "\r\x01"));
}

TEST(ZoltFrame, IsRefusedWhenItIsShortOrItsDigitsAreNotThoseOfTheCrc) {
  const std::vector<std::string> refused = {
      "",
      "\r",
      "\n",
      "0000",
      std::string(15, '\0'),
      std::string(16, '\0'),
      std::string(16, '0'),
      std::string(16, '\xFF'),
      std::string(4096, '\r'),
      Frame(0x01, "000010000d7af"),          // lower-case digits
      Frame(0x01, "000010000D7Af"),          //
      Frame(0x01, "000010000AFD7"),          // bytes swapped
      Frame(0x01, "000010000 D7A"),          //
      Frame(0x01, "0000100000000"),          //
      Frame(0x01, "000010000FFFF"),          //
      Frame(0x01, "000010000D7B0"),          // one off
      Frame(0x01, "000010000D7AE"),          //
      Frame(0x11, "0001A0C8FDBF"),           // not padded
      Frame(0x11, "0001A0C8F DBF"),          // padded with a blank
      Frame(0x11, "0001A0C8FDBF0"),          //
      Frame(0x01, "00001000D7AF"),           // a byte lost
      Frame(0x01, "0000100000D7AF"),         // a byte too many
      Body(0x01, "000010000D7AF\n"),         // the start lost
      "\r" + Frame(0x01, "000010000D7AF"),   // the start twice
      "\r" + Body(0x01, "000010000\nD7AF"),  // the end before the CRC
      Frame(0x02, "000010000D7AF"),          // another class
      Frame(0x11, "000010000D7AF"),          // the request's CRC on an answer
      Frame(0x01, "100010000D7AF"),          // another slave
      Frame(0x01, "000011000D7AF"),          // data moved
      Frame(0x01, "00001O000D7AF"),          // a letter for a zero
      Bytes("04 01 30 31 41 30 44 33 03"),   // another protocol
      Bytes("01 03 02 12 34 B5 33"),         //
      "\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n"     //
  };
  for (const std::string& frame : refused) EXPECT_FALSE(IsGood(frame)) << Readable(frame);
}

// --- Fields ------------------------------------------------------------------------------------

TEST(ZoltFrame, HasEachFieldAtItsPlace) {
  const std::string frame = Frame(0x17, "3ABCD1234EFGH");
  EXPECT_EQ(TypeOf(frame), 0x17);
  EXPECT_EQ(Text(frame, kBody), Body(0x17, "3ABCD1234"));
  EXPECT_EQ(Text(frame, kSlave), "3");
  EXPECT_EQ(Text(frame, kId), "ABCD");
  EXPECT_EQ(Text(frame, kData), "1234");
  EXPECT_EQ(Text(frame, kDataHigh), "12");
  EXPECT_EQ(Text(frame, kDataLow), "34");
  EXPECT_EQ(Text(frame, kCrc), "EFGH");
}

TEST(ZoltFrame, ReadsAFieldAsAnUnsignedNumber) {
  const std::string frame = Frame(0x17, "0FFABA55A981F");
  EXPECT_EQ(Number(frame, kId), 65451);
  EXPECT_EQ(Number(frame, kData), 0xA55A);
  EXPECT_EQ(Number(frame, kDataHigh), 0xA5);
  EXPECT_EQ(Number(frame, kDataLow), 0x5A);
  EXPECT_EQ(Number(frame, kCrc), 0x981F);
}

TEST(ZoltFrame, ReadsDigitsThatAreNoneAsFarAsTheyAreDigits) {
  const std::string frame = Frame(0x17, "000G1 F1x");
  EXPECT_EQ(Number(frame, kId), 0);
  EXPECT_EQ(Number(frame, kDataHigh), 0);
  EXPECT_EQ(Number(frame, kDataLow), 1);
}

TEST(ZoltFrame, ThatEndsEarlyHasShortFields) {
  const std::string sample = Frame(0x17, "3ABCD1234EFGH");
  ForEveryPrefix(sample, [&](std::string_view prefix) {
    for (const Field field : {kBody, kSlave, kId, kData, kDataHigh, kDataLow, kCrc}) {
      const std::size_t from = std::min(field.offset, prefix.size());
      const std::size_t to = std::min(field.offset + field.length, prefix.size());
      EXPECT_EQ(Text(prefix, field), sample.substr(from, to - from));
    }
    if (prefix.size() > 1) {
      EXPECT_EQ(TypeOf(prefix), 0x17);
    } else {
      EXPECT_THROW(TypeOf(prefix), RunTimeError);
    }
  });
}

// --- The type byte -----------------------------------------------------------------------------

TEST(ZoltType, HasAClassAndAKind) {
  EXPECT_EQ(ClassOf(0x17), 7);
  EXPECT_EQ(KindOf(0x17), kReadAcknowledge);
  EXPECT_EQ(KindOf(0x21), kCorruptedMessage);
  EXPECT_EQ(KindOf(0x45), kOutsideRange);
  EXPECT_EQ(KindOf(0x61), kUnknownDataId);
  EXPECT_EQ(KindOf(0x91), kWriteAcknowledge);
  EXPECT_EQ(KindOf(0x07), kRead);
  EXPECT_EQ(KindOf(0x87), kWrite);
  EXPECT_EQ(ClassOf(0xFF), 7);
  EXPECT_EQ(KindOf(0xFF), 0xF0);
  EXPECT_EQ(ClassOf(0x08), 0);
  EXPECT_EQ(KindOf(0x08), 0);
  EXPECT_EQ(kReadMemory, 7);
  EXPECT_EQ(kWriteMemory, 135);
}

TEST(ZoltFrame, IsReadWithItsCheckDigitsInEitherCase) {
  const std::string good = Frame(0x01, "000010000D7AF");
  for (const std::string digits : {"D7AF", "d7af", "D7aF"}) {
    const std::string frame = Frame(0x01, "000010000" + digits);
    EXPECT_EQ(WithUpperCheck(frame), good) << digits;
  }
  EXPECT_FALSE(IsGood(WithUpperCheck(Frame(0x01, "000010000d7ag"))));
  const std::string small = Frame(0x11, "aabcdefaf0000");
  EXPECT_EQ(WithUpperCheck(small), small) << "No other digits.";
  EXPECT_EQ(WithUpperCheck("short"), "short");
}

TEST(ZoltFrame, HasAnAddressOfOneDigit) {
  for (const char one : std::string("0123456789ABCDEF")) EXPECT_TRUE(IsSlave({&one, 1})) << one;
  for (const std::string_view other : {"", " ", "a", "G", "01", "?"}) {
    EXPECT_FALSE(IsSlave(other)) << other;
  }
}

// --- Writable pages ----------------------------------------------------------------------------

TEST(ZoltWriteAlias, OfEveryWritablePage) {
  for (const auto& [page, alias] : kWritablePages) EXPECT_EQ(WriteAlias(page), alias) << page;
}

TEST(ZoltWriteAlias, OfEveryOtherPageIsEmpty) {
  int writable = 0;
  for (int page = 0; page < 256; ++page) {
    const std::string digits{"0123456789ABCDEF"[page / 16], "0123456789ABCDEF"[page % 16]};
    if (kWritablePages.contains(digits)) {
      ++writable;
    } else {
      EXPECT_EQ(WriteAlias(digits), "") << digits;
    }
  }
  EXPECT_EQ(writable, 30);
}

TEST(ZoltWriteAlias, OfWhatIsNoPageIsEmpty) {
  for (const std::string page : {"", "F", "f3", "Fb", "F3 ", " F3", "F31", "0F3", "8", "80\n"}) {
    EXPECT_EQ(WriteAlias(page), "") << page;
  }
}

}  // namespace
}  // namespace tarnlink::zolt_frame
