// The options dialog's widget.
#pragma once

#include <QDialog>
#include <QGroupBox>
#include <QTabWidget>
#include <string>
#include <vector>

#include "monitor/frm_options.h"
#include "platform/port_devices.h"

namespace tarnlink {

class OptionsDialog final : public QDialog {
 public:
  // Shows `options`, which outlives it, whenever its form is visible. The list of devices follows
  // plugging in and out while the dialog is up.
  OptionsDialog(frm_Options& options, PortDevices& devices, QWidget* parent);
  ~OptionsDialog() override;

  void reject() override;

 private:
  QWidget* BuildPortTab();
  QWidget* BuildFilesTab();
  QWidget* BuildMonitorTab();
  QWidget* BuildButtons();

  QGroupBox* PortFrame();
  QGroupBox* TimeoutFrame();
  QGroupBox* PathFrame(const QString& title, TextBox& box, CommandButton& browse);

  void ShowForm();

  frm_Options& options_;
  PortDevices& devices_;
  QTabWidget* tabs_;
};

}  // namespace tarnlink
