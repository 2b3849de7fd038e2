#include "ui/binders.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QButtonGroup>
#include <QCompleter>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QValidator>
#include <algorithm>
#include <functional>
#include <utility>

#include "platform/qt/qt_text.h"
#include "ui/mnemonics.h"

namespace tarnlink {

namespace {

// Shows the control now and after each of its changes, for as long as the widget lives.
void Follow(QObject* widget, Control& control, std::function<void()> show) {
  widget->setObjectName(ToQt(control.name()));
  show();
  control.SetView(std::move(show));
  QObject::connect(widget, &QObject::destroyed, [&control] { control.SetView({}); });
}

void ShowEntry(QAction* action, const MenuEntry& entry, const QString& text) {
  ShowCaption(action, text);
  action->setEnabled(entry.Enabled);
  action->setVisible(entry.Visible);
  action->setToolTip(PlainToolTip(entry.ToolTipText));
  if (action->isCheckable()) action->setChecked(entry.Checked);
}

void ReportPresses(QAction* action, MenuEntry& entry) {
  QObject::connect(action, &QAction::triggered, [action, &entry] {
    // A checkable action flips by itself; the model alone says what is checked.
    if (action->isCheckable()) action->setChecked(entry.Checked);
    entry.Press();
  });
}

void ShowRows(QComboBox* combo, const ComboBox& control) {
  const auto& items = control.List.get();
  bool same = combo->count() == static_cast<int>(items.size());
  for (int i = 0; same && i < combo->count(); ++i) {
    same = combo->itemText(i) == ToQt(items[static_cast<std::size_t>(i)].text);
  }
  if (same) return;
  combo->clear();
  for (const ComboBox::Item& item : items) combo->addItem(ToQt(item.text), item.data);
}

// A menu over the field, a message box or another program's window takes the keyboard only for a
// while; otherwise the user has gone to another field of the program.
bool IsLeft(const QEvent& event) {
  if (event.type() != QEvent::FocusOut) return false;
  const auto reason = static_cast<const QFocusEvent&>(event).reason();
  return reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason &&
         reason != Qt::MenuBarFocusReason;
}

// Reports that the user has gone to another field of the program.
class FocusWatch final : public QObject {
 public:
  FocusWatch(QWidget* widget, const TextBox& control) : QObject(widget), control_(control) {
    widget->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (IsLeft(*event) && control_.LostFocus) control_.LostFocus();
    return QObject::eventFilter(watched, event);
  }

 private:
  const TextBox& control_;
};

// What the user does to a box with a list besides picking a row. A text counts as accepted only if
// it was really typed: one that passes through the box changes nothing.
class PickWatch final : public QObject {
 public:
  PickWatch(QComboBox* combo, PickBox& control)
      : QObject(combo), combo_(combo), edit_(combo->lineEdit()), control_(control) {
    combo->installEventFilter(this);
    if (edit_ == nullptr) return;
    edit_->installEventFilter(this);
    // By itself the widget would pick the row of whatever text is left, of any case.
    disconnect(edit_, &QLineEdit::editingFinished, combo, nullptr);
    disconnect(edit_, &QLineEdit::returnPressed, combo, nullptr);
    // Comes alone while the list of a completer is open, and before what is picked in there.
    connect(edit_, &QLineEdit::returnPressed, this, [this] {
      if (IsTyped() && !IsCompletionPicked()) Accept();
    });
    // A mnemonic leaves the box with the list of its completer still open: Qt keeps that from the
    // box, and the next keys would still come here.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* from, QWidget* to) {
      const bool was_here = from == combo_ || from == edit_;
      if (!was_here || to == nullptr || to == combo_ || to == edit_) return;
      if (to->window() != combo_->window()) return;
      if (IsCompleting()) combo_->completer()->popup()->hide();
      Leave();
    });
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Wheel) {  // it scrolls past the box and changes nothing
      event->ignore();
      return true;
    }
    if (edit_ != nullptr && IsLeft(*event)) Leave();
    if (edit_ != nullptr && IsEnter(*event) && IsTyped()) {
      Accept();
      // What a name brings along is to be seen before Enter presses the dialog's button.
      if (control_.Click) return true;
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  static bool IsEnter(const QEvent& event) {
    if (event.type() != QEvent::KeyPress) return false;
    const int key = static_cast<const QKeyEvent&>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
  }
  bool HasOtherText() const { return FromQt(edit_->text()) != control_.Text.get(); }
  // Also the same text, typed again.
  bool IsTyped() const { return HasOtherText() || edit_->isModified(); }
  // One that completes within the line has no list.
  bool IsCompleting() const {
    const QCompleter* completer = combo_->completer();
    const QWidget* list = completer == nullptr ? nullptr : completer->popup();
    return list != nullptr && list->isVisible();
  }
  bool IsCompletionPicked() const {
    return IsCompleting() && combo_->completer()->popup()->currentIndex().isValid();
  }
  void Leave() {
    if (HasOtherText()) Accept();
    edit_->setModified(false);
  }
  void Accept() {
    edit_->setModified(false);
    control_.Accept(FromQt(edit_->text()));
  }

  QComboBox* combo_;
  QLineEdit* edit_;  // null in a box in which nothing can be typed
  PickBox& control_;
};

// Holds what is typed or pasted to a length: of what would be too much the end is left out. A text
// that is longer already may be shortened and typed over.
class LengthLimit final : public QValidator {
 public:
  LengthLimit(QObject* parent, const TextBox& control) : QValidator(parent), control_(control) {}

