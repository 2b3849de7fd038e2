// The dialog of the test mode command, opened from the graph, under mouse and keyboard.

#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QWindow>
#include <functional>
#include <stdexcept>
#include <string>

#include "ui/graph_fixture.h"

namespace tarnlink {
namespace {

class TestModeDialogTest : public GraphUiTest {
 protected:
  static QDialog& Dialog() {
    auto* dialog = qobject_cast<QDialog*>(FindTopLevel("frmTestMode"));
    if (dialog == nullptr) throw std::runtime_error("There is no dialog.");
    return *dialog;
  }
  template <class T>
  T& In(const char* name) {
    T* found = Dialog().findChild<T*>(name);
    if (found == nullptr) throw std::runtime_error(std::string("There is no ") + name + ".");
    return *found;
  }
  // By a mouse button on "Test".
  void OpenBy(Qt::MouseButton button) {
    Activate(window());
    ClickAt(Middle("lblTest"), button);
    ASSERT_NE(FindTopLevel("frmTestMode"), nullptr);
    Activate(Dialog());
  }
  void ClickIn(QWidget& widget, int from_left = -1) {
    const int x = from_left < 0 ? widget.width() / 2 : from_left;
    QTest::mouseClick(Dialog().windowHandle(), Qt::LeftButton, {},
                      widget.mapTo(&Dialog(), QPoint(x, widget.height() / 2)));
  }
  void Type(const char* text) {
    auto& edit = In<QLineEdit>("txtTestPower");
    ClickIn(edit);
    Strike(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&edit, text);
  }
  void Strike(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(Dialog().windowHandle(), key, modifiers);
  }
  void ClickClose() { ClickIn(*Dialog().findChild<QPushButton*>()); }
};

TEST_F(TestModeDialogTest, AnyButtonButTheLeftOpensItOverTheGraph) {
  ClickAt(Middle("lblTest"));
  EXPECT_EQ(FindTopLevel("frmTestMode"), nullptr);
  for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
    OpenBy(button);
    EXPECT_EQ(QApplication::activeModalWidget(), &Dialog());
    EXPECT_EQ(Dialog().windowTitle(), "Testmode");
    EXPECT_FALSE(IsMenuOpen());
    ClickClose();
    EXPECT_EQ(QApplication::activeModalWidget(), &window());
  }
}

TEST_F(TestModeDialogTest, ShowsOnAndFullPowerAtFirst) {
  OpenBy(Qt::RightButton);
  EXPECT_TRUE(In<QAbstractButton>("optTestMode(0)").isChecked());
  EXPECT_EQ(In<QLineEdit>("txtTestPower").text(), "100");
  EXPECT_EQ(In<QSlider>("sldTestPower").value(), 100);
  EXPECT_EQ(In<QSlider>("sldTestPower").maximum(), 100);
}

TEST_F(TestModeDialogTest, EveryWayOfClosingTakesTheSettingsOver) {
  const std::vector<std::pair<const char*, std::function<void()>>> ways = {
      {"55", [this] { ClickClose(); }},
      {"56", [this] { Strike(Qt::Key_Escape); }},
      {"57", [this] { Strike(Qt::Key_Return); }},
      {"58", [this] { Dialog().close(); }}};
  for (const auto& [power, close] : ways) {
    OpenBy(Qt::RightButton);
    Type(power);
    close();
    EXPECT_FALSE(Dialog().isVisible()) << power;
    EXPECT_EQ(std::to_string(graph().TestModePower), power);
  }
  OpenBy(Qt::RightButton);
  EXPECT_EQ(In<QLineEdit>("txtTestPower").text(), "58");
}

TEST_F(TestModeDialogTest, OffGreysThePowerAndKeepsIt) {
  OpenBy(Qt::RightButton);
  Type("55");
  ClickIn(In<QWidget>("optTestMode(1)"), 8);
  EXPECT_FALSE(In<QSlider>("sldTestPower").isEnabled());
  EXPECT_FALSE(In<QLineEdit>("txtTestPower").isEnabled());
  ClickClose();
  EXPECT_FALSE(graph().TestModeOn);
  EXPECT_EQ(graph().TestModePower, 55);
  OpenBy(Qt::RightButton);
  EXPECT_TRUE(In<QAbstractButton>("optTestMode(1)").isChecked());
  EXPECT_FALSE(In<QLineEdit>("txtTestPower").isEnabled());
  ClickIn(In<QWidget>("optTestMode(0)"), 8);
  EXPECT_TRUE(In<QLineEdit>("txtTestPower").isEnabled());
  EXPECT_EQ(In<QLineEdit>("txtTestPower").text(), "55");
}

TEST_F(TestModeDialogTest, TheSliderMovesTheTextAndTheTextTheSlider) {
  OpenBy(Qt::RightButton);
  auto& slider = In<QSlider>("sldTestPower");
  slider.setFocus();
  Strike(Qt::Key_Left);
  EXPECT_EQ(In<QLineEdit>("txtTestPower").text(), "99");
  Type("7");
  EXPECT_EQ(slider.value(), 7);
  EXPECT_EQ(In<QLineEdit>("txtTestPower").text(), "7") << "while it is typed";
  Type("no number");
  EXPECT_EQ(slider.value(), 0);
  Type("300");
  EXPECT_EQ(slider.value(), 100);
  ClickClose();
  EXPECT_EQ(graph().TestModePower, 100);
}

TEST_F(TestModeDialogTest, GoesWithTheGraph) {
  OpenBy(Qt::RightButton);
  ClickClose();
  ClickAt(Middle("lblExit"));
  ASSERT_TRUE(IsGone());
  EXPECT_EQ(FindTopLevel("frmTestMode"), nullptr);
}

}  // namespace
}  // namespace tarnlink
