// The sniffer's window: its text, its list, its buttons and keys.

#include <QCheckBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>

#include "ui/sniffer_fixture.h"

namespace tarnlink {
namespace {

class SnifferWindowTest : public SnifferUiTest {
 protected:
  static bool IsEndInSight() {
    return TextBoxOf().viewport()->rect().contains(TextBoxOf().cursorRect());
  }
};

// --- Leaving -------------------------------------------------------------------------------------

TEST_F(SnifferWindowTest, IsNotLeftByEscapeNorByEnter) {
  Exchange(0xF1, 0x2D, 0);
  for (const char* name : {"List_DetectedID", "List_DisplayDetectedID", "RAM_TEXT(1)", "Command2",
                           "cmd_Clear", "txt_Find", "cmd_Find", "LogCheck", "txt_Messages"}) {
    auto* part = Window().findChild<QWidget*>(name);
    if (part == nullptr) continue;  // one of the lists is never shown
    part->setFocus();
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter}) {
      Key(key);
      if (tools->sniff_settings.form.Visible) tools->sniff_settings.Close();
      ASSERT_TRUE(tools->sniffer.form.Visible) << name;
      ASSERT_TRUE(Window().isVisible()) << name;
    }
  }
  EXPECT_EQ(Items(), "1");
  EXPECT_TRUE(world.port().PortOpen());
}

TEST_F(SnifferWindowTest, IsLeftByItsFrame) {
  Window().close();
  EXPECT_FALSE(tools->sniffer.form.Visible);
  EXPECT_FALSE(Window().isVisible());
  EXPECT_FALSE(world.port().PortOpen());
}

// --- The text ------------------------------------------------------------------------------------

TEST_F(SnifferWindowTest, ShowsTheSameTextAsTheModelAtEveryMoment) {
  for (int i = 0; i < 2500; ++i) {
    Exchange(i % 50, i / 256, i % 256);
    ASSERT_TRUE(TextBoxOf().toPlainText().toStdString() == RunningText()) << i;
    ASSERT_TRUE(IsCaretAtTheEnd()) << i;
    if (i == 300) Click("cmd_Clear");
    if (i % 700 == 699) {
      Click("Command2");
      Exchange(1, 2, 3);
      Click("Command1");
    }
  }
}

TEST_F(SnifferWindowTest, StandsStillWhilePausedAndComesToTheEndByContinue) {
  for (int i = 0; i < 100; ++i) Exchange(0xF1, i, 0);
  Click("Command2");
  const QString before = TextBoxOf().toPlainText();
  TextBoxOf().verticalScrollBar()->setValue(3);
  for (int i = 0; i < 100; ++i) Exchange(0xF1, i, 0);
  EXPECT_EQ(TextBoxOf().toPlainText(), before);
  EXPECT_EQ(TextBoxOf().verticalScrollBar()->value(), 3);
  Click("Command1");
  EXPECT_TRUE(TextBoxOf().toPlainText().toStdString() == RunningText());
  EXPECT_TRUE(IsCaretAtTheEnd());
  EXPECT_TRUE(IsEndInSight());
}

TEST_F(SnifferWindowTest, FindsByEnterAndComesToTheEndByContinue) {
  for (int i = 0; i < 100; ++i) Exchange(i == 20 ? 0x1234 : 0xF1, i, 0);
  Enter(Window(), "txt_Find", "0x1234 ");
  Key(Qt::Key_Return);
  EXPECT_EQ(Marked(), "0x1234 ");
  EXPECT_EQ(TextBoxOf().textCursor().block().blockNumber(), 40);
  Click("cmd_Find");
  EXPECT_EQ(TextBoxOf().textCursor().block().blockNumber(), 41);
  EXPECT_EQ(Focus(Window()), "cmd_Find");
  Click("Command1");  // without a frame in between
  EXPECT_TRUE(IsCaretAtTheEnd());
  EXPECT_TRUE(IsEndInSight());
}

TEST_F(SnifferWindowTest, MarksWhatWasFoundWhateverLettersTheDateHas) {
  MonthNames months = EnglishMonthNames();
  months[2] = "M\xC3\xA4rz \xF0\x9F\x94\xA5";  // one of them is two units of the box
  world.locale().SetMonths(months);
  for (int i = 0; i < 20; ++i) Exchange(i == 9 ? 0x1234 : 0xF1, i, 0);
  Enter(Window(), "txt_Find", "0x1234 ");
  Key(Qt::Key_Return);
  EXPECT_EQ(Marked(), "0x1234 ");
}

