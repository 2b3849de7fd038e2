// The widget of the dialog for the values of a block of registers.
#pragma once

#include <QDialog>
#include <QGridLayout>
#include <QPushButton>

#include "monitor/frm_multiple_reg.h"

namespace tarnlink {

class MultipleRegistersDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, whenever it is visible.
  MultipleRegistersDialog(frm_multiple_reg& form, QWidget* parent);
  ~MultipleRegistersDialog() override;

  void reject() override;

 private:
  void AddName(int k);
  void AddValue(int k);
  void Remove(const std::string& name);
  void ShowForm();
  void OrderTabs();

  frm_multiple_reg& form_;
  QWidget* sheet_ = nullptr;
  QGridLayout* lines_ = nullptr;
  QPushButton* store_ = nullptr;
};

}  // namespace tarnlink
