// The last net: errors that no handler caught.

#include <gtest/gtest.h>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "common/run_time_error.h"

namespace tarnlink {
namespace {

QMessageBox* BoxThatIsUp() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }

// Throws from inside the event loop, and comes back when that has been told.
template <class Error>
QMessageBox* Throw(const Error& error) {
  QTimer::singleShot(0, qApp, [error] { throw error; });
  return QTest::qWaitFor([] { return BoxThatIsUp() != nullptr; }, 2000) ? BoxThatIsUp() : nullptr;
}

void CloseBox() {
  BoxThatIsUp()->close();
  ASSERT_TRUE(QTest::qWaitFor([] { return BoxThatIsUp() == nullptr; }, 2000));
}

TEST(GuardedApplication, TellsAnErrorThatNobodyCaughtAndGoesOn) {
  QMessageBox* box = Throw(RunTimeError(kOverflow, "<b>Too</b> large."));
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->windowTitle(), "Internal System Error");
  EXPECT_EQ(box->text(),
            "Internal System Error # 6 occured, please contact distributor.\n<b>Too</b> large.");
  EXPECT_EQ(box->textFormat(), Qt::PlainText);
  EXPECT_EQ(box->icon(), QMessageBox::Critical);
  CloseBox();
  bool went_on = false;
  QTimer::singleShot(0, qApp, [&] { went_on = true; });
  EXPECT_TRUE(QTest::qWaitFor([&] { return went_on; }, 2000));
}

TEST(GuardedApplication, TellsAnyOtherExceptionAsADeviceError) {
  QMessageBox* box = Throw(std::runtime_error("out of something"));
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->text(),
            "Internal System Error # 57 occured, please contact distributor.\nout of something");
  CloseBox();
}

TEST(GuardedApplication, TellsAnErrorThatComesAgainOnceAndAgainAfterTheBoxIsClosed) {
  ASSERT_NE(Throw(RunTimeError(kOverflow, "first")), nullptr);
  int more = 0;
  QTimer again;
  again.callOnTimeout([&] {
    ++more;
    throw RunTimeError(kOverflow, "again");
  });
  again.start(0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return more >= 3; }, 2000));
  again.stop();
  int boxes = 0;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (qobject_cast<QMessageBox*>(widget) != nullptr) ++boxes;
  }
  EXPECT_EQ(boxes, 1);
  CloseBox();
  QMessageBox* next = Throw(RunTimeError(kOverflow, "later"));
  ASSERT_NE(next, nullptr);
  EXPECT_TRUE(next->text().endsWith("later"));
  CloseBox();
}

}  // namespace
}  // namespace tarnlink
