#include "ui/sniffer_area.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollArea>
#include <vector>

#include "platform/qt/qt_text.h"
#include "ui/coloured_edit.h"
#include "ui/mouse_button.h"
#include "ui/reading_order.h"
#include "ui/report.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

constexpr int kEdge = 20;  // pixels: a drag that comes nearer to the edge of the view scrolls

// Keeps a box at the place of its control.
void PlaceBox(QLineEdit* edit, const TextBox& control) {
  ShowText(edit, control);
  const QRect place = PlaceOf(control);
  if (edit->geometry() != place) edit->setGeometry(place);
}

// The name of an item: pressed, dragged, double clicked, moved by the arrow keys.
class NameBox final : public QLineEdit {
 public:
  NameBox(frmSniffer& form, int index, SnifferArea* area)
      : QLineEdit(area), form_(form), index_(index), area_(area) {
    setCursor(Qt::OpenHandCursor);
    setContextMenuPolicy(Qt::NoContextMenu);
  }

 protected:
  // Other buttons neither begin nor end a drag.
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) return;
    setFocus(Qt::MouseFocusReason);
    pressed_ = event->position().toPoint();
    is_down_ = true;
    window()->installEventFilter(this);
    const MousePress press{.button = ToMouseButton(*event),
                           .shift = event->modifiers().testFlag(Qt::ShiftModifier),
                           .X = ToUnits(pressed_.x()),
                           .Y = ToUnits(pressed_.y())};
    Report(form_.RAM_TEXT.MouseDown, index_, press);
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    const QPoint at = event->position().toPoint();
    if (!is_down_) return;
    if (!event->buttons().testFlag(Qt::LeftButton)) return GiveUp();
    if (!is_dragged_) {
      if ((at - pressed_).manhattanLength() < QApplication::startDragDistance()) return;
      is_dragged_ = true;
      area_->BeginDrag(this, pressed_);
    }
    area_->Drag(mapTo(area_, at));
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton || !is_down_) return;
    if (!is_dragged_) return GiveUp();
    LetGo();
    area_->Drop(mapTo(area_, event->position().toPoint()), index_);
  }
  // The release goes elsewhere once another window has come up.
  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool is_elsewhere =
        event->type() == QEvent::WindowBlocked || event->type() == QEvent::WindowDeactivate;
    if (is_elsewhere) GiveUp();
    return QLineEdit::eventFilter(watched, event);
  }
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    const bool is_tab =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (is_tab) area_->BringIntoView(index_);
  }
  void mouseDoubleClickEvent(QMouseEvent*) override { Report(form_.RAM_TEXT.DblClick, index_); }
  void keyPressEvent(QKeyEvent* event) override {
    switch (event->key()) {
      case Qt::Key_Left:
        return Step(-1, 0);
      case Qt::Key_Right:
        return Step(1, 0);
      case Qt::Key_Up:
        return Step(0, -1);
      case Qt::Key_Down:
        return Step(0, 1);
      case Qt::Key_Return:
      case Qt::Key_Enter:
        Report(form_.RAM_TEXT.DblClick, index_);
        return;
      case Qt::Key_Escape:
        if (is_dragged_) {
          GiveUp();
          return;
        }
        break;
      default:
        break;
    }
    QLineEdit::keyPressEvent(event);
  }

 private:
  void LetGo() {
    is_dragged_ = is_down_ = false;
    window()->removeEventFilter(this);
  }
  void GiveUp() {
    LetGo();
    area_->CancelDrag();
  }
  void Step(int right, int down) {
    Report(form_.RAM_TEXT.Arrow, index_, ArrowStep{.right = right, .down = down});
  }

  frmSniffer& form_;
  int index_;
  SnifferArea* area_;
  QPoint pressed_;
  bool is_down_ = false;
  bool is_dragged_ = false;
};

}  // namespace

SnifferArea::SnifferArea(frmSniffer& form, QScrollArea& scroller, QWidget* before)
    : form_(form), scroller_(scroller), before_(before) {
  setObjectName(ToQt(form_.Items.name()));
  setMinimumWidth(ToPixels(kCellGap + kCellWidth));  // of one item
  Follow(form_.RAM_TEXT, true);
  Follow(form_.RAM_ID, false);
  Follow(form_.RAM_VALUE, false);
  form_.Items.SetView([this] { ShowHeight(); });
  form_.Items.BringIntoView = [this](int index) { BringIntoView(index); };
  ShowHeight();
}

SnifferArea::~SnifferArea() {
  form_.Items.SetView({});
  form_.Items.BringIntoView = {};
  for (ControlArray<TextBox>* boxes : {&form_.RAM_TEXT, &form_.RAM_ID, &form_.RAM_VALUE}) {
    boxes->Loaded = boxes->Unloading = {};
    for (int i = 1; i <= kLastItem; ++i) {
      if (boxes->Has(i)) (*boxes)(i).SetView({});
    }
  }
}

