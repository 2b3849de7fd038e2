#include "simulator/crc.h"

#include <gtest/gtest.h>

namespace boiler {
namespace {

constexpr std::string_view kDigits = "123456789";

TEST(CrcXmodem, HasItsCheckValue) {
  EXPECT_EQ(CrcXmodem(kDigits), 0x31C3);
  EXPECT_EQ(CrcXmodem(""), 0);
}

TEST(CrcXmodem, IsThatOfTheTableForOneByte) {
  EXPECT_EQ(CrcXmodem("\x01"), 0x1021);
  EXPECT_EQ(CrcXmodem("\x02"), 0x2042);
  EXPECT_EQ(CrcXmodem("\xFF"), 0x1EF0);
}

TEST(CrcXmodem, CoversTheBytesOfAFrame) {
  EXPECT_EQ(CrcXmodem("\x01"
                      "000010000"),
            0xD7AF);
}

TEST(CrcModbus, HasItsCheckValue) {
  EXPECT_EQ(CrcModbus(kDigits), 0x4B37);
  EXPECT_EQ(CrcModbus(""), 0xFFFF);
  EXPECT_EQ(CrcModbus(std::string_view("\x00", 1)), 0x40BF);
  EXPECT_EQ(CrcModbus("\xFF"), 0x00FF);
}

}  // namespace
}  // namespace boiler
