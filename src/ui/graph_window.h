// The graph's window: the picture with its panels, the scroll bar and the popup menu.
#pragma once

#include <QDialog>
#include <QMenu>

#include "graph/graph.h"
#include "ui/click_label.h"
#include "ui/graph_canvas.h"

class QLabel;
class QScrollBar;

namespace tarnlink {

class GraphWindow final : public QDialog {
 public:
  // Shows `graph`, which outlives it, while its form is visible.
  GraphWindow(Graph& graph, QWidget* parent);
  ~GraphWindow() override;

  // The picture with its panels, as it is on the screen.
  QImage Picture();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void BuildPanels();
  void BuildLabels();
  void BuildMenu();
  void ShowForm();
  void ShowPointer();
  void ShowDate();
  void ShowMessage();
  void ShowHint();
  // A text over the picture.
  QLabel* AddPlate(const Label& label);
  void ShowPlate(QLabel* plate, const Label& label, int top);
  void ShowMenu();

  Graph& graph_;
  frmGraphic& form_;
  QMenu* menu_;
  GraphCanvas* canvas_ = nullptr;
  ClickLabel* exit_ = nullptr;
  ClickLabel* test_ = nullptr;
  QLabel* date_ = nullptr;
  QLabel* message_ = nullptr;
  QLabel* hint_ = nullptr;
  QScrollBar* scroll_ = nullptr;
  bool is_waiting_ = false;  // the hourglass is shown
};

}  // namespace tarnlink
