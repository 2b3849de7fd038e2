// A file dragged from the desktop onto the window.

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTreeWidget>
#include <QUrl>

#include "ui/edit_fixture.h"

namespace tarnlink {
namespace {

class FileDropTest : public EditUiTest {
 protected:
  FileDropTest() { Begin(); }

  // What the desktop does with these over a widget, as far as the window lets it. Returns whether
  // the window takes them.
  bool Drop(const QList<QUrl>& urls, const std::string& name = "screen",
            Qt::KeyboardModifiers modifiers = {}) {
    QMimeData data;
    data.setUrls(urls);
    QWidget& widget = Get(name);
    const auto actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(kGrip, actions, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(&widget, &enter);
    if (!enter.isAccepted()) {
      QDragLeaveEvent leave;
      QApplication::sendEvent(&widget, &leave);
      return false;
    }
    const std::string before = Screens();
    QDropEvent drop(kGrip, actions, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(&widget, &drop);
    EXPECT_EQ(Screens(), before) << "not before the desktop is done with the drop";
    EXPECT_TRUE(drop.isAccepted()) << "it was promised";
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
    return true;
  }

  // The screens that the project window shows.
  std::string Screens() const {
    std::string names;
    const QTreeWidgetItem* group = Get<QTreeWidget>("trvProject").topLevelItem(0)->child(0);
    for (int i = 0; i < group->childCount(); ++i) {
      names += group->child(i)->text(0).toStdString() + "\n";
    }
    return names;
  }
  // Whether they come to be these.
  bool Become(const std::string& names) {
    return QTest::qWaitFor([&] { return Screens() == names; }, 1000);
  }
  // Whether they stay away.
  bool NoneCome() {
    return !QTest::qWaitFor([this] { return !Screens().empty(); }, 50);
  }
};

TEST_F(FileDropTest, OneFileGoesToTheProject) {
  EXPECT_TRUE(Drop({QUrl::fromLocalFile("/home/user/b&w % Wärme.wcr")}));
  EXPECT_TRUE(Become("b&w % Wärme.wcr\n"));
  EXPECT_EQ(monitor.main.trvProject.FirstChild("wcr"), "/home/user/b&w % Wärme.wcr");
}

TEST_F(FileDropTest, AnywhereInTheWindow) {
  std::string names;
  for (const std::string widget : {"frm_Main", "Toolbar1", "trvProject", "StatusBar1"}) {
    EXPECT_TRUE(
        Drop({QUrl::fromLocalFile(QString::fromStdString("/jobs/" + widget + ".wcr"))}, widget));
    names += widget + ".wcr\n";
    EXPECT_TRUE(Become(names)) << Screens();
  }
}

// Whoever the file comes from would delete it after a move.
TEST_F(FileDropTest, AFileIsNeverMoved) {
  EXPECT_TRUE(Drop({QUrl::fromLocalFile("/jobs/a.wcr")}, "screen", Qt::ShiftModifier));
  EXPECT_TRUE(Become("a.wcr\n"));
}

TEST_F(FileDropTest, TwoFilesAreRefused) {
  EXPECT_FALSE(Drop({QUrl::fromLocalFile("/jobs/a.wcr"), QUrl::fromLocalFile("/jobs/b.wcr")}));
  EXPECT_TRUE(NoneCome());
}

TEST_F(FileDropTest, WhatIsNoFileIsRefused) {
  EXPECT_FALSE(Drop({QUrl("https://example.com/a.wcr")}));
  EXPECT_FALSE(Drop({}));
  EXPECT_TRUE(NoneCome());
}

TEST_F(FileDropTest, AFileOfAnotherKindIsTold) {
  world.dialogs().ExpectMessageBox("Unknown file type.", "TarnLink2");
  EXPECT_TRUE(Drop({QUrl::fromLocalFile("/jobs/letter.doc")}));
  EXPECT_TRUE(QTest::qWaitFor([this] { return !world.dialogs().shown().empty(); }, 1000));
  EXPECT_EQ(Screens(), "");
}

}  // namespace
}  // namespace tarnlink
