// Option groups and sliders.

#include <QApplication>

#include "ui/binder_fixture.h"

namespace tarnlink {
namespace {

// A frame of option buttons.
struct Group {
  Group(QWidget* parent, const std::string& name, const std::vector<std::string>& captions)
      : control(name, captions), frame(new QGroupBox(parent)) {
    auto* layout = new QVBoxLayout(frame);
    for (std::size_t i = 0; i < captions.size(); ++i) {
      buttons.push_back(new QRadioButton(frame));
      layout->addWidget(buttons.back());
    }
    control.Click = [this](int index) { clicks += std::to_string(index) + "|"; };
    Bind(buttons, control);
    parent->layout()->addWidget(frame);
  }

  ~Group() { delete frame; }
  Group(const Group&) = delete;
  Group& operator=(const Group&) = delete;

  void Click(int index) {
    QTest::mouseClick(buttons[static_cast<std::size_t>(index)], Qt::LeftButton, {}, QPoint(8, 8));
  }

  // The buttons that are set, such as "1|".
  std::string Set() const {
    std::string set;
    for (std::size_t i = 0; i < buttons.size(); ++i) {
      if (buttons[i]->isChecked()) set += std::to_string(i) + "|";
    }
    return set;
  }

  OptionGroup control;
  QGroupBox* frame;
  std::vector<QRadioButton*> buttons;
  std::string clicks;
};

TEST_F(BinderTest, AGroupShowsWhatTheModelSelects) {
  Group parity(&window, "opt_parity", {"None", "Even", "Odd"});
  ShowWindow();
  EXPECT_EQ(parity.buttons[2]->objectName(), "opt_parity(2)");
  EXPECT_EQ(parity.buttons[2]->text(), "Odd");
  EXPECT_EQ(parity.Set(), "") << "none at first";
  parity.control.Select(1);
  EXPECT_EQ(parity.Set(), "1|");
  parity.control.Select(0);
  EXPECT_EQ(parity.Set(), "0|");
  parity.control.Clear();
  EXPECT_EQ(parity.Set(), "");
  EXPECT_EQ(parity.clicks, "1|0|");
}

TEST_F(BinderTest, AGroupReportsEachClickOnce) {
  Group parity(&window, "opt_parity", {"None", "Even", "Odd"});
  ShowWindow();
  parity.Click(2);
  EXPECT_EQ(parity.control.Selected(), 2);
  parity.Click(0);
  EXPECT_EQ(parity.control.Selected(), 0);
  EXPECT_EQ(parity.Set(), "0|");
  EXPECT_EQ(parity.clicks, "2|0|");
}

TEST_F(BinderTest, AClickOnTheSetButtonIsAClickToo) {
  Group parity(&window, "opt_parity", {"None", "Even", "Odd"});
  ShowWindow();
  parity.Click(1);
  parity.Click(1);
  EXPECT_EQ(parity.clicks, "1|1|");
  EXPECT_EQ(parity.Set(), "1|");
}

TEST_F(BinderTest, AGroupThatWasClearedTakesAClickOnAnyButton) {
  Group parity(&window, "opt_parity", {"None", "Even", "Odd"});
  ShowWindow();
  for (int i = 0; i < 3; ++i) {
    parity.control.Clear();
    parity.Click(i);
    EXPECT_EQ(parity.Set(), std::to_string(i) + "|");
    EXPECT_EQ(parity.control.Selected(), i);
  }
}

TEST_F(BinderTest, ArrowsGoThroughAGroup) {
  Group parity(&window, "opt_parity", {"None", "Even", "Odd"});
  ShowWindow();
  parity.control.Select(0);
  parity.buttons[0]->setFocus();
  parity.clicks.clear();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
  EXPECT_EQ(parity.control.Selected(), 1);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
  EXPECT_EQ(parity.control.Selected(), 2);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
  EXPECT_EQ(parity.control.Selected(), 1);
  EXPECT_EQ(parity.Set(), "1|");
  EXPECT_EQ(parity.clicks, "1|2|1|");
}

TEST_F(BinderTest, TabComesToTheSetButtonOfEachGroup) {
  Group parity(&window, "opt_parity", {"None", "Even", "Odd"});
  Group stop(&window, "opt_stop", {"One", "Two"});
  ShowWindow();
  parity.control.Select(2);
  stop.control.Select(1);
  parity.buttons[2]->setFocus();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "opt_stop(1)");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "opt_parity(2)");
}

