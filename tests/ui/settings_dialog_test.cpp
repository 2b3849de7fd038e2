// The settings dialog of a Location under mouse and keyboard.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QGroupBox>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QToolButton>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

#include "support/samples.h"
#include "ui/ui_fixture.h"

using namespace std::chrono_literals;

namespace tarnlink {
namespace {

constexpr int kMostFields = 40;

// Names with the last two digits of their addresses.
using Variables = std::vector<std::pair<std::string, std::string>>;

std::string MapOf(const Variables& variables) {
  std::string text = "__cpu_name = ATmega64\r\nENTRY LIST\r\n";
  for (const auto& [name, place] : variables) text += name + "  DATA 0000" + place + "\r\n";
  return text;
}

class Settings : public UiTest {
 protected:
  // The double click on the name box of Location `index`, with the map's names.
  void Define(int index = 1) {
    world.disk().Put("/home/user/work/boiler.map", map);
    world.settings().SaveSetting("Paths", "MapFile", "/home/user/work/boiler.map");
    monitor.main.WCRChanged = false;  // so that a screen before is not asked about
    OpenScreen(kTwoLocations);
    monitor.map.LoadClass7("/home/user/work/boiler.map");
    DoubleClick(index);
  }
  // The same; the name of the Location is one of these, which is not where the map has it.
  void DefineNamed(const std::string& name) {
    Define();
    Click("cmd_Cancel");
    At(1).ActualVariable = name;
    DoubleClick(1);
    Names().setFocus();
  }
  void DoubleClick(int index) {
    WaitForActive(window.get());
    QTest::mouseDClick(&Get("RAM_LOC_TEXT(" + std::to_string(index) + ")"), Qt::LeftButton);
    WaitForActive(settings.get());
  }
  Location& At(int index) { return monitor.main.Locations[index]; }
  QComboBox& Names() { return Get<QComboBox>("cmbActualVariable"); }
  // Keys as they come from the keyboard: an open list takes them first.
  static void Strike(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(Keyboard(), key, modifiers);
  }
  static void Strike(const std::string& text) {
    for (const char letter : text) QTest::keyClick(Keyboard(), letter);
  }
  // Replaces the name, without accepting it.
  void TypeName(const std::string& text) {
    Names().setFocus();
    Strike(Qt::Key_A, Qt::ControlModifier);
    Strike(text);
  }
  static QWidget* Keyboard() {
    QWidget* list = QApplication::activePopupWidget();
    return list != nullptr ? list : QApplication::focusWidget();
  }
  static void TurnWheelOver(QWidget& widget) {
    const QPointF place = widget.rect().center();
    QWheelEvent turn(place, widget.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {},
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &turn);
  }
  // Name, address and type: "swFlow F060 Signed Word".
  std::string Chosen() {
    const OptionGroup& types = monitor.settings.opt_StorageType;
    return monitor.settings.cmbActualVariable.Text.get() + " " + Text("txt_Address") + " " +
           types(types.Selected()).Caption.get();
  }
  // All that the dialog shows.
  std::string Fields() {
    std::string text;
    for (const QWidget* each : settings->findChildren<QWidget*>()) {
      if (const auto* edit = qobject_cast<const QLineEdit*>(each)) {
        text += (edit->objectName() + "=" + edit->text() + "\n").toStdString();
      } else if (const auto* box = qobject_cast<const QComboBox*>(each)) {
        text += (box->objectName() + "=" + box->currentText() + "\n").toStdString();
      } else if (const auto* button = qobject_cast<const QAbstractButton*>(each)) {
        if (button->isChecked()) text += button->objectName().toStdString() + "\n";
      }
    }
    return text;
  }
  // The width that the text of a box has, in pixels.
  static int InsideOf(const QLineEdit& box) {
    constexpr int kMargin = 2;  // on each side, between the frame and the text
    QStyleOptionFrame look;
    look.initFrom(&box);
    look.lineWidth =
        box.hasFrame() ? box.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &look, &box) : 0;
    return box.style()->subElementRect(QStyle::SE_LineEditContents, &look, &box).width() -
           2 * kMargin;
  }
  // Goes with the tabulator once round the dialog; how many fields there were.
  int TabRound() {
    const std::string first = Focus();
    int fields = 0;
    do {
      Strike(Qt::Key_Tab);
      ++fields;
    } while (Focus() != first && fields < kMostFields);
    return fields;
  }
  std::string Text(const std::string& name) { return Get<QLineEdit>(name).text().toStdString(); }

