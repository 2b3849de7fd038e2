// Pictures of a tool's windows for a person to look at, in a light and a dark palette: whole, and
// as on a small screen. `Windows` is the fixture that opens them.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>
#include <string>

#include "ui/look.h"
#include "ui/service_tools_fixture.h"

namespace tarnlink {

template <class Windows>
class ToolLooks : public Windows, public ::testing::WithParamInterface<Look> {
 protected:
  ToolLooks() : usual_(QApplication::palette()) {
    if (GetParam().dark) QApplication::setPalette(DarkPalette());
  }
  ~ToolLooks() override { QApplication::setPalette(usual_); }

  static void Save(QWidget& form, const std::string& name) {
    Windows::ShowWhole(form);
    SavePicture(form, name + "-" + GetParam().name);
    form.resize(QSize(683, 384) * 0.9);
    Windows::WaitForBars(form);
    SavePicture(form, name + "-small-" + GetParam().name);
    Windows::ShowWhole(form);
  }

 private:
  QPalette usual_;
};

}  // namespace tarnlink
