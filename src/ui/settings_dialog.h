// The widget of the dialog that defines a Location.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLineEdit>

#include "monitor/frm_settings.h"

namespace tarnlink {

class SettingsDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, whenever its form is visible.
  SettingsDialog(frm_Settings& form, QWidget* parent);
  ~SettingsDialog() override;

  void reject() override;

 private:
  QWidget* BuildNames();
  QWidget* BuildColumns();
  QWidget* BuildButtons();
  QGroupBox* SpecificationFrame();
  QGroupBox* AddressFrame();
  QGroupBox* BitFrame();
  QGroupBox* SlaveFrame();
  QGroupBox* FunctionFrame();
  QGroupBox* RegistersFrame();
  QGroupBox* LoggingFrame();
  QComboBox* NameBox();
  void ShowForm();

  frm_Settings& form_;
  QLineEdit* alias_ = nullptr;
};

}  // namespace tarnlink
