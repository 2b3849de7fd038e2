#include "simulator/slave_any.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "line_fixture.h"
#include "simulator/bytes.h"
#include "simulator/modbus_frames.h"
#include "simulator/problem.h"
#include "simulator/zolt_frames.h"

namespace boiler {
namespace {

constexpr std::string_view kTarnlinkRead = "04 05 30 31 41 30 44 37 03";
constexpr std::string_view kZoltRead = "0D 01 30 30 30 33 44 30 30 30 30 32 37 39 45 0A";
constexpr std::string_view kModbusRead = "01 03 02 00 00 01 85 B2";

SimulatedBoiler::Options Any() {
  SimulatedBoiler::Options options;
  options.protocol = "any";
  return options;
}

class AnyOnLine : public ::testing::Test {
 protected:
  // What a boiler of that protocol alone answers.
  static std::string AnswerOf(const char* protocol, std::string_view request) {
    SimulatedBoiler::Options options;
    options.protocol = protocol;
    BoilerOnLine alone(options);
    return alone.Ask(request);
  }

  BoilerOnLine line_{Any()};
};

TEST_F(AnyOnLine, AnswersEachProtocolAsItsOwnSlaveDoes) {
  EXPECT_EQ(line_.Ask(kTarnlinkRead), AnswerOf("tarnlink", kTarnlinkRead));
  EXPECT_EQ(line_.Ask(kZoltRead), AnswerOf("zolt", kZoltRead));
  EXPECT_EQ(line_.Ask(kModbusRead), AnswerOf("modbus", kModbusRead));
  EXPECT_EQ(line_.Ask(kTarnlinkRead), AnswerOf("tarnlink", kTarnlinkRead));
}

TEST_F(AnyOnLine, ABeginningThatStandsStillIsGivenUpForAnotherProtocol) {
  EXPECT_EQ(line_.Ask("0D 01 30"), "");
  EXPECT_EQ(line_.Ask(kModbusRead), AnswerOf("modbus", kModbusRead));
  EXPECT_EQ(line_.Ask("01 03 02"), "");
  EXPECT_EQ(line_.Ask(kTarnlinkRead), AnswerOf("tarnlink", kTarnlinkRead));
}

TEST_F(AnyOnLine, AWriteUnderOneProtocolIsReadUnderAnother) {
  const std::string write = HexText(WithModbusCheck(*ParseHexBytes("01 06 02 00 12 34")));
  EXPECT_EQ(line_.Ask(write), write);
  EXPECT_EQ(line_.Ask("04 01 46 34 30 30 44 42 03").substr(18, 11), "31 32 33 34");
}

TEST_F(AnyOnLine, CanHaveAFaultThatFitsAllThree) {
  line_.Fault("no_reply#1");
  EXPECT_EQ(line_.Ask(kZoltRead), "");
  EXPECT_THROW(line_.Fault("wrong_address"), Problem);  // TarnLink has no slave address
}

TEST_F(AnyOnLine, TheChoiceOfSlavesIsThatOfZolt) {
  SimulatedBoiler::Options options = Any();
  options.slave = {.addresses = "3,A", .answers_corrupted = true};
  BoilerOnLine line(options);
  EXPECT_EQ(line.Ask(kZoltRead), "") << "There is no slave 0.";
  const auto read = [](int type, std::string_view data) {
    return HexText(BuildZoltFrame(static_cast<char>(type), 'A', "14D9", data));
  };
  EXPECT_EQ(line.Ask(read(0x01, "0000")), read(0x11, "0802"));
  EXPECT_EQ(line.Ask(kModbusRead), AnswerOf("modbus", kModbusRead));
  std::string corrupted = read(0x01, "0000");
  corrupted[corrupted.size() - 4] = '0';
  EXPECT_EQ(line.Ask(corrupted), read(0x21, "0000"));
  options.slave.addresses = "17";
  EXPECT_THROW(BoilerOnLine{options}, Problem);
}

}  // namespace
}  // namespace boiler
