#include "ui/sniffer_window.h"

#include <QCheckBox>
#include <QEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QVBoxLayout>

#include "common/text.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"
#include "ui/palette.h"
#include "ui/report.h"
#include "ui/sniffer_area.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

constexpr QSize kUsualWindow(1000, 680);
constexpr int kListWidth = 110;  // pixels
constexpr int kFindWidth = 80;   // pixels, at least

}  // namespace

SnifferWindow::SnifferWindow(frmSniffer& form, SettingsStore& settings, QWidget* parent)
    : ToolDialog(form.form, parent), form_(form) {
  setWindowFlags(Qt::Window | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
  setWindowTitle(ToQt(form_.caption.Caption.get()));
  auto* halves = new QSplitter(Qt::Vertical, this);
  halves->addWidget(BuildItems());
  halves->addWidget(BuildText());
  halves->setChildrenCollapsible(false);
  halves->setStretchFactor(0, 1);
  halves->setStretchFactor(1, 1);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(halves);
  Begin(settings);
}

SnifferWindow::~SnifferWindow() {
  form_.txt_Messages.SetView({});
  form_.List_DisplayDetectedID.SetView({});
}

void SnifferWindow::done(int) { form_.Unload(); }

QSize SnifferWindow::sizeHint() const { return kUsualWindow; }

// Escape ends no listening.
void SnifferWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    event->ignore();
  } else {
    ToolDialog::keyPressEvent(event);
  }
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
  area_ = new SnifferArea(form_, *scrolled_, list);
  scrolled_->setWidget(area_);
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
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
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
  for (CommandButton* control : {&form_.Command1, &form_.Command2, &form_.cmd_Clear}) {
    row->addWidget(Button(*control));
  }
  row->addStretch();
  auto* find = new QLineEdit;
  Bind(find, form_.txt_Find);
  find->setMinimumWidth(kFindWidth);
  SetPlaceholder(find, tr("Find"));
  find->setAccessibleName(tr("Find"));
  connect(find, &QLineEdit::returnPressed, this, [this] { form_.cmd_Find.Press(); });
  row->addWidget(find);
  row->addWidget(Button(form_.cmd_Find));
  // It has its room before it says anything: nothing moves under the pointer then.
  auto* found = new QLabel(ToQt(frmSniffer::kNotFound));
  found->setMinimumWidth(found->sizeHint().width());
  Bind(found, form_.lbl_Find);
  row->addWidget(found);
  row->addStretch();
  auto* log = new QCheckBox;
  Bind(log, form_.LogCheck);
  row->addWidget(log);
  return parts;
}

// A text that goes on is only added to: laying it out anew takes far longer than a frame.
void SnifferWindow::ShowText() {
  const std::string& text = form_.txt_Messages.Text;
  if (text != shown_) {
    if (!shown_.empty() && text.starts_with(shown_)) {
      QTextCursor end(text_->document());
      end.movePosition(QTextCursor::End);
      end.insertText(ToQt(text.substr(shown_.size())));
    } else {
      text_->setPlainText(ToQt(text));
    }
    shown_ = text;
  }
  ShowMarked();
}

void SnifferWindow::ShowMarked() {
  // The box counts a line end as one character.
  const auto place = [this](int characters) {
    QString before = ToQt(FirstCharacters(shown_, characters));
    return static_cast<int>(before.remove(QLatin1String("\r")).size());
  };
  const TextPiece marked = form_.txt_Messages.Marked;
  QTextCursor cursor = text_->textCursor();
  cursor.setPosition(place(marked.start));
  cursor.setPosition(place(marked.start + marked.length), QTextCursor::KeepAnchor);
  text_->setTextCursor(cursor);
  text_->ensureCursorVisible();
}

bool SnifferWindow::focusNextPrevChild(bool next) {
  area_->OrderTabs();
  return ToolDialog::focusNextPrevChild(next);
}

bool SnifferWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == scrolled_->viewport() && event->type() == QEvent::Resize) {
    Report(form_.Items.Resized, ToUnits(scrolled_->viewport()->width()));
  }
  return ToolDialog::eventFilter(watched, event);
}

}  // namespace tarnlink