TEST_F(SnifferWindowTest, ForgetsWhatWasFoundWhenItIsCleared) {
  for (int i = 0; i < 100; ++i) Exchange(0xF1, i, 0);
  Enter(Window(), "txt_Find", "0x63");  // the last
  Key(Qt::Key_Return);
  EXPECT_EQ(Marked(), "0x63");
  Click("cmd_Clear");
  EXPECT_EQ(TextBoxOf().toPlainText(), "");
  Click("Command1");
  Exchange(0xF1, 1, 0);
  EXPECT_TRUE(TextBoxOf().toPlainText().toStdString() == RunningText());
  EXPECT_TRUE(IsCaretAtTheEnd());
}

TEST_F(SnifferWindowTest, SaysThatNothingWasFound) {
  Exchange(0xF1, 1, 0);
  Enter(Window(), "txt_Find", "x9");
  Key(Qt::Key_Return);
  EXPECT_EQ(Caption(Window(), "lbl_Find"), "Not found.");
  Key(Qt::Key_Backspace);
  EXPECT_EQ(Caption(Window(), "lbl_Find"), "");
}

// --- The list ------------------------------------------------------------------------------------

class SnifferList : public SnifferWindowTest {
 protected:
  SnifferList() {
    for (int id = 1; id <= 3; ++id) Hear(0x14, id, 0, id);  // answers alone give no items
  }
  static QListWidget& List() { return Part<QListWidget>("List_DisplayDetectedID"); }
  static QPoint OnRow(int row) {
    return List().viewport()->mapTo(&Window(), List().visualItemRect(List().item(row)).center());
  }
};

TEST_F(SnifferList, GivesAnIdAnItemByADoubleClick) {
  EXPECT_EQ(Items(), "");
  QTest::mouseClick(Window().windowHandle(), Qt::LeftButton, {}, OnRow(2));
  DoubleClick(OnRow(2));
  EXPECT_EQ(Items(), "1");
  EXPECT_EQ(Text("RAM_ID(1)"), "0003");
  EXPECT_EQ(Text("RAM_VALUE(1)"), "0x0003");
}

TEST_F(SnifferList, GivesAnIdAnItemByEnterAndDoesNothingElse) {
  Enter(Window(), "txt_Find", "0001");
  List().setFocus();
  List().setCurrentRow(1);
  Key(Qt::Key_Return);
  EXPECT_EQ(Items(), "1");
  EXPECT_EQ(Text("RAM_ID(1)"), "0002");
  EXPECT_TRUE(tools->sniffer.sniffing);  // Find would pause it
  EXPECT_EQ(Marked(), "");
  for (const auto* button : Window().findChildren<QPushButton*>()) {
    EXPECT_FALSE(button->isDefault()) << button->objectName().toStdString();
    EXPECT_FALSE(button->autoDefault()) << button->objectName().toStdString();
  }
}

TEST_F(SnifferList, BringsTheItemIntoSight) {
  PlaceItems(200);
  List().setFocus();
  List().setCurrentRow(0);
  Key(Qt::Key_Return);
  EXPECT_TRUE(InSight("RAM_VALUE(201)"));
  List().setCurrentRow(3);  // the first that was placed
  Key(Qt::Key_Return);
  EXPECT_TRUE(InSight("RAM_TEXT(1)"));
}

// --- The log -------------------------------------------------------------------------------------

TEST_F(SnifferWindowTest, WritesALogWhileItsBoxIsTicked) {
  world.dialogs().ExpectSaveFile("Save log file as").Give("/jobs/Sniffer.log");
  Click("LogCheck");
  EXPECT_TRUE(Part<QCheckBox>("LogCheck").isChecked());
  Hear(0x04, 0xF1, 0, 0);
  Click("LogCheck");
  EXPECT_FALSE(Part<QCheckBox>("LogCheck").isChecked());
  Hear(0x04, 0xF2, 0, 0);
  EXPECT_NE(world.disk().Get("/jobs/Sniffer.log").find("0x00F1"), std::string::npos);
  EXPECT_EQ(world.disk().Get("/jobs/Sniffer.log").find("0x00F2"), std::string::npos);
  world.dialogs().ExpectSaveFile("Save log file as").Cancel();
  Click("LogCheck");
  EXPECT_FALSE(Part<QCheckBox>("LogCheck").isChecked());
}

// --- The foot ------------------------------------------------------------------------------------