  State validate(QString& input, int& cursor) const override {
    const int longest = control_.MaxLength;
    const qsizetype room = std::max<qsizetype>(longest, ToQt(control_.Text.get()).size());
    const auto excess = static_cast<int>(std::min<qsizetype>(input.size() - room, cursor));
    if (longest > 0 && excess > 0) {
      input.remove(cursor - excess, excess);
      cursor -= excess;
    }
    return Acceptable;
  }

 private:
  const TextBox& control_;
};

// The tabulator comes to the button that is set, or to the first where none is.
void ShowWhereTabComes(const std::vector<QRadioButton*>& buttons, const OptionGroup& group) {
  const auto reached = static_cast<std::size_t>(std::max(group.Selected(), 0));
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    buttons[i]->setFocusPolicy(i == reached ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

}  // namespace

QString PlainToolTip(const std::string& text) {
  constexpr qsizetype kLongestLine = 80;
  constexpr qsizetype kLongest = 1000;
  const QString plain = ToQt(text).left(kLongest);
  // Only a tip that counts as rich text is broken into lines.
  if (plain.size() <= kLongestLine && !Qt::mightBeRichText(plain)) return plain;
  return "<qt>" + plain.toHtmlEscaped() + "</qt>";
}

void ShowCommon(QWidget* widget, const Control& control) {
  // One that has no parent yet would come up as a window; it is shown together with its parent.
  const bool wait_for_parent = control.Visible && widget->isWindow();
  if (!wait_for_parent) widget->setVisible(control.Visible);
  if (widget->isEnabled() != control.Enabled.get()) widget->setEnabled(control.Enabled);
  const QString tip = PlainToolTip(control.ToolTipText);
  if (widget->toolTip() != tip) widget->setToolTip(tip);
}

void Bind(QAction* action, MenuEntry& entry) {
  Follow(action, entry, [action, &entry] { ShowEntry(action, entry, ToQt(entry.Caption.get())); });
  ReportPresses(action, entry);
}

void BindPath(QAction* action, MenuEntry& entry) {
  Follow(action, entry, [action, &entry] {
    constexpr qsizetype kLongest = 90;  // characters that a menu has room for
    QString path = ToQt(entry.Caption.get());
    if (path.size() > kLongest) path = path.left(kLongest / 3) + "..." + path.right(kLongest / 2);
    ShowEntry(action, entry, path.replace("&", "&&"));
  });
  ReportPresses(action, entry);
}

void Bind(QPushButton* button, CommandButton& control) {
  Follow(button, control, [button, &control] {
    ShowCommon(button, control);
    ShowCaption(button, ToQt(control.Caption.get()));
  });
  QObject::connect(button, &QPushButton::clicked, [&control] { control.Press(); });
}

void Bind(QCheckBox* box, CheckBox& control) {
  Follow(box, control, [box, &control] {
    ShowCommon(box, control);
    ShowCaption(box, ToQt(control.Caption.get()));
    box->setChecked(control.Value);
  });
  QObject::connect(box, &QCheckBox::clicked, [&control](bool checked) { control.Value = checked; });
}

void Bind(QLineEdit* edit, TextBox& control) {
  Follow(edit, control, [edit, &control] {
    ShowCommon(edit, control);
    edit->setReadOnly(control.Locked);
    const QString text = ToQt(control.Text.get());
    if (edit->text() != text) edit->setText(text);
  });
  QObject::connect(edit, &QLineEdit::textEdited,
                   [&control](const QString& text) { control.Text = FromQt(text); });
  if (control.MaxLength > 0) edit->setValidator(new LengthLimit(edit, control));
  new FocusWatch(edit, control);
}

void Bind(QLabel* label, Label& control) {
  label->setTextFormat(Qt::PlainText);
  Follow(label, control, [label, &control] {
    constexpr Colour kGray = static_cast<Colour>(0x80000011);
    ShowCommon(label, control);
    ShowCaption(label, ToQt(control.Caption.get()));
    QPalette colours;  // one that sets nothing follows the desktop
    if (control.ForeColor == kGray) {
      const QPalette usual = QApplication::palette(label);
      colours.setColor(QPalette::WindowText, usual.color(QPalette::Disabled, QPalette::WindowText));
    }
    label->setPalette(colours);
  });
}

void Bind(QSlider* slider, Slider& control) {
  slider->setRange(control.minimum, control.maximum);
  Follow(slider, control, [slider, &control] {
    ShowCommon(slider, control);
    slider->setValue(control.Value);
  });
  QObject::connect(slider, &QSlider::valueChanged,
                   [&control](int value) { control.SetValue(value); });
}

void Bind(QScrollBar* bar, ScrollBar& control) {
  Follow(bar, control, [bar, &control] {
    // Its range alone can move the bar, and that is not the user.
    const QSignalBlocker quiet(bar);
    ShowCommon(bar, control);
    bar->setRange(ScrollBar::kMin, control.Max);
    bar->setPageStep(control.LargeChange);
    bar->setSingleStep(control.SmallChange);
    bar->setValue(control.Value);
  });
  QObject::connect(bar, &QScrollBar::valueChanged,
                   [&control](int value) { control.Value = value; });
}

void Bind(QProgressBar* bar, CountBar& control) {
  // Where the bar ends in the middle of the digits they can not be read.
  bar->setTextVisible(false);
  Follow(bar, control, [bar, &control] {
    ShowCommon(bar, control);
    bar->setRange(0, control.Max);
    bar->setValue(control.Value);
  });
}

void Bind(QComboBox* combo, ComboBox& control) {
  Follow(combo, control, [combo, &control] {
    const QSignalBlocker quiet(combo);
    ShowCommon(combo, control);
    ShowRows(combo, control);
    const QString text = ToQt(control.Text.get());
    if (combo->currentText() != text) combo->setCurrentText(text);
  });
  QObject::connect(combo, &QComboBox::currentTextChanged,
                   [&control](const QString& text) { control.Text = FromQt(text); });
}

void Bind(QComboBox* combo, PickBox& control) {
  Follow(combo, control, [combo, &control] {
    const QSignalBlocker quiet(combo);
    ShowCommon(combo, control);
    ShowRows(combo, control);
    const QString text = ToQt(control.Text.get());
    if (combo->currentIndex() != control.ListIndex) combo->setCurrentIndex(control.ListIndex);
    if (!combo->isEditable()) {
      combo->setPlaceholderText(text);
    } else if (combo->currentText() != text) {
      combo->setEditText(text);
    }
  });
  QObject::connect(combo, &QComboBox::activated, [&control](int row) { control.Pick(row); });
  new PickWatch(combo, control);
}

void Bind(QToolButton* up, QToolButton* down, SpinButton& control) {
  const auto show = [up, down, &control] {
    ShowCommon(up, control);
    ShowCommon(down, control);
  };
  Follow(up, control, show);
  up->setObjectName(ToQt(control.name() + ".Up"));
  down->setObjectName(ToQt(control.name() + ".Down"));
  QObject::connect(up, &QToolButton::clicked, [&control] { control.Press(1); });
  QObject::connect(down, &QToolButton::clicked, [&control] { control.Press(-1); });
}

void Bind(TextPlate* plate, StatusPanel& panel) {
  Follow(plate, panel, [plate, &panel] {
    ShowCommon(plate, panel);
    plate->SetText(ToQt(panel.Text.get()));
  });
}

void Bind(QGroupBox* frame, Control& control) {
  Follow(frame, control, [frame, &control] { ShowCommon(frame, control); });
}

void Bind(QGroupBox* frame, GroupBox& control) {
  Follow(frame, control, [frame, &control] {
    ShowCommon(frame, control);
    frame->setTitle(ToQt(control.Caption.get()));
  });
}

void Bind(const std::vector<QRadioButton*>& buttons, OptionGroup& group) {
  auto* exclusive = new QButtonGroup(buttons.front()->parent());
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    QRadioButton* button = buttons[i];
    const int index = static_cast<int>(i);
    OptionButton& control = group(index);
    exclusive->addButton(button, index);
    Follow(button, control, [buttons, button, exclusive, &group, &control] {
      ShowCommon(button, control);
      ShowCaption(button, ToQt(control.Caption.get()));
      // Only a group that is not exclusive can have no button set.
      exclusive->setExclusive(false);
      button->setChecked(control.Value);
      exclusive->setExclusive(true);
      ShowWhereTabComes(buttons, group);
    });
    QObject::connect(button, &QRadioButton::clicked, [&group, index] { group.Choose(index); });
  }
}

}  // namespace tarnlink
