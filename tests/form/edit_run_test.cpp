// Edits while the boiler is being read: the run goes on.

#include <gtest/gtest.h>

#include <string>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

class EditingDuringARun : public MonitorTest {
 protected:
  void AddLocation() { monitor.main.Toolbar1(1).Press(); }
  void Undo() { monitor.main.mnuUndo.Press(); }
  void Redo() { monitor.main.mnuRedo.Press(); }
};

TEST_F(EditingDuringARun, AnAddedLocationIsPolled) {
  Screen({ByteAt("01A0")});
  SlaveHolds({{"01A0", "2A"}, {"0000", "12AB"}});
  Start();
  Advance(100);
  AddLocation();
  Advance(100);
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(Value(2), "12AB");
}

TEST_F(EditingDuringARun, AnAddedLocationIsUndoneWhileItsAnswerIsOut) {
  Screen({ByteAt("01A0")});
  SlaveHolds({{"01A0", "2A"}, {"0000", "12AB"}}, 15);
  Start();
  Advance(20);
  AddLocation();
  Advance(20);
  ASSERT_EQ(monitor.main.MsgPointer, 2);
  ASSERT_FALSE(monitor.main.message_received);
  Undo();
  EXPECT_FALSE(monitor.main.RAM_LOC_VAL.Has(2));
  Sent();
  SlaveHolds({{"01A0", "2B"}}, 15);
  Advance(200);
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout");
  EXPECT_EQ(Value(1), "2B");
  EXPECT_EQ(Panel(4), "Communication Running");
  EXPECT_EQ(Panel(2), "Locations : 1");
  // Only the first one is asked for from now on.
  const std::string sent = Sent();
  EXPECT_EQ(sent.find("30 30 30 30"), std::string::npos) << sent;
  EXPECT_NE(sent.find("30 31 41 30"), std::string::npos) << sent;
}

TEST_F(EditingDuringARun, AnAddedLocationIsRedoneAndPolledAgain) {
  Screen({ByteAt("01A0")});
  SlaveHolds({{"01A0", "2A"}, {"0000", "12AB"}});
  Start();
  AddLocation();
  Advance(200);
  Undo();
  Advance(200);
  Redo();
  Advance(200);
  EXPECT_EQ(Value(2), "12AB");
  EXPECT_EQ(Panel(4), "Communication Running");
}

TEST_F(EditingDuringARun, TheOnlyLocationCanBeUndoneAndRedone) {
  AddLocation();
  SlaveHolds({{"0000", "12AB"}});
  Start();
  Advance(100);
  Undo();
  Advance(100);
  EXPECT_EQ(Panel(4), "Communication Running");
  Sent();
  Advance(1000);
  EXPECT_EQ(Sent(), "");
  Redo();
  Advance(100);
  EXPECT_NE(Sent(), "");
  EXPECT_EQ(Value(1), "12AB");
}

TEST_F(EditingDuringARun, ALocationWhoseNameIsDraggedIsPassedOver) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  SlaveHolds({{"01A0", "A1"}, {"01A1", "A2"}});
  Start();
  Advance(100);
  monitor.main.RAM_LOC_TEXT.MouseDown(1, {});
  SlaveHolds({{"01A0", "B1"}, {"01A1", "B2"}});
  Advance(20);
  Sent();
  Advance(200);
  EXPECT_EQ(Sent().find("30 31 41 30"), std::string::npos);
  EXPECT_EQ(Value(2), "B2");
  monitor.main.form.DragDrop(3000, 3000);
  Advance(200);
  EXPECT_EQ(Value(1), "B1");
  EXPECT_EQ(Panel(4), "Communication Running");
}

TEST_F(EditingDuringARun, ALocationWhoseValueIsDraggedIsPolled) {
  Screen({ByteAt("01A0")});
  SlaveHolds({{"01A0", "A1"}});
  Start();
  monitor.main.RAM_LOC_VAL.MouseDown(1, {});
  Advance(100);
  EXPECT_EQ(Value(1), "A1");
  SlaveHolds({{"01A0", "B1"}});
  Advance(100);
  monitor.main.form.DragCancel();
  EXPECT_EQ(Value(1), "B1");
}

TEST_F(EditingDuringARun, TheOnlyLocationCanBeDragged) {
  Screen({ByteAt("01A0")});
  SlaveHolds({{"01A0", "A1"}});
  Start();
  Advance(100);
  monitor.main.RAM_LOC_TEXT.MouseDown(1, {});
  Advance(5000);
  monitor.main.form.DragDrop(3000, 3000);
  SlaveHolds({{"01A0", "B1"}});
  Advance(100);
  EXPECT_EQ(Value(1), "B1");
  EXPECT_EQ(Panel(4), "Communication Running");
}

TEST_F(EditingDuringARun, ACheckBoxAndItsUndoLeaveTheValue) {
  Screen({ByteAt("01A0")});
  SlaveHolds({{"01A0", "A1"}});
  Start();
  Advance(100);
  monitor.main.RAM_LOC_CHECK(1).Value = false;
  SlaveHolds({{"01A0", "B1"}});
  Advance(100);
  Undo();
  EXPECT_EQ(Value(1), "B1");
  EXPECT_EQ(Panel(4), "Communication Running");
}

}  // namespace
}  // namespace tarnlink
