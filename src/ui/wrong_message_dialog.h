// The widget of the generator of wrong messages.
#pragma once

#include <vector>

#include "tools/frm_ip_msg_err.h"
#include "ui/tool_dialog.h"

class QGridLayout;
class QHBoxLayout;
class QLayout;
class QLineEdit;

namespace tarnlink {

class WrongMessageDialog final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it ends the tool.
  WrongMessageDialog(frm_IPMsgErr& form, SettingsStore& settings, QWidget* parent);
  ~WrongMessageDialog() override = default;

  void done(int result) override;

 protected:
  // Sends, from a box that can be typed in.
  void Enter() override;
  // A click into a box picks what stands there, so that typing replaces it.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // One of the lines that the frame is broken into, from box `first` to box `last`.
  QLayout* BuildBlock(int first, int last);
  void AddNames(QGridLayout& rows, int first, int last);
  void AddRow(QGridLayout& rows, int row, FixedArray<ArrayText>& boxes, int first, int last);
  QLayout* BuildAnswer();
  QLayout* BuildOptions();
  QLayout* BuildButtons();
  void AddLamp(QHBoxLayout& row, const QString& caption, PlacedControl& control,
               const QString& name);

  frm_IPMsgErr& form_;
  std::vector<QLineEdit*> sent_;  // the boxes that can be typed in
};

}  // namespace tarnlink
