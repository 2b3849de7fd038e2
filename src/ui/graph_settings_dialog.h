// The widget of the graph's settings.
#pragma once

#include <QDialog>
#include <QScrollBar>
#include <vector>

#include "graph/frm_graph_conf.h"

namespace tarnlink {

class GraphSettingsDialog final : public QDialog {
 public:
  // Shows `form`, which outlives it, while that is visible.
  GraphSettingsDialog(frmGraphConf& form, QWidget* parent);
  ~GraphSettingsDialog() override;

  void done(int result) override;

 private:
  QWidget* BuildList();
  QWidget* BuildDetails();
  QWidget* BuildAdvanced();
  QWidget* BuildColours();
  void ShowForm();
  void Go(int row, int step);

  frmGraphConf& form_;
  std::vector<QWidget*> names_;
  QScrollBar* scroll_ = nullptr;
};

}  // namespace tarnlink
