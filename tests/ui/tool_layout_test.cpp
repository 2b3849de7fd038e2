// What can be seen of the service tools: every caption in full, and every part on a small screen.

#include <QAbstractButton>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <cstdlib>

#include "ui/coloured_edit.h"
#include "ui/look.h"
#include "ui/service_tools_fixture.h"

namespace tarnlink {
namespace {

constexpr QSize kLargeScreen = QSize(1024, 768) * 0.9;
constexpr QSize kSmallScreen = QSize(683, 384) * 0.9;
constexpr int kLampRoom = 20;  // pixels: a lamp and the gap behind it

bool IsWhole(const QWidget& part) {
  return part.visibleRegion().boundingRect().size() == part.size();
}

bool FitsOneLine(const QWidget& part, const QString& text, int width) {
  return part.fontMetrics().horizontalAdvance(QString(text).remove('&')) <= width &&
         part.fontMetrics().height() <= part.height();
}

bool FitsWrapped(const QWidget& part, QString text, const QSize& room) {
  text.replace("        ", "\n");
  const QRect needed =
      part.fontMetrics().boundingRect(QRect(0, 0, room.width(), 0), Qt::TextWordWrap, text);
  return needed.width() <= room.width() && needed.height() <= room.height();
}

// Nothing where the part has no text, or all of it fits; otherwise the text.
std::string CutText(QWidget& part) {
  QString text;
  bool fits = true;
  if (auto* label = qobject_cast<QLabel*>(&part)) {
    text = label->text();
    fits = label->wordWrap() ? FitsWrapped(part, text, part.size())
                             : FitsOneLine(part, text, part.width());
  } else if (auto* lamp = dynamic_cast<BitLamp*>(&part)) {
    text = lamp->accessibleName();
    fits = FitsWrapped(part, text, part.size() - QSize(kLampRoom, 0));
  } else if (auto* button = qobject_cast<QAbstractButton*>(&part)) {
    text = button->text();
    const int box = qobject_cast<QCheckBox*>(button) != nullptr ? kLampRoom : 0;
    fits = FitsOneLine(part, text, part.width() - box);
  } else if (auto* frame = qobject_cast<QGroupBox*>(&part)) {
    text = frame->title();
    fits = FitsOneLine(part, text, part.width());
  }
  return text.isEmpty() || (fits && IsWhole(part)) ? "" : text.toStdString() + "; ";
}

std::string CutTexts(QWidget& form) {
  std::string cut;
  for (QWidget* part : form.findChildren<QWidget*>()) {
    if (part->isVisible()) cut += CutText(*part);
  }
  return cut;
}

class ToolLayoutTest : public ServiceToolsTest {
 protected:
  // All that the window shows, tab by tab.
  static void EachView(QWidget& form, const std::function<void(const std::string&)>& look) {
    auto* tabs = form.findChild<QTabWidget*>();
    const int count = tabs == nullptr ? 1 : tabs->count();
    for (int i = 0; i < count; ++i) {
      if (tabs != nullptr) tabs->setCurrentIndex(i);
      WaitForBars(form);
      look(form.objectName().toStdString() + ", tab " + std::to_string(i));
    }
  }
  static QScrollArea& ShownArea(QWidget& form) {
    for (auto* area : form.findChildren<QScrollArea*>()) {
      if (area->isVisible()) return *area;
    }
    throw std::runtime_error("Nothing can be scrolled.");
  }
  // The desktop takes other colours, and the form has heard of it.
  static void TurnTo(QWidget& form, const QPalette& palette) {
    QApplication::setPalette(palette);
    const QColor ground = palette.color(QPalette::Window);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return form.palette().color(QPalette::Window) == ground; }, 2000));
  }
  template <class Form>
  static QWidget& Shown(Form& form) {
    form.Show();
    return Activated(form.form.name());
  }
  void EachTool(const std::function<void(QWidget&)>& look) {
    for (const auto& open : std::vector<std::function<QWidget&()>>{
             [this]() -> QWidget& { return OpenPanel(10); },
             [this]() -> QWidget& { return OpenScan(); },
             [this]() -> QWidget& { return OpenWrongMessages(); },
             [this]() -> QWidget& { return Shown(file_tools->cfg_check); },
             [this]() -> QWidget& { return Shown(file_tools->wp_conversion); },
             [this]() -> QWidget& { return Shown(file_tools->parameters); },
             [this]() -> QWidget& { return Shown(file_tools->eeprom); },
             [this]() -> QWidget& { return Shown(file_tools->eeprom_down); }}) {
      QWidget& form = open();
      look(form);
      form.close();
    }
  }
};

