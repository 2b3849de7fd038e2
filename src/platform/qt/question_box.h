// A message box that can be left without pressing any of its buttons: Esc and the window's frame
// end it with Cancel, even where the buttons are Yes and No. To choose nothing is not to say No.
#pragma once

#include <QMessageBox>

namespace tarnlink {

class QuestionBox final : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  bool is_widened_ = false;
};

}  // namespace tarnlink
