// The project window: the tree of the project's files on its tab.
#pragma once

#include <QTabWidget>
#include <QTreeWidget>
#include <string>

#include "monitor/frm_main.h"

namespace tarnlink {

class ProjectWindow final : public QTabWidget {
 public:
  // Shows the project of `main`, which outlives it, and reports what the user does to its nodes.
  explicit ProjectWindow(frm_Main& main, QWidget* parent = nullptr);
  ~ProjectWindow() override;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowTree();
  std::string CurrentKey() const;
  bool KeyPressed(QKeyEvent& event);
  bool DragOver(QDropEvent& event);
  void Dropped(QDropEvent& event);

  frm_Main& main_;
  QTreeWidget* tree_;
};

}  // namespace tarnlink
