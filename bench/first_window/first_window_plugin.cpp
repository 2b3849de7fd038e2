// Ends the program it is loaded into as soon as its first window has been painted.

#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QTimer>
#include <QWidget>

namespace {

class FirstPaint final : public QObject {
 public:
  FirstPaint() { QCoreApplication::instance()->installEventFilter(this); }

  bool eventFilter(QObject* object, QEvent* event) override {
    const auto* widget = qobject_cast<QWidget*>(object);
    if (event->type() == QEvent::Paint && widget != nullptr && widget->isWindow()) {
      QTimer::singleShot(0, [] { _exit(0); });
    }
    return false;
  }
};

}  // namespace

class FirstWindowPlugin final : public QGenericPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "first_window.json")

 public:
  QObject* create(const QString& name, const QString&) override {
    return name == "firstwindow" ? new FirstPaint : nullptr;
  }
};

#include "first_window_plugin.moc"
