// The box on an empty screen that says how to reach a controller, with real clicks and keys.

#include "ui/first_steps_panel.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include "monitor/help_chapters.h"
#include "ui/help_key.h"
#include "ui/look.h"
#include "ui/mnemonics.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kRefusal =
    "You do not have the permission to use COM1 (/dev/ttyUSB0): it belongs to the group "
    "\"dialout\". Run \"sudo usermod -aG dialout $USER\", then log out and log in again.";

class FirstStepsUiTest : public UiTest {
 protected:
  void BeginSteps() {
    world.devices().PlugIn(
        {"/dev/ttyUSB0", "/dev/serial/by-id/usb-adapter-7", "USB-Serial Controller", "Acme"});
    BeginOnce();
    steps = std::make_unique<frm_FirstSteps>(
        monitor.main, monitor.options,
        FirstStepsHost{
            .WhyUnusable = [this](int, const std::string&) { return refusal; },
            .StartBoiler = []() -> std::unique_ptr<SimulatedBoiler> {
              return std::make_unique<Boiler>();
            },
            .OpenFiles = [this](const std::vector<std::string>& files) { opened = files.size(); }});
    panel = std::make_unique<FirstStepsPanel>(*steps, window->ScreenArea());
    steps->Look();
    FinishPainting();
  }

  struct Boiler final : SimulatedBoiler {
    std::string Device() const override { return "/run/boiler"; }
    bool IsRunning() const override { return true; }
  };

  std::string refusal = kRefusal;
  std::size_t opened = 0;
  std::unique_ptr<frm_FirstSteps> steps;
  std::unique_ptr<FirstStepsPanel> panel;
};

TEST_F(FirstStepsUiTest, ItStandsInTheMiddleOfTheScreenWhateverItsSize) {
  BeginSteps();
  for (const QSize& size : {QSize(1160, 660), QSize(800, 480)}) {
    window->resize(size);
    FinishPainting();
    const QRect area = window->ScreenArea()->rect();
    EXPECT_TRUE(area.contains(panel->geometry())) << size.width();
    EXPECT_LE((panel->geometry().center() - area.center()).manhattanLength(), 2);
    EXPECT_GE(panel->height(), panel->heightForWidth(panel->width()));
  }
}

// A cable that is plugged in while it stands there may be of a group.
TEST_F(FirstStepsUiTest, ALongerTextGetsItsRoom) {
  refusal = "COM1 stands for no serial device.";
  BeginSteps();
  const int before = panel->height();
  refusal = kRefusal;
  steps->Look();
  EXPECT_TRUE(Get<QLabel>("lblPort").text().contains("usermod"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return panel->height() > before; }, 2000));
  EXPECT_GE(panel->height(), panel->heightForWidth(panel->width()));
  const auto& why = Get<QLabel>("lblPort");
  EXPECT_GE(why.height(), why.heightForWidth(why.width()));
}

TEST_F(FirstStepsUiTest, TheHelpKeyOpensTheFirstPageWhileItStandsThere) {
  BeginSteps();
  EXPECT_EQ(HelpPageFor(&Get("screen")), kHelpStart);
  EXPECT_EQ(HelpPageFor(panel.get()), kHelpStart);
  Click("Toolbar1(1)");
  world.Advance(std::chrono::seconds(1));
  EXPECT_EQ(HelpPageFor(&Get("screen")), HelpPageOf("frm_Main"));
  EXPECT_NE(HelpPageOf("frm_Main"), kHelpStart);
}

TEST_F(FirstStepsUiTest, ItGoesWithTheFirstLocation) {
  BeginSteps();
  EXPECT_TRUE(panel->isVisible());
  Click("Toolbar1(1)");
  world.Advance(std::chrono::seconds(1));
  EXPECT_FALSE(panel->isVisible());
}

TEST_F(FirstStepsUiTest, ItsStepsAreTakenWithTheMouse) {
  BeginSteps();
  Click("cmdBoiler");
  EXPECT_TRUE(Get<QLabel>("lblPort").text().startsWith("The simulated boiler answers on COM1."));
  EXPECT_EQ(WithoutMark(Get<QPushButton>("cmdBoiler").text()), "Stop the simulated boiler");
  Click("cmdSample");
  EXPECT_EQ(opened, 2U);
  refusal = "";
  Click("cmdUse");
  EXPECT_TRUE(Get<QLabel>("lblPort").text().startsWith("COM1 can be used: "));
  EXPECT_EQ(world.settings().GetSetting("Ports", "COM1", ""), "/dev/serial/by-id/usb-adapter-7");
}

TEST_F(FirstStepsUiTest, TheKeyboardReachesEachStep) {
  BeginSteps();
  QStringList reached;
  for (int i = 0; i < 40 && reached.count("cmdSample") == 0; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    if (QApplication::focusWidget() == nullptr) break;
    reached << QApplication::focusWidget()->objectName();
  }
  EXPECT_TRUE(reached.contains("cmbDevices")) << reached.join(' ').toStdString();
  EXPECT_TRUE(reached.contains("cmdUse"));
  EXPECT_TRUE(reached.contains("cmdBoiler"));
  EXPECT_TRUE(reached.contains("cmdSample"));
}

class FirstStepsPictures : public FirstStepsUiTest, public testing::WithParamInterface<Look> {};

TEST_P(FirstStepsPictures, AreKept) {
  const QPalette before = QApplication::palette();
  if (GetParam().dark) QApplication::setPalette(DarkPalette());
  BeginSteps();
  window->resize(1160, 660);
  FinishPainting();
  SavePicture(*window, std::string("first-steps-") + GetParam().name);
  window->resize(800, 480);
  FinishPainting();
  SavePicture(*window, std::string("first-steps-small-") + GetParam().name);
  QApplication::setPalette(before);
}

INSTANTIATE_TEST_SUITE_P(Looks, FirstStepsPictures,
                         testing::Values(Look{"light", false}, Look{"dark", true}),
                         [](const auto& look) { return std::string(look.param.name); });

}  // namespace
}  // namespace tarnlink
