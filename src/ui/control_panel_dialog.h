// The widget of the control panel.
#pragma once

#include <vector>

#include "tools/frm_cont_panel.h"
#include "ui/tool_dialog.h"

class QGridLayout;
class QGroupBox;
class QLabel;
class QLayout;
class QLineEdit;
class QTabWidget;

namespace tarnlink {

class ControlPanelDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it ends the tool.
  ControlPanelDialog(frm_ContPanel& form, SettingsStore& settings, QWidget* parent);
  ~ControlPanelDialog() override;

  void done(int result) override;

 protected:
  void FormChanged() override;
  void changeEvent(QEvent* event) override;

 private:
  void BuildTabs();
  QLayout* BuildFoot();
  QWidget* Page(QLayout* parts, CommandButton& update);
  QWidget* Parts(PanelTabName tab);
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
  QWidget* Bits(BitBoxes& boxes);
  // A text behind its caption.
  void AddText(QGridLayout& rows, int row, PanelText& text, int column = 0);
  QLineEdit* Field(PanelText& text);
  void ShowSlave();

  frm_ContPanel& form_;
  QTabWidget* tabs_;
  std::vector<QLabel*> slaves_;  // one on each tab
};

}  // namespace tarnlink
