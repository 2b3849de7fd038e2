// The graph's window: how it opens and closes, where its parts stand, its menu, its messages.

#include <QClipboard>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QLabel>
#include <QToolBar>
#include <QToolTip>
#include <QWindow>
#include <chrono>
#include <cmath>

#include "platform/qt/qt_colour.h"
#include "ui/graph_fixture.h"
#include "ui/mnemonics.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr int kPatience = 3000;  // ms

// How bright the eye sees a colour, and how far two of them stand apart.
double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}
double Contrast(const QColor& a, const QColor& b) {
  const double first = Luminance(a) + 0.05;
  const double second = Luminance(b) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

// The best that any pixel stands out from the background.
double Ink(const QImage& image, const QColor& background) {
  double most = 1;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      most = std::max(most, Contrast(image.pixelColor(x, y), background));
    }
  }
  return most;
}

// A place in units of 1440 to the inch, in pixels.
QRect Pixels(double left, double top, double width, double height) {
  const auto pixel = [](double units) { return static_cast<int>(std::lround(units / 15)); };
  return {pixel(left), pixel(top), pixel(width), pixel(height)};
}

class GraphWindowTest : public GraphUiTest {
 protected:
  // How many pixels of the picture have a line's colour.
  int LinePixels(int index) {
    const auto& line = graph().Data.Attributes.at(static_cast<std::size_t>(index));
    return CountOf(Grab("GraphPan"), ToQColor(line.LineColor));
  }
  QLabel& Message() { return static_cast<QLabel&>(Part("lblCommunicationError")); }
  std::string Text(const std::string& label) {
    return static_cast<QLabel&>(Part(label)).text().toStdString();
  }
  // The tip that the mouse gets on a part when it rests there.
  std::string TipAt(const std::string& part, const QPoint& at) {
    QWidget& widget = Part(part);
    QHelpEvent rest(QEvent::ToolTip, at, widget.mapToGlobal(at));
    QApplication::sendEvent(&widget, &rest);
    return QToolTip::text().toStdString();
  }
  // The menu stands where the right button has gone up, and goes with Escape.
  void ExpectMenuAt(const QPoint& place) {
    SCOPED_TRACE(testing::PrintToString(place));
    ClickAt(place, Qt::RightButton);
    ASSERT_TRUE(IsMenuOpen());
    // Where there is no room for it, it opens to the other side.
    const QRect around = Menu().geometry().adjusted(-1, -1, 1, 1);
    EXPECT_TRUE(around.contains(window().mapToGlobal(place))) << testing::PrintToString(around);
    CloseMenu();
  }
};

// --- Opening -------------------------------------------------------------------------------------

class GraphFromTheMenu : public UiTest {
 protected:
  GraphFromTheMenu() {
    monitor.main.ShowGraphic = [this] { tool.Show(); };
    OpenScreen(kTwoLocations);
    Entry("M_Graphics").trigger();
    WaitForActive(tool.window());
  }

  std::string mss_folder;
  std::string grp_folder;
  GraphTool tool{world,
                 {.ComPortNumber = [] { return 1; }, .Baudrate = [] { return 3; }},
                 {mss_folder, grp_folder, {}, {}},
                 nullptr};
};

TEST_F(GraphFromTheMenu, OpensOverTheMainWindowAndKeepsTheUserThere) {
  EXPECT_EQ(QApplication::activeModalWidget(), tool.window());
  EXPECT_EQ(tool.window()->windowTitle(), "Graphic");
  EXPECT_EQ(tool.window()->objectName(), "frmGraphic");
  QWidget* start = Get<QToolBar>("Toolbar1").widgetForAction(&Entry("Toolbar1(2)"));
  const QPoint place = start->mapTo(window.get(), start->rect().center());
  QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, place);
  EXPECT_FALSE(monitor.main.CommRunning);
  // Once it is left, the button is there again.
  tool.window()->close();
  ASSERT_TRUE(QTest::qWaitFor([this] { return tool.window() == nullptr; }, kPatience));
  WaitForActive(window.get());
  QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, place);
  EXPECT_TRUE(monitor.main.CommRunning);
}

TEST_F(GraphFromTheMenu, AnOpenOneIsNotOpenedAgain) {
  tool.graph()->menu.mnuScale(0).Press();
  monitor.main.M_Graphics.Press();
  EXPECT_EQ(tool.graph()->graph.TimeScale, 1);
}

// --- Closing -------------------------------------------------------------------------------------

TEST_F(GraphWindowTest, TheCloseButtonIsExit) {
  window().close();
  EXPECT_FALSE(world.port().PortOpen());
  EXPECT_TRUE(IsGone());
}

