// Pictures of the configuration check and the pressure conversion for a person to look at, in a
// light and a dark palette: whole, and as on a small screen.

#include <QScrollBar>
#include <QTableWidget>

#include "ui/cfg_check_fixture.h"
#include "ui/tool_looks.h"

namespace tarnlink {
namespace {

class CfgAndWpPictures : public ToolLooks<CfgWindowTest> {};

TEST_P(CfgAndWpPictures, ShowTheCheck) {
  QWidget& form = OpenCheck();
  Save(form, "cfg-check-new");
  Load(form);
  Save(form, "cfg-check-idle");
  Click(form, "cmd_Check");
  RunTo(3);
  world.Advance(400ms);
  Save(form, "cfg-check-running");
  boiler.line().AddFault("no_reply");
  world.Advance(3s);
  Save(form, "cfg-check-silent");
  boiler.Calm();
  RunTo(5);
  Save(form, "cfg-check-finished");
  const QTableWidget& table = In<QTableWidget>(form, "ParametersList");
  EXPECT_FALSE(table.horizontalScrollBar()->isVisible()) << "all is in sight";
  Click(form, "cmd_Check");
  RunTo(1);
  world.port().Unplug();
  world.dialogs().ExpectMessageBox(world.port().LossReason(), "Error");
  world.Advance(1ms);
  Save(form, "cfg-check-failed");
  form.close();
}

TEST_P(CfgAndWpPictures, ShowTheConversion) {
  file_tools->wp_conversion.Show();
  QWidget& form = Activated("frmWPconversion");
  Save(form, "wp-conversion-new");
  Key(form, Qt::Key_Return);
  Save(form, "wp-conversion");
  Click(form, "txtPres1");
  Key(form, Qt::Key_Home, Qt::ControlModifier);
  Type(form, "9");
  Key(form, Qt::Key_Return);
  Save(form, "wp-conversion-warning");
  form.close();
}

INSTANTIATE_TEST_SUITE_P(Looks, CfgAndWpPictures,
                         testing::Values(Look{"light", false}, Look{"dark", true}),
                         [](const testing::TestParamInfo<Look>& look) { return look.param.name; });

}  // namespace
}  // namespace tarnlink
