// The settings of the graph under mouse and keyboard, as a user opens and works them.

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QWheelEvent>
#include <QWindow>
#include <stdexcept>
#include <string>

#include "platform/qt/qt_colour.h"
#include "ui/graph_fixture.h"

namespace tarnlink {
namespace {

class GraphSettingsDialogTest : public GraphUiTest {
 protected:
  static QDialog& Dialog() {
    auto* dialog = qobject_cast<QDialog*>(FindTopLevel("frmGraphConf"));
    if (dialog == nullptr) throw std::runtime_error("There is no dialog.");
    return *dialog;
  }
  template <class T = QWidget>
  T& In(const std::string& name) {
    T* found = Dialog().findChild<T*>(QString::fromStdString(name));
    if (found == nullptr) throw std::runtime_error("There is no " + name + ".");
    return *found;
  }
  void OpenByMenu() {
    Choose("mnuGraphSettings");
    ASSERT_NE(FindTopLevel("frmGraphConf"), nullptr);
    Activate(Dialog());
  }
  void ClickIn(const std::string& name) { ClickIn(In(name)); }
  void ClickIn(QWidget& widget) {
    // A check box is as wide as its place; its mark stands at its left.
    const bool is_check = qobject_cast<QAbstractButton*>(&widget) != nullptr &&
                          qobject_cast<QPushButton*>(&widget) == nullptr;
    const QPoint at(is_check ? 8 : widget.width() / 2, widget.height() / 2);
    QTest::mouseClick(Dialog().windowHandle(), Qt::LeftButton, {}, widget.mapTo(&Dialog(), at));
  }
  void Type(const std::string& name, const char* text) {
    ClickIn(name);
    Strike(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&In(name), text);
  }
  void Strike(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(Dialog().windowHandle(), key, modifiers);
  }
  void TurnWheelOver(const std::string& name) {
    const QPointF place = In(name).mapTo(&Dialog(), In(name).rect().center());
    QWheelEvent event(place, Dialog().mapToGlobal(place), {}, QPoint(0, -120), Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);  // only such a one goes from part to part
    qApp->notify(Dialog().windowHandle(), &event);
  }
  GraphAttribute& Line(int index) {
    return graph().Data.Attributes.at(static_cast<std::size_t>(index));
  }
  std::string NameInRow(int row) {
    return In("lblCap(" + std::to_string(row) + ")").accessibleName().toStdString();
  }
  void ExpectHarm(Answer answer) {
    world.dialogs()
        .ExpectMessageBox("Altering this data could harm your measurement.", "Edit")
        .Press(answer);
  }
};

TEST_F(GraphSettingsDialogTest, AClickOnTheCaptionsOpensItToo) {
  ClickOn("frm(0)", QPoint(20, 300));
  ASSERT_NE(FindTopLevel("frmGraphConf"), nullptr);
  EXPECT_EQ(QApplication::activeModalWidget(), &Dialog());
  EXPECT_EQ(Dialog().windowTitle(), "Graphic Settings");
  EXPECT_EQ(NameInRow(0), "Sensor 1");
  EXPECT_EQ(NameInRow(24), "Item 24");
}

TEST_F(GraphSettingsDialogTest, ALineIsSwitchedOnNamedAndStyledByClicks) {
  OpenByMenu();
  EXPECT_FALSE(In("txtAlias").isVisible());
  ClickIn("chkLine(3)");
  EXPECT_TRUE(Line(3).ShowLine);
  EXPECT_GT(graph().Data.Channels[3].UpperBound(), 0);
  EXPECT_TRUE(In<QAbstractButton>("chkShowLine").isChecked());
  ClickIn("chkShowCaption");
  EXPECT_TRUE(Line(3).ShowCaption);
  EXPECT_TRUE(In<QAbstractButton>("chkCap(3)").isChecked());
  Type("txtAlias", "Flue & gas");
  EXPECT_EQ(Line(3).Alias, "Flue & gas");
  EXPECT_EQ(NameInRow(3), "Flue & gas");
  In("cmbDrawStyle").setFocus();
  Strike(Qt::Key_Down);
  EXPECT_EQ(Line(3).LineStyle, 1);
  ClickIn("lblCap(0)");
  EXPECT_EQ(In<QLineEdit>("txtAlias").text(), "Sensor 1");
  ClickIn("optView(1)");
  EXPECT_EQ(NameInRow(3), "Sensor 4");
  EXPECT_FALSE(In("txtAlias").isVisible()) << "what was selected is not";
}

TEST_F(GraphSettingsDialogTest, ASampleAndTheButtonsPickColours) {
  OpenByMenu();
  ClickIn("chkLine(2)");
  world.dialogs().ExpectColour().GiveColour(0x112233);
  ClickIn("lblLine(2)");
  EXPECT_EQ(Line(2).LineColor, 0x112233);
  const QImage sample = In("lblLine(2)").grab().toImage();
  EXPECT_EQ(sample.pixelColor(sample.width() / 2, sample.height() / 2), ToQColor(0x112233));
  world.dialogs().ExpectColour().GiveColour(0x00FFFF);
  ClickIn("cmdColor(3)");
  EXPECT_EQ(graph().Data.Colors.GraphColor, 0x00FFFF);
  EXPECT_GT(CountOf(In("cmdColor(3)").grab().toImage(), ToQColor(0x00FFFF)), 100);
  EXPECT_GT(CountOf(Grab("GraphPan"), ToQColor(0x00FFFF)), 1000);
  ClickIn("cmdColor(5)");
  EXPECT_EQ(graph().Data.Colors, GraphColors{});
}

TEST_F(GraphSettingsDialogTest, AdvancedIsShownAfterItsQuestionAndWrittenAtOnce) {
  OpenByMenu();
  ClickIn("lblCap(1)");
  EXPECT_FALSE(In("txtID").isVisible());
  ExpectHarm(Answer::kCancel);
  ClickIn("cmdAdvanced");
  EXPECT_FALSE(In("txtID").isVisible());
  ExpectHarm(Answer::kOk);
  ClickIn("lblFixedCap");
  ASSERT_TRUE(In("txtID").isVisible());
  EXPECT_TRUE(In("lblStyle").isVisible());
  Type("txtID", "4567");
  Type("txtFactor", "0,5");
  EXPECT_EQ(Line(1).ID, 4567);
  EXPECT_EQ(Line(1).Factor, 0.5F);
  Type("txtClass", "300");
  EXPECT_EQ(Line(1).Class, 30) << "as far as it was a number of that kind";
  EXPECT_EQ(In<QLineEdit>("txtClass").text(), "300");
  EXPECT_EQ(In("txtSlaveAddress").toolTip(), "Slave Address");
}

TEST_F(GraphSettingsDialogTest, TheWheelScrollsOverTheListAndNowhereElse) {
  OpenByMenu();
  ClickIn("lblCap(1)");
  TurnWheelOver("txtAlias");
  TurnWheelOver("cmbDrawStyle");
  EXPECT_EQ(NameInRow(0), "Sensor 1");
  EXPECT_TRUE(In("txtAlias").isVisible());
  TurnWheelOver("lblCap(12)");
  EXPECT_EQ(NameInRow(0), "Sensor 4");
  EXPECT_FALSE(In("txtAlias").isVisible());
}

TEST_F(GraphSettingsDialogTest, TheListIsWorkedByKeys) {
  OpenByMenu();
  In("lblCap(0)").setFocus();
  Strike(Qt::Key_Down);
  Strike(Qt::Key_Down);
  Strike(Qt::Key_Up);
  EXPECT_TRUE(In("lblCap(1)").hasFocus());
  Strike(Qt::Key_Space);
  EXPECT_EQ(In<QLineEdit>("txtAlias").text(), "Sensor 2");
  In("lblCap(24)").setFocus();
  Strike(Qt::Key_Down);
  EXPECT_EQ(NameInRow(24), "Item 25");
  In("lblCap(0)").setFocus();
  Strike(Qt::Key_Up);
  EXPECT_EQ(NameInRow(24), "Item 24");
  Strike(Qt::Key_PageDown);
  EXPECT_EQ(NameInRow(0), "Item 25");
  Strike(Qt::Key_PageUp);
  EXPECT_EQ(NameInRow(0), "Sensor 1");
  Strike(Qt::Key_Tab);
  EXPECT_TRUE(In("chkLine(0)").hasFocus());
}

TEST_F(GraphSettingsDialogTest, TheKeyboardBeginsAtTheFirstNameEachTime) {
  OpenByMenu();
  EXPECT_TRUE(In("lblCap(0)").hasFocus());
  const QSize size = Dialog().size();
  ClickIn("lblCap(7)");
  EXPECT_EQ(Dialog().size(), size) << "nothing jumps";
  In("cmdColor(5)").setFocus();
  Strike(Qt::Key_Escape);
  OpenByMenu();
  EXPECT_TRUE(In("lblCap(0)").hasFocus());
}

TEST_F(GraphSettingsDialogTest, RowsBehindAShortTableAreEmpty) {
  graph().Data.Attributes.resize(17);
  graph().Data.Channels.resize(2);
  OpenByMenu();
  EXPECT_TRUE(In("lblLine(16)").isVisible());
  for (const char* part : {"lblCap(17)", "lblLine(17)", "chkLine(24)", "lblLine(24)"}) {
    EXPECT_FALSE(In(part).isVisible()) << part;
  }
}

TEST_F(GraphSettingsDialogTest, EveryWayOfClosingAsksForUnusedData) {
  OpenByMenu();
  ClickIn("chkLine(0)");
  ClickIn("chkLine(0)");
  world.dialogs().ExpectMessageBox("Remove unused data from memory.", "Clear").Cancel();
  Strike(Qt::Key_Escape);
  EXPECT_TRUE(Dialog().isVisible()) << "the question was left without an answer";
  world.dialogs().ExpectMessageBox("Remove unused data from memory.", "Clear").Press(Answer::kNo);
  Dialog().close();
  EXPECT_FALSE(Dialog().isVisible());
  EXPECT_GT(graph().Data.Channels[0].UpperBound(), 0);
  OpenByMenu();
  world.dialogs().ExpectMessageBox("Remove unused data from memory.", "Clear").Press(Answer::kYes);
  ClickIn(*Dialog().findChild<QPushButton*>("cmdClose"));
  EXPECT_EQ(graph().Data.Channels[0].UpperBound(), 0);
  EXPECT_EQ(QApplication::activeModalWidget(), &window());
}

TEST_F(GraphSettingsDialogTest, OpensAnewAtTheTopWithAliases) {
  OpenByMenu();
  In<QScrollBar>("VScroll1").setValue(91);
  ClickIn("optView(1)");
  EXPECT_EQ(NameInRow(24), "Frost mode");
  Strike(Qt::Key_Escape);
  OpenByMenu();
  EXPECT_EQ(NameInRow(0), "Sensor 1");
  EXPECT_TRUE(In<QAbstractButton>("optView(0)").isChecked());
}

}  // namespace
}  // namespace tarnlink
