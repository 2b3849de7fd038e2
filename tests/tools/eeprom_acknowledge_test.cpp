// What the EEPROM writer takes for the answer to a byte, and what it does about everything else.

#include "tools/eeprom_fixture.h"

namespace tarnlink {
namespace {

// The slave need not send the value back.
TEST_F(EepromWriting, LooksOnlyAtTheOffsetOfAnAcknowledgement) {
  Start();
  Acknowledge();
  Say(kDone, "FFFE", "0100");
  EXPECT_EQ(tool.LastConfirmed, "0X8001");
  Say(kDone, "FFFE", "02EE");
  EXPECT_EQ(tool.LastConfirmed, "0X8002");
}

TEST_F(EepromWriting, RepeatsWithoutEndUntilItIsStopped) {
  Start();
  const std::string first = world.port().TakeSent().at(0);
  world.Advance(60s);
  const auto again = world.port().TakeSent();
  EXPECT_EQ(again.size(), 60U);
  EXPECT_EQ(again.back(), first);
  tool.cmd_Cancel.Press();
  EXPECT_FALSE(tool.Writing);
  EXPECT_TRUE(tool.form.Visible);
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(LastResult(), "Stopped. No address has been confirmed.");
  EXPECT_TRUE(tool.cmd_TarnlinkFile.Enabled && tool.fra_Eewrite.Enabled);
  world.Advance(5s);
  EXPECT_TRUE(world.port().TakeSent().empty());
}

TEST_F(EepromWriting, RepeatsARefusalAtOnce) {
  Start();
  const std::string first = world.port().TakeSent().at(0);
  struct Row {
    std::uint8_t type;
    const char* trouble;
  };
  for (const Row& row :
       {Row{0x27, "once: the slave heard it damaged."}, Row{0x47, "2 times: the slave refuses it."},
        Row{0x67, "3 times: the slave does not know the address."},
        Row{0x17, "4 times: the slave answers something else."}}) {
    Say(row.type, "FFFE", "0000");
    EXPECT_EQ(world.port().TakeSent(), std::vector<std::string>{first}) << int{row.type};
    EXPECT_EQ(tool.lblTrouble.Caption.get(), std::string("Sent again ") + row.trouble);
  }
  EXPECT_EQ(tool.LastConfirmed, "");
  Say(kDone, "FFFE", "0000");
  EXPECT_EQ(tool.lblTrouble.Caption.get(), "");
}

TEST_F(EepromWriting, TellsThatTheSlaveIsSilent) {
  Start();
  world.Advance(1s);
  EXPECT_EQ(tool.lblTrouble.Caption.get(), "Sent again once: no answer.");
  world.Advance(11s);
  EXPECT_EQ(tool.lblTrouble.Caption.get(), "Sent again 12 times: no answer.");
  tool.cmd_Stop.Press();
  EXPECT_EQ(LastResult(), "Stopped. No address has been confirmed.");
}

TEST_F(EepromWriting, SkipsWhatIsNotItsAnswer) {
  Start();
  const std::string request = world.port().TakeSent().at(0);
  world.port().Receive(request);
  world.Advance(5ms);
  Say(kDone, "FFFE", "0000", "3");
  Say(0x95, "FFFE", "0000");
  EXPECT_EQ(tool.LastConfirmed, "");
  EXPECT_TRUE(world.port().TakeSent().empty());
  Say(kDone, "FFFE", "0000");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
}

TEST_F(EepromWriting, TakesNoAcknowledgementOfAnotherByte) {
  Start();
  Acknowledge();
  const std::string second = world.port().TakeSent().at(0);
  Say(kDone, "FFFE", "0000");
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
  world.Advance(500ms);
  EXPECT_EQ(world.port().TakeSent(), std::vector<std::string>{second});
  EXPECT_EQ(tool.lblTrouble.Caption.get(), "Sent again once: the answer was to another request.");
  Say(kDone, "FFFE", "0105");
  EXPECT_EQ(tool.LastConfirmed, "0X8001");
}

// Such a slave is asked three times for the first byte, and once for each byte behind it.
class EepromOtherManner : public EepromWriting,
                          public ::testing::WithParamInterface<const char*> {};

TEST_P(EepromOtherManner, IsTakenWhenItComesEachTime) {
  const std::string id = GetParam();
  Start();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(tool.LastConfirmed, "");
    Say(kDone, id, "7700");
    world.Advance(500ms);
  }
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
  EXPECT_EQ(world.port().TakeSent().size(), 3U);
  // The first one was asked for more than once, and is waited for.
  world.Advance(1s);
  EXPECT_EQ(world.port().TakeSent().size(), 1U);
  for (int i = 1; i < 16; ++i) Say(kDone, id, "7700");
  EXPECT_EQ(tool.LastConfirmed, "");
  EXPECT_EQ(LastResult(), "0X8000 to 0X800F written, repeated 2 times");
}

INSTANTIATE_TEST_SUITE_P(UnderEachId, EepromOtherManner, ::testing::Values("FFFE", "FFAB"));

TEST_F(EepromWriting, TakesTheSameThreeTimesBehindEachOtherOnly) {
  Start();
  for (const char* data : {"7700", "7700", "7800", "7700"}) {
    Say(kDone, "FFFE", data);
    world.Advance(500ms);
    EXPECT_EQ(tool.LastConfirmed, "") << data;
  }
  Say(kDone, "FFFE", "0000");
  world.Advance(1500ms);
  for (int i = 0; i < 2; ++i) {
    Say(kDone, "FFFE", "7700");
    world.Advance(500ms);
    EXPECT_EQ(tool.LastConfirmed, "0X8000");
  }
  Say(kDone, "FFFE", "7700");
  EXPECT_EQ(tool.LastConfirmed, "0X8001");
}

TEST_F(EepromWriting, TakesTheFifthWhateverItSays) {
  Start();
  for (const char* data : {"7000", "7100", "7200", "7300", "7400"}) {
    EXPECT_EQ(tool.LastConfirmed, "");
    Say(kDone, "FFFE", data);
    world.Advance(500ms);
  }
  EXPECT_EQ(tool.LastConfirmed, "0X8000");
}

// Not at once: ours may be on its way.
TEST_F(EepromWriting, RepeatsBehindARefusalOfAnotherIdWhenTheLineIsQuiet) {
  for (const std::uint8_t type : {std::uint8_t{0x47}, std::uint8_t{0x67}}) {
    Start();
    world.Advance(1500ms);
    world.port().TakeSent();
    Say(type, "0000", "0000");
    EXPECT_TRUE(world.port().TakeSent().empty());
    world.Advance(500ms);
    EXPECT_EQ(world.port().TakeSent().size(), 1U);
    EXPECT_TRUE(tool.lblTrouble.Caption->ends_with(type == 0x47 ? "the slave refuses it."
                                                                : "does not know the address."));
    tool.cmd_Stop.Press();
  }
  Start();
  world.Advance(1500ms);
  world.port().TakeSent();
  Say(0x45, "0000", "0000");
  world.Advance(500ms);
  EXPECT_TRUE(world.port().TakeSent().empty());
}

// Its request and its port find it out, one behind the other.
TEST_F(EepromWriting, TellsOnceThatThePortIsGone) {
  Start();
  // With the second time-out, just before it.
  world.time().Post(1990ms, [this] { world.port().Unplug(); });
  ExpectError("COM1 was unplugged.").While([this] { world.Advance(1s); });
  world.Advance(5s);
  EXPECT_EQ(world.dialogs().TakeShown().size(), 1U);
  EXPECT_FALSE(tool.Writing);
}

TEST_F(EepromWriting, WaitsForAQuietLineBehindATornFrame) {
  Start();
  const std::string request = world.port().TakeSent().at(0);
  world.port().Receive(std::string(20, 'x'));
  world.Advance(50ms);
  world.port().Receive("y");
  world.Advance(50ms);
  EXPECT_TRUE(world.port().TakeSent().empty());
  world.Advance(500ms);
  EXPECT_EQ(world.port().TakeSent(), std::vector<std::string>{request});
  EXPECT_EQ(tool.lblTrouble.Caption.get(), "Sent again once: a damaged answer.");
}

}  // namespace
}  // namespace tarnlink