// Goes with the pictures, so that it runs at 200 % too, where the screen of the tests is small.
using ToolCaptionsAndPictures = ToolLayoutTest;

TEST_F(ToolCaptionsAndPictures, AreShownInFull) {
  EachTool([](QWidget& form) {
    ShowWhole(form);
    EachView(form, [&](const std::string& view) { EXPECT_EQ(CutTexts(form), "") << view; });
  });
}

TEST_F(ToolLayoutTest, AUsualScreenShowsAllAtOnce) {
  EachTool([](QWidget& form) {
    EXPECT_EQ(form.size(), form.sizeHint());
    EXPECT_EQ(form.size(), form.size().boundedTo(kLargeScreen));
    EachView(form, [&](const std::string& view) { EXPECT_EQ(CutTexts(form), "") << view; });
    for (auto* scrolled : form.findChildren<QScrollArea*>()) {
      EXPECT_EQ(scrolled->verticalScrollBar()->maximum(), 0);
      EXPECT_EQ(scrolled->horizontalScrollBar()->maximum(), 0);
    }
  });
}

TEST_F(ToolLayoutTest, ASmallScreenScrollsAndKeepsTheButtonsInReach) {
  EachTool([](QWidget& form) {
    form.resize(kSmallScreen);
    EXPECT_EQ(form.size(), kSmallScreen);
    EachView(form, [&](const std::string& view) {
      for (QWidget* part : form.findChildren<QWidget*>()) {
        auto* button = qobject_cast<QAbstractButton*>(part);
        if (!part->isVisible() ||
            (button == nullptr && qobject_cast<QLineEdit*>(part) == nullptr)) {
          continue;
        }
        for (QWidget* up = part->parentWidget(); up != nullptr; up = up->parentWidget()) {
          auto* area = qobject_cast<QScrollArea*>(up);
          if (area == nullptr) continue;
          const QPoint middle = part->mapTo(area->widget(), part->rect().center());
          area->ensureVisible(middle.x(), middle.y());
        }
        EXPECT_TRUE(part->visibleRegion().contains(part->rect().center()))
            << view << ": " << part->objectName().toStdString();
      }
    });
  });
}

TEST_F(ToolLayoutTest, WhatIsScrolledIsReachedByTheKeyboard) {
  QWidget& panel = OpenPanel();
  EXPECT_EQ(ShownArea(panel).focusPolicy(), Qt::NoFocus);
  panel.resize(kSmallScreen);
  QScrollArea& area = ShownArea(panel);
  ASSERT_GT(area.verticalScrollBar()->maximum(), 0);
  Key(panel, Qt::Key_Tab);
  EXPECT_EQ(panel.focusWidget(), &area);
  Key(panel, Qt::Key_PageDown);
  EXPECT_GT(area.verticalScrollBar()->value(), 0);
  panel.close();
}

TEST_F(ToolLayoutTest, ALongStateIsBrokenIntoLines) {
  const std::string reason =
      "/dev/serial/by-id/usb-Serial_Converter_A600F3BX-if00-port0 may only be used by the group "
      "dialout. Add the user to it and log in anew, then press the button once more to go on with "
      "what was begun here.";
  QWidget& panel = OpenPanel();
  QSize before = panel.size();
  tools->panel.lblLine.Caption = reason;
  EXPECT_TRUE(QTest::qWaitFor([&] { return CutTexts(panel).empty(); }, 2000)) << CutTexts(panel);
  EXPECT_EQ(panel.width(), before.width());
  panel.close();
  QWidget& scan = OpenScan();
  before = scan.size();
  tools->scan.lblState.Caption = reason;
  QWidget& state = In(scan, "lblState");
  EXPECT_TRUE(QTest::qWaitFor([&] { return CutText(state).empty(); }, 2000));
  EXPECT_EQ(scan.width(), before.width());
  scan.close();
  QWidget& dialog = OpenWrongMessages();
  before = dialog.size();
  auto& whole = In<QLabel>(dialog, "lblWholeStatus");
  tools->errors.txtStatus.Text = "Read Acknowledge";
  EXPECT_FALSE(whole.isVisible());
  tools->errors.txtStatus.Text = reason;
  dialog.resize(dialog.width(), dialog.height() + 60);
  EXPECT_TRUE(QTest::qWaitFor([&] { return CutText(whole).empty(); }, 2000));
  EXPECT_TRUE(whole.isVisible());
  EXPECT_EQ(whole.text().toStdString(), reason);
  EXPECT_EQ(dialog.width(), before.width());
  dialog.close();
}

