// The widget of the water pressure conversion.
#pragma once

#include "tools/frm_wp_conversion.h"
#include "ui/tool_dialog.h"

class QGridLayout;
class QGroupBox;
class QLayout;

namespace tarnlink {

// It talks to no slave: it stays open beside whatever else the user does.
class WpConversionDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible.
  WpConversionDialog(frmWPconversion& form, SettingsStore& settings, QWidget* parent);
  ~WpConversionDialog() override;

  void done(int result) override;

 protected:
  // Each time that it opens the keyboard is in the first field.
  void FormChanged() override;
  // Converts, from a field that can be typed in.
  void Enter() override;

 private:
  QLayout* BuildNumbers();
  QLayout* BuildPoints();
  QWidget* BuildFormula();
  QLayout* BuildFactors();
  QGroupBox* BuildQuality();
  QLayout* BuildButtons();

  frmWPconversion& form_;
};

}  // namespace tarnlink
