// Pictures of the graph over a burner start for a person to look at: all five scales, two sizes of
// the window.

#include <gtest/gtest.h>

#include "ui/burner_start.h"
#include "ui/graph_fixture.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

class GraphPictures : public ::testing::Test {
 protected:
  // All that is to be painted has been, once a picture is taken of it.
  void Save(const std::string& name) { SavePicture(start.window(), "graph-" + name); }

  BurnerStart start;
};

TEST_F(GraphPictures, ShowABurnerStartAtAllScalesAndTwoSizes) {
  for (const QSize size : {QSize(1180, 760), QSize(760, 500)}) {
    start.window().resize(size);
    for (int scale = 0; scale < kTimeScales; ++scale) {
      start.graph().commands.mnuScale(scale);
      Save(std::to_string(start.graph().graph.TimeScale) + "-minutes-" +
           std::to_string(size.width()));
    }
  }
}

TEST_F(GraphPictures, ShowCursorReadingAndStrokes) {
  start.graph().commands.mnuScale(1);
  start.graph().display.GraphPanMouseUp(MouseButton::kLeft, 6000);
  PointAt(start.window(), QPoint(352, 121));
  Save("cursor");
  start.graph().menu.mnuMeasOnly.Press();
  Save("measured-only");
  start.graph().menu.SetCommunication(false);
  Save("stopped");
}

TEST_F(GraphPictures, ShowDashesAndAnotherLookOfColours) {
  auto& data = start.graph().graph.Data;
  for (int i = 0; i < 20; ++i) {
    data.Attributes.at(static_cast<std::size_t>(i)).LineStyle = static_cast<std::int16_t>(i % 5);
  }
  data.Colors = {.GridColor = 0x505050,
                 .GraphColor = 0x000000,
                 .BackColor = 0x202020,
                 .CursorColor = 0x00FFFF,
                 .CaptionColor = 0xE0E0E0};
  start.graph().commands.mnuScale(3);
  start.graph().display.Form_Resize();
  Save("dark-dashes");
}

TEST_F(GraphPictures, ShowTheTestModeDialog) {
  start.graph().test_mode.Show();
  QWidget* dialog = FindTopLevel("frmTestMode");
  ASSERT_NE(dialog, nullptr);
  SavePicture(*dialog, "graph-test-mode");
}

TEST_F(GraphPictures, ShowTheSettingsWithAndWithoutALineSelected) {
  auto& all = start.graph();
  for (int i = 0; i < 20; ++i) {
    all.graph.Data.Attributes.at(static_cast<std::size_t>(i)).LineStyle =
        static_cast<std::int16_t>(i % 5);
  }
  all.settings.Show();
  QWidget* dialog = FindTopLevel("frmGraphConf");
  ASSERT_NE(dialog, nullptr);
  SavePicture(*dialog, "graph-settings");
  all.settings.lblCapClick(10);
  SavePicture(*dialog, "graph-settings-selected");
  start.world.dialogs()
      .ExpectMessageBox("Altering this data could harm your measurement.", "Edit")
      .Press(Answer::kOk);
  all.settings.cmdAdvanced.Press();
  SavePicture(*dialog, "graph-settings-advanced");
}

TEST_F(GraphPictures, ShowAGraphWithoutLinesAndLongNames) {
  auto& lines = start.graph().graph.Data.Attributes;
  lines[0].Alias = "Flow at the burner of the left boiler";
  start.graph().display.DrawAgain();
  Save("long-name");
  for (GraphAttribute& line : lines) line.ShowLine = line.ShowCaption = false;
  start.graph().display.DrawAgain();
  Save("no-line");
}

TEST_F(GraphPictures, ShowHowFarALongFileIs) {
  auto& progress = start.graph().files.progress;
  progress.caption.Caption = "Reading file";
  progress.lblFile.Caption =
      "/home/user/measurements of the winter/boiler room in the cellar/burner start 2024.mss";
  progress.prgShare.Value = 42;
  progress.form.Visible = true;
  QWidget* dialog = FindTopLevel("frmFileProgress");
  ASSERT_NE(dialog, nullptr);
  SavePicture(*dialog, "graph-file-progress");
}

}  // namespace
}  // namespace tarnlink
