#include "ui/paint_pace.h"

#include <QApplication>

namespace tarnlink {

namespace {

constexpr int kPace = 200;  // ms; as fast as anybody reads

}  // namespace

void PaintPace::Paint(QWidget* widget) {
  // One for the application, gone with it.
  static QPointer<PaintPace> pace;
  if (pace.isNull()) pace = new PaintPace(qApp);
  pace->Add(widget);
}

PaintPace::PaintPace(QObject* parent) : QObject(parent) {
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, [this] { PaintAll(); });
}

void PaintPace::Add(QWidget* widget) {
  waiting_.emplace_back(widget);
  if (!timer_.isActive()) PaintAll();
}

void PaintPace::PaintAll() {
  if (waiting_.empty()) return;
  for (const QPointer<QWidget>& widget : waiting_) {
    if (!widget.isNull()) widget->update();
  }
  waiting_.clear();
  timer_.start(kPace);
}

}  // namespace tarnlink
