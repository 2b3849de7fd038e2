// The About box's widget.
#pragma once

#include <QDialog>

#include "monitor/frm_about.h"

namespace tarnlink {

class AboutDialog final : public QDialog {
 public:
  // Shows `about`, which outlives it, whenever its form is visible.
  AboutDialog(frmAbout& about, QWidget* parent);
  ~AboutDialog() override;

  void reject() override;

 private:
  frmAbout& about_;
};

}  // namespace tarnlink
