// A framed line of plain text on a colour of its own, cheap enough for hundreds on one form that
// change many times a second.
#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

namespace tarnlink {

class TextPlate : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QString text READ text)

 public:
  // In the colours of the form's background.
  explicit TextPlate(QWidget* parent = nullptr);

  const QString& text() const { return text_; }
  void SetText(const QString& text);
  void SetBackground(const QColor& background);
  // Grey letters, as far as they can be read on the background.
  void SetFaded(bool is_faded);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString text_;
  QColor background_;
  bool is_faded_ = false;
};

}  // namespace tarnlink