TEST_F(GraphWindowTest, EscapeAndEnterDoNotCloseIt) {
  for (const char* part : {"GraphPan", "lblTest", "lblExit"}) {
    Part(part).setFocus();
    Key(Qt::Key_Escape);
    EXPECT_TRUE(window().isVisible()) << part;
  }
  Part("GraphPan").setFocus();
  Key(Qt::Key_Return);
  EXPECT_TRUE(window().isVisible());
  EXPECT_TRUE(world.port().PortOpen());
}

TEST_F(GraphWindowTest, ExitIsAClick) {
  PressAt(Middle("lblExit"));
  EXPECT_TRUE(window().isVisible());
  ReleaseAt(Middle("lblExit"));
  EXPECT_TRUE(IsGone());
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(GraphWindowTest, ExitIsTheSpaceBarOnIt) {
  Part("lblExit").setFocus();
  Key(Qt::Key_Space);
  EXPECT_TRUE(IsGone());
}

TEST_F(GraphWindowTest, ExitCanBeThoughtBetterOf) {
  PressAt(Middle("lblExit"));
  MoveTo(Middle("GraphPan"));
  ReleaseAt(Middle("GraphPan"));
  EXPECT_TRUE(window().isVisible());
  ClickAt(Middle("lblExit"), Qt::RightButton);
  EXPECT_TRUE(window().isVisible());
}

// The key that has closed a message box goes up in the window below it.
TEST_F(GraphWindowTest, AKeyThatOnlyGoesUpOnExitIsNoPress) {
  Part("lblExit").setFocus();
  QTest::keyRelease(window().windowHandle(), Qt::Key_Return);
  EXPECT_TRUE(window().isVisible());
}

TEST_F(GraphWindowTest, ASecondOneBeginsAnew) {
  ShowLine(0, {60 << 8, 60 << 8});
  Choose("mnuMeasOnly");
  Choose("mnuExit");
  // Opened again before the first one is quite gone.
  Open();
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(graph().Data.ChannelOf(0).Count(), 0);
  EXPECT_FALSE(all().menu.mnuMeasOnly.Checked);
  EXPECT_TRUE(world.port().PortOpen());
  EXPECT_EQ(world.port_count(), 2);
  world.Advance(6s);
  EXPECT_EQ(Text("lblDate"), "05-Mar-24 14:07:14");
  ClickAt(Middle("lblExit"));
  EXPECT_TRUE(IsGone());
  Open();
  EXPECT_EQ(QApplication::activeModalWidget(), &window());
}

TEST_F(GraphWindowTest, ABusyPortIsToldOverTheFormThatOpens) {
  window().close();
  ASSERT_TRUE(IsGone());
  world.port().MakeBusy();
  world.dialogs().ExpectMessageBox("Com port busy.", "Communication port").While([this] {
    EXPECT_EQ(tool.window(), nullptr);
  });
  Open();
  EXPECT_TRUE(window().isVisible());
  EXPECT_TRUE(Message().isVisible());
  EXPECT_EQ(Text("lblCommunicationError"), "Communication stopped");
}

// --- Layout --------------------------------------------------------------------------------------

TEST_F(GraphWindowTest, ItsPartsStandAtTheirPlacesAtAnySize) {
  for (const QSize size : {QSize(1180, 760), QSize(760, 500), QSize(1600, 900)}) {
    SCOPED_TRACE(testing::PrintToString(size));
    window().resize(size);
    const double width = size.width() * 15;
    const double height = size.height() * 15;
    EXPECT_EQ(Part("GraphPan").geometry(), Pixels(2500, 50, width - 2950, height - 660));
    EXPECT_EQ(Part("frm(2)").geometry(), Pixels(2100, 50, 400, height - 660));
    EXPECT_EQ(Part("frm(3)").geometry(), Pixels(width - 450, 50, 400, height - 660));
    EXPECT_EQ(Part("HScroll1").geometry(), Pixels(2500, height - 305, width - 2950, 255));
    // These two are a little wider, for labels that reach over their sides.
    EXPECT_EQ(Part("frm(0)").geometry(), Pixels(50, 50, 2000, height - 660).adjusted(-3, 0, 3, 0));
    EXPECT_EQ(Part("frm(1)").geometry(),
              Pixels(2500, height - 610, width - 2950, 255).adjusted(-24, 0, 24, 0));
    const QRect exit = Part("lblExit").geometry();
    const QRect test = Part("lblTest").geometry();
    EXPECT_EQ(exit.bottomLeft(), QPoint(0, size.height() - 1));
    EXPECT_EQ(test.left(), exit.right() + 1);
    EXPECT_EQ(test.bottom(), exit.bottom());
    const QRect date = Part("lblDate").geometry();
    EXPECT_EQ(date.left(), 0);
    EXPECT_LT(date.bottom(), exit.top() + 1);
    EXPECT_GT(date.top(), Part("frm(0)").geometry().bottom());
  }
}

TEST_F(GraphWindowTest, TheHintOfAnEmptyGraphStandsInThePictureAtAnySize) {
  Part("lblNoLine").show();
  for (const QSize size : {QSize(1180, 760), QSize(760, 500), QSize(1600, 900)}) {
    window().resize(size);
    const QRect picture = Part("GraphPan").geometry();
    EXPECT_TRUE(picture.contains(Part("lblNoLine").geometry())) << size.width();
    EXPECT_NEAR(picture.center().x(), Part("lblNoLine").geometry().center().x(), 1);
  }
}

TEST_F(GraphWindowTest, ItGoesNoSmallerThanItsPartsNeed) {
  window().resize(100, 100);
  EXPECT_EQ(window().size(), QSize(760, 500));
}

TEST_F(GraphWindowTest, EachTextReadsOnEveryBackground) {
  for (int i = 0; i < 20; ++i) {
    graph().Data.Attributes.at(static_cast<std::size_t>(i)).ShowCaption = true;
  }
  for (const Colour back : {0xFFFFFF, 0x202020, 0xC0C0C0, 0x00FFFF}) {
    SCOPED_TRACE(back);
    graph().Data.Colors.BackColor = back;
    graph().Data.Colors.CaptionColor = back;  // the worst that can be chosen
    all().display.Form_Resize();
    const QColor background = ToQColor(back);
    const QImage captions = Grab("frm(0)");
    for (int row = 0; row < 20; ++row) {
      const Label& label = graph().lblVal(row * kLabelsOfRow);
      const int top = static_cast<int>(label.Top / 15);
      const QImage text =
          captions.copy(0, top, captions.width(), static_cast<int>(label.Height / 15));
      EXPECT_GT(Ink(text, background), 2.5) << row << ", " << label.ForeColor.get();
    }
    for (const char* part : {"frm(1)", "frm(2)", "frm(3)"}) {
      EXPECT_GT(Ink(Grab(part), background), 2.5) << part;
    }
  }
}

TEST_F(GraphWindowTest, EachPartHasItsTip) {
  EXPECT_EQ(TipAt("lblExit", {3, 3}), "Click to exit ");
  EXPECT_EQ(TipAt("lblTest", {3, 3}), "Send testmode command to ZOLT");
  EXPECT_EQ(TipAt("lblDate", {3, 3}), "05-Mar-24 14:07:09  <->  05-Mar-24 14:07:09");
  auto& line = graph().Data.Attributes[0];
  line.ShowCaption = true;
  line.Description = "in <b>front</b> of the pump";
  all().display.DrawAgain();
  EXPECT_EQ(TipAt("frm(0)", {10, 10}), "<qt>in &lt;b&gt;front&lt;/b&gt; of the pump</qt>");
  TipAt("frm(0)", {10, 100});
  EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text().isEmpty(); }, kPatience));
}

