#include "platform/qt/print_preview.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QPaintEngine>
#include <QPrintEngine>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScreen>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "contract/dialogs_benches.h"
#include "contract/machine.h"
#include "contract/pdf_reader.h"
#include "platform/qt/qt_files.h"
#include "platform/qt/qt_surface.h"
#include "support/temporary_folder.h"

namespace tarnlink {
namespace {

constexpr float kTwipsPerPoint = 20.0F;

// What a printer of 600 dpi is told, and whether it works.
class InkEngine : public QPaintEngine, public QPrintEngine {
 public:
  InkEngine() : QPaintEngine(AllFeatures) {}

  bool begin(QPaintDevice*) override {
    if (broken) return false;
    ++pages;
    state_ = QPrinter::Active;
    return true;
  }
  bool end() override {
    state_ = jams ? QPrinter::Error : QPrinter::Idle;
    return true;
  }
  void updateState(const QPaintEngineState&) override {}
  void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
  void drawPath(const QPainterPath&) override {}
  void drawTextItem(const QPointF&, const QTextItem& item) override { texts << item.text(); }
  Type type() const override { return User; }

  bool newPage() override { return ++pages > 0; }
  bool abort() override { return false; }
  QPrinter::PrinterState printerState() const override { return state_; }
  void setProperty(PrintEnginePropertyKey key, const QVariant& value) override {
    if (key == PPK_Orientation) {
      layout_.setOrientation(value.value<QPageLayout::Orientation>());
    } else {
      properties_[key] = value;
    }
  }
  QVariant property(PrintEnginePropertyKey key) const override {
    if (key == PPK_QPageLayout) return QVariant::fromValue(layout_);
    if (key == PPK_Resolution) return kDpi;
    if (key == PPK_PrinterName) return QStringLiteral("Laser");
    return properties_.value(key);
  }
  int metric(QPaintDevice::PaintDeviceMetric id) const override {
    const QRect sheet = layout_.paintRectPixels(kDpi);
    if (id == QPaintDevice::PdmWidth) return sheet.width();
    if (id == QPaintDevice::PdmHeight) return sheet.height();
    return kDpi;
  }

  bool broken = false;  // nothing can be drawn on it
  bool jams = false;    // it stops in the middle
  int pages = 0;
  QStringList texts;

 private:
  static constexpr int kDpi = 600;
  QPageLayout layout_{QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(12, 12, 12, 12)};
  QPrinter::PrinterState state_ = QPrinter::Idle;
  QMap<int, QVariant> properties_;
};

class InkPrinter : public QPrinter {
 public:
  explicit InkPrinter(InkEngine& engine) { setEngines(&engine, &engine); }
};

void DrawTwoPages(DrawingSurface& paper) {
  paper.SetFont({"Sans Serif", 20});
  paper.Text({0, 0}, "Supply", kBlack);
  paper.Text({1440, 1440}, "55 °C", 0x0000FF);
  paper.NewPage();
  paper.Text({1440, 1440}, "Return", kBlack);
}

PreviewRequest TwoPages(bool landscape = false) {
  return {"Print Screen", "boiler.pdf", {landscape}, DrawTwoPages};
}

QString Output(const QString& program, const QStringList& arguments, const std::string& file,
               const QStringList& last = {}) {
  return OutputOf(program, arguments + QStringList{QString::fromStdString(file)} + last);
}

QString TextOf(const std::string& pdf) { return Output("pdftotext", {"-layout"}, pdf, {"-"}); }

// Where `word` stands on its page, in points.
QRectF PlaceOf(const QString& word, const std::string& pdf) {
  const QString places = Output("pdftotext", {"-bbox"}, pdf, {"-"});
  const QRegularExpression pattern(
      "xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\" xMax=\"([0-9.]+)\" yMax=\"([0-9.]+)\">" + word);
  const QRegularExpressionMatch found = pattern.match(places);
  EXPECT_TRUE(found.hasMatch()) << places.toStdString();
  return {QPointF(found.captured(1).toDouble(), found.captured(2).toDouble()),
          QPointF(found.captured(3).toDouble(), found.captured(4).toDouble())};
}

std::string ContentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

template <class Widget>
Widget& Part(const QWidget& preview, const char* name) {
  auto* part = preview.findChild<Widget*>(name);
  if (part == nullptr) throw std::runtime_error(std::string("The preview has no ") + name);
  return *part;
}

void Press(const QWidget& preview, const char* name) { Part<QPushButton>(preview, name).click(); }

QString PageShown(const QWidget& preview) { return Part<QLabel>(preview, "PreviewPage").text(); }

// The preview on a printer, with a user who answers its dialogs by a script.
class PrintPreviewTest : public testing::Test {
 protected:
  void Open(PreviewRequest wanted, bool has_printer = true) {
    request = std::move(wanted);
    preview = std::make_unique<PrintPreview>(request, world.dialogs(), files, printer, has_printer,
                                             nullptr);
    preview->show();
    ASSERT_TRUE(loop.RunUntil([&] { return preview->isActiveWindow(); }));
  }
  bool Up() const { return preview->isVisible(); }
  // The user saves the pages under `path`.
  void Save(const std::string& path) {
    world.dialogs().ExpectSaveFile("Save as PDF").Give(path);
    Press(*preview, "PreviewPdf");
  }
  // The same, and is told why that failed.
  void SaveInVain(const std::string& path, const std::string& reason) {
    world.dialogs().ExpectSaveFile("Save as PDF").Give(path);
    world.dialogs().ExpectMessageBox({"The PDF file could not be saved.", "TarnLink",
                                      Icon::kCritical, Buttons::kOk, false, reason});
    Press(*preview, "PreviewPdf");
    EXPECT_TRUE(Up());
  }

