// Text boxes, boxes with a list, and status panels.

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QLabel>
#include <QMenu>

#include "ui/binder_fixture.h"
#include "ui/look.h"

namespace tarnlink {
namespace {

// A text box that notes each change, such as "a|ab|".
class NotingTextBox : public TextBox {
 public:
  explicit NotingTextBox(const std::string& box_name) : TextBox(box_name) {
    Change = [this] { changes += Text.get() + "|"; };
    LostFocus = [this] { ++losses; };
  }

  std::string changes;
  int losses = 0;
};

TEST_F(BinderTest, AFieldShowsWhatTheModelSets) {
  auto& control = Make<NotingTextBox>("txt_LogPath");
  control.Text = "C:";
  auto* edit = Add<QLineEdit>();
  Bind(edit, control);
  ShowWindow();
  EXPECT_EQ(edit->objectName(), "txt_LogPath");
  EXPECT_EQ(edit->text(), "C:");
  control.Text = "/home/\xC3\xA9t\xC3\xA9";
  EXPECT_EQ(edit->text(), QString("/home/été"));
  EXPECT_EQ(control.changes, "C:|/home/\xC3\xA9t\xC3\xA9|");
  control.Enabled = false;
  EXPECT_FALSE(edit->isEnabled());
}

TEST_F(BinderTest, AFieldReportsEachStroke) {
  auto& control = Make<NotingTextBox>("txt_LogPath");
  auto* edit = Add<QLineEdit>();
  Bind(edit, control);
  ShowWindow();
  QTest::keyClicks(edit, "abc");
  QTest::keyClick(edit, Qt::Key_Backspace);
  EXPECT_EQ(control.changes, "a|ab|abc|ab|");
  EXPECT_EQ(edit->text(), "ab");
}

TEST_F(BinderTest, AFieldReportsWhatIsPastedAtOnce) {
  auto& control = Make<NotingTextBox>("txt_LogPath");
  auto* edit = Add<QLineEdit>();
  Bind(edit, control);
  ShowWindow();
  QApplication::clipboard()->setText("/var/log");
  QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(control.changes, "/var/log|");
}

TEST_F(BinderTest, AFieldShowsWhatTheModelMadeOfAStroke) {
  auto& control = Make<TextBox>("ComPortNumber");
  control.Change = [&] {
    if (control.Text.get().size() > 2) control.Text = "16";
  };
  auto* edit = Add<QLineEdit>();
  Bind(edit, control);
  ShowWindow();
  QTest::keyClicks(edit, "123");
  EXPECT_EQ(control.Text.get(), "16");
  EXPECT_EQ(edit->text(), "16");
}

TEST_F(BinderTest, ALockedFieldTakesNoStroke) {
  auto& control = Make<NotingTextBox>("txt_LogPath");
  control.Locked = true;
  auto* edit = Add<QLineEdit>();
  Bind(edit, control);
  ShowWindow();
  QTest::keyClicks(edit, "abc");
  EXPECT_EQ(edit->text(), "");
  control.Locked = false;
  QTest::keyClicks(edit, "abc");
  EXPECT_EQ(control.Text.get(), "abc");
}

TEST_F(BinderTest, AFieldThatTheUserLeavesLosesFocusOnce) {
  auto& control = Make<NotingTextBox>("txt_LogPath");
  auto* edit = Add<QLineEdit>();
  auto* next = Add<QLineEdit>();
  Bind(edit, control);
  ShowWindow();
  edit->setFocus();
  QTest::keyClick(edit, Qt::Key_Tab);
  EXPECT_TRUE(next->hasFocus());
  EXPECT_EQ(control.losses, 1);
  QTest::mouseClick(edit, Qt::LeftButton);
  QTest::mouseClick(next, Qt::LeftButton);
  EXPECT_EQ(control.losses, 2);
}

TEST_F(BinderTest, AFieldKeepsFocusWhileSomethingElseIsOnlyInFront) {
  auto& control = Make<NotingTextBox>("txt_LogPath");
  auto* edit = Add<QLineEdit>();
  Bind(edit, control);
  ShowWindow();
  edit->setFocus();
  QTest::keyClick(edit, Qt::Key_Return);
  EXPECT_EQ(control.losses, 0) << "Enter";

  QMenu menu;
  menu.addAction("Copy");
  menu.popup(QPoint(10, 10));
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
  EXPECT_EQ(control.losses, 0) << "a menu";
  menu.close();

  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  EXPECT_EQ(control.losses, 0) << "another window";
}

// --- Boxes with a list ---

class ComboBinder : public BinderTest {
 protected:
  ComboBinder() {
    control.Change = [this] { changes += control.Text.get() + "|"; };
    control.List = Lines({"ttyS0", "ttyUSB0"});
    combo = Add<QComboBox>();
    combo->setEditable(true);
    combo->setInsertPolicy(QComboBox::NoInsert);
    combo->setCompleter(nullptr);
    Bind(combo, control);
    ShowWindow();
  }

