// The widget of the settings of a sniffer item.
#pragma once

#include <QDialog>

#include "tools/frm_sniff_settings.h"

namespace tarnlink {

class SniffSettingsDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it changes nothing.
  SniffSettingsDialog(frm_Sniff_Settings& form, QWidget* parent);
  ~SniffSettingsDialog() override;

  void done(int result) override;

 private:
  QWidget* BuildFields();
  QWidget* BuildLog();
  void ShowForm();

  frm_Sniff_Settings& form_;
};

}  // namespace tarnlink
