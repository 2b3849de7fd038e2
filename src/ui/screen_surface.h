// The screen that the user laid out: name boxes, value boxes, check boxes and labels, each a child
// widget at its place. A widget is made when its control is first shown, with all that the control
// has by then, and destroyed with it.
#pragma once

#include <QWidget>
#include <unordered_map>

#include "monitor/frm_main.h"

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

 private:
  template <class Array, class Make>
  void Follow(Array& array, std::unordered_map<int, QWidget*>& widgets, Make make);
  void Grow(const QWidget* widget);
  void Shrink();

  QWidget* MakeName(int index);
  QWidget* MakeValue(int index);
  QWidget* MakeCheck(int index);
  QWidget* MakeLabel(int index);
  void NameCheck(int index);

  frm_Main& main_;
  // By index; null for a member that has not been visible so far.
  std::unordered_map<int, QWidget*> names_;
  std::unordered_map<int, QWidget*> values_;
  std::unordered_map<int, QWidget*> checks_;
  std::unordered_map<int, QWidget*> labels_;
  QSize needed_{0, 0};
};

}  // namespace tarnlink