TEST_F(ToolLayoutTest, EveryTabSaysWhichSlaveIsShown) {
  QWidget& panel = OpenPanel(10);
  EachView(panel, [&](const std::string& view) {
    int said = 0;
    for (auto* label : panel.findChildren<QLabel*>()) {
      if (label->isVisible() && label->text() == "N.B.  Reading slave A") ++said;
    }
    EXPECT_EQ(said, 1) << view;
  });
  panel.close();
}

TEST_F(ToolLayoutTest, TheSlaveStaysReadableWhenTheDesktopTakesOtherColours) {
  const QPalette usual = QApplication::palette();
  const QPalette reddish(QColor(230, 90, 90));
  QWidget& panel = OpenPanel(10);
  const auto letters = [&] { return In(panel, "lblSlave").palette().color(QPalette::WindowText); };
  const QColor red = letters();
  EXPECT_GT(red.red() - red.green(), 100);
  TurnTo(panel, reddish);
  EXPECT_GT(std::abs(letters().lightness() - red.lightness()), 20);
  TurnTo(panel, usual);
  EXPECT_EQ(letters(), red);
  panel.close();
  OpenPanel(0);
  EXPECT_EQ(letters(), usual.color(QPalette::WindowText));
  TurnTo(panel, DarkPalette());
  EXPECT_EQ(letters(), DarkPalette().color(QPalette::WindowText));
  TurnTo(panel, usual);
  panel.close();
}

TEST_F(ToolLayoutTest, WhatCannotBeTypedInStandsOnTheGroundOfTheWindow) {
  const QPalette usual = QApplication::palette();
  QWidget& panel = OpenPanel();
  auto& field = In<QLineEdit>(panel, "txt_OSNumber");
  EXPECT_EQ(field.palette().color(QPalette::Base), usual.color(QPalette::Window));
  TurnTo(panel, DarkPalette());
  EXPECT_EQ(field.palette().color(QPalette::Base), DarkPalette().color(QPalette::Window));
  EXPECT_EQ(field.palette().color(QPalette::Text), DarkPalette().color(QPalette::Text));
  TurnTo(panel, usual);
  panel.close();
  QWidget& dialog = OpenWrongMessages();
  auto& digit = In<QLineEdit>(dialog, "txt_ErrMsg(11)");
  EXPECT_EQ(digit.palette().color(QPalette::Base), usual.color(QPalette::Window));
  Click(dialog, "chk_IPMsgErr(0)");
  EXPECT_EQ(digit.palette().color(QPalette::Base), usual.color(QPalette::Base));
  dialog.close();
}

TEST_F(ToolLayoutTest, ALongErrorTextShowsItsBeginning) {
  texts[0] = std::string(300, 'x') + " at the end";
  QWidget& panel = OpenPanel();
  In<QTabWidget>(panel, "SSTab1").setCurrentIndex(3);
  world.Advance(8s);
  auto& text = In<QLineEdit>(panel, "txt_ErrorDescription");
  EXPECT_EQ(text.text().toStdString(), texts[0]);
  EXPECT_EQ(text.cursorPosition(), 0);
  panel.close();
}

TEST_F(ToolLayoutTest, ALampIsLitWhileItsBitIsSet) {
  QWidget& panel = OpenPanel();
  QWidget& lamp = In(panel, "chk_StatusL(4)");
  const auto green = [&] {
    const QColor colour = lamp.grab().toImage().pixelColor(7, lamp.height() / 2);
    return colour.green() - std::max(colour.red(), colour.blue());
  };
  EXPECT_LT(green(), 20);
  EXPECT_EQ(lamp.accessibleDescription(), "off");
  tools->panel.StatusLow = 1 << 4;
  tools->panel.ShowStatus();
  EXPECT_GT(green(), 100);
  EXPECT_EQ(lamp.accessibleDescription(), "on");
  tools->panel.StatusLow = 0;
  tools->panel.ShowStatus();
  EXPECT_LT(green(), 20);
  panel.close();
}

TEST_F(ToolLayoutTest, NamesForTheBlindSayWhichRow) {
  QWidget& scan = OpenScan();
  EXPECT_EQ(In(scan, "txtType(10)").accessibleName(), "Slave A, OS number");
  EXPECT_EQ(In(scan, "cmdControlPanel(10)").accessibleName(), "Control Panel Slave A");
  scan.close();
  QWidget& dialog = OpenWrongMessages();
  EXPECT_EQ(In(dialog, "txt_ErrMsg(2)").accessibleName(), "Sent Slave Address");
  EXPECT_EQ(In(dialog, "txt_RecErrMsg(2)").accessibleName(), "Received Slave Address");
  dialog.close();
}

}  // namespace
}  // namespace tarnlink
