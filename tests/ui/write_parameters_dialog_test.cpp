// The window of the parameter writer under a user's hands.

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>

#include "ui/event_watch.h"
#include "ui/text_plate.h"
#include "ui/write_parameters_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kAllVerified = "All parameters set. And verified.";
constexpr const char* kQuestion =
    "Parameters are still being sent. Those sent so far stay in the controller.\r\n"
    "Do you want to stop?";

class WriteParametersWindow : public ParameterWindowTest {
 protected:
  static std::string List(QWidget& form) {
    return In<QPlainTextEdit>(form, "txtScrollStatus").toPlainText().toStdString();
  }
  static QScrollBar& Bar(QWidget& form) {
    return *In<QPlainTextEdit>(form, "txtScrollStatus").verticalScrollBar();
  }
  static std::string State(QWidget& form) {
    return In<TextPlate>(form, "StatusBar1").text().toStdString();
  }
  static std::string Progress(QWidget& form) {
    return In<QLabel>(form, "lblProgress").text().toStdString();
  }
  int Byte(int address) {
    return boiler.controller().memory().Byte(static_cast<std::uint16_t>(address));
  }
};

TEST_F(WriteParametersWindow, WritesAndVerifiesTheFileOfTheProject) {
  QWidget& form = OpenWriter(SampleBytes("boiler.par"));
  EXPECT_EQ(form.windowTitle().toStdString(), "Write Parameters");
  EXPECT_EQ(Text(form, "txtFilename"), "/.../boiler.par");
  EXPECT_EQ(In(form, "txtFilename").toolTip().toStdString(), kParameterPath);
  EXPECT_EQ(State(form), "5 parameters");
  EXPECT_EQ(FramesSent(), 0U);
  Click(form, "cmdWriteZOLT");
  EXPECT_EQ(State(form), "Writing to ZOLT");
  EXPECT_EQ(Progress(form), "Writing parameter 1 of 5, 4 left");
  auto& bar = In<QProgressBar>(form, "ProgressBar1");
  EXPECT_TRUE(bar.isVisible());
  EXPECT_EQ(bar.maximum(), 5);
  for (const char* name : {"cmdWriteZOLT", "cmdBrowse", "txtFilename", "txtSlave", "chkVerify"}) {
    EXPECT_FALSE(In(form, name).isEnabled()) << name;
  }
  ExpectReport(kAllVerified);
  world.Advance(10s);
  EXPECT_EQ(FramesSent(), 10U);
  EXPECT_FALSE(bar.isVisible());
  EXPECT_TRUE(In(form, "cmdWriteZOLT").isEnabled());
  EXPECT_NE(List(form).find("Value   &H3E00.. OK\n"), std::string::npos);
  EXPECT_EQ(List(form).find("FAULT"), std::string::npos);
  EXPECT_EQ(Byte(0xF410), 42);
  Click(form, "cmdCopy");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), List(form));
  Click(form, "cmdCancel");
  EXPECT_FALSE(form.isVisible());
}

TEST_F(WriteParametersWindow, AnotherSlaveIsTypedAndVerifyUnticked) {
  QWidget& form = OpenWriter("5 &H056D &H3C00\r\n");
  EXPECT_EQ(Focus(form), "txtSlave");
  Type(form, "1");
  EXPECT_EQ(Text(form, "txtSlave"), "1") << "What stood there is replaced.";
  Click(form, "chkVerify");
  Click(form, "cmdWriteZOLT");
  world.dialogs().ExpectMessageBox("1 parameters NOT send.", "Write settings");
  world.Advance(10s);
  EXPECT_EQ(FramesSent(), 3U) << "There is no slave 1.";
  EXPECT_NE(List(form).find("TimeOut\nRetry  Class 5"), std::string::npos);
  form.close();
}

TEST_F(WriteParametersWindow, AFileIsBrowsedForAndABadOneIsTold) {
  QWidget& form = OpenWriter();
  EXPECT_EQ(Focus(form), "cmdBrowse");
  EXPECT_FALSE(In(form, "cmdWriteZOLT").isEnabled());
  world.disk().Put("/home/user/work/bad.par", "5 1 2\r\nx\r\n");
  world.dialogs().ExpectOpenFile("Open").Give("/home/user/work/bad.par");
  world.dialogs().ExpectMessageBox("Error in file /.../bad.par line 2", "Write Parameters");
  Key(form, Qt::Key_Return);
  EXPECT_EQ(List(form), "");
  EXPECT_EQ(State(form), "2 parameters");
  EXPECT_FALSE(In(form, "cmdWriteZOLT").isEnabled());
  world.disk().Put("/home/user/work/good.par", "* Ü\r\n5 1 2\r\n");
  world.dialogs().ExpectOpenFile("Open").Give("/home/user/work/good.par");
  Click(form, "cmdBrowse");
  EXPECT_EQ(List(form), "* Ü\nClass 5   ID  &H0001   Value   &H0002\n");
  EXPECT_TRUE(In(form, "cmdWriteZOLT").isEnabled());
  form.close();
}

