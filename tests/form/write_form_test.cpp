// The dialog for a value by itself: what it shows and what its controls do.

#include "form/write_fixture.h"

namespace tarnlink {
namespace {

class WriteForm : public TarnlinkWrite {
 protected:
  WriteForm() {
    dialog().SetFocus = [this] { ++focused; };
  }

  // The location's value is `text`, shown in this representation.
  void Open(std::int32_t representation, const std::string& text) {
    Run({ByteAt("F410", representation)});
    monitor.main.RAM_LOC_VAL(1).Text = text;
    Ask(1);
  }

  std::string VisibleFormats() {
    std::string text;
    for (int i = 0; i < 4; ++i) text += dialog().opt_WriteValueFormat(i).Visible ? '1' : '0';
    return text;
  }
  std::string GoesOut() { return Caption(dialog().lbl_GoesOut); }

  int focused = 0;
};

TEST_F(WriteForm, BeginsWithTheValueOfTheBoxInItsRepresentation) {
  Open(kHexadecimal, "2A");
  EXPECT_TRUE(dialog().form.Visible);
  EXPECT_EQ(Caption(dialog().caption), "Write value to : at F410 [F410]");
  EXPECT_EQ(dialog().txt_WriteValue.Text.get(), "2A");
  EXPECT_EQ(dialog().txt_WriteValue.MaxLength, 6);
  EXPECT_EQ(dialog().opt_WriteValueFormat.Selected(), kHexadecimal);
  EXPECT_EQ(dialog().Option1.Selected(), kSingleWrite);
  EXPECT_FALSE(dialog().Text1.Enabled);
  EXPECT_FALSE(dialog().Values.Enabled);
  EXPECT_FALSE(dialog().first_load);
  EXPECT_GE(focused, 1);
}

TEST_F(WriteForm, ReadsADecimalBoxAsDecimal) {
  Open(kDecimal, "-12345678");
  EXPECT_EQ(dialog().opt_WriteValueFormat.Selected(), kDecimal);
  EXPECT_EQ(dialog().txt_WriteValue.Text.get(), "-12345678");
}

TEST_F(WriteForm, BeginsEmptyWhereTheBoxIsNoNumberThatCouldBeWritten) {
  Open(kBinary, "00101010");
  EXPECT_EQ(dialog().txt_WriteValue.Text.get(), "");
  EXPECT_EQ(GoesOut(), "Goes out: nothing");
  dialog().cmd_WriteCancel.Press();
  monitor.main.Locations[1].Representation = kOctal;
  Ask(1);
  EXPECT_EQ(dialog().txt_WriteValue.Text.get(), "");
  dialog().cmd_WriteCancel.Press();
  monitor.main.Locations[1].Representation = kHexadecimal;
  monitor.main.RAM_LOC_VAL(1).Text = "can not read";
  Ask(1);
  EXPECT_EQ(dialog().txt_WriteValue.Text.get(), "");
}

TEST_F(WriteForm, AClickOnAFormatGivesTheValueTheFocus) {
  Open(kHexadecimal, "2A");
  focused = 0;
  dialog().opt_WriteValueFormat.Choose(kDecimal);
  EXPECT_EQ(focused, 1);
  dialog().opt_WriteValueFormat.Choose(kDecimal);
  EXPECT_EQ(focused, 2);
  EXPECT_EQ(dialog().txt_WriteValue.Text.get(), "2A");
}

TEST_F(WriteForm, MultipleWriteAsksForTheNumberInPlaceOfTheFormat) {
  Open(kHexadecimal, "2A");
  EXPECT_EQ(dialog().Label3.ForeColor, kGrayText);
  dialog().Option1.Choose(kMultipleWrite);
  EXPECT_EQ(VisibleFormats(), "0000");
  EXPECT_TRUE(dialog().Text1.Enabled);
  EXPECT_TRUE(dialog().Values.Enabled);
  EXPECT_EQ(dialog().Label3.ForeColor, kButtonText);
  dialog().opt_WriteValueFormat.Select(kDecimal);
  dialog().Option1.Choose(kSingleWrite);
  // The formats that convert nothing stay away.
  EXPECT_EQ(VisibleFormats(), "1100");
  EXPECT_EQ(dialog().opt_WriteValueFormat.Selected(), kHexadecimal);
  EXPECT_FALSE(dialog().Text1.Enabled);
  EXPECT_FALSE(dialog().Values.Enabled);
  EXPECT_EQ(dialog().Label3.ForeColor, kGrayText);
}

TEST_F(WriteForm, SingleWriteEmptiesABinaryText) {
  Open(kBinary, "");
  dialog().txt_WriteValue.Text = "101";
  dialog().Option1.Choose(kMultipleWrite);
  EXPECT_EQ(dialog().txt_WriteValue.Text.get(), "101");
  dialog().Option1.Choose(kSingleWrite);
  EXPECT_EQ(dialog().txt_WriteValue.Text.get(), "");
}

TEST_F(WriteForm, BeginsAgainWithASingleWrite) {
  Open(kHexadecimal, "2A");
  dialog().Option1.Choose(kMultipleWrite);
  dialog().cmd_WriteCancel.Press();
  Ask(1);
  EXPECT_EQ(dialog().Option1.Selected(), kSingleWrite);
  EXPECT_EQ(VisibleFormats(), "1100");
  EXPECT_FALSE(dialog().Text1.Enabled);
}

TEST_F(WriteForm, BothButtonsGiveTheValueTheFocusAndHideIt) {
  Open(kHexadecimal, "2A");
  focused = 0;
  dialog().cmd_WriteCancel.Press();
  EXPECT_EQ(focused, 1);
  EXPECT_FALSE(dialog().form.Visible);
  EXPECT_EQ(dialog().txt_WriteValue.Text.get(), "");
  Ask(1);
  focused = 0;
  dialog().cmd_WriteOk.Press();
  EXPECT_EQ(focused, 1);
  EXPECT_FALSE(dialog().form.Visible);
}

TEST_F(WriteForm, SaysWhatGoesOutWithEachChange) {
  Open(kHexadecimal, "2A");
  EXPECT_EQ(GoesOut(), "Goes out: 2A");
  dialog().txt_WriteValue.Text = "1c";
  EXPECT_EQ(GoesOut(), "Goes out: 1C");
  dialog().txt_WriteValue.Text = "300";
  EXPECT_EQ(GoesOut(), "Goes out: 00");
  dialog().opt_WriteValueFormat.Choose(kDecimal);
  EXPECT_EQ(GoesOut(), "Goes out: 2C");
  dialog().opt_WriteValueFormat.Choose(kOctal);
  EXPECT_EQ(GoesOut(), "Goes out: 00 (binary and octal text is not converted)");
  dialog().opt_WriteValueFormat.Choose(kHexadecimal);
  dialog().txt_WriteValue.Text = "\xE2\x82\xAC";
  EXPECT_EQ(GoesOut(), "Goes out: 0\xE2\x82\xAC");
  dialog().txt_WriteValue.Text = "";
  EXPECT_EQ(GoesOut(), "Goes out: nothing");
}

TEST_F(WriteForm, TheBitDialogBeginsWithTrueAndKeepsTheChoice) {
  EXPECT_EQ(Caption(bit_dialog().caption), "Write Bit Value");
  Run({BitOf(3, ByteAt("F412"))});
  Ask(1);
  EXPECT_TRUE(bit_dialog().form.Visible);
  EXPECT_FALSE(dialog().form.Visible);
  EXPECT_EQ(Caption(bit_dialog().caption), "Write : at F412 [F412:3]");
  EXPECT_TRUE(bit_dialog().opt_writetrue.Value);
  EXPECT_FALSE(bit_dialog().Option1.Value);
  bit_dialog().Choose(false);
  EXPECT_FALSE(bit_dialog().opt_writetrue.Value);
  EXPECT_TRUE(bit_dialog().Option1.Value);
  bit_dialog().cmd_Ok.Press();
  EXPECT_EQ(bit_dialog().txt_WriteValue.Text.get(), "FALSE");
  EXPECT_FALSE(bit_dialog().form.Visible);
  Ask(1);
  bit_dialog().cmd_Cancel.Press();
  EXPECT_EQ(bit_dialog().txt_WriteValue.Text.get(), "");
}

// Enter alone is then no change.
TEST_F(WriteForm, TheBitDialogBeginsWithTheBitAsItIsShown) {
  Run({BitOf(3, ByteAt("F412"))});
  for (const bool is_set : {false, true}) {
    bit_dialog().Choose(!is_set);
    monitor.main.RAM_LOC_VAL(1).Text = is_set ? "TRUE" : "FALSE";
    Ask(1);
    EXPECT_EQ(bit_dialog().opt_writetrue.Value, is_set);
    bit_dialog().cmd_Cancel.Press();
  }
}

}  // namespace
}  // namespace tarnlink
