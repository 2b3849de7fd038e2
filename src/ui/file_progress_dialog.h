// The window of a file of the graph that takes long.
#pragma once

#include <QDialog>

#include "graph/frm_file_progress.h"

class QLabel;
class QProgressBar;

namespace tarnlink {

class FileProgressDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, while that is visible. Closing it stops the file.
  FileProgressDialog(frmFileProgress& form, QWidget* parent);
  ~FileProgressDialog() override;

  void done(int result) override;

 private:
  void ShowForm();
  void ShowFile();

  frmFileProgress& form_;
  QLabel* file_;
  QProgressBar* share_;
};

}  // namespace tarnlink
