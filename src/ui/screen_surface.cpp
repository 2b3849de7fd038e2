#include "ui/screen_surface.h"

#include <QCheckBox>
#include <QMouseEvent>

#include "platform/qt/qt_colour.h"
#include "platform/qt/qt_font.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/palette.h"
#include "ui/screen_box.h"
#include "ui/screen_label.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

constexpr int kMargin = 16;  // pixels kept free right of and below the outermost object

// How much room an object takes of the surface's size.
QSize Corner(const QWidget* widget) {
  const QRect place = widget->geometry();
  return {place.right() + 1 + kMargin, place.bottom() + 1 + kMargin};
}

}  // namespace

ScreenSurface::ScreenSurface(frm_Main& main, QWidget* parent) : QWidget(parent), main_(main) {
  setObjectName("screen");
  setAutoFillBackground(true);
  setFont(ToScreenFont(Font{}));
  setFocusPolicy(Qt::StrongFocus);
  Follow(main_.RAM_LOC_VAL, ItemKind::kValue, [this](int index) { return MakeValue(index); });
  Follow(main_.RAM_LOC_TEXT, ItemKind::kName, [this](int index) { return MakeName(index); });
  Follow(main_.RAM_LOC_CHECK, ItemKind::kCheck, [this](int index) { return MakeCheck(index); });
  Follow(main_.lbl_TextInfo, ItemKind::kLabel, [this](int index) { return MakeLabel(index); });
  main_.form.SetFocus = [this](const PlacedControl& control) { GiveFocus(control); };
  ShowColour();
}

ScreenSurface::~ScreenSurface() {
  const auto release = [this](auto& array, ItemKind kind) {
    array.Loaded = {};
    array.Unloading = {};
    for (const auto& [index, widget] : WidgetsOf(kind)) array(index).SetView({});
  };
  main_.form.SetFocus = {};
  release(main_.RAM_LOC_VAL, ItemKind::kValue);
  release(main_.RAM_LOC_TEXT, ItemKind::kName);
  release(main_.RAM_LOC_CHECK, ItemKind::kCheck);
  release(main_.lbl_TextInfo, ItemKind::kLabel);
}

template <class Array, class Make>
void ScreenSurface::Follow(Array& array, ItemKind kind, Make make) {
  Widgets& widgets = WidgetsOf(kind);
  array.Loaded = [this, &array, &widgets, kind, make](int index) {
    auto& control = array(index);
    auto& widget = widgets[index];
    control.SetView([this, &control, &widget, kind, make, index] {
      if (!control.Visible) return;
      // The widget sets a view of its own in place of this function, which must outlive that.
      auto& made = widget;
      auto& items = items_;
      const ScreenItem item{kind, index};
      const auto keep = make;
      made = keep(index);
      items[made] = item;
    });
  };
  array.Unloading = [this, &array, &widgets](int index) {
    array(index).SetView({});
    const auto widget = widgets.find(index);
    if (widget == widgets.end()) return;
    items_.erase(widget->second);
    delete widget->second;
    widgets.erase(widget);
    Shrink();
  };
}

QSize ScreenSurface::sizeHint() const { return needed_; }

void ScreenSurface::ShowColour() { SetColours(this, ToQColor(main_.form.BackColor), Qt::black); }

// --- Its objects ---------------------------------------------------------------------------------

ScreenItem ScreenSurface::ItemOf(const QWidget* widget) const {
  const auto item = items_.find(widget);
  return item == items_.end() ? ScreenItem{} : item->second;
}

QWidget* ScreenSurface::WidgetOf(const ScreenItem& item) const {
  const Widgets& widgets = WidgetsOf(item.kind);
  const auto widget = widgets.find(item.index);
  return widget == widgets.end() ? nullptr : widget->second;
}

PlacedControl& ScreenSurface::ControlOf(const ScreenItem& item) const {
  switch (item.kind) {
    case ItemKind::kName:
      return main_.RAM_LOC_TEXT(item.index);
    case ItemKind::kValue:
      return main_.RAM_LOC_VAL(item.index);
    case ItemKind::kCheck:
      return main_.RAM_LOC_CHECK(item.index);
    default:
      return main_.lbl_TextInfo(item.index);
  }
}

std::vector<QWidget*> ScreenSurface::VisibleWidgets() const {
  std::vector<QWidget*> visible;
  for (const Widgets& widgets : widgets_) {
    for (const auto& [index, widget] : widgets) {
      if (widget != nullptr && !widget->isHidden()) visible.push_back(widget);
    }
  }
  return visible;
}

// --- Size and scrolling --------------------------------------------------------------------------

// While objects are shown and moved the surface only grows.
void ScreenSurface::Grow(const QWidget* widget) {
  if (!widget->isHidden()) NeedSize(needed_.expandedTo(Corner(widget)));
}

void ScreenSurface::Shrink() {
  if (items_.empty()) NeedSize(QSize(0, 0));
}

