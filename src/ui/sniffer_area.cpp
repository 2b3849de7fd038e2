#include "ui/sniffer_area.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/mouse_button.h"
#include "ui/report.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

// Keeps a box at the place of its control.
void PlaceBox(QLineEdit* edit, const TextBox& control) {
  ShowCommon(edit, control);
  edit->setReadOnly(true);
  const QString text = ToQt(control.Text.get());
  if (edit->text() != text) edit->setText(text);
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
  void mousePressEvent(QMouseEvent* event) override {
    setFocus(Qt::MouseFocusReason);
    pressed_ = event->position().toPoint();
    is_down_ = event->button() == Qt::LeftButton;
    const MousePress press{.button = ToMouseButton(*event),
                           .shift = event->modifiers().testFlag(Qt::ShiftModifier),
                           .X = ToUnits(pressed_.x()),
                           .Y = ToUnits(pressed_.y())};
    Report(form_.RAM_TEXT.MouseDown, index_, press);
  }
  void mouseMoveEvent(QMouseEvent* event) override {
    const QPoint at = event->position().toPoint();
    if (!is_down_) return;
    if (!is_dragged_) {
      if ((at - pressed_).manhattanLength() < QApplication::startDragDistance()) return;
      is_dragged_ = true;
      area_->BeginDrag(this, pressed_);
    }
    area_->Drag(mapTo(area_, at));
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    is_down_ = false;
    if (!is_dragged_) {
      area_->CancelDrag();
      return;
    }
    is_dragged_ = false;
    area_->Drop(mapTo(area_, event->position().toPoint()));
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
          is_dragged_ = is_down_ = false;
          area_->CancelDrag();
          return;
        }
        break;
      default:
        break;
    }
    QLineEdit::keyPressEvent(event);
  }

 private:
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

SnifferArea::SnifferArea(frmSniffer& form) : form_(form) {
  setObjectName(ToQt(form_.Items.name()));
  Follow(form_.RAM_TEXT, true);
  Follow(form_.RAM_ID, false);
  Follow(form_.RAM_VALUE, false);
  form_.Items.SetView([this] { ShowHeight(); });
  ShowHeight();
}

SnifferArea::~SnifferArea() {
  form_.Items.SetView({});
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
  boxes.Unloading = [this, &boxes](int index) { Remove(boxes(index).name()); };
}

void SnifferArea::Add(ControlArray<TextBox>& boxes, int index, bool is_name) {
  TextBox& control = boxes(index);
  QLineEdit* edit = is_name ? new NameBox(form_, index, this) : new QLineEdit(this);
  edit->setObjectName(ToQt(control.name()));
  control.SetView([edit, &control] { PlaceBox(edit, control); });
  PlaceBox(edit, control);
}

void SnifferArea::Remove(const std::string& name) {
  auto* edit = findChild<QLineEdit*>(ToQt(name), Qt::FindDirectChildrenOnly);
  if (edit == nullptr) return;
  edit->hide();
  edit->deleteLater();
}

void SnifferArea::ShowHeight() { setMinimumHeight(ToPixels(form_.Items.ContentHeight)); }

// --- Dragging ------------------------------------------------------------------------------------

void SnifferArea::BeginDrag(QLineEdit* name, const QPoint& grabbed) {
  grabbed_ = grabbed;
  ghost_ = std::make_unique<DragGhost>(this, name->grab(), name->pos());
  ghost_->show();
}

void SnifferArea::Drag(const QPoint& at) {
  if (ghost_) ghost_->MoveTo(at - grabbed_, rect().contains(at));
}

void SnifferArea::Drop(const QPoint& at) {
  if (!rect().contains(at)) return CancelDrag();
  ghost_.reset();
  Report(form_.Items.DragDrop, ToUnits(at.x()), ToUnits(at.y()));
}

void SnifferArea::CancelDrag() {
  ghost_.reset();
  Report(form_.Items.DragCancel);
}

}  // namespace tarnlink
