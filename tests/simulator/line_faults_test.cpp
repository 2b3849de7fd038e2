// Each fault that a TarnLink slave on a line can have: the bytes that it makes, when they come, and
// what the log says of them.
#include <algorithm>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "line_fixture.h"
#include "problem_text.h"
#include "simulator/tarnlink_frames.h"

namespace boiler {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::StartsWith;

constexpr std::string_view kReadWordF400 = "04 01 46 34 30 30 44 42 03";
constexpr std::string_view kWrite5ATo_F400 = "04 06 46 34 30 30 35 41 35 36 03";
constexpr std::string_view kRead01A0 = "04 05 30 31 41 30 44 37 03";
// At F400 stand 5A 12.
constexpr std::string_view kByteAnswer = "04 05 46 34 30 30 35 41 35 35 03";
constexpr std::string_view kWordAnswer = "04 01 46 34 30 30 31 32 35 41 42 34 03";

class LineFaults : public ::testing::Test {
 protected:
  LineFaults() {
    line_.SetByte(kF400, 0x5A);
    line_.SetByte(kF400 + 1, 0x12);
  }

  void Fault(std::string_view text) { line_.Fault(text); }
  std::string AskByte() { return line_.Ask(kReadByteF400); }
  std::string AskWord() { return line_.Ask(kReadWordF400); }
  std::string AskWrite() { return line_.Ask(kWrite5ATo_F400); }

  // The log tells this fault of the last exchange, with these bytes.
  void ExpectLogged(const char* fault, std::string_view hex, Check check) {
    const LogEntry entry = line_.LastFault();
    EXPECT_EQ(entry.meaning, fault);
    EXPECT_EQ(entry.exchange, line_.line().Exchanges());
    EXPECT_EQ(HexText(entry.bytes), hex);
    EXPECT_EQ(entry.check, check);
  }

