#include "platform/qt/waiting_dialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QLabel>
#include <QProgressBar>
#include <QProgressDialog>
#include <QThread>
#include <QTimer>
#include <QVariant>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

#include "common/run_time_error.h"
#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

using std::chrono::milliseconds;

// So long the window stands still, which nobody sees.
constexpr milliseconds kUnseen{50};
// So long the user's keys and clicks are kept back, and nothing is shown.
constexpr milliseconds kUntilShown{500};

// What of it is left. Several pieces of work may come behind one another before the loop goes round
// again: they share it.
milliseconds unseen_left = kUnseen;

// Whether the end came while nobody could notice.
template <typename Wait>
bool EndsUnseen(const Wait& wait) {
  const auto begin = std::chrono::steady_clock::now();
  const bool has_ended = wait(unseen_left);
  const auto spent = std::chrono::steady_clock::now() - begin;
  unseen_left -= std::min(unseen_left, std::chrono::ceil<milliseconds>(spent));
  QTimer::singleShot(0, qApp, [] { unseen_left = kUnseen; });
  return has_ended;
}

// Between the two threads; kept by both, since the caller may go first.
struct Shared {
  std::mutex mutex;
  std::condition_variable ended;
  bool has_ended = false;
  std::exception_ptr failure;
  QObject* listener = nullptr;  // told of the end while it is there
  std::atomic<bool> is_given_up = false;
  std::shared_ptr<std::atomic<bool>> may_join = std::make_shared<std::atomic<bool>>(false);
};

void Work(const std::function<void(const IsGivenUp&)>& work, Shared& shared,
          const std::function<void(QObject*)>& tell) {
  std::exception_ptr failure;
  try {
    work([&shared] { return shared.is_given_up.load(); });
  } catch (...) {
    failure = std::current_exception();
  }
  const std::lock_guard lock(shared.mutex);
  shared.failure = failure;
  shared.has_ended = true;
  shared.ended.notify_all();
  if (shared.listener != nullptr) tell(shared.listener);
}

// The listener of the end: ends the loop that runs on it.
class Listener final : public QObject {
 public:
  explicit Listener(Shared& shared) : shared_(shared) {
    const std::lock_guard lock(shared_.mutex);
    shared_.listener = this;
  }
  ~Listener() override {
    const std::lock_guard lock(shared_.mutex);
    shared_.listener = nullptr;
  }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  bool HasEnded() const {
    const std::lock_guard lock(shared_.mutex);
    return shared_.has_ended;
  }

  std::function<void()> on_end;

 private:
  Shared& shared_;
};

// Whoever sends input beside the window system, as the driver of the tests does, can see by this
// property of the application that none is taken.
class InputKeptBack {
 public:
  InputKeptBack() : before_(qApp->property(kInputKeptBack)) {
    qApp->setProperty(kInputKeptBack, true);
  }
  ~InputKeptBack() { qApp->setProperty(kInputKeptBack, before_); }
  InputKeptBack(const InputKeptBack&) = delete;
  InputKeptBack& operator=(const InputKeptBack&) = delete;

 private:
  QVariant before_;
};

// Whether the end came before anything had to be shown.
bool EndsUnshown(Listener& listener) {
  const InputKeptBack input;
  QEventLoop loop;
  QTimer::singleShot(kUntilShown, &loop, &QEventLoop::quit);
  listener.on_end = [&loop] { loop.quit(); };
  if (!listener.HasEnded()) loop.exec(QEventLoop::ExcludeUserInputEvents);
  listener.on_end = {};
  return listener.HasEnded();
}

// Whether the end came before the user had enough.
bool EndsShown(const std::string& what, Listener& listener) {
  QWidget* dialog = QApplication::activeModalWidget();
  QProgressDialog window(dialog != nullptr ? dialog : QApplication::activeWindow());
  window.setObjectName(QStringLiteral("Waiting"));
  window.setWindowTitle(QStringLiteral("TarnLink"));
  auto* label = new QLabel(ToQt(what));
  label->setTextFormat(Qt::PlainText);
  window.setLabel(label);
  window.setCancelButtonText(QObject::tr("Stop &waiting"));
  window.setRange(0, 0);
  window.setWindowModality(Qt::ApplicationModal);
  listener.on_end = [&window] { window.accept(); };
  if (!listener.HasEnded()) window.exec();
  listener.on_end = {};
  return listener.HasEnded();
}

// Whatever ends the waiting before the work has ended, the thread is left behind.
class OwnThread {
 public:
  OwnThread(std::thread thread, std::shared_ptr<Shared> shared, LeftThreads& left)
      : thread_(std::move(thread)), shared_(std::move(shared)), left_(left) {}
  ~OwnThread() {
    if (!thread_.joinable()) return;
    shared_->is_given_up = true;
    left_.Add(std::move(thread_), shared_->may_join);
  }
  OwnThread(const OwnThread&) = delete;
  OwnThread& operator=(const OwnThread&) = delete;

  void Join() { thread_.join(); }

 private:
  std::thread thread_;
  std::shared_ptr<Shared> shared_;
  LeftThreads& left_;
};

}  // namespace

bool HasLoop() {
  return qobject_cast<QApplication*>(qApp) != nullptr && QThread::currentThread() == qApp->thread();
}

void RunBesideLoop(const std::string& what, const std::string& given_up,
                   const std::function<void(const IsGivenUp&)>& work, LeftThreads& left) {
  if (!HasLoop()) return work([] { return false; });
  const auto shared = std::make_shared<Shared>();
  const auto tell = [](QObject* listener) {
    QMetaObject::invokeMethod(
        listener,
        [listener] {
          auto& told = static_cast<Listener&>(*listener);
          if (told.on_end) told.on_end();
        },
        Qt::QueuedConnection);
  };
  OwnThread own(std::thread([shared, work, tell] {
                  Work(work, *shared, tell);
                  *shared->may_join = true;
                }),
                shared, left);
  bool has_ended = EndsUnseen([&](milliseconds bound) {
    std::unique_lock lock(shared->mutex);
    return shared->ended.wait_for(lock, bound, [&] { return shared->has_ended; });
  });
  if (!has_ended) {
    Listener listener(*shared);
    has_ended = EndsUnshown(listener) || EndsShown(what, listener);
  }
  if (!has_ended) throw RunTimeError(kDeviceIo, given_up);
  own.Join();
  if (shared->failure) std::rethrow_exception(shared->failure);
}

}  // namespace tarnlink
