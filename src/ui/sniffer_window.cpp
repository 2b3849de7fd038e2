#include "ui/sniffer_window.h"

#include <QCheckBox>
#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/report.h"
#include "ui/sniffer_area.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

constexpr QSize kUsualWindow(1000, 680);
constexpr double kLargestShare = 0.9;  // of the screen that a new window takes
constexpr int kListWidth = 110;        // pixels

}  // namespace

SnifferWindow::SnifferWindow(frmSniffer& form, QWidget* parent)
    : QDialog(parent, Qt::Window | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint),
      form_(form) {
  setObjectName(ToQt(form_.form.name()));
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  setModal(true);
  auto* halves = new QSplitter(Qt::Vertical, this);
  halves->addWidget(BuildItems());
  halves->addWidget(BuildText());
  halves->setChildrenCollapsible(false);
  halves->setStretchFactor(0, 1);
  halves->setStretchFactor(1, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(halves);
  resize(kUsualWindow.boundedTo(screen()->availableSize() * kLargestShare));
  form_.form.SetView([this] { ShowForm(); });
  ShowForm();
}

SnifferWindow::~SnifferWindow() {
  form_.form.SetView({});
  form_.txt_Messages.SetView({});
  form_.List_DisplayDetectedID.SetView({});
}

void SnifferWindow::done(int) { form_.Unload(); }

void SnifferWindow::ShowForm() {
  if (form_.form.Visible != isVisible()) setVisible(form_.form.Visible);
}

// --- Parts ---------------------------------------------------------------------------------------

QWidget* SnifferWindow::BuildItems() {
  auto* half = new QWidget;
  auto* layout = new QHBoxLayout(half);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* left = new QVBoxLayout;
  auto* caption = new QLabel;
  Bind(caption, form_.lbl_Detected);
  left->addWidget(caption);
  auto* list = new QListWidget;
  list->setObjectName(ToQt(form_.List_DisplayDetectedID.name()));
  list->setMaximumWidth(kListWidth);
  list->setAccessibleName(ToQt(form_.lbl_Detected.Caption.get()));
  list->setToolTip(tr("A double click gives an ID its item"));
  const auto show = [this, list] {
    const auto& rows = form_.List_DisplayDetectedID.List.get();
    if (static_cast<std::size_t>(list->count()) > rows.size()) list->clear();
    for (auto i = static_cast<std::size_t>(list->count()); i < rows.size(); ++i) {
      list->addItem(ToQt(rows[i]));
    }
  };
  form_.List_DisplayDetectedID.SetView(show);
  show();
  connect(list, &QListWidget::itemActivated, this, [this, list](QListWidgetItem* item) {
    Report(form_.List_DisplayDetectedID.DblClick, list->row(item));
  });
  left->addWidget(list);
  layout->addLayout(left);
  scrolled_ = new QScrollArea;
  scrolled_->setWidget(new SnifferArea(form_));
  scrolled_->setWidgetResizable(true);
  scrolled_->setFocusPolicy(Qt::NoFocus);
  scrolled_->viewport()->installEventFilter(this);
  layout->addWidget(scrolled_, 1);
  return half;
}

QWidget* SnifferWindow::BuildText() {
  auto* half = new QWidget;
  auto* layout = new QVBoxLayout(half);
  layout->setContentsMargins(0, 0, 0, 0);
  text_ = new QPlainTextEdit;
  text_->setObjectName(ToQt(form_.txt_Messages.name()));
  text_->setAccessibleName(tr("What went by"));
  text_->setReadOnly(true);
  text_->setUndoRedoEnabled(false);
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  form_.txt_Messages.SetView([this] { ShowText(); });
  ShowText();
  layout->addWidget(BuildRow());
  layout->addWidget(text_, 1);
  auto* foot = new QHBoxLayout;
  for (Label* control : {&form_.lbl_Frames, &form_.lbl_Port, &form_.lbl_Revision}) {
    auto* label = new QLabel;
    Bind(label, *control);
    foot->addWidget(label, control == &form_.lbl_Port ? 1 : 0);
  }
  layout->addLayout(foot);
  return half;
}

QWidget* SnifferWindow::BuildRow() {
  auto* parts = new QWidget;
  auto* row = new QHBoxLayout(parts);
  row->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](CommandButton& control) {
    auto* button = new QPushButton;
    Bind(button, control);
    button->setAutoDefault(false);
    row->addWidget(button);
    return button;
  };
  add(form_.Command1);
  add(form_.Command2);
  add(form_.cmd_Clear);
  row->addStretch();
  auto* find = new QLineEdit;
  Bind(find, form_.txt_Find);
  find->setPlaceholderText(tr("Find"));
  find->setAccessibleName(tr("Find"));
  row->addWidget(find);
  add(form_.cmd_Find)->setDefault(true);
  auto* found = new QLabel;
  Bind(found, form_.lbl_Find);
  row->addWidget(found);
  row->addStretch();
  auto* log = new QCheckBox;
  Bind(log, form_.LogCheck);
  row->addWidget(log);
  return parts;
}

void SnifferWindow::ShowText() {
  const QString text = ToQt(form_.txt_Messages.Text.get());
  if (text_->toPlainText() != QString(text).remove(QLatin1Char('\r'))) {
    text_->setPlainText(text);
    text_->moveCursor(QTextCursor::End);
  }
  const TextPiece marked = form_.txt_Messages.Marked;
  if (marked.length == 0) return;
  // The widget counts a line end as one character.
  const auto ends = text.left(marked.start).count(QLatin1Char('\r'));
  QTextCursor cursor = text_->textCursor();
  cursor.setPosition(marked.start - static_cast<int>(ends));
  cursor.setPosition(marked.start - static_cast<int>(ends) + marked.length,
                     QTextCursor::KeepAnchor);
  text_->setTextCursor(cursor);
  text_->ensureCursorVisible();
}

bool SnifferWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == scrolled_->viewport() && event->type() == QEvent::Resize) {
    Report(form_.Items.Resized, ToUnits(scrolled_->viewport()->width()));
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace tarnlink
