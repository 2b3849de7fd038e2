// The main form's window: menus, tool bar, project window, screen and status bar.
#pragma once

#include <QMainWindow>
#include <QScrollArea>

#include "monitor/frm_main.h"
#include "ui/project_window.h"
#include "ui/screen_surface.h"

class QVBoxLayout;

namespace tarnlink {

class MainWindow final : public QMainWindow {
 public:
  // Shows `main`, which outlives it. Closing the window presses the Exit entry.
  explicit MainWindow(frm_Main& main);
  ~MainWindow() override;

  // Beneath the panels of the status bar, as wide as the window. It becomes part of the window and
  // may be destroyed before it.
  void AddBelowStatusBar(QWidget* widget);

  // What the screen is seen through: for what is shown in front of an empty one.
  QWidget* ScreenArea() const { return scroll_->viewport(); }

  // Takes the place and size that the form has.
  void ShowPlace();

  // The program has been left: the window may close.
  void LetGo();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  QList<QAction*> BuildToolBar();
  void BuildStatusBar();
  void ShowForm();
  void ReportPlace();

  frm_Main& main_;
  ProjectWindow* project_;
  ScreenSurface* screen_;
  QScrollArea* scroll_;
  QVBoxLayout* below_ = nullptr;  // the panels of the status bar, and what is beneath them
  Colour shown_colour_ = -1;
  bool placing_ = false;
  bool left_ = false;
};

}  // namespace tarnlink
