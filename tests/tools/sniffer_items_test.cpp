// What the items of the sniffer show of an answer, and where they stand.

#include <array>
#include <set>
#include <utility>

#include "tools/sniffer_fixture.h"

namespace tarnlink {
namespace {

// --- Values --------------------------------------------------------------------------------------

std::string ValueText(int type, int representation, const std::string& data, int bit = 0) {
  SniffLocation item = InitialSniffLocation();
  item.SnifferType = type;
  item.Representation = representation;
  item.BitAddress = static_cast<std::uint8_t>(bit);
  return TakeSniffedValue(item, Frame(0x14, "000F1" + data + "FFFF"));
}

// In the four representations.
std::string AllTexts(int type, const std::string& data) {
  std::string texts;
  for (int i = 0; i < 4; ++i) texts += (i > 0 ? " " : "") + ValueText(type, i, data);
  return texts;
}

TEST(SniffedValue, ShowsABitAsTrueOrFalseInEveryRepresentation) {
  EXPECT_EQ(AllTexts(kSniffBit, "FFFE"), "FALSE FALSE FALSE FALSE");
  EXPECT_EQ(AllTexts(kSniffBit, "0001"), "TRUE TRUE TRUE TRUE");
}

TEST(SniffedValue, TakesEachBitFromTheLowByte) {
  for (int bit = 0; bit < 8; ++bit) {
    SniffLocation item = InitialSniffLocation();
    item.BitAddress = static_cast<std::uint8_t>(bit);
    const int low = 1 << bit;
    EXPECT_EQ(
        TakeSniffedValue(item, BuildZoltMessage(0x14, "0", 1, 0, static_cast<std::uint8_t>(low))),
        "TRUE");
    EXPECT_EQ(TakeSniffedValue(
                  item, BuildZoltMessage(0x14, "0", 1, 0xFF, static_cast<std::uint8_t>(~low))),
              "FALSE");
  }
  EXPECT_EQ(ValueText(kSniffBit, 0, "FFFF", 8), "FALSE");  // there is none
}

TEST(SniffedValue, ShowsASignedHighByte) {
  EXPECT_EQ(AllTexts(kSniffSignedHigh, "00FF"), "0 0x00 00000000 0");
  EXPECT_EQ(AllTexts(kSniffSignedHigh, "7FFF"), "127 0x7F 01111111 177");
  EXPECT_EQ(AllTexts(kSniffSignedHigh, "8000"), "-128 0x80 10000000 200");
  EXPECT_EQ(AllTexts(kSniffSignedHigh, "FF00"), "-1 0xFF 11111111 377");
}

TEST(SniffedValue, ShowsAnUnsignedHighByte) {
  EXPECT_EQ(AllTexts(kSniffUnsignedHigh, "00FF"), "0 0x00 00000000 0");
  EXPECT_EQ(AllTexts(kSniffUnsignedHigh, "8000"), "128 0x80 10000000 200");
  EXPECT_EQ(AllTexts(kSniffUnsignedHigh, "FF00"), "255 0xFF 11111111 377");
}

TEST(SniffedValue, ShowsASignedLowByte) {
  EXPECT_EQ(AllTexts(kSniffSignedLow, "FF00"), "0 0x00 00000000 0");
  EXPECT_EQ(AllTexts(kSniffSignedLow, "FF7F"), "127 0x7F 01111111 177");
  EXPECT_EQ(AllTexts(kSniffSignedLow, "0080"), "-128 0x80 10000000 200");
  EXPECT_EQ(AllTexts(kSniffSignedLow, "000A"), "10 0x0A 00001010 12");
}

TEST(SniffedValue, ShowsAnUnsignedWord) {
  EXPECT_EQ(AllTexts(kSniffUnsignedWord, "0000"), "0 0x0000 0000000000000000 0");
  EXPECT_EQ(AllTexts(kSniffUnsignedWord, "0A85"), "2693 0x0A85 0000101010000101 5205");
  EXPECT_EQ(AllTexts(kSniffUnsignedWord, "FFFF"), "65535 0xFFFF 1111111111111111 177777");
}

TEST(SniffedValue, ShowsASignedWord) {
  EXPECT_EQ(AllTexts(kSniffSignedWord, "0102"), "258 0x0102 0000000100000010 402");
  EXPECT_EQ(AllTexts(kSniffSignedWord, "7FFF"), "32767 0x7FFF 0111111111111111 77777");
  EXPECT_EQ(AllTexts(kSniffSignedWord, "8000"), "-32768 0x8000 1000000000000000 100000");
  EXPECT_EQ(AllTexts(kSniffSignedWord, "FFF6"), "-10 0xFFF6 1111111111110110 177766");
}

TEST(SniffedValue, TakesDigitsThatAreNoneAsFarAsTheyGo) {
  EXPECT_EQ(ValueText(kSniffUnsignedWord, kHexadecimal, "G1A?"), "0x000A");
  EXPECT_EQ(ValueText(kSniffSignedHigh, kDecimal, "ff00"), "-1");
}

TEST_F(SnifferTest, BeginsWithItemsThatNothingWasGivenTo) {
  for (const int index : {0, 1, 512}) {
    const SniffLocation& item = Item(index);
    EXPECT_EQ(item.Specification, 1);
    EXPECT_EQ(item.Class, 1);
    EXPECT_EQ(item.SelectByte, 0);
    EXPECT_EQ(item.StorageType, 1);
    EXPECT_EQ(item.SnifferType, 0);
    EXPECT_EQ(item.Address, "0000");
    EXPECT_EQ(item.BitAddress, 0);
    EXPECT_EQ(item.Alias, "No name");
    EXPECT_EQ(item.ActualVariable, "Not Assigned");
    EXPECT_EQ(item.RawValue, 0);
    EXPECT_EQ(item.LogEnable, 0);
    EXPECT_EQ(item.DDEEnable, 0);
    EXPECT_EQ(item.ExcelColumn, "1");
  }
  EXPECT_EQ(sniffer.SniffItems.size(), 513U);
}

// --- Places --------------------------------------------------------------------------------------

// "1 2 0 3" for the items in their cells, row by row, 0 for an empty one.
std::string Cells(const SnifferLayout& layout, int count) {
  std::string text;
  for (int cell = 0; cell < count; ++cell) {
    const ItemPlace place{kCellGap + static_cast<float>(cell % layout.columns()) * kCellWidth,
                          kCellGap + static_cast<float>(cell / layout.columns()) * kCellHeight};
    int there = 0;
    for (int i = 1; i <= kLastItem; ++i) {
      if (layout.Has(i) && layout.PlaceOf(i) == place) there = i;
    }
    text += (cell > 0 ? " " : "") + std::to_string(there);
  }
  return text;
}

SnifferLayout TwoColumns(int items) {
  SnifferLayout layout;
  layout.SetWidth(kCellGap + 2 * kCellWidth);
  for (int i = 1; i <= items; ++i) layout.Add(i);
  return layout;
}

ItemPlace PlaceOfCell(int column, int row) {
  return {kCellGap + static_cast<float>(column) * kCellWidth,
          kCellGap + static_cast<float>(row) * kCellHeight};
}

TEST(SnifferLayout, HasAsManyColumnsAsFit) {
  SnifferLayout layout;
  EXPECT_EQ(layout.columns(), 1);
  for (const auto& [width, columns] : {std::pair{0.0F, 1},
                                       {-1.0F, 1},
                                       {kCellGap + 2 * kCellWidth - 1, 1},
                                       {kCellGap + 2 * kCellWidth, 2},
                                       {kCellGap + 3 * kCellWidth, 3}}) {
    layout.SetWidth(width);
    EXPECT_EQ(layout.columns(), columns) << width;
  }
}

TEST(SnifferLayout, FillsRowAfterRow) {
  const SnifferLayout layout = TwoColumns(3);
  EXPECT_EQ(layout.PlaceOf(1), PlaceOfCell(0, 0));
  EXPECT_EQ(layout.PlaceOf(2), PlaceOfCell(1, 0));
  EXPECT_EQ(layout.PlaceOf(3), PlaceOfCell(0, 1));
  EXPECT_EQ(layout.Height(), kCellGap + 2 * kCellHeight);
  EXPECT_EQ(SnifferLayout().Height(), kCellGap);
}

TEST(SnifferLayout, KeepsTheOrderWhenTheWidthChanges) {
  SnifferLayout layout = TwoColumns(5);
  layout.SetWidth(0);
  EXPECT_EQ(Cells(layout, 5), "1 2 3 4 5");
  EXPECT_EQ(layout.Height(), kCellGap + 5 * kCellHeight);
  layout.SetWidth(kCellGap + 3 * kCellWidth);
  EXPECT_EQ(layout.PlaceOf(4), PlaceOfCell(0, 1));
}

TEST(SnifferLayout, GivesTheCellOfADeletedItemAway) {
  SnifferLayout layout = TwoColumns(3);
  layout.Remove(2);
  EXPECT_FALSE(layout.Has(2));
  EXPECT_EQ(Cells(layout, 3), "1 0 3");
  layout.Add(9);
  EXPECT_EQ(Cells(layout, 3), "1 9 3");
  layout.Add(9);
  layout.Remove(2);
  EXPECT_EQ(Cells(layout, 4), "1 9 3 0");
  layout.Remove(3);
  EXPECT_EQ(layout.Height(), kCellGap + kCellHeight);
}

TEST(SnifferLayout, MovesAnItemToTheNearestCell) {
  SnifferLayout layout = TwoColumns(3);
  ItemPlace place = PlaceOfCell(1, 1);
  place.Left -= 0.4F * kCellWidth;
  place.Top += 0.4F * kCellHeight;
  layout.MoveTo(1, place);
  EXPECT_EQ(Cells(layout, 4), "0 2 3 1");
}

TEST(SnifferLayout, ExchangesAnItemWithTheOneThatStandsThere) {
  SnifferLayout layout = TwoColumns(4);
  layout.MoveTo(1, PlaceOfCell(1, 1));
  EXPECT_EQ(Cells(layout, 4), "4 2 3 1");
  layout.MoveTo(1, PlaceOfCell(1, 1));
  EXPECT_EQ(Cells(layout, 4), "4 2 3 1");
}

TEST(SnifferLayout, HoldsAnItemAtTheEdges) {
  SnifferLayout layout = TwoColumns(3);
  layout.MoveTo(3, {-5000.0F, -5000.0F});
  EXPECT_EQ(Cells(layout, 3), "3 2 1");
  layout.MoveTo(3, {1e9F, 1e9F});  // at most one row below the last
  EXPECT_EQ(Cells(layout, 6), "0 2 1 0 0 3");
  layout.MoveTo(7, PlaceOfCell(0, 0));  // not there
  EXPECT_EQ(Cells(layout, 6), "0 2 1 0 0 3");
}

TEST(SnifferLayout, StepsByCells) {
  SnifferLayout layout = TwoColumns(2);
  layout.Step(1, 1, 0);
  EXPECT_EQ(Cells(layout, 2), "2 1");
  layout.Step(1, 1, 0);
  layout.Step(1, 0, -1);
  EXPECT_EQ(Cells(layout, 2), "2 1");
  layout.Step(1, 0, 1);
  EXPECT_EQ(Cells(layout, 4), "2 0 0 1");
}

// --- On the form ---------------------------------------------------------------------------------

struct Box {
  float left, top, right, bottom;
};

bool Cover(const Box& one, const Box& other) {
  return one.left < other.right && other.left < one.right && one.top < other.bottom &&
         other.top < one.bottom;
}

class SnifferPlaces : public OpenSnifferTest {
 protected:
  void ExpectNoneCoversAnother() {
    std::vector<Box> boxes;
    for (int i = 1; i <= kLastItem; ++i) {
      if (!sniffer.HasItem(i)) continue;
      for (ControlArray<TextBox>* const array :
           {&sniffer.RAM_TEXT, &sniffer.RAM_ID, &sniffer.RAM_VALUE}) {
        const TextBox& box = (*array)(i);
        boxes.push_back({box.Left, box.Top, box.Left + box.Width, box.Top + box.Height});
        EXPECT_GE(box.Left.get(), 0.0F);
        EXPECT_LE(box.Top + box.Height, sniffer.Items.ContentHeight.get());
      }
    }
    int covered = 0;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
      for (std::size_t j = 0; j < i; ++j) covered += Cover(boxes[i], boxes[j]) ? 1 : 0;
    }
    EXPECT_EQ(covered, 0);
  }
  void Press(int index, MouseButton button, float X, float Y) {
    sniffer.RAM_TEXT.MouseDown(index, {.button = button, .X = X, .Y = Y});
  }
  ItemPlace PlaceOf(int index) {
    return {sniffer.RAM_TEXT(index).Left, sniffer.RAM_TEXT(index).Top};
  }
};

TEST_F(SnifferPlaces, NeverCoverEachOtherHoweverManyThereAre) {
  sniffer.Items.Resized(kCellGap + 3 * kCellWidth);
  for (int id = 1; id <= kLastItem; ++id) Hear(kReadType, id, 0, 0);
  ExpectNoneCoversAnother();
  EXPECT_EQ(sniffer.Items.ContentHeight.get(), kCellGap + 171 * kCellHeight);
  for (int i = 1; i < 300; ++i) {
    Press(i, MouseButton::kLeft, 10, 20);
    sniffer.Items.DragDrop(static_cast<float>(i * 7919 % 20'000),
                           static_cast<float>(i * 104'729 % 60'000));
  }
  ExpectNoneCoversAnother();
  sniffer.Items.Resized(kCellGap + 2 * kCellWidth);
  ExpectNoneCoversAnother();
}

TEST_F(SnifferPlaces, FollowTheLeftButtonOnly) {
  for (int id = 1; id <= 3; ++id) Hear(kReadType, id, 0, 0);
  EXPECT_EQ(PlaceOf(3), PlaceOfCell(0, 2));
  Press(3, MouseButton::kRight, 0, 0);
  sniffer.Items.DragDrop(kCellGap, kCellGap);
  EXPECT_EQ(PlaceOf(3), PlaceOfCell(0, 2));
  Press(3, MouseButton::kLeft, 100, 50);
  sniffer.Items.DragDrop(kCellGap + 100, kCellGap + 50);
  EXPECT_EQ(PlaceOf(3), PlaceOfCell(0, 0));
  EXPECT_EQ(PlaceOf(1), PlaceOfCell(0, 2));
  sniffer.Items.DragDrop(kCellGap, kCellGap + kCellHeight);  // nothing is held any more
  EXPECT_EQ(PlaceOf(3), PlaceOfCell(0, 0));
}

TEST_F(SnifferPlaces, GoByWhereTheItemIsHeld) {
  for (int id = 1; id <= 2; ++id) Hear(kReadType, id, 0, 0);
  Press(2, MouseButton::kLeft, 0, 0.9F * kItemHeight);
  // The pointer is nearer to the second row, the item to the first.
  sniffer.Items.DragDrop(kCellGap, kCellGap + 1.2F * kItemHeight);
  EXPECT_EQ(PlaceOf(2), PlaceOfCell(0, 0));
}

TEST_F(SnifferPlaces, StayWhenADragIsCancelledOrBecomesADoubleClick) {
  for (int id = 1; id <= 2; ++id) Hear(kReadType, id, 0, 0);
  Press(2, MouseButton::kLeft, 0, 0);
  sniffer.Items.DragCancel();
  sniffer.Items.DragDrop(kCellGap, kCellGap);
  EXPECT_EQ(PlaceOf(2), PlaceOfCell(0, 1));
  Press(2, MouseButton::kLeft, 0, 0);
  sniffer.RAM_TEXT.DblClick(2);
  EXPECT_TRUE(settings.form.Visible);
  sniffer.Items.DragDrop(kCellGap, kCellGap);
  EXPECT_EQ(PlaceOf(2), PlaceOfCell(0, 1));
}

TEST_F(SnifferPlaces, StayWhenTheItemThatIsDraggedIsDeleted) {
  for (int id = 1; id <= 2; ++id) Hear(kReadType, id, 0, 0);
  Press(2, MouseButton::kLeft, 0, 0);
  sniffer.DeleteItem(2);
  sniffer.Items.DragDrop(kCellGap, kCellGap);
  EXPECT_EQ(PlaceOf(1), PlaceOfCell(0, 0));
  EXPECT_FALSE(sniffer.RAM_TEXT(2).Visible);
}

TEST_F(SnifferPlaces, GoWithTheArrowKeys) {
  for (int id = 1; id <= 2; ++id) Hear(kReadType, id, 0, 0);
  sniffer.RAM_TEXT.Arrow(1, {.down = 1});
  EXPECT_EQ(PlaceOf(1), PlaceOfCell(0, 1));
  EXPECT_EQ(PlaceOf(2), PlaceOfCell(0, 0));
}

TEST_F(SnifferPlaces, StayInViewAsTheyGoWithTheArrowKeys) {
  for (int id = 1; id <= 2; ++id) Hear(kReadType, id, 0, 0);
  ItemPlace seen;
  sniffer.Items.BringIntoView = [&](int index) { seen = PlaceOf(index); };
  sniffer.RAM_TEXT.Arrow(1, {.down = 1});
  EXPECT_EQ(seen, PlaceOfCell(0, 1));
}

TEST_F(SnifferPlaces, PutNameIdAndValueSideBySide) {
  Exchange(0xF1, 1, 0);
  EXPECT_EQ(sniffer.RAM_TEXT(1).Left.get(), kCellGap);
  EXPECT_EQ(sniffer.RAM_ID(1).Left.get(), kCellGap + kItemNameWidth + kItemGap);
  EXPECT_EQ(sniffer.RAM_VALUE(1).Left.get(),
            kCellGap + kItemNameWidth + kItemGap + kItemIdWidth + kItemGap);
  EXPECT_TRUE(sniffer.RAM_TEXT(1).Locked && sniffer.RAM_ID(1).Locked &&
              sniffer.RAM_VALUE(1).Locked);
  EXPECT_EQ(sniffer.RAM_TEXT(1).ToolTipText.get(), "Flow");
}

// --- Settings of an item -------------------------------------------------------------------------

class SniffSettings : public OpenSnifferTest {
 protected:
  SniffSettings() { Exchange(0xF1, 0x2D, 0x1A); }
  void Show() { sniffer.RAM_TEXT.DblClick(1); }
};

TEST_F(SniffSettings, ShowWhatTheItemHas) {
  EXPECT_FALSE(settings.form.Visible);
  Show();
  EXPECT_TRUE(settings.form.Visible);
  EXPECT_EQ(settings.Index(), 1);
  EXPECT_EQ(settings.txt_SniffAddress.Text.get(), "00F1");
  EXPECT_EQ(settings.txt_SniffAlias.Text.get(), "Flow");
  EXPECT_EQ(settings.opt_sniff_storage_type.Selected(), kSniffSignedHigh);
  EXPECT_EQ(settings.opt_Representation.Selected(), kDecimal);
  EXPECT_EQ(settings.txt_SniffBitAddress.Text.get(), "0");
  EXPECT_FALSE(settings.chk_Log.Value);
  EXPECT_FALSE(settings.chk_UseDDE.Value);
  EXPECT_EQ(settings.txt_ExcelColumn.Text.get(), "1");
}

TEST_F(SniffSettings, EnableTheBitNumberForABitOnly) {
  Show();
  EXPECT_FALSE(settings.txt_SniffBitAddress.Enabled);
  EXPECT_EQ(settings.txt_SniffBitAddress.BackColor.get(), static_cast<Colour>(0x8000000F));
  EXPECT_TRUE(settings.frm_Representation.Enabled);
  settings.opt_sniff_storage_type.Choose(kSniffBit);
  EXPECT_TRUE(settings.txt_SniffBitAddress.Enabled);
  EXPECT_EQ(settings.txt_SniffBitAddress.BackColor.get(), kWindowBackground);
  EXPECT_FALSE(settings.frm_Representation.Enabled);
  EXPECT_FALSE(settings.opt_Representation(2).Enabled);
  for (const int type : {kSniffSignedHigh, kSniffUnsignedHigh, kSniffSignedLow, kSniffUnsignedWord,
                         kSniffSignedWord}) {
    settings.opt_sniff_storage_type.Choose(kSniffBit);
    settings.txt_SniffBitAddress.Text = "5";
    settings.opt_sniff_storage_type.Choose(type);
    EXPECT_FALSE(settings.txt_SniffBitAddress.Enabled) << type;
    EXPECT_EQ(settings.txt_SniffBitAddress.Text.get(), "0") << type;
    EXPECT_EQ(settings.txt_SniffBitAddress.BackColor.get(), kFormBackground) << type;
    EXPECT_TRUE(settings.frm_Representation.Enabled) << type;
    EXPECT_TRUE(settings.opt_Representation(2).Enabled) << type;
  }
}

TEST_F(SniffSettings, AreTakenOverByOk) {
  Show();
  settings.txt_SniffAddress.Text = "f2";
  settings.txt_SniffAlias.Text = "Burner\r\non\nnow\rthen";
  settings.opt_sniff_storage_type.Choose(kSniffBit);
  settings.txt_SniffBitAddress.Text = "3";
  settings.opt_Representation.Choose(kOctal);
  settings.chk_Log.Value = true;
  settings.chk_UseDDE.Value = true;
  settings.txt_ExcelColumn.Text = "12";
  settings.cmd_Ok.Press();
  EXPECT_FALSE(settings.form.Visible);
  EXPECT_EQ(Items(), "1 Burner on now then 00F2 \n");
  const SniffLocation& item = Item(1);
  EXPECT_EQ(item.Alias, "Burner on now then");
  EXPECT_EQ(item.Address, "00F2");
  EXPECT_EQ(item.SnifferType, kSniffBit);
  EXPECT_EQ(item.BitAddress, 3);
  EXPECT_EQ(item.Representation, kOctal);
  EXPECT_EQ(item.LogEnable, 1);
  EXPECT_EQ(item.DDEEnable, 1);
  EXPECT_EQ(item.ExcelColumn, "12");
  Hear(kAnswerType, 0xF2, 0, 8);
  EXPECT_EQ(sniffer.RAM_VALUE(1).Text.get(), "TRUE");
  Show();
  EXPECT_EQ(settings.txt_SniffBitAddress.Text.get(), "3");
  EXPECT_TRUE(settings.txt_SniffBitAddress.Enabled);
  EXPECT_TRUE(settings.chk_Log.Value);
  EXPECT_TRUE(settings.chk_UseDDE.Value);
}

TEST_F(SniffSettings, AreDroppedByCancel) {
  Show();
  settings.txt_SniffAddress.Text = "00F2";
  settings.txt_SniffAlias.Text = "x";
  settings.opt_sniff_storage_type.Choose(kSniffBit);
  settings.cmd_Cancel.Press();
  EXPECT_FALSE(settings.form.Visible);
  EXPECT_EQ(Items(), "1 Flow 00F1 45\n");
  EXPECT_EQ(Item(1).SnifferType, kSniffSignedHigh);
}

TEST_F(SniffSettings, ShowTheLastAnswerAnew) {
  Show();
  settings.txt_SniffAlias.Text = "Feed";
  settings.cmd_Ok.Press();
  EXPECT_EQ(Items(), "1 Feed 00F1 45\n");
  Show();
  settings.opt_Representation.Choose(kBinary);
  settings.cmd_Ok.Press();
  EXPECT_EQ(Items(), "1 Feed 00F1 00101101\n");
  Hear(kAnswerType, 0x11, 0x12, 0x34);  // which has no item
  Show();
  settings.txt_SniffAddress.Text = "11";
  settings.cmd_Ok.Press();
  EXPECT_EQ(Items(), "1 Feed 0011 00010010\n");
  Show();
  settings.txt_SniffAddress.Text = "12";
  settings.cmd_Ok.Press();
  EXPECT_EQ(Items(), "1 Feed 0012 \n");  // which nobody has answered
}

TEST_F(SniffSettings, KeepToolTipsTheSameAsTheirBoxes) {
  const auto expect_same = [this](const std::string& when) {
    for (ControlArray<TextBox>* const boxes :
         {&sniffer.RAM_TEXT, &sniffer.RAM_ID, &sniffer.RAM_VALUE}) {
      EXPECT_EQ((*boxes)(1).ToolTipText.get(), (*boxes)(1).Text.get()) << when;
    }
  };
  expect_same("a value");
  Exchange(0xF1, 7, 0);
  expect_same("another");
  Show();
  settings.txt_SniffAlias.Text = "Feed";
  settings.cmd_Ok.Press();
  expect_same("renamed");
  Exchange(0xF1, 8, 0);
  expect_same("a value of the new name");
  Show();
  settings.opt_sniff_storage_type.Choose(kSniffBit);
  settings.cmd_Ok.Press();
  expect_same("another type");
  sniffer.DeleteItem(1);
  expect_same("deleted");
}

TEST_F(SniffSettings, KeepTheNumberOfAnItemWithoutAName) {
  Exchange(0x77, 1, 2);
  sniffer.RAM_TEXT.DblClick(2);
  EXPECT_EQ(settings.txt_SniffAlias.Text.get(), " No name ");
  settings.cmd_Ok.Press();
  EXPECT_EQ(Items(), "1 Flow 00F1 45\n2 2 Name  0077 0x0102\n");
  sniffer.RAM_TEXT.DblClick(2);
  settings.opt_Representation.Choose(kOctal);
  settings.cmd_Ok.Press();
  EXPECT_EQ(Items(), "1 Flow 00F1 45\n2 2 Name  0077 402\n");
  sniffer.RAM_TEXT.DblClick(2);
  settings.txt_SniffAlias.Text = "Fan";
  settings.cmd_Ok.Press();
  EXPECT_EQ(Items(), "1 Flow 00F1 45\n2 Fan 0077 402\n");
}

TEST_F(SniffSettings, StayOpenAndSayWhatIsWrong) {
  const SniffLocation before = Item(1);
  for (const char* bit : {"8", "-1", "x", "", "99999999999", "1.5", "0x1", "&H1"}) {
    Show();
    settings.opt_sniff_storage_type.Choose(kSniffBit);
    settings.txt_SniffBitAddress.Text = std::string(bit);
    settings.cmd_Ok.Press();
    EXPECT_TRUE(settings.form.Visible) << bit;
    EXPECT_EQ(settings.lbl_Wrong.Caption.get(), "The bit is 0 to 7.") << bit;
    settings.cmd_Cancel.Press();
  }
  for (const char* id : {"x", "", " ", "&H1", "-1", "0G", "12345"}) {
    Show();
    EXPECT_EQ(settings.lbl_Wrong.Caption.get(), "") << id;
    settings.txt_SniffAddress.Text = std::string(id);
    settings.cmd_Ok.Press();
    EXPECT_TRUE(settings.form.Visible) << id;
    EXPECT_EQ(settings.lbl_Wrong.Caption.get(), "The ID is 1 to 4 hexadecimal digits.") << id;
    settings.cmd_Cancel.Press();
  }
  EXPECT_EQ(Item(1), before);
  EXPECT_EQ(Items(), "1 Flow 00F1 45\n");
  Show();
  settings.txt_SniffAddress.Text = "x";
  settings.cmd_Ok.Press();
  settings.txt_SniffAddress.Text = " 7 ";
  EXPECT_EQ(settings.lbl_Wrong.Caption.get(), "");
  settings.cmd_Ok.Press();
  EXPECT_FALSE(settings.form.Visible);
  EXPECT_EQ(Item(1).Address, "0007");
}

TEST_F(SniffSettings, StepTheColumnWithinItsRange) {
  Show();
  settings.ud_Col.Press(1);
  EXPECT_EQ(settings.txt_ExcelColumn.Text.get(), "2");
  settings.ud_Col.Press(-1);
  settings.ud_Col.Press(-1);
  EXPECT_EQ(settings.txt_ExcelColumn.Text.get(), "1");
  settings.txt_ExcelColumn.Text = "16384";
  settings.ud_Col.Press(1);
  EXPECT_EQ(settings.txt_ExcelColumn.Text.get(), "16384");
}

TEST_F(SniffSettings, DeleteTheItem) {
  Show();
  settings.cmdDeleteLocation.Press();
  EXPECT_FALSE(settings.form.Visible);
  EXPECT_EQ(Items(), "");
  EXPECT_EQ(Item(1), InitialSniffLocation());
  EXPECT_FALSE(sniffer.RAM_VALUE(1).Visible);
  EXPECT_EQ(Detected(), "00F1");
  Exchange(0x01, 0, 1);  // the next item has a number of its own
  EXPECT_EQ(Items(), "2 Status 0001 0000000000000001\n");
  Hear(kAnswerType, 0x0000, 0, 1);  // a deleted item is on no ID
  EXPECT_EQ(sniffer.RAM_VALUE(1).Text.get(), "");
}

TEST_F(SniffSettings, CloseWithTheSnifferAndDoNothingToAnItemThatIsGone) {
  Show();
  sniffer.DeleteItem(1);
  settings.cmd_Ok.Press();
  EXPECT_EQ(Items(), "");
  Exchange(0x01, 0, 1);
  sniffer.RAM_TEXT.DblClick(2);
  EXPECT_TRUE(settings.form.Visible);
  sniffer.Unload();
  EXPECT_FALSE(settings.form.Visible);
}

}  // namespace
}  // namespace tarnlink