// --- The menu ------------------------------------------------------------------------------------

TEST_F(GraphWindowTest, TheRightButtonOpensTheMenuWhereItIs) {
  window().resize(760, 500);
  window().move(0, 0);
  ClickAt(QPoint(300, 200), Qt::RightButton);
  EXPECT_EQ(Menu().pos(), window().mapToGlobal(QPoint(300, 200)));
  CloseMenu();
  for (const char* panel : {"frm(0)", "frm(1)", "frm(2)", "frm(3)"}) ExpectMenuAt(Middle(panel));
  ExpectMenuAt(Middle("lblDate"));
  ExpectMenuAt(QPoint(400, 1));  // above the picture there is only the form
  EXPECT_TRUE(graph().AutoScroll) << "No cursor has been set.";
}

TEST_F(GraphWindowTest, TheMenuKeyOpensTheMenu) {
  MoveTo(On("GraphPan", {200, 100}));
  QContextMenuEvent key(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(QApplication::focusWidget(), &key);
  ASSERT_TRUE(IsMenuOpen());
  EXPECT_EQ(Menu().pos(), Part("GraphPan").mapToGlobal(QPoint(200, 100)));
  CloseMenu();
}

TEST_F(GraphWindowTest, TheMenuHoldsItsEntriesInTheirOrder) {
  std::string text;
  const std::function<void(const QMenu&, const std::string&)> tell =
      [&](const QMenu& menu, const std::string& indent) {
        for (const QAction* action : menu.actions()) {
          text +=
              indent + (action->isSeparator() ? "-" : WithoutMark(action->text()).toStdString());
          text += action->isChecked() ? " (x)\n" : "\n";
          if (action->menu() != nullptr) tell(*action->menu(), indent + "  ");
        }
      };
  tell(Menu(), "");
  EXPECT_EQ(text,
            "File\n"
            "  Save properties\n"
            "  Open properties\n"
            "  -\n"
            "  Save measurements\n"
            "  Open measurements\n"
            "  -\n"
            "  Export\n"
            "  Auto save\n"
            "Graph settings\n"
            "-\n"
            "ZOLT communication (x)\n"
            "Time scale\n"
            "   1 minute\n"
            "   5 minutes\n"
            "  10 minutes (x)\n"
            "  20 minutes\n"
            "  60 minutes\n"
            "Time Scroll (x)\n"
            "Measured only\n"
            "-\n"
            "Copy picture\n"
            "Save picture\n"
            "Print\n"
            "-\n"
            "Quit Graphics\n");
}

TEST_F(GraphWindowTest, EachScaleIsAClickAway) {
  int scale = 0;
  for (const int minutes : {1, 5, 10, 20, 60}) {
    const std::string entry = "mnuScale(" + std::to_string(scale++) + ")";
    Choose(entry);
    EXPECT_EQ(graph().TimeScale, minutes);
    EXPECT_TRUE(window().findChild<QAction*>(QString::fromStdString(entry))->isChecked());
  }
}

TEST_F(GraphWindowTest, TheMarksOfTheMenuFollowWhatIs) {
  const auto is_checked = [this](const char* entry) {
    return window().findChild<QAction*>(entry)->isChecked();
  };
  Choose("mnuTimeScroll");
  EXPECT_FALSE(is_checked("mnuTimeScroll"));
  EXPECT_FALSE(graph().AutoScroll);
  world.dialogs()
      .ExpectMessageBox("Are you sure you want to stop communication", "ZOLT Communication")
      .Press(Answer::kNo);
  Choose("mnuZOLTCom");
  EXPECT_TRUE(is_checked("mnuZOLTCom"));
  world.dialogs()
      .ExpectMessageBox("Are you sure you want to stop communication", "ZOLT Communication")
      .Press(Answer::kYes);
  Choose("mnuZOLTCom");
  EXPECT_FALSE(is_checked("mnuZOLTCom"));
  world.dialogs().ExpectMessageBox("Start communication first", "Time Scroll");
  Choose("mnuTimeScroll");
  EXPECT_FALSE(is_checked("mnuTimeScroll"));
}

TEST_F(GraphWindowTest, MeasuredOnlyLeavesStrokesOfALine) {
  ShowLine(0, {20 << 8, 100 << 8, 20 << 8});
  Choose("mnuScale(0)");
  const int line = LinePixels(0);
  Choose("mnuMeasOnly");
  EXPECT_GT(LinePixels(0), 0);
  EXPECT_LT(LinePixels(0), line / 4);
  Choose("mnuMeasOnly");
  EXPECT_EQ(LinePixels(0), line);
}

// --- Pictures of it ------------------------------------------------------------------------------

class GraphPictureKept : public GraphWindowTest {
 protected:
  GraphPictureKept() {
    ShowLine(0, std::vector<int>(60, 60 << 8));
    all().display.DrawAgain();
  }
  // The whole window with its line, without what can be pressed.
  void ExpectPicture(const QImage& picture) {
    ASSERT_EQ(picture.size(), window().size() * window().devicePixelRatio());
    EXPECT_EQ(picture.copy(Part("GraphPan").geometry()).convertToFormat(QImage::Format_RGB32),
              Grab("GraphPan").convertToFormat(QImage::Format_RGB32));
    EXPECT_GT(CountOf(picture.copy(Part("GraphPan").geometry()), Qt::red), 50);
    for (const char* part : {"lblExit", "lblTest", "HScroll1"}) {
      const QRect place = Part(part).geometry();
      EXPECT_EQ(CountOf(picture.copy(place), Qt::white), place.width() * place.height()) << part;
    }
  }

  static constexpr const char* kPath = "/home/user/work/start.png";
};

TEST_F(GraphPictureKept, GoesToTheClipboard) {
  QGuiApplication::clipboard()->clear();
  Choose("mnuCopyPicture");
  ExpectPicture(QGuiApplication::clipboard()->image());
  QGuiApplication::clipboard()->clear();
  Key(Qt::Key_C, Qt::ControlModifier);
  ExpectPicture(QGuiApplication::clipboard()->image());
}

TEST_F(GraphPictureKept, GoesToAPngFile) {
  world.dialogs().ExpectSaveFile("Save picture").Give(kPath);
  Choose("mnuSavePicture");
  EXPECT_EQ(world.dialogs().last_file_request().file_name, "05Mar24-140709.png");
  QImage picture;
  ASSERT_TRUE(picture.loadFromData(QByteArray::fromStdString(world.disk().Get(kPath)), "PNG"));
  ExpectPicture(picture);
}

TEST_F(GraphPictureKept, SaysThatTheDiskIsFull) {
  world.disk().SetFreeSpace(100);
  world.dialogs().ExpectSaveFile("Save picture").Give(kPath);
  world.dialogs().ExpectMessageBox(
      {.text = "Error saving file", .title = "Saving file", .icon = Icon::kCritical});
  Choose("mnuSavePicture");
  EXPECT_FALSE(world.disk().Exists(kPath));
}

// --- Test ----------------------------------------------------------------------------------------

TEST_F(GraphWindowTest, TestIsSentByTheLeftButtonAndStandsOutWhileItIsDown) {
  PressAt(Middle("lblTest"));
  EXPECT_TRUE(graph().SendTestMode);
  EXPECT_EQ(graph().lblTest.ForeColor, 0xFFFFFF);
  ReleaseAt(Middle("GraphPan"));
  EXPECT_EQ(graph().lblTest.ForeColor, 0);
  EXPECT_TRUE(graph().SendTestMode);
  world.port().TakeSent();
  world.Advance(2s);
  EXPECT_EQ(world.port().TakeSent().at(0).at(1), '\x81') << "in place of a poll";
  EXPECT_FALSE(graph().SendTestMode);
}

TEST_F(GraphWindowTest, TestIsSentByTheSpaceBar) {
  Part("lblTest").setFocus();
  QTest::keyPress(window().windowHandle(), Qt::Key_Space);
  EXPECT_TRUE(graph().SendTestMode);
  EXPECT_EQ(graph().lblTest.ForeColor, 0xFFFFFF);
  QTest::keyRelease(window().windowHandle(), Qt::Key_Space);
  EXPECT_EQ(graph().lblTest.ForeColor, 0);
}

// A message box takes the mouse while the button is down: white letters on white would stay.
TEST_F(GraphWindowTest, TestIsReadableAgainAfterABoxHasComeBetween) {
  PressAt(Middle("lblTest"));
  ASSERT_EQ(graph().lblTest.ForeColor, 0xFFFFFF);
  QDialog box(&window());
  box.setModal(true);
  box.show();
  ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &box; }, kPatience));
  ReleaseAt(Middle("lblTest"));
  box.close();
  EXPECT_EQ(graph().lblTest.ForeColor, 0);
}

