// The configuration check under keyboard and mouse, and what its list shows.

#include <QClipboard>
#include <QLabel>
#include <QProgressBar>
#include <QProxyStyle>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleOptionViewItem>
#include <set>

#include "ui/cfg_check_fixture.h"

namespace tarnlink {
namespace {

// The pixels of a cell that are rather red and rather green.
struct Tints {
  int red = 0;
  int green = 0;
};

Tints TintsOf(QTableWidget& table, int row, int column) {
  const QRect place = table.visualItemRect(table.item(row, column));
  const QImage picture = table.viewport()->grab(place).toImage();
  Tints tints;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QColor colour = picture.pixelColor(x, y);
      if (colour.red() - colour.green() > 100) ++tints.red;
      if (colour.green() - colour.red() > 60) ++tints.green;
    }
  }
  return tints;
}

// The pictures that are drawn beside the texts.
class PictureWatch final : public QProxyStyle {
 public:
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (item != nullptr && !item->icon.isNull()) pictures.insert(item->icon.cacheKey());
    QProxyStyle::drawControl(element, option, painter, widget);
  }

  mutable std::set<qint64> pictures;
};

class CfgDialogTest : public CfgWindowTest {
 protected:
  static bool IsMarked(QWidget& form, int row) {
    return Table(form).item(row, 0)->data(Qt::UserRole + 1).toBool();
  }
  static bool IsInView(QWidget& form, int row) {
    QTableWidget& table = Table(form);
    return table.viewport()->rect().contains(table.visualItemRect(table.item(row, 0)));
  }
  static std::string Caption(QWidget& form, const std::string& name) {
    return In<QLabel>(form, name).text().toStdString();
  }
};

TEST_F(CfgDialogTest, ATaskIsDoneFromTheFileToTheList) {
  QWidget& form = OpenCheck();
  EXPECT_EQ(form.windowTitle(), "Configuration check");
  EXPECT_EQ(Text(form, "txt_ConfigurationFile"), "No file specified");
  Load(form);
  EXPECT_EQ(Text(form, "txt_ConfigurationFile"), kCfgPath);
  EXPECT_EQ(In(form, "txt_ConfigurationFile").toolTip().toStdString(), kCfgPath);
  EXPECT_EQ(Table(form).rowCount(), 5);
  EXPECT_EQ(Row(form, 1), "05F4|36|65|50|DHW setpoint (C)|1||");
  EXPECT_EQ(Caption(form, "Label6"), "0 / 5");
  Click(form, "cmd_Check");
  RunTo(1);
  EXPECT_EQ(Row(form, 0), "056D|30|85|60|CH setpoint (C)|1|60|OK");
  EXPECT_EQ(Caption(form, "Label6"), "1 / 5");
  EXPECT_EQ(In<QProgressBar>(form, "ProgressBar1").value(), 1);
  EXPECT_EQ(In<QProgressBar>(form, "ProgressBar1").maximum(), 6);
  world.Advance(150ms);
  EXPECT_EQ(Caption(form, "lblState"), "ID 05F4 (DHW setpoint (C)): reading the default; 4 left");
  RunTo(5);
  EXPECT_EQ(Row(form, 1), "05F4|36|65|50|DHW setpoint (C)|1|50|Minimum limit incorrect");
  EXPECT_EQ(Row(form, 2), "0999|0|255|-|Not in this boiler|1||Unknown Data ID");
  EXPECT_EQ(Row(form, 3), "0951|1|9|3|Ignition retries|1|3|Maximum limit incorrect");
  EXPECT_EQ(Row(form, 4), "095C|0|255|0|Heat demand|1|0|OK");
  EXPECT_EQ(Caption(form, "lblState"), "Finished: 2 of 5 OK");
  EXPECT_EQ(In<QProgressBar>(form, "ProgressBar1").value(), 6);
  Click(form, "cmd_Copy");
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), file_tools->cfg_check.ListText());
  form.close();
}

// Qt keeps each picture that it has drawn, so one for each painting would fill the memory.
TEST_F(CfgDialogTest, DrawsEachSignOnce) {
  QWidget& form = OpenCheck();
  Load(form);
  Click(form, "cmd_Check");
  RunTo(5);
  QTableWidget& table = Table(form);
  PictureWatch watch;
  table.setStyle(&watch);
  table.grab();
  const std::set<qint64> once = watch.pictures;
  constexpr std::size_t kSigns = 4;  // and an empty place
  EXPECT_GE(once.size(), kSigns);
  table.grab();
  EXPECT_EQ(watch.pictures, once);
  table.setStyle(nullptr);
  form.close();
}

