#include "platform/qt/question_box.h"

#include <QCloseEvent>
#include <QKeyEvent>

namespace tarnlink {

void QuestionBox::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Cancel)) {
    done(Cancel);
  } else {
    QMessageBox::keyPressEvent(event);
  }
}

void QuestionBox::closeEvent(QCloseEvent* event) {
  event->accept();
  done(Cancel);
}

}  // namespace tarnlink
