// The widget of the slave scan.
#pragma once

#include <QDialog>

#include "tools/frm_scan_slaves.h"

namespace tarnlink {

class ScanSlavesDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it ends the walk.
  ScanSlavesDialog(frm_ScanSlaves& form, QWidget* parent);
  ~ScanSlavesDialog() override;

  void done(int result) override;

 private:
  QWidget* BuildTable();
  QWidget* BuildFoot();
  void ShowForm();

  frm_ScanSlaves& form_;
};

}  // namespace tarnlink
