// The screen that the user laid out: name boxes, value boxes, check boxes and labels, each a child
// widget at its place. A widget is made when its control is first shown, with all that the control
// has by then, and destroyed with it.
#pragma once

#include <QScrollArea>
#include <QWidget>
#include <array>
#include <unordered_map>
#include <vector>

#include "monitor/frm_main.h"
#include "ui/screen_item.h"
#include "ui/screen_keys.h"
#include "ui/screen_mouse.h"

namespace tarnlink {

class ScreenSurface final : public QWidget {
 public:
  // Shows the screen of `main`, which outlives it.
  explicit ScreenSurface(frm_Main& main, QWidget* parent = nullptr);
  ~ScreenSurface() override;

  // As large as the objects on it need, so that a scroll area can show all of them.
  QSize sizeHint() const override;

  // The form's colour, anew after the model changed it.
  void ShowColour();

  // What stands at a place of the surface, in pixels; what a widget shows.
  ScreenItem ItemAt(const QPoint& place) const { return ItemOf(childAt(place)); }
  ScreenItem ItemOf(const QWidget* widget) const;
  // Null for an object that has not been visible so far. `item` is no free area.
  QWidget* WidgetOf(const ScreenItem& item) const;
  PlacedControl& ControlOf(const ScreenItem& item) const;
  std::vector<QWidget*> VisibleWidgets() const;
  // Whether it is an object that has been hidden while the keyboard was with it.
  bool HasJustHidden(const QWidget* focused) const {
    return ItemOf(focused).kind != ItemKind::kNone && focused->isHidden();
  }

  // The area that scrolls it; null if it is in none.
  QScrollArea* Scroller() const;
  // Gives a box or label the keyboard and brings it into sight. Whoever cannot see the screen hears
  // whose value a value box shows.
  void LeadKeyboardTo(QWidget* widget, Qt::FocusReason reason);
  // Scrolls until the widget can be seen.
  void Reveal(QWidget* widget);
  // As large as its objects need now.
  void Fit();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  using Widgets = std::unordered_map<int, QWidget*>;

  template <class Array, class Make>
  void Follow(Array& array, ItemKind kind, Make make);
  Widgets& WidgetsOf(ItemKind kind) { return widgets_[static_cast<std::size_t>(kind)]; }
  const Widgets& WidgetsOf(ItemKind kind) const { return widgets_[static_cast<std::size_t>(kind)]; }
  void LetGo(QWidget* widget);
  void GiveFocus(const PlacedControl& control);
  template <class Widget>
  void ShowChange(Widget* widget);
  void Grow(const QWidget* widget);
  void FitSoon();
  void NeedSize(const QSize& size);

  QWidget* MakeName(int index);
  QWidget* MakeValue(int index);
  QWidget* MakeCheck(int index);
  QWidget* MakeLabel(int index);
  void DescribeSoon(int index);
  void DescribeBoxes(int index);

  frm_Main& main_;
  // By kind, then by index; null for a member that has not been visible so far.
  std::array<Widgets, kItemKinds> widgets_;
  std::unordered_map<const QWidget*, ScreenItem> items_;
  ScreenMouse mouse_{main_, *this};
  ScreenKeys keys_{main_, *this};
  std::vector<int> undescribed_;  // Locations whose boxes wait to be described
  QSize needed_{0, 0};
  bool fits_soon_ = false;
};

}  // namespace tarnlink