// --- While it runs -------------------------------------------------------------------------------

TEST_F(GraphWindowTest, ANewSampleIsSeenWithTheNextRefresh) {
  ShowLine(0, {60 << 8});
  EXPECT_EQ(LinePixels(0), 0);
  world.Advance(4s);
  graph().Data.AddMeasurement(60 << 8, graph().Now(), 0);
  EXPECT_LE(LinePixels(0), 2) << "Its stroke begins at the edge.";
  world.Advance(1s);
  EXPECT_GT(LinePixels(0), 5);
}

TEST_F(GraphWindowTest, ASilentSlaveIsToldOverThePicture) {
  EXPECT_FALSE(Message().isVisible());
  world.Advance(13'900ms);
  EXPECT_FALSE(Message().isVisible());
  world.Advance(200ms);
  ASSERT_TRUE(Message().isVisible());
  EXPECT_EQ(Text("lblCommunicationError"), "Communication error");
  const QRect place = Message().geometry();
  EXPECT_TRUE(Part("GraphPan").geometry().contains(place));
  // What is seen there is the message, not the picture below it.
  const QImage seen = window().grab().toImage().copy(place);
  EXPECT_EQ(seen, Message().grab().toImage().convertToFormat(seen.format()));
  EXPECT_GT(Ink(seen, seen.pixelColor(2, 2)), 4.5);
  window().resize(900, 600);
  EXPECT_TRUE(Part("GraphPan").geometry().contains(Message().geometry()));
  // It is not in the mouse's way.
  const QPoint middle = Message().geometry().center();
  ClickAt(middle);
  EXPECT_EQ(CursorColumn(), middle.x() - Part("GraphPan").x());
}

}  // namespace
}  // namespace tarnlink