  FakeWorld world;
  QtFiles files;
  QtLoop loop;
  InkEngine engine;
  InkPrinter printer{engine};
  PreviewRequest request;
  std::unique_ptr<PrintPreview> preview;
  TemporaryFolder folder;
};

TEST_F(PrintPreviewTest, ShowsThePagesInTheOrientationAskedFor) {
  for (const bool landscape : {false, true}) {
    Open(TwoPages(landscape));
    EXPECT_EQ(preview->windowTitle(), "Print Screen");
    EXPECT_EQ(Part<QRadioButton>(*preview, "PreviewLandscape").isChecked(), landscape);
    EXPECT_EQ(Part<QRadioButton>(*preview, "PreviewPortrait").isChecked(), !landscape);
    const auto& pages = Part<QPrintPreviewWidget>(*preview, "PreviewPages");
    EXPECT_EQ(pages.orientation() == QPageLayout::Landscape, landscape);
    EXPECT_EQ(pages.pageCount(), 2);
    EXPECT_EQ(engine.pages, 0) << "nothing is printed yet";
  }
}

TEST_F(PrintPreviewTest, TurningThePaperDrawsThePagesAnew) {
  bool wide = false;
  PreviewRequest one = TwoPages();
  one.draw = [&](DrawingSurface& paper) { wide = paper.ScaleWidth() > paper.ScaleHeight(); };
  Open(one);
  EXPECT_FALSE(wide);
  Part<QRadioButton>(*preview, "PreviewLandscape").click();
  EXPECT_TRUE(wide);
  Part<QRadioButton>(*preview, "PreviewPortrait").click();
  EXPECT_FALSE(wide);
}

// Pages that take so long that the user stops waiting for them, while they are endless.
class EndlessPages {
 public:
  explicit EndlessPages(std::function<bool()> is_endless) : is_endless_(std::move(is_endless)) {
    user_.With("Waiting", [this](QWidget& window) {
      is_stopped_ = true;
      window.findChild<QPushButton*>()->click();
    });
  }
  PreviewRequest Request() {
    PreviewRequest endless = TwoPages();
    endless.draw = [this](DrawingSurface& paper) {
      DrawTwoPages(paper);
      const auto& surface = dynamic_cast<QtSurface&>(paper);
      while (is_endless_() && surface.Ready()) paper.Text({}, "on and on", kBlack);
    };
    return endless;
  }
  bool IsStopped() const { return is_stopped_; }

