// The dialogs of a write: typing, keys, focus, and the line that says what goes out.

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "ui/mnemonics.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

class WriteDialogs : public UiTest {
 protected:
  // The run stands still at its first poll; the Locations are shown in decimal and hexadecimal.
  void Run() {
    OpenScreen(kTwoLocations);
    Click("Toolbar1(2)");
    monitor.main.RAM_LOC_VAL(1).Text = "42";
  }
  void Ask(int index) {
    WaitForActive(window.get());
    const std::string box = "RAM_LOC_VAL(" + std::to_string(index) + ")";
    QTest::mouseDClick(&Get(box), Qt::LeftButton);
  }
  void AskForValue(int index = 1) {
    Run();
    Ask(index);
    WaitForActive(write_value.get());
  }
  void AskForBit() {
    Run();
    monitor.main.Locations[1].StorageType = kBit;
    Ask(1);
    WaitForActive(write_bit.get());
  }
  void AskForRegisters(const std::string& count) {
    Click("Option1(1)");
    Type("Text1", count);
    Click("Values");
    WaitForActive(write_registers.get());
  }

  QLineEdit& Value() { return Get<QLineEdit>("txt_WriteValue"); }
  // Names and captions of all push and radio buttons, in the order in which they were made.
  static std::string ButtonTexts(const QDialog& dialog) {
    QString text;
    for (const auto* button : dialog.findChildren<QAbstractButton*>()) {
      text += button->objectName() + " " + WithoutMark(button->text()) + "\n";
    }
    return text.toStdString();
  }
  std::string GoesOut() { return Get<QLabel>("lbl_GoesOut").text().toStdString(); }
  std::string Frames() { return world.port().TakeSentHex(); }
};

TEST_F(WriteDialogs, AValueIsAskedForWithItsTextSelected) {
  AskForValue();
  EXPECT_EQ(write_value->objectName(), "frm_WriteValue");
  EXPECT_TRUE(write_value->isModal());
  EXPECT_EQ(Focus(), "txt_WriteValue");
  EXPECT_EQ(Value().selectedText(), "42");
  EXPECT_TRUE(Get<QRadioButton>("opt_WriteValueFormat(0)").isChecked());
  EXPECT_TRUE(Get<QRadioButton>("Option1(0)").isChecked());
  EXPECT_FALSE(Get("Values").isEnabled());
  EXPECT_EQ(Get("txt_WriteValue").accessibleName(), "Value");
  EXPECT_EQ(Get("Text1").accessibleName(), "Number of Registers");
}

TEST_F(WriteDialogs, EveryControlOfAValueBearsItsCaption) {
  AskForValue();
  EXPECT_EQ(write_value->windowTitle(), "Write value to : Flow [01A0]");
  EXPECT_EQ(ButtonTexts(*write_value),
            "opt_WriteValueFormat(0) Decimal\n"
            "opt_WriteValueFormat(1) Hexadecimal\n"
            "opt_WriteValueFormat(2) Binary\n"
            "opt_WriteValueFormat(3) Octal\n"
            "Option1(0) Single Write\n"
            "Option1(1) Multiple Write\n"
            "Values Values\n"
            "cmd_WriteOk Write Ok\n"
            "cmd_WriteCancel Write Cancel\n");
  EXPECT_EQ(Get<QLabel>("Label3").text(), "Number of Registers");
}

TEST_F(WriteDialogs, EveryControlOfABitBearsItsCaption) {
  AskForBit();
  EXPECT_EQ(write_bit->windowTitle(), "Write : Flow [01A0:0]");
  EXPECT_EQ(write_bit->findChild<QGroupBox*>()->title(), "Set Bit Value to");
  EXPECT_EQ(ButtonTexts(*write_bit),
            "opt_writetrue TRUE\nOption1 FALSE\ncmd_Ok Write Bit\ncmd_Cancel Cancel Write\n");
  // Letters that are told stay.
  EXPECT_EQ(Get<QPushButton>("cmd_Ok").text(), "&Write Bit");
  EXPECT_EQ(Get<QPushButton>("cmd_Cancel").text(), "&Cancel Write");
}

