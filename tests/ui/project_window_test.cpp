// The project window under mouse and keyboard, and files that are dropped on it.

#include <QDropEvent>
#include <QMimeData>
#include <QTreeWidget>
#include <QUrl>

#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

class ProjectWindowTest : public UiTest {
 protected:
  ProjectWindowTest() {
    Begin();
    monitor.main.trvProject.AddFileToProject("wcr", "/jobs/a.wcr");
  }

  QTreeWidget& Tree() { return Get<QTreeWidget>("trvProject"); }
  QTreeWidgetItem& Node(const QString& text) {
    const QList<QTreeWidgetItem*> found =
        Tree().findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    if (found.size() != 1) throw std::runtime_error("There is no " + text.toStdString() + ".");
    return *found.first();
  }
  QPoint PlaceOf(const QString& text) { return Tree().visualItemRect(&Node(text)).center(); }
  void Select(const QString& text) {
    Tree().setCurrentItem(&Node(text));
    Tree().setFocus();
  }
  void Drop(const QList<QUrl>& files) {
    QMimeData data;
    data.setUrls(files);
    const QPoint place(20, 20);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(Tree().viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(Tree().viewport(), &event);
  }
};

TEST_F(ProjectWindowTest, ADoubleClickOpensAScreen) {
  world.disk().Put("/jobs/a.wcr", kTwoLocations);
  QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, PlaceOf("a.wcr"));
  QTest::mouseDClick(Tree().viewport(), Qt::LeftButton, {}, PlaceOf("a.wcr"));
  EXPECT_EQ(monitor.main.CurrentTarnLinkFile, "/jobs/a.wcr");
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(1)"));
}

TEST_F(ProjectWindowTest, EnterOpensAScreenToo) {
  world.disk().Put("/jobs/a.wcr", kTwoLocations);
  Select("a.wcr");
  PressFocused(Qt::Key_Return);
  EXPECT_EQ(monitor.main.CurrentTarnLinkFile, "/jobs/a.wcr");
}

TEST_F(ProjectWindowTest, DeleteRemovesTheNode) {
  Select("a.wcr");
  world.dialogs()
      .ExpectMessageBox({.text = "Are you sure you want to delete : a.wcr?",
                         .title = "Confirm Delete",
                         .buttons = Buttons::kOkCancel})
      .Press(Answer::kOk);
  PressFocused(Qt::Key_Delete);
  EXPECT_TRUE(Tree().findItems("a.wcr", Qt::MatchExactly | Qt::MatchRecursive).isEmpty());
}

TEST_F(ProjectWindowTest, NoNodeCollapses) {
  Select("Tarnlink Files");
  PressFocused(Qt::Key_Left);
  PressFocused(Qt::Key_Minus);
  QTest::mouseDClick(Tree().viewport(), Qt::LeftButton, {}, PlaceOf("Tarnlink Files"));
  EXPECT_TRUE(Node("Tarnlink Files").isExpanded());
}

TEST_F(ProjectWindowTest, SeveralFilesCanBeDropped) {
  Drop({QUrl::fromLocalFile("/jobs/b.wcr"), QUrl::fromLocalFile("/jobs/c.par")});
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return monitor.main.trvProject.HasNode("/jobs/c.par"); }, 2000));
  EXPECT_TRUE(monitor.main.trvProject.HasNode("/jobs/b.wcr"));
}

TEST_F(ProjectWindowTest, ALongNoticeIsCutAndAnEmptyOneGone) {
  EXPECT_FALSE(Shown("lbl_MapNotice"));
  const int width = window->width();
  frm_Main::ShowNotice(monitor.main.lbl_MapNotice, std::string(1'000, 'x'));
  EXPECT_TRUE(Shown("lbl_MapNotice"));
  EXPECT_EQ(window->width(), width);
  frm_Main::ShowNotice(monitor.main.lbl_MapNotice, "");
  EXPECT_FALSE(Shown("lbl_MapNotice"));
}

}  // namespace
}  // namespace tarnlink
