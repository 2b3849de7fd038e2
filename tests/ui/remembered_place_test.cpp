// Where tool windows come up again.

#include "ui/remembered_place.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <random>

#include "ui/service_tools_fixture.h"

namespace tarnlink {
namespace {

constexpr QRect kUsual(0, 0, 320, 240);

class RememberedPlace : public ::testing::Test {
 protected:
  // As at a start of the program.
  std::unique_ptr<QWidget> Window(const std::string& name = "frmTool") {
    auto window = std::make_unique<QWidget>();
    window->setObjectName(QString::fromStdString(name));
    window->resize(kUsual.size());
    RememberPlace(window.get(), settings);
    return window;
  }
  void Leave(const QRect& place, const std::string& name = "frmTool") {
    const auto window = Window(name);
    window->show();
    window->setGeometry(place);
    window->hide();
  }
  QRect Found(const std::string& name = "frmTool") {
    const auto window = Window(name);
    window->show();
    return window->geometry();
  }

  FakeSettingsStore settings;
};

TEST_F(RememberedPlace, IsWhereTheWindowWasLeft) {
  Leave({60, 40, 500, 300});
  EXPECT_EQ(Found(), QRect(60, 40, 500, 300));
}

TEST_F(RememberedPlace, IsKeptWhileTheProgramRuns) {
  const auto window = Window();
  window->show();
  window->setGeometry(60, 40, 500, 300);
  window->hide();
  // As a window manager would, for a dialog that comes up anew.
  window->move(0, 0);
  window->show();
  EXPECT_EQ(window->geometry(), QRect(60, 40, 500, 300));
}

TEST_F(RememberedPlace, IsStoredForAWindowThatGoesWhileItIsShown) {
  {
    QDialog dialog;
    dialog.setObjectName("frmTool");
    RememberPlace(&dialog, settings);
    dialog.show();
    dialog.setGeometry(70, 50, 400, 300);
  }
  EXPECT_EQ(Found(), QRect(70, 50, 400, 300));
}

TEST_F(RememberedPlace, IsEachWindowsOwn) {
  Leave({60, 40, 500, 300}, "frmOne");
  Leave({10, 20, 330, 250}, "frmOther");
  EXPECT_EQ(Found("frmOne"), QRect(60, 40, 500, 300));
  EXPECT_EQ(Found("frmOther"), QRect(10, 20, 330, 250));
}

TEST_F(RememberedPlace, OfAMaximizedWindowIsMaximizedWithTheOneBeneath) {
  {
    const auto window = Window();
    window->setGeometry(60, 40, 500, 300);
    window->showMaximized();
    window->hide();
  }
  const auto window = Window();
  window->show();
  EXPECT_TRUE(window->isMaximized());
  window->showNormal();
  EXPECT_EQ(window->geometry(), QRect(60, 40, 500, 300));
}

TEST_F(RememberedPlace, OnNoScreenBecomesAPlaceInSight) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  for (const QPoint& lost :
       {QPoint(5000, 40), QPoint(-3000, 40), QPoint(40, 4000), QPoint(40, -2000)}) {
    Leave({lost, QSize(500, 300)});
    const QRect found = Found();
    EXPECT_TRUE(screen.contains(found)) << lost.x() << ", " << lost.y();
    EXPECT_EQ(found.size(), QSize(500, 300));
  }
  Leave({0, 0, 3000, 2000});
  EXPECT_TRUE(screen.contains(Found()));
}

TEST_F(RememberedPlace, IsTheUsualOneWhereTheStoreHasNone) {
  const QRect usual = Found("frmUnknown");
  EXPECT_EQ(usual.size(), kUsual.size());
  for (const char* text :
       {"", "abc", ",,,", "60,40", "60,40,500", "60,40,x,300", "60,40,0,300", "60,40,500,-3",
        "60,40,99999999999,300", "2000000000,2000000000,2000000000,2000000000", "6.5,4,500,300"}) {
    settings.SaveSetting("Places", "frmTool", text);
    EXPECT_EQ(Found(), usual) << text;
  }
}

TEST_F(RememberedPlace, OfWhateverNumbersShowsAWindowInSight) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  std::minstd_rand random(9);
  const auto number = [&] { return std::to_string(static_cast<int>(random() % 9000) - 3000); };
  for (int i = 0; i < 300; ++i) {
    const std::string text = number() + "," + number() + "," + number() + "," + number();
    settings.SaveSetting("Places", "frmTool", text);
    const QRect found = Found();
    const QRect seen = found.intersected(screen);
    ASSERT_GE(seen.width(), std::min(48, found.width())) << text;
    ASSERT_GE(seen.height(), std::min(48, found.height())) << text;
  }
}

TEST_F(RememberedPlace, PartlyInSightStays) {
  Leave({-300, 40, 500, 300});
  EXPECT_EQ(Found(), QRect(-300, 40, 500, 300));
}

// --- The windows that have one -------------------------------------------------------------------

class ToolPlaceTest : public ServiceToolsTest {
 protected:
  void ExpectKept(const std::function<QWidget&()>& open) {
    const QRect place(40, 30, 700, 560);
    open().setGeometry(place);
    StartAgain();
    QWidget& again = open();
    EXPECT_EQ(again.geometry(), place) << again.objectName().toStdString();
    again.close();
  }

  std::string mss_folder;
  std::string grp_folder;
};

TEST_F(ToolPlaceTest, EveryToolIsWhereItWasLeft) {
  ExpectKept([this]() -> QWidget& { return OpenPanel(); });
  ExpectKept([this]() -> QWidget& { return OpenScan(); });
  ExpectKept([this]() -> QWidget& { return OpenWrongMessages(); });
}

TEST_F(ToolPlaceTest, ThePanelIsWhereItWasLeftAlsoOverTheScan) {
  QWidget& panel = OpenPanel();
  panel.setGeometry(40, 30, 700, 560);
  panel.close();
  QWidget& scan = OpenScan();
  Click(scan, "cmdControlPanel(1)");
  EXPECT_EQ(panel.geometry(), QRect(40, 30, 700, 560));
  panel.close();
  scan.close();
}

TEST_F(ToolPlaceTest, TheGraphIsWhereItWasLeft) {
  const auto open = [this] {
    auto tool = std::make_unique<GraphTool>(world, ServiceLine{[] { return 1; }, [] { return 3; }},
                                            GraphProject{mss_folder, grp_folder, {}, {}}, nullptr);
    tool->Show();
    return tool;
  };
  auto graph = open();
  graph->window()->setGeometry(10, 20, 770, 510);
  graph.reset();
  graph = open();
  EXPECT_EQ(graph->window()->geometry(), QRect(10, 20, 770, 510));
}

}  // namespace
}  // namespace tarnlink
