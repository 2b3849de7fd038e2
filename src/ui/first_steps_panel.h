// The calm box in the middle of an empty screen that says how to reach a controller.
#pragma once

#include <QWidget>

#include "monitor/frm_first_steps.h"

class QGridLayout;

namespace tarnlink {

class FirstStepsPanel final : public QWidget {
 public:
  // Shows `form`, which outlives it, in the middle of `area`, whose child it becomes.
  FirstStepsPanel(frm_FirstSteps& form, QWidget* area);
  ~FirstStepsPanel() override;

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddStep(QGridLayout* grid, int number, const QString& heading, QWidget* below);
  QWidget* DeviceRow();
  void ShowForm();
  void TakePlace();

  frm_FirstSteps& form_;
};

}  // namespace tarnlink
