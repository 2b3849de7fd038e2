// The widget of the control panel.
#pragma once

#include <QDialog>
#include <vector>

#include "tools/frm_cont_panel.h"

class QGridLayout;
class QGroupBox;
class QLabel;
class QTabWidget;

namespace tarnlink {

class ControlPanelDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it ends the tool.
  ControlPanelDialog(frm_ContPanel& form, QWidget* parent);
  ~ControlPanelDialog() override;

  void done(int result) override;

 private:
  void BuildTabs();
  QWidget* StatusTab();
  QWidget* ConfigTab();
  QWidget* SensorTab();
  QWidget* ErrorTab();
  QWidget* StatisticsTab();
  QWidget* Flame();
  QWidget* Versions();
  QWidget* Acknowledge();
  QWidget* History();

  QGroupBox* Frame(GroupBox& frame);
  QWidget* Bits(const QString& title, BitBoxes& boxes);
  // A text behind its caption.
  void AddText(QGridLayout& rows, int row, PanelText& text, int column = 0);
  QWidget* Button(CommandButton& control);
  void ShowForm();
  void ShowSlave();

  frm_ContPanel& form_;
  QTabWidget* tabs_;
  QLabel* slave_ = nullptr;
};

}  // namespace tarnlink
