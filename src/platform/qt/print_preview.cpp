#include "platform/qt/print_preview.h"

#include <QBuffer>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPageLayout>
#include <QPdfWriter>
#include <QPointer>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "common/run_time_error.h"
#include "platform/qt/pages_beside_loop.h"
#include "platform/qt/qt_surface.h"
#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

constexpr const char* kProgramName = "TarnLink";
constexpr QSize kDefaultSize(900, 700);  // pixels
constexpr QSize kFrame(20, 60);          // pixels that the desktop puts round a window
constexpr int kPdfDpi = 1200;            // as a good printer has
constexpr double kZoomStep = 1.25;
constexpr double kLeastZoom = 0.1;
constexpr double kMostZoom = 8.0;

QPageLayout::Orientation ToOrientation(bool landscape) {
  return landscape ? QPageLayout::Landscape : QPageLayout::Portrait;
}

// Whoever asked for the pages knows while they are drawn, however that ends.
class ToldOfDrawing {
 public:
  explicit ToldOfDrawing(const PreviewRequest& request) : request_(request) { Tell(true); }
  ~ToldOfDrawing() { Tell(false); }
  ToldOfDrawing(const ToldOfDrawing&) = delete;
  ToldOfDrawing& operator=(const ToldOfDrawing&) = delete;

 private:
  void Tell(bool is_drawing) const {
    if (request_.drawing) request_.drawing(is_drawing);
  }

  const PreviewRequest& request_;
};

}  // namespace

PrintPreview::PrintPreview(const PreviewRequest& request, Dialogs& dialogs, Files& files,
                           QPrinter& printer, bool has_printer, QWidget* parent)
    : QDialog(parent), request_(request), dialogs_(dialogs), files_(files), printer_(printer) {
  setWindowTitle(ToQt(request.title));
  printer_.setPageOrientation(ToOrientation(request.setup.landscape));
  pages_ = new QPrintPreviewWidget(&printer_);
  pages_->setObjectName(QStringLiteral("PreviewPages"));
  pages_->setAccessibleName(tr("Pages"));

  auto* above = new QHBoxLayout;
  above->addLayout(MakeViewRow());
  above->addStretch();
  above->addWidget(MakePageRow());
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(above);
  layout->addWidget(pages_, 1);
  layout->addLayout(MakeEndRow(has_printer));
  print_->setEnabled(has_printer);
  QPushButton* first = has_printer ? print_ : pdf_;
  first->setDefault(true);
  first->setFocus();

  connect(pages_, &QPrintPreviewWidget::paintRequested, this,
          [this](QPrinter* paper) { DrawOn(*paper); });
  connect(pages_, &QPrintPreviewWidget::previewChanged, this, &PrintPreview::ShowPage);
  connect(landscape_, &QRadioButton::toggled, this,
          [this](bool landscape) { pages_->setOrientation(ToOrientation(landscape)); });
  resize(kDefaultSize.boundedTo(screen()->availableSize() - kFrame));
}

QBoxLayout* PrintPreview::MakeViewRow() {
  auto* row = new QHBoxLayout;
  portrait_ = new QRadioButton(tr("P&ortrait"));
  portrait_->setObjectName(QStringLiteral("PreviewPortrait"));
  landscape_ = new QRadioButton(tr("&Landscape"));
  landscape_->setObjectName(QStringLiteral("PreviewLandscape"));
  (request_.setup.landscape ? landscape_ : portrait_)->setChecked(true);
  row->addWidget(portrait_);
  row->addWidget(landscape_);
  zoom_in_ = AddButton(*row, tr("Zoom &in"), "PreviewZoomIn", [this] { ZoomBy(kZoomStep); });
  zoom_out_ = AddButton(*row, tr("Zoom o&ut"), "PreviewZoomOut", [this] { ZoomBy(1 / kZoomStep); });
  AddButton(*row, tr("Fit &width"), "PreviewFitWidth",
            [this] { Fit(QPrintPreviewWidget::FitToWidth); });
  AddButton(*row, tr("Whole pa&ge"), "PreviewFitPage",
            [this] { Fit(QPrintPreviewWidget::FitInView); });
  return row;
}

QWidget* PrintPreview::MakePageRow() {
  page_row_ = new QWidget;
  auto* row = new QHBoxLayout(page_row_);
  row->setContentsMargins({});
  previous_ = AddButton(*row, tr("P&revious page"), "PreviewPrevious", [this] { TurnPages(-1); });
  page_ = new QLabel;
  page_->setObjectName(QStringLiteral("PreviewPage"));
  page_->setTextFormat(Qt::PlainText);
  row->addWidget(page_);
  next_ = AddButton(*row, tr("&Next page"), "PreviewNext", [this] { TurnPages(1); });
  page_row_->hide();
  return page_row_;
}

QBoxLayout* PrintPreview::MakeEndRow(bool has_printer) {
  auto* row = new QHBoxLayout;
  auto* note = new QLabel;
  note->setObjectName(QStringLiteral("PreviewNote"));
  note->setTextFormat(Qt::PlainText);
  note->setWordWrap(true);
  if (!has_printer) {
    note->setText(tr("There is no printer on this machine, but the pages can be saved as PDF."));
  }
  row->addWidget(note, 1);
  print_ = AddButton(*row, tr("&Print..."), "PreviewPrint", [this] { Print(); });
  pdf_ = AddButton(*row, tr("&Save as PDF..."), "PreviewPdf", [this] { AskAndSavePdf(); });
  AddButton(*row, tr("&Close"), "PreviewClose", [this] { reject(); });
  return row;
}

