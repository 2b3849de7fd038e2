// A line edit in the colours of its control, and a lamp: what service tools show at a glance.
#pragma once

#include <QLineEdit>
#include <QWidget>

#include "common/controls.h"

namespace tarnlink {

// What an edit shows of its control besides colours. Of a locked text that is too long the
// beginning can be seen.
void ShowText(QLineEdit* edit, const TextBox& control);

// As `Bind`, with the control's background; letters take the colour that can be read on it. One
// that is locked stands on the ground of the window.
void BindColoured(QLineEdit* edit, TextBox& control);

// A round lamp in the background colour of its control, which outlives it; out in that of a form.
class Lamp final : public QWidget {
 public:
  Lamp(PlacedControl& control, const QString& name, QWidget* parent);
  ~Lamp() override;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void ShowControl();
  bool IsLit() const;

  PlacedControl& control_;
};

// A bit that is only looked at: a lamp that is lit while the box is ticked, and its caption, a long
// one on several lines.
class BitLamp final : public QWidget {
 public:
  BitLamp(CheckBox& control, QWidget* parent);
  ~BitLamp() override;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void ShowControl();
  QString ShownCaption() const;

  CheckBox& control_;
};

}  // namespace tarnlink