TEST_F(SnifferWindowTest, ShowsItsLabelsWhole) {
  for (int i = 0; i < 60; ++i) Exchange(0xF1, i, 0);
  for (const char* name : {"lbl_Frames", "lbl_Revision", "lbl_Detected"}) {
    auto& label = Part<QLabel>(name);
    EXPECT_NE(label.text(), "") << name;
    EXPECT_TRUE(QTest::qWaitFor([&] { return label.width() >= label.sizeHint().width(); }, 1000))
        << name << ": " << label.width() << " of " << label.sizeHint().width();
  }
  EXPECT_EQ(Caption(Window(), "lbl_Revision"), "R1.2");
}

TEST_F(SnifferWindowTest, SaysWhyNothingIsHeard) {
  world.port().Unplug();
  world.Settle();
  EXPECT_EQ(Caption(Window(), "lbl_Port"), "COM1 was unplugged.");
}

// A laptop of 1366 by 768 whose letters are twice as large.
TEST_F(SnifferWindowTest, FitsASmallScreen) {
  EXPECT_LE(Window().minimumSizeHint().width(), 650);
  EXPECT_LE(Window().minimumSizeHint().height(), 345);
}

TEST_F(SnifferWindowTest, StandsWhereItWasLeft) {
  tools->sniff_settings.Show(1);
  Settings().resize(500, 480);
  Settings().close();
  Window().resize(701, 502);
  Window().close();
  StartAgain();
  tools->ShowSniffer();
  tools->sniff_settings.Show(1);
  EXPECT_EQ(Window().size(), QSize(701, 502));
  EXPECT_EQ(Settings().size(), QSize(500, 480));
}

// --- Beside the program --------------------------------------------------------------------------

// The error descriptions are read anew as the sniffer opens.
class SnifferErrorTexts : public UiTest {
 protected:
  SnifferErrorTexts() {
    world.settings().SaveSetting("FileLocation", "ZOLTIDDef", "/jobs/boiler.ids");
    world.disk().Put("/jobs/boiler.snf", "Flow,F1,0,H\r\n");
    Begin();
    monitor.options.txt_ZOLTIDDef.Text = "/jobs/boiler.ids";
  }
  void ExpectListening() {
    tools.ShowSniffer();
    world.port().Receive(BuildZoltMessage(0x04, "0", 0xF1, 0, 0) +
                         BuildZoltMessage(0x14, "0", 0xF1, 45, 0));
    world.Settle();
    EXPECT_EQ(tools.sniffer.RAM_VALUE(1).Text.get(), "45");
    tools.sniffer.Unload();
  }

  ToolHost host{.platform = world,
                .line = {[] { return 1; }, [] { return 3; }},
                .IgnoresErrors = [] { return true; },
                .LoadErrorTexts = [this]() -> const ErrorTexts& {
                  monitor.ids.LoadErrorTexts();
                  return monitor.ids.error_texts();
                },
                .IdFile = [this] { return monitor.options.txt_ZOLTIDDef.Text.get(); },
                .LogPath = [] { return std::string("/jobs"); },
                .GoControlPanel = {}};
  ServiceTools tools{host, nullptr};
};

TEST_F(SnifferErrorTexts, MayBeMissing) {
  ExpectListening();
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(SnifferErrorTexts, MayBeBrokenOrOutOfReach) {
  world.disk().Put("/jobs/boiler.erc", "no number at all\r\n");
  ExpectListening();
  EXPECT_NE(monitor.main.lbl_IdNotice.Caption->find("boiler.erc"), std::string::npos);
  world.disk().Forbid("/jobs/boiler.erc");
  ExpectListening();
  EXPECT_NE(monitor.main.lbl_IdNotice.Caption.get(), "");
  EXPECT_TRUE(world.dialogs().shown().empty());
}

// Nothing moves under the pointer that has pressed "Find next".
TEST_F(SnifferUiTest, HasRoomForWhatItSaysOfASearchHoweverNarrowItIs) {
  PlaceItems(3);
  Window().resize(Window().minimumSizeHint());
  QWidget& found = Part("lbl_Find");
  const QRect button = Part("cmd_Find").geometry();
  tools->sniffer.txt_Find.Text = "nothing";
  Click("cmd_Find");
  ASSERT_EQ(Caption(Window(), "lbl_Find"), "Not found.");
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return found.width() >= found.minimumSizeHint().width(); }, 2000));
  EXPECT_EQ(Part("cmd_Find").geometry(), button);
  EXPECT_GE(Part("LogCheck").width(), Part("LogCheck").minimumSizeHint().width());
}

}  // namespace
}  // namespace tarnlink
