#include "simulator/options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "problem_text.h"

namespace boiler {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST(ParseOptions, HasASpeedAndADelayOfItsOwn) {
  const ProgramOptions options = ParseOptions({});
  EXPECT_EQ(options.boiler.protocol, "tarnlink");
  EXPECT_EQ(options.boiler.slave.addresses, "");
  EXPECT_FALSE(options.boiler.slave.answers_corrupted);
  EXPECT_FALSE(options.boiler.slave.has_wrong_limits);
  EXPECT_EQ(options.boiler.second_master.addresses, "");
  EXPECT_EQ(options.boiler.second_master.gap_us, 20'000);
  EXPECT_EQ(options.boiler.line.pace.baud, 9600);
  EXPECT_EQ(options.boiler.line.pace.bits_per_byte, 10);
  EXPECT_EQ(options.boiler.line.answer_delay_us, 5'000);
  EXPECT_EQ(options.boiler.seed, 1u);
  EXPECT_FALSE(options.until_eof);
}

TEST(ParseOptions, TakesAllThatCanBeGiven) {
  const ProgramOptions options = ParseOptions({"--protocol",
                                               "zolt",
                                               "--link",
                                               "/tmp/boiler",
                                               "--baud",
                                               "1200",
                                               "--bits",
                                               "11",
                                               "--delay",
                                               "40",
                                               "--fault",
                                               "no_reply#5",
                                               "--fault",
                                               "split@0.1",
                                               "--seed",
                                               "77",
                                               "--log",
                                               "a.log",
                                               "--until-eof",
                                               "--help",
                                               "--slaves",
                                               "0,A",
                                               "--corrupted",
                                               "--poll",
                                               "0,A,5",
                                               "--poll-gap",
                                               "7",
                                               "--wrong-limits",
                                               "--write-once",
                                               "8000,801F",
                                               "--write-once-silent",
                                               "8010"});
  EXPECT_EQ(options.boiler.protocol, "zolt");
  EXPECT_EQ(options.boiler.slave.addresses, "0,A");
  EXPECT_TRUE(options.boiler.slave.answers_corrupted);
  EXPECT_TRUE(options.boiler.slave.has_wrong_limits);
  EXPECT_EQ(options.boiler.slave.write_once, "8000,801F");
  EXPECT_EQ(options.boiler.slave.write_once_silent, "8010");
  EXPECT_EQ(options.boiler.second_master.addresses, "0,A,5");
  EXPECT_EQ(options.boiler.second_master.gap_us, 7'000);
  EXPECT_EQ(options.link, "/tmp/boiler");
  EXPECT_EQ(options.boiler.line.pace.baud, 1200);
  EXPECT_EQ(options.boiler.line.pace.bits_per_byte, 11);
  EXPECT_EQ(options.boiler.line.answer_delay_us, 40'000);
  EXPECT_THAT(options.faults, ElementsAre("no_reply#5", "split@0.1"));
  EXPECT_EQ(options.boiler.seed, 77u);
  EXPECT_EQ(options.log, "a.log");
  EXPECT_TRUE(options.until_eof);
  EXPECT_TRUE(options.help);
}

TEST(ParseOptions, LetsBytesTakeNoTimeAtOnceAndOnARealDevice) {
  EXPECT_EQ(ParseOptions({"--at-once"}).boiler.line.pace.baud, 0);
  EXPECT_EQ(ParseOptions({"--baud", "1200", "--at-once"}).boiler.line.pace.baud, 0);
  const ProgramOptions device = ParseOptions({"--device", "/dev/ttyUSB0", "--baud", "19200"});
  EXPECT_EQ(device.boiler.line.pace.baud, 0);
  EXPECT_EQ(device.device_baud, 19200);
}

TEST(ParseOptions, RefusesTheRestWithASentence) {
  struct Row {
    std::vector<std::string> words;
    const char* sentence;
  };
  for (const Row& row : {
           Row{{"--speed"}, "There is no option \"--speed\"; --help lists them."},
           Row{{"tarnlink"}, "There is no option \"tarnlink\"; --help lists them."},
           Row{{""}, "There is no option \"\"; --help lists them."},
           Row{{"--baud=9600"}, "There is no option \"--baud=9600\"; --help lists them."},
           Row{{"--baud"}, "--baud needs a value."},
           Row{{"--at-once", "--log"}, "--log needs a value."},
           Row{{"--baud", "fast"}, "--baud takes a whole number from 50 to 4000000, not \"fast\"."},
           Row{{"--baud", "0"}, "--baud takes a whole number from 50 to 4000000, not \"0\"."},
           Row{{"--baud", "9600x"},
               "--baud takes a whole number from 50 to 4000000, not \"9600x\"."},
           Row{{"--bits", "9"}, "--bits takes a whole number from 10 to 11, not \"9\"."},
           Row{{"--bits", "12"}, "--bits takes a whole number from 10 to 11, not \"12\"."},
           Row{{"--delay", "-1"}, "--delay takes a whole number from 0 to 3600000, not \"-1\"."},
           Row{{"--delay", "1.5"}, "--delay takes a whole number from 0 to 3600000, not \"1.5\"."},
           Row{{"--poll-gap", "0"},
               "--poll-gap takes a whole number from 1 to 3600000, not \"0\"."},
           Row{{"--seed", ""},
               "--seed takes a whole number from 0 to 9223372036854775807, not \"\"."},
           Row{{"--device", "/dev/a", "--link", "/tmp/b"},
               "--link names a pseudo terminal and does not go with --device."},
       }) {
    EXPECT_EQ(ProblemText([&] { ParseOptions(row.words); }), row.sentence);
  }
}

TEST(HelpText, NamesEveryOption) {
  for (const char* option :
       {"--device", "--link", "--protocol", "--slaves", "--corrupted", "--wrong-limits",
        "--write-once", "--write-once-silent", "--poll", "--poll-gap", "--baud", "--bits",
        "--at-once", "--delay", "--fault", "--seed", "--log", "--until-eof", "--help"}) {
    EXPECT_THAT(std::string(HelpText()), HasSubstr(std::string("\n  ") + option + " "));
  }
}

}  // namespace
}  // namespace boiler
