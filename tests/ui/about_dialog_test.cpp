// The About box.

#include <QLabel>
#include <QPushButton>

#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

class AboutTest : public UiTest {
 protected:
  void OpenAbout() {
    BeginOnce();
    WaitForActive(window.get());
    Entry("M_About").trigger();
    WaitForActive(about.get());
  }
};

TEST_F(AboutTest, NamesTheProgramAndItsVersion) {
  OpenAbout();
  EXPECT_EQ(about->objectName(), "frmAbout");
  EXPECT_EQ(about->windowTitle(), "About TarnLink");
  EXPECT_TRUE(about->isModal());
  const QString version = Get<QLabel>("lblVersion").text();
  EXPECT_EQ(version, "V" TARNLINK_VERSION);
  EXPECT_TRUE(QRegularExpression("^V\\d+\\.\\d+\\.\\d+$").match(version).hasMatch());
}

TEST_F(AboutTest, ClosesByItsButtonEnterEscapeAndTheFramesCross) {
  OpenAbout();
  Click("cmdOK");
  EXPECT_FALSE(about->isVisible());
  OpenAbout();
  QTest::keyClick(about.get(), Qt::Key_Return);
  EXPECT_FALSE(about->isVisible());
  OpenAbout();
  QTest::keyClick(about.get(), Qt::Key_Escape);
  EXPECT_FALSE(about->isVisible());
  EXPECT_FALSE(monitor.about.form.Visible);
  OpenAbout();
  about->close();
  EXPECT_FALSE(about->isVisible());
  EXPECT_FALSE(monitor.about.form.Visible);
}

TEST_F(AboutTest, IsMadeOnceAndMayGoBeforeItsForm) {
  OpenAbout();
  const QDialog* first = about.get();
  Click("cmdOK");
  OpenAbout();
  EXPECT_EQ(about.get(), first);
  about.reset();
  monitor.about.form.Visible = false;
  monitor.about.cmdOk.Caption = "after";
}

TEST_F(AboutTest, ARunGoesOnBehindIt) {
  OpenScreen(kTwoLocations);
  SlaveAnswers("2A01");
  Click("Toolbar1(2)");
  OpenAbout();
  world.Advance(std::chrono::seconds(1));
  EXPECT_EQ(monitor.main.RAM_LOC_VAL(1).Text.get(), "42");
  Click("cmdOK");
  Click("Toolbar1(3)");
}

}  // namespace
}  // namespace tarnlink