 private:
  std::function<bool()> is_endless_;  // asked where they are drawn
  bool is_stopped_ = false;
  QtUser user_;
};

TEST_F(PrintPreviewTest, WhoDoesNotWaitForThePagesHasNoPreview) {
  EndlessPages pages([] { return true; });
  request = pages.Request();
  preview = std::make_unique<PrintPreview>(request, world.dialogs(), files, printer, true, nullptr);
  preview->show();
  EXPECT_TRUE(loop.RunUntil([&] { return !Up(); }));
  EXPECT_TRUE(pages.IsStopped());
}

TEST_F(PrintPreviewTest, WhoDoesNotWaitForAPdfHasNoneAndSeesThePages) {
  std::atomic<bool> is_endless = false;
  EndlessPages pages([&is_endless] { return is_endless.load(); });
  Open(pages.Request());
  is_endless = true;
  Save(folder / "a.pdf");
  EXPECT_TRUE(pages.IsStopped());
  EXPECT_TRUE(Up());
  EXPECT_FALSE(std::filesystem::exists(folder / "a.pdf"));
}

TEST_F(PrintPreviewTest, WhoDoesNotWaitForThePrinterSeesThePages) {
  EndlessPages pages([this] { return engine.pages > 0; });
  Open(pages.Request());
  world.dialogs().ExpectPrinter().GivePage({false});
  Press(*preview, "PreviewPrint");
  EXPECT_TRUE(pages.IsStopped());
  EXPECT_TRUE(Up());
}

TEST_F(PrintPreviewTest, WhoAskedForThePagesIsToldWhileTheyAreDrawn) {
  bool is_drawing = false;
  PreviewRequest watched = TwoPages();
  watched.drawing = [&](bool is) { is_drawing = is; };
  int times = 0;
  watched.draw = [&](DrawingSurface& paper) {
    EXPECT_TRUE(is_drawing);
    ++times;
    DrawTwoPages(paper);
  };
  Open(watched);
  EXPECT_FALSE(is_drawing);
  Save(folder / "a.pdf");
  EXPECT_FALSE(is_drawing);
  world.dialogs().ExpectPrinter().GivePage({false});
  Press(*preview, "PreviewPrint");
  EXPECT_FALSE(is_drawing);
  EXPECT_GE(times, 3);
}

TEST_F(PrintPreviewTest, GoesThroughThePages) {
  Open(TwoPages());
  const auto& previous = Part<QPushButton>(*preview, "PreviewPrevious");
  const auto& next = Part<QPushButton>(*preview, "PreviewNext");
  EXPECT_EQ(PageShown(*preview), "Page 1 of 2");
  EXPECT_TRUE(next.isVisible());
  EXPECT_FALSE(previous.isEnabled());
  Press(*preview, "PreviewNext");
  EXPECT_EQ(PageShown(*preview), "Page 2 of 2");
  EXPECT_TRUE(previous.isEnabled());
  EXPECT_FALSE(next.isEnabled());
  Press(*preview, "PreviewPrevious");
  EXPECT_EQ(PageShown(*preview), "Page 1 of 2");
}

TEST_F(PrintPreviewTest, OnePageHasNoPageButtons) {
  PreviewRequest one = TwoPages();
  one.draw = [](DrawingSurface& paper) { paper.Text({}, "only", kBlack); };
  Open(one);
  EXPECT_FALSE(Part<QPushButton>(*preview, "PreviewNext").isVisible());
  EXPECT_FALSE(Part<QLabel>(*preview, "PreviewPage").isVisible());
}

TEST_F(PrintPreviewTest, ZoomsWithinBounds) {
  Open(TwoPages());
  const auto& pages = Part<QPrintPreviewWidget>(*preview, "PreviewPages");
  const double whole_page = pages.zoomFactor();
  Press(*preview, "PreviewFitWidth");
  EXPECT_GT(pages.zoomFactor(), whole_page);
  Press(*preview, "PreviewFitPage");
  EXPECT_DOUBLE_EQ(pages.zoomFactor(), whole_page);
  Press(*preview, "PreviewZoomIn");
  EXPECT_NEAR(pages.zoomFactor(), whole_page * 1.25, 0.01);
  for (int i = 0; i < 50; ++i) Press(*preview, "PreviewZoomIn");
  EXPECT_NEAR(pages.zoomFactor(), 8.0, 0.01);
  EXPECT_FALSE(Part<QPushButton>(*preview, "PreviewZoomIn").isEnabled());
  for (int i = 0; i < 50; ++i) Press(*preview, "PreviewZoomOut");
  EXPECT_NEAR(pages.zoomFactor(), 0.1, 0.01);
  EXPECT_FALSE(Part<QPushButton>(*preview, "PreviewZoomOut").isEnabled());
  EXPECT_TRUE(Part<QPushButton>(*preview, "PreviewZoomIn").isEnabled());
}

TEST_F(PrintPreviewTest, PrintsAllPagesOnThePrinterThatIsPickedAndCloses) {
  Open(TwoPages());
  world.dialogs().ExpectPrinter().GivePage({false});
  Press(*preview, "PreviewPrint");
  EXPECT_EQ(engine.pages, 2);
  EXPECT_EQ(engine.texts, (QStringList{"Supply", "55 °C", "Return"}));
  EXPECT_EQ(printer.docName(), "Print Screen");
  EXPECT_FALSE(Up());
}

TEST_F(PrintPreviewTest, StaysUpWhenNoPrinterIsPicked) {
  Open(TwoPages());
  world.dialogs().ExpectPrinter().Cancel();
  Press(*preview, "PreviewPrint");
  EXPECT_EQ(engine.pages, 0);
  EXPECT_TRUE(Up());
}

TEST_F(PrintPreviewTest, APrinterThatFailsIsToldAndThePreviewStaysUp) {
  Open(TwoPages());
  const MessageBoxRequest box{"\"Print Screen\" could not be printed on the printer \"Laser\".",
                              "TarnLink", Icon::kCritical};
  for (const auto fault : {&InkEngine::broken, &InkEngine::jams}) {
    engine.*fault = true;
    world.dialogs().ExpectPrinter().GivePage({false});
    world.dialogs().ExpectMessageBox(box);
    Press(*preview, "PreviewPrint");
    EXPECT_TRUE(Up());
    engine.*fault = false;
  }
}

TEST_F(PrintPreviewTest, PrintingToAFileKeepsTheFileWhenItFails) {
  printer.setOutputFileName("/dev/full");
  Open(TwoPages());
  world.dialogs().ExpectPrinter().GivePage({false});
  world.dialogs().ExpectMessageBox("The PDF file could not be saved.", "TarnLink");
  Press(*preview, "PreviewPrint");
  EXPECT_TRUE(Up());
  printer.setOutputFileName(QString::fromStdString(folder / "a.pdf"));
  world.dialogs().ExpectPrinter().GivePage({true});
  Press(*preview, "PreviewPrint");
  EXPECT_TRUE(Part<QRadioButton>(*preview, "PreviewLandscape").isChecked());
  EXPECT_TRUE(TextOf(folder / "a.pdf").contains("Supply"));
  EXPECT_FALSE(Up());
}

TEST_F(PrintPreviewTest, AskedForAPdfItProposesTheNameInItsFolder) {
  PreviewRequest named = TwoPages();
  named.file_name = "/screens/boiler.pdf";
  Open(named);
  world.dialogs().ExpectSaveFile("Save as PDF").Cancel();
  Press(*preview, "PreviewPdf");
  const FileDialogRequest& asked = world.dialogs().last_file_request();
  EXPECT_EQ(asked.folder, "/screens");
  EXPECT_EQ(asked.file_name, "boiler.pdf");
  EXPECT_EQ(asked.filter, "PDF (*.pdf)|*.pdf");
  EXPECT_EQ(asked.extension, "pdf");
  EXPECT_TRUE(asked.confirm_overwrite);
  EXPECT_TRUE(Up());
}

TEST_F(PrintPreviewTest, SavesAPdfOfAllPagesWithRealTextAndCloses) {
  Open(TwoPages());
  Save(folder / "a.pdf");
  EXPECT_TRUE(ContentOf(folder / "a.pdf").starts_with("%PDF"));
  const QString about = Output("pdfinfo", {}, folder / "a.pdf");
  EXPECT_TRUE(about.contains(QRegularExpression("Pages: +2\n"))) << about.toStdString();
  EXPECT_TRUE(about.contains(QRegularExpression("Title: +Print Screen\n")));
  EXPECT_TRUE(about.contains(QRegularExpression("Creator: +TarnLink\n")));
  EXPECT_TRUE(about.contains(QRegularExpression("Page size: +595 x 842 pts \\(A4\\)")));
  const QStringList pages = TextOf(folder / "a.pdf").split('\f');
  ASSERT_EQ(pages.size(), 3) << "each page ends in a form feed";
  EXPECT_TRUE(pages[0].contains("Supply"));
  EXPECT_TRUE(pages[0].contains("55 °C"));
  EXPECT_EQ(pages[1].trimmed(), "Return");
  EXPECT_FALSE(Up());
}

TEST_F(PrintPreviewTest, ThePdfLiesAsThePreviewDoes) {
  Open(TwoPages());
  Part<QRadioButton>(*preview, "PreviewLandscape").click();
  Save(folder / "a.pdf");
  const QString about = Output("pdfinfo", {}, folder / "a.pdf");
  EXPECT_TRUE(about.contains(QRegularExpression("Page size: +842 x 595 pts")))
      << about.toStdString();
}

TEST_F(PrintPreviewTest, TheTextsOfThePdfHaveTheirSizeAndPlace) {
  float width = 0;
  PreviewRequest one = TwoPages();
  one.draw = [&](DrawingSurface& paper) {
    paper.SetFont({"Sans Serif", 40});
    paper.Text({0, 0}, "Corner", kBlack);
    paper.Text({1440, 2880}, "Place", kBlack);
    width = paper.TextWidth("Corner") / kTwipsPerPoint;
  };
  Open(one);
  Save(folder / "a.pdf");
  const QPointF margin(12, 12);
  const QRectF corner = PlaceOf("Corner", folder / "a.pdf");
  EXPECT_NEAR(corner.left(), margin.x(), 1.0);
  EXPECT_NEAR(corner.top(), margin.y(), 6.0);
  EXPECT_NEAR(corner.width(), width, 1.0);
  EXPECT_GT(corner.width(), 6 * 40 * 0.5);
  EXPECT_LT(corner.width(), 6 * 40 * 0.8);
  const QRectF place = PlaceOf("Place", folder / "a.pdf");
  EXPECT_NEAR(place.left(), margin.x() + 72, 1.0);
  EXPECT_NEAR(place.top() - corner.top(), 144, 0.1);
}

TEST_F(PrintPreviewTest, AFailedSaveIsToldAndTheOldFileAndThePreviewStay) {
  const std::string taken = folder / "taken.pdf";
  const std::string nowhere = folder / "missing/a.pdf";
  const std::string old = folder / "old.pdf";
  std::filesystem::create_directory(taken);
  std::ofstream(old) << "old";
  Open(TwoPages());
  SaveInVain(taken, "\"" + taken + "\" could not be written: it is a folder.");
  SaveInVain(nowhere, "\"" + nowhere + "\" could not be written: there is no such folder.");
  SaveInVain("/dev/full", "\"/dev/full\" could not be written: it is no regular file.");
  std::filesystem::permissions(old, std::filesystem::perms::owner_read);
  {
    const OrdinaryUser user;
    SaveInVain(old, "\"" + old + "\" could not be written: you do not have the permission.");
  }
  EXPECT_EQ(ContentOf(old), "old");
  std::filesystem::permissions(old, std::filesystem::perms::owner_all);
  Save(old);
  EXPECT_TRUE(ContentOf(old).starts_with("%PDF"));
}

TEST_F(PrintPreviewTest, WithAPrinterThePrintButtonHasTheFocus) {
  Open(TwoPages());
  EXPECT_TRUE(Part<QPushButton>(*preview, "PreviewPrint").hasFocus());
  EXPECT_TRUE(Part<QPushButton>(*preview, "PreviewPrint").isDefault());
  EXPECT_EQ(Part<QLabel>(*preview, "PreviewNote").text(), "");
}

TEST_F(PrintPreviewTest, WithoutAPrinterItSaysSoAndThePagesCanBeSaved) {
  Open(TwoPages(), false);
  EXPECT_FALSE(Part<QPushButton>(*preview, "PreviewPrint").isEnabled());
  EXPECT_EQ(Part<QLabel>(*preview, "PreviewNote").text(),
            "There is no printer on this machine, but the pages can be saved as PDF.");
  EXPECT_TRUE(Part<QPushButton>(*preview, "PreviewPdf").hasFocus());
  EXPECT_TRUE(Part<QPushButton>(*preview, "PreviewPdf").isDefault());
  Save(folder / "a.pdf");
  EXPECT_FALSE(Up());
}

TEST_F(PrintPreviewTest, EveryPartIsReachedByKeyboard) {
  Open(TwoPages());
  Press(*preview, "PreviewNext");
  Part<QPushButton>(*preview, "PreviewPrint").setFocus();
  QStringList mnemonics;
  for (const auto* button : preview->findChildren<QAbstractButton*>()) {
    const QString key = button->shortcut().toString();
    EXPECT_FALSE(key.isEmpty()) << button->text().toStdString();
    EXPECT_FALSE(mnemonics.contains(key)) << button->text().toStdString();
    mnemonics << key;
  }
  EXPECT_EQ(mnemonics.size(), 11);
  QStringList reached;
  for (int i = 0; i < 20; ++i) {
    QWidget* focused = QApplication::focusWidget();
    if (!reached.isEmpty() && focused->objectName() == reached.first()) break;
    reached << (focused->objectName().isEmpty() ? "Pages" : focused->objectName());
    QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    QApplication::sendEvent(focused, &tab);
  }
  EXPECT_EQ(reached.join(' '),
            "PreviewPrint PreviewPdf PreviewClose PreviewPortrait PreviewZoomIn PreviewZoomOut "
            "PreviewFitWidth PreviewFitPage PreviewPrevious Pages");
}

TEST_F(PrintPreviewTest, EscapeAndCloseCloseIt) {
  Open(TwoPages());
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QApplication::sendEvent(preview.get(), &escape);
  EXPECT_FALSE(Up());
  Open(TwoPages());
  Press(*preview, "PreviewClose");
  EXPECT_FALSE(Up());
}

TEST_F(PrintPreviewTest, TakenDownWhileItAsksItNeitherPrintsNorSaves) {
  Open(TwoPages());
  const std::string path = folder / "a.pdf";
  world.dialogs().ExpectSaveFile("Save as PDF").While([&] { preview.reset(); }).Give(path);
  Press(*preview, "PreviewPdf");
  EXPECT_FALSE(std::filesystem::exists(path));
  Open(TwoPages());
  world.dialogs().ExpectPrinter().While([&] { preview.reset(); }).GivePage({false});
  Press(*preview, "PreviewPrint");
  EXPECT_EQ(engine.pages, 0);
}

// The whole road: the real dialogs, on a machine that may have no printer.
class PreviewDialogTest : public testing::Test {
 protected:
  QtUser user;
  TemporaryFolder folder;
};

TEST_F(PreviewDialogTest, SavesUnderTheNameThatIsChosen) {
  user.With("Preview", [&](QWidget& preview) {
    user.SavesFile(folder / "chosen");
    Press(preview, "PreviewPdf");
  });
  user.dialogs().Preview(TwoPages());
  EXPECT_TRUE(TextOf(folder / "chosen.pdf").contains("Return")) << "and gets its ending";
}

TEST_F(PreviewDialogTest, AFailedSaveIsToldOnThePreview) {
  user.With("Preview", [&](QWidget& preview) {
    user.SavesFile(folder / "missing/a.pdf");
    user.With("MessageBox", [&](QWidget& box) {
      EXPECT_EQ(box.parentWidget(), &preview);
      box.close();
    });
    Press(preview, "PreviewPdf");
    EXPECT_TRUE(preview.isVisible());
    preview.close();
  });
  user.dialogs().Preview(TwoPages());
}

TEST_F(PreviewDialogTest, ComesBackInTheSizeThatTheUserGaveIt) {
  const QSize left_in(860, 500);
  user.With("Preview", [&](QWidget& preview) {
    EXPECT_NE(preview.size(), left_in);
    EXPECT_GE(preview.height(), 500);
    const QSize screen = preview.screen()->availableSize();
    EXPECT_EQ(preview.size().boundedTo(screen), preview.size());
    preview.resize(left_in);
    preview.close();
  });
  user.dialogs().Preview(TwoPages());
  user.With("Preview", [&](QWidget& preview) {
    EXPECT_EQ(preview.size(), left_in);
    preview.close();
  });
  user.dialogs().Preview(TwoPages());
}

TEST_F(PreviewDialogTest, OffersToPrintWhereThereIsAPrinter) {
  const bool has_printer = !QPrinterInfo::availablePrinters().isEmpty();
  user.With("Preview", [&](QWidget& preview) {
    EXPECT_EQ(Part<QPushButton>(preview, "PreviewPrint").isEnabled(), has_printer);
    preview.close();
  });
  user.dialogs().Preview(TwoPages());
}

TEST_F(PreviewDialogTest, AnOwnerThatGoesAwayTakesThePreviewDownEvenWhileItAsksForAFile) {
  auto window = std::make_unique<QWidget>();
  window->show();
  window->activateWindow();
  ASSERT_TRUE(user.RunUntil([&] { return QApplication::activeWindow() == window.get(); }));
  user.With("Preview", [&](QWidget& preview) {
    user.With("SaveFile", [&](QWidget&) { window.reset(); });
    Press(preview, "PreviewPdf");
  });
  user.dialogs().Preview(TwoPages());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

}  // namespace
}  // namespace tarnlink