// --- Keys ----------------------------------------------------------------------------------------

TEST_F(WriteParametersWindow, TheTabulatorGoesFromTheFileToTheButtons) {
  QWidget& form = OpenWriter("5 1 2\r\n");
  EXPECT_EQ(Walk(form, 8),
            "chkVerify txtScrollStatus cmdCopy cmdSaveList cmdWriteZOLT cmdCancel cmdBrowse "
            "txtSlave");
  form.close();
}

TEST_F(WriteParametersWindow, EnterWritesOnlyFromTheButtonAndOnlyOnce) {
  QWidget& form = OpenWriter("5 &H056D &H3C00\r\n");
  for (const char* quiet : {"txtSlave", "chkVerify", "txtScrollStatus", "txtFilename"}) {
    In(form, quiet).setFocus();
    Key(form, Qt::Key_Return);
  }
  EXPECT_EQ(FramesSent(), 0U);
  In(form, "cmdWriteZOLT").setFocus();
  Key(form, Qt::Key_Return);
  EXPECT_EQ(FramesSent(), 1U);
  EXPECT_EQ(Focus(form), "txtScrollStatus") << "No other button is pressed by mistake.";
  Key(form, Qt::Key_Return);
  ExpectReport(kAllVerified);
  world.Advance(5s);
  EXPECT_EQ(FramesSent(), 2U);
  Key(form, Qt::Key_Return);
  EXPECT_EQ(FramesSent(), 2U);
  form.close();
}

TEST_F(WriteParametersWindow, EscapeInTheMiddleAsks) {
  QWidget& form = OpenWriter(SampleBytes("boiler.par"));
  Click(form, "cmdWriteZOLT");
  world.dialogs().ExpectMessageBox(kQuestion, "Write Parameters").Press(Answer::kNo);
  Key(form, Qt::Key_Escape);
  EXPECT_TRUE(form.isVisible());
  world.dialogs().ExpectMessageBox(kQuestion, "Write Parameters").Press(Answer::kYes);
  form.close();
  EXPECT_FALSE(form.isVisible());
  const std::size_t sent = FramesSent();
  world.Advance(10s);
  EXPECT_EQ(FramesSent(), sent);
}

TEST_F(WriteParametersWindow, EscapeLeavesAnIdleOne) {
  QWidget& form = OpenWriter("5 1 2\r\n");
  Key(form, Qt::Key_Escape);
  EXPECT_FALSE(form.isVisible());
  EXPECT_EQ(FramesSent(), 0U);
}

TEST_F(WriteParametersWindow, OpenedAgainItBeginsAnew) {
  QWidget& form = OpenWriter("5 1 2\r\n");
  Type(form, "7");
  form.close();
  file.clear();
  OpenWriter();
  EXPECT_EQ(Text(form, "txtSlave"), "0");
  EXPECT_EQ(Text(form, "txtFilename"), "");
  EXPECT_EQ(List(form), "");
  EXPECT_EQ(Focus(form), "cmdBrowse");
  form.close();
}

// --- The list ------------------------------------------------------------------------------------

TEST_F(WriteParametersWindow, TheListFollowsItsEndUntilTheUserLooksElsewhere) {
  QWidget& form = OpenWriter(Parameters(200));
  EXPECT_EQ(Bar(form).value(), 0) << "A file shows its beginning.";
  EXPECT_GT(Bar(form).maximum(), 0);
  In<QCheckBox>(form, "chkVerify").click();
  world.dialogs().ExpectMessageBox("200 parameters NOT send.", "Write settings").While([&] {
    EXPECT_EQ(Bar(form).value(), Bar(form).maximum());
  });
  Click(form, "cmdWriteZOLT");
  const int first = Bar(form).maximum();
  EXPECT_GT(first, 0);
  EXPECT_EQ(Bar(form).value(), first);
  world.Advance(1s);
  EXPECT_GT(Bar(form).maximum(), first);
  world.dialogs().ExpectMessageBox("200 parameters NOT send.", "Write settings").While([&] {
    EXPECT_EQ(Bar(form).value(), 7);
  });
  Click(form, "cmdWriteZOLT");
  Bar(form).setValue(7);
  world.Advance(1s);
  form.close();
}

TEST_F(WriteParametersWindow, ASmallerWindowShowsTheSameEndOfTheList) {
  QWidget& form = OpenWriter(SampleBytes("boiler.par"));
  Click(form, "cmdWriteZOLT");
  ExpectReport(kAllVerified);
  world.Advance(10s);
  EXPECT_EQ(Bar(form).maximum(), 0);
  form.resize(form.minimumSizeHint());
  EXPECT_TRUE(QTest::qWaitFor([&] { return Bar(form).maximum() > 0; }, 2000));
  EXPECT_TRUE(QTest::qWaitFor([&] { return Bar(form).value() == Bar(form).maximum(); }, 2000));
  form.close();
}

