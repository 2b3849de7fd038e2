#include "platform/qt/qt_serial_port.h"

#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <QPointer>
#include <QSerialPort>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <utility>

#include "common/run_time_error.h"
#include "platform/qt/port_guard.h"
#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

// The pause before an unread receive event fires again: short against a frame, long enough that a
// handler which does not read costs no processor.
constexpr std::chrono::milliseconds kRepeat(1);

// Far more than the longest frame. A line that takes nothing any more does not fill the memory.
constexpr qint64 kTransmitBuffer = 64 * 1024;

QSerialPort::Parity ToQtParity(char letter) {
  if (letter == 'E') return QSerialPort::EvenParity;
  return letter == 'O' ? QSerialPort::OddParity : QSerialPort::NoParity;
}

// Everything before the opening: a pseudo terminal refuses some of it afterwards.
void Apply(const PortSettings& settings, QSerialPort& port) {
  port.setBaudRate(settings.speed);
  port.setParity(ToQtParity(settings.parity));
  port.setDataBits(static_cast<QSerialPort::DataBits>(settings.data_bits));
  port.setStopBits(settings.stop_bits == 2 ? QSerialPort::TwoStop : QSerialPort::OneStop);
  port.setFlowControl(QSerialPort::NoFlowControl);
}

[[noreturn]] void RefuseOpening(const PortGuard& guard, const QSerialPort& port,
                                const PortSettings& settings) {
  switch (port.error()) {
    case QSerialPort::PermissionError:
      guard.RefuseAsBusy();
    case QSerialPort::UnsupportedOperationError:
      guard.RefuseSettings(settings);
    default:
      guard.RefuseBecause(FromQt(port.errorString()));
  }
}

}  // namespace

QtSerialPort::QtSerialPort(std::function<std::string(int)> device_of)
    : device_of_(std::move(device_of)) {}

QtSerialPort::~QtSerialPort() { Close(); }

void QtSerialPort::SetSettings(const std::string& settings) {
  const PortSettings parsed = ParsePortSettings(settings);
  settings_ = settings;
  if (!PortOpen() || parsed == opened_with_) return;
  Close();
  Open();
}

void QtSerialPort::SetPortOpen(bool open) {
  if (!open) return Close();
  if (PortOpen()) throw RunTimeError(kPortUnavailable, guard_->name() + " is open already.");
  Open();
}

void QtSerialPort::Open() {
  const PortSettings settings = ParsePortSettings(settings_);
  auto guard = std::make_unique<PortGuard>(number_, device_of_(number_));
  auto port = std::make_unique<QSerialPort>(ToQt(guard->device()));
  Apply(settings, *port);
  if (!port->open(QIODevice::ReadWrite)) RefuseOpening(*guard, *port, settings);
  // Bytes from before the opening, while nobody has been told of them yet.
  tcflush(port->handle(), TCIFLUSH);

  loss_reason_.clear();
  guard_ = std::move(guard);
  port_ = port.release();
  opened_with_ = settings;
  counters_ = ReadLineCounters(port_->handle());
  QObject::connect(port_, &QSerialPort::readyRead, &context_, [this] { BytesArrived(); });
  QObject::connect(port_, &QSerialPort::errorOccurred, &context_,
                   [this](QSerialPort::SerialPortError error) {
                     if (error != QSerialPort::NoError && error != QSerialPort::TimeoutError) {
                       Lose();
                     }
                   });
}

void QtSerialPort::Close() {
  if (!PortOpen()) return;
  TellArrived();
  if (watcher_ != nullptr) watcher_->LineClosed();
  QSerialPort* port = std::exchange(port_, nullptr);
  port->close();
  port->deleteLater();
  guard_.reset();
  ++opening_;
  discard_ = 0;
  told_ = 0;
  armed_ = false;
  unread_ = false;
}

// A device that has gone reports errors without end, and writing to it seems to succeed, so the
// port closes at the first one.
void QtSerialPort::Lose() {
  if (!PortOpen()) return;
  loss_reason_ = guard_->name() + " is gone: it was unplugged, or its far end was closed.";
  Close();
  QMetaObject::invokeMethod(
      &context_, [this] { Fire(kCommDeviceGone); }, Qt::QueuedConnection);
}

