// The device beside the port number, while devices come and go.

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>

#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

const PortDevice kAdapter{.path = "/dev/ttyUSB0",
                          .stable_path = "/dev/serial/by-id/usb-Acme_Serial-if00",
                          .description = "USB Serial",
                          .maker = "Acme"};
const PortDevice kBoard{.path = "/dev/ttyS0", .stable_path = "", .description = "", .maker = ""};

class OptionsDevice : public UiTest {
 protected:
  QComboBox& Box() const { return Get<QComboBox>("cmbPortDevice"); }

  std::string Listed() const {
    std::string lines;
    for (int i = 0; i < Box().count(); ++i) lines += Box().itemText(i).toStdString() + "|";
    return lines;
  }

  std::string Shown() const { return Box().currentText().toStdString(); }

  void PlugIn(const PortDevice& device) {
    world.devices().PlugIn(device);
    world.Settle();
  }
  void PullOut(const PortDevice& device) {
    world.devices().PullOut(device.path);
    world.Settle();
  }

  // Opens the list and clicks on a line of it.
  void Pick(int line) {
    Box().showPopup();
    QAbstractItemView* list = Box().view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(list->window()));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualRect(list->model()->index(line, 0)).center());
  }

  void TypeDevice(const std::string& path) {
    QLineEdit* edit = Box().lineEdit();
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, QString::fromStdString(path));
  }

  std::string Stored(const char* key) { return world.settings().GetSetting("Ports", key, "-"); }
};

TEST_F(OptionsDevice, ListsWhatIsThere) {
  PlugIn(kBoard);
  PlugIn(kAdapter);
  OpenOptions();
  EXPECT_EQ(Listed(), "/dev/ttyS0|/dev/ttyUSB0, USB Serial, Acme|");
}

TEST_F(OptionsDevice, SaysSoWhenNothingIsThere) {
  OpenOptions();
  EXPECT_EQ(Listed(), "");
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(Box().lineEdit()->placeholderText(), "no serial device found");
}

TEST_F(OptionsDevice, ShowsTheDeviceOfThePort) {
  PlugIn(kBoard);
  PlugIn(kAdapter);
  world.settings().SaveSetting("Ports", "COM3", "/dev/pts/7");
  OpenOptions();
  EXPECT_EQ(Shown(), "/dev/ttyS0") << "COM1";
  Click("opt_CommPort(1)");
  EXPECT_EQ(Shown(), "/dev/ttyUSB0") << "COM2";
  Click("opt_CommPort(2)");
  EXPECT_EQ(Shown(), "/dev/pts/7") << "COM3";
  Click("opt_CommPort(3)");
  EXPECT_EQ(Shown(), "") << "COM4";
}

TEST_F(OptionsDevice, FollowsPluggingWhileTheDialogIsUp) {
  OpenOptions();
  PlugIn(kAdapter);
  EXPECT_EQ(Listed(), "/dev/ttyUSB0, USB Serial, Acme|");
  EXPECT_EQ(Shown(), "/dev/ttyUSB0");
  PlugIn(kBoard);
  PullOut(kAdapter);
  EXPECT_EQ(Listed(), "/dev/ttyS0|");
  PullOut(kBoard);
  EXPECT_EQ(Listed(), "");
}

TEST_F(OptionsDevice, IsNotWatchedWhileTheDialogIsHidden) {
  Begin();
  EXPECT_FALSE(world.devices().watched());
  OpenOptions();
  EXPECT_TRUE(world.devices().watched());
  Click("cmd_OptionsCancel");
  EXPECT_FALSE(world.devices().watched());
  OpenOptions();
  EXPECT_TRUE(world.devices().watched());
  Click("cmd_OptionsOk");
  EXPECT_FALSE(world.devices().watched());
}

TEST_F(OptionsDevice, ComesUpToDateWhenTheDialogIsShownAgain) {
  OpenOptions();
  Click("cmd_OptionsCancel");
  PlugIn(kAdapter);
  OpenOptions();
  EXPECT_EQ(Listed(), "/dev/ttyUSB0, USB Serial, Acme|");
}

TEST_F(OptionsDevice, ThatIsPickedIsStoredByItsStablePath) {
  PlugIn(kBoard);
  PlugIn(kAdapter);
  OpenOptions();
  Pick(1);
  EXPECT_EQ(Shown(), "/dev/ttyUSB0, USB Serial, Acme");
  Click("cmd_OptionsOk");
  EXPECT_EQ(Stored("COM1"), kAdapter.stable_path);
}

TEST_F(OptionsDevice, ThatIsTypedIsStoredAsTyped) {
  PlugIn(kAdapter);
  OpenOptions();
  Click("opt_CommPort(2)");
  TypeDevice("/dev/pts/5");
  Click("cmd_OptionsOk");
  EXPECT_EQ(Stored("COM3"), "/dev/pts/5");
  EXPECT_EQ(Stored("COM1"), "-");
}

// "/dev/ttyUSB" is how the line in the list begins, too.
TEST_F(OptionsDevice, ThatIsTypedIsNotCompletedToAnother) {
  PlugIn(kAdapter);
  OpenOptions();
  TypeDevice("/dev/ttyUSB");
  PressFocused(Qt::Key_Return);
  EXPECT_FALSE(options->isVisible()) << "Enter is Ok here, too";
  EXPECT_EQ(Stored("COM1"), "/dev/ttyUSB");
}

TEST_F(OptionsDevice, ThatIsBeingTypedSurvivesPlugging) {
  OpenOptions();
  TypeDevice("/dev/pts/");
  PlugIn(kAdapter);
  EXPECT_EQ(Shown(), "/dev/pts/");
  QTest::keyClicks(Box().lineEdit(), "5");
  EXPECT_EQ(Shown(), "/dev/pts/5");
  PullOut(kAdapter);
  EXPECT_EQ(Shown(), "/dev/pts/5");
}

TEST_F(OptionsDevice, CanBePickedAfterTheListChangedUnderIt) {
  PlugIn(kBoard);
  OpenOptions();
  Box().showPopup();
  PlugIn(kAdapter);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Box().view()->isVisible(); }, 1000));
  Pick(1);
  EXPECT_EQ(Shown(), "/dev/ttyUSB0, USB Serial, Acme");
}

TEST_F(OptionsDevice, KeepsItsToolTip) {
  OpenOptions();
  const QString tip = Box().toolTip();
  EXPECT_NE(tip, "");
  PlugIn(kAdapter);
  EXPECT_EQ(Box().toolTip(), tip);
}

TEST_F(OptionsDevice, OfALongNameStretchesNothing) {
  OpenOptions();
  const int width = options->sizeHint().width();
  PortDevice long_named = kAdapter;
  long_named.description = "<b>" + std::string(2000, 'W');
  PlugIn(long_named);
  EXPECT_EQ(options->sizeHint().width(), width);
  EXPECT_TRUE(Box().itemText(0).startsWith("/dev/ttyUSB0, <b>WW"));
}

}  // namespace
}  // namespace tarnlink