void ScreenSurface::Fit() {
  QSize wanted(0, 0);
  for (const QWidget* widget : VisibleWidgets()) wanted = wanted.expandedTo(Corner(widget));
  NeedSize(wanted);
}

void ScreenSurface::NeedSize(const QSize& size) {
  if (size == needed_) return;
  needed_ = size;
  setMinimumSize(needed_);
}

QScrollArea* ScreenSurface::Scroller() const {
  QWidget* viewport = parentWidget();
  return viewport == nullptr ? nullptr : qobject_cast<QScrollArea*>(viewport->parentWidget());
}

void ScreenSurface::Reveal(QWidget* widget) {
  if (QScrollArea* area = Scroller()) area->ensureWidgetVisible(widget, kMargin, kMargin);
}

void ScreenSurface::LeadKeyboardTo(QWidget* widget, Qt::FocusReason reason) {
  const ScreenItem item = ItemOf(widget);
  if (item.kind == ItemKind::kValue) {
    widget->setAccessibleDescription(ToQt(main_.RAM_LOC_TEXT(item.index).Text.get()));
  }
  widget->setFocus(reason);
  Reveal(widget);
}

void ScreenSurface::GiveFocus(const PlacedControl& control) {
  auto* widget = findChild<QWidget*>(ToQt(control.name()), Qt::FindDirectChildrenOnly);
  if (widget != nullptr) LeadKeyboardTo(widget, Qt::OtherFocusReason);
}

// --- What the user does --------------------------------------------------------------------------

// Boxes and labels leave what they get to the surface, which knows what stands where.
void ScreenSurface::mousePressEvent(QMouseEvent* event) {
  const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
  if (event->button() == Qt::LeftButton) {
    mouse_.Press(event->position().toPoint(), MouseButton::kLeft, shift);
  } else if (event->button() == Qt::RightButton) {
    mouse_.Press(event->position().toPoint(), MouseButton::kRight, shift);
  }
}

void ScreenSurface::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    mouse_.DoubleClick(event->position().toPoint());
  } else {
    mousePressEvent(event);
  }
}

void ScreenSurface::keyPressEvent(QKeyEvent* event) {
  if (!keys_.Press(*event)) QWidget::keyPressEvent(event);
}

// Tab that comes from outside goes on to the first object, or the last.
void ScreenSurface::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  if (event->reason() == Qt::TabFocusReason) keys_.Step(true);
  if (event->reason() == Qt::BacktabFocusReason) keys_.Step(false);
}

bool ScreenSurface::focusNextPrevChild(bool next) {
  // A box that is hidden because it is being dragged gets the keyboard back when it is dropped.
  if (main_.DragSource != nullptr) {
    setFocus(Qt::OtherFocusReason);
    return true;
  }
  if (keys_.Step(next)) return true;
  // Out of the screen, from the surface's own place among the widgets of the window.
  setFocus(Qt::OtherFocusReason);
  return QWidget::focusNextPrevChild(next);
}

// --- Making its widgets --------------------------------------------------------------------------

QWidget* ScreenSurface::MakeValue(int index) {
  TextBox& control = main_.RAM_LOC_VAL(index);
  auto* box = new ScreenBox(control, this);
  control.SetView([this, box] {
    box->ShowControl();
    Grow(box);
  });
  Grow(box);
  return box;
}

QWidget* ScreenSurface::MakeName(int index) {
  TextBox& control = main_.RAM_LOC_TEXT(index);
  auto* box = new ScreenBox(control, this);
  control.SetView([this, box, index] {
    box->ShowControl();
    Grow(box);
    NameCheck(index);
  });
  Grow(box);
  return box;
}

QWidget* ScreenSurface::MakeCheck(int index) {
  CheckBox& control = main_.RAM_LOC_CHECK(index);
  auto* box = new QCheckBox(this);
  box->setObjectName(ToQt(control.name()));
  const auto show = [this, box, &control] {
    box->setChecked(control.Value);
    box->setGeometry(PlaceOf(control));
    ShowCommon(box, control);
    Grow(box);
  };
  control.SetView(show);
  connect(box, &QCheckBox::clicked, [&control](bool checked) { control.Value = checked; });
  box->setFocusPolicy(Qt::ClickFocus);
  show();
  WidgetsOf(ItemKind::kCheck)[index] = box;
  NameCheck(index);
  return box;
}

// A check box has no caption: whoever cannot see what it stands beside hears it.
void ScreenSurface::NameCheck(int index) {
  QWidget* check = WidgetOf({ItemKind::kCheck, index});
  if (check == nullptr || !main_.RAM_LOC_TEXT.Has(index)) return;
  check->setAccessibleName(tr("Scan %1").arg(ToQt(main_.RAM_LOC_TEXT(index).Text.get())));
}

QWidget* ScreenSurface::MakeLabel(int index) {
  Label& control = main_.lbl_TextInfo(index);
  auto* label = new ScreenLabel(control, this);
  control.SetView([this, label] {
    label->ShowControl();
    Grow(label);
  });
  Grow(label);
  return label;
}

}  // namespace tarnlink