TEST_F(CfgDialogTest, ColumnsHaveTheirHeadings) {
  QWidget& form = OpenCheck();
  std::string headings;
  for (int column = 0; column < Table(form).columnCount(); ++column) {
    const int shown = Table(form).horizontalHeader()->logicalIndex(column);
    headings += Table(form).horizontalHeaderItem(shown)->text().toStdString() + "|";
  }
  EXPECT_EQ(headings, "ID|Minimum|Maximum|Default|Read|Result|Description|Test type|");
  form.close();
}

TEST_F(CfgDialogTest, ResultsAreSeenOnASmallScreen) {
  QWidget& form = OpenCheck();
  form.resize(QSize(683, 384) * 0.9);
  Load(form);
  Click(form, "cmd_Check");
  RunTo(1);
  QTableWidget& table = Table(form);
  EXPECT_TRUE(table.viewport()->rect().contains(table.visualItemRect(table.item(0, 7))));
  EXPECT_GE(table.columnWidth(4), 100);
  Click(form, "cmd_Stop");
  form.close();
}

TEST_F(CfgDialogTest, ResultsAreToldByColourAndByASign) {
  constexpr int kResult = 7;
  QWidget& form = OpenCheck();
  Load(form);
  QTableWidget& table = Table(form);
  EXPECT_EQ(TintsOf(table, 0, kResult).green, 0);
  Click(form, "cmd_Check");
  RunTo(5);
  EXPECT_GT(TintsOf(table, 0, kResult).green, 20);
  EXPECT_EQ(TintsOf(table, 0, kResult).red, 0);
  EXPECT_GT(TintsOf(table, 1, kResult).red, 20);
  EXPECT_EQ(TintsOf(table, 1, kResult).green, 0);
  EXPECT_EQ(TintsOf(table, 2, kResult).green, 0);
  EXPECT_EQ(TintsOf(table, 2, kResult).red, 0);
  // With the same text, good, wrong and unknown still look different.
  const auto picture = [&](int row) {
    table.item(row, kResult)->setText("x");
    const QRect place = table.visualItemRect(table.item(row, kResult));
    QImage grey = table.viewport()->grab(place.adjusted(1, 1, -1, -1)).toImage();
    return grey.convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
  };
  EXPECT_NE(picture(0), picture(1));
  EXPECT_NE(picture(0), picture(2));
  EXPECT_NE(picture(1), picture(2));
  EXPECT_EQ(picture(1), picture(3));
  form.close();
}

TEST_F(CfgDialogTest, ABeginThatIsRepeatedForgetsTheColoursToo) {
  QWidget& form = OpenCheck();
  Load(form);
  Click(form, "cmd_Check");
  RunTo(5);
  Click(form, "cmd_Check");
  EXPECT_EQ(TintsOf(Table(form), 0, 7).green, 0);
  EXPECT_EQ(Row(form, 0), "056D|30|85|60|CH setpoint (C)|1||");
  Click(form, "cmd_Stop");
  form.close();
}

TEST_F(CfgDialogTest, TheRowInWorkIsMarkedAndStaysInViewUntilTheUserScrollsAway) {
  std::string text;
  for (int i = 0; i < 301; ++i) text += "095Ch\t0\t255\t-\tHeat demand\t1\r\n";
  QWidget& form = OpenCheck();
  form.resize(QSize(683, 384) * 0.9);
  Load(form, text);
  Click(form, "cmd_Check");
  EXPECT_TRUE(IsMarked(form, 0));
  for (const int row : {1, 15, 30}) {
    RunTo(row);
    EXPECT_TRUE(IsMarked(form, row));
    EXPECT_FALSE(IsMarked(form, row - 1));
    EXPECT_TRUE(IsInView(form, row)) << row;
  }
  QScrollBar& bar = *Table(form).verticalScrollBar();
  bar.setValue(bar.maximum());
  RunTo(32);
  EXPECT_EQ(bar.value(), bar.maximum());
  EXPECT_TRUE(IsMarked(form, 32));
  Click(form, "cmd_Stop");
  EXPECT_FALSE(IsMarked(form, 32));
  form.close();
}

TEST_F(CfgDialogTest, TheTabulatorGoesFromTheFileToTheButtons) {
  QWidget& form = OpenCheck();
  EXPECT_EQ(Focus(form), "cmd_Open");
  EXPECT_EQ(Walk(form, 4), "cmb_Slave ParametersList cmd_Check cmd_Open");
  Load(form);
  EXPECT_EQ(Walk(form, 6), "cmb_Slave ParametersList cmd_Check cmd_Copy cmd_Save cmd_Open");
  form.close();
}

