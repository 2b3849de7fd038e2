// Where the main window stands, how large it is, and in which state.

#include <QGuiApplication>
#include <QScreen>

#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

class WindowPlace : public UiTest {
 protected:
  void Store(int left, int top, int width, int height) {
    world.settings().SaveSetting("Startup", "Left", std::to_string(left));
    world.settings().SaveSetting("Startup", "Top", std::to_string(top));
    world.settings().SaveSetting("Startup", "Width", std::to_string(width));
    world.settings().SaveSetting("Startup", "Height", std::to_string(height));
  }

  std::string Stored() {
    std::string text;
    for (const char* key : {"Left", "Top", "Width", "Height"}) {
      text += world.settings().GetSetting("Startup", key, "-") + "|";
    }
    return text;
  }

  QRect Place() const { return {window->pos(), window->size()}; }

  static int Units(int pixels) { return pixels * 15; }
};

TEST_F(WindowPlace, IsWhereItWasLeft) {
  Store(Units(60), Units(40), Units(900), Units(600));
  Begin();
  EXPECT_EQ(Place(), QRect(60, 40, 900, 600));
}

TEST_F(WindowPlace, IsNeverSmallerThanCanBeUsed) {
  Begin();
  EXPECT_EQ(window->size(), window->minimumSize());
  EXPECT_EQ(window->pos(), QPoint(0, 0));
}

TEST_F(WindowPlace, OnNoScreenBecomesAPlaceInSight) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  const std::pair<int, int> lost[] = {{5000, 40},
                                      {-3000, 40},
                                      {40, 4000},
                                      {40, -2000},
                                      {screen.right() - 20, 40},
                                      {40, screen.bottom() - 20},
                                      {200000, 200000}};
  for (const auto& [left, top] : lost) {
    SCOPED_TRACE(std::to_string(left) + "," + std::to_string(top));
    Store(Units(left), Units(top), Units(900), Units(600));
    window.reset();
    Begin();
    EXPECT_EQ(window->pos(), screen.topLeft());
    EXPECT_EQ(window->size(), QSize(900, 600));
  }
}

TEST_F(WindowPlace, PartlyInSightStays) {
  Store(Units(-100), Units(40), Units(900), Units(600));
  Begin();
  EXPECT_EQ(window->pos(), QPoint(-100, 40));
}

TEST_F(WindowPlace, OfNonsenseStillShowsAWindow) {
  world.settings().SaveSetting("Startup", "Left", "abc");
  world.settings().SaveSetting("Startup", "Top", "-99999999999");
  world.settings().SaveSetting("Startup", "Width", "999999999999999999");
  world.settings().SaveSetting("Startup", "Height", "-5");
  Begin();
  EXPECT_TRUE(window->isVisible());
  EXPECT_GE(window->pos().y(), 0);
}

TEST_F(WindowPlace, IsStoredWhenTheProgramIsLeft) {
  Begin();
  window->move(30, 20);
  window->resize(1000, 700);
  window->close();
  EXPECT_EQ(Stored(), "450|300|15000|10500|");
}

TEST_F(WindowPlace, ThatNobodyChangedStaysAsItWasStored) {
  Store(901, 602, 15003, 10504);
  Begin();
  window->close();
  EXPECT_EQ(Stored(), "901|602|15003|10504|");
}

TEST_F(WindowPlace, OfAMaximizedWindowIsTheOneBeneath) {
  Store(Units(60), Units(40), Units(900), Units(600));
  Begin();
  window->showMaximized();
  ASSERT_TRUE(QTest::qWaitFor([&] { return window->size() != QSize(900, 600); }, 1000));
  EXPECT_EQ(monitor.main.form.State.get(), WindowState::kMaximized);
  window->close();
  EXPECT_EQ(Stored(), "900|600|13500|9000|");
}

TEST_F(WindowPlace, OfAMinimizedWindowIsNotStored) {
  Store(Units(60), Units(40), Units(900), Units(600));
  Begin();
  window->move(30, 20);
  window->resize(1000, 700);
  window->showMinimized();
  ASSERT_TRUE(QTest::qWaitFor([&] { return window->isMinimized(); }, 1000));
  EXPECT_EQ(monitor.main.form.State.get(), WindowState::kMinimized);
  window->close();
  EXPECT_EQ(Stored(), "900|600|13500|9000|");
}

TEST_F(WindowPlace, IsReportedAgainAfterTheWindowIsBackToNormal) {
  Begin();
  window->showMaximized();
  window->showNormal();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isMaximized(); }, 1000));
  EXPECT_EQ(monitor.main.form.State.get(), WindowState::kNormal);
  window->move(30, 20);
  window->resize(1000, 700);
  window->close();
  EXPECT_EQ(Stored(), "450|300|15000|10500|");
}

}  // namespace
}  // namespace tarnlink
