// The widget of the dialog that asks for a value to be written.
#pragma once

#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

#include "monitor/frm_write_value.h"

namespace tarnlink {

class WriteValueDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, whenever it is visible.
  WriteValueDialog(frm_WriteValue& form, QWidget* parent);
  ~WriteValueDialog() override;

  void reject() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* BuildValue();
  QGroupBox* BuildFormats();
  QGroupBox* BuildBlock();
  QWidget* BuildButtons();
  void ShowForm();

  frm_WriteValue& form_;
  QLineEdit* value_ = nullptr;
  QGroupBox* formats_ = nullptr;
  QLabel* count_label_ = nullptr;
  bool clicked_into_value_ = false;  // the press that gave it the focus
};

}  // namespace tarnlink
