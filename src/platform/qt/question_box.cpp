#include "platform/qt/question_box.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <algorithm>

namespace tarnlink {

void QuestionBox::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Cancel)) {
    done(Cancel);
  } else {
    QMessageBox::keyPressEvent(event);
  }
}

// By itself a box is as wide as its text, and its title is cut.
void QuestionBox::showEvent(QShowEvent* event) {
  constexpr int kFrame = 140;  // pixels that buttons and icon of a title take
  constexpr int kLeast = 380;  // pixels
  const int title = fontMetrics().horizontalAdvance(windowTitle()) + kFrame;
  if (auto* grid = dynamic_cast<QGridLayout*>(layout()); grid != nullptr && !is_widened_) {
    is_widened_ = true;
    grid->addItem(new QSpacerItem(std::max(title, kLeast), 0), grid->rowCount(), 0, 1,
                  grid->columnCount());
  }
  QMessageBox::showEvent(event);
}

void QuestionBox::closeEvent(QCloseEvent* event) {
  event->accept();
  done(Cancel);
}

}  // namespace tarnlink
