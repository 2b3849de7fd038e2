// Shows a text that grows, in letters of one width. What has been added is added here too; the user
// stays at the place that he looks at, unless that is the end.
#pragma once

#include <QPlainTextEdit>

#include "common/growing_text.h"

namespace tarnlink {

class TextMonitor final : public QPlainTextEdit {
 public:
  // `control` outlives it. It would be large enough for so many letters in so many lines.
  TextMonitor(GrowingText& control, const QSize& letters, QWidget* parent);
  ~TextMonitor() override;

  QSize sizeHint() const override { return RoomFor(letters_); }
  QSize minimumSizeHint() const override;

 protected:
  // Who looks at the end goes on looking at it.
  void resizeEvent(QResizeEvent* event) override;

 private:
  QSize RoomFor(const QSize& letters) const;
  void ShowControl();
  void Append(const QString& text);
  bool IsAtEnd() const;
  void GoToEnd();

  GrowingText& control_;
  QSize letters_;
  int beginnings_ = -1;    // of the text that is shown
  std::size_t shown_ = 0;  // bytes of it
  bool has_grown_ = false;
};

}  // namespace tarnlink
