// What a screen reader is told of the widgets that paint themselves. That all windows tell the
// names of their controls is tested over the gallery.

#include <QAccessible>

#include "ui/burner_start.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

QAccessibleInterface& Reader(QObject& object) {
  QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(&object);
  if (reader == nullptr) throw std::runtime_error("A screen reader is told nothing.");
  return *reader;
}

// --- Widgets that paint themselves ---------------------------------------------------------------

class AccessibleParts : public UiTest {};

TEST_F(AccessibleParts, AValueBoxTellsItsValue) {
  OpenScreen(kTwoLocations);
  monitor.main.RAM_LOC_VAL(1).Text = "705";
  QAccessibleInterface& value = Reader(Get("RAM_LOC_VAL(1)"));
  EXPECT_EQ(value.role(), QAccessible::StaticText);
  EXPECT_EQ(value.text(QAccessible::Value), "705");
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return value.text(QAccessible::Description) == QStringLiteral("Flow"); }, 2000));
  EXPECT_TRUE(value.state().readOnly);
  EXPECT_EQ(Reader(Get("RAM_LOC_TEXT(1)")).text(QAccessible::Name), "Flow");
}

TEST(AccessibleGraph, TellsPictureScalesAndButtons) {
  BurnerStart start;
  GraphWindow& window = start.window();
  EXPECT_EQ(Reader(*window.findChild<QWidget*>("GraphPan")).role(), QAccessible::Graphic);
  QWidget* exit = window.findChild<QWidget*>("lblExit");
  ASSERT_NE(exit, nullptr);
  QAccessibleInterface& button = Reader(*exit);
  EXPECT_EQ(button.role(), QAccessible::Button);
  QAccessibleActionInterface* action = button.actionInterface();
  ASSERT_NE(action, nullptr);
  action->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace tarnlink
