// The items of the sniffer on their area: name, ID and value of each, dragged by the name.
#pragma once

#include <QWidget>
#include <memory>

#include "tools/frm_sniffer.h"
#include "ui/drag_ghost.h"

class QLineEdit;

namespace tarnlink {

class SnifferArea final : public QWidget {
 public:
  // Shows the items of `form`, which outlives it.
  explicit SnifferArea(frmSniffer& form);
  ~SnifferArea() override;

  // What a name box reports.
  void BeginDrag(QLineEdit* name, const QPoint& grabbed);
  void Drag(const QPoint& at);
  void Drop(const QPoint& at);
  void CancelDrag();

 private:
  void Follow(ControlArray<TextBox>& boxes, bool is_name);
  void Add(ControlArray<TextBox>& boxes, int index, bool is_name);
  void Remove(const std::string& name);
  void ShowHeight();

  frmSniffer& form_;
  std::unique_ptr<DragGhost> ghost_;
  QPoint grabbed_;
};

}  // namespace tarnlink
