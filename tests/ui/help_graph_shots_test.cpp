// The pictures of the help of the graph, and F1 in each of its windows.

#include <gtest/gtest.h>

#include "ui/burner_start.h"
#include "ui/graph_fixture.h"
#include "ui/help_shots.h"

namespace tarnlink {
namespace {

class HelpShotsOfGraph : public ::testing::Test {
 protected:
  void Shot(const char* form, const std::string& name, const std::string& page) {
    QWidget* window = FindTopLevel(form);
    ASSERT_NE(window, nullptr) << form;
    HelpShot(*window, name);
    reader.ExpectPage(*window, page);
  }

  BurnerStart start;
  HelpReader reader;
};

TEST_F(HelpShotsOfGraph, ABurnerStartWithItsCursor) {
  start.window().resize(1000, 640);
  start.graph().commands.mnuScale(1);
  start.graph().display.GraphPanMouseUp(MouseButton::kLeft, 6000);
  Shot("frmGraphic", "graph", "graph.html");
}

TEST_F(HelpShotsOfGraph, TheSettingsWithALineSelected) {
  start.graph().settings.Show();
  start.graph().settings.lblCapClick(10);
  Shot("frmGraphConf", "graph-settings", "graph-settings.html");
}

TEST_F(HelpShotsOfGraph, TheTestMode) {
  start.graph().test_mode.Show();
  Shot("frmTestMode", "test-mode", "graph-files.html");
}

TEST_F(HelpShotsOfGraph, HowFarALongFileIs) {
  auto& progress = start.graph().files.progress;
  progress.caption.Caption = "Reading file";
  progress.lblFile.Caption = "/home/user/measurements/burner start.mss";
  progress.prgShare.Value = 42;
  progress.form.Visible = true;
  Shot("frmFileProgress", "file-progress", "graph-files.html");
}

}  // namespace
}  // namespace tarnlink
