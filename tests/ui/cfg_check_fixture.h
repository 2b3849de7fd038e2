// A user's hands on the window of the configuration check.
#pragma once

#include <QHeaderView>
#include <QTableWidget>

#include "ui/service_tools_fixture.h"

namespace tarnlink {

inline const std::string kCfgPath = "/home/user/work/boiler.cfg";

// Each kind of result that a right boiler gives: two items of its own, a limit too low, an ID that
// it does not have, and a limit too high.
inline constexpr const char* kMixedCfg =
    "056Dh\t30\t85\t60\tCH setpoint (C)\t1\r\n"
    "05F4h\t36\t65\t50\tDHW setpoint (C)\t1\r\n"
    "0999h\t0\t255\t-\tNot in this boiler\t1\r\n"
    "0951h\t1\t9\t3\tIgnition retries\t1\r\n"
    "095Ch\t0\t255\t0\tHeat demand\t1\r\n";

class CfgWindowTest : public ServiceToolsTest {
 protected:
  QWidget& OpenCheck() {
    file_tools->cfg_check.Show();
    return Activated("frm_CfgCheck");
  }
  void Load(QWidget& form, const std::string& text = kMixedCfg) {
    world.disk().Put(kCfgPath, text);
    world.dialogs().ExpectOpenFile().Give(kCfgPath);
    Click(form, "cmd_Open");
  }
  // Until so many items are done; the whole list is over then, too.
  void RunTo(int done) {
    const frm_CfgCheck& tool = file_tools->cfg_check;
    EXPECT_TRUE(world.RunUntil([&] { return tool.CfgIndex == done; }, 10min));
  }
  static QTableWidget& Table(QWidget& form) { return In<QTableWidget>(form, "ParametersList"); }
  // A row of the table, with "|" between the cells.
  static std::string Row(QWidget& form, int row) {
    std::string text;
    for (int column = 0; column < Table(form).columnCount(); ++column) {
      text += (column > 0 ? "|" : "") + Table(form).item(row, column)->text().toStdString();
    }
    return text;
  }
};

}  // namespace tarnlink