TEST_F(WriteParametersWindow, ASmallerWindowShowsTheSameBeginningOfAFile) {
  QWidget& form = OpenWriter(SampleBytes("boiler.par"));
  EXPECT_EQ(Bar(form).maximum(), 0);
  form.resize(form.minimumSizeHint());
  EXPECT_TRUE(QTest::qWaitFor([&] { return Bar(form).maximum() > 0; }, 2000));
  EXPECT_EQ(Bar(form).value(), 0);
  form.close();
}

TEST_F(WriteParametersWindow, WhatTheUserHasMarkedStaysMarked) {
  QWidget& form = OpenWriter(SampleBytes("boiler.par"));
  Click(form, "cmdWriteZOLT");
  auto& list = In<QPlainTextEdit>(form, "txtScrollStatus");
  list.setFocus();
  Key(form, Qt::Key_A, Qt::ControlModifier);
  const QString marked = list.textCursor().selectedText();
  EXPECT_TRUE(marked.startsWith("Writing parameters"));
  ExpectReport(kAllVerified);
  world.Advance(10s);
  EXPECT_TRUE(list.textCursor().selectedText() == marked);
  EXPECT_EQ(Bar(form).value(), Bar(form).maximum()) << "It follows its end all the same.";
  form.close();
}

// --- Long files ----------------------------------------------------------------------------------

constexpr int kMany = 10'000;

// How long each event of these takes is judged by the watch over all tests.
class LongFiles : public WriteParametersWindow {};

TEST_F(LongFiles, AreShownWithoutBlockingTheWindow) {
  QWidget& form = OpenWriter();
  world.disk().Put(kParameterPath, Parameters(kMany, "5 &H056D &H3C"));
  world.dialogs().ExpectOpenFile("Open").Give(kParameterPath);
  EventWatch::Instance().Forget();
  Click(form, "cmdBrowse");
  EventWatch::Instance().Print("Loading 10,000 parameters");
  EXPECT_EQ(State(form), "10000 parameters");
  EXPECT_EQ(In<QPlainTextEdit>(form, "txtScrollStatus").blockCount(), kMany + 1);
  form.close();
}

TEST_F(LongFiles, WithALongCommentAreShownToo) {
  QWidget& form = OpenWriter();
  world.disk().Put(kParameterPath, "* " + std::string(1'000'000, 'x') + "\r\n5 1 2\r\n");
  world.dialogs().ExpectOpenFile("Open").Give(kParameterPath);
  EventWatch::Instance().Forget();
  Click(form, "cmdBrowse");
  EXPECT_TRUE(QTest::qWaitFor([&] { return State(form) == "1 parameters"; }, 2000));
  EventWatch::Instance().RunDue([&form] { form.grab(); });
  EventWatch::Instance().Print("Loading a comment of a million letters");
  EXPECT_TRUE(List(form).ends_with("xxx...\nClass 5   ID  &H0001   Value   &H0002\n"));
  Click(form, "cmdCopy");
  EXPECT_GT(QGuiApplication::clipboard()->text().size(), 1'000'000) << "The list has all of it.";
  form.close();
}

TEST_F(LongFiles, OfItemsThatAreGivenUpLeaveTheWindowAlive) {
  QWidget& form = OpenWriter(Parameters(kMany));
  EventWatch::Instance().Forget();
  In<QCheckBox>(form, "chkVerify").click();
  Click(form, "cmdWriteZOLT");
  EventWatch::Instance().Print("Giving up 10,000 parameters");
  EXPECT_LT(In<QProgressBar>(form, "ProgressBar1").value(), 100) << "The rest comes in steps.";
  world.dialogs().ExpectMessageBox("10000 parameters NOT send.", "Write settings");
  world.Advance(10s);
  EXPECT_EQ(In<QPlainTextEdit>(form, "txtScrollStatus").blockCount(), 2 * kMany + 3);
  EXPECT_EQ(FramesSent(), 0U);
  form.close();
}

TEST_F(LongFiles, AreWrittenWithoutBlockingTheWindow) {
  QWidget& form = OpenWriter(Parameters(kMany, "7 62480 "));
  In<QCheckBox>(form, "chkVerify").click();
  world.dialogs().ExpectMessageBox("All parameters set.", "Write settings");
  Click(form, "cmdWriteZOLT");
  EventWatch::Instance().Forget();
  for (int i = 0; i < 8 * kMany && file_tools->parameters.IsRunning(); ++i) world.Advance(50ms);
  EventWatch::Instance().Print("Writing 10,000 parameters");
  EXPECT_FALSE(file_tools->parameters.IsRunning());
  EXPECT_EQ(In<QPlainTextEdit>(form, "txtScrollStatus").blockCount(), kMany + 3);
  form.close();
}

}  // namespace
}  // namespace tarnlink
