// The widget of the dialog that asks what a bit is to be set to.
#pragma once

#include <QDialog>
#include <QRadioButton>

#include "monitor/frm_write_bit_value.h"

namespace tarnlink {

class WriteBitDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, whenever it is visible.
  WriteBitDialog(frm_WriteBitValue& form, QWidget* parent);
  ~WriteBitDialog() override;

  void reject() override;

 private:
  QRadioButton* BuildChoice(OptionButton& control, bool is_true, QWidget* frame);
  void ShowForm();

  frm_WriteBitValue& form_;
  QRadioButton* true_ = nullptr;
  QRadioButton* false_ = nullptr;
};

}  // namespace tarnlink
