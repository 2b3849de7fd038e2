#include "ui/text_monitor.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextCursor>
#include <algorithm>
#include <cmath>
#include <string_view>

#include "common/text.h"
#include "platform/qt/qt_text.h"
#include "ui/binders.h"

namespace tarnlink {

namespace {

constexpr int kLeastLines = 4;
// The time that a line takes to be laid out and painted grows with it.
constexpr std::size_t kLongestLine = 4000;  // characters

// What is shown of a text: of a longer line its beginning.
QString Shown(std::string_view text) {
  QString shown;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end);
    if (line.size() <= kLongestLine) {
      shown += ToQt(line);
    } else {
      shown += ToQt(FirstCharacters(line, kLongestLine)) + QStringLiteral("...\n");
    }
  }
  return shown;
}

}  // namespace

TextMonitor::TextMonitor(GrowingText& control, const QSize& letters, QWidget* parent)
    : QPlainTextEdit(parent), control_(control), letters_(letters) {
  setObjectName(ToQt(control_.name()));
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(NoWrap);
  setUndoRedoEnabled(false);
  setTabChangesFocus(true);
  control_.SetView([this] { ShowControl(); });
  ShowControl();
}

TextMonitor::~TextMonitor() { control_.SetView({}); }

QSize TextMonitor::minimumSizeHint() const { return RoomFor({letters_.width() / 2, kLeastLines}); }

QSize TextMonitor::RoomFor(const QSize& letters) const {
  const auto edge = static_cast<int>(2 * (document()->documentMargin() + frameWidth()));
  const qreal width = letters.width() * QFontMetricsF(font()).horizontalAdvance('0');
  return {static_cast<int>(std::ceil(width)) + edge + verticalScrollBar()->sizeHint().width(),
          letters.height() * fontMetrics().lineSpacing() + edge};
}

void TextMonitor::ShowControl() {
  ShowCommon(this, control_);
  const std::string_view text = control_.Text();
  if (beginnings_ != control_.beginnings()) {
    beginnings_ = control_.beginnings();
    shown_ = text.size();
    has_grown_ = false;
    setPlainText(Shown(text));
    return;
  }
  if (shown_ == text.size()) return;
  Append(ToQt(text.substr(shown_)));
  shown_ = text.size();
  has_grown_ = true;
}

void TextMonitor::Append(const QString& text) {
  const int place = verticalScrollBar()->value();
  const bool was_at_end = IsAtEnd();
  QTextCursor marked = textCursor();
  const int from = marked.anchor();
  const int to = marked.position();
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  end.insertText(text);
  // What is marked up to the end would grow with it.
  if (marked.hasSelection() && (marked.anchor() != from || marked.position() != to)) {
    marked.setPosition(from);
    marked.setPosition(to, QTextCursor::KeepAnchor);
    setTextCursor(marked);
    verticalScrollBar()->setValue(place);
  }
  if (was_at_end) GoToEnd();
}

void TextMonitor::resizeEvent(QResizeEvent* event) {
  // A text that was shown as a whole stays at its beginning.
  const bool follows = has_grown_ && IsAtEnd();
  QPlainTextEdit::resizeEvent(event);
  if (follows) GoToEnd();
}

bool TextMonitor::IsAtEnd() const {
  return verticalScrollBar()->value() == verticalScrollBar()->maximum();
}

void TextMonitor::GoToEnd() { verticalScrollBar()->setValue(verticalScrollBar()->maximum()); }

}  // namespace tarnlink
