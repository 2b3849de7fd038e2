// The dialog that makes a parameter file of the screen, under a user's hands.

#include "ui/gen_par_file_dialog.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include "support/samples.h"
#include "ui/look.h"
#include "ui/service_tools_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kMade = "/home/user/work/made.par";

class GenParFileWindow : public UiTest {
 protected:
  GenParFileWindow() {
    OpenScreen(SampleText("zolt.wcr"));
    dialog.emplace(monitor.gen_par_file, world.settings(), window.get());
    Reads(16, "60");
    Reads(17, "55");
    Reads(24, "1200");
    Open();
  }
  ~GenParFileWindow() override { dialog.reset(); }

  void Open() {
    WaitForActive(window.get());
    Entry("mnuGenParaFile").trigger();
    WaitForActive(&*dialog);
  }
  // The Location is read and its box shows `text`.
  void Reads(int index, const std::string& text) {
    frm_Main& main = monitor.main;
    main.RAM_LOC_VAL(index).Text = text;
    main.Reads.Note(index, main.Locations[index], text);
  }
  template <class T = QWidget>
  T& In(const std::string& name) {
    T* found = dialog->findChild<T*>(QString::fromStdString(name));
    if (found == nullptr) throw std::runtime_error("There is no " + name + ".");
    return *found;
  }
  void ClickIn(const std::string& name) {
    QWidget& part = In(name);
    QTest::mouseClick(dialog->windowHandle(), Qt::LeftButton, {},
                      part.mapTo(&*dialog, QPoint(8, part.height() / 2)));
  }
  void Key(Qt::Key key) { QTest::keyClick(dialog->windowHandle(), key); }
  std::string Count() { return In<QLabel>("lblCount").text().toStdString(); }
  void ExpectSaving() {
    world.dialogs().ExpectSaveFile("Save As").Give(kMade);
    world.dialogs().ExpectMessageBox("Add file to project?", "TarnLink2").Press(Answer::kNo);
  }
  std::string MadeLines() {
    const std::string text = world.disk().Get(kMade);
    return text.substr(text.find("* Class 5"));
  }

  std::optional<GenParFileDialog> dialog;
};

using GenParFilePictures = GenParFileWindow;

TEST_F(GenParFileWindow, SavesWhatIsTicked) {
  EXPECT_EQ(dialog->windowTitle().toStdString(), "Generate parameter file");
  EXPECT_EQ(Count(), "0 of 27 locations go in");
  ClickIn("chkClass5");
  EXPECT_EQ(Count(), "2 of 27 locations go in");
  ClickIn("chkClass7RAM");
  EXPECT_EQ(Count(), "3 of 27 locations go in");
  ClickIn("chkClass7RAM");
  ExpectSaving();
  ClickIn("cmdSave");
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(MadeLines(),
            "* Class 5 writes a word while the value is byte in MSB, class 7 writes one byte "
            "only\r\n"
            "* Heating <- 60\r\n5 &H056D &H3C00\r\n* Hot water <- 55\r\n5 &H05F4 &H3700\r\n");
}

TEST_F(GenParFileWindow, WorksByKeys) {
  EXPECT_EQ(dialog->focusWidget()->objectName().toStdString(), "chkClass5");
  Key(Qt::Key_Space);
  EXPECT_TRUE(In<QCheckBox>("chkClass5").isChecked());
  std::string walk;
  for (int i = 0; i < 5; ++i) {
    Key(Qt::Key_Tab);
    walk += dialog->focusWidget()->objectName().toStdString() + " ";
  }
  EXPECT_EQ(walk, "chkClass7EE chkClass7RAM cmdSave cmdCancel chkClass5 ");
  ExpectSaving();
  Key(Qt::Key_Return);
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_TRUE(world.disk().Exists(kMade));
}

TEST_F(GenParFileWindow, EscapeAndCancelOnlyHideIt) {
  ClickIn("chkClass5");
  Key(Qt::Key_Escape);
  EXPECT_FALSE(dialog->isVisible());
  Open();
  EXPECT_TRUE(In<QCheckBox>("chkClass5").isChecked()) << "It is as it was left.";
  EXPECT_EQ(dialog->focusWidget()->objectName().toStdString(), "chkClass5");
  ClickIn("cmdCancel");
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_FALSE(world.disk().Exists(kMade));
}

TEST_F(GenParFileWindow, ACancelOfTheFileDialogKeepsItOpen) {
  world.dialogs().ExpectSaveFile("Save As").Cancel();
  ClickIn("cmdSave");
  EXPECT_TRUE(dialog->isVisible());
}

TEST_F(GenParFilePictures, ShowItLightAndDark) {
  const QPalette usual = QApplication::palette();
  ClickIn("chkClass5");
  for (const Look& look : {Look{"light", false}, Look{"dark", true}}) {
    const QPalette palette = look.dark ? DarkPalette() : usual;
    QApplication::setPalette(palette);
    const QColor ground = palette.color(QPalette::Window);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return dialog->palette().color(QPalette::Window) == ground; }, 2000));
    SavePicture(*dialog, std::string("gen-par-file-") + look.name);
  }
  QApplication::setPalette(usual);
  for (auto* label : dialog->findChildren<QLabel*>()) {
    EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width());
  }
  EXPECT_GE(dialog->width(), dialog->fontMetrics().horizontalAdvance(dialog->windowTitle()) + 60);
}

}  // namespace
}  // namespace tarnlink
