// The widget of the generator of wrong messages.
#pragma once

#include <QDialog>

#include "tools/frm_ip_msg_err.h"

class QGridLayout;

namespace tarnlink {

class WrongMessageDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it ends the tool.
  WrongMessageDialog(frm_IPMsgErr& form, QWidget* parent);
  ~WrongMessageDialog() override;

  void done(int result) override;

 private:
  QWidget* BuildFrame();
  void AddRow(QGridLayout& rows, int row, FixedArray<ArrayText>& boxes, const QString& name);
  QWidget* BuildAnswer();
  QWidget* BuildButtons();
  void ShowForm();

  frm_IPMsgErr& form_;
};

}  // namespace tarnlink
