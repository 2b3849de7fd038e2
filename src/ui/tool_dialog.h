// What the dialogs of the service tools have in common.
#pragma once

#include <QDialog>
#include <string>

#include "common/controls.h"
#include "platform/settings_store.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tarnlink {

class ToolDialog : public QDialog {
 public:
  // Named after `form`, which outlives it.
  ToolDialog(Control& form, QWidget* parent);
  ~ToolDialog() override;

 protected:
  // Once it is built: as large as its content, as far as the screen has room, or as it was left.
  // From now on it is shown while the form is visible.
  void Begin(SettingsStore& settings);
  // What follows the form besides.
  virtual void FormChanged() {}
  // Enter, pressed on anything but a button.
  virtual void Enter() {}

  // A button that Enter presses only while it has the focus.
  static QPushButton* Button(CommandButton& control, QWidget* parent = nullptr);
  // With one character at the end of a line.
  static void CopyToClipboard(const std::string& text);
  // A text in its colours behind its label, in two columns of a grid that begin with `column`.
  static QLineEdit* AddField(QGridLayout& rows, int row, int column, QLabel* label, TextBox& text);

  // Enter presses the button that has the focus, never another one.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ShowForm();

  Control& control_;
};

}  // namespace tarnlink
