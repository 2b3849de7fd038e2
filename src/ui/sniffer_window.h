// The window of the sniffer.
#pragma once

#include <string>

#include "tools/frm_sniffer.h"
#include "ui/tool_dialog.h"

class QPlainTextEdit;
class QScrollArea;

namespace tarnlink {

class SnifferArea;

class SnifferWindow final : public ToolDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it ends the tool.
  SnifferWindow(frmSniffer& form, SettingsStore& settings, QWidget* parent);
  ~SnifferWindow() override;

  QSize sizeHint() const override;
  void done(int result) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* BuildItems();
  QWidget* BuildText();
  QWidget* BuildRow();
  void ShowText();
  void ShowMarked();

  frmSniffer& form_;
  QScrollArea* scrolled_ = nullptr;
  SnifferArea* area_ = nullptr;
  QPlainTextEdit* text_ = nullptr;
  std::string shown_;  // in the box
};

}  // namespace tarnlink
