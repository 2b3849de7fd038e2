#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPixmap>
#include <QPixmapCache>
#include <QPushButton>
#include <filesystem>
#include <fstream>

#include "contract/dialogs_benches.h"
#include "platform/qt/file_filter.h"
#include "support/temporary_folder.h"

namespace tarnlink {
namespace {

class QtDialogsTest : public testing::Test {
 protected:
  // Shows the box and gives `look` a chance to see it.
  void Look(const MessageBoxRequest& request, std::function<void(QMessageBox&)> look) {
    user.With("MessageBox", [look](QWidget& dialog) {
      look(dynamic_cast<QMessageBox&>(dialog));
      dialog.close();
    });
    user.dialogs().MessageBox(request);
  }
  void LookAtFile(const FileDialogRequest& request, std::function<void(QFileDialog&)> look) {
    user.With("SaveFile", [look](QWidget& dialog) {
      look(dynamic_cast<QFileDialog&>(dialog));
      dialog.close();
    });
    user.dialogs().SaveFile(request);
  }

  QtUser user;
};

TEST_F(QtDialogsTest, AMessageBoxShowsTextTitleIconAndDetail) {
  const std::vector<std::pair<Icon, QMessageBox::Icon>> icons{
      {Icon::kCritical, QMessageBox::Critical},
      {Icon::kQuestion, QMessageBox::Question},
      {Icon::kExclamation, QMessageBox::Warning},
      {Icon::kInformation, QMessageBox::Information},
      {Icon::kNone, QMessageBox::NoIcon}};
  for (const auto& [icon, shown] : icons) {
    Look({"Slave is not responding", "Message Timeout", icon, Buttons::kOk, false, "Why"},
         [shown = shown](QMessageBox& box) {
           EXPECT_EQ(box.text(), "Slave is not responding");
           EXPECT_EQ(box.windowTitle(), "Message Timeout");
           EXPECT_EQ(box.informativeText(), "Why");
           EXPECT_EQ(box.icon(), shown);
         });
  }
}

TEST_F(QtDialogsTest, NoTextOfAMessageBoxIsTakenForMarkup) {
  Look({"<b>x", "<i>Title", Icon::kNone, Buttons::kOk, false, "<b>detail</b> &amp;"},
       [](QMessageBox& box) {
         EXPECT_EQ(box.text(), "<b>x");
         EXPECT_EQ(box.windowTitle(), "<i>Title");
         int texts = 0;
         for (const QLabel* label : box.findChildren<QLabel*>()) {
           if (label->text().isEmpty()) continue;
           EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
           ++texts;
         }
         EXPECT_EQ(texts, 2);
       });
}

TEST_F(QtDialogsTest, ALineEndOfTheOldKindIsOneLineEnd) {
  Look({"Communication port 3 occupied.\r\nStop communication and try again.",
        "Communication Error"},
       [](QMessageBox& box) {
         EXPECT_EQ(box.text(), "Communication port 3 occupied.\nStop communication and try again.");
       });
}

TEST_F(QtDialogsTest, TheDefaultButtonIsTheFirstUnlessTheSecondIsAskedFor) {
  MessageBoxRequest request{"Text", "Title", Icon::kCritical, Buttons::kYesNo};
  Look(request, [](QMessageBox& box) {
    EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Yes));
    EXPECT_EQ(box.buttons().size(), 2);
  });
  request.second_is_default = true;
  Look(request,
       [](QMessageBox& box) { EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No)); });
  request.buttons = Buttons::kOk;
  Look(request, [](QMessageBox& box) { EXPECT_EQ(box.buttons().size(), 1); });
}

TEST_F(QtDialogsTest, NothingIsKeptOfTheIconsOfADialog) {
  QPixmapCache::Key icon;
  LookAtFile({}, [&icon](QFileDialog&) {
    icon = QPixmapCache::insert(QPixmap(16, 16));
    EXPECT_TRUE(icon.isValid());
  });
  EXPECT_FALSE(QPixmapCache::find(icon, nullptr));
}

TEST_F(QtDialogsTest, ABoxStandsOnTheActiveWindow) {
  QWidget window;
  window.show();
  window.activateWindow();
  ASSERT_TRUE(user.RunUntil([&] { return QApplication::activeWindow() == &window; }));
  Look({"Text", "Title"}, [&](QMessageBox& box) { EXPECT_EQ(box.parentWidget(), &window); });
}