  std::string map =
      MapOf({{"swFlow", "60"}, {"ubPump", "62"}, {"ubFlowLimit", "63"}, {"end", "64"}});
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
  TypeName("ubPump+1");
  Strike(Qt::Key_Tab);
  EXPECT_EQ(Chosen(), "ubPump+1 F063 Unsigned Byte");
  EXPECT_EQ(Names().currentText(), "ubPump+1");
  EXPECT_EQ(Focus(), "optSpecification(0)");
}

TEST_F(Settings, ANameIsPickedFromTheListThatIsNarrowed) {
  Define();
  TypeName("flo");
  EXPECT_EQ(Chosen(), "t_flow 01A0 Unsigned Byte") << "not yet";
  Strike(Qt::Key_Down);
  Strike(Qt::Key_Down);
  Strike(Qt::Key_Return);
  EXPECT_TRUE(settings->isVisible());
  EXPECT_EQ(Chosen(), "ubFlowLimit F063 Unsigned Byte");
  EXPECT_EQ(Focus(), "cmbActualVariable");
  Strike(Qt::Key_Return);
  EXPECT_FALSE(settings->isVisible());
  EXPECT_EQ(At(1).ActualVariable, "ubFlowLimit");
}

TEST_F(Settings, ANameThatIsPickedIsPickedOnce) {
  Define();
  TypeName("ubpump");
  int clicks = 0;
  const auto click = monitor.settings.cmbActualVariable.Click;
  monitor.settings.cmbActualVariable.Click = [&] {
    ++clicks;
    click();
  };
  Strike(Qt::Key_Down);
  Strike(Qt::Key_Return);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(Chosen(), "ubPump F062 Unsigned Byte");
  monitor.settings.cmbActualVariable.Click = click;
}

TEST_F(Settings, TheWholeListOpensAtTheNameAndIsPickedFrom) {
  DefineNamed("ubPump");
  Strike(Qt::Key_Down, Qt::AltModifier);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(Names().view()->window()));
  EXPECT_EQ(Names().view()->currentIndex().data().toString(), "ubPump");
  QTest::keyClick(Names().view(), Qt::Key_Up);
  QTest::keyClick(Names().view(), Qt::Key_Return);
  EXPECT_EQ(Chosen(), "ubFlowLimit F063 Unsigned Byte");
}

TEST_F(Settings, ArrowsGoFromNameToName) {
  DefineNamed("ubFlowLimit");
  Strike(Qt::Key_Down);
  EXPECT_EQ(Chosen(), "ubPump F062 Unsigned Byte");
  Strike(Qt::Key_Down);
  EXPECT_EQ(Chosen(), "ubPump F062 Unsigned Byte") << "the last one";
}

TEST_F(Settings, EnterTakesATypedNameAndClosesThemOnlyWhenItIsPressedAgain) {
  for (const char* typed : {"ubPump+1", "ubPump"}) {
    Define();
    TypeName(typed);
    Strike(Qt::Key_Return);
    EXPECT_TRUE(settings->isVisible()) << typed;
    EXPECT_EQ(At(1).ActualVariable, "t_flow");
    EXPECT_EQ(monitor.settings.cmbActualVariable.Text.get(), typed);
    EXPECT_NE(Text("txt_Address"), "01A0") << typed;
    Strike(Qt::Key_Return);
    EXPECT_FALSE(settings->isVisible()) << typed;
    EXPECT_EQ(At(1).ActualVariable, typed);
  }
}

TEST_F(Settings, TheSameNameTypedAgainIsLookedUpByEnter) {
  DefineNamed("ubPump");
  TypeName("ubPump");
  Strike(Qt::Key_Return);
  EXPECT_EQ(Chosen(), "ubPump F062 Unsigned Byte");
  EXPECT_TRUE(settings->isVisible());
}