void QtSerialPort::Output(std::string_view bytes) {
  if (!PortOpen()) {
    throw RunTimeError(kDeviceIo, "COM" + std::to_string(number_) + " is not open.");
  }
  TellArrived();
  if (watcher_ != nullptr) watcher_->BytesSent(bytes);
  // Straight to the driver while nothing waits in front: QSerialPort would send with the next turn
  // of the event loop. What the driver does not take goes that way, and so do its errors.
  if (port_->bytesToWrite() == 0) {
    const ssize_t sent = write(static_cast<int>(port_->handle()), bytes.data(), bytes.size());
    if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  if (bytes.empty()) return;
  const auto size = static_cast<qint64>(bytes.size());
  if (port_->bytesToWrite() + size <= kTransmitBuffer) {
    port_->write(bytes.data(), size);
    return;
  }
  QMetaObject::invokeMethod(
      &context_,
      [this, opening = opening_] {
        if (opening == opening_) Fire(kCommTransmitFull);
      },
      Qt::QueuedConnection);
}

std::string QtSerialPort::Input() {
  unread_ = false;
  if (!PortOpen()) return {};
  TellArrived();
  told_ = 0;
  std::string bytes(static_cast<std::size_t>(InBufferCount()), '\0');
  if (!bytes.empty()) port_->read(bytes.data(), static_cast<qint64>(bytes.size()));
  return bytes;
}

int QtSerialPort::InBufferCount() const {
  return PortOpen() ? static_cast<int>(port_->bytesAvailable()) : 0;
}

// What the driver holds is read first and thrown away then: emptying the driver behind
// QSerialPort's back makes its next read fail, which looks like a lost device.
void QtSerialPort::ClearInBuffer() {
  Input();
  if (!PortOpen()) return;
  int waiting = 0;
  if (ioctl(static_cast<int>(port_->handle()), FIONREAD, &waiting) == 0) discard_ = waiting;
}

void QtSerialPort::DropDiscarded() {
  if (discard_ <= 0) return;
  const qint64 dropped = port_->skip(std::min(discard_, port_->bytesAvailable()));
  discard_ -= dropped;
  told_ -= dropped;
}

// Also of what nobody will read.
void QtSerialPort::TellArrived() {
  const qint64 waiting = port_->bytesAvailable();
  if (watcher_ == nullptr || waiting <= told_) return;
  const QByteArray bytes = port_->peek(waiting).mid(std::exchange(told_, waiting));
  watcher_->BytesReceived({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

void QtSerialPort::SetRThreshold(int bytes) {
  threshold_ = bytes;
  Arm();
}

void QtSerialPort::SetOnComm(std::function<void(int)> handler) {
  handler_ = std::move(handler);
  Arm();
}

void QtSerialPort::BytesArrived() {
  TellArrived();
  DropDiscarded();
  PostLineErrors();
  Arm();
}

void QtSerialPort::PostLineErrors() {
  if (!counters_) return;
  const std::optional<LineCounters> now = ReadLineCounters(static_cast<int>(port_->handle()));
  if (!now || *now == *counters_) return;
  for (const int event : LineErrorsBetween(std::exchange(*counters_, *now), *now)) {
    QMetaObject::invokeMethod(
        &context_,
        [this, event, opening = opening_] {
          if (opening == opening_) Fire(event);
        },
        Qt::QueuedConnection);
  }
}

bool QtSerialPort::ReceiveDue() const {
  return PortOpen() && handler_ && threshold_ > 0 && InBufferCount() >= threshold_;
}

void QtSerialPort::Arm() {
  if (armed_ || unread_ || !ReceiveDue()) return;
  armed_ = true;
  QMetaObject::invokeMethod(
      &context_,
      [this, opening = opening_] {
        if (opening == opening_) FireReceive();
      },
      Qt::QueuedConnection);
}

void QtSerialPort::ArmLater() {
  if (armed_ || unread_ || !ReceiveDue()) return;
  armed_ = true;
  QTimer::singleShot(kRepeat, Qt::PreciseTimer, &context_, [this, opening = opening_] {
    if (opening == opening_) FireReceive();
  });
}

void QtSerialPort::FireReceive() {
  armed_ = false;
  if (!ReceiveDue()) return;
  const QPointer<QObject> alive(&context_);
  unread_ = true;
  try {
    Fire(kCommReceive);
  } catch (...) {
    if (alive) unread_ = false;
    throw;
  }
  if (!alive) return;
  if (std::exchange(unread_, false)) {
    ArmLater();
  } else {
    Arm();
  }
}

void QtSerialPort::Fire(int event) {
  // A copy, because the handler may set another one or destroy the port.
  const auto handler = handler_;
  if (handler) handler(event);
}

}  // namespace tarnlink