QPushButton* PrintPreview::AddButton(QBoxLayout& row, const QString& caption, const char* name,
                                     std::function<void()> press) {
  auto* button = new QPushButton(caption);
  button->setObjectName(QLatin1String(name));
  connect(button, &QPushButton::clicked, this, std::move(press));
  row.addWidget(button);
  return button;
}

// False if the user did not want to wait.
bool PrintPreview::Draw(const std::function<bool()>& draw) {
  const ToldOfDrawing told(request_);
  return draw();
}

// There is nothing to be seen without them.
void PrintPreview::DrawOn(QPrinter& paper) {
  if (Draw([&] { return DrawForPreview(paper, request_.draw); })) return;
  QMetaObject::invokeMethod(this, &QDialog::reject, Qt::QueuedConnection);
}

void PrintPreview::ShowPage() {
  const int page = pages_->currentPage();
  const int count = pages_->pageCount();
  page_->setText(tr("Page %1 of %2").arg(page).arg(count));
  page_row_->setVisible(count > 1);
  previous_->setEnabled(page > 1);
  next_->setEnabled(page < count);
}

void PrintPreview::TurnPages(int count) {
  pages_->setCurrentPage(pages_->currentPage() + count);
  ShowPage();
}

void PrintPreview::Fit(QPrintPreviewWidget::ZoomMode mode) {
  pages_->setZoomMode(mode);
  ShowZoom();
}

void PrintPreview::ZoomBy(double factor) {
  pages_->setZoomFactor(std::clamp(pages_->zoomFactor() * factor, kLeastZoom, kMostZoom));
  ShowZoom();
}

void PrintPreview::ShowZoom() {
  zoom_in_->setEnabled(pages_->zoomFactor() < kMostZoom);
  zoom_out_->setEnabled(pages_->zoomFactor() > kLeastZoom);
}

void PrintPreview::Print() {
  const QPointer<PrintPreview> here(this);
  const auto picked = dialogs_.PickPrinter({landscape_->isChecked()});
  if (!here || !picked) return;
  // Other paper may have been picked with the printer.
  (picked->landscape ? landscape_ : portrait_)->setChecked(true);
  pages_->updatePreview();
  printer_.setDocName(windowTitle());
  printer_.setCreator(QLatin1String(kProgramName));
  // What the print dialog calls printing to a file: Qt itself would neither notice a full disk nor
  // keep the file that it replaces.
  if (!printer_.outputFileName().isEmpty()) return SavePdf(FromQt(printer_.outputFileName()));
  bool is_printed = false;
  if (!Draw([&] {
        return DrawBesideLoop([&](const auto& stop) { is_printed = PrintPages(stop); });
      })) {
    printer_.abort();
    return;
  }
  if (is_printed) return accept();
  Tell(tr("\"%1\" could not be printed on the printer \"%2\".")
           .arg(windowTitle(), printer_.printerName()),
       {});
}

bool PrintPreview::PrintPages(const std::function<bool()>& is_to_stop) {
  {
    QtSurface paper(printer_);
    if (!paper.Ready()) return false;
    paper.StopWhen(is_to_stop);
    request_.draw(paper);
  }
  const QPrinter::PrinterState state = printer_.printerState();
  return state != QPrinter::Error && state != QPrinter::Aborted;
}

void PrintPreview::AskAndSavePdf() {
  const QFileInfo proposed(ToQt(request_.file_name));
  FileDialogRequest file;
  file.title = FromQt(tr("Save as PDF"));
  file.filter = "PDF (*.pdf)|*.pdf";
  if (proposed.isAbsolute()) file.folder = FromQt(proposed.path());
  file.file_name = FromQt(proposed.fileName());
  file.extension = "pdf";
  file.confirm_overwrite = true;
  const QPointer<PrintPreview> here(this);
  const auto path = dialogs_.SaveFile(file);
  if (here && path) SavePdf(*path);
}

void PrintPreview::SavePdf(const std::string& path) {
  try {
    std::string bytes;
    if (!Draw([&] { return PdfBytes(bytes); })) return;
    files_.WriteWhole(path, bytes);
    accept();
  } catch (const RunTimeError& error) {
    Tell(tr("The PDF file could not be saved."), error.what());
  }
}

bool PrintPreview::PdfBytes(std::string& bytes) {
  const QPageLayout layout = printer_.pageLayout();
  const QString title = windowTitle();
  return DrawBesideLoop([&](const auto& is_to_stop) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    {
      QPdfWriter writer(&file);
      writer.setResolution(kPdfDpi);
      writer.setPageLayout(layout);
      writer.setTitle(title);
      writer.setCreator(QLatin1String(kProgramName));
      QtSurface paper(writer);
      paper.StopWhen(is_to_stop);
      request_.draw(paper);
    }
    bytes = file.data().toStdString();
  });
}

void PrintPreview::Tell(const QString& text, const std::string& detail) {
  dialogs_.MessageBox(
      {.text = FromQt(text), .title = kProgramName, .icon = Icon::kCritical, .detail = detail});
}

}  // namespace tarnlink
