// What the fakes promise to the tests beyond the interfaces.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "common/run_time_error.h"
#include "contract/loops.h"
#include "support/byte_text.h"
#include "support/fake_world.h"

namespace tarnlink {
namespace {

TEST(VirtualTime, RunsEventsInTheOrderOfTheirMomentsAndThenOfPosting) {
  VirtualTime time;
  std::string order;
  time.Post(20us, [&] { order += 'c'; });
  time.Post(10us, [&] { order += 'a'; });
  time.Post(10us, [&] { order += 'b'; });
  time.Advance(10us);
  EXPECT_EQ(order, "ab");
  EXPECT_EQ(time.now(), 10us);
  time.Advance(1ms);
  EXPECT_EQ(order, "abc");
  EXPECT_EQ(time.now(), 1010us);
}

TEST(VirtualTime, ACancelledEventDoesNotRun) {
  VirtualTime time;
  bool ran = false;
  const auto id = time.Post(10us, [&] { ran = true; });
  time.Cancel(id);
  time.Advance(1s);
  EXPECT_FALSE(ran);
  time.Cancel(id);
}

TEST(VirtualTime, MayBeAdvancedInsideAnEvent) {
  VirtualTime time;
  std::string order;
  time.Post(10us, [&] {
    order += '(';
    time.Advance(15us);
    order += ')';
  });
  time.Post(20us, [&] { order += 'b'; });
  time.Post(30us, [&] { order += 'c'; });
  time.Advance(12us);
  EXPECT_EQ(order, "(b)");
  EXPECT_EQ(time.now(), 25us) << "the time does not go back";
  time.Advance(5us);
  EXPECT_EQ(order, "(b)c");
}

TEST(VirtualTime, RunUntilStopsWhereTheConditionComesTrue) {
  VirtualTime time;
  int count = 0;
  for (int i = 1; i <= 5; ++i) time.Post(i * 10us, [&] { ++count; });
  EXPECT_TRUE(time.RunUntil([&] { return count == 3; }, 1s));
  EXPECT_EQ(time.now(), 30us);
  EXPECT_FALSE(time.RunUntil([&] { return count == 9; }, 1s));
  EXPECT_EQ(time.now(), 30us + 1s);
}

TEST(VirtualTime, EventsThatPostEachOtherWithoutEndFailTheTest) {
  VirtualTime time;
  std::function<void()> again = [&] { time.Post(0us, again); };
  again();
  EXPECT_NONFATAL_FAILURE(time.Advance(1ms), "without end");
}

TEST(ByteText, GoesBothWays) {
  EXPECT_EQ(Bytes("01 03 00 2a FF"), std::string("\x01\x03\x00\x2A\xFF", 5));
  EXPECT_EQ(HexText(Bytes("01 03 00 2a FF")), "01 03 00 2A FF");
  EXPECT_EQ(Readable("\r01A0\n"), "<0D>01A0<0A>");
  EXPECT_EQ(HexText(""), "");
}

TEST(ByteText, NonsenseFailsTheTest) {
  EXPECT_NONFATAL_FAILURE(Bytes("0G"), "no hexadecimal text");
  EXPECT_NONFATAL_FAILURE(Bytes("012"), "a digit left over");
}

TEST(FakeDialogs, AnUnexpectedDialogFailsTheTestAndCountsAsClosed) {
  FakeWorld world;
  Answer answer = Answer::kOk;
  EXPECT_NONFATAL_FAILURE(
      answer = world.dialogs().MessageBox({"Sure?", "Title", Icon::kQuestion, Buttons::kYesNo}),
      "Unexpected dialog: question box [Title] Sure? (Yes*, No)");
  EXPECT_EQ(answer, Answer::kCancel);
  EXPECT_NONFATAL_FAILURE(world.dialogs().InputBox("Prompt", "Title", ""), "Unexpected dialog");
}

TEST(FakeDialogs, AnotherDialogThanTheExpectedOneFailsTheTest) {
  FakeWorld world;
  world.dialogs().ExpectMessageBox("This", "Title");
  EXPECT_NONFATAL_FAILURE(world.dialogs().MessageBox({"That", "Title"}),
                          "Expected dialog: box [Title] This");
  MessageBoxRequest request{"Text", "Title", Icon::kCritical, Buttons::kYesNo, true};
  world.dialogs().ExpectMessageBox(request);
  request.second_is_default = false;
  EXPECT_NONFATAL_FAILURE(world.dialogs().MessageBox(request), "(Yes, No*)");
}

TEST(FakeDialogs, AnExpectedDialogThatNeverComesFailsTheTest) {
  auto world = std::make_unique<FakeWorld>();
  world->dialogs().ExpectMessageBox("Text", "Title");
  EXPECT_NONFATAL_FAILURE(world.reset(), "never came: box [Title] Text");
}

TEST(FakeDialogs, AButtonThatIsNotThereFailsTheTest) {
  FakeWorld world;
  world.dialogs().ExpectMessageBox("Text", "Title").Press(Answer::kYes);
  EXPECT_NONFATAL_FAILURE(world.dialogs().MessageBox({"Text", "Title"}), "button");
  world.dialogs().ExpectInputBox("Prompt", "Title").Press(Answer::kOk);
  EXPECT_NONFATAL_FAILURE(world.dialogs().InputBox("Prompt", "Title", ""), "does not fit");
}

TEST(FakeDialogs, KeepsThePagesOfThePreview) {
  FakeWorld world;
  const auto draw = [](DrawingSurface& page) {
    page.Text({page.ScaleWidth(), page.ScaleHeight()}, "end", kBlack);
    page.NewPage();
  };
  const RecordingSurface::Log drawn{"text 16838,11906 000000 \"end\"", "page"};
  world.dialogs().ExpectPreview("Title").For(1s).While(
      [&] { EXPECT_EQ(world.dialogs().last_preview(), drawn); });
  world.dialogs().Preview({"Title", "screen.pdf", {true}, draw});
  EXPECT_EQ(world.now(), 1s);
  EXPECT_EQ(world.dialogs().last_preview(), drawn);
  EXPECT_EQ(world.dialogs().last_preview_request().file_name, "screen.pdf");
  EXPECT_EQ(world.dialogs().TakeShown(), std::vector<std::string>{"preview [Title]"});
}

TEST(FakeDialogs, APreviewThatDrawsSomethingElseLaterFailsTheTest) {
  FakeWorld world;
  std::string text = "before";
  world.dialogs().ExpectPreview("Title").While([&] { text = "after"; });
  const auto draw = [&](DrawingSurface& page) { page.Text({}, text, kBlack); };
  EXPECT_NONFATAL_FAILURE(world.dialogs().Preview({"Title", "", {}, draw}), "drawn differently");
}

TEST(FakeDialogs, ABoxStaysUpForItsTimeWhileEverythingGoesOn) {
  FakeWorld world;
  int ticks = 0;
  const auto timer = world.CreateTimer();
  timer->SetInterval(20);
  timer->SetOnTimer([&] { ticks += world.dialogs().up(); });
  timer->SetEnabled(true);
  bool inside = false;
  world.dialogs().ExpectMessageBox("Text", "Title").While([&] { inside = true; }).For(100ms);
  world.dialogs().MessageBox({"Text", "Title"});
  EXPECT_EQ(ticks, 5);
  EXPECT_TRUE(inside);
  EXPECT_EQ(world.now(), 100ms);
  EXPECT_EQ(world.dialogs().TakeShown(), std::vector<std::string>{"plain box [Title] Text (OK)"});
}

TEST(FaultPlan, TheNthCallBreaksAndIsNotCarriedOut) {
  FakeWorld world;
  world.faults().Break("Files.WriteWhole", 2, RunTimeError(kDiskFull, "full"));
  world.files().WriteWhole("a", "1");
  EXPECT_EQ(ErrorOf([&] { world.files().WriteWhole("a", "2"); }), kDiskFull);
  EXPECT_EQ(world.disk().Get("a"), "1");
  world.files().WriteWhole("a", "3");
  EXPECT_EQ(world.disk().Get("a"), "3");
  EXPECT_TRUE(world.faults().Spent());
  EXPECT_EQ(world.faults().CountOf("Files.WriteWhole"), 3);
}

TEST(FaultPlan, CountsTheCallsOfAllNamesTogetherOnRequest) {
  FakeWorld world;
  const auto port = world.CreatePort();
  port->SetPortOpen(true);
  const auto rows = world.files().OpenRows("log", false);
  world.faults().Break("*", 3, RunTimeError(kDeviceIo));
  port->Output("x");
  rows->Append("row\n");
  EXPECT_EQ(ErrorOf([&] { rows->Append("row\n"); }), kDeviceIo);
  EXPECT_EQ(world.disk().Get("log"), "row\n");
  EXPECT_EQ(world.faults().calls(),
            (std::vector<std::string>{"Port.Open", "Files.OpenRows", "Port.Output", "Rows.Append",
                                      "Rows.Append"}));
}

TEST(FaultPlan, OfTwoThatAreDueTogetherTheOtherWaitsForTheNextCallOfItsName) {
  FakeWorld world;
  world.faults().Break("Files.WriteWhole", RunTimeError(kDiskFull));
  world.faults().Break("Files.WriteWhole", RunTimeError(kDeviceIo));
  EXPECT_EQ(ErrorOf([&] { world.files().WriteWhole("a", "1"); }), kDiskFull);
  EXPECT_EQ(ErrorOf([&] { world.CreatePort()->SetPortOpen(true); }), 0);
  EXPECT_EQ(ErrorOf([&] { world.files().WriteWhole("a", "2"); }), kDeviceIo);
}

TEST(FaultPlan, AFaultThatNeverStrikesFailsTheTest) {
  auto world = std::make_unique<FakeWorld>();
  world->faults().Break("Port.Output", RunTimeError(kDeviceIo));
  EXPECT_NONFATAL_FAILURE(world.reset(), "The planned fault of Port.Output never struck");
}

TEST(FakeWorld, TheFarEndAnswersInVirtualTime) {
  FakeWorld world;
  world.on_output = [](FakeSerialPort& port, std::string_view bytes) {
    if (bytes == Bytes("04 05")) port.ReceiveIn(port.WireTime(2) + 3ms, Bytes("06 41"));
  };
  const auto port = world.CreatePort();
  std::string got;
  port->SetSettings(" 2400n,8,1");
  port->SetRThreshold(2);
  port->SetOnComm([&](int) { got = port->Input(); });
  port->SetPortOpen(true);
  world.Advance(20ms);
  port->Output(Bytes("04 05"));
  EXPECT_TRUE(world.RunUntil([&] { return !got.empty(); }, 1s));
  EXPECT_EQ(got, Bytes("06 41"));
  EXPECT_EQ(world.port().Describe(),
            "0.000000 open COM1 2400,N,8,1\n"
            "0.020000 output 04 05\n"
            "0.031333 receive 06 41\n");
  EXPECT_EQ(world.port().TakeSentHex(), "04 05\n");
  EXPECT_EQ(world.port().TakeSentHex(), "");
}

TEST(FakeWorld, LineErrorsComeThroughTheQueueAndOnlyToTheOpeningTheyHit) {
  FakeWorld world;
  const auto port = world.CreatePort();
  std::vector<int> events;
  port->SetOnComm([&](int event) { events.push_back(event); });
  port->SetPortOpen(true);
  world.port().RaiseLineError(kCommFrame);
  EXPECT_TRUE(events.empty());
  world.Settle();
  EXPECT_EQ(events, std::vector<int>{kCommFrame});
  world.port().RaiseLineError(kCommOverrun);
  port->SetPortOpen(false);
  port->SetPortOpen(true);
  world.Settle();
  EXPECT_EQ(events.size(), 1U);
}

TEST(FakeWorld, APortCanBeAskedAfterTheProgramHasDestroyedIt) {
  FakeWorld world;
  auto port = world.CreatePort();
  port->SetPortOpen(true);
  port->Output("x");
  port.reset();
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_EQ(world.port().TakeSent(), std::vector<std::string>{"x"});
  EXPECT_EQ(world.port().closes(), 1);
}

TEST(FakeWorld, PagesAreKeptAsTheyWereDrawn) {
  FakeWorld world;
  {
    const auto page = world.CreatePage({true});
    EXPECT_GT(page->ScaleWidth(), page->ScaleHeight());
    EXPECT_EQ(page->TwipsPerPixelX(), 2.4F);
    page->Text({1, 2}, "header", kBlack);
  }
  ASSERT_EQ(world.pages().size(), 1U);
  EXPECT_EQ(world.pages()[0]->back(), "text 1,2 000000 \"header\"");
  EXPECT_TRUE(world.page_setups()[0].landscape);
}

TEST(FakeClock, FollowsVirtualTimeFromTheMomentThatWasSet) {
  FakeWorld world;
  const auto shown = [&] { return FormatDate(world.clock().Now(), "yyyy-mm-dd hh:nn:ss", {}); };
  EXPECT_EQ(shown(), "2024-03-05 14:07:09");
  world.Advance(51s);
  EXPECT_EQ(shown(), "2024-03-05 14:08:00");
  world.clock().Set({2024, 12, 31, 23, 59, 59});
  world.Advance(1s);
  EXPECT_EQ(shown(), "2025-01-01 00:00:00");
}

}  // namespace
}  // namespace tarnlink
