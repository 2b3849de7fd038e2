// The settings dialog of a Location under mouse and keyboard.

#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QGroupBox>
#include <QLineEdit>
#include <QToolButton>

#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kMap =
    "__cpu_name = ATmega64\r\nENTRY LIST\r\n"
    "swFlow  DATA 000060\r\nubPump DATA 000062\r\nubFlowLimit DATA 000063\r\nend DATA 000064\r\n";

class Settings : public UiTest {
 protected:
  // The double click on the name box of Location `index`, with the map's names.
  void Define(int index = 1) {
    world.disk().Put("/home/user/work/boiler.map", kMap);
    world.settings().SaveSetting("Paths", "MapFile", "/home/user/work/boiler.map");
    OpenScreen(kTwoLocations);
    monitor.map.LoadClass7("/home/user/work/boiler.map");
    DoubleClick(index);
  }
  void DoubleClick(int index) {
    WaitForActive(window.get());
    QTest::mouseDClick(&Get("RAM_LOC_TEXT(" + std::to_string(index) + ")"), Qt::LeftButton);
    WaitForActive(settings.get());
  }
  Location& At(int index) { return monitor.main.Locations[index]; }
  QComboBox& Names() { return Get<QComboBox>("cmbActualVariable"); }
  std::string Text(const std::string& name) { return Get<QLineEdit>(name).text().toStdString(); }
};

TEST_F(Settings, ADoubleClickOnTheNameOpensThem) {
  Define();
  EXPECT_EQ(settings->objectName(), "frm_Settings");
  EXPECT_EQ(settings->windowTitle(), "Settings For Memory Location");
  EXPECT_TRUE(settings->isModal());
  EXPECT_EQ(Focus(), "txt_Alias");
  EXPECT_EQ(Get<QLineEdit>("txt_Alias").selectedText(), "Flow");
  EXPECT_EQ(Text("txt_Address"), "01A0");
  EXPECT_EQ(Text("txt_Address_dec"), "416");
  EXPECT_EQ(Names().currentText(), "t_flow");
  EXPECT_EQ(Get<QGroupBox>("frmAddress").title(), "Address");
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(1)")) << "The press began no drag.";
}

TEST_F(Settings, EnterTakesOverWhatIsBeingTyped) {
  Define();
  Type("txt_Address", "1b");
  PressFocused(Qt::Key_Return);
  EXPECT_FALSE(settings->isVisible());
  EXPECT_EQ(At(1).Address, "001B");
}

TEST_F(Settings, TheTwoAddressesFollowEachOther) {
  Define();
  Type("txt_Address", "00ff");
  PressFocused(Qt::Key_Tab);
  EXPECT_EQ(Text("txt_Address"), "00FF");
  EXPECT_EQ(Text("txt_Address_dec"), "255");
  Type("txt_Address_dec", "70000");
  PressFocused(Qt::Key_Tab);
  EXPECT_EQ(Text("txt_Address_dec"), "0");
  EXPECT_EQ(Text("txt_Address"), "0000");
}

TEST_F(Settings, WhatIsNoDigitCannotBeTyped) {
  Define();
  Type("txt_Address", "01x");
  EXPECT_EQ(Text("txt_Address"), "01");
}

TEST_F(Settings, EscapeChangesNothing) {
  Define();
  Type("txt_Alias", "Other");
  PressFocused(Qt::Key_Escape);
  EXPECT_FALSE(settings->isVisible());
  EXPECT_EQ(At(1).Alias, "Flow");
  EXPECT_EQ(monitor.main.RAM_LOC_TEXT(1).BackColor, kWindowBackground);
}

TEST_F(Settings, NamesThatHoldWhatIsTypedAreOffered) {
  Define();
  Names().setFocus();
  Names().lineEdit()->selectAll();
  for (const Qt::Key key : {Qt::Key_F, Qt::Key_L, Qt::Key_O}) PressFocused(key);
  QCompleter& completer = *Names().completer();
  ASSERT_EQ(completer.completionCount(), 2);
  completer.setCurrentRow(1);
  EXPECT_EQ(completer.currentCompletion(), "ubFlowLimit") << "also in the middle";
}

TEST_F(Settings, APickedNameBringsItsAddressAndType) {
  Define();
  Names().setFocus();
  EXPECT_EQ(Names().itemText(0), "end") << "in the order of the alphabet";
  const int row = Names().findText("swFlow");
  Names().setCurrentIndex(row);
  emit Names().activated(row);
  EXPECT_EQ(Text("txt_Address"), "F060");
  EXPECT_TRUE(Get<QRadioButton>("opt_StorageType(4)").isChecked());
  Click("cmd_Ok");
  EXPECT_EQ(At(1).Address, "F060");
  EXPECT_EQ(At(1).ActualVariable, "swFlow");
}

TEST_F(Settings, AnElementOfATableIsTyped) {
  Define();
  Names().setFocus();
  Names().lineEdit()->selectAll();
  QTest::keyClicks(Names().lineEdit(), "ubPump+1");
  PressFocused(Qt::Key_Tab);
  EXPECT_EQ(Text("txt_Address"), "F063");
  EXPECT_EQ(Names().currentText(), "ubPump+1");
}

TEST_F(Settings, ANewModbusLocationWantsAFunctionCode) {
  Begin();
  monitor.options.opt_Protocol.Select(kModbusProtocol);
  monitor.options.ApplyOptions();
  Click("Toolbar1(1)");
  DoubleClick(1);
  auto& function = Get<QComboBox>("CmbFunc");
  EXPECT_EQ(function.placeholderText(), "Select");
  EXPECT_TRUE(Get("txt_NumReg").isEnabled());
  world.dialogs().ExpectMessageBox({.text = "Select Function Code", .title = ""});
  Click("cmd_Ok");
  EXPECT_TRUE(settings->isVisible());
  function.setFocus();
  PressFocused(Qt::Key_Down);
  PressFocused(Qt::Key_Down);
  Click("cmd_Ok");
  EXPECT_FALSE(settings->isVisible());
  EXPECT_EQ(At(1).FunctionCode, "&H03");
}

TEST_F(Settings, TheArrowsStep) {
  Define();
  Click("UpDown1.Up");
  Click("UpDown1.Up");
  Click("UpDown1.Down");
  EXPECT_EQ(Text("txt_SlaveAddress"), "1");
  Click("ud_Col.Up");
  EXPECT_EQ(Text("txt_ExcelColumn"), "1");
}

TEST_F(Settings, DuringARunTheyCanBeLookedAtOnly) {
  OpenScreen(kTwoLocations);
  Click("Toolbar1(2)");
  DoubleClick(1);
  EXPECT_FALSE(Get("cmd_Ok").isEnabled());
  EXPECT_FALSE(Get("cmdDeleteLocation").isEnabled());
  Click("cmd_Cancel");
  Click("Toolbar1(3)");
}

}  // namespace
}  // namespace tarnlink