TEST_F(Settings, AMnemonicLeavesTheOpenListOfNamesToo) {
  Define();
  TypeName("ubPump");
  const QWidget& list = *Names().completer()->popup();
  ASSERT_TRUE(list.isVisible());
  Get("txt_Alias").setFocus(Qt::ShortcutFocusReason);
  EXPECT_FALSE(list.isVisible());
  EXPECT_EQ(Chosen(), "ubPump F062 Unsigned Byte");
  Strike(Qt::Key_X);
  EXPECT_EQ(Names().currentText(), "ubPump");
}

TEST_F(Settings, ANameIsTakenWithItsCase) {
  map = MapOf({{"flow", "60"}, {"Flow", "61"}, {"FLOW", "62"}, {"end", "63"}});
  const std::pair<const char*, const char*> cases[] = {
      {"flow", "F060"}, {"Flow", "F061"}, {"FLOW", "F062"}, {"fLOW", "01A0"}};
  for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Return}) {
    for (const auto& [typed, address] : cases) {
      Define();
      TypeName(typed);
      EXPECT_EQ(Names().completer()->completionCount(), 3) << "in the list the case is ignored";
      Strike(key);
      EXPECT_EQ(Chosen(), std::string(typed) + " " + address + " Unsigned Byte");
      Click("cmd_Ok");
      EXPECT_EQ(At(1).ActualVariable, typed);
    }
  }
}

TEST_F(Settings, ANameThatIsPassedKeepsItsAddressAndType) {
  DefineNamed("swFlow");
  for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
    Names().setFocus();
    Strike(key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
    EXPECT_EQ(Chosen(), "swFlow 01A0 Unsigned Byte");
  }
  Names().setFocus();
  QTest::mouseClick(&Get("txt_Alias"), Qt::LeftButton);
  EXPECT_EQ(Chosen(), "swFlow 01A0 Unsigned Byte");
  Names().setFocus();
  Strike("x");
  Strike(Qt::Key_Backspace);
  Strike(Qt::Key_Tab);
  EXPECT_EQ(Chosen(), "swFlow 01A0 Unsigned Byte") << "typed, and taken back";
  Names().setFocus();
  Strike(Qt::Key_Return);
  EXPECT_FALSE(settings->isVisible());
  EXPECT_EQ(At(1).Address, "01A0");
  EXPECT_EQ(At(1).StorageType, kUnsignedByte);
}

TEST_F(Settings, TheWheelPicksNothingInAListThatIsClosed) {
  DefineNamed("swFlow");
  monitor.settings.CmbFunc.Enabled = monitor.settings.cmbClass.Enabled = true;
  const std::string fields = Fields();
  for (const char* box : {"cmbActualVariable", "cmbClass", "CmbFunc"}) {
    Get(box).setFocus();
    TurnWheelOver(Get(box));
    EXPECT_EQ(Fields(), fields) << box;
  }
}

struct Sample {
  const char* screen;
  const char* names;
};

class SampleSettings : public Settings, public testing::WithParamInterface<Sample> {
 protected:
  void LoadNames() {
    const std::string path = std::string("/home/user/work/") + GetParam().names;
    world.disk().Put(path, SampleBytes(GetParam().names));
    if (path.ends_with(".ids")) {
      monitor.main.ReadIDItems(path);
    } else {
      monitor.main.MicroType = path.ends_with(".lst") ? kNecListing : kAtmegaMap;
      monitor.map.LoadClass7(path);
    }
  }
};

TEST_P(SampleSettings, AreLeftAsTheyWereByTheTabulatorAndEnter) {
  OpenScreen(SampleText(GetParam().screen));
  LoadNames();
  int named = 0;
  for (int i = 1; i <= monitor.main.MaxId; ++i) {
    SCOPED_TRACE(At(i).Alias);
    const Location before = At(i);
    WaitForActive(window.get());
    monitor.main.RAM_LOC_TEXT.DblClick(i);
    WaitForActive(settings.get());
    if (monitor.settings.cmbActualVariable.ListIndex >= 0) ++named;
    const std::string fields = Fields();
    const int tabs = TabRound();
    EXPECT_GT(tabs, 15);
    EXPECT_LT(tabs, kMostFields);
    EXPECT_EQ(Fields(), fields);
    Names().setFocus();
    Strike(Qt::Key_Return);
    EXPECT_FALSE(settings->isVisible());
    EXPECT_EQ(At(i), before);
  }
  EXPECT_GT(named, 15);
}

