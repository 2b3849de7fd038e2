// The preview's window: the pages as they would come out of the printer, and the ways to print them
// and to keep them as a PDF file. Either way ends it; what goes wrong is told, and it stays up.
#pragma once

#include <QDialog>
#include <QPrintPreviewWidget>
#include <functional>
#include <string>

#include "platform/dialogs.h"
#include "platform/files.h"

class QBoxLayout;
class QLabel;
class QPrinter;
class QPushButton;
class QRadioButton;

namespace tarnlink {

class PrintPreview final : public QDialog {
 public:
  // Everything given must outlive this. `printer` is the one that `dialogs` lets the user pick;
  // without `has_printer` the pages can only be saved.
  PrintPreview(const PreviewRequest& request, Dialogs& dialogs, Files& files, QPrinter& printer,
               bool has_printer, QWidget* parent);

 private:
  QBoxLayout* MakeViewRow();
  QWidget* MakePageRow();
  QBoxLayout* MakeEndRow(bool has_printer);
  QPushButton* AddButton(QBoxLayout& row, const QString& caption, const char* name,
                         std::function<void()> press);

  bool Draw(const std::function<bool()>& draw);
  void DrawOn(QPrinter& paper);
  void ShowPage();
  void TurnPages(int count);
  void Fit(QPrintPreviewWidget::ZoomMode mode);
  void ZoomBy(double factor);
  void ShowZoom();

  void Print();
  bool PrintPages(const std::function<bool()>& is_to_stop);
  void AskAndSavePdf();
  void SavePdf(const std::string& path);
  bool PdfBytes(std::string& bytes);
  void Tell(const QString& text, const std::string& detail);

  const PreviewRequest& request_;
  Dialogs& dialogs_;
  Files& files_;
  QPrinter& printer_;
  QPrintPreviewWidget* pages_;
  QRadioButton* portrait_;
  QRadioButton* landscape_;
  QPushButton* zoom_in_;
  QPushButton* zoom_out_;
  QWidget* page_row_;
  QPushButton* previous_;
  QPushButton* next_;
  QLabel* page_;
  QPushButton* print_;
  QPushButton* pdf_;
};

}  // namespace tarnlink
