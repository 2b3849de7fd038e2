#include "ui/screen_keys.h"

#include <QApplication>
#include <algorithm>

#include "ui/reading_order.h"
#include "ui/report.h"
#include "ui/screen_surface.h"

namespace tarnlink {

bool ScreenKeys::Press(const QKeyEvent& event) {
  const ScreenItem item = surface_.ItemOf(QApplication::focusWidget());
  const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
  switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
      return PressArrow(item, event.key(), shift);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
      return PressEnter(item, shift);
    case Qt::Key_Delete:
      return PressDelete(item);
    case Qt::Key_Menu:
      return PressMenu(item, shift);
    default:
      return false;
  }
}

bool ScreenKeys::PressArrow(const ScreenItem& item, int key, bool other) {
  ArrowStep step;
  step.right = key == Qt::Key_Right ? 1 : key == Qt::Key_Left ? -1 : 0;
  step.down = key == Qt::Key_Down ? 1 : key == Qt::Key_Up ? -1 : 0;
  step.other = other;
  if (item.kind == ItemKind::kName) {
    Report(main_.RAM_LOC_TEXT.Arrow, item.index, step);
  } else if (item.kind == ItemKind::kValue) {
    Report(main_.RAM_LOC_VAL.Arrow, item.index, step);
  } else if (item.kind == ItemKind::kLabel) {
    Report(main_.lbl_TextInfo.Arrow, item.index, step);
  } else {
    return false;
  }
  surface_.Reveal(surface_.WidgetOf(item));
  return true;
}

bool ScreenKeys::PressEnter(const ScreenItem& item, bool shift) {
  switch (item.kind) {
    case ItemKind::kName:
      return Report(main_.RAM_LOC_TEXT.DblClick, item.index);
    case ItemKind::kValue:
      if (shift) return Report(main_.RAM_LOC_VAL.MouseDown, item.index, MousePress{.shift = true});
      return Report(main_.RAM_LOC_VAL.DblClick, item.index);
    case ItemKind::kLabel:
      return Report(main_.lbl_TextInfo.DblClick, item.index);
    default:
      return false;
  }
}

bool ScreenKeys::PressDelete(const ScreenItem& item) {
  switch (item.kind) {
    case ItemKind::kName:
      return Report(main_.RAM_LOC_TEXT.DeleteKey, item.index);
    case ItemKind::kValue:
      return Report(main_.RAM_LOC_VAL.DeleteKey, item.index);
    case ItemKind::kLabel:
      return Report(main_.lbl_TextInfo.DeleteKey, item.index);
    default:
      return false;
  }
}

bool ScreenKeys::PressMenu(const ScreenItem& item, bool shift) {
  const MousePress press{.button = MouseButton::kRight, .shift = shift};
  if (item.kind == ItemKind::kLabel) return Report(main_.lbl_TextInfo.MouseDown, item.index, press);
  if (item.kind == ItemKind::kNone) return Report(main_.form.MouseDown, press);
  return false;
}

bool ScreenKeys::Step(bool forward) {
  QWidget* from = QApplication::focusWidget();
  std::vector<QWidget*> order = surface_.VisibleWidgets();
  if (surface_.HasJustHidden(from)) order.push_back(from);  // leads on from where it stood
  order = InReadingOrder(order);
  if (!forward) std::reverse(order.begin(), order.end());
  const auto focused = std::find(order.begin(), order.end(), from);
  const auto next = focused == order.end() ? order.begin() : focused + 1;
  if (next == order.end()) return false;
  surface_.LeadKeyboardTo(*next, forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

}  // namespace tarnlink