TEST_F(QtDialogsTest, AnOwnerThatGoesAwayTakesItsBoxDownAsClosed) {
  auto window = std::make_unique<QWidget>();
  window->show();
  window->activateWindow();
  ASSERT_TRUE(user.RunUntil([&] { return QApplication::activeWindow() == window.get(); }));
  user.With("MessageBox", [&](QWidget&) { window.reset(); });
  EXPECT_EQ(user.dialogs().MessageBox({"Text", "Title", Icon::kNone, Buttons::kYesNo}),
            Answer::kCancel);
}

TEST_F(QtDialogsTest, AnInputBoxShowsItsTextsPlain) {
  user.With("InputBox", [](QWidget& dialog) {
    auto& box = dynamic_cast<QInputDialog&>(dialog);
    EXPECT_EQ(box.labelText(), "<b>Enter header text:");
    EXPECT_EQ(box.windowTitle(), "Print");
    EXPECT_EQ(box.textValue(), "old");
    for (const QLabel* label : box.findChildren<QLabel*>()) {
      EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
    box.reject();
  });
  EXPECT_EQ(user.dialogs().InputBox("<b>Enter header text:", "Print", "old"), std::nullopt);
}

TEST_F(QtDialogsTest, AMessageBoxIsAsWideAsItsTitleNeeds) {
  Look({.text = "x", .title = "A title that is much longer than the text of its box, and more"},
       [](QMessageBox& box) {
         EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(box.windowTitle()) + 100);
       });
  Look({.text = "x", .title = "y"}, [](QMessageBox& box) { EXPECT_GE(box.width(), 380); });
}

TEST_F(QtDialogsTest, AFileDialogShowsWhatWasAskedFor) {
  const TemporaryFolder folder;
  FileDialogRequest request;
  request.title = "Save log file as";
  request.filter = "Log (*.log)|*.log|All files|*.*";
  request.folder = folder.path();
  request.file_name = "run.log";
  LookAtFile(request, [&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Save log file as");
    EXPECT_EQ(dialog.nameFilters(), (QStringList{"Log (*.log)", "All files (*)"}));
    EXPECT_EQ(dialog.directory().absolutePath().toStdString(), folder.path());
    EXPECT_EQ(dialog.selectedFiles(), QStringList{QString::fromStdString(folder / "run.log")});
    EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
    EXPECT_TRUE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
  });
  request.confirm_overwrite = true;
  LookAtFile(request, [&](QFileDialog& dialog) {
    EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
  });
}

TEST_F(QtDialogsTest, AnExtensionIsAddedToANameWithoutOne) {
  const TemporaryFolder folder;
  FileDialogRequest request;
  request.folder = folder.path();
  request.extension = "wcr";
  user.SavesFile(folder / "screen");
  EXPECT_EQ(user.dialogs().SaveFile(request), folder / "screen.wcr");
  user.SavesFile(folder / "screen.old");
  EXPECT_EQ(user.dialogs().SaveFile(request), folder / "screen.old");
}

TEST_F(QtDialogsTest, TheNameFollowsTheFilterThatIsPicked) {
  const TemporaryFolder folder;
  FileDialogRequest request;
  request.folder = folder.path();
  request.filter = "Text File (*.txt)|*.txt|Workbook (*.xlsx)|*.xlsx|All files|*.*";
  request.file_name = "05Mar24-00.txt";
  request.extension = "txt";
  LookAtFile(request, [&](QFileDialog& dialog) {
    const auto pick = [&](int filter) {
      auto* filters = dialog.findChild<QComboBox*>("fileTypeCombo");
      filters->setCurrentIndex(filter);
      emit filters->textActivated(filters->currentText());
      return QFileInfo(dialog.selectedFiles().value(0)).fileName().toStdString() + " " +
             dialog.defaultSuffix().toStdString();
    };
    EXPECT_EQ(pick(1), "05Mar24-00.xlsx xlsx");
    EXPECT_EQ(pick(2), "05Mar24-00.xlsx xlsx") << "of all files none is meant";
    EXPECT_EQ(pick(0), "05Mar24-00.txt txt");
    dialog.selectFile("burner.start.xls");
    EXPECT_EQ(pick(1), "burner.start.xls xlsx") << "the user's own extension stays";
  });
}

