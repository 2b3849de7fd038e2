// Menu entries, push buttons, check boxes and frames, and what all widgets have in common.

#include <QApplication>
#include <memory>

#include "ui/binder_fixture.h"

namespace tarnlink {
namespace {

// --- Menu entries ---

TEST_F(BinderTest, AnEntryShowsItsControl) {
  MenuEntry entry{"M_options", "Options"};
  entry.ToolTipText = "Port and paths";
  QAction action;
  Bind(&action, entry);
  EXPECT_EQ(action.objectName(), "M_options");
  EXPECT_EQ(action.text(), "Options");
  EXPECT_EQ(action.toolTip(), "Port and paths");
  EXPECT_TRUE(action.isEnabled());
  EXPECT_TRUE(action.isVisible());

  entry.Caption = "&Settings";
  entry.ToolTipText = "";
  entry.Enabled = false;
  entry.Visible = false;
  EXPECT_EQ(action.text(), "&Settings");
  EXPECT_EQ(action.toolTip(), "Settings") << "the caption, where there is no tip";
  EXPECT_FALSE(action.isEnabled());
  EXPECT_FALSE(action.isVisible());
}

TEST_F(BinderTest, AnEntryReportsEachChoiceOnce) {
  MenuEntry entry{"M_options", "Options"};
  int clicks = 0;
  entry.Click = [&] { ++clicks; };
  QAction action;
  Bind(&action, entry);
  action.trigger();
  EXPECT_EQ(clicks, 1);
  action.trigger();
  EXPECT_EQ(clicks, 2);
}

TEST_F(BinderTest, ADisabledOrHiddenEntryReportsNothing) {
  MenuEntry entry{"M_options", "Options"};
  int clicks = 0;
  entry.Click = [&] { ++clicks; };
  QAction action;
  Bind(&action, entry);
  entry.Enabled = false;
  action.trigger();
  entry.Enabled = true;
  entry.Visible = false;
  action.trigger();
  EXPECT_EQ(clicks, 0);
}

TEST_F(BinderTest, OnlyTheModelChecksAnEntry) {
  MenuEntry entry{"mnuViewProjectWindow", "Project Window"};
  QAction action;
  action.setCheckable(true);
  Bind(&action, entry);
  action.trigger();
  EXPECT_FALSE(action.isChecked()) << "the model did not check it";

  entry.Click = [&] { entry.Checked = !entry.Checked.get(); };
  action.trigger();
  EXPECT_TRUE(action.isChecked());
  action.trigger();
  EXPECT_FALSE(action.isChecked());
  entry.Checked = true;
  EXPECT_TRUE(action.isChecked());
}

TEST_F(BinderTest, APathInAMenuKeepsItsAmpersands) {
  MenuEntry entry{"M_fileHist(0)", "/home/a&b/x&&y.wcr"};
  QAction action;
  BindPath(&action, entry);
  EXPECT_EQ(action.text(), "/home/a&&b/x&&&&y.wcr");
  entry.Caption = "&";
  EXPECT_EQ(action.text(), "&&");
}

TEST_F(BinderTest, ALongPathInAMenuIsCutInTheMiddle) {
  MenuEntry entry{"M_fileHist(0)", "/first/" + std::string(500, 'x') + "/last.wcr"};
  QAction action;
  BindPath(&action, entry);
  EXPECT_LE(action.text().size(), 90);
  EXPECT_TRUE(action.text().startsWith("/first/"));
  EXPECT_TRUE(action.text().contains("..."));
  EXPECT_TRUE(action.text().endsWith("/last.wcr"));
}

// --- Push buttons ---

TEST_F(BinderTest, AButtonShowsItsControl) {
  auto& control = Make<CommandButton>("cmdBrowseLogPath", "Browse...");
  auto* button = Add<QPushButton>();
  Bind(button, control);
  ShowWindow();
  EXPECT_EQ(button->objectName(), "cmdBrowseLogPath");
  EXPECT_EQ(button->text(), "Browse...");
  control.Caption = "Find";
  control.ToolTipText = "a folder";
  control.Enabled = false;
  EXPECT_EQ(button->text(), "Find");
  EXPECT_EQ(button->toolTip(), "a folder");
  EXPECT_FALSE(button->isEnabled());
}

TEST_F(BinderTest, AButtonReportsEachClickOnce) {
  auto& control = Make<CommandButton>("cmd_OptionsOk", "Ok");
  int clicks = 0;
  control.Click = [&] { ++clicks; };
  auto* button = Add<QPushButton>();
  Bind(button, control);
  ShowWindow();
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
  QTest::keyClick(button, Qt::Key_Space);
  EXPECT_EQ(clicks, 2);
  control.Enabled = false;
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(clicks, 2);
}

// --- Check boxes ---

TEST_F(BinderTest, ACheckBoxGoesBothWays) {
  auto& control = Make<CheckBox>("ScanningBox", "Scanning box");
  int clicks = 0;
  control.Click = [&] { ++clicks; };
  auto* box = Add<QCheckBox>();
  Bind(box, control);
  ShowWindow();
  EXPECT_EQ(box->text(), "Scanning box");
  EXPECT_FALSE(box->isChecked());

  control.Value = true;
  EXPECT_TRUE(box->isChecked());
  EXPECT_EQ(clicks, 1) << "by the program";
  QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
  EXPECT_FALSE(control.Value);
  EXPECT_EQ(clicks, 2) << "by the mouse";
  QTest::keyClick(box, Qt::Key_Space);
  EXPECT_TRUE(control.Value);
  EXPECT_EQ(clicks, 3) << "by the keyboard";
  EXPECT_TRUE(box->isChecked());
}

TEST_F(BinderTest, ACheckBoxShowsWhatTheModelMadeOfAClick) {
  auto& control = Make<CheckBox>("chkGridOn", "Grid  on");
  control.Click = [&] { control.Value = false; };
  auto* box = Add<QCheckBox>();
  Bind(box, control);
  ShowWindow();
  QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
  EXPECT_FALSE(control.Value);
  EXPECT_FALSE(box->isChecked());
}

// --- What all have in common ---

TEST_F(BinderTest, AFrameShowsItsControl) {
  auto& control = Make<Control>("frmMicro");
  control.Enabled = false;
  auto* frame = Add<QGroupBox>();
  frame->setTitle("Microprocessor");
  Bind(frame, control);
  ShowWindow();
  EXPECT_EQ(frame->objectName(), "frmMicro");
  EXPECT_EQ(frame->title(), "Microprocessor");
  EXPECT_FALSE(frame->isEnabled());
  control.Enabled = true;
  control.Visible = false;
  EXPECT_TRUE(frame->isEnabled());
  EXPECT_FALSE(frame->isVisible());
}

TEST_F(BinderTest, AHiddenControlIsNotOnTheWindow) {
  auto& control = Make<CommandButton>("cmdBrowseExcel", "Browse...");
  control.Visible = false;
  auto* button = Add<QPushButton>();
  Bind(button, control);
  ShowWindow();
  EXPECT_FALSE(button->isVisible());
  control.Visible = true;
  EXPECT_TRUE(button->isVisible());
  control.Visible = false;
  EXPECT_FALSE(button->isVisible());
}

TEST_F(BinderTest, AWidgetThatHasNoParentYetOpensNoWindow) {
  auto& control = Make<CommandButton>("cmd_OptionsOk", "Ok");
  auto* button = new QPushButton;
  Bind(button, control);
  EXPECT_FALSE(button->isVisible());
  control.Caption = "OK";
  EXPECT_FALSE(button->isVisible());
  window.layout()->addWidget(button);
  ShowWindow();
  EXPECT_TRUE(button->isVisible());
}

TEST_F(BinderTest, AWidgetThatIsHiddenBeforeItHasAParentStaysHidden) {
  auto& control = Make<CommandButton>("cmd_OptionsOk", "Ok");
  control.Visible = false;
  auto* button = new QPushButton;
  Bind(button, control);
  window.layout()->addWidget(button);
  ShowWindow();
  EXPECT_FALSE(button->isVisible());
}

TEST_F(BinderTest, AToolTipIsPlainText) {
  EXPECT_EQ(PlainToolTip("Set 1  to 16"), "Set 1  to 16");
  EXPECT_EQ(PlainToolTip("a & b < c"), "a & b < c");
  EXPECT_EQ(PlainToolTip(""), "");
  EXPECT_EQ(PlainToolTip("<b>x"), "<qt>&lt;b&gt;x</qt>");
  EXPECT_EQ(PlainToolTip("<img src='/etc/x'>"), "<qt>&lt;img src='/etc/x'&gt;</qt>");
  EXPECT_EQ(PlainToolTip("&lt;b&gt;"), "<qt>&amp;lt;b&amp;gt;</qt>");
}

TEST_F(BinderTest, ALongToolTipIsBrokenIntoLinesAndCut) {
  const QString long_tip = PlainToolTip(std::string(100, 'x'));
  EXPECT_EQ(long_tip, "<qt>" + QString(100, 'x') + "</qt>");
  EXPECT_LT(PlainToolTip(std::string(1000000, '<')).size(), 5000);
}

// A sanitizer sees a view that was left behind.
TEST_F(BinderTest, AWidgetMayBeDestroyedBeforeItsControl) {
  MenuEntry entry{"M_options", "Options"};
  CommandButton command{"cmd_OptionsOk", "Ok"};
  CheckBox check{"ScanningBox", "Scanning box"};
  TextBox text{"ComPortNumber"};
  Slider slider{"sld_MsgTimeout", 0, 5, 3};
  ComboBox combo{"cmbPortDevice"};
  StatusPanel panel{"StatusBar1(1)", "Communication Parameters"};
  OptionGroup group{"opt_stop", {"One", "Two"}};
  Control frame{"frmMicro"};
  {
    QWidget form;
    Bind(new QAction(&form), entry);
    Bind(new QPushButton(&form), command);
    Bind(new QCheckBox(&form), check);
    Bind(new QLineEdit(&form), text);
    Bind(new QSlider(&form), slider);
    Bind(new QComboBox(&form), combo);
    Bind(new TextPlate(&form), panel);
    Bind({new QRadioButton(&form), new QRadioButton(&form)}, group);
    Bind(new QGroupBox(&form), frame);
  }
  entry.Caption = "a";
  command.Caption = "b";
  check.Value = true;
  text.Text = "c";
  slider.SetValue(1);
  combo.Text = "d";
  panel.Text = "e";
  group.Select(1);
  frame.Enabled = false;
  EXPECT_EQ(group.Selected(), 1);
}

}  // namespace
}  // namespace tarnlink