INSTANTIATE_TEST_SUITE_P(Protocols, SampleSettings,
                         testing::Values(Sample{"boiler.wcr", "nec.lst"},
                                         Sample{"boiler.wcr", "atmega.map"},
                                         Sample{"service.wcr", "atmega.map"},
                                         Sample{"zolt.wcr", "default.ids"},
                                         Sample{"modbus.wcr", "MBID.ids"}),
                         [](const testing::TestParamInfo<Sample>& sample) {
                           std::string name = sample.param.screen;
                           name.resize(name.find('.'));
                           name += std::string("With_") + sample.param.names;
                           std::replace(name.begin(), name.end(), '.', '_');
                           return name;
                         });

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

TEST_F(Settings, AShortAddressOfAFileCanBeEdited) {
  Define();
  Click("cmd_Cancel");
  for (const char* address : {"1   ", "    ", "ZZZZ"}) {
    At(1).Address = address;
    DoubleClick(1);
    Get("txt_Address").setFocus();
    PressFocused(Qt::Key_A, Qt::ControlModifier);
    Strike("2b");
    PressFocused(Qt::Key_Tab);
    EXPECT_EQ(Text("txt_Address"), "002B") << address;
    Click("cmd_Cancel");
  }
  At(1).Address = "1   ";
  DoubleClick(1);
  Get("txt_Address").setFocus();
  PressFocused(Qt::Key_End);
  Strike("a");
  EXPECT_EQ(Text("txt_Address"), "1a");
  Click("cmd_Cancel");
}

TEST_F(Settings, TheirBoxesHaveRoomForTheLongestNumbers) {
  Define();
  const std::pair<const char*, const char*> longest[] = {
      {"txt_Address", "CCCC"},   {"txt_Address_dec", "65535"}, {"txt_BitAddress", "FF"},
      {"txt_SlaveAddress", "F"}, {"txt_ExcelColumn", "16384"}, {"txt_NumReg", "512"}};
  for (const auto& [name, text] : longest) {
    auto& box = Get<QLineEdit>(name);
    box.setText(text);
    EXPECT_LE(box.fontMetrics().horizontalAdvance(text), InsideOf(box)) << name;
  }
  monitor.settings.ShowClass(255);
  const QComboBox& data_class = Get<QComboBox>("cmbClass");
  EXPECT_LE(data_class.fontMetrics().horizontalAdvance("255"), InsideOf(*data_class.lineEdit()));
}

TEST_F(Settings, ALongRevisionDoesNotWidenThem) {
  Define();
  const int width = settings->width();
  Click("cmd_Cancel");
  monitor.settings.Frame9.Caption = std::string(200, 'x');
  DoubleClick(1);
  Click("optSpecification(1)");
  monitor.settings.Frame9.Caption = std::string(200, 'x');
  FinishPainting();
  EXPECT_EQ(settings->width(), width);
}

TEST_F(Settings, TheirButtonsComeBackWhenTheRunEndsBehindThem) {
  OpenScreen(kTwoLocations);
  Click("Toolbar1(2)");
  DoubleClick(1);
  EXPECT_FALSE(Get("cmd_Ok").isEnabled());
  world.dialogs().ExpectMessageBox("Slave is not responding", "Message Timeout");
  world.Advance(4s);
  EXPECT_TRUE(Get("cmd_Ok").isEnabled());
  EXPECT_TRUE(Get("cmdDeleteLocation").isEnabled());
  Entry("Toolbar1(2)").trigger();
  EXPECT_FALSE(Get("cmd_Ok").isEnabled());
  EXPECT_FALSE(Get("cmdDeleteLocation").isEnabled());
  Click("cmd_Cancel");
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