  static std::vector<ComboBox::Item> Lines(const std::vector<std::string>& texts) {
    std::vector<ComboBox::Item> lines;
    for (const std::string& text : texts) lines.push_back({text, static_cast<int>(lines.size())});
    return lines;
  }

  // Opens the list and clicks on a line of it.
  void Pick(int line) {
    combo->showPopup();
    QAbstractItemView* list = combo->view();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(list->window()));
    const QRect place = list->visualRect(list->model()->index(line, 0));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place.center());
  }

  std::string Listed() const {
    std::string lines;
    for (int i = 0; i < combo->count(); ++i) lines += combo->itemText(i).toStdString() + "|";
    return lines;
  }

  ComboBox& control = Make<ComboBox>("cmbPortDevice");
  QComboBox* combo;
  std::string changes;
};

TEST_F(ComboBinder, AListShowsWhatTheModelSets) {
  EXPECT_EQ(combo->objectName(), "cmbPortDevice");
  EXPECT_EQ(Listed(), "ttyS0|ttyUSB0|");
  EXPECT_EQ(combo->currentText(), "") << "the list alone chooses nothing";
  control.Text = "ttyUSB0";
  EXPECT_EQ(combo->currentText(), "ttyUSB0");
  control.Text = "/dev/pts/3";
  EXPECT_EQ(combo->currentText(), "/dev/pts/3") << "a text that is in no line";
  EXPECT_EQ(changes, "ttyUSB0|/dev/pts/3|");
  EXPECT_EQ(combo->itemData(1).toInt(), 1);
}

TEST_F(ComboBinder, ALineThatIsPickedIsReportedOnce) {
  Pick(1);
  EXPECT_EQ(control.Text.get(), "ttyUSB0");
  EXPECT_EQ(changes, "ttyUSB0|");
  Pick(0);
  EXPECT_EQ(changes, "ttyUSB0|ttyS0|");
}

TEST_F(ComboBinder, TheLineThatWasPickedLastCanBePickedAgain) {
  Pick(0);
  control.Text = "/dev/pts/3";
  changes.clear();
  Pick(0);
  EXPECT_EQ(changes, "ttyS0|");
}

TEST_F(ComboBinder, EachStrokeIsReportedAndNothingIsCompleted) {
  combo->lineEdit()->clear();
  changes.clear();
  QTest::keyClicks(combo->lineEdit(), "ttyU");
  EXPECT_EQ(changes, "t|tt|tty|ttyU|");
  EXPECT_EQ(combo->currentText(), "ttyU");
}

TEST_F(ComboBinder, AnotherListLeavesTheTextAndReportsNothing) {
  control.Text = "/dev/pts/3";
  changes.clear();
  control.List = Lines({"ttyUSB1"});
  EXPECT_EQ(Listed(), "ttyUSB1|");
  EXPECT_EQ(combo->currentText(), "/dev/pts/3");
  control.List = Lines({});
  EXPECT_EQ(Listed(), "");
  EXPECT_EQ(combo->currentText(), "/dev/pts/3");
  EXPECT_EQ(control.Text.get(), "/dev/pts/3");
  EXPECT_EQ(changes, "");
}