TEST_F(QtDialogsTest, WithoutAFolderTheNextDialogOpensWhereTheLastOneWas) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "last");
  user.SavesFile(folder / "last" + "/a.txt");
  EXPECT_TRUE(user.dialogs().SaveFile({}).has_value());
  for (const std::string& nowhere : {std::string(), std::string("C:"), folder / "gone"}) {
    FileDialogRequest request;
    request.folder = nowhere;
    LookAtFile(request, [&](QFileDialog& dialog) {
      EXPECT_EQ(dialog.directory().absolutePath().toStdString(), folder / "last") << nowhere;
    });
  }
}

TEST_F(QtDialogsTest, AnOpenDialogTakesOnlyAFileThatExists) {
  const TemporaryFolder folder;
  FileDialogRequest request;
  request.folder = folder.path();
  // Qt says so in a box of its own, and the dialog stays up.
  user.With("OpenFile", [&](QWidget& dialog) {
    QTimer::singleShot(20, [&] {
      QWidget* complaint = QApplication::activeModalWidget();
      ASSERT_NE(complaint, nullptr);
      EXPECT_NE(complaint->objectName(), "OpenFile");
      complaint->close();
    });
    dialog.findChild<QLineEdit*>("fileNameEdit")
        ->setText(QString::fromStdString(folder / "missing"));
    QMetaObject::invokeMethod(&dialog, "accept");
    EXPECT_TRUE(dialog.isVisible());
    dialog.close();
  });
  EXPECT_EQ(user.dialogs().OpenFile(request), std::nullopt);
}

TEST_F(QtDialogsTest, TheFontPickerKeepsABoldFontThatNobodyTouched) {
  user.With("PickFont", [](QWidget& dialog) { dynamic_cast<QDialog&>(dialog).accept(); });
  const std::optional<Font> picked = user.dialogs().PickFont({"Sans Serif", 9, true, false});
  ASSERT_TRUE(picked.has_value());
  EXPECT_TRUE(picked->bold);
  EXPECT_EQ(picked->size, 9.0F);
}

// The dialog offers whole points and the families of the machine.
TEST_F(QtDialogsTest, TheFontPickerChangesNothingThatNobodyTouched) {
  for (const Font& font : {Font{}, Font{"A font of elsewhere", 8.25F, false, false},
                           Font{"DejaVu Sans", 10.5F, true, true}}) {
    user.With("PickFont", [](QWidget& dialog) { dynamic_cast<QDialog&>(dialog).accept(); });
    const std::optional<Font> picked = user.dialogs().PickFont(font);
    ASSERT_TRUE(picked.has_value());
    EXPECT_EQ(picked->name, font.name);
    EXPECT_EQ(picked->size, font.size);
    EXPECT_EQ(picked->bold, font.bold);
    EXPECT_EQ(picked->italic, font.italic);
  }
}

TEST_F(QtDialogsTest, AnInputBoxGivesOneLineWhateverIsPasted) {
  user.With("InputBox", [](QWidget& dialog) {
    auto& box = dynamic_cast<QInputDialog&>(dialog);
    auto* edit = box.findChild<QLineEdit*>();
    edit->clear();
    edit->insert("one\ntwo\tthree");
    box.accept();
  });
  EXPECT_EQ(user.dialogs().InputBox("Prompt", "Title", ""), "one two three");
}

TEST(ToNameFilters, TakesTheFiltersOfTheSystemApart) {
  const std::vector<std::pair<const char*, QStringList>> cases{
      {"Doc (*.doc)|*.doc", {"Doc (*.doc)"}},
      {"Memory map file (*.map,*.lst)|*.map;*.lst", {"Memory map file (*.map *.lst)"}},
      {"Text|*.txt|All|*.*", {"Text (*.txt)", "All (*)"}},
      {"(Excel.exe)|Excel.exe", {"Excel.exe (Excel.exe)"}},
      {"A (x) file (*.a)|*.a; *.b", {"A (x) file (*.a *.b)"}},
      {"", {}},
      {"Description only", {}},
      {"A|*.a|left over", {"A (*.a)"}},
  };
  for (const auto& [filter, expected] : cases) {
    EXPECT_EQ(ToNameFilters(filter, false), expected) << filter;
  }
}

TEST(ToNameFilters, NamesBothCasesForDialogsThatTellThemApart) {
  EXPECT_EQ(ToNameFilters("Screen (*.wcr)|*.wcr|All|*.*", true),
            (QStringList{"Screen (*.wcr *.WCR)", "All (*)"}));
}

}  // namespace
}  // namespace tarnlink