TEST_F(CfgDialogTest, CheckAndStopHandTheFocusToEachOther) {
  QWidget& form = OpenCheck();
  Load(form);
  In(form, "cmd_Check").setFocus(Qt::TabFocusReason);
  Key(form, Qt::Key_Return);
  EXPECT_FALSE(In(form, "cmd_Check").isEnabled());
  EXPECT_FALSE(In(form, "cmd_Open").isEnabled());
  EXPECT_FALSE(In(form, "cmb_Slave").isEnabled());
  EXPECT_EQ(Focus(form), "cmd_Stop");
  RunTo(1);
  Key(form, Qt::Key_Space);
  EXPECT_EQ(Focus(form), "cmd_Check");
  EXPECT_EQ(Caption(form, "lblState"), "Stopped at ID 05F4 (DHW setpoint (C)).");
  EXPECT_EQ(Row(form, 2), "0999|0|255|-|Not in this boiler|1||");
  EXPECT_EQ(Row(form, 3), "0951|1|9|3|Ignition retries|1||ID has not been checked");
  form.close();
}

TEST_F(CfgDialogTest, EnterChecksNothingUnlessCheckHasTheFocus) {
  QWidget& form = OpenCheck();
  Load(form);
  for (const char* quiet : {"ParametersList", "cmb_Slave", "txt_ConfigurationFile"}) {
    In(form, quiet).setFocus(Qt::TabFocusReason);
    Key(form, Qt::Key_Return);
    Key(form, Qt::Key_Enter);
  }
  world.Advance(2s);
  EXPECT_EQ(FramesSent(), 0U);
  EXPECT_TRUE(form.isVisible());
  form.close();
}

TEST_F(CfgDialogTest, EscapeInTheMiddleAsks) {
  const std::string text = "The check is running. Stop it and close the window?";
  QWidget& form = OpenCheck();
  Load(form);
  Click(form, "cmd_Check");
  RunTo(1);
  world.dialogs().ExpectMessageBox(text, "Configuration check").Press(Answer::kNo);
  Key(form, Qt::Key_Escape);
  EXPECT_TRUE(form.isVisible());
  RunTo(2);
  world.dialogs().ExpectMessageBox(text, "Configuration check").Press(Answer::kYes);
  form.close();
  EXPECT_FALSE(form.isVisible());
  EXPECT_FALSE(world.port().PortOpen());
  OpenCheck();
  EXPECT_EQ(Text(form, "txt_ConfigurationFile"), "No file specified");
  EXPECT_EQ(Table(form).rowCount(), 0);
  EXPECT_EQ(Caption(form, "lblState"), "");
  Key(form, Qt::Key_Escape);
  EXPECT_FALSE(form.isVisible());
}

TEST_F(CfgDialogTest, ALongStateIsReadAsAWhole) {
  QWidget& form = OpenCheck();
  form.resize(QSize(683, 384) * 0.9);
  Load(form, "FFFFh\t30\t85\t60\tA description as long as they are at most\t1\r\n");
  boiler.line().AddFault("no_reply");
  Click(form, "cmd_Check");
  world.Advance(20s);
  const auto& state = In<QLabel>(form, "lblState");
  EXPECT_GE(state.height(), state.heightForWidth(state.width())) << Caption(form, "lblState");
  world.port().Unplug();
  world.dialogs().ExpectMessageBox(world.port().LossReason(), "Error");
  world.Advance(1ms);
  EXPECT_GE(state.height(), state.heightForWidth(state.width())) << Caption(form, "lblState");
  form.close();
}

TEST_F(CfgDialogTest, TheSlaveIsChosenByKeys) {
  QWidget& form = OpenCheck();
  Load(form);
  In(form, "cmb_Slave").setFocus(Qt::TabFocusReason);
  Key(form, Qt::Key_Down);
  Key(form, Qt::Key_Down);
  EXPECT_EQ(file_tools->cfg_check.cmb_Slave.Text.get(), "2");
  form.close();
}

TEST_F(CfgDialogTest, NamesForTheBlindSayWhatAFieldIs) {
  QWidget& form = OpenCheck();
  const auto buddy_of = [&](const std::string& label) {
    return In<QLabel>(form, label).buddy()->objectName().toStdString();
  };
  EXPECT_EQ(buddy_of("lblFile"), "txt_ConfigurationFile");
  EXPECT_EQ(buddy_of("lblSlave"), "cmb_Slave");
  EXPECT_EQ(Table(form).accessibleName(), "Parameters");
  EXPECT_EQ(In(form, "ProgressBar1").accessibleName(), "Progress");
  form.close();
}

}  // namespace
}  // namespace tarnlink
