// The widget of the settings of a sniffer item.
#pragma once

#include "tools/frm_sniff_settings.h"
#include "ui/tool_dialog.h"

namespace tarnlink {

class SniffSettingsDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it changes nothing.
  SniffSettingsDialog(frm_Sniff_Settings& form, SettingsStore& settings, QWidget* parent);

  void done(int result) override;

 protected:
  void FormChanged() override;
  void Enter() override { form_.cmd_Ok.Press(); }

 private:
  QWidget* BuildFields();
  QWidget* BuildLog();

  frm_Sniff_Settings& form_;
};

}  // namespace tarnlink