void SnifferArea::Follow(ControlArray<TextBox>& boxes, bool is_name) {
  for (int i = 1; i <= kLastItem; ++i) {
    if (boxes.Has(i)) Add(boxes, i, is_name);
  }
  boxes.Loaded = [this, &boxes, is_name](int index) { Add(boxes, index, is_name); };
  boxes.Unloading = [this, &boxes](int index) { Remove(boxes, index); };
}

void SnifferArea::Add(ControlArray<TextBox>& boxes, int index, bool is_name) {
  TextBox& control = boxes(index);
  QLineEdit* edit = is_name ? new NameBox(form_, index, this) : new QLineEdit(this);
  edit->setObjectName(ToQt(control.name()));
  if (is_name) {
    edit->setAccessibleName(tr("Item %1").arg(index));
    control.SetView([this, edit, index, &control] { ShowName(edit, index, control); });
  } else {
    edit->setFocusPolicy(Qt::ClickFocus);
    control.SetView([edit, &control] { PlaceBox(edit, control); });
  }
  PlaceBox(edit, control);
  NameBoxes(index);
  is_ordered_ = false;
}

void SnifferArea::ShowName(QLineEdit* edit, int index, const TextBox& control) {
  const QRect place = edit->geometry();
  const QString text = edit->text();
  PlaceBox(edit, control);
  if (edit->geometry() != place) is_ordered_ = false;
  if (edit->text() != text) NameBoxes(index);
}

// The boxes beside a name, for those who cannot see where they stand.
void SnifferArea::NameBoxes(int index) {
  const QString name = ToQt(form_.RAM_TEXT(index).Text.get()).trimmed();
  if (auto* id = BoxOf(form_.RAM_ID, index)) id->setAccessibleName(tr("ID of %1").arg(name));
  if (auto* value = BoxOf(form_.RAM_VALUE, index)) {
    value->setAccessibleName(tr("Value of %1").arg(name));
  }
}

QLineEdit* SnifferArea::BoxOf(const ControlArray<TextBox>& boxes, int index) const {
  if (!boxes.Has(index)) return nullptr;
  return findChild<QLineEdit*>(ToQt(boxes(index).name()), Qt::FindDirectChildrenOnly);
}

// A drag ends with what is dragged.
void SnifferArea::Remove(const ControlArray<TextBox>& boxes, int index) {
  ghost_.reset();
  QLineEdit* edit = BoxOf(boxes, index);
  if (edit == nullptr) return;
  edit->setObjectName({});
  edit->hide();
  edit->deleteLater();
}

void SnifferArea::OrderTabs() {
  if (is_ordered_) return;
  is_ordered_ = true;
  std::vector<QWidget*> names;
  for (int i = 1; i <= kLastItem; ++i) {
    QLineEdit* name = form_.HasItem(i) ? BoxOf(form_.RAM_TEXT, i) : nullptr;
    if (name != nullptr) names.push_back(name);
  }
  QWidget* before = before_;
  for (QWidget* name : InReadingOrder(names)) {
    setTabOrder(before, name);
    before = name;
  }
}

void SnifferArea::BringIntoView(int index) {
  const QLineEdit* name = BoxOf(form_.RAM_TEXT, index);
  const QLineEdit* value = BoxOf(form_.RAM_VALUE, index);
  if (name == nullptr || value == nullptr) return;
  const QRect item = name->geometry().united(value->geometry());
  const QPoint centre = item.center();
  scroller_.ensureVisible(centre.x(), centre.y(), item.width() / 2 + 1, item.height());
}

void SnifferArea::ShowHeight() { setMinimumHeight(ToPixels(form_.Items.ContentHeight)); }

// --- Dragging ------------------------------------------------------------------------------------

void SnifferArea::BeginDrag(QLineEdit* name, const QPoint& grabbed) {
  grabbed_ = grabbed;
  ghost_ = std::make_unique<DragGhost>(this, name->grab(), name->pos());
  ghost_->show();
}

void SnifferArea::Drag(const QPoint& at) {
  if (!ghost_) return;
  const bool allowed = IsInSight(at);
  const QPoint before = pos();
  if (allowed) scroller_.ensureVisible(at.x(), at.y(), kEdge, kEdge);
  // The pointer stays where it is as the area goes by.
  ghost_->MoveTo(at + before - pos() - grabbed_, allowed);
}

// Only where it can be seen: an item that is let go elsewhere would be lost.
void SnifferArea::Drop(const QPoint& at, int index) {
  if (!ghost_ || !IsInSight(at)) return CancelDrag();
  ghost_.reset();
  Report(form_.Items.DragDrop, ToUnits(at.x()), ToUnits(at.y()));
  BringIntoView(index);
}

void SnifferArea::CancelDrag() {
  ghost_.reset();
  Report(form_.Items.DragCancel);
}

}  // namespace tarnlink
