// The run around a write dialog: what stands still, what goes on, and what a user can come back to.

#include "form/write_fixture.h"

namespace tarnlink {
namespace {

TEST_F(TarnlinkWrite, ADoubleClickWithTheRunStoppedDoesNothing) {
  Screen({ByteAt("F410")});
  const std::string state = State();
  Ask(1);
  EXPECT_FALSE(dialog().form.Visible);
  EXPECT_EQ(State(), state);
  EXPECT_EQ(monitor.main.SecondByteIndex, 0);
}

TEST_F(TarnlinkWrite, ASecondDoubleClickBehindTheDialogDoesNothing) {
  Run({ByteAt("F410"), BitOf(0, ByteAt("F412"))});
  Ask(1);
  Ask(2);
  EXPECT_FALSE(bit_dialog().form.Visible);
  EXPECT_EQ(monitor.main.SecondByteIndex, 1);
}

TEST_F(TarnlinkWrite, NoPollGoesOutBehindTheDialog) {
  Run({ByteAt("F410"), ByteAt("F400")});
  Ask(1);
  Advance(2'000);
  EXPECT_EQ(Sent(), "");
}

TEST_F(TarnlinkWrite, ASilentSlaveIsNotToldBehindTheDialog) {
  Screen({ByteAt("F410")});
  boiler.line().AddFault("no_reply");
  Start();
  Advance(30);
  Ask(1);
  Advance(2'990);
  EXPECT_TRUE(world.dialogs().shown().empty());
  EXPECT_TRUE(monitor.main.CommRunning);
}

TEST_F(TarnlinkWrite, CancelSendsNothingAndTheScanGoesOnAtTheNextLocation) {
  Run({ByteAt("F410"), ByteAt("F400")});
  dialog().Text1.Text = "3";  // of an earlier write
  Ask(1);
  EXPECT_FALSE(monitor.main.Comm_Timer->Enabled());
  EXPECT_FALSE(monitor.main.tmr_MsgTimeout->Enabled());
  Advance(100);
  dialog().cmd_WriteCancel.Press();
  EXPECT_EQ(Sent(), "");
  EXPECT_TRUE(monitor.main.Comm_Timer->Enabled());
  EXPECT_TRUE(monitor.main.tmr_noresponse->Enabled());
  Advance(20);
  EXPECT_EQ(Panel(5), "at F400: 2");
}

TEST_F(ZoltDialogWrite, CancelSendsNothingAndTheScanGoesOnAtTheNextLocation) {
  Run({ByteAt("F410"), ByteAt("F400")});
  Ask(1);
  Advance(100);
  dialog().txt_WriteValue.Text = "2C";
  dialog().cmd_WriteCancel.Press();
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(monitor.main.Locations[1].RawValue, 0);
  Advance(20);
  EXPECT_EQ(Sent(), At(0x07, "0FFABF400FBD7", 158));
}

TEST_F(ModbusDialogWrite, CancelSendsNothingAndTheScanGoesOnAtTheNextLocation) {
  Run({RegisterAt("0200"), RegisterAt("0201")});
  Ask(1);
  Advance(100);
  dialog().txt_WriteValue.Text = "2C";
  dialog().cmd_WriteCancel.Press();
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(monitor.main.Locations[1].RawValue, 0);
  Advance(20);
  EXPECT_EQ(Sent(), "158 ms: 01 03 02 01 00 01 D4 72\n");
}

TEST_F(TarnlinkWrite, TheCancelOfABitSendsNothing) {
  Run({BitOf(3, ByteAt("F412"))});
  dialog().Text1.Text = "3";  // of an earlier write
  Ask(1);
  bit_dialog().cmd_Cancel.Press();
  EXPECT_EQ(Sent(), "");
  EXPECT_TRUE(monitor.main.Comm_Timer->Enabled());
}

TEST_F(TarnlinkWrite, AnEmptyBoxIsACancelToo) {
  Run({ByteAt("F410")});
  WriteDecimal(1, "");
  EXPECT_EQ(Sent(), "");
  EXPECT_TRUE(monitor.main.Comm_Timer->Enabled());
}

TEST_F(TarnlinkWrite, AnEmptyBoxBesideANumberOfRegistersIsZero) {
  Run({ByteAt("F410")});
  dialog().Text1.Text = "3";
  WriteDecimal(1, "");
  // 06 + "F410" + "00" add up to 141.
  EXPECT_EQ(Sent(), "38 ms: 04 06 46 34 31 30 30 30 34 31 03\n");
  Advance(20);
  EXPECT_EQ(Memory(), 0);
}

TEST_F(ZoltDialogWrite, TheWatchdogGoesOnBehindTheDialogAndTheWriteGoesOut) {
  Screen({ByteAt("F410")});
  boiler.line().AddFault("no_reply#1");
  Start();
  Advance(30);
  Sent();
  Ask(1);
  Advance(4'000);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(State(), "Ready, port open, timers tmr_noresponse");
  dialog().txt_WriteValue.Text = "2C";
  dialog().cmd_WriteOk.Press();
  EXPECT_EQ(Sent(), At(0x87, "0FCFD102C848E", 4030));
}

TEST_F(TarnlinkWrite, ASilentSlaveAfterAWriteTakesTheUsualWay) {
  Run({ByteAt("F410")});
  boiler.line().AddFault("no_reply");
  Write(1, "1");
  ExpectSilentSlaveBox();
  Advance(3'100);
  EXPECT_EQ(Panel(4), "Communication Stopped");
}

TEST_F(TarnlinkWrite, NothingIsSentToADeviceThatVanishedBehindTheDialog) {
  Run({ByteAt("F410")});
  Ask(1);
  ExpectDeviceGoneBox();
  world.port().Unplug();
  world.Settle();
  world.dialogs().ExpectMessageBox("Nothing has been written: communication is stopped.",
                                   "Write Error");
  dialog().txt_WriteValue.Text = "2C";
  dialog().cmd_WriteOk.Press();
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
  EXPECT_EQ(monitor.main.Locations[1].RawValue, 0);
}

TEST_F(TarnlinkWrite, ACancelBehindAStoppedRunStartsNothing) {
  Run({ByteAt("F410")});
  Ask(1);
  Stop();
  dialog().cmd_WriteCancel.Press();
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

TEST_F(TarnlinkWrite, NothingIsSentForALocationThatIsGone) {
  Run({ByteAt("F410"), ByteAt("F400")});
  Ask(1);
  Delete(1);
  world.dialogs().ExpectMessageBox("Nothing has been written: the location is gone.",
                                   "Write Error");
  dialog().txt_WriteValue.Text = "2C";
  dialog().cmd_WriteOk.Press();
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(monitor.main.Locations[1].RawValue, 0);
  Advance(40);
  EXPECT_EQ(Panel(5), "at F400: 2");
}

TEST_F(TarnlinkWrite, AWriteToADeviceThatIsAboutToBeToldGoneIsNotSent) {
  Run({ByteAt("F410")});
  Ask(1);
  dialog().txt_WriteValue.Text = "2C";
  world.port().Unplug();
  ExpectDeviceGoneBox();
  dialog().cmd_WriteOk.Press();
  world.Settle();
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

}  // namespace
}  // namespace tarnlink
