// The widget of the settings of the test mode command.
#pragma once

#include <QDialog>

#include "graph/frm_test_mode.h"

namespace tarnlink {

class TestModeDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. However it is closed, the settings are
  // taken over.
  TestModeDialog(frmTestMode& form, QWidget* parent);
  ~TestModeDialog() override;

  void done(int result) override;

 private:
  void ShowForm();

  frmTestMode& form_;
};

}  // namespace tarnlink
