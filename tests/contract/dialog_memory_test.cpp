// What Qt's own dialogs keep of how the user left them, and where.

#include <gtest/gtest.h>

#include <QColorDialog>
#include <QFileDialog>
#include <QHeaderView>
#include <QSettings>
#include <QTreeView>
#include <QUrl>
#include <filesystem>

#include "contract/dialogs_benches.h"
#include "support/fake_settings_store.h"
#include "support/temporary_folder.h"

namespace tarnlink {
namespace {

class DialogMemoryTest : public testing::Test {
 protected:
  // Opens a file dialog, works with it and leaves it.
  void InFileDialog(const std::function<void(QFileDialog&)>& work) {
    user.With("OpenFile", [work](QWidget& dialog) {
      work(dynamic_cast<QFileDialog&>(dialog));
      dialog.close();
    });
    QtDialogs(&settings).OpenFile({.title = "Open", .folder = folder.path()});
  }
  static QTreeView& Details(QFileDialog& dialog) {
    return *dialog.findChild<QTreeView*>("treeView");
  }

  TemporaryFolder folder;
  FakeSettingsStore settings;
  QtUser user;
};

TEST_F(DialogMemoryTest, TheFileDialogComesAsItWasLeft) {
  const QList<QUrl> shortcuts{QUrl("file:"), QUrl::fromLocalFile("/usr/my files")};
  InFileDialog([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.viewMode(), QFileDialog::List);
    dialog.setViewMode(QFileDialog::Detail);
    dialog.setSidebarUrls(shortcuts);
    Details(dialog).header()->resizeSection(0, 321);
  });
  InFileDialog([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.viewMode(), QFileDialog::Detail);
    EXPECT_EQ(dialog.sidebarUrls(), shortcuts);
    EXPECT_EQ(Details(dialog).header()->sectionSize(0), 321);
  });
}

TEST_F(DialogMemoryTest, ADialogThatIsLeftAsItWasKeepsNothingAnew) {
  InFileDialog([](QFileDialog&) {});
  const int saves = settings.saves();
  EXPECT_GT(saves, 0);
  InFileDialog([](QFileDialog&) {});
  EXPECT_EQ(settings.saves(), saves);
}

TEST_F(DialogMemoryTest, WhatCannotBeReadLeavesTheDialogAsQtMakesIt) {
  settings.SaveSetting("Dialogs", "FileView", "sideways");
  settings.SaveSetting("Dialogs", "FileSplitter", "%%%");
  settings.SaveSetting("Dialogs", "FileColumns", "AAAA");
  settings.SaveSetting("Dialogs", "Colours", "none #12 #102030");
  InFileDialog([](QFileDialog& dialog) {
    EXPECT_EQ(dialog.viewMode(), QFileDialog::List);
    EXPECT_GT(dialog.sidebarUrls().size(), 0);
    EXPECT_GT(Details(dialog).header()->sectionSize(0), 0);
  });
}

TEST_F(DialogMemoryTest, ColoursPutAsideAreThereAgain) {
  user.With("PickColour", [](QWidget& dialog) {
    QColorDialog::setCustomColor(2, QColor("#102030"));
    dialog.close();
  });
  QtDialogs(&settings).PickColour(0);
  QColorDialog::setCustomColor(2, QColor(Qt::white));
  user.With("PickColour", [](QWidget& dialog) {
    EXPECT_EQ(QColorDialog::customColor(2), QColor("#102030"));
    dialog.close();
  });
  QtDialogs(&settings).PickColour(0);
}

// Qt would write it with the window waiting for the disk, twice for each dialog.
TEST_F(DialogMemoryTest, NoFileOfQtIsWritten) {
  InFileDialog([](QFileDialog& dialog) { dialog.setViewMode(QFileDialog::Detail); });
  QSettings of_qt(QSettings::UserScope, "QtProject");
  of_qt.setValue("FileDialog/viewMode", "Detail");
  of_qt.sync();
  EXPECT_EQ(of_qt.status(), QSettings::AccessError);
  EXPECT_FALSE(std::filesystem::exists(of_qt.fileName().toStdString()));
}

}  // namespace
}  // namespace tarnlink