TEST_F(BinderTest, AGroupWithoutASetButtonCanBeReachedByTheKeyboard) {
  Group parity(&window, "opt_parity", {"None", "Even", "Odd"});
  auto* edit = Add<QLineEdit>();
  ShowWindow();
  parity.control.Select(1);
  parity.control.Clear();
  edit->setFocus();
  QTest::keyClick(edit, Qt::Key_Tab);
  ASSERT_EQ(QApplication::focusWidget()->parentWidget(), parity.frame);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
  EXPECT_NE(parity.control.Selected(), -1);
}

TEST_F(BinderTest, GroupsOnOneWindowAreApart) {
  Group parity(&window, "opt_parity", {"None", "Even", "Odd"});
  Group stop(&window, "opt_stop", {"One", "Two"});
  ShowWindow();
  parity.Click(1);
  stop.Click(0);
  EXPECT_EQ(parity.Set(), "1|");
  EXPECT_EQ(stop.Set(), "0|");
}

TEST_F(BinderTest, ADisabledButtonOfAGroupTakesNoClick) {
  Group port(&window, "opt_CommPort", {"COM1", "COM2"});
  ShowWindow();
  port.control(1).Enabled = false;
  port.Click(1);
  EXPECT_EQ(port.control.Selected(), -1);
  port.control(1).Visible = false;
  EXPECT_FALSE(port.buttons[1]->isVisible());
}

TEST_F(BinderTest, AChoiceThatMakesAnotherEndsWhereTheModelSays) {
  Group protocol(&window, "opt_Protocol", {"a", "b"});
  Group baudrate(&window, "opt_Baudrate", {"1200", "2400"});
  ShowWindow();
  protocol.control.Click = [&](int) {
    baudrate.control.Clear();
    baudrate.control.Select(1);
  };
  baudrate.Click(0);
  protocol.Click(0);
  EXPECT_EQ(baudrate.Set(), "1|");
  EXPECT_EQ(baudrate.clicks, "0|1|");
}

// --- Sliders ---

class SliderBinder : public BinderTest {
 protected:
  SliderBinder() {
    control.Change = [this] { changes += std::to_string(control.Value.get()) + "|"; };
    slider = Add<QSlider>();
    slider->setOrientation(Qt::Horizontal);
    Bind(slider, control);
    ShowWindow();
  }

  Slider& control = Make<Slider>("sld_MsgTimeout", 0, 5, 3);
  QSlider* slider;
  std::string changes;
};

TEST_F(SliderBinder, ASliderShowsWhatTheModelSets) {
  EXPECT_EQ(slider->objectName(), "sld_MsgTimeout");
  EXPECT_EQ(slider->minimum(), 0);
  EXPECT_EQ(slider->maximum(), 5);
  EXPECT_EQ(slider->value(), 3);
  control.SetValue(5);
  EXPECT_EQ(slider->value(), 5);
  control.SetValue(9);
  EXPECT_EQ(slider->value(), 5);
  control.Value = -1;
  EXPECT_EQ(slider->value(), 0);
  EXPECT_EQ(changes, "5|0|");
  control.ToolTipText = "0 second(s)";
  EXPECT_EQ(slider->toolTip(), "0 second(s)");
}

TEST_F(SliderBinder, ASliderReportsEachStep) {
  QTest::keyClick(slider, Qt::Key_Right);
  QTest::keyClick(slider, Qt::Key_Right);
  QTest::keyClick(slider, Qt::Key_Right);
  EXPECT_EQ(changes, "4|5|") << "and holds at its end";
  QTest::keyClick(slider, Qt::Key_Home);
  EXPECT_EQ(changes, "4|5|0|");
  EXPECT_EQ(control.Value.get(), 0);
}

TEST_F(SliderBinder, ASliderFollowsTheMouse) {
  slider->setPageStep(1);
  QTest::mouseClick(slider, Qt::LeftButton, {}, QPoint(2, slider->height() / 2));
  EXPECT_EQ(changes, "2|");
}

}  // namespace
}  // namespace tarnlink