  BoilerOnLine line_;
};

TEST_F(LineFaults, NoReplySaysNothingAndDoesNothing) {
  Fault("no_reply#1");
  line_.SetByte(kF400, 0x11);
  EXPECT_EQ(AskWrite(), "");
  ExpectLogged("no_reply", "", Check::kNone);
  EXPECT_EQ(line_.controller().memory().Byte(kF400), 0x11);
  EXPECT_EQ(AskWrite(), kWrite5ATo_F400);
}

TEST_F(LineFaults, LateReplyComesSoMuchLater) {
  Fault("late_reply(3500)#1");
  EXPECT_EQ(AskByte(), kByteAnswer);
  ExpectLogged("late_reply(3500)", kByteAnswer, Check::kHolds);
  EXPECT_EQ(line_.Arrivals().back().time_us, 3'500'000);
}

TEST_F(LineFaults, LateReplyAfterNextComesAheadOfTheNextAnswer) {
  Fault("late_reply_after_next#1");
  EXPECT_EQ(AskByte(), "");
  ExpectLogged("late_reply_after_next", kByteAnswer, Check::kHolds);
  line_.Pass(100'000);
  AskWord();
  EXPECT_THAT(line_.ArrivedHex(), ElementsAre(kByteAnswer, kWordAnswer));
  EXPECT_EQ(line_.Arrivals()[0].time_us, 100'000);
  EXPECT_EQ(line_.Arrivals()[1].time_us, 105'000);
}

TEST_F(LineFaults, LateReplyAfterNextShiftsAllAnswersByOneAtRateOne) {
  Fault("late_reply_after_next");
  EXPECT_EQ(AskByte(), "");
  EXPECT_EQ(AskWord(), kByteAnswer);
  EXPECT_EQ(AskByte(), kWordAnswer);
}

TEST_F(LineFaults, SlowBytesComeOneByOne) {
  Fault("slow_bytes(30)#1");
  EXPECT_EQ(AskByte(), kByteAnswer);
  ExpectLogged("slow_bytes(30)", kByteAnswer, Check::kHolds);
  ASSERT_EQ(line_.Arrivals().size(), 11u);
  for (std::size_t i = 0; i < 11; ++i) {
    EXPECT_EQ(line_.Arrivals()[i].time_us, static_cast<std::int64_t>(i) * 30'000);
  }
}

TEST_F(LineFaults, PauseMidframeStopsInTheMiddle) {
  Fault("pause_midframe(400)#1");
  AskByte();
  ExpectLogged("pause_midframe(400)", kByteAnswer, Check::kHolds);
  EXPECT_THAT(line_.Arrivals(),
              ElementsAre(Arrival{0, "04 05 46 34 30"}, Arrival{400'000, "30 35 41 35 35 03"}));
}

TEST_F(LineFaults, BusyThenOkIsSilentUntilItAnswers) {
  Fault("busy_then_ok(2)#1");
  EXPECT_EQ(AskByte(), "");
  EXPECT_EQ(AskByte(), "");
  ExpectLogged("busy_then_ok(2)", "", Check::kNone);
  EXPECT_EQ(AskByte(), kByteAnswer);
}

TEST_F(LineFaults, WrongIdEchoesAnotherAddress) {
  Fault("wrong_id");
  std::set<std::string> addresses;
  for (int i = 0; i < 20; ++i) {
    const std::string said = AskByte();
    ExpectLogged("wrong_id", said, Check::kHolds);
    EXPECT_THAT(said, StartsWith("04 05 "));
    EXPECT_EQ(said.substr(18, 5), "35 41");
    EXPECT_NE(said.substr(6, 11), "46 34 30 30");
    addresses.insert(said.substr(6, 11));
  }
  EXPECT_GT(addresses.size(), 15u);
}

TEST_F(LineFaults, WrongKindHasAnotherCommand) {
  Fault("wrong_kind");
  std::set<std::string> commands;
  for (int i = 0; i < 40; ++i) {
    const std::string said = AskByte();
    ExpectLogged("wrong_kind", said, Check::kHolds);
    EXPECT_EQ(said.substr(6, 17), "46 34 30 30 35 41");
    commands.insert(said.substr(0, 5));
  }
  EXPECT_EQ(commands, (std::set<std::string>{"04 01", "04 02", "04 06"}));
}

TEST_F(LineFaults, ShortCountHasHalfTheData) {
  Fault("short_count#2");
  EXPECT_EQ(AskWord(), "04 01 46 34 30 30 35 41 35 31 03");
  ExpectLogged("short_count", "04 01 46 34 30 30 35 41 35 31 03", Check::kHolds);
  EXPECT_EQ(AskByte(), "04 05 46 34 30 30 41 32 30 03");
  ExpectLogged("short_count", "04 05 46 34 30 30 41 32 30 03", Check::kHolds);
}

TEST_F(LineFaults, LongCountHasAByteTooMuch) {
  Fault("long_count#1");
  const std::string said = AskByte();
  ExpectLogged("long_count", said, Check::kHolds);
  EXPECT_EQ(ParseHexBytes(said)->size(), 13u);
  EXPECT_THAT(said, StartsWith("04 05 46 34 30 30 35 41 "));
}

TEST_F(LineFaults, OversizeHasSoMuchMoreData) {
  Fault("oversize(5000)#1");
  const std::string said = AskByte();
  ExpectLogged("oversize(5000)", said, Check::kHolds);
  EXPECT_EQ(ParseHexBytes(said)->size(), 5011u);
  EXPECT_THAT(said, StartsWith("04 05 46 34 30 30 35 41 "));
  EXPECT_THAT(said, EndsWith(" 03"));
}

TEST_F(LineFaults, StaleDuplicateIsTheAnswerBefore) {
  EXPECT_EQ(AskWord(), kWordAnswer);
  Fault("stale_duplicate#1");
  EXPECT_EQ(AskByte(), kWordAnswer);
  ExpectLogged("stale_duplicate", kWordAnswer, Check::kHolds);
  EXPECT_EQ(AskByte(), kByteAnswer);
}

TEST_F(LineFaults, StaleDuplicateIsTheSoundAnswerBeforeEvenIfThatWasDamaged) {
  Fault("all_ff#1");
  AskWord();
  Fault("stale_duplicate#1");
  EXPECT_EQ(AskByte(), kWordAnswer);
}

TEST_F(LineFaults, AnswerOfOtherRequestIsARightAnswerToAnotherRead) {
  Fault("answer_of_other_request");
  std::set<std::size_t> lengths;
  for (int i = 0; i < 20; ++i) {
    const std::string said = AskByte();
    ExpectLogged("answer_of_other_request", said, Check::kHolds);
    const std::string bytes = *ParseHexBytes(said);
    const std::uint16_t address = *ParseAddress(bytes.substr(2, 4));
    EXPECT_NE(address, kF400);
    const Memory& memory = line_.controller().memory();
    const bool word = bytes[1] == 0x01;
    EXPECT_EQ(bytes.substr(6, word ? 4 : 2),
              word ? HexDigits(memory.Word(address), 4) : HexDigits(memory.Byte(address), 2));
    lengths.insert(bytes.size());
  }
  EXPECT_EQ(lengths, (std::set<std::size_t>{11, 13}));
}

TEST_F(LineFaults, CheckWrongChangesTheSumAlone) {
  Fault("check_wrong");
  std::set<std::string> sums;
  for (int i = 0; i < 50; ++i) {
    const std::string said = AskByte();
    ExpectLogged("check_wrong", said, Check::kBroken);
    EXPECT_THAT(said, StartsWith("04 05 46 34 30 30 35 41 "));
    EXPECT_THAT(said, EndsWith(" 03"));
    sums.insert(said.substr(24, 5));
  }
  EXPECT_GT(sums.size(), 30u);
  EXPECT_FALSE(sums.contains("35 35"));
}

TEST_F(LineFaults, DamageReachesTheMasterAsTheLogTells) {
  for (const FaultInfo& info : AllFaults()) {
    const bool fits =
        info.kind != FaultKind::kHighBitStripped && info.kind != FaultKind::kCrlfTranslated;
    if (info.group != FaultGroup::kDamage || !fits) continue;
    Fault(std::string(info.name) + "#1");
    const std::string said = AskByte();
    EXPECT_NE(said, kByteAnswer) << info.name;
    EXPECT_EQ(HexText(line_.LastFault().bytes), said);
    EXPECT_THAT(line_.LastFault().meaning, StartsWith(std::string(info.name)));
    EXPECT_EQ(AskByte(), kByteAnswer) << info.name;
  }
  EXPECT_EQ(line_.Entries(LogKind::kFault).size(), 11u);
}

TEST_F(LineFaults, TruncateAndFillsAreLoggedAsBroken) {
  Fault("truncate(3)#1");
  EXPECT_EQ(AskByte(), "04 05 46 34 30 30 35 41");
  ExpectLogged("truncate(3)", "04 05 46 34 30 30 35 41", Check::kBroken);
  Fault("all_ff#1");
  EXPECT_EQ(AskByte(), "FF FF FF FF FF FF FF FF FF FF FF");
  ExpectLogged("all_ff", "FF FF FF FF FF FF FF FF FF FF FF", Check::kBroken);
  Fault("all_zero#1");
  EXPECT_EQ(AskByte(), "00 00 00 00 00 00 00 00 00 00 00");
  ExpectLogged("all_zero", "00 00 00 00 00 00 00 00 00 00 00", Check::kBroken);
}

TEST_F(LineFaults, SplitComesInSoManyPieces) {
  for (const int pieces : {2, 3, 11}) {
    BoilerOnLine line;
    line.Fault("split(" + std::to_string(pieces) + ")#1");
    EXPECT_EQ(line.Ask(kReadByteF400), "04 05 46 34 30 30 30 30 33 46 03");
    ASSERT_EQ(line.Arrivals().size(), static_cast<std::size_t>(pieces));
    for (std::size_t i = 0; i < line.Arrivals().size(); ++i) {
      EXPECT_EQ(line.Arrivals()[i].time_us, static_cast<std::int64_t>(i) * 10'000);
    }
  }
}

TEST_F(LineFaults, SplitCutsBetweenAllBytesAtMost) {
  Fault("split(64)#1");
  EXPECT_EQ(AskByte(), kByteAnswer);
  EXPECT_EQ(line_.Arrivals().size(), 11u);
}

TEST_F(LineFaults, MergeTwoSendsTwoAnswersInOnePiece) {
  Fault("merge_two");
  EXPECT_EQ(AskByte(), "");
  ExpectLogged("merge_two", kByteAnswer, Check::kHolds);
  AskWord();
  EXPECT_THAT(line_.ArrivedHex(),
              ElementsAre(std::string(kByteAnswer) + " " + std::string(kWordAnswer)));
}

TEST_F(LineFaults, MergeTwoWaitsPastASilentExchange) {
  Fault("merge_two#1");
  Fault("no_reply#1");
  EXPECT_EQ(AskByte(), "");
  EXPECT_EQ(AskByte(), "");
  EXPECT_EQ(AskWord(), std::string(kByteAnswer) + " " + std::string(kWordAnswer));
}

TEST_F(LineFaults, NoiseStandsBeforeOrBehindTheAnswerInOnePiece) {
  Fault("noise_before(3)#1");
  const std::string before = AskByte();
  ExpectLogged("noise_before(3)", before, Check::kHolds);
  EXPECT_EQ(before.substr(9), kByteAnswer);
  Fault("noise_after(3)#1");
  const std::string after = AskByte();
  ExpectLogged("noise_after(3)", after, Check::kHolds);
  EXPECT_EQ(after.size(), kByteAnswer.size() + 9);
  EXPECT_THAT(after, StartsWith(std::string(kByteAnswer)));
  EXPECT_EQ(line_.Arrivals().size(), 2u);
}

TEST_F(LineFaults, NoiseIdleComesWhileNobodySpeaks) {
  Fault("noise_idle(5)#1");
  const std::string said = AskByte();
  ExpectLogged("noise_idle(5)", said, Check::kHolds);
  ASSERT_EQ(line_.Arrivals().size(), 2u);
  EXPECT_EQ(line_.Arrivals()[0].hex, kByteAnswer);
  EXPECT_EQ(ParseHexBytes(line_.Arrivals()[1].hex)->size(), 5u);
  EXPECT_GE(line_.Arrivals()[1].time_us, 2'000);
  EXPECT_LT(line_.Arrivals()[1].time_us, 10'000);
}

TEST_F(LineFaults, SelfEchoGivesTheRequestBackFirst) {
  Fault("self_echo#1");
  EXPECT_EQ(AskByte(), std::string(kReadByteF400) + " " + std::string(kByteAnswer));
  ExpectLogged("self_echo", std::string(kReadByteF400) + " " + std::string(kByteAnswer),
               Check::kHolds);
}

TEST_F(LineFaults, SelfEchoDoesNotWaitForTheAnswer) {
  SimulatedBoiler::Options options;
  options.line.answer_delay_us = 20'000;
  BoilerOnLine line(options);
  line.Fault("self_echo#1");
  line.Ask(kReadByteF400);
  EXPECT_THAT(line.Arrivals(), ElementsAre(Arrival{0, std::string(kReadByteF400)},
                                           Arrival{20'000, "04 05 46 34 30 30 30 30 33 46 03"}));
}

TEST_F(LineFaults, ForeignTrafficIsAWholeExchangeOfOthers) {
  Fault("foreign_traffic#1");
  const std::string bytes = *ParseHexBytes(AskByte());
  ASSERT_EQ(bytes.size(), 9u + 11u + 11u);
  const auto foreign = ParseTarnlinkRequest(bytes.substr(0, 9));
  ASSERT_TRUE(foreign.request);
  EXPECT_EQ(bytes.substr(9, 6), bytes.substr(0, 6));
  EXPECT_TRUE(TarnlinkSumHolds(bytes.substr(9, 11)));
  EXPECT_EQ(HexText(bytes.substr(20)), kByteAnswer);
}

TEST_F(LineFaults, EndlessStreamGoesOnUntilItIsCleared) {
  Fault("endless_stream#1");
  line_.Send(kReadByteF400);
  line_.Pass(1'000'000);
  ExpectLogged("endless_stream(0)", kByteAnswer, Check::kHolds);
  std::size_t bytes = 0;
  for (const std::string& hex : line_.ArrivedHex()) bytes += ParseHexBytes(hex)->size();
  EXPECT_THAT(line_.ArrivedHex().front(), StartsWith(std::string(kByteAnswer)));
  EXPECT_GT(bytes, 10'000u);  // at 115200 baud where there is no pace
  EXPECT_LT(bytes, 12'000u);
  line_.Send(kReadByteF400);
  EXPECT_EQ(line_.Log().back(), "ignored an endless stream is going out");
  line_.line().ClearFaults();
  EXPECT_EQ(line_.Rest(), "");
  EXPECT_EQ(AskByte(), kByteAnswer);
}

TEST_F(LineFaults, EndlessStreamKeepsThePaceOfTheLine) {
  SimulatedBoiler::Options options;
  options.line.pace = {1200, 10};
  BoilerOnLine line(options);
  line.Fault("endless_stream#1");
  line.Send(kReadByteF400);
  line.Pass(2'000'000);
  std::size_t bytes = 0;
  for (const std::string& hex : line.ArrivedHex()) bytes += ParseHexBytes(hex)->size();
  EXPECT_NEAR(static_cast<double>(bytes), 240 - 9, 2);
}

TEST_F(LineFaults, EndlessStreamEndsAfterItsTimeWhereItHasOne) {
  Fault("endless_stream(500)#1");
  AskByte();
  EXPECT_GT(line_.Arrivals().back().time_us, 490'000);
  EXPECT_LE(line_.Arrivals().back().time_us, 500'000);
  EXPECT_EQ(AskByte(), kByteAnswer);
}

TEST_F(LineFaults, EndlessStreamIsBoundedWhenNobodyLookedForLong) {
  Fault("endless_stream#1");
  line_.Send(kReadByteF400);
  EXPECT_LT(line_.line().TakeDue(3'600'000'000).size(), 5'000u);
  EXPECT_GT(line_.line().NextDue(), 3'600'000'000);
}

TEST_F(LineFaults, RebootMidsessionForgetsRamAndIsDeafForAWhile) {
  Fault("reboot_midsession(1500)#1");
  EXPECT_EQ(AskByte(), "");
  ExpectLogged("reboot_midsession(1500)", "", Check::kNone);
  line_.Pass(1'499'000);
  EXPECT_EQ(AskByte(), "");
  line_.Pass(1'000);
  EXPECT_EQ(AskByte(), "04 05 46 34 30 30 30 30 33 46 03");
}

TEST_F(LineFaults, WriteOkNotStoredOnlySaysSo) {
  line_.SetByte(kF400, 0x11);
  Fault("write_ok_not_stored#1");
  EXPECT_EQ(AskWrite(), kWrite5ATo_F400);
  ExpectLogged("write_ok_not_stored", kWrite5ATo_F400, Check::kHolds);
  EXPECT_EQ(line_.controller().memory().Byte(kF400), 0x11);
}

TEST_F(LineFaults, WriteStoredAnswerLostOnlyDoesIt) {
  line_.SetByte(kF400, 0x11);
  Fault("write_stored_answer_lost#1");
  EXPECT_EQ(AskWrite(), "");
  ExpectLogged("write_stored_answer_lost", "", Check::kNone);
  EXPECT_EQ(line_.controller().memory().Byte(kF400), 0x5A);
}

TEST_F(LineFaults, WriteSlowAnswersWritesLate) {
  Fault("write_slow(700)");
  EXPECT_EQ(AskByte(), kByteAnswer);
  EXPECT_EQ(line_.Arrivals().back().time_us, 0);
  EXPECT_EQ(AskWrite(), kWrite5ATo_F400);
  EXPECT_EQ(line_.Arrivals().back().time_us, 700'000);
}

TEST_F(LineFaults, RangeRejectedAnswersWithWhatIsKept) {
  line_.SetByte(kF400, 0x34);
  Fault("range_rejected#1");
  EXPECT_EQ(AskWrite(), "04 06 46 34 30 30 33 34 34 37 03");
  ExpectLogged("range_rejected", "04 06 46 34 30 30 33 34 34 37 03", Check::kHolds);
  EXPECT_EQ(line_.controller().memory().Byte(kF400), 0x34);
}

TEST_F(LineFaults, ClearingThemDropsAnAnswerThatIsHeldBack) {
  Fault("late_reply_after_next");
  EXPECT_EQ(AskByte(), "");
  line_.line().ClearFaults();
  EXPECT_EQ(AskWord(), kWordAnswer);
}

TEST_F(LineFaults, RefusesFaultsThatTheProtocolOrTheLineCannotHave) {
  const auto why = [&](const char* text) { return ProblemText([&] { Fault(text); }); };
  EXPECT_EQ(why("wrong_address"),
            "Fault \"wrong_address\": a TarnLink frame carries no slave address.");
  EXPECT_EQ(why("refused(4)#2"),
            "Fault \"refused(4)#2\": a TarnLink slave has no answer that says no.");
  EXPECT_EQ(why("open_busy"), "Fault \"open_busy\": there is no port here to be opened.");
  EXPECT_EQ(why("no_rep"), "Fault \"no_rep\": there is no fault of this name.");
  EXPECT_EQ(AskByte(), kByteAnswer);
}

TEST_F(LineFaults, StrikeOtherExchangesWithAnotherSeed) {
  const auto silences = [](std::uint64_t seed) {
    SimulatedBoiler::Options options;
    options.seed = seed;
    BoilerOnLine line(options);
    line.Fault("no_reply@0.5");
    std::string told;
    for (int i = 0; i < 100; ++i) told += line.Ask(kReadByteF400).empty() ? '-' : 'x';
    return told;
  };
  EXPECT_EQ(silences(4), silences(4));
  EXPECT_NE(silences(4), silences(5));
}

TEST_F(LineFaults, FollowTheSeed) {
  const auto session = [](std::uint64_t seed) {
    SimulatedBoiler::Options options;
    options.seed = seed;
    BoilerOnLine line(options);
    for (const char* fault : {"bit_flip(2)@0.3", "noise_before(5)@0.2", "wrong_id@0.2"}) {
      line.Fault(fault);
    }
    for (int i = 0; i < 200; ++i) line.Ask(kRead01A0);
    return line.ArrivedHex();
  };
  EXPECT_EQ(session(4), session(4));
  EXPECT_NE(session(4), session(5));
}

}  // namespace
}  // namespace boiler
