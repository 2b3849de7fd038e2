// The letters that entries and controls are chosen with: which ones they get, and what they do.
// That all windows have them is tested over the gallery.

#include "ui/mnemonics.h"

#include <QMenuBar>
#include <QPushButton>
#include <QTabWidget>

#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

// The captions of a menu, with their marks.
std::string Captions(const QMenu& menu) {
  QStringList captions;
  for (const QAction* entry : menu.actions()) captions << entry->text();
  return captions.join(' ').toStdString();
}

TEST(Mnemonics, PreferTheFirstLettersOfWords) {
  QMenu menu;
  for (const char* caption : {"Open", "Save", "Save as", "Options", "Sav"}) menu.addAction(caption);
  KeepMnemonics(&menu);
  EXPECT_EQ(Captions(menu), "&Open &Save Save &as O&ptions Sa&v");
}

TEST(Mnemonics, LeaveTheLettersThatThereAre) {
  QMenu menu;
  for (const char* caption : {"Exit", "E&xit", "This && that", "2"}) menu.addAction(caption);
  KeepMnemonics(&menu);
  EXPECT_EQ(Captions(menu), "&Exit E&xit &This && that &2");
}

TEST(Mnemonics, StayWhereTheyAreWhenAnotherCaptionChanges) {
  QMenu menu;
  KeepMnemonics(&menu);
  QAction* start = menu.addAction("Start");
  menu.addAction("Stop");
  EXPECT_EQ(Captions(menu), "&Start S&top");
  start->setText("Run");
  EXPECT_EQ(Captions(menu), "&Run S&top");
  start->setText("Tell");
  EXPECT_EQ(Captions(menu), "T&ell S&top");
  start->setEnabled(false);
  EXPECT_EQ(Captions(menu), "T&ell S&top");
}

TEST(Mnemonics, OfPagesCanBeTheSame) {
  QTabWidget tabs;
  for (const char* caption : {"One", "Two"}) {
    auto* page = new QWidget;
    new QPushButton("Save", page);
    tabs.addTab(page, caption);
  }
  GiveMnemonics(&tabs);
  for (const auto* button : tabs.findChildren<QPushButton*>()) EXPECT_EQ(button->text(), "&Save");
  EXPECT_EQ(tabs.tabText(0), "One");  // it is the window itself here, and has no tabs of its own
}

TEST(Mnemonics, RowsOfTheSameCaptionLeaveTheLettersToTheRest) {
  QWidget window;
  for (int i = 0; i < 3; ++i) new QPushButton("Copy", &window);
  auto* other = new QPushButton("Clear", &window);
  GiveMnemonics(&window);
  EXPECT_EQ(window.findChild<QPushButton*>()->text(), "Copy");
  EXPECT_EQ(other->text(), "&Clear");
}

TEST(Mnemonics, ACaptionThatChangesGetsALetterThatIsFree) {
  QWidget window;
  auto* first = new QPushButton("Start", &window);
  auto* second = new QPushButton("Copy", &window);
  GiveMnemonics(&window);
  EXPECT_EQ(second->text(), "&Copy");
  ShowCaption(second, "Stop");
  EXPECT_EQ(second->text(), "S&top");
  ShowCaption(second, "Stop");
  EXPECT_EQ(second->text(), "S&top");
  EXPECT_EQ(first->text(), "&Start");
}

class MnemonicKeys : public UiTest {};

// --- Pressed -------------------------------------------------------------------------------------

TEST_F(MnemonicKeys, OpenAMenuAndChooseItsEntry) {
  Begin();
  QTest::keyClick(window.get(), Qt::Key_H, Qt::AltModifier);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(Entry("M_About").text(), "&About");
  QTest::keyClick(menu, Qt::Key_A);
  EXPECT_TRUE(about->isVisible());
}

TEST_F(MnemonicKeys, AFileThatWasOpenIsChosenWithItsDigit) {
  world.settings().SaveSetting("FileHistory", "Hist1", "/home/user/b & c.wcr");
  world.disk().Put("/home/user/b & c.wcr", kTwoLocations);
  Begin();
  QMenu* menu = Entry("M_file").menu();
  menu->popup(QPoint(0, 0));
  ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
  EXPECT_EQ(Entry("M_fileHist(1)").text(), "/home/user/b && c.wcr");
  EXPECT_FALSE(Entry("M_fileHist(1)").icon().isNull());
  QTest::keyClick(menu, Qt::Key_1);  // there is none
  EXPECT_TRUE(menu->isVisible());
  QTest::keyClick(menu, Qt::Key_2);
  EXPECT_FALSE(menu->isVisible());
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(1)"));
}

TEST_F(MnemonicKeys, PressAnOptionOfTheDialog) {
  OpenOptions();
  auto& option = Get<QAbstractButton>("opt_Protocol(2)");
  const QKeySequence letter = option.shortcut();
  ASSERT_FALSE(letter.isEmpty());
  const auto key = static_cast<Qt::Key>(letter[0].key());
  EXPECT_FALSE(option.isChecked());
  QTest::keyClick(options.get(), key, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return option.isChecked(); }, 2000));
  Click("cmd_OptionsCancel");
}

}  // namespace
}  // namespace tarnlink