TEST_F(WriteDialogs, EveryControlOfABlockBearsItsCaption) {
  AskForValue();
  AskForRegisters("2");
  EXPECT_EQ(write_registers->windowTitle(), "Multiple Registers");
  EXPECT_EQ(ButtonTexts(*write_registers),
            "Option_multiplereg(0) Decimal\n"
            "Option_multiplereg(1) Hexadecimal\n"
            "Command1 Store values\n");
  EXPECT_EQ(Get<QLabel>("Space(1)").text(), "Flow");
  EXPECT_EQ(Get<QLineEdit>("value(1)").text(), "value1");
  EXPECT_EQ(Get<QLineEdit>("value(2)").text(), "value2");
}

TEST_F(WriteDialogs, TheLineFollowsEachKey) {
  AskForValue();
  EXPECT_EQ(GoesOut(), "Goes out: 2A");
  PressFocused(Qt::Key_3);
  EXPECT_EQ(GoesOut(), "Goes out: 03");
  PressFocused(Qt::Key_0);
  EXPECT_EQ(GoesOut(), "Goes out: 1E");
  PressFocused(Qt::Key_0);
  EXPECT_EQ(GoesOut(), "Goes out: 2C");
  Click("opt_WriteValueFormat(1)");
  EXPECT_EQ(GoesOut(), "Goes out: 00");
  EXPECT_EQ(Focus(), "txt_WriteValue");
  EXPECT_EQ(Value().selectedText(), "300");
}

TEST_F(WriteDialogs, AClickIntoTheValueSelectsItsTextAndTheNextOnePlacesTheCursor) {
  AskForValue();
  Get("cmd_WriteOk").setFocus();
  QTest::mouseClick(&Value(), Qt::LeftButton);
  EXPECT_EQ(Focus(), "txt_WriteValue");
  EXPECT_EQ(Value().selectedText(), "42");
  QTest::mouseClick(&Value(), Qt::LeftButton);
  EXPECT_EQ(Value().selectedText(), "");
}

TEST_F(WriteDialogs, AMultipleWriteHidesTheFormatsWithTheirFrame) {
  AskForValue();
  QWidget* frame = Get("opt_WriteValueFormat(0)").parentWidget();
  Click("Option1(1)");
  EXPECT_FALSE(frame->isVisible());
  Click("Option1(0)");
  EXPECT_TRUE(frame->isVisible());
  EXPECT_TRUE(Get("opt_WriteValueFormat(1)").isVisible());
}

TEST_F(WriteDialogs, EnterWrites) {
  AskForValue();
  Frames();
  QTest::keyClicks(&Value(), "300");
  PressFocused(Qt::Key_Return);
  EXPECT_FALSE(write_value->isVisible());
  // 06 + "01A0" + "2C" add up to 14D.
  EXPECT_EQ(Frames(), "04 06 30 31 41 30 32 43 34 44 03\n");
}

TEST_F(WriteDialogs, EscapeAndTheFramesCrossWriteNothing) {
  AskForValue();
  Frames();
  PressFocused(Qt::Key_Escape);
  EXPECT_FALSE(write_value->isVisible());
  EXPECT_FALSE(monitor.write_value.form.Visible);
  EXPECT_TRUE(monitor.main.Comm_Timer->Enabled());
  Ask(1);
  WaitForActive(write_value.get());
  write_value->close();
  EXPECT_FALSE(monitor.write_value.form.Visible);
  EXPECT_EQ(Frames(), "");
}

