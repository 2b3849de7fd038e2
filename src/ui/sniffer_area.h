// The items of the sniffer on their area: name, ID and value of each, dragged by the name.
#pragma once

#include <QWidget>
#include <memory>

#include "tools/frm_sniffer.h"
#include "ui/drag_ghost.h"

class QLineEdit;
class QScrollArea;

namespace tarnlink {

class SnifferArea final : public QWidget {
 public:
  // Shows the items of `form`, which outlives it. The keyboard comes to them behind `before`.
  SnifferArea(frmSniffer& form, QScrollArea& scroller, QWidget* before);
  ~SnifferArea() override;

  // Before Tab goes on: it comes to the items in reading order.
  void OrderTabs();
  void BringIntoView(int index);

  // What a name box reports.
  void BeginDrag(QLineEdit* name, const QPoint& grabbed);
  void Drag(const QPoint& at);
  void Drop(const QPoint& at, int index);
  void CancelDrag();

 private:
  void Follow(ControlArray<TextBox>& boxes, bool is_name);
  void Add(ControlArray<TextBox>& boxes, int index, bool is_name);
  void ShowName(QLineEdit* edit, int index, const TextBox& control);
  void NameBoxes(int index);
  QLineEdit* BoxOf(const ControlArray<TextBox>& boxes, int index) const;
  void Remove(const ControlArray<TextBox>& boxes, int index);
  void ShowHeight();
  bool IsInSight(const QPoint& at) const { return visibleRegion().boundingRect().contains(at); }

  frmSniffer& form_;
  QScrollArea& scroller_;
  QWidget* before_;
  bool is_ordered_ = true;
  std::unique_ptr<DragGhost> ghost_;
  QPoint grabbed_;
};

}  // namespace tarnlink
