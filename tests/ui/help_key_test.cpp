// F1: which page comes up, and when none does. That each form has its own is shown where its
// picture is taken.

#include "ui/help_key.h"

#include <QAction>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>

#include "ui/help_shots.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

using Paths = std::vector<std::string>;

// The program's own key over the fake desktop.
class HelpKeyTest : public UiTest {
 protected:
  void F1(QWidget& above) { QTest::keyClick(above.windowHandle(), Qt::Key_F1); }
  void Show(QWidget& above) {
    above.show();
    WaitForActive(&above);
  }
  Paths& opened() { return world.shell().opened; }

  HelpKey key{[this](std::string_view page) { monitor.help.Open(page); }};
};

TEST_F(HelpKeyTest, OpensThePageOfTheMainWindowAndNotTheFirstOneToo) {
  Begin();
  F1(*window);
  EXPECT_EQ(opened(), Paths{"/usr/share/tarnlink/run.html"});
}

TEST_F(HelpKeyTest, IsShownInTheMenuWhoseEntryOpensTheFirstPage) {
  Begin();
  EXPECT_EQ(Entry("M_HelpTopics").shortcut(), QKeySequence(Qt::Key_F1));
  Entry("M_HelpTopics").trigger();
  EXPECT_EQ(opened(), Paths{"/usr/share/tarnlink/HELP.HTML"});
}

TEST_F(HelpKeyTest, CountsInAFieldAndInAnOpenMenu) {
  OpenOptions();
  Get("ComPortNumber").setFocus();
  F1(*options);
  EXPECT_EQ(opened(), Paths{"/usr/share/tarnlink/options.html"});
  options->close();
  opened().clear();
  QMenu* menu = Entry("M_file").menu();
  menu->popup(QPoint(0, 0));
  ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
  F1(*menu);
  EXPECT_EQ(opened(), Paths{"/usr/share/tarnlink/run.html"});
  menu->close();
}

TEST_F(HelpKeyTest, OfABoxIsThePageOfTheFormThatItStandsOn) {
  OpenOptions();
  QMessageBox box(QMessageBox::Question, "TarnLink", "Shall it?", QMessageBox::Yes, options.get());
  Show(box);
  F1(box);
  EXPECT_EQ(opened(), Paths{"/usr/share/tarnlink/options.html"});
  box.close();
}

TEST_F(HelpKeyTest, OfAFileDialogIsThePageOfTheFormThatItStandsOn) {
  Begin();
  QFileDialog dialog(window.get());
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  Show(dialog);
  F1(dialog);
  EXPECT_EQ(opened(), Paths{"/usr/share/tarnlink/run.html"});
  dialog.close();
}

TEST_F(HelpKeyTest, OfABoxThatStandsOnNothingIsTheFirstPage) {
  Begin();
  QMessageBox box(QMessageBox::Critical, "Internal System Error", "5");
  Show(box);
  F1(box);
  EXPECT_EQ(opened(), Paths{"/usr/share/tarnlink/HELP.HTML"});
  box.close();
}

TEST_F(HelpKeyTest, ThatIsHeldOpensOnePage) {
  Begin();
  QKeyEvent again(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier, QString(), true);
  F1(*window);
  QApplication::sendEvent(window.get(), &again);
  EXPECT_EQ(opened().size(), 1U);
}

TEST_F(HelpKeyTest, WithShiftIsAnotherKey) {
  Begin();
  QTest::keyClick(window->windowHandle(), Qt::Key_F1, Qt::ShiftModifier);
  EXPECT_EQ(opened(), Paths{});
}

TEST_F(HelpKeyTest, SaysWhichPageCannotBeShown) {
  OpenOptions();
  world.shell().files_open = false;
  world.dialogs().ExpectMessageBox(
      {.text = "The help cannot be shown.",
       .title = "TarnLink",
       .icon = Icon::kExclamation,
       .detail = "Nothing on this machine opens /usr/share/tarnlink/options.html, or it is not "
                 "there."});
  F1(*options);
}

}  // namespace
}  // namespace tarnlink
