// The widget of the dialog that makes a parameter file.
#pragma once

#include "monitor/frm_gen_par_file.h"
#include "ui/tool_dialog.h"

namespace tarnlink {

class GenParFileDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible.
  GenParFileDialog(frmGenParFile& form, SettingsStore& settings, QWidget* parent);

  void done(int result) override;

 protected:
  void FormChanged() override;
  // Enter saves.
  void Enter() override;

 private:
  frmGenParFile& form_;
  QWidget* first_ = nullptr;  // of the boxes
};

}  // namespace tarnlink