TEST_F(ComboBinder, ADisabledListCannotBeOpened) {
  control.Enabled = false;
  QTest::mouseClick(combo, Qt::LeftButton);
  EXPECT_FALSE(combo->view()->isVisible());
}

// --- Status panels ---

TEST_F(BinderTest, APanelShowsItsControl) {
  auto& control = Make<StatusPanel>("StatusBar1(4)", "Communication Status");
  auto* panel = Add<TextPlate>();
  Bind(panel, control);
  ShowWindow();
  EXPECT_EQ(panel->objectName(), "StatusBar1(4)");
  EXPECT_EQ(panel->toolTip(), "Communication Status");
  control.Text = "Communication Running";
  EXPECT_EQ(panel->text(), "Communication Running");
  EXPECT_EQ(panel->property("text"), "Communication Running");
  EXPECT_EQ(panel->accessibleName(), "Communication Running");
}

// What is drawn: the same letters in bold would have more dark pixels than the plain ones.
TEST_F(BinderTest, APanelDrawsMarksAsTheyAre) {
  auto& control = Make<StatusPanel>("StatusBar1(5)", "Location which is read");
  auto* panel = Add<TextPlate>();
  panel->setFixedSize(300, 30);
  Bind(panel, control);
  ShowWindow();
  const auto drawn = [&](const std::string& text) {
    control.Text = text;
    return panel->grab().toImage();
  };
  EXPECT_NE(drawn("<b>x</b>"), drawn("x"));
  EXPECT_NE(drawn("a&b"), drawn("ab"));
  EXPECT_EQ(drawn("x"), drawn("x"));
}

// Without its last digits 12345678 would read as another number.
TEST_F(BinderTest, ATextThatDoesNotFitEndsInDotsBeforeTheFrame) {
  auto& control = Make<StatusPanel>("StatusBar1(5)", "Location which is read");
  auto* panel = Add<TextPlate>();
  Bind(panel, control);
  ShowWindow();
  control.Text = "12345678";
  panel->setFixedSize(panel->sizeHint());
  const QImage whole = panel->grab().toImage();
  for (int narrower = 4; narrower < 40; ++narrower) {
    panel->setFixedWidth(whole.width() - narrower);
    const QImage cut = panel->grab().toImage();
    const QColor ground = cut.pixelColor(2, 2);
    for (int y = 1; y < cut.height() - 1; ++y) {
      ASSERT_EQ(cut.pixelColor(cut.width() - 3, y), ground) << narrower << " pixels narrower";
    }
  }
  const QImage cut = panel->grab().toImage();
  control.Text = "1";
  EXPECT_NE(panel->grab().toImage(), cut);
}

TEST_F(BinderTest, ANameWithoutEndIsDrawnAsFarAsThePanelGoes) {
  auto& control = Make<StatusPanel>("StatusBar1(5)", "Location which is read");
  auto* panel = Add<TextPlate>();
  panel->setFixedSize(300, 30);
  Bind(panel, control);
  ShowWindow();
  control.Text = std::string(200, 'W');
  const QImage as_far_as_it_goes = panel->grab().toImage();
  control.Text = std::string(5000000, 'W');
  EXPECT_EQ(panel->grab().toImage(), as_far_as_it_goes);
  EXPECT_EQ(panel->size(), QSize(300, 30));
}

// The desktop changes between light and dark while the window is there.
TEST_F(BinderTest, ALabelHasTheLettersOfTheDesktop) {
  Label& label = Make<Label>("lbl_Port", "COM1");
  auto* shown = Add<QLabel>();
  Bind(shown, label);
  ShowWindow();
  const QPalette usual = QApplication::palette();
  const QPalette dark = DarkPalette();
  QApplication::setPalette(dark);
  const auto letters = [&] { return shown->palette().color(QPalette::WindowText); };
  EXPECT_TRUE(QTest::qWaitFor([&] { return letters() == dark.color(QPalette::WindowText); }, 3000));
  label.ForeColor = static_cast<Colour>(0x80000011);
  label.Caption = "gray";
  EXPECT_EQ(letters(), dark.color(QPalette::Disabled, QPalette::WindowText));
  QApplication::setPalette(usual);
}

}  // namespace
}  // namespace tarnlink
