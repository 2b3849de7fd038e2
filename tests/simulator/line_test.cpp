// The line without faults: pace, order, silence, what the log says.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "line_fixture.h"
#include "problem_text.h"

namespace boiler {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

SimulatedBoiler::Options Paced(int baud, int bits_per_byte, std::int64_t delay_us) {
  SimulatedBoiler::Options options;
  options.line.pace = {baud, bits_per_byte};
  options.line.answer_delay_us = delay_us;
  return options;
}

TEST(Line, AnswersAReadAtOnce) {
  BoilerOnLine line;
  line.SetByte(kF400, 0x5A);
  line.Send(kReadByteF400);
  EXPECT_EQ(line.line().NextDue(), 0);
  EXPECT_EQ(line.Rest(), "04 05 46 34 30 30 35 41 35 35 03");
  EXPECT_EQ(line.line().NextDue(), std::nullopt);
  EXPECT_EQ(line.Arrivals().size(), 1u);
}

TEST(Line, ReadsBackWhatWasWritten) {
  BoilerOnLine line;
  EXPECT_EQ(line.Ask("04 06 46 34 30 30 31 32 35 41 42 39 03"), "04 06 46 34 30 30 35 41 35 36 03");
  EXPECT_EQ(line.Ask("04 01 46 34 30 30 44 42 03"), "04 01 46 34 30 30 31 32 35 41 42 34 03");
  EXPECT_EQ(line.Ask(kReadByteF400), "04 05 46 34 30 30 35 41 35 35 03");
}

TEST(Line, ShowsTheBoilerAsItIsAtTheTimeOfTheRequest) {
  BoilerOnLine line;
  line.Pass(90'000'000);
  Controller same(1);
  same.AdvanceTo(90'000'000);
  const std::string digits = HexDigits(same.memory().Byte(0x01A0), 2);
  EXPECT_EQ(line.Ask("04 05 30 31 41 30 44 37 03").substr(18, 5), HexText(digits));
  EXPECT_NE(digits, HexDigits(Controller(1).memory().Byte(0x01A0), 2));
}

TEST(Line, LetsEachByteTakeItsTimeInBothDirections) {
  BoilerOnLine line(Paced(9600, 10, 5'000));
  line.Send(kReadByteF400);
  EXPECT_EQ(line.Rest(), "04 05 46 34 30 30 30 30 33 46 03");
  ASSERT_EQ(line.Arrivals().size(), 11u);
  // 9 bytes of 10 bits at 9600 baud take 9375 us.
  EXPECT_EQ(line.Arrivals().front(), (Arrival{9'375 + 5'000 + 1'041, "04"}));
  EXPECT_EQ(line.Arrivals().back(), (Arrival{9'375 + 5'000 + 11'458, "03"}));
}

TEST(Line, TakesElevenBitsPerByteWhereThereAreSo) {
  BoilerOnLine line(Paced(1200, 11, 0));
  line.Send(kReadByteF400);
  line.Rest();
  EXPECT_EQ(line.Arrivals().back().time_us, 82'500 + 100'833);
}

TEST(Line, WaitsWithTheAnswerAtOnceToo) {
  BoilerOnLine line(Paced(0, 10, 7'000));
  line.Pass(1'000);
  line.Send(kReadByteF400);
  line.Rest();
  EXPECT_EQ(line.Arrivals().size(), 1u);
  EXPECT_EQ(line.Arrivals().front().time_us, 8'000);
}

TEST(Line, AnswersRequestsThatCameTogetherOneAfterTheOther) {
  BoilerOnLine line(Paced(9600, 10, 0));
  line.Send(std::string(kReadByteF400) + " " + std::string(kReadByteF400));
  EXPECT_EQ(line.Rest(), "04 05 46 34 30 30 30 30 33 46 03 04 05 46 34 30 30 30 30 33 46 03");
  // The second request ends at 18750, the first answer at 9375 + 11458.
  EXPECT_EQ(line.Arrivals().back().time_us, 9'375 + 11'458 + 11'458);
}

TEST(Line, TakesARequestInPiecesCloseTogether) {
  BoilerOnLine line;
  line.Send("04 05 46");
  line.Pass(49'999);
  line.Send("34 30 30 44 46");
  line.Pass(10);
  EXPECT_THAT(line.Log(), IsEmpty());
}

TEST(Line, DropsAnIncompleteRequestAfterASilence) {
  BoilerOnLine line;
  line.Send("04 05 46 34 30 30 44");
  EXPECT_EQ(line.line().NextDue(), 50'000);
  EXPECT_EQ(line.Rest(), "");
  EXPECT_THAT(line.Log(), ElementsAre("ignored incomplete"));
  EXPECT_EQ(line.Ask("04 05 46 34 30 30 44 46 03"), "04 05 46 34 30 30 30 30 33 46 03");
}

TEST(Line, NoticesASilenceThatNobodyWaitedFor) {
  SimulatedBoiler boiler(SimulatedBoiler::Options{});
  boiler.line().Hear(0, "\x04\x05");
  boiler.line().Hear(60'000, *ParseHexBytes("04 05 46 34 30 30 44 46 03"));
  EXPECT_EQ(boiler.line().TakeDue(60'000), *ParseHexBytes("04 05 46 34 30 30 30 30 33 46 03"));
}

TEST(Line, IgnoresAWrongSumAndSaysSo) {
  BoilerOnLine line;
  EXPECT_EQ(line.Ask("04 05 46 34 30 30 44 45 03"), "");
  EXPECT_THAT(line.Log(), ElementsAre("ignored the sum is DE and should be DF"));
  EXPECT_EQ(line.line().Exchanges(), 0);
}

TEST(Line, LogsWhatItHeardAndSaid) {
  BoilerOnLine line(Paced(9600, 10, 0));
  line.Ask("04 05 46 34 30 30 44 46 03");
  EXPECT_THAT(line.Log(), ElementsAre("heard read byte F400", "said answer"));
  const LogEntry heard{9'375,
                       LogKind::kHeard,
                       1,
                       Check::kNone,
                       *ParseHexBytes("04 05 46 34 30 30 44 46 03"),
                       "read byte F400"};
  const LogEntry said{9'375 + 11'458,
                      LogKind::kSaid,
                      1,
                      Check::kHolds,
                      *ParseHexBytes("04 05 46 34 30 30 30 30 33 46 03"),
                      "answer"};
  EXPECT_THAT(line.Entries(LogKind::kHeard), ElementsAre(heard));
  EXPECT_THAT(line.Entries(LogKind::kSaid), ElementsAre(said));
}

TEST(Line, LosesWhatIsUnderWayWhenItIsCut) {
  BoilerOnLine line(Paced(9600, 10, 0));
  line.Send(kReadByteF400);
  line.Pass(9'375 + 3'200);
  EXPECT_THAT(line.ArrivedHex(), ElementsAre("04", "05", "46"));
  line.line().Cut(line.NowUs());
  EXPECT_EQ(line.Rest(), "");
  EXPECT_EQ(line.line().NextDue(), std::nullopt);
  EXPECT_EQ(line.Log().back(), "said answer, cut off");
  EXPECT_EQ(line.Entries(LogKind::kSaid).back().bytes, "\x04\x05\x46");
  EXPECT_EQ(line.Ask(kReadByteF400), "04 05 46 34 30 30 30 30 33 46 03");
}

TEST(Line, ForgetsHalfARequestWhenItIsCut) {
  BoilerOnLine line;
  line.Send("04 05 46 34 30");
  line.line().Cut(line.NowUs());
  EXPECT_EQ(line.line().NextDue(), std::nullopt);
  EXPECT_EQ(line.Ask("30 44 46 03"), "");
}

TEST(Line, IsDeafWhileTheControllerStarts) {
  BoilerOnLine line;
  line.SetByte(kF400, 0x5A);
  line.line().Reboot(line.NowUs(), 2'000'000);
  line.Pass(1'999'999);
  EXPECT_EQ(line.Ask(kReadByteF400), "");
  line.Pass(1);
  EXPECT_EQ(line.Ask(kReadByteF400), "04 05 46 34 30 30 30 30 33 46 03");
  EXPECT_EQ(line.Log()[0], "note reboot, deaf for 2000 ms");
  EXPECT_EQ(line.Log()[1], "ignored the controller is starting");
}

TEST(SimulatedBoiler, RefusesAProtocolThatItDoesNotSpeak) {
  for (const std::string name : {"morse", "Zolt", "modbus ", "Tarnlink", ""}) {
    SimulatedBoiler::Options options;
    options.protocol = name;
    EXPECT_EQ(ProblemText([&] { SimulatedBoiler boiler(options); }),
              "The boiler does not speak the protocol \"" + name +
                  "\"; it speaks tarnlink, zolt, modbus, or any.");
  }
}

TEST(SimulatedBoiler, RefusesAddressesThatItsProtocolDoesNotHave) {
  struct Row {
    std::string protocol;
    std::string addresses;
    std::string why;
  };
  const auto zolt = [](const std::string& text) {
    return "The slave addresses \"" + text + "\" must be digits 0 to F with commas between them.";
  };
  const auto modbus = [](const std::string& text) {
    return "The slave addresses \"" + text +
           "\" must be whole numbers from 1 to 247 with commas between them.";
  };
  for (const Row& row : {
           Row{"tarnlink", "0", "A TarnLink slave has no address."},
           Row{"zolt", "G", zolt("G")},
           Row{"zolt", "a", zolt("a")},
           Row{"zolt", "12", zolt("12")},
           Row{"zolt", "0,", zolt("0,")},
           Row{"zolt", "0, 1", zolt("0, 1")},
           Row{"modbus", "0", modbus("0")},
           Row{"modbus", "248", modbus("248")},
           Row{"modbus", "1,,2", modbus("1,,2")},
           Row{"modbus", "1x", modbus("1x")},
           Row{"modbus", "-1", modbus("-1")},
       }) {
    SimulatedBoiler::Options options;
    options.protocol = row.protocol;
    options.slave.addresses = row.addresses;
    EXPECT_EQ(ProblemText([&] { SimulatedBoiler boiler(options); }), row.why);
  }
}

TEST(SimulatedBoiler, AnswersThatARequestIsCorruptedUnderZoltAlone) {
  for (const std::string name : {"tarnlink", "modbus"}) {
    SimulatedBoiler::Options options;
    options.protocol = name;
    options.slave.answers_corrupted = true;
    EXPECT_EQ(ProblemText([&] { SimulatedBoiler boiler(options); }),
              "Only a ZOLT slave can answer that a request is corrupted.");
  }
}

TEST(SimulatedBoiler, HasWrongLimitsUnderZoltAlone) {
  for (const std::string name : {"tarnlink", "modbus"}) {
    SimulatedBoiler::Options options;
    options.protocol = name;
    options.slave.has_wrong_limits = true;
    EXPECT_EQ(ProblemText([&] { SimulatedBoiler boiler(options); }),
              "Only a ZOLT slave has parameters with limits.");
  }
}

}  // namespace
}  // namespace boiler
