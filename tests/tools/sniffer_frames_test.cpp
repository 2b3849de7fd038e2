// What the sniffer makes of each frame: lists, items, values, and the line of its running text.

#include "common/numbers.h"
#include "common/text.h"
#include "protocols/zolt_crc.h"
#include "tools/sniffer_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// --- Kinds ---------------------------------------------------------------------------------------

struct KindRow {
  const char* name;
  std::string frame;
  const char* line;  // behind date and time
};

class SnifferKind : public SnifferTest, public ::testing::WithParamInterface<KindRow> {};

TEST_P(SnifferKind, GivesALineOfText) {
  sniffer.Show();
  HearBytes(GetParam().frame);
  EXPECT_EQ(Shown(), std::string("5 March 2024 14:07:09 ") + GetParam().line + "\r\n");
}

std::string NameOfKind(const ::testing::TestParamInfo<KindRow>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(
    Each, SnifferKind,
    ::testing::Values(KindRow{"Read", Frame(0x04, "000F10000DDA2"),
                              "  000F10000DDA2  0x00F1 0x00 0x00 4 M->S Read"},
                      KindRow{"Write", Frame(0x84, "000F112343495"),
                              "  000F112343495  0x00F1 0x12 0x34 84 M->S Write"},
                      KindRow{"ReadAcknowledge", Frame(0x14, "000F12D1AFD13"),
                              "  000F12D1AFD13  0x00F1 0x2D 0x1A 14 S->M Read ACK"},
                      KindRow{"WriteAcknowledge", Frame(0x94, "000F11234A003"),
                              "  000F11234A003  0x00F1 0x12 0x34 94 S->M Write ACK"},
                      KindRow{"UnknownId", Frame(0x64, "000F1000096B5"),
                              " d000F1000096B5  0x00F1 0x00 0x00 64 S->M Unknown ID"},
                      KindRow{"Corrupted", Frame(0x24, "000F10000E4AF"),
                              " $000F10000E4AF  0x00F1 0x00 0x00 24 S->M Corrupted"},
                      KindRow{"Limits", Frame(0x44, "000F1FF01B0DD"),
                              " D000F1FF01B0DD  0x00F1 0xFF 0x01 44 *->* Limits"},
                      KindRow{"Other", Frame(0x34, "000F10102674B"),
                              " 4000F10102674B  0x00F1 0x01 0x02 34 "},
                      KindRow{"OtherHigh", Frame(0xB4, "000F103048DD9"),
                              "  000F103048DD9  0x00F1 0x03 0x04 B4 "}),
    NameOfKind);

// --- Lists and items -----------------------------------------------------------------------------

TEST_F(OpenSnifferTest, GivesARequestAnItemAndItsAnswerAValue) {
  HearBytes(Frame(0x04, "000F10000DDA2"));
  EXPECT_EQ(Detected(), "00F1");
  EXPECT_EQ(Items(), "1 Flow 00F1 \n");
  HearBytes(Frame(0x14, "000F12D1AFD13"));
  EXPECT_EQ(Detected(), "00F1");
  EXPECT_EQ(Items(), "1 Flow 00F1 45\n");
  EXPECT_EQ(Shown(),
            "5 March 2024 14:07:09   000F10000DDA2  0x00F1 0x00 0x00 4 M->S Read\r\n"
            "5 March 2024 14:07:09   000F12D1AFD13  0x00F1 0x2D 0x1A 14 S->M Read ACK\r\n");
}

TEST_F(OpenSnifferTest, GivesItemsInTheOrderOfTheRequests) {
  Exchange(0x01, 0x0A, 0x85);
  Exchange(0xF1, 0xF6, 0x80);
  Exchange(0x01, 0x00, 0x01);
  EXPECT_EQ(Detected(), "0001 00F1");
  EXPECT_EQ(Items(), "1 Status 0001 0000000000000001\n2 Flow 00F1 -10\n");
}

TEST_F(OpenSnifferTest, TakesTheClassForNothing) {
  Hear(0x01, 0xF1, 0, 0);
  Hear(0x16, 0xF1, 7, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 7\n");
}

TEST_F(OpenSnifferTest, GivesAWriteAnItemToo) {
  Hear(0x84, 0xF1, 60, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 \n");
  EXPECT_EQ(Item(1).RawValue, 60 * 256);
  Hear(0x94, 0xF1, 60, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 60\n");
}

TEST_F(OpenSnifferTest, ShowsAnIdThatTheFileDoesNotNameAsAWordInHexadecimal) {
  Exchange(0x01, 0, 0);
  Exchange(0x1234, 0x0F, 0xA0);
  EXPECT_EQ(Items(), "1 Status 0001 0000000000000000\n2 2 Name  1234 0x0FA0\n");
  EXPECT_EQ(Item(2).Alias, " No name ");
  EXPECT_EQ(Item(2).Representation, kHexadecimal);
  EXPECT_EQ(Item(2).SnifferType, kSniffUnsignedWord);
}

// Every answer says something of the ID, be it only that it is not known.
TEST_F(OpenSnifferTest, ShowsTheDataOfEveryKindThatASlaveSends) {
  Hear(kReadType, 0xF1, 0, 0);
  int value = 1;
  for (const int kind : {0x10, 0x90, 0x60, 0x20}) {
    Hear(static_cast<std::uint8_t>(kind + 4), 0xF1, ++value, 0);
    EXPECT_EQ(Items(), "1 Flow 00F1 " + std::to_string(value) + "\n") << kind;
  }
  Hear(0x04, 0xF1, 99, 0);
  Hear(0x84, 0xF1, 99, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 5\n");
}

TEST_F(OpenSnifferTest, TakesLimitsForTheTextOnly) {
  HearBytes(Frame(0x44, "000F1FF01B0DD"));
  EXPECT_EQ(Detected(), "");
  EXPECT_EQ(Items(), "");
  Exchange(0xF1, 7, 0);
  HearBytes(Frame(0x44, "000F1FF01B0DD"));
  EXPECT_EQ(Items(), "1 Flow 00F1 7\n");
}

TEST_F(OpenSnifferTest, TakesAnUnknownKindFromWhoeverSpokeLast) {
  Hear(0x34, 0x11, 0, 0);  // nobody has spoken: as a slave, which has no items
  EXPECT_EQ(Detected(), "0011");
  EXPECT_EQ(Items(), "");
  Hear(kReadType, 0xF1, 0, 0);
  Hear(0xB4, 0x12, 0, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 \n2 2 Name  0012 \n");
  Hear(kAnswerType, 0xF1, 7, 0);
  Hear(0x44, 0xF1, 1, 0);  // changes nothing of that
  Hear(0x34, 0xF1, 9, 0);
  Hear(0x34, 0x13, 0, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 9\n2 2 Name  0012 \n");
  EXPECT_EQ(Detected(), "0011 00F1 0012 0013");
}

TEST_F(OpenSnifferTest, GivesAnItemToAnIdWhoseAnswerCameFirst) {
  Hear(kAnswerType, 0xF1, 7, 0);
  EXPECT_EQ(Detected(), "00F1");
  EXPECT_EQ(Items(), "");
  Hear(kReadType, 0xF1, 0, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 7\n");
  Exchange(0xF1, 8, 0);
  EXPECT_EQ(Detected(), "00F1");
  EXPECT_EQ(Items(), "1 Flow 00F1 8\n");
}

TEST_F(OpenSnifferTest, PassesOverAFrameWithAnotherStart) {
  std::string frame = FrameOf(kReadType, 0xF1, 0, 0);
  frame.front() = 'x';
  HearBytes(frame);
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(Detected(), "");
  EXPECT_EQ(Counts(), "Frames: 1, bad: 0");
  EXPECT_EQ(world.port().opens(), 1);
}

TEST_F(OpenSnifferTest, TakesAFrameWhateverItsEnd) {
  std::string frame = FrameOf(kReadType, 0xF1, 0, 0);
  frame.back() = 'x';
  HearBytes(frame);
  EXPECT_EQ(Items(), "1 Flow 00F1 \n");
}

TEST_F(OpenSnifferTest, TakesCheckDigitsOfEitherCase) {
  HearBytes(Frame(0x04, "000F10000dda2"));
  EXPECT_EQ(Items(), "1 Flow 00F1 \n");
  EXPECT_EQ(Counts(), "Frames: 1, bad: 0");
}

TEST_F(OpenSnifferTest, ReadsAnIdOfEitherCaseAndKeepsItAsItCame) {
  HearBytes(Frame(0x04, "000f10000E8AA"));
  EXPECT_EQ(Detected(), "00f1");
  EXPECT_EQ(Items(), "1 Flow 00f1 \n");
}

TEST_F(SnifferTest, GivesAnIdTheFirstOfItsRecords) {
  Open("One,F1,0,L\r\nOther,F1,1,H\r\n");
  Exchange(0xF1, 1, 2);
  EXPECT_EQ(Items(), "1 One 00F1 2\n");
}

TEST_F(OpenSnifferTest, HasRoomFor512ItemsAndListsWhatComesBehind) {
  for (int id = 0x1000; id < 0x1000 + 513; ++id) Exchange(id, 1, 2);
  EXPECT_EQ(sniffer.List_DetectedID.List->size(), 513U);
  EXPECT_EQ(sniffer.List_DetectedID.List->back(), "1200");
  EXPECT_TRUE(sniffer.HasItem(512));
  EXPECT_EQ(sniffer.RAM_ID(512).Text.get(), "11FF");
  EXPECT_EQ(sniffer.RAM_VALUE(512).Text.get(), "0x0102");
  EXPECT_FALSE(sniffer.RAM_TEXT.Has(513));
  EXPECT_EQ(sniffer.RAM_ID(1).Text.get(), "1000");
  EXPECT_EQ(Counts(), "Frames: 1026, bad: 0");
  EXPECT_NE(Shown().find("0x1200"), std::string::npos);
}

TEST_F(OpenSnifferTest, GivesTheRoomOfADeletedItemAwayWhenThereIsNoOther) {
  for (int id = 0x1000; id < 0x1000 + 511; ++id) Exchange(id, 1, 2);
  sniffer.DeleteItem(3);
  Exchange(0x2000, 1, 2);
  EXPECT_EQ(sniffer.RAM_ID(512).Text.get(), "2000");
  Exchange(0x2001, 3, 4);
  EXPECT_EQ(sniffer.RAM_ID(3).Text.get(), "2001");
  EXPECT_EQ(sniffer.RAM_VALUE(3).Text.get(), "0x0304");
  Exchange(0x2002, 1, 2);
  EXPECT_EQ(Detected().substr(Detected().size() - 14), "2000 2001 2002");
  EXPECT_FALSE(sniffer.RAM_TEXT.Has(513));
}

TEST_F(OpenSnifferTest, ShowsAnAnswerOnEveryItemOfItsId) {
  Exchange(0xF1, 1, 2);
  Exchange(0x01, 1, 2);
  SniffLocation low = Item(2);
  low.Address = "00F1";
  low.SnifferType = kSniffSignedLow;
  low.Representation = kDecimal;
  sniffer.ChangeItem(2, low);
  Hear(kAnswerType, 0xF1, 5, 0xFB);
  EXPECT_EQ(Items(), "1 Flow 00F1 5\n2 Status 00F1 -5\n");
}

TEST_F(OpenSnifferTest, PlacesAnIdOfTheListOnADoubleClickWithItsLastValue) {
  Hear(kAnswerType, 0xF1, 1, 0);
  sniffer.List_DisplayDetectedID.DblClick(0);
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n");
  sniffer.List_DisplayDetectedID.DblClick(0);
  sniffer.List_DisplayDetectedID.DblClick(1);
  sniffer.List_DisplayDetectedID.DblClick(-1);
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n");
  Exchange(0xF1, 2, 0);
  EXPECT_EQ(Items(), "1 Flow 00F1 2\n");
  sniffer.DeleteItem(1);
  Exchange(0xF1, 3, 0);
  EXPECT_EQ(Items(), "");  // the user did not want it
  sniffer.List_DisplayDetectedID.DblClick(0);
  EXPECT_EQ(Items(), "2 Flow 00F1 3\n");
}

TEST_F(OpenSnifferTest, BringsAnItemIntoViewThatTheListIsAskedFor) {
  std::vector<int> seen;
  sniffer.Items.BringIntoView = [&](int index) { seen.push_back(index); };
  Hear(kAnswerType, 0xF1, 1, 0);
  Exchange(0x01, 1, 2);
  EXPECT_TRUE(seen.empty());  // only what the user asks for moves the view
  sniffer.List_DisplayDetectedID.DblClick(0);
  sniffer.List_DisplayDetectedID.DblClick(1);
  sniffer.List_DisplayDetectedID.DblClick(0);
  EXPECT_EQ(seen, (std::vector<int>{2, 1, 2}));
}

TEST_F(OpenSnifferTest, SaysThatThereIsNoRoomForAnIdOfTheList) {
  for (int id = 0x1000; id < 0x1000 + 513; ++id) Exchange(id, 1, 2);
  world.dialogs().ExpectMessageBox({.text = "There is room for 512 items. Delete one first.",
                                    .title = "Sniffer",
                                    .icon = Icon::kInformation});
  sniffer.List_DisplayDetectedID.DblClick(512);
  sniffer.List_DisplayDetectedID.DblClick(511);  // has its item
  sniffer.DeleteItem(7);
  sniffer.List_DisplayDetectedID.DblClick(512);
  EXPECT_EQ(sniffer.RAM_ID(7).Text.get(), "1200");
  EXPECT_EQ(sniffer.RAM_VALUE(7).Text.get(), "0x0102");
}

// As a master or a slave may send its digits.
std::string SmallFrame(std::uint8_t type, const std::string& data) {
  std::string frame = "\r" + std::string(1, static_cast<char>(type)) + "000f1" + data;
  frame += Stuff(Hex(Calc_Crc(frame.substr(1))), 4);
  return frame + "\n";
}

TEST_F(OpenSnifferTest, KnowsAnIdInSmallAndCapitalDigits) {
  HearBytes(SmallFrame(kReadType, "0000"));
  EXPECT_EQ(Items(), "1 Flow 00f1 \n");
  Hear(kAnswerType, 0xF1, 1, 0);
  EXPECT_EQ(Items(), "1 Flow 00f1 1\n");
  Hear(kReadType, 0xF1, 0, 0);
  HearBytes(SmallFrame(kAnswerType, "0200"));
  EXPECT_EQ(Items(), "1 Flow 00f1 2\n");
  EXPECT_EQ(Detected(), "00f1");
  sniffer.List_DisplayDetectedID.DblClick(0);
  EXPECT_EQ(Items(), "1 Flow 00f1 2\n");
}

TEST_F(OpenSnifferTest, LosesNothingByAnOkOnAnIdInSmallDigits) {
  HearBytes(SmallFrame(kReadType, "0000") + SmallFrame(kAnswerType, "0100"));
  sniffer.RAM_TEXT.DblClick(1);
  settings.cmd_Ok.Press();
  EXPECT_EQ(Items(), "1 Flow 00f1 1\n");
  HearBytes(SmallFrame(kAnswerType, "0200"));
  EXPECT_EQ(Items(), "1 Flow 00f1 2\n");
}

TEST_F(OpenSnifferTest, LosesNothingByAnOkOnAnIdThatIsNoNumber) {
  const std::string frame =
      "\r\x04"
      "0G1 ?0000";
  HearBytes(frame + Stuff(Hex(Calc_Crc(frame.substr(1))), 4) + "\n");
  EXPECT_EQ(Items(), "1 1 Name  G1 ? \n");
  sniffer.RAM_TEXT.DblClick(1);
  settings.cmd_Ok.Press();
  EXPECT_FALSE(settings.form.Visible);
  EXPECT_EQ(Items(), "1 1 Name  G1 ? \n");
}

// --- The running text ----------------------------------------------------------------------------

TEST_F(OpenSnifferTest, StampsEachLineWithItsMoment) {
  Hear(kReadType, 0xF1, 0, 0);
  world.Advance(10h);
  Hear(kReadType, 0xF1, 0, 0);
  const std::string second = Shown().substr(Shown().find("\r\n") + 2);
  EXPECT_EQ(second.substr(0, 22), "6 March 2024 00:07:09 ");
}

TEST_F(OpenSnifferTest, KeepsTheCaretAtTheEndOfTheText) {
  Hear(kReadType, 0xF1, 0, 0);
  Hear(kReadType, 0xF1, 0, 0);
  EXPECT_EQ(sniffer.txt_Messages.Marked.get(), (TextPiece{CharacterCount(Shown()), 0}));
}

TEST_F(OpenSnifferTest, CutsATextOfMoreThan30000Characters) {
  const std::string line =
      "5 March 2024 14:07:09   000F10000DDA2  0x00F1 0x00 0x00 4 M->S Read\r\n";
  const int lines = 30'000 / static_cast<int>(line.size()) + 1;
  for (int i = 0; i < lines; ++i) Hear(kReadType, 0xF1, 0, 0);
  const std::string longest = Shown();
  EXPECT_EQ(longest.size(), lines * line.size());
  ASSERT_GT(longest.size(), 30'000U);
  Hear(kReadType, 0xF1, 0, 0);
  EXPECT_EQ(Shown(), longest.substr(28'999) + line);
}

TEST(RunningText, StaysWholeAt30000Characters) {
  RunningText text;
  text.Append(std::string(30'000, 'a'));
  text.Append("b");
  EXPECT_EQ(text.get().size(), 30'001U);
  text.Append("c");
  EXPECT_EQ(text.get(), std::string(1001, 'a') + "bc");
}

TEST(RunningText, CountsCharactersAndNotBytes) {
  RunningText text;
  std::string umlauts;
  for (int i = 0; i < 30'000; ++i) umlauts += "\xC3\xA4";
  text.Append(umlauts);
  text.Append("b");
  EXPECT_EQ(CharacterCount(text.get()), 30'001);
  text.Append("c");
  EXPECT_EQ(CharacterCount(text.get()), 1003);
  EXPECT_EQ(text.get().substr(0, 2), "\xC3\xA4");
}

TEST_F(OpenSnifferTest, StandsStillWhilePausedAndGoesOn) {
  Hear(kReadType, 0xF1, 0, 0);
  const std::string before = Shown();
  EXPECT_TRUE(sniffer.sniffing);
  EXPECT_FALSE(sniffer.Command1.Enabled);
  sniffer.Command2.Press();
  EXPECT_FALSE(sniffer.sniffing);
  Exchange(0x01, 0, 0);
  EXPECT_EQ(Shown(), before);
  EXPECT_EQ(Items(), "1 Flow 00F1 \n2 Status 0001 0000000000000000\n");
  EXPECT_EQ(Counts(), "Frames: 3, bad: 0");
  EXPECT_FALSE(sniffer.Command2.Enabled);
  sniffer.Command1.Press();
  EXPECT_TRUE(sniffer.sniffing);
  EXPECT_EQ(Shown(), sniffer.running_text());
  EXPECT_NE(Shown().find("0x0001 0x00 0x00 14 S->M Read ACK"), std::string::npos);
  EXPECT_EQ(sniffer.txt_Messages.Marked->start, CharacterCount(Shown()));
}

TEST_F(OpenSnifferTest, ClearsTheTextAndNothingElse) {
  Exchange(0xF1, 1, 0);
  sniffer.cmd_Clear.Press();
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(Items(), "1 Flow 00F1 1\n");
  EXPECT_EQ(Counts(), "Frames: 2, bad: 0");
  Hear(kReadType, 0xF1, 0, 0);
  EXPECT_EQ(Shown().find("M->S Read\r\n"), Shown().size() - 11);
  sniffer.Command2.Press();
  sniffer.cmd_Clear.Press();
  EXPECT_EQ(Shown(), "");
  EXPECT_FALSE(sniffer.sniffing);
}

TEST_F(OpenSnifferTest, FindsATextAndPausesForIt) {
  Exchange(0xF1, 0x2D, 0);
  Exchange(0x01, 0, 0);
  sniffer.txt_Find.Text = "READ ack";
  sniffer.cmd_Find.Press();
  EXPECT_FALSE(sniffer.sniffing);
  const auto first = static_cast<int>(Shown().find("Read ACK"));
  EXPECT_EQ(sniffer.txt_Messages.Marked.get(), (TextPiece{first, 8}));
  sniffer.cmd_Find.Press();
  const auto second = static_cast<int>(Shown().rfind("Read ACK"));
  EXPECT_EQ(sniffer.txt_Messages.Marked.get(), (TextPiece{second, 8}));
  EXPECT_NE(first, second);
  sniffer.cmd_Find.Press();
  EXPECT_EQ(sniffer.txt_Messages.Marked->start, first);
  Hear(kReadType, 0xF1, 0, 0);
  EXPECT_EQ(sniffer.txt_Messages.Marked->start, first);
}

TEST_F(OpenSnifferTest, SaysThatATextIsNotThereAndGoesOn) {
  Exchange(0xF1, 0x2D, 0);
  sniffer.cmd_Find.Press();
  EXPECT_TRUE(sniffer.sniffing);  // nothing is looked for
  sniffer.txt_Find.Text = "0x9999";
  sniffer.cmd_Find.Press();
  EXPECT_EQ(sniffer.lbl_Find.Caption.get(), "Not found.");
  EXPECT_TRUE(sniffer.sniffing);  // nothing is there that could run away
  sniffer.txt_Find.Text = "0x";
  EXPECT_EQ(sniffer.lbl_Find.Caption.get(), "");
}

TEST_F(OpenSnifferTest, SaysThatATextIsNotThereNoLongerThanThatHolds) {
  const auto look_in_vain = [this] {
    sniffer.cmd_Find.Press();
    EXPECT_EQ(sniffer.lbl_Find.Caption.get(), "Not found.");
  };
  Exchange(0xF1, 0x2D, 0);
  sniffer.txt_Find.Text = "0X1234";
  look_in_vain();
  Exchange(0xF1, 0x2D, 0);
  EXPECT_EQ(sniffer.lbl_Find.Caption.get(), "Not found.");
  Exchange(0x1234, 1, 2);
  EXPECT_EQ(sniffer.lbl_Find.Caption.get(), "");
  sniffer.txt_Find.Text = "elsewhere";
  look_in_vain();
  sniffer.cmd_Clear.Press();
  EXPECT_EQ(sniffer.lbl_Find.Caption.get(), "");
  sniffer.Command2.Press();
  look_in_vain();
  sniffer.Command1.Press();
  EXPECT_EQ(sniffer.lbl_Find.Caption.get(), "");
}

TEST_F(OpenSnifferTest, NeverMarksWhatIsNotInTheText) {
  const auto& text = sniffer.txt_Messages;
  int beyond = 0;
  sniffer.txt_Messages.SetView([&] {
    const int end = text.Marked->start + text.Marked->length;
    beyond += end > CharacterCount(text.Text.get()) ? 1 : 0;
  });
  for (int i = 0; i < 500; ++i) Exchange(0xF1, 1, 2);  // cut several times
  for (CommandButton* const then : {&sniffer.cmd_Clear, &sniffer.Command1}) {
    Exchange(0xF1, 1, 2);
    sniffer.txt_Find.Text = "Read ACK";
    sniffer.cmd_Find.Press();
    EXPECT_EQ(text.Marked->length, 8);
    for (int i = 0; i < 450; ++i) Exchange(0xF1, 1, 2);
    then->Press();
    EXPECT_EQ(text.Marked.get(), (TextPiece{CharacterCount(text.Text.get()), 0}));
    sniffer.Command1.Press();
  }
  EXPECT_EQ(beyond, 0);
}

TEST(FindInText, CountsCharactersAndNotBytes) {
  EXPECT_EQ(FindInText("M\xC3\xA4rz M\xC3\xA4rz", "M\xC3\xA4", 1), (TextPiece{5, 2}));
  EXPECT_EQ(FindInText("M\xC3\xA4rz M\xC3\xA4rz", "rz", 9), (TextPiece{2, 2}));
  EXPECT_EQ(FindInText("abc", "abcd", 0), std::nullopt);
}

}  // namespace
}  // namespace tarnlink
