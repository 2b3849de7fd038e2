// The port's error events, told or ignored.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

struct LineErrorRow {
  int event;
  std::string text;
};

const LineErrorRow kRows[] = {{kCommFrame, "Framing Error"},
                              {kCommOverrun, "Data Lost"},
                              {kCommReceiveOver, "Receive Buffer Overflow"},
                              {kCommTransmitFull, "Transmit Buffer Overflow"}};

class RunLineError : public MonitorTest {
 protected:
  RunLineError() {
    Screen({ByteAt("0001"), ByteAt("0002")});
    Start();
    Advance(20);
  }

  void Raise(int event) {
    world.port().RaiseLineError(event);
    world.Settle();
  }

  void IgnoreErrors() { monitor.options.chk_DisableCommErrors.Value = true; }

  ScriptedDialog& ExpectLineErrorBox(const std::string& text) {
    return world.dialogs().ExpectMessageBox({.text = text,
                                             .title = "Communication Error",
                                             .icon = Icon::kCritical,
                                             .buttons = Buttons::kYesNo,
                                             .second_is_default = true});
  }
};

TEST_F(RunLineError, IsToldAndLeavesTheBufferAsItIs) {
  const std::string waiting = State();
  Answer(
      "\x04\x05"
      "0001");
  for (const auto& [event, text] : kRows) {
    ExpectLineErrorBox(text);
    Raise(event);
    EXPECT_EQ(world.port().InBufferCount(), 6) << text;
    EXPECT_EQ(State(), waiting) << text;
  }
}

TEST_F(RunLineError, IsSilentAndEmptiesTheBufferWhenErrorsAreIgnored) {
  IgnoreErrors();
  const std::string waiting = State();
  for (const auto& [event, text] : kRows) {
    Answer(
        "\x04\x05"
        "0001");
    Raise(event);
    EXPECT_EQ(world.port().InBufferCount(), 0) << text;
    EXPECT_EQ(State(), waiting) << text;
  }
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunLineError, NeitherAnswerOfTheUserChangesAnything) {
  for (const auto answer : {tarnlink::Answer::kYes, tarnlink::Answer::kNo}) {
    const std::string before = State();
    ExpectLineErrorBox("Framing Error").Press(answer);
    Raise(kCommFrame);
    EXPECT_EQ(State(), before);
    EXPECT_EQ(world.port().opens(), 1);
  }
}

TEST_F(RunLineError, OtherEventsDoNothing) {
  Answer(
      "\x04\x05"
      "0001");
  const std::string before = State();
  for (const int event : {0, 1, 3, 4, 5, 6, 7, 1001, 1002, 1003, 1005, 1007, 1009, 1011, -1}) {
    Raise(event);
    EXPECT_EQ(State(), before) << event;
    EXPECT_EQ(world.port().InBufferCount(), 6) << event;
  }
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunLineError, TheRunGoesOnBehindTheBox) {
  Answer(AnswerOf("0001", "A1"));
  SlaveHolds({{"0001", "B1"}, {"0002", "B2"}});
  Sent();
  ExpectLineErrorBox("Framing Error").For(100ms);
  Raise(kCommFrame);
  EXPECT_EQ(Sent(),
            "40 ms: 04 05 30 30 30 32 43 37 03\n"
            "60 ms: 04 05 30 30 30 31 43 36 03\n"
            "80 ms: 04 05 30 30 30 32 43 37 03\n"
            "100 ms: 04 05 30 30 30 31 43 36 03\n"
            "120 ms: 04 05 30 30 30 32 43 37 03\n");
  EXPECT_EQ(Value(1), "B1");
}

TEST_F(RunLineError, TheAnswerBehindTheBoxIsTaken) {
  ExpectLineErrorBox("Data Lost")
      .While([this] {
        SlaveHolds({{"0001", "A1"}, {"0002", "A2"}});
        Answer(AnswerOf("0001", "A1"));
      })
      .For(1min);
  Raise(kCommOverrun);
  EXPECT_EQ(Value(1), "A1");
  EXPECT_EQ(Value(2), "A2");
  EXPECT_EQ(Panel(4), "Communication Running");
}

TEST_F(RunLineError, ABurstOfErrorsShowsOneBox) {
  ExpectLineErrorBox("Framing Error")
      .While([this] {
        for (int i = 0; i < 1000; ++i) Raise(kRows[i % 4].event);
        EXPECT_EQ(world.dialogs().up(), 1);
      })
      .For(1s);
  Raise(kCommFrame);
  EXPECT_EQ(world.dialogs().shown().size(), 1U);

  ExpectLineErrorBox("Data Lost");
  Raise(kCommOverrun);
}

TEST_F(RunLineError, ErrorsAreIgnoredFromTheMomentTheUserSaysSo) {
  Answer(
      "\x04\x05"
      "0001");
  ExpectLineErrorBox("Framing Error").While([this] {
    IgnoreErrors();
    Raise(kCommFrame);
    EXPECT_EQ(world.port().InBufferCount(), 0);
  });
  Raise(kCommFrame);
}

TEST_F(RunLineError, ASlaveThatFallsSilentBehindTheBoxIsTold) {
  ExpectLineErrorBox("Framing Error").For(1min);
  ExpectSilentSlaveBox().While([this] { EXPECT_EQ(world.dialogs().up(), 2); });
  Raise(kCommFrame);
  EXPECT_EQ(Panel(4), "Communication Stopped");
}

TEST_F(RunLineError, IsToldWhileThePortIsOpenAfterASilentSlave) {
  ExpectSilentSlaveBox();
  Advance(6020);
  ASSERT_EQ(State(), "Stopped, port open, timers tmr_noresponse");
  ExpectLineErrorBox("Framing Error");
  Raise(kCommFrame);
  EXPECT_EQ(State(), "Stopped, port open, timers tmr_noresponse");
}

TEST_F(RunLineError, IgnoredErrorsThroughoutARunLoseOnlyTheirExchanges) {
  IgnoreErrors();
  SlaveHolds({{"0001", "A1"}, {"0002", "A2"}}, 10);
  Answer(AnswerOf("0001", "A1"));
  for (int i = 0; i < 1000; ++i) {
    Advance(20);
    Raise(kCommFrame);  // between answer and request
  }
  EXPECT_EQ(Panel(4), "Communication Running");
  EXPECT_EQ(Value(2), "A2");
}

}  // namespace
}  // namespace tarnlink
