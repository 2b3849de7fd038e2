// Keeps texts that change with every exchange from costing more than the exchange: they are painted
// at once when nothing was painted lately, and otherwise together, five times a second.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <vector>

namespace tarnlink {

class PaintPace final : public QObject {
 public:
  // Paints `widget` soon. Costs nothing while nobody asks. Needs a QApplication.
  static void Paint(QWidget* widget);

 private:
  explicit PaintPace(QObject* parent);

  void Add(QWidget* widget);
  void PaintAll();

  QTimer timer_;
  std::vector<QPointer<QWidget>> waiting_;
};

}  // namespace tarnlink
