// A block of registers that is written by one message.

#include "form/write_fixture.h"

namespace tarnlink {
namespace {

class BlockWrite : public ModbusDialogWrite {
 protected:
  // The dialog stands, with a block of `count` registers chosen.
  void Choose(const std::string& count) {
    Ask(2);
    dialog().Option1.Choose(kMultipleWrite);
    dialog().Text1.Text = count;
  }
  void Open(const std::string& count) {
    Choose(count);
    dialog().Values.Press();
  }
  void Begin() { Run({RegisterAt("0210"), RegisterAt("0200"), RegisterAt("0201")}); }
  std::string GoesOut() { return Caption(dialog().lbl_GoesOut); }
  int Lines() {
    int count = 0;
    while (registers().value.Has(count + 1) && registers().Space.Has(count + 1)) ++count;
    return count;
  }
};

TEST_F(BlockWrite, HasALineForEachRegisterWithItsName) {
  Begin();
  Open("2");
  EXPECT_TRUE(registers().form.Visible);
  EXPECT_EQ(registers().Option_multiplereg.Selected(), 1);
  EXPECT_EQ(Lines(), 2);
  EXPECT_EQ(Caption(registers().Space(1)), "at 0200");
  EXPECT_EQ(Caption(registers().Space(2)), "at 0201");
  EXPECT_EQ(registers().value(1).Text.get(), "value1");
  EXPECT_EQ(registers().value(2).Text.get(), "value2");
  EXPECT_TRUE(registers().value(2).Visible);
  EXPECT_EQ(registers().Space(2).Top, 2200.0F);
  EXPECT_EQ(registers().Space(2).Left, 300.0F);
  EXPECT_EQ(registers().value(1).Top, 1800.0F);
  EXPECT_EQ(registers().value(1).Left, 2100.0F);
  EXPECT_EQ(registers().show_location[20].ValueTop, 1800 + 19 * 400);
}

TEST_F(BlockWrite, GoesOutInOneMessageAndIsReadBack) {
  Begin();
  Open("2");
  registers().value(1).Text = "10";
  registers().value(2).Text = "258";
  registers().Command1.Press();
  EXPECT_FALSE(registers().form.Visible);
  EXPECT_EQ(GoesOut(), "Goes out: 000A 0102");
  dialog().cmd_WriteOk.Press();
  EXPECT_EQ(Sent(), "38 ms: 01 10 02 00 00 02 04 00 0A 01 02 4A 9C\n");
  EXPECT_EQ(monitor.main.Nreg, 2);
  EXPECT_EQ(monitor.main.Locations[2].RawValue, 2);
  EXPECT_FALSE(registers().value.Has(1));
  Advance(100);
  EXPECT_EQ(Value(2), "000A");
  EXPECT_EQ(Value(3), "0102");
}

TEST_F(BlockWrite, IsReadAsDecimalWhicheverButtonIsSet) {
  Begin();
  Open("1");
  for (const int button : {0, 1}) {
    registers().Option_multiplereg.Choose(button);
    registers().value(1).Text = "10";
    registers().Command1.Press();
    EXPECT_EQ(monitor.main.StoredRegisters, std::vector<std::string>{"000A"});
    dialog().Values.Press();
  }
}

TEST_F(BlockWrite, KeepsWhatWasTypedWhenItIsOpenedAgainForMoreOrFewerLines) {
  Begin();
  Open("2");
  registers().value(1).Text = "7";
  registers().value(2).Text = "8";
  registers().Command1.Press();
  dialog().Text1.Text = "3";
  dialog().Values.Press();
  EXPECT_EQ(Lines(), 3);
  EXPECT_EQ(registers().value(1).Text.get(), "7");
  EXPECT_EQ(registers().value(3).Text.get(), "value3");
  registers().Command1.Press();
  dialog().Text1.Text = "1";
  dialog().Values.Press();
  EXPECT_EQ(Lines(), 1);
  registers().Command1.Press();
  EXPECT_EQ(GoesOut(), "Goes out: 0007");
}

TEST_F(BlockWrite, OfTwentyRegistersIsTheLongest) {
  Begin();
  Open("20");
  EXPECT_EQ(Lines(), 20);
  registers().Command1.Press();
  dialog().cmd_WriteOk.Press();
  EXPECT_EQ(Sent().substr(0, 40), "38 ms: 01 10 02 00 00 14 28 00 00 00 00 ");
}

TEST_F(BlockWrite, ANumberThatNoBlockHasIsToldAndOpensNothing) {
  Begin();
  Choose("");
  for (const char* count : {"", "0", "-3", "21", "99999", "two"}) {
    dialog().Text1.Text = count;
    world.dialogs().ExpectMessageBox("The number of registers must be between 1 and 20.",
                                     "Multiple Write");
    dialog().Values.Press();
    EXPECT_FALSE(registers().form.Visible) << count;
  }
  dialog().cmd_WriteOk.Press();
  EXPECT_EQ(Sent(), "");
}

TEST_F(BlockWrite, WithoutStoredValuesNothingGoesOut) {
  Begin();
  Open("2");
  registers().Dismiss();
  EXPECT_EQ(GoesOut(), "Goes out: nothing before the values are stored");
  dialog().cmd_WriteOk.Press();
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(State(), "Ready, port open, timers Comm_Timer tmr_noresponse");
}

TEST_F(BlockWrite, ClosingTheFormWithoutStoringTakesBackWhatWasStored) {
  Begin();
  Open("2");
  registers().Command1.Press();
  dialog().Values.Press();
  registers().Dismiss();
  dialog().cmd_WriteOk.Press();
  EXPECT_EQ(Sent(), "");
}

TEST_F(BlockWrite, IsForgottenWithItsDialog) {
  Begin();
  Open("2");
  registers().Command1.Press();
  dialog().cmd_WriteCancel.Press();
  EXPECT_EQ(Sent(), "");
  Ask(2);
  dialog().Option1.Choose(kMultipleWrite);
  EXPECT_EQ(GoesOut(), "Goes out: nothing before the values are stored");
  dialog().Values.Press();
  EXPECT_EQ(registers().value(1).Text.get(), "value1");
}

TEST_F(BlockWrite, NamesEndWithTheTable) {
  Begin();
  monitor.main.SelectedLocation = kLastLocation;
  registers().NumReg_frm = 3;
  registers().Show();
  EXPECT_EQ(Lines(), 3);
  EXPECT_EQ(Caption(registers().Space(2)), "");
}

}  // namespace
}  // namespace tarnlink
