// Export and print, from the File menu with the mouse and by key.

#include <QMenu>
#include <QMenuBar>

#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

class PaperTest : public UiTest {
 protected:
  // Pulls the File menu down and clicks one of its entries.
  void ClickInFileMenu(const std::string& name) {
    QMenuBar& bar = *window->menuBar();
    QAction& file = Entry("M_file");
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(&file).center());
    QMenu& menu = *file.menu();
    ASSERT_TRUE(QTest::qWaitFor([&] { return menu.isVisible(); }, 2000));
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&Entry(name)).center());
  }

  void ExportTo(const std::string& path, const std::string& header) {
    world.dialogs().ExpectSaveFile("Doc file").Give(path);
    world.dialogs().ExpectInputBox("Enter header text:", "Export to DOC").Give(header);
    ClickInFileMenu("mnuPrintToFile");
  }

  static constexpr const char* kReport = "/home/user/work/report.doc";
};

TEST_F(PaperTest, ANewScreenIsExportedWithoutAPath) {
  Begin();
  Click("Toolbar1(1)");
  ExportTo(kReport, "");
  EXPECT_EQ(world.dialogs().last_file_request().file_name, "export.doc");
  const std::string report = world.disk().Get(kReport);
  EXPECT_TRUE(report.starts_with("  ")) << report;
  EXPECT_NE(report[2], ' ') << report;
  EXPECT_TRUE(report.ends_with("\r\n\r\n\r\nName 0\tValue 0\r\n")) << report;
}

TEST_F(PaperTest, AValueThatWasNeverReadLeavesALineThatEndsWithTheTab) {
  OpenScreen(kTwoLocations);
  monitor.options.chkClearAllValues.Value = true;
  Click("Toolbar1(2)");
  Click("Toolbar1(3)");
  ExportTo(kReport, "Cellar");
  const std::string report = world.disk().Get(kReport);
  EXPECT_TRUE(report.starts_with("/home/user/work/boiler.wcr  ")) << report;
  EXPECT_TRUE(report.ends_with("\r\n\r\n\r\nCellar\r\n\r\nFlow\t\r\nStatus\t\r\n")) << report;
}

TEST_F(PaperTest, TheKeyShowsThePagesFirst) {
  OpenScreen(kTwoLocations);
  world.dialogs().ExpectPreview("Print Screen").While([this] {
    EXPECT_FALSE(Entry("M_file").isVisible());
  });
  QTest::keyClick(window.get(), Qt::Key_P, Qt::ControlModifier);
  EXPECT_TRUE(Entry("M_file").isVisible());
  std::string texts;
  for (const std::string& operation : world.dialogs().last_preview()) texts += operation + "\n";
  for (const char* shown :
       {"\"Flow\"", "\"Value 1\"", "\"Status\"", "\"Value 2\"", "\"Boiler 1\""}) {
    EXPECT_NE(texts.find(shown), std::string::npos) << shown;
  }
}

}  // namespace
}  // namespace tarnlink
