#include "ui/guarded_application.h"

#include <QMessageBox>
#include <QPixmapCache>
#include <QPointer>

#include "common/run_time_error.h"
#include "platform/qt/qt_text.h"
#include "ui/accessible_parts.h"

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

// Qt keeps pictures of controls, those of a form that is closed too, until so much has come
// together. With its own bound of 10 MiB the program would grow by a little with every form for
// weeks.
GuardedApplication::GuardedApplication(int& count, char** words) : QApplication(count, words) {
  constexpr int kMostPictures = 512;  // KiB
  QPixmapCache::setCacheLimit(kMostPictures);
  InstallAccessibleParts();
}

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
