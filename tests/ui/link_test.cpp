// The link's panel below the status bar and the window of the trace, with real clicks and keys.

#include <QCheckBox>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableView>
#include <QTableWidget>

#include "form/boiler_on_line.h"
#include "ui/graph_fixture.h"
#include "ui/link_tool.h"
#include "ui/look.h"
#include "ui/text_plate.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class LinkUiTest : public UiTest {
 protected:
  void BeginLink() {
    BeginOnce();
    monitor.main.Comm->SetWatcher(&record);
    link = std::make_unique<LinkTool>(monitor.main, record, *window);
    FinishPainting();
  }
  ~LinkUiTest() override { monitor.main.Comm->SetWatcher(nullptr); }

  // "3|12|12|..." of a row of a table.
  std::string Row(const std::string& table, int row) const {
    const auto& cells = Get<QTableWidget>(table);
    QStringList texts;
    for (int column = 0; column < cells.columnCount(); ++column)
      texts << cells.item(row, column)->text();
    return texts.join('|').toStdString();
  }
  void Run() {
    OpenScreen(kTwoLocations);
    Click("Toolbar1(2)");
    world.Advance(1s);
  }
  QTableView& Trace() const { return *trace()->findChild<QTableView*>("Rows"); }
  static QWidget* trace() { return FindTopLevel("frm_LinkTrace"); }

  BoilerOnLine boiler{world, {.line = {.pace = {.baud = 9600}, .answer_delay_us = 5'000}}};
  LinkRecord record{world.clock()};
  std::unique_ptr<LinkTool> link;
};

TEST_F(LinkUiTest, ThePanelComesAndGoesWithItsEntry) {
  BeginLink();
  EXPECT_FALSE(Shown("frm_LinkHealth"));
  const int before = window->statusBar()->height();
  Entry("mnuLinkHealth").trigger();
  FinishPainting();
  EXPECT_TRUE(Shown("frm_LinkHealth"));
  EXPECT_TRUE(Entry("mnuLinkHealth").isChecked());
  EXPECT_GT(Get("frm_LinkHealth").mapTo(window.get(), QPoint()).y(),
            Get("StatusBar1(1)").mapTo(window.get(), QPoint()).y());
  Entry("mnuLinkHealth").trigger();
  FinishPainting();
  EXPECT_FALSE(Shown("frm_LinkHealth"));
  EXPECT_FALSE(Entry("mnuLinkHealth").isChecked());
  EXPECT_EQ(window->statusBar()->height(), before);
}

TEST_F(LinkUiTest, ThePanelIsThereAgainWhenItWasLeftOpen) {
  world.settings().SaveSetting("Windows", "LinkHealth", "1");
  BeginLink();
  EXPECT_TRUE(Shown("frm_LinkHealth"));
  EXPECT_TRUE(Entry("mnuLinkHealth").isChecked());
}

TEST_F(LinkUiTest, ThePanelFollowsARun) {
  BeginLink();
  Entry("mnuLinkHealth").trigger();
  Run();
  const SlaveAccount account = record.account().Total();
  EXPECT_GT(account.answers, 10);
  EXPECT_TRUE(Row("lstSlaves", 0).starts_with("-|")) << Row("lstSlaves", 0);
  EXPECT_TRUE(Row("lstAges", 0).starts_with("1|Flow|0."));
  EXPECT_TRUE(Row("lstAges", 1).starts_with("2|Status|0."));
  Click("cmdClear");
  EXPECT_EQ(Get<QTableWidget>("lstSlaves").rowCount(), 0);
}

TEST_F(LinkUiTest, AValueThatIsNotAnsweredIsGreyUntilItIs) {
  BeginLink();
  Run();
  TextBox& box = monitor.main.RAM_LOC_VAL(1);
  const auto& plate = Get("RAM_LOC_VAL(1)");
  const auto letters = [&] {
    FinishPainting();
    const QImage picture = const_cast<QWidget&>(plate).grab().toImage();
    QColor darkest = Qt::white;
    for (int y = 3; y < picture.height() - 3; ++y) {
      for (int x = 3; x < picture.width() - 3; ++x) {
        if (picture.pixelColor(x, y).lightness() < darkest.lightness())
          darkest = picture.pixelColor(x, y);
      }
    }
    return darkest.lightness();
  };
  const std::string text = box.Text;
  const int fresh = letters();
  box.IsOld = true;
  const int old = letters();
  EXPECT_LT(fresh, 40);
  EXPECT_GT(old, 90) << "Grey.";
  EXPECT_LT(old, 150) << "And still to be read.";
  EXPECT_EQ(Get<TextPlate>("RAM_LOC_VAL(1)").text().toStdString(), text);
  box.IsOld = false;
  EXPECT_EQ(letters(), fresh);
}

TEST_F(LinkUiTest, TheTraceOpensFromThePanelAndByItsKey) {
  BeginLink();
  Entry("mnuLinkHealth").trigger();
  FinishPainting();
  Click("cmdTrace");
  ASSERT_NE(trace(), nullptr);
  EXPECT_TRUE(trace()->isVisible());
  EXPECT_EQ(trace()->windowModality(), Qt::NonModal);
  QTest::keyClick(trace(), Qt::Key_Escape);
  EXPECT_FALSE(trace()->isVisible());
  Entry("mnuLinkTrace").trigger();
  EXPECT_TRUE(trace()->isVisible());
}

TEST_F(LinkUiTest, TheTraceShowsTheFramesOfARunAndFollowsItsEnd) {
  BeginLink();
  Entry("mnuLinkTrace").trigger();
  Run();
  world.Advance(10s);
  FinishPainting();
  const QAbstractItemModel& model = *Trace().model();
  ASSERT_GT(model.rowCount(), 100);
  const auto cell = [&](int row, int column) {
    return model.index(row, column).data().toString().toStdString();
  };
  EXPECT_EQ(cell(0, 2), "request");
  EXPECT_EQ(cell(0, 4), "04 05 30 31 41 30 44 37 03");
  EXPECT_EQ(cell(0, 3), "read byte 01A0");
  QScrollBar* bar = Trace().verticalScrollBar();
  EXPECT_EQ(bar->value(), bar->maximum());
  bar->setValue(3);
  world.Advance(1s);
  FinishPainting();
  EXPECT_EQ(bar->value(), 3) << "Who looks at an older frame goes on looking at it.";
  trace()->findChild<QCheckBox*>("chkOnlyWrong")->click();
  EXPECT_LT(model.rowCount(), 20);
}

TEST_F(LinkUiTest, ATraceThatIsOpenedLaterBeginsAtItsEndAndStaysThere) {
  BeginLink();
  Run();
  world.Advance(10s);
  Entry("mnuLinkTrace").trigger();
  FinishPainting();
  const QScrollBar* bar = Trace().verticalScrollBar();
  const int filled = bar->maximum();
  ASSERT_GT(filled, 50);
  EXPECT_EQ(bar->value(), filled);
  world.Advance(1s);
  FinishPainting();
  EXPECT_GT(bar->maximum(), filled);
  EXPECT_EQ(bar->value(), bar->maximum());
}

TEST_F(LinkUiTest, TheNameOfASlaveHasTheRoomThatItNeeds) {
  BeginLink();
  record.BytesSent(std::string("\x7B\x03\x00\x10\x00\x01\x8E\x55", 8));
  Entry("mnuLinkHealth").trigger();
  Run();
  FinishPainting();
  const auto& slaves = Get<QTableWidget>("lstSlaves");
  QStringList names;
  for (int row = 0; row < slaves.rowCount(); ++row) names << slaves.item(row, 0)->text();
  EXPECT_EQ(names, (QStringList{"All", "TarnLink", "Modbus 123"}));
  EXPECT_GE(slaves.columnWidth(0), slaves.fontMetrics().horizontalAdvance("Modbus 123"));
}

class LinkPictures : public LinkUiTest, public ::testing::WithParamInterface<Look> {
 protected:
  LinkPictures() : usual_(QApplication::palette()) {
    if (GetParam().dark) QApplication::setPalette(DarkPalette());
  }
  ~LinkPictures() override { QApplication::setPalette(usual_); }

 private:
  QPalette usual_;
};

TEST_P(LinkPictures, ShowPanelAndTrace) {
  BeginLink();
  Entry("mnuLinkHealth").trigger();
  Entry("mnuLinkTrace").trigger();
  Run();
  monitor.main.RAM_LOC_VAL(2).IsOld = true;
  world.port().Receive(
      "\4\5"
      "01A0");
  world.Advance(2s);
  FinishPainting();
  SavePicture(*window, std::string("link-panel-") + GetParam().name);
  SavePicture(*trace(), std::string("link-trace-") + GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Looks, LinkPictures,
                         ::testing::Values(Look{"light", false}, Look{"dark", true}),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace tarnlink