TEST_F(WriteDialogs, SixCharactersCanBeTyped) {
  AskForValue();
  QTest::keyClicks(&Value(), "1234567");
  EXPECT_EQ(Value().text(), "123456");
  Value().setCursorPosition(2);
  PressFocused(Qt::Key_9);
  EXPECT_EQ(Value().text(), "123456");
  EXPECT_EQ(monitor.write_value.txt_WriteValue.Text.get(), "123456");
  Value().selectAll();
  QApplication::clipboard()->setText("987654321");
  Value().paste();
  EXPECT_EQ(Value().text(), "987654");
  EXPECT_EQ(monitor.write_value.txt_WriteValue.Text.get(), "987654");
}

TEST_F(WriteDialogs, ALongerTextOfTheBoxStaysUntilItIsTypedOver) {
  Run();
  monitor.main.RAM_LOC_VAL(1).Text = "-12345678";
  Ask(1);
  WaitForActive(write_value.get());
  EXPECT_EQ(Value().text(), "-12345678");
  Value().setCursorPosition(9);
  PressFocused(Qt::Key_9);
  EXPECT_EQ(Value().text(), "-12345678");
  PressFocused(Qt::Key_Backspace);
  EXPECT_EQ(Value().text(), "-1234567");
  Value().selectAll();
  PressFocused(Qt::Key_7);
  EXPECT_EQ(Value().text(), "7");
}

TEST_F(WriteDialogs, ABitIsChosenAndWritten) {
  AskForBit();
  EXPECT_EQ(write_bit->objectName(), "frm_WriteBitValue");
  EXPECT_EQ(Focus(), "opt_writetrue");
  Frames();
  PressFocused(Qt::Key_Down);
  EXPECT_TRUE(write_bit->findChild<QRadioButton*>("Option1")->isChecked());
  PressFocused(Qt::Key_Return);
  EXPECT_FALSE(write_bit->isVisible());
  // 06 + "01A0" + "00" add up to 138.
  EXPECT_EQ(Frames(), "04 06 30 31 41 30 30 30 33 38 03\n");
}

TEST_F(WriteDialogs, EscapeLeavesABitAsItIs) {
  AskForBit();
  Frames();
  PressFocused(Qt::Key_Escape);
  EXPECT_FALSE(monitor.write_bit.form.Visible);
  EXPECT_EQ(Frames(), "");
}

TEST_F(WriteDialogs, ABlockIsTypedLineByLine) {
  monitor.options.opt_Protocol.Select(kModbusProtocol);
  AskForValue();
  monitor.options.opt_Protocol.Select(kModbusProtocol);
  AskForRegisters("2");
  EXPECT_EQ(write_registers->objectName(), "frm_multiple_reg");
  EXPECT_EQ(Focus(), "value(1)");
  EXPECT_EQ(Get("value(2)").accessibleName(), "Status");
  EXPECT_EQ(Get<QLabel>("Space(2)").text(), "Status");
  QTest::keyClicks(&Get("value(1)"), "10");
  PressFocused(Qt::Key_Tab);
  EXPECT_EQ(Focus(), "value(2)");
  QTest::keyClicks(&Get("value(2)"), "258");
  PressFocused(Qt::Key_Tab);
  EXPECT_EQ(Focus(), "Command1");
  PressFocused(Qt::Key_Return);
  EXPECT_FALSE(write_registers->isVisible());
  EXPECT_EQ(GoesOut(), "Goes out: 000A 0102");
}

TEST_F(WriteDialogs, EscapeStoresNoRegisters) {
  AskForValue();
  monitor.options.opt_Protocol.Select(kModbusProtocol);
  AskForRegisters("3");
  PressFocused(Qt::Key_Escape);
  EXPECT_FALSE(monitor.write_registers.form.Visible);
  EXPECT_TRUE(monitor.main.StoredRegisters.empty());
  EXPECT_TRUE(write_value->isVisible());
}

TEST_F(WriteDialogs, NothingOpensWhileTheRunIsStopped) {
  OpenScreen(kTwoLocations);
  Ask(1);
  EXPECT_EQ(write_value, nullptr);
  EXPECT_EQ(write_bit, nullptr);
}

}  // namespace
}  // namespace tarnlink
