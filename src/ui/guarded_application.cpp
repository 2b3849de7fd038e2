#include "ui/guarded_application.h"

#include <QMessageBox>
#include <QPointer>

#include "common/run_time_error.h"
#include "platform/qt/qt_text.h"

namespace tarnlink {

namespace {

// Not modal to anything that runs, so that telling of one error cannot hold up another handler. One
// box at a time: what goes wrong in a timer goes wrong again with its next tick.
void Tell(int code, const char* reason) {
  static QPointer<QMessageBox> box;
  if (!box.isNull()) return;
  box = new QMessageBox(QMessageBox::Critical, "Internal System Error", QString());
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setTextFormat(Qt::PlainText);
  box->setText(ToQt(SystemErrorText(code) + "\n" + reason));
  box->open();
}

}  // namespace

bool GuardedApplication::notify(QObject* receiver, QEvent* event) {
  try {
    return QApplication::notify(receiver, event);
  } catch (const RunTimeError& error) {
    Tell(error.code(), error.what());
  } catch (const std::exception& error) {
    Tell(kDeviceIo, error.what());
  }
  return true;
}

}  // namespace tarnlink
