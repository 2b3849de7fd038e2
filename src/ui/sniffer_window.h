// The window of the sniffer.
#pragma once

#include <QDialog>

#include "tools/frm_sniffer.h"

class QPlainTextEdit;
class QScrollArea;

namespace tarnlink {

class SnifferWindow final : public QDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it ends the tool.
  SnifferWindow(frmSniffer& form, QWidget* parent);
  ~SnifferWindow() override;

  void done(int result) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* BuildItems();
  QWidget* BuildText();
  QWidget* BuildRow();
  void ShowForm();
  void ShowText();

  frmSniffer& form_;
  QScrollArea* scrolled_ = nullptr;
  QPlainTextEdit* text_ = nullptr;
};

}  // namespace tarnlink
