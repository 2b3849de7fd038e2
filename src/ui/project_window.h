// The project window: the tree of the project's files on its tab.
#pragma once

#include <QTabWidget>
#include <QTreeWidget>

#include "monitor/frm_main.h"

namespace tarnlink {

class ProjectWindow final : public QTabWidget {
 public:
  // Shows the project of `main`, which outlives it.
  explicit ProjectWindow(frm_Main& main, QWidget* parent = nullptr);
  ~ProjectWindow() override;

 private:
  void ShowTree();

  frm_Main& main_;
  QTreeWidget* tree_;
};

}  // namespace tarnlink
